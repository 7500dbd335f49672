#include "files/EntryStrings.h"

#include <climits>
#include <cstdint>
#include <cstring>

#include <vireline/COrvoInterface.h>

namespace vireline {
namespace {

// Blocks double up to this size, so a big file wastes little on its last one
// and the chain stays short.
const size_t kLargestBlock = 256 * 1024;

char* BytesOf(EntryStringBlock* block) { return reinterpret_cast<char*>(block + 1); }

// A new block of `size` bytes in front of the chain; null when memory is short.
EntryStringBlock* AddBlock(EntryStringBlock** chain, size_t size) {
  if (size > static_cast<size_t>(INT32_MAX) - sizeof(EntryStringBlock)) return nullptr;
  auto* block = static_cast<EntryStringBlock*>(
      COrvoInterface::Malloc(static_cast<int32_t>(sizeof(EntryStringBlock) + size)));
  if (block == nullptr) return nullptr;
  block->next = *chain;
  block->size = size;
  block->used = 0;
  *chain = block;
  return block;
}

// Copies `length` bytes of `from` to `to` without the double quotes; the bytes written.
size_t CopyWithoutQuotes(char* to, const char* from, size_t length) {
  const char* end = from + length;
  char* start = to;
  while (from < end) {
    const void* quote = std::memchr(from, '"', static_cast<size_t>(end - from));
    const char* runEnd = quote != nullptr ? static_cast<const char*>(quote) : end;
    std::memcpy(to, from, static_cast<size_t>(runEnd - from));
    to += runEnd - from;
    from = runEnd + (quote != nullptr ? 1 : 0);
  }
  return static_cast<size_t>(to - start);
}

}  // namespace

char* StoreEntryStrings(EntryStringBlock** chain, const char* key, size_t keyLength, const char* value,
                        size_t valueLength, bool stripQuotes, size_t hint) {
  if (keyLength > SIZE_MAX / 2 - 2 || valueLength > SIZE_MAX / 2) return nullptr;
  size_t needed = keyLength + valueLength + 2;
  EntryStringBlock* block = *chain;
  if (block == nullptr || block->size - block->used < needed) {
    size_t size = block == nullptr ? hint : (block->size < kLargestBlock ? block->size * 2 : block->size);
    block = AddBlock(chain, size > needed ? size : needed);
    if (block == nullptr) return nullptr;
  }
  char* copy = BytesOf(block) + block->used;
  std::memcpy(copy, key, keyLength);
  copy[keyLength] = '\0';
  char* valueCopy = copy + keyLength + 1;
  size_t stored = stripQuotes ? CopyWithoutQuotes(valueCopy, value, valueLength) : valueLength;
  if (!stripQuotes) std::memcpy(valueCopy, value, valueLength);
  valueCopy[stored] = '\0';
  block->used += keyLength + stored + 2;
  return copy;
}

void FreeChain(EntryStringBlock* chain) {
  while (chain != nullptr) {
    EntryStringBlock* next = chain->next;
    COrvoInterface::Free(chain);
    chain = next;
  }
}

}  // namespace vireline
