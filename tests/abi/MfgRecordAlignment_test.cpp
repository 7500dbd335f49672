// The accelerometer calibration starts at the odd offset 299 of the
// manufacturing record. On the device's processor (and under qemu-arm) a
// multi-word load from an odd address raises a bus error, and `long` is 32
// bits, so the field must be moved byte by byte and sign-extended exactly.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <string>

#include <vireline/CMfgData.h>

#include "mfg/MfgDataTest.h"

namespace {

const uint32_t kAccelOffset = 299;
const uint32_t kAccelSize = 40;

// The 40 little-endian bytes of ten signed 32-bit values.
std::string LittleEndianWords(const int32_t (&values)[10]) {
  std::string bytes(kAccelSize, '\0');
  for (int i = 0; i < 10; ++i) mfgtest::PutLE32(&bytes, 4 * i, static_cast<uint32_t>(values[i]));
  return bytes;
}

const int32_t kExtremes[10] = {INT32_MIN, INT32_MAX, -1, 0, 1, 0x12345678, -0x12345678, 0x7F, -0x80, 299};

}  // namespace

class MfgRecordAlignmentTest : public MfgDataTest {
 protected:
  void SetUp() override {
    MfgDataTest::SetUp();
    WriteCopy(0, mfgtest::SampleRecord());
    ASSERT_EQ(mData.Init(), 0);
  }

  CMfgData mData;
};

TEST_F(MfgRecordAlignmentTest, CalibrationWrittenFromAnOddAddressReadsBackAsSignedLongs) {
  alignas(8) char source[1 + kAccelSize];
  std::memcpy(source + 1, LittleEndianWords(kExtremes).data(), kAccelSize);
  ASSERT_EQ(mData.Write(source + 1, kAccelOffset, kAccelSize), kAccelSize);
  long values[10];
  ASSERT_EQ(mData.GetAccelerometerCalData(values), 0);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(values[i], static_cast<long>(kExtremes[i])) << i;
}

TEST_F(MfgRecordAlignmentTest, CalibrationSetFromLongsReadsOutLittleEndianToAnOddAddress) {
  long values[10];
  for (int i = 0; i < 10; ++i) values[i] = kExtremes[i];
  ASSERT_EQ(mData.SetAccelerometerCalData(values), 0);
  alignas(8) char destination[3 + kAccelSize];
  ASSERT_EQ(mData.Read(destination + 3, kAccelOffset, kAccelSize), kAccelSize);
  EXPECT_EQ(std::string(destination + 3, kAccelSize), LittleEndianWords(kExtremes));
}

TEST_F(MfgRecordAlignmentTest, EveryWordOfTheFieldStaysAtItsOddOffset) {
  // Each value on its own, so a word read from the wrong offset cannot hide
  // behind its neighbours.
  for (int i = 0; i < 10; ++i) {
    long values[10] = {};
    values[i] = -2;
    ASSERT_EQ(mData.SetAccelerometerCalData(values), 0);
    unsigned char bytes[kAccelSize];
    ASSERT_EQ(mData.Read(bytes, kAccelOffset, kAccelSize), kAccelSize);
    for (int b = 0; b < static_cast<int>(kAccelSize); ++b) {
      EXPECT_EQ(bytes[b], b / 4 == i ? (b % 4 == 0 ? 0xFE : 0xFF) : 0x00) << "value " << i << " byte " << b;
    }
  }
}
