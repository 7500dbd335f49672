#include "platform/StreamCalls.h"

#include "platform/PosixFiles.h"

#include <sys/types.h>

#include <cerrno>
#include <cstring>

namespace vireline {

bool SeekStream(FILE* stream, long offset, int whence) {
  return stream != nullptr && std::fseek(stream, offset, whence) == 0;
}

int GetStreamByte(FILE* stream) { return stream == nullptr ? EOF : std::getc(stream); }

int PutStreamByte(int c, FILE* stream) {
  return stream == nullptr ? EOF : std::putc(static_cast<unsigned char>(c), stream);
}

void PrintError(const char* what, const Result& result) {
  std::fprintf(stderr, "%s: %s\n", what, std::strerror(result.error()));
}

namespace {

Result StreamError(FILE* stream) {
  return std::ferror(stream) ? PosixError() : Result::Ok();
}

class StreamReader : public SequentialFile {
 public:
  explicit StreamReader(FILE* stream) : mStream(stream) {}

  Result Read(size_t n, char* scratch, size_t* got) override {
    *got = std::fread(scratch, 1, n, mStream);
    return *got == 0 ? StreamError(mStream) : Result::Ok();
  }

  Result Close() override { return Result::Ok(); }  // the client closes its own stream

 private:
  FILE* mStream;
};

// A client's stream used in place: every call states its position, and the
// stream's own position is left where the call ended.
class StreamFile : public RandomRWFile {
 public:
  explicit StreamFile(FILE* stream) : mStream(stream) {}

  // Measured at the end of the stream, which flushes what waits in its buffer.
  Result Size(uint64_t* size) override {
    *size = 0;
    fpos_t position;
    if (std::fgetpos(mStream, &position) != 0) return PosixError();
    if (fseeko(mStream, 0, SEEK_END) == 0) {
      off_t end = ftello(mStream);
      if (end > 0) *size = static_cast<uint64_t>(end);
    }
    std::fsetpos(mStream, &position);
    return Result::Ok();
  }

  Result Read(uint64_t offset, size_t n, char* scratch, size_t* got) override {
    *got = 0;
    if (fseeko(mStream, static_cast<off_t>(offset), SEEK_SET) != 0) return PosixError();
    *got = std::fread(scratch, 1, n, mStream);
    return *got == 0 ? StreamError(mStream) : Result::Ok();
  }

  Result Write(uint64_t offset, const void* data, size_t size) override {
    if (fseeko(mStream, static_cast<off_t>(offset), SEEK_SET) != 0) return PosixError();
    return std::fwrite(data, 1, size, mStream) == size ? Result::Ok() : Result::Error(EIO);
  }

  Result AppendAtEnd(const void* data, size_t size) override {
    if (fseeko(mStream, 0, SEEK_END) != 0) return PosixError();
    return std::fwrite(data, 1, size, mStream) == size ? Result::Ok() : Result::Error(EIO);
  }

  Result Erase(uint32_t, uint32_t) override { return Result::Error(ENOTSUP); }

  Result Sync() override { return std::fflush(mStream) == 0 ? Result::Ok() : PosixError(); }

  Result Close() override { return Result::Ok(); }  // the client closes its own stream

 private:
  FILE* mStream;
};

}  // namespace

std::unique_ptr<SequentialFile> NewStreamReader(FILE* stream) {
  return std::unique_ptr<SequentialFile>(new StreamReader(stream));
}

std::unique_ptr<RandomRWFile> NewStreamFile(FILE* stream) {
  return std::unique_ptr<RandomRWFile>(new StreamFile(stream));
}

}  // namespace vireline
