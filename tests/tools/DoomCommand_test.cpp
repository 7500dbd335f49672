#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/SampleImageTest.h"

namespace {

const char kList[] = "/QV/Base/K9W_en/Data/CriticalDoom.json";

}  // namespace

class DoomCommandTest : public SampleImageTest {};

TEST_F(DoomCommandTest, ListsTheGlobalMarkerAndTheDoomedPackages) {
  InspectorRun run = Run("doom");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out,
            "global marker /QV/doom: absent\n"
            "doomed packages: 2\n"
            "  /QV/Base/ZantoAvatars/RetiredAvatar\n"
            "  /QV/Bulk/LanguagePack_de\n");
}

TEST_F(DoomCommandTest, ShowsAPresentGlobalMarker) {
  WriteFile("/QV/doom", "");
  EXPECT_EQ(Run("doom").out.find("global marker /QV/doom: present (all content withdrawn)\n"), 0u);
}

TEST_F(DoomCommandTest, Json) {
  WriteFile("/QV/Bulk/Downloads/MathFacts1/doom", "");
  Json::Value json = ParseJson(Run("doom --json").out);
  EXPECT_EQ(json["globalMarker"].asString(), "/QV/doom");
  EXPECT_FALSE(json["global"].asBool());
  ASSERT_EQ(json["doomed"].size(), 3u);
  EXPECT_EQ(json["doomed"][1].asString(), "/QV/Bulk/Downloads/MathFacts1");
  EXPECT_EQ(json["doomed"][2].asString(), "/QV/Bulk/LanguagePack_de");
}

TEST_F(DoomCommandTest, ListingChangesNothing) {
  WriteFile(kList, "{\"FolderList\":[\"/QV/Bulk/Gone\"]}");
  Run("doom");
  Run("doom --json");
  EXPECT_FALSE(Exists("/QV/doom"));
  EXPECT_FALSE(Exists("/QV/Bulk/Gone"));
}

TEST_F(DoomCommandTest, TheCriticalCheckRefusesToRunWithoutYes) {
  WriteFile(kList, "{\"FolderList\":[\"/QV/Bulk/Gone\"]}");
  InspectorRun run = Run("doom --critical");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.err, "vireline doom: --critical creates doom markers for missing critical content; add --yes to run it\n");
  EXPECT_FALSE(Exists("/QV/doom"));
  EXPECT_FALSE(Exists("/QV/Bulk/Gone"));
}

TEST_F(DoomCommandTest, TheSampleImagesCriticalContentIsComplete) {
  InspectorRun run = Run("doom --critical --yes");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "HasDoomPackageCritical: global doom file detected\ncritical content: complete\n");
  EXPECT_FALSE(Exists("/QV/doom"));
}

TEST_F(DoomCommandTest, MissingCriticalContentIsDoomedAndReported) {
  WriteFile(kList, "{\"FolderList\":[\"/QV/Bulk/Gone/Audio/en\"]}");
  InspectorRun run = Run("doom --critical --yes");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out,
            "HasDoomPackageCritical: global doom file detected\n"
            "HasDoomPackageCritical: missing critical folder /QV/Bulk/Gone/Audio/en\n"
            "critical content: incomplete or withdrawn\n");
  EXPECT_TRUE(Exists("/QV/Bulk/Gone/doom"));
  EXPECT_TRUE(Exists("/QV/doom"));
  EXPECT_NE(Run("doom").out.find("present"), std::string::npos);
}
