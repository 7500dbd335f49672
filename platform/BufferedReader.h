// Reads a file object in big blocks and hands out its bytes and lines from
// memory, so that line-by-line parsing costs a few large reads.
#ifndef VIRELINE_PLATFORM_BUFFEREDREADER_H_
#define VIRELINE_PLATFORM_BUFFEREDREADER_H_

#include <memory>
#include <string>

#include "platform/Env.h"

namespace vireline {

class BufferedReader {
 public:
  // Reads `file` (not owned) in blocks of `blockSize` bytes.
  explicit BufferedReader(SequentialFile* file, size_t blockSize = 65536);

  BufferedReader(const BufferedReader&) = delete;
  BufferedReader& operator=(const BufferedReader&) = delete;

  // The next byte (0..255), or -1 at the end or after a failed read.
  int GetByte();

  // Consumes the `length` bytes of `prefix` when the unread bytes start with
  // them; otherwise consumes nothing. False then.
  bool SkipPrefix(const char* prefix, size_t length);

  // The bytes up to and including the next '\n', at most `maxLength` of
  // them, in *line (as fgets and getdelim take them); false when none is left.
  bool ReadLine(std::string* line, size_t maxLength = std::string::npos);

  // The first failed read; success when every read succeeded.
  const Result& status() const { return mStatus; }

 private:
  // Reads until at least `count` bytes are unread, or the end; false when fewer are.
  bool Fill(size_t count);

  // Reads the next block; false at the end or on a failure.
  bool Refill() { return Fill(1); }

  SequentialFile* mFile;
  std::unique_ptr<char[]> mBlock;  // not cleared: only bytes read are looked at
  size_t mSize;
  size_t mAt = 0;
  size_t mEnd = 0;
  bool mDone = false;
  Result mStatus;
};

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_BUFFEREDREADER_H_
