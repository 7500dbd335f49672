#include <vireline/CLogReader.h>

#include <cstring>
#include <memory>

#include <vireline/CLogData.h>
#include <vireline/CLogFile.h>

#include "platform/Env.h"
#include "platform/LittleEndian.h"

using LogData::Vireline::FieldWidth;
using LogData::Vireline::kFieldS32;
using LogData::Vireline::kFieldString;
using LogData::Vireline::tEventInfo;

namespace {

// The reader's file object is kept in the stream pointer's place, so that the
// object keeps the layout applications were built against; the pointer is
// never used as a stream.
vireline::SequentialFile* FileIn(FILE* slot) { return reinterpret_cast<vireline::SequentialFile*>(slot); }

FILE* SlotOf(vireline::SequentialFile* file) { return reinterpret_cast<FILE*>(file); }

const unsigned kPlatformOffset = 44;

// The text of a string field at `data`, within `available` bytes; false when its NUL is missing.
bool DecodeString(const unsigned char* data, uint64_t available, tLogFieldValue* value, uint64_t* used) {
  if (available == 0) return false;
  const void* end = std::memchr(data, 0, available);
  if (end == nullptr) return false;
  *used = static_cast<const unsigned char*>(end) - data + 1;
  value->text.assign(reinterpret_cast<const char*>(data), *used - 1);
  return true;
}

// The integer of `width` bytes at `data`; false when fewer are available.
bool DecodeNumber(const unsigned char* data, uint64_t available, unsigned width, bool isSigned,
                  tLogFieldValue* value, uint64_t* used) {
  if (available < width) return false;
  unsigned char bytes[4] = {0, 0, 0, 0};
  std::memcpy(bytes, data, width);
  uint32_t number = vireline::DecodeFixed32(bytes);
  value->number = isSigned ? static_cast<int64_t>(static_cast<int32_t>(number)) : static_cast<int64_t>(number);
  *used = width;
  return true;
}

}  // namespace

uint64_t tLogRecord::Size() const {
  return (longHeader ? CLogData::kLongHeaderSize : CLogData::kShortHeaderSize) + uint64_t{length};
}

CLogReader::CLogReader(const CPath& path)
    : mStream(nullptr),
      mStatus(kCannotOpen),
      mpHeader(new CLogHeader(nullptr, 0)),
      mPlatformCode(0),
      mFileSize(0),
      mOffset(0),
      mTorn(false),
      mDone(true),
      mTornOffset(0) {
  vireline::Env* env = vireline::Env::Current();
  std::unique_ptr<vireline::SequentialFile> file;
  if (!env->NewSequentialFile(path.raw(), &file).ok()) return;
  vireline::FileInfo info;
  if (env->Stat(path.raw(), &info).ok()) mFileSize = info.size;
  mStream = SlotOf(file.release());
  ReadHeader();
}

CLogReader::~CLogReader() {
  delete FileIn(mStream);
  delete mpHeader;
}

void CLogReader::ReadHeader() {
  unsigned char bytes[CLogHeader::kSize];
  if (mFileSize < CLogHeader::kSize || !ReadBytes(bytes, sizeof bytes)) {
    mStatus = kTooShort;
    return;
  }
  delete mpHeader;
  mpHeader = new CLogHeader(bytes, sizeof bytes);
  mPlatformCode = vireline::DecodeFixed16(bytes + kPlatformOffset);
  if (mpHeader->IsValid()) {
    mStatus = kHeaderValid;
  } else if (std::memcmp(bytes, CLogHeader::mConstData, CLogHeader::kConstSize) == 0) {
    mStatus = kHeaderInvalid;
  } else {
    mStatus = kNotALog;
    return;
  }
  mOffset = CLogHeader::kSize;
  mDone = false;
}

bool CLogReader::ReadBytes(unsigned char* buffer, uint64_t count) {
  if (count == 0) return true;
  if (mFileSize - mOffset < count) return false;
  size_t got = 0;
  vireline::ReadFully(FileIn(mStream), static_cast<size_t>(count), reinterpret_cast<char*>(buffer), &got);
  if (got != count) return false;
  mOffset += count;
  return true;
}

bool CLogReader::StopTorn(uint64_t recordOffset) {
  mTorn = true;
  mTornOffset = recordOffset;
  mDone = true;
  return false;
}

bool CLogReader::Next(tLogRecord* record) {
  if (mDone) return false;
  if (mOffset >= mFileSize) {
    mDone = true;
    return false;
  }
  uint64_t start = mOffset;
  unsigned char header[CLogData::kLongHeaderSize];
  if (!ReadBytes(header, CLogData::kShortHeaderSize)) return StopTorn(start);
  bool longHeader = header[5] == CLogData::kLongLengthMark;
  if (longHeader && !ReadBytes(header + CLogData::kShortHeaderSize, 4)) return StopTorn(start);
  uint32_t length = longHeader ? vireline::DecodeFixed32(header + CLogData::kShortHeaderSize) : header[5];
  // The length is checked against what the file holds before anything is
  // allocated, so a garbage length cannot ask for gigabytes.
  if (mFileSize - mOffset < length) return StopTorn(start);
  record->payload.resize(length);
  if (!ReadBytes(record->payload.data(), length)) return StopTorn(start);
  record->offset = start;
  record->timeStamp = vireline::DecodeFixed32(header);
  record->type = header[4];
  record->longHeader = longHeader;
  record->length = length;
  record->event = LogData::Vireline::FindEvent(record->type);
  record->fields.clear();
  record->decoded = record->event != nullptr &&
                    DecodeFields(*record->event, record->payload.data(), length, &record->fields);
  return true;
}

bool CLogReader::DecodeFields(const tEventInfo& event, const unsigned char* payload, uint64_t length,
                              std::vector<tLogFieldValue>* fields) {
  fields->clear();
  uint64_t position = 0;
  for (unsigned i = 0; i < event.fieldCount; ++i) {
    tLogFieldValue value{&event.fields[i], 0, std::string()};
    uint64_t used = 0;
    bool ok = event.fields[i].kind == kFieldString
                  ? DecodeString(payload + position, length - position, &value, &used)
                  : DecodeNumber(payload + position, length - position, FieldWidth(event.fields[i].kind),
                                 event.fields[i].kind == kFieldS32, &value, &used);
    if (!ok) return false;
    fields->push_back(value);
    position += used;
  }
  return position == length;
}
