#include <vireline/CFileIO.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include <vireline/CFileUtils.h>
#include <vireline/COrvoInterface.h>

#include "files/EntryStrings.h"
#include "files/KeyValueReader.h"
#include "files/UnreadableFiles.h"
#include "platform/AtomicFile.h"
#include "platform/Env.h"
#include "platform/StreamCalls.h"

namespace {

const U32 kMissing = 0xFFFFFFFFu;

// Bytes of the item buffer of SetUIntList: "%d" of INT32_MIN does not fit and
// is cut to its first ten characters, as the format always was.
const U32 kListItemSize = 11;

// Malloc for a count of elements; null when the size does not fit Malloc's
// signed 32-bit argument.
void* MallocArray(size_t count, size_t elementSize) {
  if (elementSize != 0 && count > static_cast<size_t>(INT32_MAX) / elementSize) return nullptr;
  return COrvoInterface::Malloc(static_cast<int32_t>(count * elementSize));
}

char* CopyString(const char* text, size_t length) {
  char* copy = static_cast<char*>(MallocArray(length + 1, 1));
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, text, length);
  copy[length] = '\0';
  return copy;
}

char* CopyString(const char* text) { return CopyString(text, std::strlen(text)); }

// The entries the block has room for at `count` entries. It grows by
// doubling, so reading a file of n lines costs O(n) and not O(n^2); a table of
// a few dozen keys is allocated once or twice.
U32 CapacityFor(U32 count) {
  if (count == 0) return 0;
  U32 capacity = 8;
  while (capacity < count) {
    if (capacity > UINT32_MAX / 2) return count;
    capacity *= 2;
  }
  return capacity;
}

// Behind the entries, in the same block, sit the chain of blocks holding the
// keys and values read from the file, then a hash index of the keys, so a
// key is found (and a new one added) in constant time however long the table
// grows. The tail counts the entries indexed so far: reading a file indexes
// its entries once, at the end, and every change catches the index up, so
// lookups (const, and safe to run side by side) only read it; entries that a
// derived class appended by itself are searched one by one. Its slots hold an
// entry's index + 1 (0: empty) and only the first entry of a key, so lookups
// still find the first of duplicate keys. It has twice as many slots as the
// block has entries. A table of at most kLinearEntries entries is not indexed
// at all: comparing a few dozen short keys costs less than building an index
// for the handful of lookups a file usually gets.
struct TableTail {
  vireline::EntryStringBlock* strings;
  U32 indexed;
};

const U32 kLinearEntries = 64;

// The strings of a line take at most its bytes and its line end; a line the
// file's end or the 255-byte cut leaves without one takes a byte more.
const size_t kTerminatorSlack = 64;

U32 SlotCount(U32 capacity) { return capacity * 2; }

// Bytes of a block for `capacity` entries and their index; 0 when too large.
size_t BlockBytes(U32 capacity) {
  size_t perEntry = sizeof(tKeyValueEntry) + 2 * sizeof(U32);
  if (capacity > (static_cast<size_t>(INT32_MAX) - sizeof(TableTail)) / perEntry) return 0;
  return capacity * perEntry + sizeof(TableTail);
}

// The tail of a table of `count` entries (in a block sized for them).
TableTail* TailOf(tKeyValueEntry* entries, U32 count) {
  return reinterpret_cast<TableTail*>(entries + CapacityFor(count));
}

// The index slots of a table of `count` entries.
U32* SlotsOf(tKeyValueEntry* entries, U32 count) { return reinterpret_cast<U32*>(TailOf(entries, count) + 1); }

// The chain holding the strings read into a table of `count` entries, or null.
vireline::EntryStringBlock* StringsOf(tKeyValueEntry* entries, U32 count) {
  return count == 0 ? nullptr : TailOf(entries, count)->strings;
}

// Frees `text` (may be null) unless it was read from the file: those strings
// live in the table's blocks `strings`.
void FreeUnlessRead(const vireline::EntryStringBlock* strings, char* text) {
  if (!vireline::ChainHolds(strings, text)) COrvoInterface::Free(text);
}

