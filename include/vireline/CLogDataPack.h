// A packed buffer of consecutive fields: the in-memory body of one play-log
// record. The whole record is one contiguous buffer so that it is appended to
// a log file with a single write.
#ifndef VIRELINE_CLOGDATAPACK_H_
#define VIRELINE_CLOGDATAPACK_H_

#include <cstddef>
#include <cstdint>

#include <vireline/Export.h>

class VIRELINE_EXPORT CLogDataPack {
 public:
  // `count` fields of the given sizes, zero-filled; a count of 0 or a null
  // array gives one field of 1 byte, and a size of 0 counts as 1.
  CLogDataPack(unsigned long count, unsigned long const* sizes);

  // A deep copy of `other`.
  CLogDataPack(const CLogDataPack& other);

  // Becomes a deep copy of `other`; assigning an object to itself does nothing.
  CLogDataPack& operator=(const CLogDataPack& other);

  ~CLogDataPack();

  // Copies `size` bytes (0: a NUL-terminated string with its NUL) into field
  // `index`, resizing the field when needed; a null `data` or a bad index is ignored.
  void SetField(unsigned long index, void const* data, unsigned long size);

  // The start of field `index` in the buffer; null when `index` is not below the count.
  unsigned char* GetField(unsigned long index);

  // The number of fields.
  unsigned long GetFieldCount() const { return mCount; }

  // The size of field `index`; 0 when `index` is not below the count.
  unsigned long GetFieldSize(unsigned long index) const;

  // The buffer's size: the sum of the field sizes.
  unsigned long GetTotalSize() const { return mTotal; }

  // The whole buffer, all fields in order.
  const unsigned char* GetBuffer() const { return mpData; }

  // Packs live on the C heap, as the records that own them do.
  static void* operator new(std::size_t size);
  // Gives memory from operator new back to the C heap (free).
  static void operator delete(void* pointer);

 private:
  void CopyFrom(const CLogDataPack& other);
  void Release();

  uint32_t mCount;
  uint32_t mTotal;
  uint32_t* mpSizes;
  uint32_t* mpOffsets;
  unsigned char* mpData;
};

#endif  // VIRELINE_CLOGDATAPACK_H_
