#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include <vireline/CMfgData.h>

#include "mfg/MfgDataTest.h"
#include "platform/FaultInjectionEnv.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using vireline::Env;
using vireline::FaultInjectionEnv;

namespace {

std::string Corrupted(std::string record) {
  record[2000] ^= 0x01;
  return record;
}

// Flash that does not keep what is written to one partition: reading it back
// gives the content of `stale` instead.
class ForgetfulFlashEnv : public vireline::EnvWrapper {
 public:
  ForgetfulFlashEnv(const std::string& partition, const std::string& stale)
      : EnvWrapper(Env::Default()), mPartition(partition), mStale(stale) {}

  vireline::Result NewSequentialFile(const std::string& path,
                                     std::unique_ptr<vireline::SequentialFile>* file) override {
    return EnvWrapper::NewSequentialFile(path == mPartition ? mStale : path, file);
  }

 private:
  std::string mPartition;
  std::string mStale;
};

}  // namespace

class CMfgDataModeTest : public MfgDataTest {
 protected:
  // Both copies hold the sample record; `data` loads it.
  void Load(CMfgData* data) {
    WriteCopy(0, mfgtest::SampleRecord());
    WriteCopy(1, mfgtest::SampleRecord());
    ASSERT_EQ(data->Init(), 0);
  }
};

TEST_F(CMfgDataModeTest, EnteringRunsTheModeScriptWith2) {
  WriteModeScript(0);
  CMfgData data;
  EXPECT_EQ(data.SetMfgMode(true), 0);
  EXPECT_EQ(ReadFile("/mfgmode.arg"), "2\n");
}

TEST_F(CMfgDataModeTest, LeavingRunsTheModeScriptWith0) {
  WriteModeScript(0);
  CMfgData data;
  Load(&data);
  ASSERT_EQ(data.SetMfgMode(true), 0);
  EXPECT_EQ(data.SetMfgMode(false), 0);
  EXPECT_EQ(ReadFile("/mfgmode.arg"), "0\n");
  EXPECT_EQ(data.Update(), kMfgNotInMfgMode);
}

TEST_F(CMfgDataModeTest, AFailingScriptIsReportedAndLeavesTheModeAsItWas) {
  WriteModeScript(3);
  CMfgData data;
  Load(&data);
  CaptureStderr();
  EXPECT_EQ(data.SetMfgMode(true), kMfgNotInMfgMode);
  EXPECT_EQ(GetCapturedStderr().rfind("can't exec /usr/bin/mfgmode.sh: ", 0), 0u);
  EXPECT_EQ(data.Update(), kMfgNotInMfgMode);
}

TEST_F(CMfgDataModeTest, AFailingScriptDoesNotLeaveTheMode) {
  WriteModeScript(0);
  CMfgData data;
  Load(&data);
  ASSERT_EQ(data.SetMfgMode(true), 0);
  WriteModeScript(1);
  CaptureStderr();
  EXPECT_EQ(data.SetMfgMode(false), kMfgNotInMfgMode);
  GetCapturedStderr();
  EXPECT_EQ(data.Update(), 0);
}

TEST_F(CMfgDataModeTest, AMissingScriptFails) {
  CMfgData data;
  CaptureStderr();
  EXPECT_EQ(data.SetMfgMode(true), kMfgNotInMfgMode);
  // The shell says the script is missing before the library reports the failure.
  EXPECT_NE(GetCapturedStderr().find("can't exec /usr/bin/mfgmode.sh: "), std::string::npos);
}

TEST_F(CMfgDataModeTest, ACommandThatCannotBeStartedFails) {
  WriteModeScript(0);
  FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  env.FailAfter(FaultInjectionEnv::kRunCommand, 0, EAGAIN);
  CMfgData data;
  CaptureStderr();
  EXPECT_EQ(data.SetMfgMode(true), kMfgNotInMfgMode);
  EXPECT_EQ(GetCapturedStderr(), "can't exec /usr/bin/mfgmode.sh: Resource temporarily unavailable\n");
  EXPECT_FALSE(Exists("/mfgmode.arg"));
}

// Both copies valid and loaded, in manufacturing mode.
class CMfgDataUpdateTest : public MfgDataTest {
 protected:
  void SetUp() override {
    MfgDataTest::SetUp();
    WriteModeScript(0);
    WriteCopy(0, mfgtest::SampleRecord());
    WriteCopy(1, mfgtest::SampleRecord());
  }

  // The sample record with a new SKU, as Update should leave it on flash.
  static std::string Updated() {
    std::string record = mfgtest::SampleRecord();
    mfgtest::PutBytes(&record, 288, "NEW-SKU-001");
    return mfgtest::Sealed(record);
  }

  void LoadAndChange() {
    ASSERT_EQ(mData.Init(), 0);
    ASSERT_EQ(mData.SetMfgMode(true), 0);
    ASSERT_EQ(mData.SetSku("NEW-SKU-001"), 0);
  }

  CMfgData mData;
};

TEST_F(CMfgDataUpdateTest, WithoutManufacturingModeWritesNothing) {
  ASSERT_EQ(mData.Init(), 0);
  ASSERT_EQ(mData.SetSku("NEW-SKU-001"), 0);
  FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  EXPECT_EQ(mData.Update(), kMfgNotInMfgMode);
  EXPECT_EQ(env.Calls(FaultInjectionEnv::kOpen), 0);
  EXPECT_EQ(Copy(0), mfgtest::SampleRecord());
  EXPECT_EQ(Copy(1), mfgtest::SampleRecord());
  EXPECT_EQ(mData.ValidateCheckSum(), 1);  // not even the checksum in memory changed
}

