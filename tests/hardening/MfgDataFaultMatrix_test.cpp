// The manufacturing record's Update with the platform failing each of its
// calls in turn (once, or from then on): one copy always holds a valid record,
// the old or the new one, a restart loads one of the two whole, and a
// reported success means both copies hold the new record.
//
// A copy moves a byte per call under fault injection, so failing every one of
// the 16384 byte reads and writes of an Update would outlast a test's time
// limit: the byte-wise steps are failed at the first and last calls of each
// copy and at every 32nd in between, every other step at each of its calls.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/CMfgData.h>

#include "hardening/FaultMatrix.h"
#include "mfg/MfgDataTest.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using vireline::Env;
using vireline::FaultInjectionEnv;

namespace {

std::string NewRecord() {
  std::string record = mfgtest::SampleRecord();
  mfgtest::PutBytes(&record, 288, "NEW-SKU-001");
  return mfgtest::Sealed(record);
}

bool IsValid(const std::string& copy) {
  return copy.size() == kMfgRecordSize &&
         CMfgData::ValidateCheckSum(reinterpret_cast<const unsigned char*>(copy.data())) == 0;
}

// True for the calls of a byte-wise step that the matrix fails.
bool Sampled(int successes) {
  const int inCopy = successes % int{kMfgRecordSize};
  return inCopy < 2 || inCopy >= int{kMfgRecordSize} - 2 || inCopy % 32 == 0;
}

}  // namespace

class MfgDataFaultMatrixTest : public MfgDataTest {
 protected:
  void SetUp() override {
    MfgDataTest::SetUp();
    WriteModeScript(0);
    WriteCopy(0, mfgtest::SampleRecord());
    WriteCopy(1, mfgtest::SampleRecord());
    ASSERT_EQ(mData.Init(), 0);
    ASSERT_EQ(mData.SetMfgMode(true), 0);
    Env::SetCurrent(&mFaults);
  }
  void TearDown() override {
    Env::SetCurrent(nullptr);
    MfgDataTest::TearDown();
  }

  // Both copies hold the old record again; the record in memory is the new one.
  void Reset() {
    WriteCopy(0, mfgtest::SampleRecord());
    WriteCopy(1, mfgtest::SampleRecord());
    ASSERT_EQ(mData.Write(NewRecord().data(), 0, kMfgRecordSize), kMfgRecordSize);
  }

  bool Attempt() {
    CaptureStderr();  // a failed erase reports itself; the copies are what counts here
    const int status = mData.Update();
    GetCapturedStderr();
    return status == kMfgSuccess;
  }

  // What a restart loads, read without faults.
  std::string RecordAfterRestart() {
    Env::SetCurrent(nullptr);
    CMfgData data;
    EXPECT_EQ(data.Init(), 0);
    std::string record(kMfgRecordSize, '?');
    EXPECT_EQ(data.Read(&record[0], 0, kMfgRecordSize), kMfgRecordSize);
    Env::SetCurrent(&mFaults);
    return record;
  }

  void Check(bool reported) {
    const std::string copy0 = Copy(0);
    const std::string copy1 = Copy(1);
    EXPECT_TRUE(IsValid(copy0) || IsValid(copy1));
    const std::string record = RecordAfterRestart();
    EXPECT_TRUE(record == mfgtest::SampleRecord() || record == NewRecord()) << record.substr(288, 11);
    if (reported) {
      EXPECT_EQ(copy0, NewRecord());
      EXPECT_EQ(copy1, NewRecord());
    }
    // Copy 1 is written first: until it is the new record, copy 0 is untouched.
    if (copy1 != NewRecord()) {
      EXPECT_EQ(copy0, mfgtest::SampleRecord());
    }
  }

  CMfgData mData;
  FaultInjectionEnv mFaults{Env::Default()};
};

TEST_F(MfgDataFaultMatrixTest, AnUpdateFailingAtAnyOpenEraseOrCloseLeavesAValidCopyAndLoadsOldOrNewWhole) {
  const int runs = RunFaultMatrix(
      mFaults, {FaultInjectionEnv::kOpen, FaultInjectionEnv::kErase, FaultInjectionEnv::kClose},
      [&] { Reset(); }, [&] { return Attempt(); },
      [&](const FaultMatrixStep&, bool reported) { Check(reported); });
  EXPECT_GE(runs, 2 * (4 + 2 + 4));  // two copies, each opened, erased, closed, read back
  RecordProperty("injected_failures", runs);
}

TEST_F(MfgDataFaultMatrixTest, AnUpdateFailingAtAByteWrittenOrReadBackLeavesAValidCopyAndLoadsOldOrNewWhole) {
  const int runs = RunFaultMatrix(
      mFaults, {FaultInjectionEnv::kWrite, FaultInjectionEnv::kRead}, [&] { Reset(); },
      [&] { return Attempt(); },
      [&](const FaultMatrixStep&, bool reported) { Check(reported); }, Sampled);
  EXPECT_GT(runs, 2 * 2 * 2 * (kMfgRecordSize / 32));
  RecordProperty("injected_failures", runs);
}
