// Each player's milestones in one JSON file: adding, removing, listing and
// matching, for valid and invalid players, on good and damaged files.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include <vireline/CMilestones.h>

#include "DeviceRootTest.h"
#include "platform/FaultInjectionEnv.h"

using vireline::FaultInjectionEnv;

namespace {

typedef std::vector<CString> Names;

std::string MilestoneFile(int player) { return "/QV/Bulk/Data/Local/" + std::to_string(player) + "/Milestones.json"; }

}  // namespace

class MilestonesTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    SetCurrentPlayer(1);
  }

  void SetCurrentPlayer(int player) const {
    char line[40];
    std::snprintf(line, sizeof line, "CurrProfile=0x%08X\n", static_cast<unsigned>(player));
    WriteFile("/QV/Bulk/settings.cfg", line);
  }

  static CMilestones* Milestones() { return CMilestones::Instance(); }
};

TEST_F(MilestonesTest, OneInstanceForTheProcess) { EXPECT_EQ(CMilestones::Instance(), CMilestones::Instance()); }

TEST_F(MilestonesTest, AddingTheSameNameTwiceKeepsOneMember) {
  EXPECT_TRUE(Milestones()->Add("FirstWord"));
  EXPECT_FALSE(Milestones()->Add("FirstWord"));
  EXPECT_EQ(ReadFile(MilestoneFile(1)), "{\"FirstWord\":true}\n\n");
  EXPECT_EQ(Milestones()->Get(), Names{"FirstWord"});
}

TEST_F(MilestonesTest, NamesAreListedInByteOrder) {
  Milestones()->Add("zebra");
  Milestones()->Add("Zebra");
  Milestones()->Add("\xC3\xA9t\xC3\xA9");
  Milestones()->Add("apple");
  EXPECT_EQ(Milestones()->Get(1), (Names{"Zebra", "apple", "zebra", "\xC3\xA9t\xC3\xA9"}));
}

TEST_F(MilestonesTest, GetWithoutAFileIsEmptyAndCreatesNoFile) {
  EXPECT_TRUE(Milestones()->Get().empty());
  EXPECT_TRUE(Milestones()->Get(2).empty());
  EXPECT_TRUE(Milestones()->GetMatch(Names{"a"}).empty());
  EXPECT_FALSE(Milestones()->Remove("a"));
  EXPECT_FALSE(Exists(MilestoneFile(1)));
  EXPECT_FALSE(Exists(MilestoneFile(2)));
}

TEST_F(MilestonesTest, GetListsEveryMemberWhateverItsValue) {
  WriteFile(MilestoneFile(1), "{\"b\":false,\"a\":1}");
  EXPECT_EQ(Milestones()->Get(), (Names{"a", "b"}));
  EXPECT_EQ(Milestones()->GetMatch(Names{"b"}), Names{"b"});
}

TEST_F(MilestonesTest, GetMatchKeepsTheInputOrderAndRepeatsAndLeavesOutWhatIsNotReached) {
  WriteFile(MilestoneFile(1), "{\"a\":true,\"b\":true,\"c\":true}");
  EXPECT_EQ(Milestones()->GetMatch(Names{"c", "x", "a", "c", "y"}), (Names{"c", "a", "c"}));
  EXPECT_TRUE(Milestones()->GetMatch(Names{}).empty());
}

TEST_F(MilestonesTest, GetOfAnotherPlayerReadsThatPlayersFile) {
  WriteFile(MilestoneFile(0), "{\"p0\":true}");
  WriteFile(MilestoneFile(2), "{\"p2\":true}");
  EXPECT_EQ(Milestones()->Get(0), Names{"p0"});
  EXPECT_EQ(Milestones()->Get(2), Names{"p2"});
  EXPECT_TRUE(Milestones()->Get().empty());
}

TEST_F(MilestonesTest, RemoveTakesOutOneName) {
  WriteFile(MilestoneFile(1), "{\"a\":true,\"b\":true}");
  EXPECT_TRUE(Milestones()->Remove("a"));
  EXPECT_EQ(ReadFile(MilestoneFile(1)), "{\"b\":true}\n\n");
  EXPECT_FALSE(Milestones()->Remove("a"));
}

TEST_F(MilestonesTest, RemovingANameThatIsNotPresentLeavesTheFileUntouched) {
  const std::string content = "{ \"a\" : true }\r\n";
  WriteFile(MilestoneFile(1), content);
  EXPECT_FALSE(Milestones()->Remove("b"));
  EXPECT_EQ(ReadFile(MilestoneFile(1)), content);
}

