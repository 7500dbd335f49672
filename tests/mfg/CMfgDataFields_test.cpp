#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include <vireline/CMfgData.h>

#include "mfg/MfgDataTest.h"

using mfgtest::GetLE32;

class CMfgDataFieldsTest : public MfgDataTest {
 protected:
  void SetUp() override {
    MfgDataTest::SetUp();
    WriteCopy(0, mfgtest::SampleRecord());
    ASSERT_EQ(mData.Init(), 0);
  }

  std::string Record() {
    std::string record(4096, '?');
    EXPECT_EQ(mData.Read(&record[0], 0, 4096), 4096u);
    return record;
  }

  CMfgData mData;
};

TEST_F(CMfgDataFieldsTest, GettersDecodeEveryFieldOfAHandMadeRecord) {
  int ts[7];
  ASSERT_EQ(mData.GetTSCalData(ts), 0);
  for (int i = 0; i < 7; ++i) EXPECT_EQ(ts[i], 100 + i);
  int value = 0, other = 0;
  EXPECT_EQ(mData.GetBLCalData(value), 0);
  EXPECT_EQ(value, 4000);
  EXPECT_EQ(mData.GetADCCalData(value, other), 0);
  EXPECT_EQ(value, -12);
  EXPECT_EQ(other, 34);
  EXPECT_EQ(mData.GetAudioGain(value), 0);
  EXPECT_EQ(value, 7);
  char serial[24];
  EXPECT_EQ(mData.GetSerialNumberRaw(serial), 0);
  EXPECT_EQ(std::string(serial, 24), std::string("1A2B000000009F8E7D6C\0\0\0\0", 24));
  bool valid = false;
  EXPECT_EQ(mData.GetSNValidFlag(valid), 0);
  EXPECT_TRUE(valid);
  char barcode[32];
  EXPECT_EQ(mData.GetSirasBarcode(barcode), 0);
  EXPECT_EQ(std::string(barcode, 32), "BARCODE-0123456789-ABCDEFGHIJKLM");
  char locale[8];
  EXPECT_EQ(mData.GetLocale(locale), 0);
  EXPECT_EQ(std::string(locale, 8), std::string("en-gb\0\0\0", 8));
  ts_pressure_data pressure;
  EXPECT_EQ(mData.GetTSPressure(&pressure), 0);
  for (int i = 0; i < 96; ++i) EXPECT_EQ(pressure.bytes[i], static_cast<unsigned char>(i * 3));
  EXPECT_EQ(mData.GetSoftBoardId(value), 0);
  EXPECT_EQ(value, 9);
  int bias[3];
  EXPECT_EQ(mData.GetAclBias(bias), 0);
  EXPECT_EQ(bias[0], -1);
  EXPECT_EQ(bias[1], 2);
  EXPECT_EQ(bias[2], 3);
  EXPECT_EQ(mData.GetMfgVersion(value), 0);
  EXPECT_EQ(value, 5);
  int bl2[5];
  EXPECT_EQ(mData.GetBL2CalData(bl2[0], bl2[1], bl2[2], bl2[3], bl2[4]), 0);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(bl2[i], 10 * (i + 1));
  unsigned char mac[20];
  EXPECT_EQ(mData.GetMacAddress(mac), 0);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(mac), 20), std::string("\x00\x1A\x2B\x3C\x4D\x5E", 6) + std::string(14, '\0'));
  unsigned short ipv6[8];
  EXPECT_EQ(mData.GetIPv6Address(ipv6), 0);
  const unsigned short expected[8] = {0xFE80, 0, 0, 0, 0x021A, 0x2BFF, 0xFE3C, 0x4D5E};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(ipv6[i], expected[i]);
  char sku[11];
  EXPECT_EQ(mData.GetSku(sku), 0);
  EXPECT_EQ(std::string(sku, 11), "SKU-1234567");
  long accel[10];
  EXPECT_EQ(mData.GetAccelerometerCalData(accel), 0);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(accel[i], -1000L * (i + 1));
}

