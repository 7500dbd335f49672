#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include <vireline/CMfgData.h>

#include "mfg/MfgDataTest.h"
#include "platform/FaultInjectionEnv.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using vireline::Env;
using vireline::FaultInjectionEnv;

namespace {

// The whole in-memory record, read through the public interface.
std::string RecordOf(CMfgData& data) {
  std::string record(4096, '?');
  EXPECT_EQ(data.Read(&record[0], 0, 4096), 4096u);
  return record;
}

// The checksum results Init recorded, as a pair.
std::pair<int, int> Results(CMfgData& data) {
  int first = 5, second = 5;
  EXPECT_EQ(data.GetNorChecksumResults(first, second), 0);
  return {first, second};
}

std::string Corrupted(std::string record) {
  record[1000] ^= 0x10;
  return record;
}

std::string OtherRecord() {
  std::string record = mfgtest::SampleRecord();
  mfgtest::PutBytes(&record, 288, "SKU-OTHER-1");
  return mfgtest::Sealed(record);
}

}  // namespace

class GetNorPartitionFilenameTest : public MfgDataTest {
 protected:
  // The device path found for `index`, or its status when none is.
  static std::string PathOf(int index) {
    char path[16] = "";
    int status = CMfgData::GetNorPartitionFilename(path, index);
    return status == 0 ? path : "status " + std::to_string(status);
  }
};

TEST_F(GetNorPartitionFilenameTest, NamesTheDeviceOfEachCopy) {
  EXPECT_EQ(PathOf(0), "/dev/mtd3");
  EXPECT_EQ(PathOf(1), "/dev/mtd4");
}

TEST_F(GetNorPartitionFilenameTest, UsesOnlyTheLowBitOfTheIndex) {
  EXPECT_EQ(PathOf(2), "/dev/mtd3");
  EXPECT_EQ(PathOf(7), "/dev/mtd4");
  EXPECT_EQ(PathOf(-1), "/dev/mtd4");
}

TEST_F(GetNorPartitionFilenameTest, TakesOnlyTheFirstDigitOfATwoDigitDevice) {
  WriteFile("/proc/mtd", "dev:    size   erasesize  name\nmtd12: 00001000 00001000 \"MfgData0\"\n");
  EXPECT_EQ(PathOf(0), "/dev/mtd1");
}

TEST_F(GetNorPartitionFilenameTest, TakesTheFirstLineThatNamesThePartition) {
  WriteFile("/proc/mtd", "mtd5: 00001000 00001000 \"MfgData1\"\nmtd6: 00001000 00001000 \"MfgData1\"\n");
  EXPECT_EQ(PathOf(1), "/dev/mtd5");
}

TEST_F(GetNorPartitionFilenameTest, ReportsAMissingProcMtd) {
  vireline::Env::Current()->RemoveFile("/proc/mtd");
  char path[16] = "unchanged";
  CaptureStderr();
  EXPECT_EQ(CMfgData::GetNorPartitionFilename(path, 0), kMfgPartitionNotFound);
  EXPECT_EQ(GetCapturedStderr(), "GetNorPartitionFilename filed opening /proc/mtd: No such file or directory\n");
  EXPECT_STREQ(path, "unchanged");
}

TEST_F(GetNorPartitionFilenameTest, ReportsAPartitionThatIsNotListed) {
  WriteFile("/proc/mtd", "dev:    size   erasesize  name\nmtd3: 00001000 00001000 \"MfgData0\"\n");
  CaptureStderr();
  EXPECT_EQ(PathOf(1), "status 6");
  EXPECT_EQ(GetCapturedStderr(), "GetNorPartitionFilename: Could not find MfgData1 in /proc/mtd\n");
}

TEST_F(GetNorPartitionFilenameTest, AnEmptyProcMtdListsNothing) {
  WriteFile("/proc/mtd", "");
  CaptureStderr();
  EXPECT_EQ(PathOf(0), "status 6");
  EXPECT_EQ(GetCapturedStderr(), "GetNorPartitionFilename: Could not find MfgData0 in /proc/mtd\n");
}

TEST_F(GetNorPartitionFilenameTest, ANameSplitByTheLineLimitIsNotFound) {
  // Lines are read 79 bytes at a time; a name that straddles the cut is missed.
  WriteFile("/proc/mtd", "mtd3: " + std::string(70, ' ') + "\"MfgData0\"\n");
  CaptureStderr();
  EXPECT_EQ(PathOf(0), "status 6");
  GetCapturedStderr();
}

