// Facts of the devices' ABI (32-bit ARM, EABI hard-float) that the library's
// code must be written for. On the device they hold; elsewhere the checks that
// only describe the device are skipped, so a green armhf run proves the suite
// really ran with the device's type sizes.
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace {

#if defined(__arm__)
constexpr bool kDeviceAbi = true;
#else
constexpr bool kDeviceAbi = false;
#endif

#define SKIP_UNLESS_DEVICE_ABI() \
  if (!kDeviceAbi) GTEST_SKIP() << "describes the 32-bit ARM devices; this build is for another processor"

}  // namespace

TEST(DeviceAbi, LongIsThirtyTwoBitsSoLongFieldsNeedNoTruncation) {
  SKIP_UNLESS_DEVICE_ABI();
  // Record fields typed `long`/`unsigned long` (log fields, clock values,
  // accelerometer calibration) are 4 bytes on the device: every value fits.
  EXPECT_EQ(sizeof(long), 4u);
  EXPECT_EQ(sizeof(unsigned long), 4u);
  EXPECT_EQ(LONG_MAX, INT32_MAX);
  EXPECT_EQ(LONG_MIN, INT32_MIN);
}

TEST(DeviceAbi, PointersAndSizesAreThirtyTwoBits) {
  SKIP_UNLESS_DEVICE_ABI();
  // Relocatable datasets store 32-bit pointer fields: they only work here.
  EXPECT_EQ(sizeof(void*), 4u);
  EXPECT_EQ(sizeof(std::size_t), 4u);
  EXPECT_EQ(sizeof(std::ptrdiff_t), 4u);
}

TEST(DeviceAbi, PlainCharIsUnsigned) {
  SKIP_UNLESS_DEVICE_ABI();
  // Text with bytes of 0x80 and above compares and converts differently from
  // the x86-64 build machine: byte values must go through unsigned char.
  EXPECT_TRUE(std::is_unsigned<char>::value);
  char high = static_cast<char>(0xE9);
  EXPECT_GT(high, 0);
}

TEST(DeviceAbi, SixtyFourBitNumbersAreEightByteAligned) {
  SKIP_UNLESS_DEVICE_ABI();
  // Multi-word loads of these fault at an odd address on the device (and
  // under qemu-arm): binary records are decoded byte by byte, never cast.
  EXPECT_EQ(alignof(uint64_t), 8u);
  EXPECT_EQ(alignof(double), 8u);
}

TEST(NativeByteOrder, IsLittleEndianOnEveryBuildTarget) {
  // The daemon's messages and the relocation lists of datasets are written in
  // the device's native order, which the file formats define as little-endian.
  const uint32_t value = 0x01020304;
  unsigned char bytes[4];
  std::memcpy(bytes, &value, sizeof bytes);
  EXPECT_EQ(bytes[0], 0x04);
  EXPECT_EQ(bytes[3], 0x01);
}
