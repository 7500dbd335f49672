#include <gtest/gtest.h>

#include <stdlib.h>

#include <string>
#include <vector>

#include <vireline/Platform.h>

#include "platform/DebugJoined.h"

namespace {

struct Message {
  int module;
  int level;
  std::string text;
};

std::vector<Message> gMessages;

void Collect(int module, int level, const char* text) { gMessages.push_back({module, level, text}); }

class PlatformDebugTest : public ::testing::Test {
 protected:
  void SetUp() override {
    gMessages.clear();
    PlatformDebug::SetOutputFunction(Collect);
  }
  void TearDown() override { PlatformDebug::SetOutputFunction(nullptr); }
};

}  // namespace

TEST_F(PlatformDebugTest, DefaultMasterLevelShowsOnlyLevelOne) {
  unsetenv("VIRELINE_DEBUG_LEVEL");
  PlatformDebug debug(1024);
  debug.DebugOut(1, "error %d\n", 7);
  debug.DebugOut(2, "fallback\n");
  ASSERT_EQ(gMessages.size(), 1u);
  EXPECT_EQ(gMessages[0].text, "error 7\n");
  EXPECT_EQ(gMessages[0].module, 1024);
  EXPECT_EQ(gMessages[0].level, 1);
}

TEST(PlatformDebugEnvironment, LevelFiveShowsLevelsOneToFive) {
  // Read at the first use of the debug service; each test runs in a process of its own.
  setenv("VIRELINE_DEBUG_LEVEL", "5", 1);
  gMessages.clear();
  PlatformDebug::SetOutputFunction(Collect);
  PlatformDebug debug(0x281);
  for (int level = 1; level <= 6; ++level) debug.DebugOut(level, "level %d", level);
  PlatformDebug::SetOutputFunction(nullptr);
  ASSERT_EQ(gMessages.size(), 5u);
  EXPECT_EQ(gMessages[4].text, "level 5");
}

TEST_F(PlatformDebugTest, MasterLevelAppliesToEveryModule) {
  PlatformDebug master(0x280);
  master.SetMasterDebugLevel(3);
  PlatformDebug other(0);
  other.DebugOut(3, "three");
  other.DebugOut(4, "four");
  ASSERT_EQ(gMessages.size(), 1u);
  EXPECT_EQ(gMessages[0].text, "three");
}

TEST_F(PlatformDebugTest, ModuleLevelRaisesOnlyThatModule) {
  PlatformDebug(0x280).SetMasterDebugLevel(1);
  PlatformDebug(0x281).SetDebugLevel(5);
  PlatformDebug(0x281).DebugOut(5, "data objects");
  PlatformDebug(1024).DebugOut(5, "legacy layer");
  ASSERT_EQ(gMessages.size(), 1u);
  EXPECT_EQ(gMessages[0].text, "data objects");
  EXPECT_EQ(PlatformDebug(0x281).GetEffectiveDebugLevel(), 5);
  EXPECT_EQ(PlatformDebug(1024).GetEffectiveDebugLevel(), 1);
}

TEST_F(PlatformDebugTest, MasterLevelAboveModuleLevelWins) {
  PlatformDebug(7).SetDebugLevel(2);
  PlatformDebug(0x280).SetMasterDebugLevel(4);
  EXPECT_EQ(PlatformDebug(7).GetEffectiveDebugLevel(), 4);
}

TEST_F(PlatformDebugTest, FailedAssertReportsWithoutAborting) {
  PlatformDebug debug(1);
  debug.Assert(true, "never %s", "shown");
  debug.Assert(false, "broken %s", "invariant");
  ASSERT_EQ(gMessages.size(), 1u);
  EXPECT_EQ(gMessages[0].text, "broken invariant");
}

TEST_F(PlatformDebugTest, AssertAbortsWhenAsked) {
  PlatformDebug::SetAbortOnAssert(true);
  EXPECT_DEATH(PlatformDebug(1).Assert(false, "fatal"), "");
  PlatformDebug::SetAbortOnAssert(false);
}

TEST(PlatformDebugDefaultOutput, WritesTheTextUnchangedToStandardError) {
  PlatformDebug::SetOutputFunction(nullptr);
  testing::internal::CaptureStderr();
  PlatformDebug(1024).DebugOut(1, "ASSERT: %s\n", "message");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "ASSERT: message\n");
}

TEST_F(PlatformDebugTest, LongMessagesAreNotCut) {
  std::string text(10000, 'x');
  PlatformDebug(1).DebugOut(1, "%s", text.c_str());
  ASSERT_EQ(gMessages.size(), 1u);
  EXPECT_EQ(gMessages[0].text, text);
}

TEST_F(PlatformDebugTest, APercentSignAmongTextsIsPrintedOnce) {
  PlatformDebug debug(1024);
  debug.DebugOut(1, "%s at 100%% of %s\n", "volume", "the card");
  ASSERT_EQ(gMessages.size(), 1u);
  EXPECT_EQ(gMessages[0].text, "volume at 100% of the card\n");
}

