// The log file manager: files and headers at start, the current profile,
// appending, and the size cap that halts logging for good.
#include <vireline/CLogFile.h>

#include <gtest/gtest.h>

#include <string>

#include <vireline/LogEvents.h>

#include "tests/logging/LogFileTest.h"
#include "tests/mfg/MfgDataTest.h"

using LogData::Vireline::CGameExit;
using LogData::Vireline::CGameStart;

namespace {

// A record of exactly `size` bytes laid out by hand.
class SizedRecord : public CLogData {
 public:
  explicit SizedRecord(unsigned long size) { AdoptPack(new CLogDataPack(1, &size)); }
};

}  // namespace

class CLogFileTest : public LogFileTest {
 protected:
  void SetUp() override {
    LogFileTest::SetUp();
    WritePlatform("Tamsel");
  }
};

TEST_F(CLogFileTest, CreatesTheThreeMissingLogFilesEachWithAHeader) {
  Log();
  for (int slot = 0; slot < 3; ++slot) {
    EXPECT_EQ(Hex(ReadFile(SlotPath(slot))), Hex(HeaderBytes(10, slot))) << slot;
  }
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Uploads/3/profile.log"));
  EXPECT_EQ(CLogFile::GetLogFilePath(2), SlotPath(2));
}

TEST_F(CLogFileTest, TheHeaderCarriesTheSerialNumberFromTheManufacturingRecord) {
  WriteFile("/proc/mtd", mfgtest::kProcMtd);
  WriteFile(mfgtest::CopyPath(0), mfgtest::SampleRecord());
  WriteFile(mfgtest::CopyPath(1), mfgtest::SampleRecord());
  Log();
  std::string serial = BaseUtils::Instance()->GetSerialNumber().raw();
  ASSERT_NE(serial, "00000000000000000000");
  EXPECT_EQ(ReadFile(SlotPath(1)), HeaderBytes(10, 1, serial.c_str()));
}

TEST_F(CLogFileTest, ExistingFilesWithAValidHeaderAreLeftAlone) {
  CGameExit record;
  std::string content = HeaderBytes(4, 0, "OLD") + Bytes(record);
  WriteFile(SlotPath(0), content);
  CaptureDebugOutput();
  Log();
  EXPECT_EQ(ReadFile(SlotPath(0)), content);
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CLogFileTest, AFileOfFiftyBytesGetsAFreshHeaderOverItsFirstBytes) {
  WriteFile(SlotPath(1), std::string(50, 'x'));
  Log();
  EXPECT_EQ(ReadFile(SlotPath(1)), HeaderBytes(10, 1));
}

TEST_F(CLogFileTest, AFileOneByteShortOfAHeaderBecomesExactlyTheHeader) {
  WriteFile(SlotPath(2), std::string(103, 'x'));
  Log();
  EXPECT_EQ(ReadFile(SlotPath(2)), HeaderBytes(10, 2));
}

TEST_F(CLogFileTest, AFileOfExactlyAHeadersSizeIsNotRewritten) {
  std::string bytes(104, 'y');
  WriteFile(SlotPath(2), bytes);
  Log();
  EXPECT_EQ(ReadFile(SlotPath(2)), bytes);
}

TEST_F(CLogFileTest, AnInvalidHeaderIsReportedButNotRepairedAndRecordsStillGoThere) {
  std::string garbage(120, 'g');
  WriteFile(SlotPath(0), garbage);
  CaptureDebugOutput();
  Log()->SetCurrentProfile(0);
  CGameExit record;
  Log()->Append(record);
  EXPECT_EQ(DebugOutput(), "Fatal Logging Error. Log file header is invalid. Logging will halt.\n");
  EXPECT_EQ(ReadFile(SlotPath(0)), garbage + Bytes(record));
}

TEST_F(CLogFileTest, ALogFileThatCannotBeOpenedIsReportedWithItsSlotAndPath) {
  MakeDirs(SlotPath(1));  // a folder where the file should be
  CaptureDebugOutput();
  Log();
  EXPECT_EQ(DebugOutput(),
            "Fatal Logging Error; logging will halt. Error finding the log resource 1: "
            "/QV/Bulk/Data/Uploads/1/profile.log\n");
  Log()->SetCurrentProfile(1);
  CGameExit record;
  Log()->Append(record);  // lost without a word
  Log()->SetCurrentProfile(0);
  Log()->Append(record);
  EXPECT_EQ(ReadFile(SlotPath(0)), HeaderBytes(10, 0) + Bytes(record));
}

