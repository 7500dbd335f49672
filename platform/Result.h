// The outcome of a platform operation: success, or the error number it failed with.
#ifndef VIRELINE_PLATFORM_RESULT_H_
#define VIRELINE_PLATFORM_RESULT_H_

#include <string>

namespace vireline {

class Result {
 public:
  // Success.
  Result() : mError(0) {}

  // Success.
  static Result Ok() { return Result(); }

  // A failure with error number `error` (an errno value, never 0).
  static Result Error(int error) { return Result(error == 0 ? -1 : error); }

  // True on success.
  bool ok() const { return mError == 0; }

  // The error number; 0 on success.
  int error() const { return mError; }

  // "OK", or the error number's description.
  std::string ToString() const;

 private:
  explicit Result(int error) : mError(error) {}
  int mError;
};

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_RESULT_H_
