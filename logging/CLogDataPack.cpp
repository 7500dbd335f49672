#include <vireline/CLogDataPack.h>

#include <cstdlib>
#include <cstring>

#include "logging/CHeap.h"

using vireline::CHeapAllocate;

namespace {

const uint64_t kMaxTotal = 0xFFFFFFFFu;

uint32_t* AllocateWords(uint32_t count) {
  return static_cast<uint32_t*>(CHeapAllocate(sizeof(uint32_t) * count));
}

// The sum of the sizes (0 counting as 1), or 0 when it does not fit 32 bits.
uint64_t SumOfSizes(unsigned long count, unsigned long const* sizes) {
  uint64_t total = 0;
  for (unsigned long i = 0; i < count && total <= kMaxTotal; ++i) total += sizes[i] == 0 ? 1 : sizes[i];
  return total <= kMaxTotal ? total : 0;
}

}  // namespace

CLogDataPack::CLogDataPack(unsigned long count, unsigned long const* sizes) {
  static const unsigned long kOneByte = 1;
  // A layout whose total would not fit the record's 32-bit size is treated
  // like a missing one, so the buffer always covers every field.
  if (count == 0 || sizes == nullptr || count > kMaxTotal || SumOfSizes(count, sizes) == 0) {
    count = 1;
    sizes = &kOneByte;
  }
  mCount = static_cast<uint32_t>(count);
  mpSizes = AllocateWords(mCount);
  mpOffsets = AllocateWords(mCount);
  mTotal = 0;
  for (uint32_t i = 0; i < mCount; ++i) {
    mpSizes[i] = static_cast<uint32_t>(sizes[i] == 0 ? 1 : sizes[i]);
    mpOffsets[i] = mTotal;
    mTotal += mpSizes[i];
  }
  mpData = static_cast<unsigned char*>(CHeapAllocate(mTotal));
  std::memset(mpData, 0, mTotal);
}

CLogDataPack::CLogDataPack(const CLogDataPack& other) { CopyFrom(other); }

CLogDataPack& CLogDataPack::operator=(const CLogDataPack& other) {
  if (this == &other) return *this;
  Release();
  CopyFrom(other);
  return *this;
}

CLogDataPack::~CLogDataPack() { Release(); }

void CLogDataPack::CopyFrom(const CLogDataPack& other) {
  mCount = other.mCount;
  mTotal = other.mTotal;
  mpSizes = AllocateWords(mCount);
  mpOffsets = AllocateWords(mCount);
  mpData = static_cast<unsigned char*>(CHeapAllocate(mTotal));
  std::memcpy(mpSizes, other.mpSizes, sizeof(uint32_t) * mCount);
  std::memcpy(mpOffsets, other.mpOffsets, sizeof(uint32_t) * mCount);
  std::memcpy(mpData, other.mpData, mTotal);
}

void CLogDataPack::Release() {
  std::free(mpSizes);
  std::free(mpOffsets);
  std::free(mpData);
  mpSizes = mpOffsets = nullptr;
  mpData = nullptr;
}

void CLogDataPack::SetField(unsigned long index, void const* data, unsigned long size) {
  if (data == nullptr || index >= mCount) return;
  if (size == 0) size = std::strlen(static_cast<const char*>(data)) + 1;
  uint32_t offset = mpOffsets[index];
  uint32_t oldSize = mpSizes[index];
  if (size == oldSize) {
    std::memmove(mpData + offset, data, size);
    return;
  }
  uint64_t newTotal = uint64_t{mTotal} - oldSize + size;
  if (size > kMaxTotal || newTotal > kMaxTotal) return;  // the record's size field could not say it
  // The new buffer is filled before the old one goes, so `data` may point into it.
  unsigned char* fresh = static_cast<unsigned char*>(CHeapAllocate(newTotal));
  std::memcpy(fresh, mpData, offset);
  std::memcpy(fresh + offset + size, mpData + offset + oldSize, mTotal - offset - oldSize);
  std::memcpy(fresh + offset, data, size);
  for (uint32_t later = static_cast<uint32_t>(index) + 1; later < mCount; ++later) {
    mpOffsets[later] = static_cast<uint32_t>(mpOffsets[later] - oldSize + size);
  }
  mpSizes[index] = static_cast<uint32_t>(size);
  mTotal = static_cast<uint32_t>(newTotal);
  std::free(mpData);
  mpData = fresh;
}

unsigned char* CLogDataPack::GetField(unsigned long index) {
  return index < mCount ? mpData + mpOffsets[index] : nullptr;
}

unsigned long CLogDataPack::GetFieldSize(unsigned long index) const {
  return index < mCount ? mpSizes[index] : 0;
}

void* CLogDataPack::operator new(std::size_t size) { return CHeapAllocate(size); }

void CLogDataPack::operator delete(void* pointer) { std::free(pointer); }