TEST_F(CLogFileTest, NoFileCanBeOpenedWhenEveryOpenFails) {
  mEnv.FailAfter(vireline::FaultInjectionEnv::kOpen, 0, EACCES);
  CaptureDebugOutput();
  Log()->SetCurrentProfile(0);
  CGameExit record;
  Log()->Append(record);
  for (int slot = 0; slot < 3; ++slot) {
    std::string message = "Fatal Logging Error; logging will halt. Error finding the log resource " +
                          std::to_string(slot) + ": " + SlotPath(slot) + "\n";
    EXPECT_NE(DebugOutput().find(message), std::string::npos) << DebugOutput();
  }
  mEnv.Reset();
  EXPECT_FALSE(Exists(SlotPath(0)));
}

TEST_F(CLogFileTest, AFailingHeaderWriteLeavesAnInvalidHeaderReported) {
  mEnv.FailAfter(vireline::FaultInjectionEnv::kWrite, 0, ENOSPC);
  CaptureDebugOutput();
  Log();
  mEnv.Reset();
  std::string expected;
  for (int slot = 0; slot < 3; ++slot) expected += "Fatal Logging Error. Log file header is invalid. Logging will halt.\n";
  EXPECT_EQ(DebugOutput(), expected);
}

TEST_F(CLogFileTest, NothingIsLoggedBeforeAProfileIsChosen) {
  EXPECT_FALSE(Log()->IsProfileSet());
  EXPECT_EQ(Log()->GetCurrentProfile(), kLoggingProfileNotSet);
  CGameExit record;
  Log()->Append(record);
  for (int slot = 0; slot < 3; ++slot) EXPECT_EQ(ReadFile(SlotPath(slot)).size(), 104u);
}

TEST_F(CLogFileTest, AppendAddsTheRecordAtTheEndOfTheCurrentSlotsFile) {
  Log()->SetCurrentProfile(1);
  CGameStart first("abc");
  CGameExit second;
  Log()->Append(first);
  *Log() << second << first;
  EXPECT_EQ(ReadFile(SlotPath(1)), HeaderBytes(10, 1) + Bytes(first) + Bytes(second) + Bytes(first));
  EXPECT_EQ(ReadFile(SlotPath(0)), HeaderBytes(10, 0));
  EXPECT_EQ(ReadFile(SlotPath(2)), HeaderBytes(10, 2));
}

TEST_F(CLogFileTest, PlayerNumbersSelectSlotsAndPlayerThreeSuppressesLoggingSilently) {
  CaptureDebugOutput();
  Log()->SetCurrentProfile(2);
  EXPECT_EQ(Log()->GetCurrentProfile(), kLoggingProfile2);
  Log()->SetCurrentProfile(tPlayerID{3});
  EXPECT_EQ(Log()->GetCurrentProfile(), kLoggingProfilePlayer3);
  EXPECT_TRUE(Log()->IsProfileSet());
  CGameExit record;
  Log()->Append(record);
  EXPECT_EQ(DebugOutput(), "");
  for (int slot = 0; slot < 3; ++slot) EXPECT_EQ(ReadFile(SlotPath(slot)).size(), 104u);
}

TEST_F(CLogFileTest, OtherPlayerNumbersLeaveNoProfileSet) {
  for (tPlayerID player : {-1, -2, -3, 4, 11, 256}) {
    Log()->SetCurrentProfile(0);
    Log()->SetCurrentProfile(player);
    EXPECT_EQ(Log()->GetCurrentProfile(), kLoggingProfileNotSet) << player;
  }
}

TEST_F(CLogFileTest, AnOutOfRangeLoggingProfileIsRefusedWithAMessageAndTheOldOneKept) {
  Log()->SetCurrentProfile(1);
  CaptureDebugOutput();
  Log()->SetCurrentProfile(static_cast<tLoggingProfile>(5));
  EXPECT_EQ(DebugOutput(),
            "Fatal Logging Error, current profile set to out of range value.  Logging will halt.\n");
  EXPECT_EQ(Log()->GetCurrentProfile(), kLoggingProfile1);
}