// A block for `capacity` entries, holding no strings, with nothing indexed;
// null when memory is short.
tKeyValueEntry* AllocateTable(U32 capacity) {
  size_t bytes = BlockBytes(capacity);
  if (bytes == 0) return nullptr;
  auto* entries = static_cast<tKeyValueEntry*>(COrvoInterface::Malloc(static_cast<int32_t>(bytes)));
  if (entries != nullptr) {
    auto* tail = reinterpret_cast<TableTail*>(entries + capacity);
    tail->strings = nullptr;
    tail->indexed = 0;
  }
  return entries;
}

U32 HashKey(const char* key) {
  U32 hash = 2166136261u;  // FNV-1a
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(key); *p != '\0'; ++p) {
    hash = (hash ^ *p) * 16777619u;
  }
  return hash;
}

// The slot of `key`'s first indexed entry, or the empty slot where it would go.
U32* FindSlot(tKeyValueEntry* entries, U32 count, const char* key) {
  U32* slots = SlotsOf(entries, count);
  U32 mask = SlotCount(CapacityFor(count)) - 1;
  for (U32 at = HashKey(key) & mask;; at = (at + 1) & mask) {
    if (slots[at] == 0 || std::strcmp(entries[slots[at] - 1].key, key) == 0) return &slots[at];
  }
}

// Indexes the entries added since the index was last caught up (all of
// them, into cleared slots, when nothing is indexed yet); a small table stays
// unindexed.
void CatchUpIndex(tKeyValueEntry* entries, U32 count) {
  if (count <= kLinearEntries) return;
  U32& indexed = TailOf(entries, count)->indexed;
  if (indexed == count) return;
  if (indexed == 0) std::memset(SlotsOf(entries, count), 0, SlotCount(CapacityFor(count)) * sizeof(U32));
  for (U32 i = indexed; i < count; ++i) {
    U32* slot = FindSlot(entries, count, entries[i].key);
    if (*slot == 0) *slot = i + 1;
  }
  indexed = count;
}

// Moves the table of `count` entries into a block sized for `newCount` when
// that is another size, keeping its first `kept` entries and its strings (the
// index is rebuilt later); false when memory is short.
bool Resize(tKeyValueEntry*& entries, U32 count, U32 newCount, U32 kept) {
  if (count != 0 && CapacityFor(newCount) == CapacityFor(count)) return true;
  tKeyValueEntry* resized = AllocateTable(CapacityFor(newCount));
  if (resized == nullptr) return false;
  if (count != 0) {
    std::memcpy(resized, entries, kept * sizeof(tKeyValueEntry));
    TailOf(resized, newCount)->strings = StringsOf(entries, count);
  }
  COrvoInterface::Free(entries);
  entries = resized;
  return true;
}

// Appends an entry holding `key` (a block the table takes over) to the table
// of `count` entries, growing the block when it is full; null when memory is short.
tKeyValueEntry* AddEntry(tKeyValueEntry*& entries, U32& count, char* key) {
  if (count == UINT32_MAX || !Resize(entries, count, count + 1, count)) return nullptr;
  tKeyValueEntry* entry = &entries[count];
  std::memset(entry, 0, sizeof *entry);
  entry->key = key;
  ++count;
  return entry;
}

// Forgets the index of a table of `count` entries; the next catch-up rebuilds it.
void ResetIndex(tKeyValueEntry* entries, U32 count) {
  if (count != 0) TailOf(entries, count)->indexed = 0;
}

// The entries Parse reads, handed to the table in batches: a file of a few
// dozen keys grows the table once, not by doubling from its first entry.
class ParsedEntries {
 public:
  ParsedEntries(tKeyValueEntry*& entries, U32& count)
      : mEntries(entries), mCount(count), mStrings(StringsOf(entries, count)) {}
  ParsedEntries(const ParsedEntries&) = delete;
  ParsedEntries& operator=(const ParsedEntries&) = delete;
  ~ParsedEntries() { Flush(); }

