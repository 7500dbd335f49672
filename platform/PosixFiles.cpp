#include "platform/PosixFiles.h"

#include <fcntl.h>
#include <mtd/mtd-user.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace vireline {

Result PosixError(const std::string& path) { return Result::Error(errno, path); }

namespace {

const size_t kWriteBufferSize = 65536;
const mode_t kNewFileMode = 0666;  // before the umask, as fopen creates files

// Writes all `size` bytes at the descriptor's position, going on after
// interrupted and short writes.
Result WriteAll(int fd, const char* bytes, size_t size, const std::string& path) {
  while (size > 0) {
    ssize_t written = ::write(fd, bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return PosixError(path);
    if (written == 0) return Result::Error(EIO, path);
    bytes += written;
    size -= static_cast<size_t>(written);
  }
  return Result::Ok();
}

// Fills [offset, offset + length) of a plain file with the erased-flash value.
Result FillErased(int fd, uint32_t offset, uint32_t length, const std::string& path) {
  char erased[4096];
  std::memset(erased, 0xFF, sizeof erased);
  while (length > 0) {
    size_t chunk = length < sizeof erased ? length : sizeof erased;
    ssize_t written = ::pwrite64(fd, erased, chunk, offset);
    if (written < 0) return PosixError(path);
    if (written == 0) return Result::Error(EIO, path);
    offset += static_cast<uint32_t>(written);
    length -= static_cast<uint32_t>(written);
  }
  return Result::Ok();
}

// Closes `*fd` once; later calls report EBADF.
Result CloseOnce(int* fd, const std::string& path) {
  if (*fd < 0) return Result::Error(EBADF, path);
  int closing = *fd;
  *fd = -1;
  return ::close(closing) == 0 ? Result::Ok() : PosixError(path);
}

class PosixSequentialFile : public SequentialFile, public SizeHinting {
 public:
  PosixSequentialFile(int fd, const std::string& path) : mFd(fd), mPath(path) {}
  ~PosixSequentialFile() override { CloseOnce(&mFd, mPath); }

  Result Close() override { return CloseOnce(&mFd, mPath); }

  bool SizeHint(uint64_t* size) override {
    struct stat64 info;
    if (::fstat64(mFd, &info) != 0 || !S_ISREG(info.st_mode)) return false;
    *size = static_cast<uint64_t>(info.st_size);
    return true;
  }

  Result Read(size_t n, char* scratch, size_t* got) override {
    *got = 0;
    for (;;) {
      ssize_t count = ::read(mFd, scratch, n);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return PosixError(mPath);
      *got = static_cast<size_t>(count);
      return Result::Ok();
    }
  }

 private:
  int mFd;
  std::string mPath;
};

// Buffers small appends so that a file written a line at a time costs a few writes.
class PosixWritableFile : public WritableFile {
 public:
  PosixWritableFile(int fd, const std::string& path) : mFd(fd), mPath(path) {}
  ~PosixWritableFile() override { Close(); }

  Result Append(const void* data, size_t size) override {
    if (mFd < 0) return Result::Error(EBADF, mPath);
    const char* bytes = static_cast<const char*>(data);
    if (mBuffer.size() + size <= kWriteBufferSize) {
      mBuffer.append(bytes, size);
      return Result::Ok();
    }
    Result flushed = Flush();
    if (!flushed.ok()) return flushed;
    if (size <= kWriteBufferSize) {
      mBuffer.assign(bytes, size);
      return Result::Ok();
    }
    return WriteAll(mFd, bytes, size, mPath);
  }

  Result Flush() override {
    if (mFd < 0) return Result::Error(EBADF, mPath);
    Result result = WriteAll(mFd, mBuffer.data(), mBuffer.size(), mPath);
    mBuffer.clear();
    return result;
  }

  Result Sync() override {
    Result result = Flush();
    if (result.ok() && ::fsync(mFd) != 0) result = PosixError(mPath);
    return result;
  }

  Result Close() override {
    if (mFd < 0) return Result::Error(EBADF, mPath);
    Result flushed = Flush();
    Result closed = CloseOnce(&mFd, mPath);
    return flushed.ok() ? closed : flushed;
  }

 private:
  int mFd;
  std::string mPath;
  std::string mBuffer;
};

class PosixRandomRWFile : public RandomRWFile {
 public:
  PosixRandomRWFile(int fd, const std::string& path) : mFd(fd), mPath(path) {}
  ~PosixRandomRWFile() override { CloseOnce(&mFd, mPath); }

  Result Size(uint64_t* size) override {
    struct stat64 st;
    if (::fstat64(mFd, &st) != 0) return PosixError(mPath);
    *size = static_cast<uint64_t>(st.st_size);
    return Result::Ok();
  }

  Result Read(uint64_t offset, size_t n, char* scratch, size_t* got) override {
    *got = 0;
    for (;;) {
      ssize_t count = ::pread64(mFd, scratch, n, static_cast<off64_t>(offset));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return PosixError(mPath);
      *got = static_cast<size_t>(count);
      return Result::Ok();
    }
  }

  Result Write(uint64_t offset, const void* data, size_t size) override {
    if (::lseek64(mFd, static_cast<off64_t>(offset), SEEK_SET) < 0) return PosixError(mPath);
    return WriteAll(mFd, static_cast<const char*>(data), size, mPath);
  }

  Result AppendAtEnd(const void* data, size_t size) override {
    return AppendToDescriptor(mFd, data, size, mPath);
  }

  Result Erase(uint32_t offset, uint32_t length) override { return EraseDescriptor(mFd, offset, length, mPath); }

  Result Sync() override { return ::fsync(mFd) == 0 ? Result::Ok() : PosixError(mPath); }

  Result Close() override { return CloseOnce(&mFd, mPath); }

 private:
  int mFd;
  std::string mPath;
};

}  // namespace

Result AppendToDescriptor(int fd, const void* data, size_t size, const std::string& path) {
  if (::lseek64(fd, 0, SEEK_END) < 0) return PosixError(path);
  return WriteAll(fd, static_cast<const char*>(data), size, path);
}

Result EraseDescriptor(int fd, uint32_t offset, uint32_t length, const std::string& path) {
  struct stat64 st;
  if (::fstat64(fd, &st) != 0) return PosixError(path);
  if (S_ISREG(st.st_mode)) return FillErased(fd, offset, length, path);
  erase_info_user erase;
  erase.start = offset;
  erase.length = length;
  return ::ioctl(fd, MEMERASE, &erase) == 0 ? Result::Ok() : PosixError(path);
}

Result NewPosixSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) {
  file->reset();
  int fd = ::open64(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return PosixError(path);
  file->reset(new PosixSequentialFile(fd, path));
  return Result::Ok();
}

std::unique_ptr<SequentialFile> NewPosixSequentialFileOn(int fd, const std::string& path) {
  return std::unique_ptr<SequentialFile>(new PosixSequentialFile(fd, path));
}

bool IsSpecialDescriptor(int fd) {
  struct stat64 st;
  return ::fstat64(fd, &st) == 0 && !S_ISREG(st.st_mode) && !S_ISDIR(st.st_mode);
}

Result NewPosixWritableFile(const std::string& path, int createFlags, std::unique_ptr<WritableFile>* file) {
  file->reset();
  int fd = ::open64(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | createFlags, kNewFileMode);
  if (fd < 0) return PosixError(path);
  file->reset(new PosixWritableFile(fd, path));
  return Result::Ok();
}

Result NewPosixRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) {
  file->reset();
  int fd = ::open64(path.c_str(), O_RDWR | O_CLOEXEC);
  if (fd < 0) return PosixError(path);
  file->reset(new PosixRandomRWFile(fd, path));
  return Result::Ok();
}

}  // namespace vireline