TEST_F(CLogFileTest, LoggingProfilesUpToTwoAreTakenNegativeOnesToo) {
  Log()->SetCurrentProfile(kLoggingProfile2);
  EXPECT_EQ(Log()->GetCurrentProfile(), kLoggingProfile2);
  Log()->SetCurrentProfile(kLoggingProfilePlayer3);
  EXPECT_EQ(Log()->GetCurrentProfile(), kLoggingProfilePlayer3);
  Log()->SetCurrentProfile(static_cast<tLoggingProfile>(-7));
  EXPECT_EQ(Log()->GetCurrentProfile(), -7);
}

TEST_F(CLogFileTest, AppendingUnderANegativeProfileOtherThanTheTwoKnownOnesIsReported) {
  Log()->SetCurrentProfile(static_cast<tLoggingProfile>(-7));
  CaptureDebugOutput();
  CGameExit record;
  Log()->Append(record);
  EXPECT_EQ(DebugOutput(), "Fatal Logging Error. CurrentProfile is invalid.");
  for (int slot = 0; slot < 3; ++slot) EXPECT_EQ(ReadFile(SlotPath(slot)).size(), 104u);
}

TEST_F(CLogFileTest, AnEmptyRecordIsNotWrittenAndDoesNotCount) {
  WriteSlotFiles(CLogFile::kSizeCap - 6 - 208, 104, 104);  // room for one 6-byte record less one byte
  Log()->SetCurrentProfile(0);
  CLogData empty;
  for (int i = 0; i < 10; ++i) Log()->Append(empty);
  SizedRecord five(5);
  Log()->Append(five);
  EXPECT_EQ(ReadFile(SlotPath(0)).size(), CLogFile::kSizeCap - 6 - 208 + 5);
}

TEST_F(CLogFileTest, WithThreeFilesOf400000BytesEveryAppendIsDropped) {
  WriteSlotFiles(400000, 400000, 400000);
  Log()->SetCurrentProfile(0);
  CGameExit record;
  Log()->Append(record);
  Log()->SetCurrentProfile(1);
  Log()->Append(record);
  SizedRecord tiny(1);
  Log()->Append(tiny);
  for (int slot = 0; slot < 3; ++slot) EXPECT_EQ(ReadFile(SlotPath(slot)).size(), 400000u) << slot;
}

TEST_F(CLogFileTest, ADroppedFifteenByteRecordStillCountsSoALaterOneByteRecordIsDroppedToo) {
  WriteSlotFiles(CLogFile::kSizeCap - 10 - 208, 104, 104);  // the count starts 10 below the cap
  Log()->SetCurrentProfile(2);
  CGameStart fifteen("abcdefgh");
  ASSERT_EQ(fifteen.GetPack()->GetTotalSize(), 15u);
  Log()->Append(fifteen);
  SizedRecord one(1);
  Log()->Append(one);
  EXPECT_EQ(ReadFile(SlotPath(2)).size(), 104u);
}

TEST_F(CLogFileTest, ARecordEndingOneByteBelowTheCapIsWrittenAndOneReachingItIsNot) {
  WriteSlotFiles(CLogFile::kSizeCap - 10 - 208, 104, 104);
  Log()->SetCurrentProfile(1);
  SizedRecord nine(9);
  Log()->Append(nine);
  EXPECT_EQ(ReadFile(SlotPath(1)).size(), 113u);
  SizedRecord one(1);
  Log()->Append(one);
  EXPECT_EQ(ReadFile(SlotPath(1)).size(), 113u);
}

TEST_F(CLogFileTest, ANewInstanceCountsTheFilesOnDiskAgain) {
  WriteSlotFiles(400000, 400000, 400000);
  Log();
  WriteSlotFiles(104, 104, 104);
  Log()->SetCurrentProfile(0);
  CGameExit record;
  Log()->Append(record);
  EXPECT_EQ(ReadFile(SlotPath(0)).size(), 104u);  // this instance still counts 1.2 MB
  CLogFile::Destroy();
  Log()->SetCurrentProfile(0);
  EXPECT_EQ(Log()->GetCurrentProfile(), kLoggingProfile0);
  Log()->Append(record);
  EXPECT_EQ(ReadFile(SlotPath(0)), HeaderBytes(10, 0) + Bytes(record));
}

