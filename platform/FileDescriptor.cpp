#include "platform/FileDescriptor.h"

#include <unistd.h>

#include "platform/PosixFiles.h"

namespace vireline {

Result CloseDescriptor(int fd) { return ::close(fd) == 0 ? Result::Ok() : PosixError(); }

}  // namespace vireline
