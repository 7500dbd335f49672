// The record's typed fields, each at a fixed offset, numbers little-endian.
#include <vireline/CMfgData.h>

#include <cstring>

#include "platform/LittleEndian.h"

namespace {

// Field offsets in the record.
const uint32_t kTSCalOffset = 0;
const uint32_t kBLCalOffset = 28;
const uint32_t kADCCalOffset = 32;
const uint32_t kAudioGainOffset = 40;
const uint32_t kSerialOffset = 44;
const uint32_t kSNValidOffset = 68;
const uint32_t kBarcodeOffset = 72;
const uint32_t kLocaleOffset = 104;
const uint32_t kTSPressureOffset = 112;
const uint32_t kSoftBoardIdOffset = 208;
const uint32_t kAclBiasOffset = 212;
const uint32_t kMfgVersionOffset = 224;
const uint32_t kBL2CalOffset = 228;
const uint32_t kMacOffset = 248;
const uint32_t kIPv6Offset = 268;
const uint32_t kSkuOffset = 288;
const uint32_t kAccelCalOffset = 299;  // odd and unaligned since the first devices

// Byte-block field sizes.
const uint32_t kSerialSize = 24;
const uint32_t kBarcodeSize = 32;
const uint32_t kLocaleSize = 8;
const uint32_t kMacSize = 20;
const uint32_t kSkuSize = 11;
const uint32_t kIPv6Groups = 8;

// The most 32-bit values any field holds (the accelerometer calibration).
const uint32_t kMaxWords = 10;

int Moved(uint32_t moved, uint32_t size) { return moved == size ? kMfgSuccess : kMfgShortTransfer; }

// Reads `count` signed 32-bit values at `offset` into `values` (int or long).
template <typename T>
int GetWords(CMfgData& data, uint32_t offset, T* values, uint32_t count) {
  unsigned char bytes[4 * kMaxWords];
  if (values == nullptr || data.Read(bytes, offset, 4 * count) != 4 * count) return kMfgShortTransfer;
  for (uint32_t i = 0; i < count; ++i) {
    values[i] = static_cast<T>(static_cast<int32_t>(vireline::DecodeFixed32(bytes + 4 * i)));
  }
  return kMfgSuccess;
}

// Stores `count` values at `offset`, each as its low 32 bits.
template <typename T>
int SetWords(CMfgData& data, uint32_t offset, const T* values, uint32_t count) {
  unsigned char bytes[4 * kMaxWords];
  if (values == nullptr) return kMfgShortTransfer;
  for (uint32_t i = 0; i < count; ++i) vireline::EncodeFixed32(bytes + 4 * i, static_cast<uint32_t>(values[i]));
  return Moved(data.Write(bytes, offset, 4 * count), 4 * count);
}

}  // namespace

uint32_t CMfgData::Read(void* buffer, uint32_t offset, uint32_t length) {
  if (!mpBuffer || buffer == nullptr || offset >= kMfgRecordSize) return 0;
  uint32_t count = length < kMfgRecordSize - offset ? length : kMfgRecordSize - offset;
  std::memcpy(buffer, mpBuffer.get() + offset, count);
  return count;
}

uint32_t CMfgData::Write(const void* buffer, uint32_t offset, uint32_t length) {
  if (!mpBuffer || buffer == nullptr || offset >= kMfgRecordSize) return 0;
  uint32_t count = length < kMfgRecordSize - offset ? length : kMfgRecordSize - offset;
  std::memcpy(mpBuffer.get() + offset, buffer, count);
  return count;
}

int CMfgData::GetTSCalData(int* values) { return GetWords(*this, kTSCalOffset, values, 7); }
int CMfgData::SetTSCalData(int* values) { return SetWords(*this, kTSCalOffset, values, 7); }

int CMfgData::GetBLCalData(int& value) { return GetWords(*this, kBLCalOffset, &value, 1); }
int CMfgData::SetBLCalData(int value) { return SetWords(*this, kBLCalOffset, &value, 1); }

int CMfgData::GetADCCalData(int& first, int& second) {
  int values[2];
  int status = GetWords(*this, kADCCalOffset, values, 2);
  if (status == kMfgSuccess) {
    first = values[0];
    second = values[1];
  }
  return status;
}

int CMfgData::SetADCCalData(int first, int second) {
  const int values[2] = {first, second};
  return SetWords(*this, kADCCalOffset, values, 2);
}

int CMfgData::GetAudioGain(int& value) { return GetWords(*this, kAudioGainOffset, &value, 1); }
int CMfgData::SetAudioGain(int value) { return SetWords(*this, kAudioGainOffset, &value, 1); }

