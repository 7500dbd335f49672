#include "platform/FormattedWrite.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace vireline {

Result AppendFormatted(WritableFile* file, const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list again;
  va_copy(again, args);
  char small[256];
  int length = std::vsnprintf(small, sizeof small, format, args);
  va_end(args);
  Result result;
  if (length < 0) {
    result = Result::Error(EINVAL);
  } else if (static_cast<size_t>(length) < sizeof small) {
    result = file->Append(small, static_cast<size_t>(length));
  } else {
    std::string text(static_cast<size_t>(length) + 1, '\0');
    std::vsnprintf(&text[0], text.size(), format, again);
    result = file->Append(text.data(), static_cast<size_t>(length));
  }
  va_end(again);
  return result;
}

}  // namespace vireline
