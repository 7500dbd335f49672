#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include <vireline/CMfgData.h>

#include "mfg/MfgDataTest.h"
#include "platform/FaultInjectionEnv.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using vireline::Env;
using vireline::FaultInjectionEnv;

namespace {

std::vector<unsigned char> Bytes(const std::string& text) { return {text.begin(), text.end()}; }

std::string Text(const std::vector<unsigned char>& bytes) { return {bytes.begin(), bytes.end()}; }

}  // namespace

class CPartitionTest : public DeviceRootTest {};

TEST_F(CPartitionTest, IsAlways4096BytesAndKeepsItsOwnCopyOfThePath) {
  std::string path = "/dev/mtd3";
  CPartition partition(path.c_str());
  path[8] = '9';
  EXPECT_EQ(partition.GetSize(), 4096u);
  EXPECT_STREQ(partition.GetPath(), "/dev/mtd3");
}

TEST_F(CPartitionTest, ReadAllReadsTheWholePartition) {
  std::string record = mfgtest::SampleRecord();
  WriteFile("/dev/mtd3", record);
  std::vector<unsigned char> buffer(4096);
  EXPECT_EQ(CPartition("/dev/mtd3").ReadAll(buffer.data()), 0);
  EXPECT_EQ(Text(buffer), record);
}

TEST_F(CPartitionTest, ReadAllOfAMissingPartitionFails) {
  std::vector<unsigned char> buffer(4096);
  EXPECT_EQ(CPartition("/dev/mtd3").ReadAll(buffer.data()), kMfgReadFailed);
}

TEST_F(CPartitionTest, ReadAllOfATruncatedPartitionFileFailsWithoutOverrunning) {
  WriteFile("/dev/mtd3", std::string(4095, 'x'));
  std::vector<unsigned char> buffer(4096);
  EXPECT_EQ(CPartition("/dev/mtd3").ReadAll(buffer.data()), kMfgReadFailed);
  WriteFile("/dev/mtd3", "");
  EXPECT_EQ(CPartition("/dev/mtd3").ReadAll(buffer.data()), kMfgReadFailed);
}

TEST_F(CPartitionTest, ReadAllReadsOnlyTheFirst4096BytesOfALargerPartition) {
  std::string content = mfgtest::SampleRecord() + std::string(4096, 'z');
  WriteFile("/dev/mtd3", content);
  std::vector<unsigned char> buffer(4096);
  EXPECT_EQ(CPartition("/dev/mtd3").ReadAll(buffer.data()), 0);
  EXPECT_EQ(Text(buffer), content.substr(0, 4096));
}

TEST_F(CPartitionTest, ReadAllFailsWhenTheReadOrTheCloseFails) {
  WriteFile("/dev/mtd3", mfgtest::SampleRecord());
  std::vector<unsigned char> buffer(4096);
  FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  env.FailAfter(FaultInjectionEnv::kRead, 0);
  EXPECT_EQ(CPartition("/dev/mtd3").ReadAll(buffer.data()), kMfgReadFailed);
  env.Reset();
  env.FailAfter(FaultInjectionEnv::kClose, 0);
  EXPECT_EQ(CPartition("/dev/mtd3").ReadAll(buffer.data()), kMfgReadFailed);
  env.Reset();
  env.FailAfter(FaultInjectionEnv::kOpen, 0);
  EXPECT_EQ(CPartition("/dev/mtd3").ReadAll(buffer.data()), kMfgReadFailed);
}

TEST_F(CPartitionTest, WriteAllErasesAndWritesTheWholePartition) {
  WriteFile("/dev/mtd3", std::string(4096, 'o'));
  std::string record = mfgtest::SampleRecord();
  std::vector<unsigned char> buffer = Bytes(record);
  EXPECT_EQ(CPartition("/dev/mtd3").WriteAll(buffer.data()), 0);
  EXPECT_EQ(ReadFile("/dev/mtd3"), record);
}

TEST_F(CPartitionTest, WriteAllNeverCreatesAMissingPartition) {
  std::vector<unsigned char> buffer = Bytes(mfgtest::SampleRecord());
  EXPECT_EQ(CPartition("/dev/mtd3").WriteAll(buffer.data()), kMfgWriteFailed);
  EXPECT_FALSE(Exists("/dev/mtd3"));
}

TEST_F(CPartitionTest, WriteAllReportsAFailedEraseAndLeavesThePartitionAlone) {
  std::string old = mfgtest::SampleRecord();
  WriteFile("/dev/mtd3", old);
  std::vector<unsigned char> buffer(4096, 0x55);
  FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  env.FailAfter(FaultInjectionEnv::kErase, 0, EIO);
  CaptureStderr();
  EXPECT_EQ(CPartition("/dev/mtd3").WriteAll(buffer.data()), kMfgEraseFailed);
  EXPECT_EQ(GetCapturedStderr(), "CPartition::WriteAll erase: Input/output error\n");
  EXPECT_EQ(env.Calls(FaultInjectionEnv::kWrite), 0);
  EXPECT_EQ(env.Calls(FaultInjectionEnv::kClose), 1);  // the partition is closed before reporting
  EXPECT_EQ(ReadFile("/dev/mtd3"), old);
}

TEST_F(CPartitionTest, WriteAllFailsOnAFailedWriteLeavingTheErasedPartition) {
  WriteFile("/dev/mtd3", mfgtest::SampleRecord());
  std::vector<unsigned char> buffer(4096, 0x55);
  FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  env.FailAfter(FaultInjectionEnv::kWrite, 0, ENOSPC);
  CaptureStderr();
  EXPECT_EQ(CPartition("/dev/mtd3").WriteAll(buffer.data()), kMfgWriteFailed);
  EXPECT_EQ(GetCapturedStderr(), "");
  EXPECT_EQ(ReadFile("/dev/mtd3"), std::string(4096, '\xFF'));
}

TEST_F(CPartitionTest, WriteAllFailsWhenTheOpenOrTheCloseFails) {
  WriteFile("/dev/mtd3", mfgtest::SampleRecord());
  std::vector<unsigned char> buffer(4096, 0x55);
  FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  env.FailAfter(FaultInjectionEnv::kOpen, 0);
  EXPECT_EQ(CPartition("/dev/mtd3").WriteAll(buffer.data()), kMfgWriteFailed);
  EXPECT_EQ(env.Calls(FaultInjectionEnv::kErase), 0);
  env.Reset();
  env.FailAfter(FaultInjectionEnv::kClose, 0);
  EXPECT_EQ(CPartition("/dev/mtd3").WriteAll(buffer.data()), kMfgWriteFailed);
}

TEST_F(CPartitionTest, ANullBufferIsAFailureNotACrash) {
  WriteFile("/dev/mtd3", mfgtest::SampleRecord());
  CPartition partition("/dev/mtd3");
  EXPECT_EQ(partition.ReadAll(nullptr), kMfgReadFailed);
  EXPECT_EQ(partition.WriteAll(nullptr), kMfgWriteFailed);
  EXPECT_EQ(ReadFile("/dev/mtd3"), mfgtest::SampleRecord());
}