int CMfgData::GetSerialNumberRaw(char* out) { return Moved(Read(out, kSerialOffset, kSerialSize), kSerialSize); }
int CMfgData::SetSerialNumberRaw(const char* in) {
  return Moved(Write(in, kSerialOffset, kSerialSize), kSerialSize);
}

int CMfgData::GetSNValidFlag(bool& valid) {
  int flag = 0;
  int status = GetWords(*this, kSNValidOffset, &flag, 1);
  if (status == kMfgSuccess) valid = flag != 0;
  return status;
}

int CMfgData::SetSNValidFlag(bool valid) {
  int flag = valid ? 1 : 0;
  return SetWords(*this, kSNValidOffset, &flag, 1);
}

int CMfgData::GetSirasBarcode(char* out) { return Moved(Read(out, kBarcodeOffset, kBarcodeSize), kBarcodeSize); }
int CMfgData::SetSirasBarcode(const char* in) {
  return Moved(Write(in, kBarcodeOffset, kBarcodeSize), kBarcodeSize);
}

int CMfgData::GetLocale(char* out) { return Moved(Read(out, kLocaleOffset, kLocaleSize), kLocaleSize); }
int CMfgData::SetLocale(const char* in) { return Moved(Write(in, kLocaleOffset, kLocaleSize), kLocaleSize); }

int CMfgData::GetTSPressure(ts_pressure_data* out) {
  void* bytes = out != nullptr ? out->bytes : nullptr;
  return Moved(Read(bytes, kTSPressureOffset, sizeof(ts_pressure_data)), sizeof(ts_pressure_data));
}

int CMfgData::SetTSPressure(ts_pressure_data* in) {
  const void* bytes = in != nullptr ? in->bytes : nullptr;
  return Moved(Write(bytes, kTSPressureOffset, sizeof(ts_pressure_data)), sizeof(ts_pressure_data));
}

int CMfgData::GetSoftBoardId(int& value) { return GetWords(*this, kSoftBoardIdOffset, &value, 1); }
int CMfgData::SetSoftBoardId(int value) { return SetWords(*this, kSoftBoardIdOffset, &value, 1); }

int CMfgData::GetAclBias(int* values) { return GetWords(*this, kAclBiasOffset, values, 3); }
int CMfgData::SetAclBias(int* values) { return SetWords(*this, kAclBiasOffset, values, 3); }

int CMfgData::GetMfgVersion(int& value) { return GetWords(*this, kMfgVersionOffset, &value, 1); }
int CMfgData::SetMfgVersion(int value) { return SetWords(*this, kMfgVersionOffset, &value, 1); }

int CMfgData::GetBL2CalData(int& v0, int& v1, int& v2, int& v3, int& v4) {
  int values[5];
  int status = GetWords(*this, kBL2CalOffset, values, 5);
  if (status == kMfgSuccess) {
    v0 = values[0];
    v1 = values[1];
    v2 = values[2];
    v3 = values[3];
    v4 = values[4];
  }
  return status;
}

int CMfgData::SetBL2CalData(int v0, int v1, int v2, int v3, int v4) {
  const int values[5] = {v0, v1, v2, v3, v4};
  return SetWords(*this, kBL2CalOffset, values, 5);
}

int CMfgData::GetMacAddress(unsigned char* out) { return Moved(Read(out, kMacOffset, kMacSize), kMacSize); }
int CMfgData::SetMacAddress(const unsigned char* in) { return Moved(Write(in, kMacOffset, kMacSize), kMacSize); }

int CMfgData::GetIPv6Address(unsigned short* out) {
  unsigned char bytes[2 * kIPv6Groups];
  if (out == nullptr || Read(bytes, kIPv6Offset, sizeof bytes) != sizeof bytes) return kMfgShortTransfer;
  for (uint32_t i = 0; i < kIPv6Groups; ++i) out[i] = vireline::DecodeFixed16(bytes + 2 * i);
  return kMfgSuccess;
}

int CMfgData::SetIPv6Address(const unsigned short* in) {
  unsigned char bytes[2 * kIPv6Groups];
  if (in == nullptr) return kMfgShortTransfer;
  for (uint32_t i = 0; i < kIPv6Groups; ++i) vireline::EncodeFixed16(bytes + 2 * i, in[i]);
  return Moved(Write(bytes, kIPv6Offset, sizeof bytes), sizeof bytes);
}

int CMfgData::GetSku(char* out) { return Moved(Read(out, kSkuOffset, kSkuSize), kSkuSize); }
int CMfgData::SetSku(const char* in) { return Moved(Write(in, kSkuOffset, kSkuSize), kSkuSize); }

int CMfgData::GetAccelerometerCalData(long* values) { return GetWords(*this, kAccelCalOffset, values, 10); }
int CMfgData::SetAccelerometerCalData(long* values) { return SetWords(*this, kAccelCalOffset, values, 10); }
