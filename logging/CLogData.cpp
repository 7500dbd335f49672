#include <vireline/CLogData.h>

#include <cstdlib>
#include <cstring>

#include <vireline/BaseUtils.h>
#include <vireline/LogCatalogue.h>

#include "logging/CHeap.h"
#include "platform/LittleEndian.h"

using LogData::Vireline::FieldWidth;
using LogData::Vireline::kFieldString;
using LogData::Vireline::kMaxEventFields;
using LogData::Vireline::tEventInfo;

CLogData::CLogData() : mpPack(nullptr) { Clear(); }

CLogData::CLogData(const CLogData& other)
    : mTimeStamp(other.mTimeStamp),
      mType(other.mType),
      mLength(other.mLength),
      mLongLength(other.mLongLength),
      mpPack(other.mpPack ? new CLogDataPack(*other.mpPack) : nullptr) {}

CLogData& CLogData::operator=(const CLogData& other) {
  if (this == &other) return *this;
  CLogDataPack* copy = other.mpPack ? new CLogDataPack(*other.mpPack) : nullptr;
  delete mpPack;
  mpPack = copy;
  mTimeStamp = other.mTimeStamp;
  mType = other.mType;
  mLength = other.mLength;
  mLongLength = other.mLongLength;
  return *this;
}

CLogData::~CLogData() { delete mpPack; }

void CLogData::Clear() {
  mTimeStamp = 0;
  mType = 0;
  mLength = 0;
  mLongLength = 0;
  delete mpPack;
  mpPack = nullptr;
}

void CLogData::SetHeader(unsigned char type, unsigned long length) {
  mTimeStamp = BaseUtils::Instance()->GetElapsedTimeAsMSecs();
  mType = type;
  if (length < kLongLengthMark) {
    mLength = static_cast<unsigned char>(length);
  } else {
    mLength = kLongLengthMark;
    mLongLength = static_cast<uint32_t>(length);
  }
  if (mpPack == nullptr) return;
  unsigned char header[kLongHeaderSize];
  vireline::EncodeFixed32(header, mTimeStamp);
  header[4] = mType;
  header[5] = mLength;
  vireline::EncodeFixed32(header + 6, mLongLength);
  mpPack->SetField(0, header, mLength == kLongLengthMark ? kLongHeaderSize : kShortHeaderSize);
}

long CLogData::GetIntField(unsigned long index) {
  if (mpPack == nullptr) return 0;
  const unsigned char* field = mpPack->GetField(index);
  if (field == nullptr) return 0;
  unsigned char bytes[4] = {0, 0, 0, 0};
  size_t available = static_cast<size_t>(mpPack->GetBuffer() + mpPack->GetTotalSize() - field);
  std::memcpy(bytes, field, available < sizeof bytes ? available : sizeof bytes);
  return static_cast<int32_t>(vireline::DecodeFixed32(bytes));
}

char const* CLogData::GetStringField(unsigned long index) {
  if (mpPack == nullptr) return nullptr;
  return reinterpret_cast<const char*>(mpPack->GetField(index));
}

void CLogData::AdoptPack(CLogDataPack* pack) {
  if (pack == mpPack) return;
  delete mpPack;
  mpPack = pack;
}

void CLogData::BuildEvent(unsigned char type, std::initializer_list<tLogArgument> arguments) {
  const tEventInfo* info = LogData::Vireline::FindEvent(type);
  unsigned fields = info ? info->fieldCount : 0;
  unsigned long sizes[1 + kMaxEventFields] = {kShortHeaderSize};
  for (unsigned i = 0; i < fields; ++i) sizes[i + 1] = FieldWidth(info->fields[i].kind);
  AdoptPack(new CLogDataPack(fields + 1, sizes));
  const tLogArgument* argument = arguments.begin();
  for (unsigned i = 0; i < fields && argument != arguments.end(); ++i, ++argument) {
    if (info->fields[i].kind == kFieldString) {
      mpPack->SetField(i + 1, argument->text, 0);  // a null string keeps its zero byte
    } else {
      unsigned char bytes[4];
      vireline::EncodeFixed32(bytes, argument->number);
      mpPack->SetField(i + 1, bytes, FieldWidth(info->fields[i].kind));
    }
  }
  SetHeader(type, mpPack->GetTotalSize() - kShortHeaderSize);
}

void* CLogData::operator new(std::size_t size) { return vireline::CHeapAllocate(size); }

void CLogData::operator delete(void* pointer) { std::free(pointer); }
