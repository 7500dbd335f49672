#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <vireline/CMfgData.h>

#include "mfg/MfgDataTest.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

const char kBoardId[] = "/sys/devices/platform/qvx300-gpio/board_id";
const char kPlatform[] = "/sys/devices/system/board/platform";
const char kLcd[] = "/sys/devices/system/board/lcd_mfg";

}  // namespace

// A record whose raw serial number is `raw` (24 bytes), loaded.
class CMfgDataSerialTest : public MfgDataTest {
 protected:
  void Load(const std::string& raw) {
    std::string record(4096, '\0');
    mfgtest::PutBytes(&record, 44, raw);
    WriteCopy(0, mfgtest::Sealed(record));
    ASSERT_EQ(mData.Init(), 0);
  }

  // The composed serial number (20 characters), checking its terminator.
  std::string Serial() {
    char out[24];
    std::memset(out, '#', sizeof out);
    EXPECT_EQ(mData.GetSerialNumber(out), 0);
    EXPECT_EQ(out[20], '\0');
    return std::string(out, 20);
  }

  CMfgData mData;
};

const std::string kRaw("1A2Bxxxxxxyy3C4D5E6F\0\0\0\0", 24);

TEST_F(CMfgDataSerialTest, MiraPlatformWithBoardId) {
  Load(kRaw);
  WriteFile(kPlatform, "MIRA\n");
  WriteFile(kBoardId, "2B\n");  // low five bits: 0x0B
  EXPECT_EQ(Serial(), "1A2B2100010B3C4D5E6F");
}

TEST_F(CMfgDataSerialTest, TarvessaPlatform) {
  Load(kRaw);
  WriteFile(kPlatform, "TARVESSA\n");
  WriteFile(kBoardId, "5");
  EXPECT_EQ(Serial(), "1A2B220001053C4D5E6F");
}

TEST_F(CMfgDataSerialTest, AnyOtherPlatformWordGivesCode0) {
  Load(kRaw);
  WriteFile(kPlatform, "Tamsel\n");
  WriteFile(kBoardId, "1F");
  EXPECT_EQ(Serial(), "1A2B0000001F3C4D5E6F");
}

TEST_F(CMfgDataSerialTest, ThePlatformWordMatchesOnlyInUpperCase) {
  Load(kRaw);
  WriteFile(kPlatform, "mira\n");
  WriteFile(kBoardId, "0");
  EXPECT_EQ(Serial(), "1A2B000000003C4D5E6F");
}

TEST_F(CMfgDataSerialTest, AnEmptyPlatformEntryGivesCode0) {
  Load(kRaw);
  WriteFile(kPlatform, "");
  WriteFile(kBoardId, "3");
  EXPECT_EQ(Serial(), "1A2B000000033C4D5E6F");
}

TEST_F(CMfgDataSerialTest, WithoutAPlatformEntryBoardIds11To13AreOneFamily) {
  Load(kRaw);
  for (const char* id : {"B", "c", "0xD"}) {
    WriteFile(kBoardId, std::string(id) + "\n");
    std::string serial = Serial();
    EXPECT_EQ(serial.substr(4, 6), "1E0001") << id;
    EXPECT_EQ(serial.substr(0, 4) + serial.substr(12), "1A2B3C4D5E6F");
  }
  WriteFile(kBoardId, "B");
  EXPECT_EQ(Serial(), "1A2B1E00010B3C4D5E6F");
}

TEST_F(CMfgDataSerialTest, WithoutAPlatformEntryOtherBoardIdsAreTheOlderFamily) {
  Load(kRaw);
  for (const char* id : {"0", "A", "E", "2B", "FF"}) {
    WriteFile(kBoardId, id);
    EXPECT_EQ(Serial().substr(4, 6), "170001") << id;
  }
  WriteFile(kBoardId, "2B");  // 43: its low five bits are 11, but the family looks at the whole id
  EXPECT_EQ(Serial(), "1A2B1700010B3C4D5E6F");
}

TEST_F(CMfgDataSerialTest, WithoutABoardIdEntryPositions10And11KeepTheStoredCharacters) {
  Load(std::string("1A2Bxxxxxx9e3C4D5E6F\0\0\0\0", 24));
  EXPECT_EQ(Serial(), "1A2B1700019E3C4D5E6F");
  WriteFile(kPlatform, "MIRA");
  EXPECT_EQ(Serial(), "1A2B2100019E3C4D5E6F");
}

