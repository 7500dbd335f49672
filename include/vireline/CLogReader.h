// Reads back the play-log files that CLogFile writes, for desktop tools and
// the inspector: checks the 104-byte header, then hands out the records one at
// a time, each named by its catalogue class and with its payload decoded by
// the catalogue's field widths. A file cut in the middle of a record (power
// lost during an append) yields every complete record before the cut and then
// reports the torn one. Any bytes are safe to read: nothing is trusted, and no
// more memory is taken than the file's own size.
//
//   CLogReader reader("/QV/Bulk/Data/Local/Uploads/0/profile.log");
//   tLogRecord record;
//   while (reader.Next(&record)) Show(record);
//   if (reader.IsTorn()) Warn(reader.GetTornOffset());
#ifndef VIRELINE_CLOGREADER_H_
#define VIRELINE_CLOGREADER_H_

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <vireline/CLogHeader.h>
#include <vireline/Export.h>
#include <vireline/LogCatalogue.h>
#include <vireline/Types.h>

// One payload field of a record read back.
struct VIRELINE_EXPORT tLogFieldValue {
  const LogData::Vireline::tEventField* field;  // its name and kind in the catalogue
  int64_t number;                               // integer fields; s32 fields carry their sign
  std::string text;                             // string fields, without the NUL
};

// One complete record read back.
struct VIRELINE_EXPORT tLogRecord {
  uint64_t offset = 0;      // of the record's first byte in the file
  uint32_t timeStamp = 0;   // elapsed device milliseconds
  unsigned char type = 0;   // the type code
  bool longHeader = false;  // the 10-byte header with a 32-bit length
  uint32_t length = 0;      // payload bytes
  const LogData::Vireline::tEventInfo* event = nullptr;  // null for a code the catalogue lacks
  bool decoded = false;     // the payload is exactly the catalogue's fields
  std::vector<tLogFieldValue> fields;    // as many as could be decoded
  std::vector<unsigned char> payload;    // the raw payload bytes

  // The record's class name ("CGameStart"); null for an unknown type code.
  const char* ClassName() const { return event ? event->className : nullptr; }

  // The size of the record in the file: header and payload.
  uint64_t Size() const;
};

class VIRELINE_EXPORT CLogReader {
 public:
  // What the file's start says about it.
  enum tStatus {
    kHeaderValid,     // a header the library accepts
    kHeaderInvalid,   // the format identifier matches but the platform code is not 1-11
                      // (what devices of unknown type write); records are still read
    kNotALog,         // the format identifier does not match; no records are read
    kTooShort,        // fewer than 104 bytes
    kCannotOpen       // the file could not be opened
  };

  // Opens the device file `path` (through the platform) and reads its header.
  explicit CLogReader(const CPath& path);
  ~CLogReader();
  CLogReader(const CLogReader&) = delete;
  CLogReader& operator=(const CLogReader&) = delete;

  // The outcome of reading the header.
  tStatus GetStatus() const { return mStatus; }

  // The parsed header; invalid unless the status is kHeaderValid.
  const CLogHeader& GetHeader() const { return *mpHeader; }

  // The platform code as stored, also when the header is invalid; 0 without a header.
  unsigned short GetPlatformCode() const { return mPlatformCode; }

  // The file's size in bytes.
  uint64_t GetFileSize() const { return mFileSize; }

  // Reads the next complete record into *record; false at the end of the
  // file, at a torn record, or when the file has no readable records.
  bool Next(tLogRecord* record);

  // True when reading stopped at a record cut short by the end of the file
  // (or by a read that failed part-way).
  bool IsTorn() const { return mTorn; }

  // Where the torn record starts.
  uint64_t GetTornOffset() const { return mTornOffset; }

  // How many bytes of the torn record the file holds.
  uint64_t GetTornBytesPresent() const { return mFileSize - mTornOffset; }

  // Decodes `length` payload bytes by the catalogue entry `event` into
  // *fields; true when they are exactly its fields.
  static bool DecodeFields(const LogData::Vireline::tEventInfo& event, const unsigned char* payload,
                           uint64_t length, std::vector<tLogFieldValue>* fields);

 private:
  bool ReadBytes(unsigned char* buffer, uint64_t count);
  bool StopTorn(uint64_t recordOffset);
  void ReadHeader();

  FILE* mStream;
  tStatus mStatus;
  CLogHeader* mpHeader;
  unsigned short mPlatformCode;
  uint64_t mFileSize;
  uint64_t mOffset;
  bool mTorn;
  bool mDone;
  uint64_t mTornOffset;
};

#endif  // VIRELINE_CLOGREADER_H_