TEST_F(CLogFileTest, DestroyStartsOverWithNoProfileSet) {
  Log()->SetCurrentProfile(1);
  CLogFile::Destroy();
  CLogFile::Destroy();  // nothing to destroy
  EXPECT_FALSE(Log()->IsProfileSet());
}

TEST_F(CLogFileTest, ARecordForAFileRemovedSinceStartIsLostSilently) {
  Log()->SetCurrentProfile(0);
  ASSERT_TRUE(vireline::Env::Current()->RemoveFile(SlotPath(0)).ok());
  CaptureDebugOutput();
  CGameExit record;
  Log()->Append(record);
  EXPECT_FALSE(Exists(SlotPath(0)));
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CLogFileTest, AFailingWriteLosesOnlyThatRecord) {
  Log()->SetCurrentProfile(0);
  CGameStart record("abc");
  mEnv.FailAfter(vireline::FaultInjectionEnv::kWrite, 0, ENOSPC, true);
  Log()->Append(record);
  Log()->Append(record);
  std::string content = ReadFile(SlotPath(0));
  EXPECT_EQ(content.substr(content.size() - 10), Bytes(record));
  EXPECT_LE(content.size(), 104u + 20u);
}

TEST_F(CLogFileTest, InitLogFileWithNullDoesNothing) {
  CaptureDebugOutput();
  Log()->InitLogFile(nullptr, 0);
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CLogFileTest, InitLogFileStoresTheLowEightBitsOfTheSlot) {
  WriteFile("/QV/Bulk/Data/Uploads/0/other.log", "");
  FILE* file = nullptr;
  ASSERT_TRUE(vireline::Env::Current()->OpenStream("/QV/Bulk/Data/Uploads/0/other.log", "rb+", &file).ok());
  Log()->InitLogFile(file, 257);
  vireline::Env::Current()->CloseStream(file);
  EXPECT_EQ(ReadFile("/QV/Bulk/Data/Uploads/0/other.log"), HeaderBytes(10, 1));
}

TEST_F(CLogFileTest, FileSizeKeepsThePositionAndIsZeroForNull) {
  WriteFile("/data.bin", "0123456789");
  FILE* file = nullptr;
  ASSERT_TRUE(vireline::Env::Current()->OpenStream("/data.bin", "rb", &file).ok());
  std::fseek(file, 3, SEEK_SET);
  EXPECT_EQ(FileSize(file), 10ul);
  EXPECT_EQ(std::fgetc(file), '3');
  vireline::Env::Current()->CloseStream(file);
  EXPECT_EQ(FileSize(nullptr), 0ul);
}

TEST_F(CLogFileTest, FileCreateMakesOrEmptiesAFileAndIgnoresNull) {
  WriteFile("/QV/full.txt", "content");
  FileCreate("/QV/full.txt");
  FileCreate("/QV/new.txt");
  FileCreate(nullptr);
  EXPECT_TRUE(Exists("/QV/new.txt"));
  EXPECT_EQ(ReadFile("/QV/full.txt"), "");
  EXPECT_EQ(ReadFile("/QV/new.txt"), "");
}

TEST_F(CLogFileTest, OnADeviceOfUnknownTypeEveryStartReportsTheHeadersAsInvalid) {
  WritePlatform("Quux");
  CaptureDebugOutput();
  Log();
  std::string threeReports;
  for (int slot = 0; slot < 3; ++slot) threeReports += "Fatal Logging Error. Log file header is invalid. Logging will halt.\n";
  EXPECT_EQ(DebugOutput(), threeReports);
  EXPECT_EQ(Hex(ReadFile(SlotPath(0)).substr(44, 2)), "00 00");
  CLogFile::Destroy();
  Log();
  EXPECT_EQ(DebugOutput(), threeReports + threeReports);
  Log()->SetCurrentProfile(0);
  CGameExit record;
  Log()->Append(record);  // still logged
  EXPECT_EQ(ReadFile(SlotPath(0)).size(), 110u);
}

TEST_F(CLogFileTest, FileCreateInAMissingFolderMakesNothing) {
  FileCreate("/QV/missing/new.txt");
  EXPECT_FALSE(Exists("/QV/missing"));
}