  // Adds the entry of a line; `unread` is what the rest of the file takes at
  // least, a hint for the size of the strings' first block.
  void Add(const vireline::KeyValueText& text, size_t unread) {
    uint8_t quoted = 0, listQuoted = 0;
    if (text.valueLength > 0 && text.value[0] == '"') {
      const void* closing = std::memchr(text.value + 1, '"', text.valueLength - 1);
      (closing == text.value + text.valueLength - 1 ? quoted : listQuoted) = 1;
    }
    char* key = vireline::StoreEntryStrings(&mStrings, text.key, text.keyLength, text.value, text.valueLength,
                                            quoted || listQuoted, unread + kTerminatorSlack);
    if (key == nullptr) return;  // memory is short: the line is left out
    if (mStaged == kBatch) Flush();
    tKeyValueEntry& entry = mBatch[mStaged++];
    entry.key = key;
    entry.value = key + text.keyLength + 1;
    entry.quoted = quoted;
    entry.listQuoted = listQuoted;
  }

 private:
  static const U32 kBatch = 64;

  // Appends the staged entries and records the strings with the table, or
  // frees the strings when there is no table to hold them.
  void Flush() {
    if (mStaged != 0 && mCount <= UINT32_MAX - mStaged && Resize(mEntries, mCount, mCount + mStaged, mCount)) {
      std::memcpy(mEntries + mCount, mBatch, mStaged * sizeof(tKeyValueEntry));
      mCount += mStaged;
    }
    mStaged = 0;
    if (mCount != 0) {
      TailOf(mEntries, mCount)->strings = mStrings;
    } else {
      vireline::FreeChain(mStrings);
      mStrings = nullptr;
    }
  }

  tKeyValueEntry*& mEntries;
  U32& mCount;
  vireline::EntryStringBlock* mStrings;
  tKeyValueEntry mBatch[kBatch];
  U32 mStaged = 0;
};

bool IsHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

U32 HexValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<U32>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<U32>(c - 'a' + 10);
  return static_cast<U32>(c - 'A' + 10);
}

// Accumulates one digit; false on overflow of 32 bits.
bool AddDigit(U32* value, U32 base, U32 digit) {
  if (*value > (UINT32_MAX - digit) / base) return false;
  *value = *value * base + digit;
  return true;
}

// A whole value of digits in `base`; 0xFFFFFFFF when a character is not a
// digit or the number does not fit 32 bits (the device's 32-bit strtoul
// saturates there too).
U32 ReadWholeNumber(const char* digits, U32 base) {
  U32 value = 0;
  for (const char* p = digits; *p != '\0'; ++p) {
    bool isDigit = base == 16 ? IsHexDigit(*p) : (*p >= '0' && *p <= '9');
    if (!isDigit || !AddDigit(&value, base, HexValue(*p))) return kMissing;
  }
  return value;
}

bool IsCSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// What a 32-bit strtoul(text, NULL, 16) gives: leading white space, a sign
// and a "0x" prefix are accepted, reading stops at the first non-hex
// character, overflow gives 0xFFFFFFFF and "-" negates modulo 2^32.
U32 ReadHexPrefix(const char* text) {
  const char* p = text;
  while (IsCSpace(*p)) ++p;
  bool negative = false;
  if (*p == '+' || *p == '-') {
    negative = *p == '-';
    ++p;
  }
  if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X') && IsHexDigit(p[2])) p += 2;
  U32 value = 0;
  for (; IsHexDigit(*p); ++p) {
    if (!AddDigit(&value, 16, HexValue(*p))) return kMissing;
  }
  return negative ? 0u - value : value;
}

