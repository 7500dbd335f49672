#include <gtest/gtest.h>

#include <zlib.h>

#include <string>
#include <vector>

#include <vireline/CMfgData.h>

#include "mfg/MfgDataTest.h"

namespace {

std::vector<unsigned char> Bytes(const std::string& text) { return {text.begin(), text.end()}; }

}  // namespace

TEST(CMfgDataChecksum, IsTheSeededCrc32InvertedNotThePlainCrc32) {
  std::vector<unsigned char> record = Bytes(mfgtest::SampleRecord());
  uint32_t seeded = ~static_cast<uint32_t>(crc32(0xFFFFFFFFUL, record.data(), 4092));
  uint32_t plain = static_cast<uint32_t>(crc32(0UL, record.data(), 4092));
  EXPECT_EQ(CMfgData::ComputeCheckSum(record.data()), seeded);
  EXPECT_NE(CMfgData::ComputeCheckSum(record.data()), plain);
}

TEST(CMfgDataChecksum, OfAnAllZeroRecordIsZeroSoABlankRecordPassesTheCheck) {
  // zlib inverts the seed on entry, so zeros leave the register at 0 and the
  // two inversions cancel: the record Init falls back to checks as valid.
  std::vector<unsigned char> zeros(4096, 0);
  EXPECT_EQ(CMfgData::ComputeCheckSum(zeros.data()), 0u);
  EXPECT_EQ(CMfgData::ValidateCheckSum(zeros.data()), 0);
  std::vector<unsigned char> erased(4096, 0xFF);  // erased flash does not
  EXPECT_EQ(CMfgData::ValidateCheckSum(erased.data()), 1);
}

TEST(CMfgDataChecksum, CoversBytes0To4091Only) {
  std::vector<unsigned char> record = Bytes(mfgtest::SampleRecord());
  uint32_t before = CMfgData::ComputeCheckSum(record.data());
  record[4092] ^= 0xFF;
  EXPECT_EQ(CMfgData::ComputeCheckSum(record.data()), before);
  record[4091] ^= 0x01;
  EXPECT_NE(CMfgData::ComputeCheckSum(record.data()), before);
}

TEST(CMfgDataChecksum, UpdateStoresItLittleEndianAtOffset4092) {
  std::string laidOut = mfgtest::SampleRecord();
  std::vector<unsigned char> record = Bytes(laidOut);
  record[4092] = record[4093] = record[4094] = record[4095] = 0;
  EXPECT_EQ(CMfgData::UpdateCheckSum(record.data()), 0);
  EXPECT_EQ(std::string(record.begin(), record.end()), laidOut);
  EXPECT_EQ(mfgtest::GetLE32(laidOut, 4092), CMfgData::ComputeCheckSum(record.data()));
}

TEST(CMfgDataChecksum, ARecordLaidOutByHandIsAccepted) {
  std::vector<unsigned char> record = Bytes(mfgtest::SampleRecord());
  EXPECT_EQ(CMfgData::ValidateCheckSum(record.data()), 0);
}

TEST(CMfgDataChecksum, AnySingleFlippedBitIsRejected) {
  const std::vector<unsigned char> good = Bytes(mfgtest::SampleRecord());
  for (size_t byte : {size_t{0}, size_t{44}, size_t{299}, size_t{2048}, size_t{4091}, size_t{4092}, size_t{4095}}) {
    for (int bit = 0; bit < 8; ++bit) {
      std::vector<unsigned char> record = good;
      record[byte] ^= static_cast<unsigned char>(1u << bit);
      EXPECT_EQ(CMfgData::ValidateCheckSum(record.data()), 1) << "byte " << byte << " bit " << bit;
    }
  }
}

TEST(CMfgDataChecksum, ANullRecordIsInvalid) {
  EXPECT_EQ(CMfgData::ValidateCheckSum(nullptr), 1);
  EXPECT_EQ(CMfgData::UpdateCheckSum(nullptr), 0);
}

TEST(CMfgDataChecksum, OfTheInMemoryRecordIsInvalidBeforeInit) {
  CMfgData data;
  EXPECT_EQ(data.ValidateCheckSum(), 1);
}
