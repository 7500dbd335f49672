// The start-up records: the clock record with its reset code, and the
// firmware identity from the metadata folder of each platform type.
#include <vireline/CLogFile.h>

#include <gtest/gtest.h>

#include <stdlib.h>

#include <ctime>
#include <ostream>
#include <string>
#include <vector>

#include <vireline/CLogReader.h>
#include <vireline/CTimeSync.h>
#include <vireline/LogEvents.h>

#include "tests/logging/LogFileTest.h"

namespace {

const int64_t k2008Jan1At0100 = 1199149200;  // the clock's power-on default, UTC
const int64_t kOrdinaryDay = 1700000000;     // November 2023

const char kFirmwareMeta[] =
    "PackageID=FW-1\nType=System\nVersion=1.2.3\nProductID=0x00001234\nPartNumber=PN-77\n";
const char kFirmwareText[] = "Product Id = 4660; Part Number = PN-77; Pkg Version = 1.2.3";

struct PlatformCase {
  const char* name;
  const char* firmwareFolder;
  unsigned short code;
};

void PrintTo(const PlatformCase& platform, std::ostream* out) { *out << platform.name; }

const PlatformCase kPlatforms[] = {
    {"Zanto", "/QV/Base/YNU/", 4},     {"Tamsel", "/QV/Base/K9V/", 10},  {"Oskava", "/QV/Base/MQDX/", 11},
    {"MIRA", "/QV/Base/MIRA/", 10},    {"TARVESSA", "/QV/Base/MQDX/", 11}, {"Unknown", "/QV/Base/", 0},
};

}  // namespace

class LogInitialLogDataTest : public LogFileTest {
 protected:
  // The records of slot `slot`'s file.
  std::vector<tLogRecord> Records(int slot) {
    CLogReader reader(SlotPath(slot));
    std::vector<tLogRecord> records;
    tLogRecord record;
    while (reader.Next(&record)) records.push_back(record);
    EXPECT_FALSE(reader.IsTorn());
    return records;
  }

  // The reset code the clock record gets at `now`.
  int ResetCodeAt(int64_t now) {
    mEnv.SetWallClockSeconds(now);
    Log()->LogInitialLogData();
    std::vector<tLogRecord> records = Records(0);
    CLogFile::Destroy();
    WriteSlotFiles(104, 104, 104);
    if (records.empty() || records.back().fields.size() != 2) return -1;
    return static_cast<int>(records.back().fields[1].number);
  }
};

class LogInitialLogDataPlatformTest : public LogInitialLogDataTest,
                                      public ::testing::WithParamInterface<PlatformCase> {};

TEST_P(LogInitialLogDataPlatformTest, WritesTheClockAndTheFirmwareIdentityToEverySlot) {
  WritePlatform(GetParam().name);
  WriteFile(std::string(GetParam().firmwareFolder) + "meta.inf", kFirmwareMeta);
  mEnv.SetWallClockSeconds(kOrdinaryDay);
  Log()->LogInitialLogData();
  for (int slot = 0; slot < 3; ++slot) {
    std::vector<tLogRecord> records = Records(slot);
    ASSERT_EQ(records.size(), 2u) << slot;
    EXPECT_STREQ(records[0].ClassName(), "CTimeSync");
    EXPECT_EQ(records[0].fields[0].number, kOrdinaryDay);
    EXPECT_EQ(records[0].fields[1].number, CTimeSync::kClockValid);
    EXPECT_STREQ(records[1].ClassName(), "CDebugInfo");
    EXPECT_EQ(records[1].fields[0].number, 0);
    EXPECT_EQ(records[1].fields[1].text, kFirmwareText);
    CLogReader reader(SlotPath(slot));
    EXPECT_EQ(reader.GetPlatformCode(), GetParam().code);
  }
  EXPECT_FALSE(Log()->IsProfileSet());
}

TEST_P(LogInitialLogDataPlatformTest, WithoutFirmwareMetadataWritesOnlyTheClock) {
  WritePlatform(GetParam().name);
  mEnv.SetWallClockSeconds(kOrdinaryDay);
  Log()->LogInitialLogData();
  for (int slot = 0; slot < 3; ++slot) {
    std::vector<tLogRecord> records = Records(slot);
    ASSERT_EQ(records.size(), 1u) << slot;
    EXPECT_STREQ(records[0].ClassName(), "CTimeSync");
  }
  EXPECT_EQ(Log()->GetCurrentProfile(), kLoggingProfileNotSet);
}

