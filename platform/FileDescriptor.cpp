#include "platform/FileDescriptor.h"

#include <unistd.h>

#include <cerrno>

namespace vireline {

Result CloseDescriptor(int fd) { return ::close(fd) == 0 ? Result::Ok() : Result::Error(errno); }

}  // namespace vireline
