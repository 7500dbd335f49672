// The keys and values a key=value table read from its file, kept in a chain
// of a few large blocks instead of an allocation each: reading a file of n
// lines then allocates O(log n) times. A key is stored with its value right
// after its terminator, as a key and value allocated together always were.
// The blocks never move, so the strings stay where the table handed them out.
#ifndef VIRELINE_FILES_ENTRYSTRINGS_H_
#define VIRELINE_FILES_ENTRYSTRINGS_H_

#include <cstddef>
#include <cstdint>

namespace vireline {

// One block of a chain, its bytes right after it.
struct EntryStringBlock {
  EntryStringBlock* next;  // the older blocks
  size_t size;             // bytes after the header
  size_t used;
};

// Copies `key` and then `value` (with every double quote left out when
// `stripQuotes`), each NUL-terminated, into the newest block of the chain at
// *chain, starting a block of at least `hint` bytes when it is full: the
// copy of the key, or null when memory is short.
char* StoreEntryStrings(EntryStringBlock** chain, const char* key, size_t keyLength, const char* value,
                        size_t valueLength, bool stripQuotes, size_t hint);

// True when `text` lies in one of the chain's blocks. Inline: a table's
// strings are looked up here each time one is freed.
inline bool ChainHolds(const EntryStringBlock* chain, const char* text) {
  uintptr_t at = reinterpret_cast<uintptr_t>(text);
  for (const EntryStringBlock* block = chain; block != nullptr; block = block->next) {
    uintptr_t bytes = reinterpret_cast<uintptr_t>(block + 1);
    if (at >= bytes && at - bytes < block->size) return true;
  }
  return false;
}

// Frees every block of the chain.
void FreeChain(EntryStringBlock* chain);

}  // namespace vireline

#endif  // VIRELINE_FILES_ENTRYSTRINGS_H_
