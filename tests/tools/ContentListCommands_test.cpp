// `vireline apps`, `avatars`, `mdls` and `consumables` over the sample image.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "tools/SampleImageTest.h"

namespace {

const char kMathMountain[] = " --title /QV/Bulk/ProgramFiles/MathMountain";

// The printed lines, sorted: lists follow the folders' listing order.
std::vector<std::string> SortedLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  std::sort(lines.begin(), lines.end());
  return lines;
}

typedef std::vector<std::string> Strings;

}  // namespace

using ContentListCommandsTest = SampleImageTest;

TEST_F(ContentListCommandsTest, AppsListsEveryApplicationFolder) {
  InspectorRun run = Run("apps");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(SortedLines(run.out), (Strings{"/QV/Bulk/ProgramFiles/KeyboardWidget", "/QV/Bulk/ProgramFiles/MathMountain",
                                           "/QV/Bulk/ProgramFiles/PetitChef", "/QV/Bulk/ProgramFiles/StoryTime",
                                           "/QV/Bulk/ProgramFiles/ZooKeeper"}));
}

TEST_F(ContentListCommandsTest, AppsJson) {
  Json::Value json = ParseJson(Run("apps --json").out);
  EXPECT_EQ(json["count"].asUInt(), 5u);
  EXPECT_EQ(json["paths"].size(), 5u);
}

TEST_F(ContentListCommandsTest, AvatarsListsWhatThePlayerMayUse) {
  InspectorRun run = Run("avatars --player 1");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(SortedLines(run.out), (Strings{"/QV/Base/ZantoAvatars/Avatar1", "/QV/Base/ZantoAvatars/Avatar2"}));
  EXPECT_EQ(Run("avatars --player 0").out, "/QV/Base/ZantoAvatars/Avatar1\n");
}

TEST_F(ContentListCommandsTest, AvatarsJson) {
  Json::Value json = ParseJson(Run("avatars --player 0 --json").out);
  EXPECT_EQ(json["player"].asInt(), 0);
  EXPECT_EQ(json["count"].asUInt(), 1u);
  EXPECT_EQ(json["paths"][0].asString(), "/QV/Base/ZantoAvatars/Avatar1");
}

TEST_F(ContentListCommandsTest, AvatarsWithoutTheFolderSaysSoInsteadOfAsserting) {
  std::filesystem::remove_all(Host("/QV/Base/ZantoAvatars"));
  InspectorRun run = Run("avatars --player 0");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "vireline avatars: /QV/Base/ZantoAvatars/: no avatar folder on this device\n");
  EXPECT_EQ(ReadFile("/QV/Bulk/Data/Uploads/0/profile.log").size(), 1407u);  // no critical-error record
}

TEST_F(ContentListCommandsTest, AvatarsNeedsAPlayer) { EXPECT_EQ(Run("avatars").exitStatus, 2); }

TEST_F(ContentListCommandsTest, MdlsListsTheTitlesMicroDownloadsForThePlayer) {
  InspectorRun run = Run(std::string("mdls --player 0") + kMathMountain);
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "/QV/Bulk/Downloads/MathMountain_Level2\n");
  EXPECT_EQ(SortedLines(Run(std::string("mdls --player 1") + kMathMountain).out),
            (Strings{"/QV/Bulk/Downloads/MathMountain_Level2", "/QV/Bulk/Downloads/MathMountain_Level3"}));
}

TEST_F(ContentListCommandsTest, MdlsWithoutATitleListsNothing) {
  InspectorRun run = Run("mdls --player 1");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "");
}

TEST_F(ContentListCommandsTest, MdlsJson) {
  Json::Value json = ParseJson(Run(std::string("mdls --player 0 --json") + kMathMountain).out);
  EXPECT_EQ(json["game"].asString(), "MathMountain");
  EXPECT_EQ(json["player"].asInt(), 0);
  EXPECT_EQ(json["count"].asUInt(), 1u);
  EXPECT_EQ(json["notes"].size(), 0u);
}

TEST_F(ContentListCommandsTest, ConsumablesLeaveOutWhatWasGivenBack) {
  InspectorRun run = Run(std::string("consumables") + kMathMountain);
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "/QV/Bulk/Downloads/MathMountain_Coins/\n");
}

TEST_F(ContentListCommandsTest, ConsumablesJsonNamesTheCurrentPlayer) {
  Json::Value json = ParseJson(Run(std::string("consumables --json") + kMathMountain).out);
  EXPECT_EQ(json["player"].asInt(), 0);
  EXPECT_EQ(json["count"].asUInt(), 1u);
  EXPECT_EQ(json["paths"][0].asString(), "/QV/Bulk/Downloads/MathMountain_Coins/");
}

TEST_F(ContentListCommandsTest, ListingChangesNothingOnTheDevice) {
  std::string coins = ReadFile("/QV/Bulk/Downloads/MathMountain_Coins/meta.inf");
  Strings inventory = List("/QV/Bulk/Data/Uploads/0/KVR9-0x0017000C-999999");
  Run(std::string("consumables") + kMathMountain);
  Run(std::string("mdls --player 0") + kMathMountain);
  EXPECT_EQ(ReadFile("/QV/Bulk/Downloads/MathMountain_Coins/meta.inf"), coins);
  EXPECT_EQ(List("/QV/Bulk/Data/Uploads/0/KVR9-0x0017000C-999999"), inventory);
}
