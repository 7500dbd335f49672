// The POSIX file objects PosixEnv hands out, on host paths, and the errno
// conversion every POSIX call of the platform shares.
#ifndef VIRELINE_PLATFORM_POSIXFILES_H_
#define VIRELINE_PLATFORM_POSIXFILES_H_

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Env.h"

namespace vireline {

// The one place where errno becomes a Result: the failure just seen on `path`.
Result PosixError(const std::string& path = std::string());

// One seek to the end of descriptor `fd` and a write of all `size` bytes.
Result AppendToDescriptor(int fd, const void* data, size_t size, const std::string& path);

// Erases [offset, offset + length) of the partition or plain file open in `fd`.
Result EraseDescriptor(int fd, uint32_t offset, uint32_t length, const std::string& path);

// Opens `path` read-only.
Result NewPosixSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file);

// Reads descriptor `fd`, open for reading on host path `path`; the file owns
// and closes it.
std::unique_ptr<SequentialFile> NewPosixSequentialFileOn(int fd, const std::string& path);

// True when descriptor `fd` is a FIFO, socket or device node, which a reader
// of files must not wait on or read without end.
bool IsSpecialDescriptor(int fd);

// Opens `path` write-only with open flags `createFlags` (O_TRUNC or O_EXCL with O_CREAT).
Result NewPosixWritableFile(const std::string& path, int createFlags, std::unique_ptr<WritableFile>* file);

// Opens the existing file `path` read-write.
Result NewPosixRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_POSIXFILES_H_