// The `count` texts itemAt(0) ... itemAt(count - 1) joined by commas, in one
// Malloc'ed string; null when memory is short or the result does not fit.
// itemAt is called twice per item (to measure, then to copy).
template <typename ItemAt>
char* JoinWithCommas(U32 count, ItemAt itemAt) {
  if (count == 0 || count - 1 > static_cast<U32>(INT32_MAX) - 1) return nullptr;
  size_t length = count - 1;  // the commas
  for (U32 i = 0; i < count; ++i) {
    size_t itemLength = std::strlen(itemAt(i));
    if (itemLength > static_cast<size_t>(INT32_MAX) - 1 - length) return nullptr;
    length += itemLength;
  }
  char* list = static_cast<char*>(MallocArray(length + 1, 1));
  if (list == nullptr) return nullptr;
  size_t at = 0;
  for (U32 i = 0; i < count; ++i) {
    if (i != 0) list[at++] = ',';
    const char* item = itemAt(i);
    size_t itemLength = std::strlen(item);
    std::memcpy(list + at, item, itemLength);
    at += itemLength;
  }
  list[at] = '\0';
  return list;
}

// Calls put(char) for every character of `value` written as a list of quoted
// items: each comma-separated item (empty ones too) between double quotes.
template <typename Put>
void PutListQuoted(const char* value, Put put) {
  put('"');
  for (const char* p = value; *p != '\0'; ++p) {
    if (*p == ',') {
      put('"');
      put(',');
      put('"');
    } else {
      put(*p);
    }
  }
  put('"');
}

// One output line, cut after kLineSize - 1 bytes like the 256-byte buffer that
// the format has always been written through. Built without allocating, so a
// shortage of memory cannot cut a file short.
class LineBuffer {
 public:
  explicit LineBuffer(U32 size) : mSize(size < sizeof mText ? size : sizeof mText), mLength(0) { mText[0] = '\0'; }
  void Put(char c) {
    if (mLength + 1 < mSize) {
      mText[mLength++] = c;
      mText[mLength] = '\0';
    }
  }
  void Put(const char* text) {
    for (; *text != '\0' && mLength + 1 < mSize; ++text) Put(*text);
  }
  const char* text() const { return mText; }

 private:
  char mText[256];
  U32 mSize;
  U32 mLength;
};

// Reads lines into `buffer` with `readLine` (its length, or -1 at the end)
// until one holds "=", and splits it there in place with `strip` applied to
// both sides; false at the end.
template <typename ReadLine>
bool NextPair(ReadLine readLine, char* buffer, char* (*strip)(char*), char*& key, char*& value) {
  while (readLine() >= 0) {
    char* equals = std::strchr(buffer, '=');  // a NUL byte ends the line's text
    if (equals == nullptr) continue;
    *equals = '\0';
    key = strip(buffer);
    value = strip(equals + 1);
    return true;
  }
  return false;
}

// Writes `line` to `file`; false (and a trace) when a byte of it fails.
bool AppendLine(vireline::WritableFile* file, const char* line) {
  if (file->Append(line, std::strlen(line)).ok()) return true;
  COrvoInterface::Trace("CFileIO::WriteBuffer( %s ) - WRITE FAILURE.", line);
  return false;
}

// The file Parse reads on this thread: the one Open lends it while it runs
// Parse, else none, and Parse reads a client's stream in mpFile. Parse
// reports back whether a read failed.
struct ParseSource {
  vireline::SequentialFile* file;
  bool failed;
};

thread_local ParseSource* tParseSource = nullptr;

class LentSource {
 public:
  explicit LentSource(vireline::SequentialFile* file) : mSource{file, false}, mPrevious(tParseSource) {
    tParseSource = &mSource;
  }
  ~LentSource() { tParseSource = mPrevious; }
  LentSource(const LentSource&) = delete;
  LentSource& operator=(const LentSource&) = delete;

  // True when a read failed while Parse read the file.
  bool failed() const { return mSource.failed; }

 private:
  ParseSource mSource;
  ParseSource* mPrevious;
};

// Bytes read at a time: as a C stream reads, and small enough for any stack.
const size_t kReadBlock = 4096;

}  // namespace

CFileIO::CFileIO()
    : mpFile(nullptr), mDirty(0), mImmediateSynch(0), mpEntries(nullptr), mNumEntries(0), mpPath(nullptr) {}

CFileIO::CFileIO(const CFileIO& other) : CFileIO() {
  mImmediateSynch = other.mImmediateSynch;
  Open(other.mpPath);
}

