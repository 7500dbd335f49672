#include "platform/BufferedReader.h"

#include <cstring>

namespace vireline {

BufferedReader::BufferedReader(SequentialFile* file, size_t blockSize)
    : mFile(file), mBlock(new char[blockSize]), mSize(blockSize) {}

bool BufferedReader::Fill(size_t count) {
  if (mEnd - mAt >= count) return true;
  // The unread bytes move to the front, and the block grows only for a
  // request larger than it.
  if (mAt > 0) std::memmove(mBlock.get(), mBlock.get() + mAt, mEnd - mAt);
  mEnd -= mAt;
  mAt = 0;
  if (mSize < count) {
    std::unique_ptr<char[]> larger(new char[count]);
    std::memcpy(larger.get(), mBlock.get(), mEnd);
    mBlock = std::move(larger);
    mSize = count;
  }
  while (mEnd < count && !mDone && mFile != nullptr) {
    size_t got = 0;
    Result result = mFile->Read(mSize - mEnd, mBlock.get() + mEnd, &got);
    if (!result.ok()) mStatus = result;
    if (!result.ok() || got == 0) mDone = true;
    mEnd += result.ok() ? got : 0;
  }
  return mEnd >= count;
}

bool BufferedReader::SkipPrefix(const char* prefix, size_t length) {
  Fill(length);
  if (mEnd - mAt < length || std::memcmp(mBlock.get() + mAt, prefix, length) != 0) return false;
  mAt += length;
  return true;
}

int BufferedReader::GetByte() {
  if (mAt == mEnd && !Refill()) return -1;
  return static_cast<unsigned char>(mBlock[mAt++]);
}

bool BufferedReader::ReadLine(std::string* line, size_t maxLength) {
  line->clear();
  while (line->size() < maxLength) {
    if (mAt == mEnd && !Refill()) break;
    size_t available = mEnd - mAt;
    size_t room = maxLength - line->size();
    if (available > room) available = room;
    const char* start = mBlock.get() + mAt;
    const void* newline = std::memchr(start, '\n', available);
    size_t taken = newline != nullptr ? static_cast<const char*>(newline) - start + 1 : available;
    line->append(start, taken);
    mAt += taken;
    if (newline != nullptr) break;
  }
  return !line->empty();
}

}  // namespace vireline