TEST_F(CMfgDataSerialTest, ABoardIdEntryWithoutANumberCountsAsAllOnes) {
  Load(kRaw);
  WriteFile(kBoardId, "");
  EXPECT_EQ(Serial(), "1A2B1700011F3C4D5E6F");
  WriteFile(kBoardId, "zz\n");
  EXPECT_EQ(Serial(), "1A2B1700011F3C4D5E6F");
}

TEST_F(CMfgDataSerialTest, OnlyTheFirst10BytesOfTheBoardIdAreRead) {
  Load(kRaw);
  WriteFile(kBoardId, "00000000012");  // the eleventh character is not read: 1
  EXPECT_EQ(Serial().substr(10, 2), "01");
}

TEST_F(CMfgDataSerialTest, ABoardIdTooLargeFor32BitsCountsAsAllOnes) {
  Load(kRaw);
  WriteFile(kBoardId, "100000000B");  // not 11: the device's 32-bit parse saturates
  EXPECT_EQ(Serial().substr(4, 8), "1700011F");
  WriteFile(kBoardId, "-100000000B");
  EXPECT_EQ(Serial().substr(4, 8), "1700011F");
}

TEST_F(CMfgDataSerialTest, ABoardIdIsParsedWithBlanksSignAndPrefix) {
  Load(kRaw);
  WriteFile(kBoardId, "  -2\n");  // wraps to 0xFFFFFFFE
  EXPECT_EQ(Serial().substr(4, 8), "1700011E");
  WriteFile(kBoardId, "\t+0Xc");
  EXPECT_EQ(Serial().substr(4, 8), "1E00010C");
  WriteFile(kBoardId, "0x");  // a lone zero
  EXPECT_EQ(Serial().substr(4, 8), "17000100");
  WriteFile(kBoardId, "0d\n");
  EXPECT_EQ(Serial().substr(4, 8), "1E00010D");
}

TEST_F(CMfgDataSerialTest, LowerCaseHexLettersComeBackUpperCase) {
  Load(std::string("abcdxxxxxxxxef01a2b3c4\0\0", 24));
  WriteFile(kPlatform, "MIRA");
  WriteFile(kBoardId, "1");
  EXPECT_EQ(Serial(), "ABCD21000101EF01A2B3");
}

TEST_F(CMfgDataSerialTest, NonHexCharactersAndNulsBecomeZeros) {
  Load(std::string("G-z\0xxxxxxxx \xFF" "ab\0\0\0\0\0\0\0\0\0\0", 24));
  WriteFile(kPlatform, "MIRA");
  WriteFile(kBoardId, "1");
  EXPECT_EQ(Serial(), "00002100010100AB0000");
}

TEST_F(CMfgDataSerialTest, ComposesFromZerosWhenNoRecordIsLoaded) {
  CMfgData data;
  char out[24];
  std::memset(out, '#', sizeof out);
  WriteFile(kPlatform, "TARVESSA");
  EXPECT_EQ(data.GetSerialNumber(out), kMfgShortTransfer);
  EXPECT_EQ(std::string(out, 21), std::string("00002200010000000000\0", 21));
}

TEST_F(CMfgDataSerialTest, SetSerialNumberPadsWithSpacesAndEndsWithFourZeros) {
  Load(std::string(24, 'Z'));
  ASSERT_EQ(mData.SetSNValidFlag(true), 0);
  EXPECT_EQ(mData.SetSerialNumber("AB12"), 0);
  char raw[24];
  ASSERT_EQ(mData.GetSerialNumberRaw(raw), 0);
  EXPECT_EQ(std::string(raw, 24), std::string("AB12                \0\0\0\0", 24));
  bool valid = true;
  EXPECT_EQ(mData.GetSNValidFlag(valid), 0);
  EXPECT_FALSE(valid);  // a new serial number is not valid until the factory says so
}

TEST_F(CMfgDataSerialTest, SpacesThatAreNotOverwrittenComeBackAsZeros) {
  Load(kRaw);
  ASSERT_EQ(mData.SetSerialNumber("AB12"), 0);
  WriteFile(kPlatform, "MIRA");
  WriteFile(kBoardId, "7");
  EXPECT_EQ(Serial(), "AB122100010700000000");
}

