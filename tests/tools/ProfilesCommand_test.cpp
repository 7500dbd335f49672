#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/SampleImageTest.h"

class ProfilesCommandTest : public SampleImageTest {};

TEST_F(ProfilesCommandTest, ShowsTheThreeSlots) {
  InspectorRun run = Run("profiles");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "slot 0: Maya\n  id: 1\n  grade: 2\n  points: 42\n  badges: 4\n  avatar: /QV/Base/ZantoAvatars/Avatar2/\n"
            "slot 1: Leo\n  id: 2\n  grade: 0\n  points: 7\n  badges: 1\n  avatar: /QV/Base/ZantoAvatars/Avatar1/\n"
            "slot 2: no profile\n");
}

TEST_F(ProfilesCommandTest, Json) {
  InspectorRun run = Run("profiles --json");
  EXPECT_EQ(run.exitStatus, 0);
  Json::Value json = ParseJson(run.out);
  ASSERT_EQ(json.size(), 3u);
  EXPECT_EQ(json[0]["slot"].asInt(), 0);
  EXPECT_TRUE(json[0]["exists"].asBool());
  EXPECT_EQ(json[0]["name"].asString(), "Maya");
  EXPECT_EQ(json[0]["id"].asUInt(), 1u);
  EXPECT_EQ(json[0]["grade"].asUInt(), 2u);
  EXPECT_EQ(json[0]["points"].asUInt(), 42u);
  EXPECT_EQ(json[0]["badges"].asUInt(), 4u);
  EXPECT_EQ(json[0]["avatar"].asString(), "/QV/Base/ZantoAvatars/Avatar2/");
  EXPECT_FALSE(json[2]["exists"].asBool());
  EXPECT_FALSE(json[2].isMember("name"));
}

TEST_F(ProfilesCommandTest, MissingNumbersAndAnEmptiedSlotAreShownAsSuch) {
  WriteFile("/QV/Bulk/Data/Local/2/profile.dsc", "Name=\nGrade=0x000000FF\n");
  InspectorRun run = Run("profiles");
  EXPECT_NE(run.out.find("slot 2: (empty)\n  id: -\n  grade: 255 (empty slot)\n  points: -\n  badges: 0\n"),
            std::string::npos)
      << run.out;
  Json::Value json = ParseJson(Run("profiles --json").out);
  EXPECT_TRUE(json[2]["id"].isNull());
  EXPECT_EQ(json[2]["name"].asString(), "");
}

TEST_F(ProfilesCommandTest, ShowingCreatesAndWritesNothing) {
  std::vector<std::string> local = List("/QV/Bulk/Data/Local");
  std::vector<std::string> slot0 = List("/QV/Bulk/Data/Local/0");
  std::string shared = ReadFile("/QV/Bulk/Data/Local/0/profile.dsc");
  std::string priv = ReadFile("/QV/Bulk/Data/Local/0/profile_private.dsc");
  Run("profiles");
  Run("profiles --json");
  EXPECT_EQ(List("/QV/Bulk/Data/Local"), local);
  EXPECT_EQ(List("/QV/Bulk/Data/Local/0"), slot0);
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Local/2"));
  EXPECT_EQ(ReadFile("/QV/Bulk/Data/Local/0/profile.dsc"), shared);
  EXPECT_EQ(ReadFile("/QV/Bulk/Data/Local/0/profile_private.dsc"), priv);
}

TEST_F(ProfilesCommandTest, RemoveRefusesWithoutYes) {
  InspectorRun run = Run("profile remove 1");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "vireline profile remove: this deletes player 1's settings, saved games, uploads and play log; "
            "add --yes to do it\n");
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Local/1/profile_private.dsc"));
  EXPECT_NE(ReadFile("/QV/Bulk/Data/Local/1/profile.dsc").find("Name=Leo"), std::string::npos);
}

TEST_F(ProfilesCommandTest, RemoveEmptiesTheSlot) {
  InspectorRun run = Run("profile remove 0 --yes");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "removed player 0 (Maya)\n");
  EXPECT_EQ(run.err, "");
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Local/0/profile_private.dsc"));
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Local/0/Milestones.json"));
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Local/0/CYO-SPELL-0003"));
  EXPECT_EQ(ReadFile("/QV/Bulk/Data/Uploads/0/profile.log").size(), 104u);
  EXPECT_EQ(ReadFile("/QV/Bulk/Downloads/MathMountain_Coins/meta.inf").find("ProfileAccess=0\n"), std::string::npos);
  InspectorRun after = Run("profiles");
  EXPECT_EQ(after.out.substr(0, after.out.find("slot 1")),
            "slot 0: (empty)\n  id: 1\n  grade: 255 (empty slot)\n  points: 42\n  badges: 0\n"
            "  avatar: /QV/Base/ZantoAvatars/Avatar1/\n");
}

TEST_F(ProfilesCommandTest, RemoveOfANonSlotIsAUsageError) {
  InspectorRun run = Run("profile remove 3 --yes");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.err, "vireline profile remove: 3 is not a player slot (0, 1 or 2)\n");
  EXPECT_EQ(Run("profile remove").exitStatus, 2);
  EXPECT_EQ(Run("profile").exitStatus, 2);
}