TEST_F(CMfgDataFieldsTest, SettersStoreEachFieldAtItsOffsetLittleEndian) {
  int ts[7] = {-1, 2, -3, 4, -5, 6, 0x7FFFFFFF};
  EXPECT_EQ(mData.SetTSCalData(ts), 0);
  EXPECT_EQ(mData.SetBLCalData(0x01020304), 0);
  EXPECT_EQ(mData.SetADCCalData(11, -22), 0);
  EXPECT_EQ(mData.SetAudioGain(-3), 0);
  EXPECT_EQ(mData.SetSNValidFlag(true), 0);
  EXPECT_EQ(mData.SetSoftBoardId(0x1B), 0);
  int bias[3] = {7, 8, 9};
  EXPECT_EQ(mData.SetAclBias(bias), 0);
  EXPECT_EQ(mData.SetMfgVersion(3), 0);
  EXPECT_EQ(mData.SetBL2CalData(1, 2, 3, 4, 5), 0);
  const unsigned short ipv6[8] = {0x2001, 0x0DB8, 0, 0, 0, 0, 0, 0x0001};
  EXPECT_EQ(mData.SetIPv6Address(ipv6), 0);
  std::string record = Record();
  for (int i = 0; i < 7; ++i) EXPECT_EQ(GetLE32(record, 4 * i), static_cast<uint32_t>(ts[i]));
  EXPECT_EQ(record.substr(28, 4), "\x04\x03\x02\x01");
  EXPECT_EQ(GetLE32(record, 32), 11u);
  EXPECT_EQ(GetLE32(record, 36), static_cast<uint32_t>(-22));
  EXPECT_EQ(GetLE32(record, 40), static_cast<uint32_t>(-3));
  EXPECT_EQ(GetLE32(record, 68), 1u);
  EXPECT_EQ(GetLE32(record, 208), 0x1Bu);
  EXPECT_EQ(GetLE32(record, 212), 7u);
  EXPECT_EQ(GetLE32(record, 220), 9u);
  EXPECT_EQ(GetLE32(record, 224), 3u);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(GetLE32(record, 228 + 4 * i), static_cast<uint32_t>(i + 1));
  EXPECT_EQ(record.substr(268, 16), std::string("\x01\x20\xB8\x0D\0\0\0\0\0\0\0\0\0\0\x01\0", 16));
}

TEST_F(CMfgDataFieldsTest, TextFieldsAreFixedBlocksWithoutTerminators) {
  EXPECT_EQ(mData.SetSerialNumberRaw("ABCDEFGHIJKLMNOPQRSTUVWX"), 0);
  EXPECT_EQ(mData.SetSirasBarcode("0123456789abcdef0123456789abcdefNOT-STORED"), 0);
  EXPECT_EQ(mData.SetLocale("fr-frXYZ-more"), 0);
  EXPECT_EQ(mData.SetSku("ABCDEFGHIJKLMN"), 0);
  const unsigned char mac[20] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20};
  EXPECT_EQ(mData.SetMacAddress(mac), 0);
  std::string record = Record();
  EXPECT_EQ(record.substr(44, 24), "ABCDEFGHIJKLMNOPQRSTUVWX");
  EXPECT_EQ(record.substr(68, 4), std::string("\x01\0\0\0", 4));  // the next field is untouched
  EXPECT_EQ(record.substr(72, 32), "0123456789abcdef0123456789abcdef");
  EXPECT_EQ(record.substr(104, 8), "fr-frXYZ");
  EXPECT_EQ(record.substr(112, 1), std::string(1, '\0'));
  EXPECT_EQ(record.substr(288, 11), "ABCDEFGHIJK");
  EXPECT_EQ(record.substr(248, 20), std::string(reinterpret_cast<const char*>(mac), 20));
  char sku[12];
  std::memset(sku, '#', sizeof sku);
  EXPECT_EQ(mData.GetSku(sku), 0);
  EXPECT_EQ(sku[11], '#');  // exactly the field, no terminator written
}

TEST_F(CMfgDataFieldsTest, TheAccelerometerCalibrationStaysAtTheOddOffset299) {
  long values[10] = {1, -2, 0x12345678, -0x7FFFFFFF - 1, 0x7FFFFFFF, 6, 7, 8, 9, -10};
  EXPECT_EQ(mData.SetAccelerometerCalData(values), 0);
  std::string record = Record();
  EXPECT_EQ(record.substr(288, 11), "SKU-1234567");  // the SKU before it is untouched
  EXPECT_EQ(record.substr(299, 4), std::string("\x01\0\0\0", 4));
  EXPECT_EQ(record.substr(307, 4), "\x78\x56\x34\x12");
  for (int i = 0; i < 10; ++i) EXPECT_EQ(GetLE32(record, 299 + 4 * i), static_cast<uint32_t>(values[i]));
  EXPECT_EQ(record.substr(339, 1), std::string(1, '\0'));  // nor the reserved area after it
  long back[10];
  EXPECT_EQ(mData.GetAccelerometerCalData(back), 0);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(back[i], values[i]);
}

TEST_F(CMfgDataFieldsTest, AccelerometerValuesKeepOnlyTheirLow32BitsSigned) {
  if (sizeof(long) <= 4) GTEST_SKIP() << "long is 32 bits here: nothing is cut";
  long values[10] = {};
  values[0] = static_cast<long>(0x100000005LL);  // the high half is not stored
  values[1] = static_cast<long>(0xFFFFFFFFLL);   // reads back as -1
  EXPECT_EQ(mData.SetAccelerometerCalData(values), 0);
  long back[10];
  EXPECT_EQ(mData.GetAccelerometerCalData(back), 0);
  EXPECT_EQ(back[0], 5);
  EXPECT_EQ(back[1], -1);
}