TEST_F(GetNorPartitionFilenameTest, AFailingReadEndsTheSearch) {
  FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  env.FailAfter(FaultInjectionEnv::kRead, 0);
  CaptureStderr();
  EXPECT_EQ(PathOf(0), "status 6");
  EXPECT_EQ(GetCapturedStderr(), "GetNorPartitionFilename: Could not find MfgData0 in /proc/mtd\n");
}

class CMfgDataInitTest : public MfgDataTest {};

TEST_F(CMfgDataInitTest, StartsWithNothingExamined) {
  CMfgData data;
  EXPECT_EQ(Results(data), std::make_pair(-1, -1));
}

TEST_F(CMfgDataInitTest, BothCopiesValidLoadsCopy0AndLeavesCopy1Unexamined) {
  WriteCopy(0, mfgtest::SampleRecord());
  WriteCopy(1, OtherRecord());
  CMfgData data;
  EXPECT_EQ(data.Init(), 0);
  EXPECT_EQ(Results(data), std::make_pair(0, -1));
  EXPECT_EQ(RecordOf(data), mfgtest::SampleRecord());
  EXPECT_EQ(data.ValidateCheckSum(), 0);
}

TEST_F(CMfgDataInitTest, Copy1IsNotEvenReadWhenCopy0IsValid) {
  WriteCopy(0, mfgtest::SampleRecord());  // copy 1 does not exist
  CMfgData data;
  EXPECT_EQ(data.Init(), 0);
}

TEST_F(CMfgDataInitTest, Copy0CorruptLoadsCopy1) {
  WriteCopy(0, Corrupted(mfgtest::SampleRecord()));
  WriteCopy(1, OtherRecord());
  CMfgData data;
  EXPECT_EQ(data.Init(), 0);
  EXPECT_EQ(Results(data), std::make_pair(1, 0));
  EXPECT_EQ(RecordOf(data), OtherRecord());
}

TEST_F(CMfgDataInitTest, BothCopiesCorruptGiveAnAllZeroRecordWithoutAnError) {
  WriteCopy(0, Corrupted(mfgtest::SampleRecord()));
  WriteCopy(1, std::string(4096, '\xFF'));  // erased, never written
  CMfgData data;
  EXPECT_EQ(data.Init(), 0);
  EXPECT_EQ(Results(data), std::make_pair(1, 1));
  EXPECT_EQ(RecordOf(data), std::string(4096, '\0'));
  int value = -1;
  EXPECT_EQ(data.GetAudioGain(value), 0);
  EXPECT_EQ(value, 0);
  char sku[11];
  EXPECT_EQ(data.GetSku(sku), 0);
  EXPECT_EQ(std::string(sku, 11), std::string(11, '\0'));
  long accel[10];
  EXPECT_EQ(data.GetAccelerometerCalData(accel), 0);
  for (long v : accel) EXPECT_EQ(v, 0);
  EXPECT_EQ(data.ValidateCheckSum(), 0);  // zeros carry a matching (zero) checksum
}

TEST_F(CMfgDataInitTest, AMissingProcMtdIsReportedTwice) {
  Env::Current()->RemoveFile("/proc/mtd");
  CMfgData data;
  CaptureStderr();
  EXPECT_EQ(data.Init(), kMfgPartitionNotFound);
  EXPECT_EQ(GetCapturedStderr(),
            "GetNorPartitionFilename filed opening /proc/mtd: No such file or directory\n"
            "CMfgData::Init: GetNorPartitionFilename failed\n");
}

TEST_F(CMfgDataInitTest, AnUnlistedCopy1FailsInit) {
  WriteFile("/proc/mtd", "mtd3: 00001000 00001000 \"MfgData0\"\n");
  WriteCopy(0, mfgtest::SampleRecord());
  CMfgData data;
  CaptureStderr();
  EXPECT_EQ(data.Init(), kMfgPartitionNotFound);
  EXPECT_EQ(GetCapturedStderr(),
            "GetNorPartitionFilename: Could not find MfgData1 in /proc/mtd\n"
            "CMfgData::Init: GetNorPartitionFilename failed\n");
  EXPECT_EQ(data.Update(), kMfgNotInMfgMode);
}

TEST_F(CMfgDataInitTest, AnUnreadableCopy0FailsInitWithoutTryingCopy1) {
  WriteCopy(1, mfgtest::SampleRecord());  // copy 0 is missing
  CMfgData data;
  EXPECT_EQ(data.Init(), kMfgReadFailed0);
  EXPECT_EQ(Results(data), std::make_pair(-1, -1));
}