CFileIO& CFileIO::operator=(const CFileIO& other) {
  if (this == &other) return *this;
  mImmediateSynch = other.mImmediateSynch;
  Open(other.mpPath);
  return *this;
}

CFileIO::~CFileIO() { Close(); }

bool CFileIO::Open(const char* path) {
  if (path == nullptr) return false;
  char* boundPath = CopyString(path);  // copied first: `path` may be our own mpPath
  if (boundPath == nullptr) return false;
  Close();
  mpPath = boundPath;
  std::unique_ptr<vireline::SequentialFile> file;
  if (!vireline::Env::Current()->NewSequentialFile(mpPath, &file).ok()) {
    // Only a missing file may be created afresh from an empty table; one that
    // exists but does not open (a flash read error, no permission) is kept.
    vireline::UnreadableFiles::Mark(this, !vireline::UnreadableFiles::IsMissing(mpPath));
    return false;
  }
  // mpFile stays null: Parse reads the file Open lends it.
  LentSource lent(file.get());
  Parse();
  vireline::UnreadableFiles::Mark(this, lent.failed());  // a read error cut the table short
  mDirty = 0;
  return true;
}

void CFileIO::Close() {
  if (mpFile != nullptr) {
    COrvoInterface::FClose(mpFile);
    mpFile = nullptr;
  }
  COrvoInterface::Free(mpPath);
  mpPath = nullptr;
  vireline::UnreadableFiles::Mark(this, false);
  Clear();
}

void CFileIO::Clear() {
  vireline::EntryStringBlock* strings = StringsOf(mpEntries, mNumEntries);
  for (U32 i = 0; i < mNumEntries; ++i) {
    FreeUnlessRead(strings, mpEntries[i].value);
    FreeUnlessRead(strings, mpEntries[i].key);
  }
  vireline::FreeChain(strings);
  COrvoInterface::Free(mpEntries);
  mpEntries = nullptr;
  mNumEntries = 0;
}

U32 CFileIO::Keys(char**& out) const {
  if (mNumEntries == 0) return 0;
  char** keys = static_cast<char**>(MallocArray(mNumEntries, sizeof(char*)));
  if (keys == nullptr) return 0;
  for (U32 i = 0; i < mNumEntries; ++i) keys[i] = mpEntries[i].key;
  out = keys;
  return mNumEntries;
}

bool CFileIO::HasKey(const char* key) const { return FindKey(key) != nullptr; }

tKeyValueEntry* CFileIO::FindKey(const char* key) const {
  if (key == nullptr || mNumEntries == 0) return nullptr;
  U32 indexed = TailOf(mpEntries, mNumEntries)->indexed;
  if (indexed != 0) {
    U32 slot = *FindSlot(mpEntries, mNumEntries, key);
    if (slot != 0) return &mpEntries[slot - 1];
  }
  for (U32 i = indexed; i < mNumEntries; ++i) {
    const char* candidate = mpEntries[i].key;
    if (candidate[0] == key[0] && std::strcmp(candidate, key) == 0) return &mpEntries[i];
  }
  return nullptr;
}

const tKeyValueEntry* CFileIO::GetEntry(U32 index) const {
  return index < mNumEntries ? &mpEntries[index] : nullptr;
}

const char* CFileIO::GetStr(const char* key) const {
  const tKeyValueEntry* entry = FindKey(key);
  return entry ? entry->value : nullptr;
}

U32 CFileIO::GetUInt(const char* key) const {
  const tKeyValueEntry* entry = FindKey(key);
  if (entry == nullptr) return kMissing;
  const char* value = entry->value ? entry->value : "";
  if (value[0] == '0' && value[1] == 'x' && value[2] != '\0') return ReadWholeNumber(value + 2, 16);
  if (value[0] == '\0') return 0;
  return ReadWholeNumber(value, 10);
}

