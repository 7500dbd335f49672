// Allocation on the C heap for the play-log classes, which own malloc'ed
// buffers so that records can be handed across the C boundary of older clients.
#ifndef VIRELINE_LOGGING_CHEAP_H_
#define VIRELINE_LOGGING_CHEAP_H_

#include <cstddef>
#include <cstdlib>
#include <new>

namespace vireline {

// malloc that never hands back null: running out of memory throws, as
// operator new would, instead of letting a copy write through a null pointer.
inline void* CHeapAllocate(std::size_t size) {
  void* pointer = std::malloc(size == 0 ? 1 : size);
  if (pointer == nullptr) throw std::bad_alloc();
  return pointer;
}

}  // namespace vireline

#endif  // VIRELINE_LOGGING_CHEAP_H_
