// Splits the lines of a key=value file into keys and values straight from a
// block of the file's bytes, with the line rules of CFileIO::GetLine (a line
// ends at "\r" or "\n", empty lines are skipped, a line longer than 255
// bytes goes on as the next one, a NUL byte ends a line's text) and the
// trimming of CFileIO::StripWhitespace: a fgets loop's cost, without a copy
// of each line or a look at each byte.
#ifndef VIRELINE_FILES_KEYVALUEREADER_H_
#define VIRELINE_FILES_KEYVALUEREADER_H_

#include <cstddef>

#include "platform/Env.h"

namespace vireline {

// A line's key and value, trimmed; they point into the reader's block and
// last until its next call. Neither is NUL-terminated.
struct KeyValueText {
  const char* key;
  size_t keyLength;
  const char* value;
  size_t valueLength;
};

class KeyValueReader {
 public:
  // The bytes a line keeps before the rest goes on as the next line.
  static const size_t kMaxLine = 255;

  // Reads `file` (not owned) through `block` (not owned, at least kMaxLine + 1
  // bytes), consuming a UTF-8 byte-order mark at its start when `skipBom`.
  KeyValueReader(SequentialFile* file, char* block, size_t blockSize, bool skipBom);

  KeyValueReader(const KeyValueReader&) = delete;
  KeyValueReader& operator=(const KeyValueReader&) = delete;

  // The next line holding "=", split at its first "="; false at the end of
  // the file or after a failed read (what came before it is handed out).
  bool Next(KeyValueText* text);

  // The bytes of the block not handed out yet: what the rest of a file that
  // fitted the block takes at most.
  size_t Unread() const { return mEnd - mAt; }

  // The first failed read; success when every read succeeded.
  const Result& status() const { return mStatus; }

 private:
  // Sets [*start, *end) to the next line (at most kMaxLine bytes); false at the end.
  bool NextLine(size_t* start, size_t* end);

  // Moves the unread bytes to the front and reads once after them; false when
  // nothing more came.
  bool Refill();

  // The first `ch` at or after `from` among the bytes read, or mEnd; `*cache`
  // keeps the last answer, so a byte that rarely occurs costs one search per block.
  size_t Find(char ch, size_t from, size_t* cache) const;

  SequentialFile* mFile;
  char* mBlock;
  size_t mSize;
  size_t mAt = 0;
  size_t mEnd = 0;
  size_t mNextCr;   // see Find
  size_t mNextNul;  // see Find
  bool mDone = false;
  Result mStatus;
};

}  // namespace vireline

#endif  // VIRELINE_FILES_KEYVALUEREADER_H_
