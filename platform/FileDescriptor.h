// Closing a raw file descriptor that a client handed to the library (the
// dataset loader's descriptor holder): the only close() outside the Env.
#ifndef VIRELINE_PLATFORM_FILEDESCRIPTOR_H_
#define VIRELINE_PLATFORM_FILEDESCRIPTOR_H_

#include "platform/Result.h"

namespace vireline {

// Closes descriptor `fd`; the outcome of the close.
Result CloseDescriptor(int fd);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_FILEDESCRIPTOR_H_