U32 CFileIO::GetUIntList(const char* key, U32*& out) const {
  const tKeyValueEntry* entry = FindKey(key);
  if (entry == nullptr) return 0;
  const char* value = entry->value;
  if (value == nullptr || value[0] == '\0') {
    out = nullptr;
    return 0;
  }
  U32 count = CharCount(value, ',') + 1;
  U32* items = static_cast<U32*>(MallocArray(count, sizeof(U32)));
  if (items == nullptr) {
    out = nullptr;
    return 0;
  }
  std::memset(items, 0, count * sizeof(U32));
  const char* item = value;
  for (U32 i = 0; i < count; ++i) {
    items[i] = ReadHexPrefix(item);
    const char* comma = std::strchr(item, ',');
    if (comma == nullptr) break;
    item = comma + 1;
  }
  out = items;
  return count;
}

U32 CFileIO::GetStrList(const char* key, char**& out) const {
  const tKeyValueEntry* entry = FindKey(key);
  if (entry == nullptr) return 0;
  if (entry->value == nullptr) {
    out = nullptr;
    return 0;
  }
  return Split(entry->value, ",", out);
}

bool CFileIO::SetStr(const char* key, const char* value) {
  if (key == nullptr) return false;
  char* copy = nullptr;  // copied first: `value` may be the entry's old value, which is freed
  if (value != nullptr && (copy = CopyString(value)) == nullptr) return false;
  return StoreValue(key, copy);
}

bool CFileIO::SetUInt(const char* key, U32 value) {
  char text[16];
  COrvoInterface::SNPrintF(text, sizeof text, "0x%08X", value);
  return SetStr(key, text);
}

bool CFileIO::SetUIntList(const char* key, const U32* values, U32 count) {
  if (key == nullptr || (values == nullptr && count != 0)) return false;
  if (count == 0) return StoreValue(key, nullptr);
  char item[kListItemSize];
  char* list = JoinWithCommas(count, [&](U32 i) {
    COrvoInterface::SNPrintF(item, sizeof item, "%d", static_cast<int32_t>(values[i]));
    return item;
  });
  return list != nullptr && StoreValue(key, list);
}

bool CFileIO::SetStrList(const char* key, const char* const* strings, U32 count) {
  if (key == nullptr || strings == nullptr || count == 0) return false;
  char* list = JoinWithCommas(count, [strings](U32 i) { return strings[i] ? strings[i] : ""; });
  return list != nullptr && StoreValue(key, list);
}

bool CFileIO::StoreValue(const char* key, char* value) {
  tKeyValueEntry* entry = PrepareEntry(key);
  if (entry == nullptr) {
    COrvoInterface::Free(value);
    return false;
  }
  entry->value = value;
  return Changed(true);
}

bool CFileIO::RmKey(const char* key) {
  tKeyValueEntry* entry = FindKey(key);
  if (entry == nullptr) return false;
  U32 index = static_cast<U32>(entry - mpEntries);
  vireline::EntryStringBlock* strings = StringsOf(mpEntries, mNumEntries);
  FreeUnlessRead(strings, entry->value);
  FreeUnlessRead(strings, entry->key);
  mDirty = 1;
  U32 remaining = mNumEntries - 1;
  if (remaining == 0) {
    vireline::FreeChain(strings);
    COrvoInterface::Free(mpEntries);
    mpEntries = nullptr;
  } else {
    // The entries after the removed one move up by one: order is kept, and
    // nothing outside the table is read. A block that cannot shrink (memory
    // is short) still has room for the smaller table's tail and index.
    std::memmove(mpEntries + index, mpEntries + index + 1, (remaining - index) * sizeof(tKeyValueEntry));
    if (!Resize(mpEntries, mNumEntries, remaining, remaining)) TailOf(mpEntries, remaining)->strings = strings;
    ResetIndex(mpEntries, remaining);
    CatchUpIndex(mpEntries, remaining);
  }
  mNumEntries = remaining;
  return Changed(true);
}

void CFileIO::SetImmediateSynch(bool immediateSynch) { mImmediateSynch = immediateSynch ? 1 : 0; }

bool CFileIO::Changed(bool ok) {
  if (ok && mImmediateSynch) return Write();
  return ok;
}

