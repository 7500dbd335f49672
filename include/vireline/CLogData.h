// One binary play-log record: a header (time stamp, type, payload length)
// followed by packed payload fields. The base of every logged event.
#ifndef VIRELINE_CLOGDATA_H_
#define VIRELINE_CLOGDATA_H_

#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include <vireline/CLogDataPack.h>
#include <vireline/Export.h>

// One constructor argument of a logged event: a number (stored in the width
// the catalogue gives its field) or a string (null leaves the field empty).
struct VIRELINE_EXPORT tLogArgument {
  tLogArgument(unsigned long value) : number(static_cast<uint32_t>(value)), text(nullptr) {}  // NOLINT
  tLogArgument(long value) : number(static_cast<uint32_t>(value)), text(nullptr) {}  // NOLINT
  tLogArgument(unsigned short value) : number(value), text(nullptr) {}  // NOLINT
  tLogArgument(unsigned char value) : number(value), text(nullptr) {}  // NOLINT
  tLogArgument(const char* value) : number(0), text(value) {}  // NOLINT

  uint32_t number;
  const char* text;
};

class VIRELINE_EXPORT CLogData {
 public:
  // Size of the record header with a payload length below 255.
  static const unsigned long kShortHeaderSize = 6;
  // Size of the record header that carries a 32-bit payload length.
  static const unsigned long kLongHeaderSize = 10;
  // The length byte that announces the 32-bit payload length.
  static const unsigned char kLongLengthMark = 0xFF;

  // An empty record: no fields, header all zero.
  CLogData();

  // A deep copy of `other`.
  CLogData(const CLogData& other);

  // Becomes a deep copy of `other`.
  CLogData& operator=(const CLogData& other);

  virtual ~CLogData();

  // Zeroes the header and drops the fields.
  void Clear();

  // Stamps the record with the elapsed milliseconds now, `type` and payload
  // `length`, and writes the 6-byte (or, from 255 on, 10-byte) header into field 0.
  void SetHeader(unsigned char type, unsigned long length);

  // The first 4 bytes of field `index` as a signed little-endian number
  // (bytes past the record's end read as 0); 0 for a bad index.
  long GetIntField(unsigned long index);

  // Field `index` as text; null for a bad index.
  char const* GetStringField(unsigned long index);

  // Milliseconds of elapsed device time when the header was set.
  uint32_t GetTimeStamp() const { return mTimeStamp; }

  // The record type code.
  unsigned char GetType() const { return mType; }

  // The payload length the header states.
  unsigned long GetPayloadLength() const { return mLength == kLongLengthMark ? mLongLength : mLength; }

  // The record's fields; null for an empty record.
  CLogDataPack* GetPack() const { return mpPack; }

  // Records live on the C heap.
  static void* operator new(std::size_t size);
  // Gives memory from operator new back to the C heap (free).
  static void operator delete(void* pointer);

 protected:
  // Replaces the record's fields with `pack`, which the record owns from now
  // on; for records laid out by hand rather than from the catalogue.
  void AdoptPack(CLogDataPack* pack);

  // Builds the whole record of catalogue type `type`: field 0 the header, then
  // one field per argument in the catalogue's widths, then the header itself.
  void BuildEvent(unsigned char type, std::initializer_list<tLogArgument> arguments);

 private:
  uint32_t mTimeStamp;
  unsigned char mType;
  unsigned char mLength;
  uint32_t mLongLength;
  CLogDataPack* mpPack;
};

#endif  // VIRELINE_CLOGDATA_H_