TEST_F(CMfgDataSerialTest, SetSerialNumberKeepsAtMost20Characters) {
  Load(kRaw);
  EXPECT_EQ(mData.SetSerialNumber("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"), 0);
  char raw[24];
  ASSERT_EQ(mData.GetSerialNumberRaw(raw), 0);
  EXPECT_EQ(std::string(raw, 24), std::string("0123456789ABCDEFGHIJ\0\0\0\0", 24));
  EXPECT_EQ(mData.SetSerialNumber(""), 0);
  ASSERT_EQ(mData.GetSerialNumberRaw(raw), 0);
  EXPECT_EQ(std::string(raw, 24), std::string(20, ' ') + std::string(4, '\0'));
  EXPECT_EQ(mData.SetSerialNumber(nullptr), 0);
  ASSERT_EQ(mData.GetSerialNumberRaw(raw), 0);
  EXPECT_EQ(std::string(raw, 24), std::string(20, ' ') + std::string(4, '\0'));
}

class CMfgDataComponentTest : public MfgDataTest {};

TEST_F(CMfgDataComponentTest, ReadsTheLcdTypeWithoutItsNewline) {
  WriteFile(kLcd, "2\n");
  char type[16];
  std::memset(type, '#', sizeof type);
  EXPECT_EQ(CMfgData::GetComponentType(kMfgComponentLcd, type, sizeof type), 0);
  EXPECT_STREQ(type, "2");
}

TEST_F(CMfgDataComponentTest, ALongerTypeFillsTheBufferWithoutATerminator) {
  WriteFile(kLcd, "ABCDEFGH\n");
  char type[5];
  EXPECT_EQ(CMfgData::GetComponentType(kMfgComponentLcd, type, 4), 0);
  EXPECT_EQ(std::string(type, 4), "ABCD");
}

TEST_F(CMfgDataComponentTest, AShortReadDropsItsLastCharacterEvenWithoutANewline) {
  WriteFile(kLcd, "LG");
  char type[8];
  EXPECT_EQ(CMfgData::GetComponentType(kMfgComponentLcd, type, sizeof type), 0);
  EXPECT_STREQ(type, "L");
}

TEST_F(CMfgDataComponentTest, AnEmptyEntryGivesAnEmptyTextAndNothingBeforeTheBuffer) {
  WriteFile(kLcd, "");
  char guarded[3] = {'#', '#', '#'};
  EXPECT_EQ(CMfgData::GetComponentType(kMfgComponentLcd, guarded + 1, 2), 0);
  EXPECT_EQ(guarded[0], '#');
  EXPECT_EQ(guarded[1], '\0');
  EXPECT_EQ(guarded[2], '#');
  EXPECT_EQ(CMfgData::GetComponentType(kMfgComponentLcd, guarded + 1, 0), 0);
  EXPECT_EQ(CMfgData::GetComponentType(kMfgComponentLcd, nullptr, 4), 0);
}

TEST_F(CMfgDataComponentTest, AMissingLcdEntryIsReported) {
  char type[8];
  CaptureStderr();
  EXPECT_EQ(CMfgData::GetComponentType(kMfgComponentLcd, type, sizeof type), kMfgComponentUnavailable);
  EXPECT_EQ(GetCapturedStderr(), "Failed to open lcd sysfs entry: No such file or directory\n");
}

TEST_F(CMfgDataComponentTest, OnlyTheLcdIsKnown) {
  WriteFile(kLcd, "2\n");
  char type[8];
  CaptureStderr();
  EXPECT_EQ(CMfgData::GetComponentType(0, type, sizeof type), kMfgUnknownComponent);
  EXPECT_EQ(CMfgData::GetComponentType(2, type, sizeof type), kMfgUnknownComponent);
  EXPECT_EQ(GetCapturedStderr(), "");
}

TEST_F(CMfgDataComponentTest, TheLcdTypeCannotBeSet) {
  CaptureStderr();
  EXPECT_EQ(CMfgData::SetComponentType(kMfgComponentLcd, "3"), kMfgUnknownComponent);
  EXPECT_EQ(GetCapturedStderr(), "LCD type is based on ADC readings and can not be set.\n");
}

TEST_F(CMfgDataComponentTest, OtherComponentsCannotBeSetEither) {
  CaptureStderr();
  EXPECT_EQ(CMfgData::SetComponentType(7, "3"), kMfgUnknownComponent);
  EXPECT_EQ(GetCapturedStderr(), "");
}
