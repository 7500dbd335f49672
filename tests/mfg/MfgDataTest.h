// Shared by the manufacturing-data tests: a device root with "/proc/mtd"
// naming the two partitions, and records laid out by hand, byte by byte, with
// their checksum computed by zlib directly - independently of the library.
#ifndef VIRELINE_TESTS_MFG_MFGDATATEST_H_
#define VIRELINE_TESTS_MFG_MFGDATATEST_H_

#include <zlib.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "DeviceRootTest.h"

namespace mfgtest {

const size_t kRecordSize = 4096;

const char kProcMtd[] =
    "dev:    size   erasesize  name\n"
    "mtd0: 00040000 00010000 \"u-boot\"\n"
    "mtd1: 00400000 00010000 \"kernel\"\n"
    "mtd3: 00001000 00001000 \"MfgData0\"\n"
    "mtd4: 00001000 00001000 \"MfgData1\"\n";

// Device paths of the two copies that kProcMtd names.
inline const char* CopyPath(int index) { return index == 0 ? "/dev/mtd3" : "/dev/mtd4"; }

inline void PutLE16(std::string* record, size_t offset, uint16_t value) {
  (*record)[offset] = static_cast<char>(value & 0xFF);
  (*record)[offset + 1] = static_cast<char>(value >> 8);
}

inline void PutLE32(std::string* record, size_t offset, uint32_t value) {
  for (size_t i = 0; i < 4; ++i) (*record)[offset + i] = static_cast<char>((value >> (8 * i)) & 0xFF);
}

inline uint32_t GetLE32(const std::string& record, size_t offset) {
  uint32_t value = 0;
  for (size_t i = 4; i-- > 0;) value = (value << 8) | static_cast<unsigned char>(record[offset + i]);
  return value;
}

inline void PutBytes(std::string* record, size_t offset, const std::string& bytes) {
  record->replace(offset, bytes.size(), bytes);
}

// The stored checksum: crc32 seeded with 0xFFFFFFFF over bytes 0-4091, inverted.
inline uint32_t Checksum(const std::string& record) {
  uLong crc = crc32(0xFFFFFFFFUL, reinterpret_cast<const Bytef*>(record.data()), 4092);
  return ~static_cast<uint32_t>(crc);
}

// Stores the checksum at offset 4092.
inline std::string Sealed(std::string record) {
  PutLE32(&record, 4092, Checksum(record));
  return record;
}

// A record with a recognisable value in every field, checksum valid.
inline std::string SampleRecord() {
  std::string record(kRecordSize, '\0');
  for (int i = 0; i < 7; ++i) PutLE32(&record, 4 * i, static_cast<uint32_t>(100 + i));
  PutLE32(&record, 28, 4000);                                 // backlight
  PutLE32(&record, 32, static_cast<uint32_t>(-12));           // ADC
  PutLE32(&record, 36, 34);
  PutLE32(&record, 40, 7);                                    // audio gain
  PutBytes(&record, 44, std::string("1A2B000000009F8E7D6C\0\0\0\0", 24));
  PutLE32(&record, 68, 1);                                    // serial valid
  PutBytes(&record, 72, "BARCODE-0123456789-ABCDEFGHIJKLM");  // 32 bytes
  PutBytes(&record, 104, std::string("en-gb\0\0\0", 8));
  for (int i = 0; i < 96; ++i) record[112 + i] = static_cast<char>(i * 3);
  PutLE32(&record, 208, 9);                                   // soft board id
  PutLE32(&record, 212, static_cast<uint32_t>(-1));
  PutLE32(&record, 216, 2);
  PutLE32(&record, 220, 3);
  PutLE32(&record, 224, 5);                                   // version
  for (int i = 0; i < 5; ++i) PutLE32(&record, 228 + 4 * i, static_cast<uint32_t>(10 * (i + 1)));
  PutBytes(&record, 248, std::string("\x00\x1A\x2B\x3C\x4D\x5E", 6));
  const uint16_t ipv6[8] = {0xFE80, 0, 0, 0, 0x021A, 0x2BFF, 0xFE3C, 0x4D5E};
  for (int i = 0; i < 8; ++i) PutLE16(&record, 268 + 2 * i, ipv6[i]);
  PutBytes(&record, 288, "SKU-1234567");                      // 11 bytes
  for (int i = 0; i < 10; ++i) PutLE32(&record, 299 + 4 * i, static_cast<uint32_t>(-1000 * (i + 1)));
  return Sealed(record);
}

}  // namespace mfgtest

// Device root with the two partitions listed in "/proc/mtd" (their files are
// left to each test).
class MfgDataTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    WriteFile("/proc/mtd", mfgtest::kProcMtd);
  }

  void WriteCopy(int index, const std::string& record) const { WriteFile(mfgtest::CopyPath(index), record); }

  std::string Copy(int index) const { return ReadFile(mfgtest::CopyPath(index)); }

  // Installs "/usr/bin/mfgmode.sh", which records its argument in "/mfgmode.arg"
  // and exits with `exitCode`.
  void WriteModeScript(int exitCode) const {
    WriteFile("/usr/bin/mfgmode.sh", "#!/bin/sh\necho \"$1\" > \"$(dirname \"$0\")/../../mfgmode.arg\"\nexit " +
                                         std::to_string(exitCode) + "\n");
    std::filesystem::permissions(Host("/usr/bin/mfgmode.sh"), std::filesystem::perms::owner_all);
  }
};

#endif  // VIRELINE_TESTS_MFG_MFGDATATEST_H_
