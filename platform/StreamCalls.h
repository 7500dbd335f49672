// The C stream calls behind the public functions that hand out or take a
// FILE* (COrvoInterface, CFileIO's stream helpers): the library's own code
// reads and writes through file objects instead.
#ifndef VIRELINE_PLATFORM_STREAMCALLS_H_
#define VIRELINE_PLATFORM_STREAMCALLS_H_

#include <cstdint>
#include <cstdio>
#include <memory>

#include "platform/Env.h"

namespace vireline {

// Moves the position of `stream`; true on success.
bool SeekStream(FILE* stream, long offset, int whence);

// The next byte of `stream` (0..255), or EOF.
int GetStreamByte(FILE* stream);

// Writes byte `c` to `stream`; the byte, or EOF on failure.
int PutStreamByte(int c, FILE* stream);

// A file object reading `stream` (not owned, never closed by it) from its
// current position.
std::unique_ptr<SequentialFile> NewStreamReader(FILE* stream);

// A file object reading and writing `stream` (not owned) in place.
std::unique_ptr<RandomRWFile> NewStreamFile(FILE* stream);

// Prints "`what`: <description of the failure>" on stderr, as perror does.
void PrintError(const char* what, const Result& result);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_STREAMCALLS_H_
