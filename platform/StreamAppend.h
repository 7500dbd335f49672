// Appending to a file that is already open, as cheaply as the operating system
// allows. Seeking a read-write C stream to its end asks for the file's size
// first (one more system call than the append itself needs), and a buffered
// one also reads the file's last block; for small records written one open at
// a time that doubles the cost of logging.
#ifndef VIRELINE_PLATFORM_STREAMAPPEND_H_
#define VIRELINE_PLATFORM_STREAMAPPEND_H_

#include <cstddef>
#include <cstdio>

#include "platform/Result.h"

namespace vireline {

// Writes `size` bytes at the end of the file open in `stream`, a stream
// Env::OpenStream opened on which no I/O has been done yet. On a plain file
// this is one seek and one write on its descriptor; any other stream (a test
// double's, say) is seeked and written through the C library.
Result AppendToStream(FILE* stream, const void* data, size_t size);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_STREAMAPPEND_H_
