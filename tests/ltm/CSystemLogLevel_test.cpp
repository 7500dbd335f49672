// "/var/loglevel": one decimal number and a line feed, read the way an input
// stream extracts a number, so that anything else reads as level 3.
#include <gtest/gtest.h>

#include <string>

#include <vireline/CSystem.h>
#include <vireline/Platform.h>

#include "ltm/DataObjectTest.h"
#include "platform/FaultInjectionEnv.h"

using LTM::CSystem;
using vireline::FaultInjectionEnv;

namespace {

const char kLogLevel[] = "/var/loglevel";

}  // namespace

class CSystemLogLevelTest : public DataObjectTest {
 protected:
  void TearDown() override {
    PlatformDebug().SetMasterDebugLevel(1);
    DataObjectTest::TearDown();
  }

  unsigned long LevelOf(const std::string& content) {
    WriteFile(kLogLevel, content);
    return CSystem().GetFRDebugLevel();
  }

  // The master level, as a module without a level of its own sees it.
  static int MasterLevel() { return PlatformDebug(0x7FFF).GetEffectiveDebugLevel(); }
};

TEST_F(CSystemLogLevelTest, NumberAndLineFeed) { EXPECT_EQ(LevelOf("4\n"), 4u); }

TEST_F(CSystemLogLevelTest, NumberWithoutLineFeedReadsAsThree) { EXPECT_EQ(LevelOf("4"), 3u); }

TEST_F(CSystemLogLevelTest, MissingFileReadsAsThree) { EXPECT_EQ(CSystem().GetFRDebugLevel(), 3u); }

TEST_F(CSystemLogLevelTest, EmptyFileReadsAsThree) { EXPECT_EQ(LevelOf(""), 3u); }

TEST_F(CSystemLogLevelTest, OnlyWhiteSpaceReadsAsThree) { EXPECT_EQ(LevelOf(" \n\t\n"), 3u); }

TEST_F(CSystemLogLevelTest, TextReadsAsThree) { EXPECT_EQ(LevelOf("debug\n"), 3u); }

TEST_F(CSystemLogLevelTest, NumberTooLargeForAnyWordReadsAsThree) {
  EXPECT_EQ(LevelOf("99999999999999999999999\n"), 3u);
}

TEST_F(CSystemLogLevelTest, LeadingWhiteSpaceAndSignAreAccepted) {
  EXPECT_EQ(LevelOf("  \t\n 7\n"), 7u);
  EXPECT_EQ(LevelOf("+6\n"), 6u);
  EXPECT_EQ(LevelOf("0005\n"), 5u);
}

TEST_F(CSystemLogLevelTest, SignWithoutDigitsReadsAsThree) {
  EXPECT_EQ(LevelOf("-\n"), 3u);
  EXPECT_EQ(LevelOf("+"), 3u);
}

TEST_F(CSystemLogLevelTest, NegativeNumberWrapsAroundAsTheStreamDoes) {
  EXPECT_EQ(LevelOf("-1\n"), static_cast<unsigned long>(-1));
}

TEST_F(CSystemLogLevelTest, ExtractionStopsAtTheFirstOtherByte) {
  EXPECT_EQ(LevelOf("4 junk"), 4u);
  EXPECT_EQ(LevelOf("4\r\n"), 4u);
  EXPECT_EQ(LevelOf("12abc"), 12u);
  EXPECT_EQ(LevelOf("0x10\n"), 0u);  // decimal only: "x" ends the number
}

TEST_F(CSystemLogLevelTest, FolderInsteadOfAFileReadsAsThree) {
  MakeDirs(kLogLevel);
  EXPECT_EQ(CSystem().GetFRDebugLevel(), 3u);
}

TEST_F(CSystemLogLevelTest, UnreadableFileReadsAsThree) {
  WriteFile(kLogLevel, "4\n");
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kRead, 0);
  EXPECT_EQ(CSystem().GetFRDebugLevel(), 3u);
}

TEST_F(CSystemLogLevelTest, ReadingDoesNotTouchTheSettingsFile) {
  WriteFile(kLogLevel, "4\n");
  { EXPECT_EQ(CSystem().GetFRDebugLevel(), 4u); }
  EXPECT_FALSE(Exists(kSettingsPath));
}

TEST_F(CSystemLogLevelTest, SetWritesTheNumberAndLineFeedAndSetsTheMasterLevel) {
  MakeDirs("/var");
  EXPECT_EQ(CSystem().SetFRDebugLevel(5), 0);
  EXPECT_EQ(ReadFile(kLogLevel), "5\n");
  EXPECT_EQ(MasterLevel(), 5);
  EXPECT_EQ(CSystem().GetFRDebugLevel(), 5u);
}

TEST_F(CSystemLogLevelTest, SetReplacesTheWholeFile) {
  WriteFile(kLogLevel, "123456789\n");
  EXPECT_EQ(CSystem().SetFRDebugLevel(2), 0);
  EXPECT_EQ(ReadFile(kLogLevel), "2\n");
}

TEST_F(CSystemLogLevelTest, UnwritableFileStillSetsTheMasterLevel) {
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kOpen, 0);
  MakeDirs("/var");
  WriteFile(kLogLevel, "4\n");
  EXPECT_EQ(CSystem().SetFRDebugLevel(6), 0);
  EXPECT_EQ(MasterLevel(), 6);
  EXPECT_EQ(ReadFile(kLogLevel), "4\n");
}

TEST_F(CSystemLogLevelTest, FailingWriteKeepsTheOldFileAndStillSetsTheMasterLevel) {
  WriteFile(kLogLevel, "4\n");
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kWrite, 0, ENOSPC);
  EXPECT_EQ(CSystem().SetFRDebugLevel(7), 0);
  EXPECT_EQ(MasterLevel(), 7);
  faults.Reset();
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(kLogLevel), "4\n");
}

TEST_F(CSystemLogLevelTest, MissingFolderStillSetsTheMasterLevel) {
  EXPECT_EQ(CSystem().SetFRDebugLevel(4), 0);
  EXPECT_EQ(MasterLevel(), 4);
}