bool CFileIO::Write() {
  if (!mDirty) return true;
  if (vireline::UnreadableFiles::IsMarked(this)) {
    COrvoInterface::Trace("CFileIO::Write() - failed opening %s for writing.", mpPath ? mpPath : "(null)");
    return false;
  }
  if (mpFile != nullptr) {
    COrvoInterface::FCloseAtomic(mpFile);
    mpFile = nullptr;
  }
  std::unique_ptr<vireline::WritableFile> file;
  auto openAtomic = [&] { return mpPath != nullptr && vireline::NewAtomicFile(mpPath, false, &file).ok(); };
  if (!openAtomic()) {
    CFileUtils::MkPath(mpPath, true);
    openAtomic();
  }
  if (file == nullptr) {
    COrvoInterface::Trace("CFileIO::Write() - failed opening %s for writing.", mpPath ? mpPath : "(null)");
    return false;
  }
  bool written = true;
  for (U32 i = 0; i < mNumEntries && written; ++i) {
    const tKeyValueEntry& entry = mpEntries[i];
    LineBuffer line(kLineSize);
    line.Put(entry.key);
    line.Put('=');
    if (entry.value != nullptr) {
      if (entry.listQuoted) {
        PutListQuoted(entry.value, [&line](char c) { line.Put(c); });
      } else if (entry.quoted) {
        line.Put('"');
        line.Put(entry.value);
        line.Put('"');
      } else {
        line.Put(entry.value);
      }
    }
    line.Put('\n');
    written = AppendLine(file.get(), line.text());
  }
  // After a failed write the atomic close keeps the old file.
  bool closed = file->Close().ok();
  mDirty = 0;
  return written && closed;
}

tKeyValueEntry* CFileIO::PrepareEntry(const char* key) {
  tKeyValueEntry* entry = FindKey(key);
  if (entry != nullptr) {
    FreeUnlessRead(StringsOf(mpEntries, mNumEntries), entry->value);
    entry->value = nullptr;
  } else {
    entry = NewEntry(key);
    if (entry == nullptr) return nullptr;
    CatchUpIndex(mpEntries, mNumEntries);
  }
  mDirty = 1;
  return entry;
}

tKeyValueEntry* CFileIO::NewEntry(const char* key) {
  if (key == nullptr) return nullptr;
  char* keyCopy = CopyString(key);
  if (keyCopy == nullptr) return nullptr;
  tKeyValueEntry* entry = AddEntry(mpEntries, mNumEntries, keyCopy);
  if (entry == nullptr) COrvoInterface::Free(keyCopy);
  return entry;
}

char* CFileIO::AddQuotes(const char* value) {
  if (value == nullptr) return nullptr;
  size_t length = std::strlen(value);
  char* quoted = static_cast<char*>(MallocArray(length + 3, 1));
  if (quoted == nullptr) return nullptr;
  quoted[0] = '"';
  std::memcpy(quoted + 1, value, length);
  quoted[length + 1] = '"';
  quoted[length + 2] = '\0';
  return quoted;
}

char* CFileIO::AddListQuotes(const char* value) {
  if (value == nullptr) return nullptr;
  size_t length = 0;
  PutListQuoted(value, [&length](char) { ++length; });
  char* quoted = static_cast<char*>(MallocArray(length + 1, 1));
  if (quoted == nullptr) return nullptr;
  size_t at = 0;
  PutListQuoted(value, [quoted, &at](char c) { quoted[at++] = c; });
  quoted[at] = '\0';
  return quoted;
}

void CFileIO::StripQuotes(char* text) {
  if (text == nullptr) return;
  char* to = text;
  for (const char* from = text; *from != '\0'; ++from) {
    if (*from != '"') *to++ = *from;
  }
  *to = '\0';
}

U32 CFileIO::CharCount(const char* text, char ch) {
  U32 count = 0;
  for (const char* p = text; p != nullptr && *p != '\0'; ++p) {
    if (*p == ch) ++count;
  }
  return count;
}

