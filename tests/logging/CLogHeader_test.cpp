// The 104-byte file header: its constant prefix, its fields and which bytes
// are accepted as a header.
#include <vireline/CLogHeader.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace {

const char kIdentifier[] = "606F7B93-30D0-42b9-9B6F-3C6A9C92AC19";

std::string Bytes(const CLogHeader& header) {
  return std::string(reinterpret_cast<const char*>(header.GetBytes()), CLogHeader::kSize);
}

// A header as a device of platform code `platform` writes it.
std::string DeviceHeader(unsigned short platform) {
  CLogHeader header;
  header.SetPlatform(platform);
  header.SetDeviceSerialNum("SN123");
  header.SetLogNum(2);
  return Bytes(header);
}

CLogHeader Parse(std::string bytes) {
  return CLogHeader(reinterpret_cast<unsigned char*>(&bytes[0]), static_cast<int>(bytes.size()));
}

}  // namespace

TEST(CLogHeader, ANewHeaderIsTheConstantPrefixAndZeros) {
  CLogHeader header;
  std::string expected = std::string(kIdentifier) + std::string(4, '\0') + "\x01" + std::string(1, '\0') +
                         "\x38" + std::string(1, '\0') + std::string(60, '\0');
  EXPECT_EQ(Bytes(header), expected);
  EXPECT_TRUE(header.IsValid());
  EXPECT_EQ(std::memcmp(CLogHeader::mConstData, expected.data(), 44), 0);
}

TEST(CLogHeader, TheIdentifierKeepsItsMixedCase) {
  EXPECT_EQ(Bytes(CLogHeader()).substr(0, 36), "606F7B93-30D0-42b9-9B6F-3C6A9C92AC19");
}

TEST(CLogHeader, FieldsAreStoredLittleEndianAtTheirOffsets) {
  CLogHeader header;
  header.SetPlatform(0x0A0B);
  header.SetDeviceSerialNum("ABC");
  header.SetLogNum(2);
  header.SetDeviceClockVal(0x11223344);
  header.SetTimeRcvd(0x55667788);
  header.SetFlags(0x99AABBCC);
  std::string bytes = Bytes(header);
  EXPECT_EQ(bytes.substr(44, 4), std::string("\x0B\x0A\0\0", 4));
  EXPECT_EQ(bytes.substr(48, 40), std::string("ABC") + std::string(37, '\0'));
  EXPECT_EQ(bytes.substr(88, 4), std::string("\x02\0\0\0", 4));
  EXPECT_EQ(bytes.substr(92, 12), "\x44\x33\x22\x11\x88\x77\x66\x55\xCC\xBB\xAA\x99");
  EXPECT_EQ(header.GetPlatform(), 0x0A0B);
  EXPECT_STREQ(header.GetDeviceSerialNum(), "ABC");
  EXPECT_EQ(header.GetLogNum(), 2);
  EXPECT_EQ(header.GetDeviceClockVal(), 0x11223344ul);
  EXPECT_EQ(header.GetTimeRcvd(), 0x55667788ul);
  EXPECT_EQ(header.GetFlags(), 0x99AABBCCul);
}

TEST(CLogHeader, ASerialNumberOfFiftyCharactersIsStoredAsItsFirstThirtyNine) {
  CLogHeader header;
  std::string serial = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmn";
  ASSERT_EQ(serial.size(), 50u);
  header.SetDeviceSerialNum(serial.c_str());
  EXPECT_EQ(std::string(header.GetDeviceSerialNum()), serial.substr(0, 39));
  EXPECT_EQ(Bytes(header)[87], '\0');
  EXPECT_EQ(Bytes(header)[88], '\0');
}

TEST(CLogHeader, AShorterSerialNumberReplacesALongerOneCompletely) {
  CLogHeader header;
  header.SetDeviceSerialNum("LONGSERIALNUMBER");
  header.SetDeviceSerialNum("S1");
  EXPECT_EQ(Bytes(header).substr(48, 40), std::string("S1") + std::string(38, '\0'));
  header.SetDeviceSerialNum(nullptr);
  EXPECT_STREQ(header.GetDeviceSerialNum(), "S1");
}

TEST(CLogHeader, DeviceBytesParseBackToTheSameHeader) {
  CLogHeader parsed = Parse(DeviceHeader(10));
  EXPECT_TRUE(parsed.IsValid());
  EXPECT_EQ(parsed.GetPlatform(), 10);
  EXPECT_STREQ(parsed.GetDeviceSerialNum(), "SN123");
  EXPECT_EQ(parsed.GetLogNum(), 2);
  EXPECT_EQ(Bytes(parsed), DeviceHeader(10));
}

TEST(CLogHeader, PlatformCodesOneToElevenAreValid) {
  for (unsigned short code = 1; code <= 11; ++code) EXPECT_TRUE(Parse(DeviceHeader(code)).IsValid()) << code;
}

TEST(CLogHeader, APlatformCodeOfZeroOrTwelveIsInvalidEvenWithTheRightIdentifier) {
  for (unsigned short code : {0, 12, 0xFFFF}) {
    CLogHeader parsed = Parse(DeviceHeader(code));
    EXPECT_FALSE(parsed.IsValid()) << code;
    EXPECT_EQ(parsed.GetPlatform(), 0);
    EXPECT_EQ(parsed.GetDeviceSerialNum(), nullptr);
    EXPECT_EQ(parsed.GetLogNum(), 0);
    EXPECT_EQ(Bytes(parsed), std::string(104, '\0'));
  }
}

TEST(CLogHeader, AnyChangedPrefixByteMakesTheHeaderInvalid) {
  for (size_t i = 0; i < 44; ++i) {
    std::string bytes = DeviceHeader(4);
    bytes[i] = static_cast<char>(bytes[i] ^ 0x20);
    EXPECT_FALSE(Parse(bytes).IsValid()) << "byte " << i;
  }
}

TEST(CLogHeader, TheIdentifierInAllUpperCaseIsNotAccepted) {
  std::string bytes = DeviceHeader(4);
  bytes.replace(0, 36, "606F7B93-30D0-42B9-9B6F-3C6A9C92AC19");
  EXPECT_FALSE(Parse(bytes).IsValid());
}

TEST(CLogHeader, FewerThan104BytesAreInvalid) {
  std::string bytes = DeviceHeader(4);
  EXPECT_FALSE(Parse(bytes.substr(0, 103)).IsValid());
  EXPECT_FALSE(CLogHeader(nullptr, 104).IsValid());
  EXPECT_TRUE(Parse(bytes + "extra bytes are ignored").IsValid());
  EXPECT_FALSE(Parse(bytes).GetFlags() != 0);
}

TEST(CLogHeader, AForeignSerialNumberWithoutItsNulStillEndsInTheField) {
  std::string bytes = DeviceHeader(4);
  bytes.replace(48, 44, std::string(44, 'Z'));
  CLogHeader parsed = Parse(bytes);
  ASSERT_TRUE(parsed.IsValid());
  EXPECT_EQ(std::string(parsed.GetDeviceSerialNum()), std::string(39, 'Z'));
}

TEST(CLogHeader, HeadersLiveOnTheHeap) {
  std::unique_ptr<CLogHeader> header(new CLogHeader());
  EXPECT_TRUE(header->IsValid());
}
