#include "files/KeyValueReader.h"

#include <cstring>

namespace vireline {
namespace {

const size_t kUnknown = static_cast<size_t>(-1);
const char kUtf8Bom[] = "\xEF\xBB\xBF";

bool IsLineEnd(char c) { return c == '\n' || c == '\r'; }

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// Trims spaces and tabs from both ends of [*text, *text + *length).
void Trim(const char** text, size_t* length) {
  const char* start = *text;
  const char* end = start + *length;
  while (start < end && IsBlank(*start)) ++start;
  while (end > start && IsBlank(end[-1])) --end;
  *text = start;
  *length = static_cast<size_t>(end - start);
}

}  // namespace

KeyValueReader::KeyValueReader(SequentialFile* file, char* block, size_t blockSize, bool skipBom)
    : mFile(file), mBlock(block), mSize(blockSize), mNextCr(kUnknown), mNextNul(kUnknown) {
  if (!skipBom) return;
  while (mEnd < 3 && Refill()) {
  }
  if (mEnd >= 3 && std::memcmp(mBlock, kUtf8Bom, 3) == 0) mAt = 3;
}

bool KeyValueReader::Refill() {
  if (mDone) return false;
  if (mAt > 0) std::memmove(mBlock, mBlock + mAt, mEnd - mAt);
  mEnd -= mAt;
  mAt = 0;
  mNextCr = mNextNul = kUnknown;
  size_t got = 0;
  Result result = mFile->Read(mSize - mEnd, mBlock + mEnd, &got);
  if (!result.ok()) mStatus = result;
  if (!result.ok() || got == 0) {
    mDone = true;
    return false;
  }
  mEnd += got;
  return true;
}

size_t KeyValueReader::Find(char ch, size_t from, size_t* cache) const {
  if (*cache == kUnknown || *cache < from) {
    const void* found = std::memchr(mBlock + from, ch, mEnd - from);
    *cache = found != nullptr ? static_cast<size_t>(static_cast<const char*>(found) - mBlock) : mEnd;
  }
  return *cache;
}

bool KeyValueReader::NextLine(size_t* start, size_t* end) {
  for (;;) {
    while (mAt < mEnd && IsLineEnd(mBlock[mAt])) ++mAt;
    if (mAt == mEnd) {
      if (!Refill()) return false;
      continue;
    }
    bool whole = mEnd - mAt >= kMaxLine;
    size_t limit = whole ? mAt + kMaxLine : mEnd;
    const void* newline = std::memchr(mBlock + mAt, '\n', limit - mAt);
    size_t lineEnd = newline != nullptr ? static_cast<size_t>(static_cast<const char*>(newline) - mBlock) : limit;
    size_t carriageReturn = Find('\r', mAt, &mNextCr);
    if (carriageReturn < lineEnd) lineEnd = carriageReturn;
    // A line that runs past the bytes read so far waits for more of them;
    // one that the file's end (or a failed read) cuts short ends there.
    if (lineEnd == limit && !whole) {
      if (Refill()) continue;
      lineEnd = mEnd;
    }
    *start = mAt;
    *end = lineEnd;
    mAt = lineEnd;
    return true;
  }
}

bool KeyValueReader::Next(KeyValueText* text) {
  size_t start = 0;
  size_t end = 0;
  while (NextLine(&start, &end)) {
    size_t nul = Find('\0', start, &mNextNul);
    if (nul < end) end = nul;
    const char* line = mBlock + start;
    const void* equals = std::memchr(line, '=', end - start);
    if (equals == nullptr) continue;
    text->key = line;
    text->keyLength = static_cast<size_t>(static_cast<const char*>(equals) - line);
    text->value = static_cast<const char*>(equals) + 1;
    text->valueLength = end - start - text->keyLength - 1;
    Trim(&text->key, &text->keyLength);
    Trim(&text->value, &text->valueLength);
    return true;
  }
  return false;
}

}  // namespace vireline