TEST_F(CMfgDataInitTest, ATruncatedCopy0IsAReadFailure) {
  WriteCopy(0, mfgtest::SampleRecord().substr(0, 4000));
  WriteCopy(1, mfgtest::SampleRecord());
  CMfgData data;
  EXPECT_EQ(data.Init(), kMfgReadFailed0);
}

TEST_F(CMfgDataInitTest, ATruncatedCopy1AfterACorruptCopy0IsAReadFailure) {
  WriteCopy(0, Corrupted(mfgtest::SampleRecord()));
  WriteCopy(1, mfgtest::SampleRecord().substr(0, 100));
  CMfgData data;
  EXPECT_EQ(data.Init(), kMfgReadFailed1);
  EXPECT_EQ(Results(data), std::make_pair(1, -1));
}

TEST_F(CMfgDataInitTest, LeavesManufacturingModeWhenCopy0IsCorrupt) {
  WriteModeScript(0);
  WriteCopy(0, Corrupted(mfgtest::SampleRecord()));
  WriteCopy(1, mfgtest::SampleRecord());
  CMfgData data;
  ASSERT_EQ(data.SetMfgMode(true), 0);
  EXPECT_EQ(data.Init(), 0);
  EXPECT_EQ(data.Update(), kMfgNotInMfgMode);
}

TEST_F(CMfgDataInitTest, KeepsManufacturingModeWhenCopy0IsValid) {
  WriteModeScript(0);
  WriteCopy(0, mfgtest::SampleRecord());
  WriteCopy(1, mfgtest::SampleRecord());
  CMfgData data;
  ASSERT_EQ(data.SetMfgMode(true), 0);
  EXPECT_EQ(data.Init(), 0);
  EXPECT_EQ(data.Update(), 0);
}

TEST_F(CMfgDataInitTest, CanRunAgainAndReportsWhatItFindsThen) {
  WriteCopy(0, Corrupted(mfgtest::SampleRecord()));
  WriteCopy(1, OtherRecord());
  CMfgData data;
  ASSERT_EQ(data.Init(), 0);
  WriteCopy(0, mfgtest::SampleRecord());
  EXPECT_EQ(data.Init(), 0);
  EXPECT_EQ(Results(data), std::make_pair(0, -1));
  EXPECT_EQ(RecordOf(data), mfgtest::SampleRecord());
}

TEST_F(CMfgDataInitTest, ExitReleasesTheRecordAndThePartitions) {
  WriteCopy(0, mfgtest::SampleRecord());
  CMfgData data;
  ASSERT_EQ(data.Init(), 0);
  EXPECT_EQ(data.Exit(), 0);
  int gain = 99;
  EXPECT_EQ(data.GetAudioGain(gain), kMfgShortTransfer);
  EXPECT_EQ(gain, 99);
  std::vector<unsigned char> buffer(4096);
  EXPECT_EQ(data.GetNORMfgSectorData(0, buffer.data()), kMfgReadFailed);
  EXPECT_EQ(data.ValidateNORMfgSector(0), kMfgReadFailed);
  EXPECT_EQ(data.Exit(), 0);  // a second Exit is harmless
}

TEST_F(CMfgDataInitTest, ReadsEachCopyAsItIsOnFlash) {
  WriteCopy(0, mfgtest::SampleRecord());
  WriteCopy(1, Corrupted(OtherRecord()));
  CMfgData data;
  ASSERT_EQ(data.Init(), 0);
  std::vector<unsigned char> buffer(4096);
  EXPECT_EQ(data.GetNORMfgSectorData(0, buffer.data()), 0);
  EXPECT_EQ(std::string(buffer.begin(), buffer.end()), mfgtest::SampleRecord());
  EXPECT_EQ(data.GetNORMfgSectorData(5, buffer.data()), 0);  // any non-zero index is copy 1
  EXPECT_EQ(std::string(buffer.begin(), buffer.end()), Corrupted(OtherRecord()));
  EXPECT_EQ(data.ValidateNORMfgSector(0), 0);
  EXPECT_EQ(data.ValidateNORMfgSector(1), 1);
  Env::Current()->RemoveFile("/dev/mtd4");
  EXPECT_EQ(data.ValidateNORMfgSector(1), kMfgReadFailed);
}

TEST_F(CMfgDataInitTest, AnAllZeroCopyIsLoadedBecauseItsChecksumMatches) {
  WriteCopy(0, std::string(4096, '\0'));
  WriteCopy(1, mfgtest::SampleRecord());
  CMfgData data;
  EXPECT_EQ(data.Init(), 0);
  EXPECT_EQ(Results(data), std::make_pair(0, -1));
  EXPECT_EQ(RecordOf(data), std::string(4096, '\0'));
}
