#include "platform/Result.h"

#include <cstring>

namespace vireline {

std::string Result::ToString() const {
  if (ok()) return "OK";
  if (mError < 0) return "unknown error";
  return std::strerror(mError);
}

}  // namespace vireline