TEST_F(PlatformDebugTest, AFailedAssertWithoutAMessagePrintsAnEmptyOne) {
  PlatformDebug debug(1024);
  debug.Assert(false, nullptr);
  ASSERT_EQ(gMessages.size(), 1u);
  EXPECT_EQ(gMessages[0].text, "");
  EXPECT_EQ(gMessages[0].level, 1);
}

TEST_F(PlatformDebugTest, ModulesBeyondTheFastSlotsKeepTheirOwnLevels) {
  PlatformDebug(0).SetMasterDebugLevel(1);
  const int kModules = 40;  // more than the slots kept for lock-free lookups
  for (int module = 0; module < kModules; ++module) PlatformDebug(5000 + module).SetDebugLevel(2 + module % 3);
  for (int module = 0; module < kModules; ++module) {
    EXPECT_EQ(PlatformDebug(5000 + module).GetEffectiveDebugLevel(), 2 + module % 3) << module;
  }
  PlatformDebug(5000 + kModules - 1).SetDebugLevel(9);
  EXPECT_EQ(PlatformDebug(5000 + kModules - 1).GetEffectiveDebugLevel(), 9);
  EXPECT_EQ(PlatformDebug(4999).GetEffectiveDebugLevel(), 1);
}

namespace {

// The messages of levels 1 to 3 that show when the environment names `level`
// as the master level before the debug service's first use.
std::vector<Message> LevelsOneToThreeUnder(const char* level) {
  setenv("VIRELINE_DEBUG_LEVEL", level, 1);
  gMessages.clear();
  PlatformDebug::SetOutputFunction(Collect);
  PlatformDebug debug(0x281);
  for (int shown = 1; shown <= 3; ++shown) debug.DebugOut(shown, "level %d", shown);
  PlatformDebug::SetOutputFunction(nullptr);
  return gMessages;
}

}  // namespace

// The default master level shows level 1 only.
TEST(PlatformDebugEnvironment, ALevelThatIsNoWholeNumberKeepsTheDefault) {
  std::vector<Message> shown = LevelsOneToThreeUnder("5x");
  ASSERT_EQ(shown.size(), 1u);
  EXPECT_EQ(shown[0].text, "level 1");
}

TEST(PlatformDebugEnvironment, AnEmptyLevelKeepsTheDefault) { EXPECT_EQ(LevelsOneToThreeUnder("").size(), 1u); }

TEST_F(PlatformDebugTest, TextsFollowedByANumberAreFormattedInFull) {
  PlatformDebug debug(1024);
  debug.DebugOut(1, "%s has %d of %s\n", "the card", 3, "its slots");
  ASSERT_EQ(gMessages.size(), 1u);
  EXPECT_EQ(gMessages[0].text, "the card has 3 of its slots\n");
}

TEST_F(PlatformDebugTest, ALongMessageWithANumberIsNotCut) {
  std::string text(3000, 'y');
  PlatformDebug(1).DebugOut(1, "%s=%u", text.c_str(), 42u);
  ASSERT_EQ(gMessages.size(), 1u);
  EXPECT_EQ(gMessages[0].text, text + "=42");
}

TEST_F(PlatformDebugTest, AMissingTextPrintsAsNull) {
  const char* volatile missing = nullptr;  // not known to the compiler, as in a caller's code
  PlatformDebug(1).DebugOut(1, "name %s.", missing);
  ASSERT_EQ(gMessages.size(), 1u);
  EXPECT_EQ(gMessages[0].text, "name (null).");
}

TEST_F(PlatformDebugTest, AJoinedMessageIsWhatItsFormatWouldPrint) {
  PlatformDebug debug(1024);
  for (const std::string& name : {std::string("hit.png"), std::string(700, 'n'), std::string()}) {
    gMessages.clear();
    debug.DebugOut(1, "Find( %s )\n", name.c_str());
    vireline::DebugOutJoined(1024, 1, "Find( ", name.c_str(), " )\n");
    ASSERT_EQ(gMessages.size(), 2u);
    EXPECT_EQ(gMessages[1].text, gMessages[0].text);
    EXPECT_EQ(gMessages[1].level, 1);
    EXPECT_EQ(gMessages[1].module, 1024);
  }
}

TEST_F(PlatformDebugTest, AJoinedMessageAboveTheLevelIsNotPrinted) {
  vireline::DebugOutJoined(1024, 5, "Find( ", "x", " )\n");
  EXPECT_TRUE(gMessages.empty());
}

TEST_F(PlatformDebugTest, AJoinedMessageWithoutItsTextPrintsNull) {
  vireline::DebugOutJoined(1024, 1, "Find( ", nullptr, " )");
  ASSERT_EQ(gMessages.size(), 1u);
  EXPECT_EQ(gMessages[0].text, "Find( (null) )");
}