TEST_F(CMfgDataUpdateTest, BeforeInitHasNothingToWrite) {
  ASSERT_EQ(mData.SetMfgMode(true), 0);
  EXPECT_EQ(mData.Update(), kMfgPartitionNotFound);
  EXPECT_EQ(Copy(0), mfgtest::SampleRecord());
}

TEST_F(CMfgDataUpdateTest, WritesBothCopiesWithTheNewChecksum) {
  LoadAndChange();
  EXPECT_EQ(mData.Update(), 0);
  EXPECT_EQ(Copy(0), Updated());
  EXPECT_EQ(Copy(1), Updated());
  EXPECT_EQ(mData.ValidateCheckSum(), 0);
  EXPECT_EQ(mData.ValidateNORMfgSector(0), 0);
  EXPECT_EQ(mData.ValidateNORMfgSector(1), 0);
}

TEST_F(CMfgDataUpdateTest, WritesCopy1FirstWhenCopy0WasLoaded) {
  LoadAndChange();
  FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  env.FailAfter(FaultInjectionEnv::kOpen, 0);
  EXPECT_EQ(mData.Update(), kMfgWriteFailed1);
  Env::SetCurrent(nullptr);
  EXPECT_EQ(Copy(0), mfgtest::SampleRecord());
}

TEST_F(CMfgDataUpdateTest, WritesCopy0FirstWhenCopy1WasLoaded) {
  WriteCopy(0, Corrupted(mfgtest::SampleRecord()));
  LoadAndChange();
  FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  env.FailAfter(FaultInjectionEnv::kOpen, 0);
  EXPECT_EQ(mData.Update(), kMfgWriteFailed0);
  env.Reset();
  EXPECT_EQ(mData.Update(), 0);
  Env::SetCurrent(nullptr);
  EXPECT_EQ(Copy(0), Updated());
  EXPECT_EQ(Copy(1), Updated());
}

TEST_F(CMfgDataUpdateTest, RepairsACorruptCopyFromTheValidOne) {
  WriteCopy(0, Corrupted(mfgtest::SampleRecord()));
  ASSERT_EQ(mData.Init(), 0);
  ASSERT_EQ(mData.SetMfgMode(true), 0);
  EXPECT_EQ(mData.Update(), 0);
  EXPECT_EQ(Copy(0), mfgtest::SampleRecord());
  EXPECT_EQ(Copy(1), mfgtest::SampleRecord());
}

TEST_F(CMfgDataUpdateTest, WritesAFreshRecordWhenBothCopiesWereCorrupt) {
  WriteCopy(0, Corrupted(mfgtest::SampleRecord()));
  WriteCopy(1, std::string(4096, '\xFF'));
  ASSERT_EQ(mData.Init(), 0);
  ASSERT_EQ(mData.SetMfgMode(true), 0);
  ASSERT_EQ(mData.SetAudioGain(9), 0);
  EXPECT_EQ(mData.Update(), 0);
  std::string fresh(4096, '\0');
  mfgtest::PutLE32(&fresh, 40, 9);
  EXPECT_EQ(Copy(0), mfgtest::Sealed(fresh));
  EXPECT_EQ(Copy(1), mfgtest::Sealed(fresh));
}

TEST_F(CMfgDataUpdateTest, AFailedEraseIsReportedAsAWriteFailure) {
  LoadAndChange();
  FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  env.FailAfter(FaultInjectionEnv::kErase, 0, EIO);
  CaptureStderr();
  EXPECT_EQ(mData.Update(), kMfgWriteFailed1);
  EXPECT_EQ(GetCapturedStderr(), "CPartition::WriteAll erase: Input/output error\n");
  env.Reset();
  env.FailAfter(FaultInjectionEnv::kErase, 1, EIO);
  CaptureStderr();
  EXPECT_EQ(mData.Update(), kMfgWriteFailed0);
  EXPECT_EQ(GetCapturedStderr(), "CPartition::WriteAll erase: Input/output error\n");
}

TEST_F(CMfgDataUpdateTest, AFailedReadBackNamesThePartition) {
  LoadAndChange();
  FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  env.FailAfter(FaultInjectionEnv::kRead, 0);
  EXPECT_EQ(mData.Update(), kMfgReadFailed1);
}

TEST_F(CMfgDataUpdateTest, ACopyThatDoesNotKeepItsDataFailsTheChecksum) {
  WriteFile("/dev/mtd4.stale", Corrupted(mfgtest::SampleRecord()));
  LoadAndChange();
  ForgetfulFlashEnv flash("/dev/mtd4", "/dev/mtd4.stale");
  Env::SetCurrent(&flash);
  EXPECT_EQ(mData.Update(), kMfgChecksumInvalid1);
  Env::SetCurrent(nullptr);
  EXPECT_EQ(Copy(0), mfgtest::SampleRecord());  // the loaded copy was never touched
  // The record in memory is what was read back.
  char sku[11];
  ASSERT_EQ(mData.GetSku(sku), 0);
  EXPECT_EQ(std::string(sku, 11), "SKU-1234567");
}

TEST_F(CMfgDataUpdateTest, TheSecondCopyIsVerifiedToo) {
  WriteFile("/dev/mtd3.stale", Corrupted(mfgtest::SampleRecord()));
  LoadAndChange();
  ForgetfulFlashEnv flash("/dev/mtd3", "/dev/mtd3.stale");
  Env::SetCurrent(&flash);
  EXPECT_EQ(mData.Update(), kMfgChecksumInvalid0);
  Env::SetCurrent(nullptr);
  EXPECT_EQ(Copy(1), Updated());
}