TEST_F(MilestonesTest, RemoveAndClearAllDeleteTheCurrentPlayersFile) {
  WriteFile(MilestoneFile(1), "{\"a\":true}");
  WriteFile(MilestoneFile(2), "{\"a\":true}");
  EXPECT_TRUE(Milestones()->Remove());
  EXPECT_FALSE(Exists(MilestoneFile(1)));
  EXPECT_TRUE(Milestones()->ClearAll());  // nothing left to delete: still true
  EXPECT_TRUE(Exists(MilestoneFile(2)));
  EXPECT_TRUE(Milestones()->ClearAll(2));
  EXPECT_FALSE(Exists(MilestoneFile(2)));
}

TEST_F(MilestonesTest, PlayerThreeGetsNothingAndTouchesNothing) {
  SetCurrentPlayer(3);
  WriteFile(MilestoneFile(3), "{\"a\":true}");
  EXPECT_FALSE(Milestones()->Add("b"));
  EXPECT_FALSE(Milestones()->Remove("a"));
  EXPECT_FALSE(Milestones()->Remove());
  EXPECT_FALSE(Milestones()->ClearAll());
  EXPECT_FALSE(Milestones()->ClearAll(3));
  EXPECT_TRUE(Milestones()->Get().empty());
  EXPECT_TRUE(Milestones()->Get(3).empty());
  EXPECT_TRUE(Milestones()->GetMatch(Names{"a"}).empty());
  EXPECT_EQ(ReadFile(MilestoneFile(3)), "{\"a\":true}");
}

TEST_F(MilestonesTest, PlayerMinusOneGetsNothingAndTouchesNothing) {
  SetCurrentPlayer(-1);
  EXPECT_FALSE(Milestones()->Add("b"));
  EXPECT_FALSE(Milestones()->Remove("b"));
  EXPECT_FALSE(Milestones()->Remove());
  EXPECT_FALSE(Milestones()->ClearAll());
  EXPECT_FALSE(Milestones()->ClearAll(-1));
  EXPECT_FALSE(Milestones()->ClearAll(-2));
  EXPECT_TRUE(Milestones()->Get().empty());
  EXPECT_TRUE(Milestones()->Get(-1).empty());
  EXPECT_TRUE(Milestones()->GetMatch(Names{"b"}).empty());
  EXPECT_FALSE(Exists("/QV/Bulk/Data"));
}

TEST_F(MilestonesTest, NoSettingsMeansNoPlayer) {
  std::remove(Host("/QV/Bulk/settings.cfg").c_str());
  EXPECT_FALSE(Milestones()->Add("a"));
  EXPECT_FALSE(Exists("/QV/Bulk/Data"));
}

TEST_F(MilestonesTest, ARootThatIsNotAnObjectFailsSilently) {
  CaptureDebugOutput();
  for (const char* content : {"[\"a\"]", "true", "null", "\"a\""}) {
    WriteFile(MilestoneFile(1), content);
    EXPECT_FALSE(Milestones()->Add("a")) << content;
    EXPECT_FALSE(Milestones()->Remove("a")) << content;
    EXPECT_TRUE(Milestones()->Get().empty()) << content;
    EXPECT_TRUE(Milestones()->GetMatch(Names{"a"}).empty()) << content;
    EXPECT_EQ(ReadFile(MilestoneFile(1)), content);
  }
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(MilestonesTest, AFileThatIsNotJsonIsLeftAlone) {
  const std::string content = std::string("{\"a\":tr\0ue", 10);
  WriteFile(MilestoneFile(1), content);
  EXPECT_FALSE(Milestones()->Add("b"));
  EXPECT_FALSE(Milestones()->Remove("a"));
  EXPECT_TRUE(Milestones()->Get().empty());
  EXPECT_EQ(ReadFile(MilestoneFile(1)), content);
}

TEST_F(MilestonesTest, AddCreatesTheFile) {
  EXPECT_TRUE(Milestones()->Add("a"));
  EXPECT_EQ(ReadFile(MilestoneFile(1)), "{\"a\":true}\n\n");
}

TEST_F(MilestonesTest, AddAnswersTrueEvenWhenTheSaveFails) {
  WriteFile(MilestoneFile(1), "{\"a\":true}\n\n");
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kRename, 0, ENOSPC);
  EXPECT_TRUE(Milestones()->Add("b"));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(MilestoneFile(1)), "{\"a\":true}\n\n");
}

TEST_F(MilestonesTest, RemoveAnswersFalseWhenTheSaveFails) {
  WriteFile(MilestoneFile(1), "{\"a\":true}\n\n");
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kRename, 0, ENOSPC);
  EXPECT_FALSE(Milestones()->Remove("a"));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(MilestoneFile(1)), "{\"a\":true}\n\n");
}

TEST_F(MilestonesTest, AFileThatCannotBeCreatedFailsAdd) {
  WriteFile("/QV/Bulk/Data/Local/1", "a file where the player's folder belongs");
  EXPECT_FALSE(Milestones()->Add("a"));
  EXPECT_TRUE(Milestones()->Get().empty());
  EXPECT_EQ(ReadFile("/QV/Bulk/Data/Local/1"), "a file where the player's folder belongs");
}