U32 CFileIO::Split(const char* text, const char* separator, char**& out) {
  out = nullptr;
  if (text == nullptr) return 0;
  size_t separatorLength = separator ? std::strlen(separator) : 0;
  U32 count = 1;
  if (separatorLength != 0) {
    for (const char* p = std::strstr(text, separator); p != nullptr; p = std::strstr(p + separatorLength, separator)) {
      ++count;
    }
  }
  char** pieces = static_cast<char**>(MallocArray(count, sizeof(char*)));
  if (pieces == nullptr) return 0;
  const char* start = text;
  for (U32 i = 0; i < count; ++i) {
    const char* end = (i + 1 < count) ? std::strstr(start, separator) : start + std::strlen(start);
    pieces[i] = CopyString(start, static_cast<size_t>(end - start));
    if (pieces[i] == nullptr) {
      for (U32 j = 0; j < i; ++j) COrvoInterface::Free(pieces[j]);
      COrvoInterface::Free(pieces);
      return 0;
    }
    start = end + separatorLength;
  }
  out = pieces;
  return count;
}

char* CFileIO::StripWhitespace(char* text) {
  while (*text == ' ' || *text == '\t') ++text;
  size_t length = std::strlen(text);
  while (length > 0) {
    char last = text[length - 1];
    if (last != ' ' && last != '\t' && last != '\r' && last != '\n') break;
    text[--length] = '\0';
  }
  return text;
}

int CFileIO::GetLine(char* buffer, U32 size) {
  if (buffer == nullptr || size == 0) return -1;
  U32 length = 0;
  if (mpFile == nullptr) {
    buffer[0] = '\0';
    return -1;
  }
  while (length + 1 < size) {
    int c = COrvoInterface::GetC(mpFile);
    if (c == EOF) break;
    if (c == '\r' || c == '\n') {
      if (length > 0) break;
      continue;  // an empty line
    }
    buffer[length++] = static_cast<char>(c);
  }
  buffer[length] = '\0';
  return length > 0 ? static_cast<int>(length) : -1;
}

bool CFileIO::NextLine(char* buffer, U32 size, char*& key, char*& value) {
  return NextPair([&] { return GetLine(buffer, size); }, buffer, &CFileIO::StripWhitespace, key, value);
}

bool CFileIO::CheckUtf8Bom() {
  COrvoInterface::FSeek(mpFile, 0, SEEK_SET);
  static const int kBom[3] = {0xEF, 0xBB, 0xBF};
  for (int i = 0; i < 3; ++i) {
    if (COrvoInterface::GetC(mpFile) != kBom[i]) {
      COrvoInterface::FSeek(mpFile, 0, SEEK_SET);
      return false;
    }
  }
  return true;
}

bool CFileIO::WriteBuffer(const char* line) {
  for (const char* p = line; *p != '\0'; ++p) {
    if (COrvoInterface::PutC(*p, mpFile) == EOF) {
      COrvoInterface::Trace("CFileIO::WriteBuffer( %s ) - WRITE FAILURE.", line);
      return false;
    }
  }
  return true;
}

void CFileIO::Parse() {
  ParseSource* lent = tParseSource;
  std::unique_ptr<vireline::SequentialFile> stream;
  vireline::SequentialFile* source = lent != nullptr ? lent->file : nullptr;
  if (source == nullptr) {
    if (mpFile == nullptr) return;
    CheckUtf8Bom();
    stream = vireline::NewStreamReader(mpFile);
    source = stream.get();
  }
  char block[kReadBlock];
  vireline::KeyValueReader reader(source, block, sizeof block, lent != nullptr);
  {
    ParsedEntries parsed(mpEntries, mNumEntries);
    vireline::KeyValueText text;
    while (reader.Next(&text)) parsed.Add(text, reader.Unread());
  }
  CatchUpIndex(mpEntries, mNumEntries);
  if (lent != nullptr) lent->failed = !reader.status().ok();
}

bool CFileIO::AppendParsed(char* key, char* value) {
  U32 before = mNumEntries;
  {
    ParsedEntries parsed(mpEntries, mNumEntries);
    parsed.Add(vireline::KeyValueText{key, std::strlen(key), value, std::strlen(value)}, 0);
  }
  CatchUpIndex(mpEntries, mNumEntries);
  return mNumEntries != before;
}