TEST_F(CMfgDataFieldsTest, TheSerialValidFlagIsStoredAs0Or1AndAnyNonZeroReadsValid) {
  EXPECT_EQ(mData.SetSNValidFlag(false), 0);
  EXPECT_EQ(GetLE32(Record(), 68), 0u);
  bool valid = true;
  EXPECT_EQ(mData.GetSNValidFlag(valid), 0);
  EXPECT_FALSE(valid);
  const unsigned char odd[4] = {0, 0, 0x80, 0};
  EXPECT_EQ(mData.Write(odd, 68, 4), 4u);
  EXPECT_EQ(mData.GetSNValidFlag(valid), 0);
  EXPECT_TRUE(valid);
}

TEST_F(CMfgDataFieldsTest, TheTouchPressureTableIsCopiedAsABlock) {
  ts_pressure_data pressure;
  for (int i = 0; i < 96; ++i) pressure.bytes[i] = static_cast<unsigned char>(255 - i);
  EXPECT_EQ(mData.SetTSPressure(&pressure), 0);
  EXPECT_EQ(Record().substr(112, 96), std::string(reinterpret_cast<const char*>(pressure.bytes), 96));
}

TEST_F(CMfgDataFieldsTest, SettersChangeOnlyTheRecordInMemory) {
  EXPECT_EQ(mData.SetAudioGain(42), 0);
  EXPECT_EQ(Copy(0), mfgtest::SampleRecord());
  EXPECT_EQ(mData.ValidateCheckSum(), 1);  // until Update stores a new checksum
}

TEST_F(CMfgDataFieldsTest, ReadAndWriteStopAtTheEndOfTheRecord) {
  char buffer[16] = {};
  EXPECT_EQ(mData.Read(buffer, 4090, 16), 6u);
  EXPECT_EQ(mData.Read(buffer, 4096, 1), 0u);
  EXPECT_EQ(mData.Read(buffer, 0xFFFFFFFFu, 16), 0u);
  EXPECT_EQ(mData.Write(buffer, 4094, 16), 2u);
  EXPECT_EQ(mData.Write(buffer, 5000, 1), 0u);
  EXPECT_EQ(mData.Read(buffer, 10, 0), 0u);
  EXPECT_EQ(mData.Read(nullptr, 10, 4), 0u);
  EXPECT_EQ(mData.Write(nullptr, 10, 4), 0u);
}

TEST_F(CMfgDataFieldsTest, NullArgumentsMoveNothing) {
  EXPECT_EQ(mData.GetTSCalData(nullptr), kMfgShortTransfer);
  EXPECT_EQ(mData.SetAclBias(nullptr), kMfgShortTransfer);
  EXPECT_EQ(mData.GetSku(nullptr), kMfgShortTransfer);
  EXPECT_EQ(mData.SetLocale(nullptr), kMfgShortTransfer);
  EXPECT_EQ(mData.GetTSPressure(nullptr), kMfgShortTransfer);
  EXPECT_EQ(mData.SetTSPressure(nullptr), kMfgShortTransfer);
  EXPECT_EQ(mData.GetIPv6Address(nullptr), kMfgShortTransfer);
  EXPECT_EQ(mData.SetIPv6Address(nullptr), kMfgShortTransfer);
  EXPECT_EQ(mData.GetAccelerometerCalData(nullptr), kMfgShortTransfer);
  EXPECT_EQ(Record(), mfgtest::SampleRecord());
}

TEST(CMfgDataFieldsBeforeInit, EveryAccessorMovesNothingAndSaysSo) {
  CMfgData data;
  int value = 77, other = 78;
  EXPECT_EQ(data.GetAudioGain(value), kMfgShortTransfer);
  EXPECT_EQ(value, 77);
  EXPECT_EQ(data.GetADCCalData(value, other), kMfgShortTransfer);
  EXPECT_EQ(data.GetBL2CalData(value, value, value, value, other), kMfgShortTransfer);
  EXPECT_EQ(other, 78);
  EXPECT_EQ(data.SetAudioGain(1), kMfgShortTransfer);
  bool valid = true;
  EXPECT_EQ(data.GetSNValidFlag(valid), kMfgShortTransfer);
  EXPECT_TRUE(valid);
  char sku[11];
  EXPECT_EQ(data.GetSku(sku), kMfgShortTransfer);
  unsigned short ipv6[8] = {};
  EXPECT_EQ(data.SetIPv6Address(ipv6), kMfgShortTransfer);
  char buffer[4];
  EXPECT_EQ(data.Read(buffer, 0, 4), 0u);
  EXPECT_EQ(data.Write(buffer, 0, 4), 0u);
  EXPECT_EQ(data.SetSerialNumber("1234"), kMfgShortTransfer);
}
