// The key=value text file of the legacy layer ("meta.inf", "settings.cfg",
// "profile.dsc", request files): a table of string entries in file order that
// callers read and change as strings, unsigned numbers and comma-separated
// lists, and that Write replaces on disk atomically.
//
// The format, as read: an optional UTF-8 byte-order mark; lines end at CR or
// LF (empty lines are skipped) and are cut after 255 bytes; a line without "="
// is skipped; the key is the text before the first "=", the value the text
// after it, both with spaces and tabs trimmed. A value that starts with a
// double quote is stored with every double quote removed and remembers whether
// it was one quoted string ("a,b") or a list of quoted items ("a","b"), so that
// Write puts the quotes back the same way. Duplicate keys are kept; lookups
// find the first.
//
// Memory handed out (Keys, GetStrList, GetUIntList) comes from
// COrvoInterface::Malloc and is released by the caller with
// COrvoInterface::Free; Keys' strings belong to the table, GetStrList's do not.
#ifndef VIRELINE_CFILEIO_H_
#define VIRELINE_CFILEIO_H_

#include <cstdint>
#include <cstdio>

#include <vireline/Export.h>
#include <vireline/Types.h>

// One key=value line of the table.
struct tKeyValueEntry {
  char* key;           // never null
  char* value;         // null after a set that stored nothing
  uint8_t quoted;      // written back as "value"
  uint8_t listQuoted;  // written back as "item","item",...
};

class VIRELINE_EXPORT CFileIO {
 public:
  // An empty table bound to no file.
  CFileIO();

  // Not a copy of the table: takes `other`'s immediate-synch flag and reads
  // `other`'s file from disk, so unsaved changes of `other` are not seen.
  CFileIO(const CFileIO& other);

  // As the copy constructor; assigning an object to itself does nothing. When
  // `other` has no file, this object keeps its table and file.
  CFileIO& operator=(const CFileIO& other);

  // Closes; unsaved changes are lost (never writes).
  virtual ~CFileIO();

  // Replaces the file with the table when it changed since the last read or
  // write; true when nothing changed. The old file stays whole when any step
  // fails (false). Missing parent folders are created.
  virtual bool Write();

  // Binds `path` and reads it; false when it cannot be opened (the path is
  // still bound, so a later Write creates the file). A null path returns false
  // and changes nothing.
  bool Open(const char* path);

  // Forgets the table and the path.
  void Close();

  // Forgets the table; the path stays bound.
  void Clear();

  // The number of entries and, when there are any, a Malloc'ed array of
  // pointers to the table's keys in file order (free only the array).
  U32 Keys(char**& out) const;

  // True when `key` (case-sensitive) is in the table.
  bool HasKey(const char* key) const;

  // The first entry with `key`, or null.
  tKeyValueEntry* FindKey(const char* key) const;

  // The first entry's value (the table's own string), or null.
  const char* GetStr(const char* key) const;

  // The value as a number: "0x" and hex digits, or decimal digits; an empty
  // value is 0. 0xFFFFFFFF when the key is missing or the value ill-formed.
  U32 GetUInt(const char* key) const;

  // The comma-separated items of the value, each read in base 16, in a
  // Malloc'ed array; their count. A missing key gives 0 and leaves `out`; an
  // empty value gives 0 and a null `out`.
  U32 GetUIntList(const char* key, U32*& out) const;

  // The comma-separated items of the value, each in its own Malloc'ed string,
  // in a Malloc'ed array; their count. A missing key gives 0 and leaves `out`.
  U32 GetStrList(const char* key, char**& out) const;

  // Stores a copy of `value` under `key` (added at the end when new).
  bool SetStr(const char* key, const char* value);

  // Stores `value` as "0x%08X".
  bool SetUInt(const char* key, U32 value);

  // Stores the values in signed decimal joined by commas (note: GetUIntList
  // reads items in base 16). Null `values` with a non-zero count is refused; a
  // count of 0 stores no value.
  bool SetUIntList(const char* key, const U32* values, U32 count);

  // Stores the strings joined by commas; the entry's quoting is unchanged.
  // Null `strings` or a count of 0 is refused.
  bool SetStrList(const char* key, const char* const* strings, U32 count);

  // Removes the first entry with `key`; the others keep their order.
  bool RmKey(const char* key);

  // When on, every successful set or removal ends with Write, whose result it returns.
  void SetImmediateSynch(bool immediateSynch);

  // The bound path, or null.
  const char* GetPath() const { return mpPath; }

  // The number of entries, duplicates included.
  U32 GetEntryCount() const { return mNumEntries; }

  // The index-th entry in file order, or null.
  const tKeyValueEntry* GetEntry(U32 index) const;

 protected:
  // The line buffer of the reader: lines are cut after kLineSize - 1 bytes.
  static const U32 kLineSize = 256;

  // The entry for `key` with its value freed (flags kept), or a new one; sets dirty.
  tKeyValueEntry* PrepareEntry(const char* key);

  // Appends an entry holding a copy of `key`; null when memory is short.
  tKeyValueEntry* NewEntry(const char* key);

  // "\"" + value + "\"", Malloc'ed.
  static char* AddQuotes(const char* value);

  // Every comma-separated item of `value` wrapped in double quotes, Malloc'ed.
  static char* AddListQuotes(const char* value);

  // Removes every double quote from `text` in place.
  static void StripQuotes(char* text);

  // How many times `ch` occurs in `text`.
  static U32 CharCount(const char* text, char ch);

  // Cuts `text` at every `separator` into Malloc'ed pieces; their count
  // (separators + 1), or 0 with a null `out` when memory is short.
  static U32 Split(const char* text, const char* separator, char**& out);

  // Skips leading spaces and tabs and cuts trailing spaces, tabs, CR and LF in place.
  static char* StripWhitespace(char* text);

  // Reads the next non-empty line (at most size - 1 bytes) into `buffer`; its
  // length, or -1 at end of file.
  int GetLine(char* buffer, U32 size);

  // Reads lines until one holds "=" and splits it there in place; false at end of file.
  bool NextLine(char* buffer, U32 size, char*& key, char*& value);

  // Consumes a UTF-8 byte-order mark at the start of the stream; true when there was one.
  bool CheckUtf8Bom();

  // Writes `line` byte by byte; false (and a trace) at the first failing byte.
  bool WriteBuffer(const char* line);

  // Reads the open stream into the table.
  void Parse();

  FILE* mpFile;
  uint8_t mDirty;
  uint8_t mImmediateSynch;
  tKeyValueEntry* mpEntries;
  U32 mNumEntries;
  char* mpPath;

 private:
  // Adds a parsed line's entry; false when memory is short.
  bool AppendParsed(char* key, char* value);

  // Stores `value` (owned; may be null) under `key`, or frees it when no entry can be made.
  bool StoreValue(const char* key, char* value);

  // The result of a successful change: Write's under immediate synch, else `ok`.
  bool Changed(bool ok);
};

#endif  // VIRELINE_CFILEIO_H_
