#include "platform/StreamAppend.h"

#include <unistd.h>

#include <cerrno>

namespace vireline {

namespace {

Result PosixError() { return Result::Error(errno); }

Result AppendThroughStdio(FILE* stream, const void* data, size_t size) {
  if (std::fseek(stream, 0, SEEK_END) != 0) return PosixError();
  if (std::fwrite(data, 1, size, stream) != size) return PosixError();
  return std::fflush(stream) == 0 ? Result::Ok() : PosixError();
}

}  // namespace

Result AppendToStream(FILE* stream, const void* data, size_t size) {
  int descriptor = ::fileno(stream);
  if (descriptor < 0) return AppendThroughStdio(stream, data, size);
  if (::lseek(descriptor, 0, SEEK_END) < 0) return PosixError();
  const char* bytes = static_cast<const char*>(data);
  while (size > 0) {
    ssize_t written = ::write(descriptor, bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return written < 0 ? PosixError() : Result::Error(EIO);
    bytes += written;
    size -= static_cast<size_t>(written);
  }
  return Result::Ok();
}

}  // namespace vireline
