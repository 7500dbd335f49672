// A JSON document that is there but cannot be read (a flash read error, no
// permission) is neither recreated by Load nor replaced by Save; a missing
// one is still created when asked.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include <vireline/CMilestones.h>

#include "ltm/CJSonFileTest.h"
#include "platform/FaultInjectionEnv.h"

using LTM::CJSonFile;
using vireline::FaultInjectionEnv;

namespace {

const char kPath[] = "/QV/Bulk/Data/Local/1/Milestones.json";
const char kOld[] = "{\"FirstWord\":true}\n\n";

}  // namespace

class CJSonFileReadFailureTest : public CJSonFileTest {
 protected:
  void SetUp() override {
    CJSonFileTest::SetUp();
    WriteFile(kPath, kOld);
  }

  void TearDown() override {
    vireline::Env::SetCurrent(nullptr);
    CJSonFileTest::TearDown();
  }

  // Loads `file` with `op` failing once with EIO; Load's result.
  unsigned LoadWithFault(CJSonFile& file, FaultInjectionEnv::Op op) {
    vireline::Env::SetCurrent(&mFaults);
    mFaults.FailAfter(op, 0, EIO, true);
    unsigned result = file.Load();
    vireline::Env::SetCurrent(nullptr);
    return result;
  }

  FaultInjectionEnv mFaults{vireline::Env::Default()};
};

TEST_F(CJSonFileReadFailureTest, ReadErrorKeepsTheFileOnSave) {
  CJSonFile file(kPath, 0);
  EXPECT_EQ(LoadWithFault(file, FaultInjectionEnv::kRead), 1u);
  EXPECT_EQ(DebugOutput(), ShortRead(kPath));
  file.mRoot = LTM::Value(LTM::objectValue);
  file.mRoot["Other"] = LTM::Value(true);
  EXPECT_EQ(file.Save(), kSaveFailed);
  EXPECT_EQ(ReadFile(kPath), kOld);
}

TEST_F(CJSonFileReadFailureTest, OpenErrorOnAnExistingFileDoesNotRecreateIt) {
  CJSonFile file(kPath, 1);
  EXPECT_EQ(LoadWithFault(file, FaultInjectionEnv::kOpen), 1u);
  EXPECT_EQ(DebugOutput(), NoFile(kPath));
  EXPECT_EQ(ReadFile(kPath), kOld);
  file.mRoot = LTM::Value(LTM::objectValue);
  EXPECT_EQ(file.Save(), kSaveFailed);
  EXPECT_EQ(ReadFile(kPath), kOld);
}

TEST_F(CJSonFileReadFailureTest, ASuccessfulLoadAfterTheErrorAllowsSavingAgain) {
  CJSonFile file(kPath, 0);
  EXPECT_EQ(LoadWithFault(file, FaultInjectionEnv::kRead), 1u);
  ASSERT_EQ(file.Load(), 0u);
  file.mRoot["Other"] = LTM::Value(true);
  EXPECT_EQ(file.Save(), 0u);
  EXPECT_EQ(ReadFile(kPath), "{\"FirstWord\":true,\"Other\":true}\n\n");
}

TEST_F(CJSonFileReadFailureTest, AMissingFileIsStillCreatedWhenAsked) {
  CJSonFile file("/QV/Bulk/Data/New.json", 1);
  EXPECT_EQ(file.Load(), 0u);
  EXPECT_EQ(ReadFile("/QV/Bulk/Data/New.json"), "{}\r\n");
  EXPECT_EQ(file.Save(), 0u);
}

TEST_F(CJSonFileReadFailureTest, AnInvalidDocumentIsStillReplacedBySave) {
  WriteFile(kPath, "{");
  CJSonFile file(kPath, 0);
  EXPECT_EQ(file.Load(), 1u);
  EXPECT_EQ(file.Save(), 0u);
  EXPECT_EQ(ReadFile(kPath), "{}\n\n");
}

TEST_F(CJSonFileReadFailureTest, MilestoneAddDuringAReadErrorKeepsEarlierMilestones) {
  WriteFile("/QV/Bulk/settings.cfg", "CurrProfile=0x00000001\n");
  vireline::Env::SetCurrent(&mFaults);
  CMilestones::Instance()->Get();  // a first look fills whatever is kept between calls
  mFaults.Reset();
  CMilestones::Instance()->Get();
  int opens = mFaults.Calls(FaultInjectionEnv::kOpen);  // the milestone file's open is the last
  ASSERT_GE(opens, 1);
  mFaults.Reset();
  mFaults.FailAfter(FaultInjectionEnv::kOpen, opens - 1, EIO, true);
  EXPECT_FALSE(CMilestones::Instance()->Add("SecondWord"));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(kPath), kOld);
}
