// Helpers shared by the key=value file tests.
#ifndef VIRELINE_TESTS_FILES_KEYVALUETEST_H_
#define VIRELINE_TESTS_FILES_KEYVALUETEST_H_

#include <string>
#include <utility>
#include <vector>

#include <vireline/CFileIO.h>
#include <vireline/COrvoInterface.h>

#include "DeviceRootTest.h"

// One entry as the table holds it; a null value shows as kNoValue.
struct Entry {
  std::string key;
  std::string value;
  bool quoted;
  bool listQuoted;
  bool operator==(const Entry& other) const {
    return key == other.key && value == other.value && quoted == other.quoted && listQuoted == other.listQuoted;
  }
};

inline std::ostream& operator<<(std::ostream& out, const Entry& entry) {
  return out << "{" << entry.key << " = " << entry.value << (entry.quoted ? " quoted" : "")
             << (entry.listQuoted ? " listQuoted" : "") << "}";
}

const char kNoValue[] = "<no value>";

inline Entry Plain(const std::string& key, const std::string& value) { return Entry{key, value, false, false}; }
inline Entry Quoted(const std::string& key, const std::string& value) { return Entry{key, value, true, false}; }
inline Entry ListQuoted(const std::string& key, const std::string& value) { return Entry{key, value, false, true}; }

// Every entry of the table, duplicates included, in file order.
inline std::vector<Entry> EntriesOf(const CFileIO& file) {
  std::vector<Entry> entries;
  for (U32 i = 0; i < file.GetEntryCount(); ++i) {
    const tKeyValueEntry* entry = file.GetEntry(i);
    entries.push_back(Entry{entry->key, entry->value ? entry->value : kNoValue, entry->quoted != 0,
                            entry->listQuoted != 0});
  }
  return entries;
}

// The keys that Keys() hands out (the array is freed here).
inline std::vector<std::string> KeysOf(const CFileIO& file) {
  char** keys = nullptr;
  U32 count = file.Keys(keys);
  std::vector<std::string> names;
  for (U32 i = 0; i < count; ++i) names.push_back(keys[i]);
  COrvoInterface::Free(keys);
  return names;
}

// The strings of a list getter; frees every string and the array.
inline std::vector<std::string> TakeStrList(char** list, U32 count) {
  std::vector<std::string> items;
  for (U32 i = 0; i < count; ++i) {
    items.push_back(list[i]);
    COrvoInterface::Free(list[i]);
  }
  COrvoInterface::Free(list);
  return items;
}

// The numbers of a list getter; frees the array.
inline std::vector<U32> TakeUIntList(U32* list, U32 count) {
  std::vector<U32> items(list, list + count);
  COrvoInterface::Free(list);
  return items;
}

#endif  // VIRELINE_TESTS_FILES_KEYVALUETEST_H_
