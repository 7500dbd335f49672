#include <gtest/gtest.h>

#include <string>

#include "tools/SampleImageTest.h"

namespace {

const char kPlayer0File[] = "/QV/Bulk/Data/Local/0/Milestones.json";

}  // namespace

class MilestonesCommandTest : public SampleImageTest {};

TEST_F(MilestonesCommandTest, ShowsTheCurrentPlayersMilestones) {
  InspectorRun run = Run("milestones");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "player 0: 2 milestones\n  FirstSpellingSet\n  TenFacts\n");
}

TEST_F(MilestonesCommandTest, APlayerWithoutAFolderHasNoneAndGetsNoFolder) {
  InspectorRun run = Run("milestones --player 2");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "player 2: 0 milestones\n");
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Local/2"));
}

TEST_F(MilestonesCommandTest, Json) {
  Json::Value json = ParseJson(Run("milestones --player 0 --json").out);
  EXPECT_EQ(json["player"].asInt(), 0);
  ASSERT_EQ(json["milestones"].size(), 2u);
  EXPECT_EQ(json["milestones"][1].asString(), "TenFacts");
}

TEST_F(MilestonesCommandTest, APlayerThatKeepsNoMilestonesIsAUsageError) {
  InspectorRun run = Run("milestones --player 3");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.err, "vireline milestones: player 3 keeps no milestones (only players 0, 1 and 2 do)\n");
}

TEST_F(MilestonesCommandTest, ShowingChangesNothing) {
  std::string before = ReadFile(kPlayer0File);
  std::vector<std::string> local = List("/QV/Bulk/Data/Local");
  Run("milestones");
  Run("milestones --player 1 --json");
  EXPECT_EQ(ReadFile(kPlayer0File), before);
  EXPECT_EQ(List("/QV/Bulk/Data/Local"), local);
}

TEST_F(MilestonesCommandTest, AddAndRemoveForTheCurrentPlayer) {
  InspectorRun added = Run("milestones add Reader");
  EXPECT_EQ(added.exitStatus, 0);
  EXPECT_EQ(added.out, "added Reader for player 0\n");
  EXPECT_EQ(ReadFile(kPlayer0File), "{\"FirstSpellingSet\":true,\"Reader\":true,\"TenFacts\":true}\n\n");
  InspectorRun again = Run("milestones add Reader");
  EXPECT_EQ(again.exitStatus, 1);
  EXPECT_EQ(again.err, "vireline milestones add: Reader: already reached, or no milestone file can be read for player 0\n");
  InspectorRun removed = Run("milestones remove TenFacts");
  EXPECT_EQ(removed.exitStatus, 0);
  EXPECT_EQ(removed.out, "removed TenFacts for player 0\n");
  EXPECT_EQ(ReadFile(kPlayer0File), "{\"FirstSpellingSet\":true,\"Reader\":true}\n\n");
}

TEST_F(MilestonesCommandTest, RemovingAnAbsentNameLeavesTheFileByteForByte) {
  std::string before = ReadFile(kPlayer0File);
  InspectorRun run = Run("milestones remove Nope");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, "vireline milestones remove: Nope: not reached, or the file cannot be saved for player 0\n");
  EXPECT_EQ(ReadFile(kPlayer0File), before);
}

TEST_F(MilestonesCommandTest, AddNeedsAName) { EXPECT_EQ(Run("milestones add").exitStatus, 2); }
