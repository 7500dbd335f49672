#include <vireline/CLogHeader.h>

#include <cstdlib>
#include <cstring>

#include "logging/CHeap.h"
#include "platform/LittleEndian.h"

namespace {

// Where the fields after the constant prefix lie.
const int kPlatformOffset = 44;
const int kSerialOffset = 48;
const int kLogNumOffset = 88;
const int kClockOffset = 92;
const int kTimeRcvdOffset = 96;
const int kFlagsOffset = 100;

}  // namespace

const unsigned char CLogHeader::mConstData[CLogHeader::kConstSize] = {
    '6', '0', '6', 'F', '7', 'B', '9', '3', '-', '3', '0', 'D', '0', '-', '4', '2', 'b', '9',
    '-', '9', 'B', '6', 'F', '-', '3', 'C', '6', 'A', '9', 'C', '9', '2', 'A', 'C', '1', '9',
    0,   0,   0,   0,   1,   0,   56,  0};

CLogHeader::CLogHeader() : mValid(1) {
  std::memset(mData, 0, sizeof mData);
  std::memcpy(mData, mConstData, kConstSize);
}

CLogHeader::CLogHeader(unsigned char* bytes, int length) : mValid(0) {
  std::memset(mData, 0, sizeof mData);
  if (bytes == nullptr || length < kSize || std::memcmp(bytes, mConstData, kConstSize) != 0) return;
  uint16_t platform = vireline::DecodeFixed16(bytes + kPlatformOffset);
  if (platform < 1 || platform > kMaxPlatform) return;
  std::memcpy(mData, bytes, kSize);
  // The writer always leaves the serial number's last byte NUL; a foreign
  // file that does not must not make the text run into the next fields.
  mData[kSerialOffset + kMaxSerialLength] = 0;
  mValid = 1;
}

void CLogHeader::SetPlatform(unsigned short platform) {
  vireline::EncodeFixed16(mData + kPlatformOffset, platform);
}

void CLogHeader::SetDeviceSerialNum(const char* serial) {
  if (serial == nullptr) return;
  std::memset(mData + kSerialOffset, 0, kMaxSerialLength + 1);
  for (int i = 0; i < kMaxSerialLength && serial[i] != '\0'; ++i) {
    mData[kSerialOffset + i] = static_cast<unsigned char>(serial[i]);
  }
}

void CLogHeader::SetLogNum(unsigned char number) { mData[kLogNumOffset] = number; }

void CLogHeader::SetDeviceClockVal(unsigned long value) { SetNumber(kClockOffset, value); }

void CLogHeader::SetTimeRcvd(unsigned long value) { SetNumber(kTimeRcvdOffset, value); }

void CLogHeader::SetFlags(unsigned long flags) { SetNumber(kFlagsOffset, flags); }

unsigned short CLogHeader::GetPlatform() const {
  return mValid ? vireline::DecodeFixed16(mData + kPlatformOffset) : 0;
}

const char* CLogHeader::GetDeviceSerialNum() const {
  return mValid ? reinterpret_cast<const char*>(mData + kSerialOffset) : nullptr;
}

unsigned char CLogHeader::GetLogNum() const { return mValid ? mData[kLogNumOffset] : 0; }

unsigned long CLogHeader::GetDeviceClockVal() const { return GetNumber(kClockOffset); }

unsigned long CLogHeader::GetTimeRcvd() const { return GetNumber(kTimeRcvdOffset); }

unsigned long CLogHeader::GetFlags() const { return GetNumber(kFlagsOffset); }

unsigned long CLogHeader::GetNumber(int offset) const {
  return mValid ? vireline::DecodeFixed32(mData + offset) : 0;
}

void CLogHeader::SetNumber(int offset, unsigned long value) {
  vireline::EncodeFixed32(mData + offset, static_cast<uint32_t>(value));
}

void* CLogHeader::operator new(std::size_t size) { return vireline::CHeapAllocate(size); }

void CLogHeader::operator delete(void* pointer) { std::free(pointer); }