TEST_P(LogInitialLogDataPlatformTest, InvalidFirmwareMetadataCountsAsMissing) {
  WritePlatform(GetParam().name);
  WriteFile(std::string(GetParam().firmwareFolder) + "meta.inf", "ProductID=0x00001234\nPartNumber=PN-77\n");
  Log()->LogInitialLogData();
  EXPECT_EQ(Records(1).size(), 1u);
}

TEST_P(LogInitialLogDataPlatformTest, TheClockResetCodeFollowsTheThreeMinuteWindow) {
  WritePlatform(GetParam().name);
  EXPECT_EQ(ResetCodeAt(k2008Jan1At0100), CTimeSync::kClockReset);
  EXPECT_EQ(ResetCodeAt(k2008Jan1At0100 + 179), CTimeSync::kClockReset);
  EXPECT_EQ(ResetCodeAt(k2008Jan1At0100 + 180), CTimeSync::kClockValid);
  EXPECT_EQ(ResetCodeAt(k2008Jan1At0100 - 1), CTimeSync::kClockValid);
}

INSTANTIATE_TEST_SUITE_P(EveryPlatformType, LogInitialLogDataPlatformTest, ::testing::ValuesIn(kPlatforms),
                         [](const ::testing::TestParamInfo<PlatformCase>& info) {
                           return std::string(info.param.name);
                         });

TEST_F(LogInitialLogDataTest, OnlyTheFirstDayOf2008CountsAsAReset) {
  WritePlatform("Tamsel");
  EXPECT_EQ(ResetCodeAt(k2008Jan1At0100 + 86400), CTimeSync::kClockValid);       // 2 January 2008
  EXPECT_EQ(ResetCodeAt(1230771600), CTimeSync::kClockValid);                     // 1 January 2009 01:00
  EXPECT_EQ(ResetCodeAt(k2008Jan1At0100 + 3600 + 60), CTimeSync::kClockValid);   // 02:01
}

TEST_F(LogInitialLogDataTest, TheWindowIsInLocalTime) {
  WritePlatform("Tamsel");
  setenv("TZ", "UTC-2", 1);  // two hours east of UTC
  tzset();
  EXPECT_EQ(ResetCodeAt(k2008Jan1At0100 - 7200), CTimeSync::kClockReset);
  EXPECT_EQ(ResetCodeAt(k2008Jan1At0100), CTimeSync::kClockValid);
}

TEST_F(LogInitialLogDataTest, FirmwareMetadataOfAnotherPlatformIsNotUsed) {
  WritePlatform("MIRA");
  WriteFile("/QV/Base/K9V/meta.inf", kFirmwareMeta);
  Log()->LogInitialLogData();
  EXPECT_EQ(Records(2).size(), 1u);
}

TEST_F(LogInitialLogDataTest, TheRecordsFollowWhatIsAlreadyLoggedAndTheProfileIsClearedAfterwards) {
  WritePlatform("Oskava");
  WriteFile("/QV/Base/MQDX/meta.inf", kFirmwareMeta);
  Log()->SetCurrentProfile(1);
  LogData::Vireline::CGameExit earlier;
  Log()->Append(earlier);
  SetElapsedMSecs(5000);
  Log()->LogInitialLogData();
  std::vector<tLogRecord> records = Records(1);
  ASSERT_EQ(records.size(), 3u);
  EXPECT_STREQ(records[0].ClassName(), "CGameExit");
  EXPECT_EQ(records[1].timeStamp, 5000u);
  EXPECT_EQ(records[2].timeStamp, 5000u);
  EXPECT_FALSE(Log()->IsProfileSet());
}

TEST_F(LogInitialLogDataTest, TheCapAppliesToTheStartUpRecordsToo) {
  WritePlatform("Tamsel");
  WriteSlotFiles(CLogFile::kSizeCap - 208 - 20, 104, 104);  // room for one 11-byte clock record
  mEnv.SetWallClockSeconds(kOrdinaryDay);
  Log()->LogInitialLogData();
  std::string content = ReadFile(SlotPath(0));
  ASSERT_EQ(content.size(), CLogFile::kSizeCap - 208 - 20 + 11);
  EXPECT_EQ(Hex(content.substr(content.size() - 11)), Hex(CTimeSync(kOrdinaryDay, CTimeSync::kClockValid)));
  EXPECT_EQ(Records(1).size(), 0u);
  EXPECT_EQ(Records(2).size(), 0u);
}
