// The outcome of a platform operation: success, or the error number it failed
// with and the path it concerned.
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

  // A failure with error number `error` on `path`.
  static Result Error(int error, const std::string& path) {
    Result result = Error(error);
    result.mPath = path;
    return result;
  }

  // This outcome, naming `path` when it is a failure: a layer that maps paths
  // reports the path its caller gave.
  Result OnPath(const std::string& path) const {
    Result result = *this;
    if (!ok()) result.mPath = path;
    return result;
  }

  // True on success.
  bool ok() const { return mError == 0; }

  // The error number; 0 on success.
  int error() const { return mError; }

  // The path a failure concerned; empty on success or when none applies.
  const std::string& path() const { return mPath; }

  // "OK", or the error number's description.
  std::string ToString() const;

 private:
  explicit Result(int error) : mError(error) {}
  int mError;
  std::string mPath;
};

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_RESULT_H_
