// A Save that fails at any step of the atomic replacement keeps the old file
// byte for byte and answers 0x10001005.
#include <gtest/gtest.h>

#include <cerrno>
#include <ostream>
#include <string>
#include <vector>

#include "ltm/CJSonFileTest.h"
#include "platform/FaultInjectionEnv.h"

using LTM::CJSonFile;
using vireline::FaultInjectionEnv;

namespace {

const char kPath[] = "/QV/Bulk/Data/Milestones.json";
const char kOld[] = "{\"old\":true}\n\n";

struct Step {
  FaultInjectionEnv::Op op;
  int successes;
};

void PrintTo(const Step& step, std::ostream* out) { *out << "op " << step.op << " after " << step.successes; }

// The whole text reaches the unbuffered stream in one write, so failing the
// first write covers the data.
std::string StepName(const ::testing::TestParamInfo<Step>& info) {
  static const char* const kNames[] = {"Open", "Read", "Write", "Sync", "Close", "Erase", "Stat", "MakeDir",
                                       "Remove", "Rename"};
  return std::string(kNames[info.param.op]) + "After" + std::to_string(info.param.successes);
}

}  // namespace

class CJSonFileSaveFailureTest : public CJSonFileTest, public ::testing::WithParamInterface<Step> {
 protected:
  void SetUp() override {
    CJSonFileTest::SetUp();
    WriteFile(kPath, kOld);
  }
};

TEST_P(CJSonFileSaveFailureTest, KeepsTheOldFile) {
  CJSonFile file(kPath, 0);
  ASSERT_EQ(file.Load(), 0u);
  file.mRoot["old"] = false;
  file.mRoot["new"] = "a longer value, so that the text takes many writes";
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(GetParam().op, GetParam().successes, ENOSPC);
  EXPECT_EQ(file.Save(), kSaveFailed);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(kPath), kOld);
  EXPECT_EQ(List("/QV/Bulk/Data"), std::vector<std::string>{"Milestones.json"});
}

INSTANTIATE_TEST_SUITE_P(EachStep, CJSonFileSaveFailureTest,
                         ::testing::Values(Step{FaultInjectionEnv::kOpen, 0}, Step{FaultInjectionEnv::kWrite, 0},
                                           Step{FaultInjectionEnv::kSync, 0},
                                           Step{FaultInjectionEnv::kClose, 0}, Step{FaultInjectionEnv::kRename, 0}),
                         StepName);

// The folder sync comes after the rename: the new file is in place, but the
// failure is still reported, since a power cut could yet lose the rename.
TEST_F(CJSonFileTest, FailedFolderSyncIsReportedAsAFailedSave) {
  WriteFile(kPath, kOld);
  CJSonFile file(kPath, 0);
  ASSERT_EQ(file.Load(), 0u);
  file.mRoot["old"] = false;
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kSyncDir, 0, EIO);
  EXPECT_EQ(file.Save(), kSaveFailed);
  vireline::Env::SetCurrent(nullptr);
  std::string content = ReadFile(kPath);
  EXPECT_TRUE(content == kOld || content == "{\"old\":false}\n\n") << content;
  EXPECT_EQ(List("/QV/Bulk/Data"), std::vector<std::string>{"Milestones.json"});
}

TEST_F(CJSonFileTest, LoadThroughTheFaultInjectingPlatformReadsTheSameDocument) {
  WriteFile(kPath, kOld);
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  CJSonFile file(kPath, 0);
  EXPECT_EQ(file.Load(), 0u);
  EXPECT_TRUE(file.mRoot["old"].asBool());
  EXPECT_EQ(file.Save(), 0u);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(kPath), "{\"old\":true}\n\n");
}

TEST_F(CJSonFileTest, FailedOpenForReadingReportsNoFile) {
  WriteFile(kPath, kOld);
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kOpen, 0, EACCES);
  CJSonFile file(kPath, 0);
  EXPECT_EQ(file.Load(), 1u);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(DebugOutput(), NoFile(kPath));
  EXPECT_TRUE(file.mRoot.isNull());
}

TEST_F(CJSonFileTest, FailedReadReportsAShortRead) {
  WriteFile(kPath, kOld);
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kRead, 0, EIO);
  CJSonFile file(kPath, 0);
  EXPECT_EQ(file.Load(), 1u);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(DebugOutput(), ShortRead(kPath));
  EXPECT_TRUE(file.mRoot.isNull());
}
