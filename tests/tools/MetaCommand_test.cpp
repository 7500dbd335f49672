#include <gtest/gtest.h>

#include <string>

#include "tools/SampleImageTest.h"

class MetaCommandTest : public SampleImageTest {
 protected:
  InspectorRun Meta(const std::string& arguments) const { return Run("meta " + arguments); }
};

TEST_F(MetaCommandTest, PrintsAPackagesMetadata) {
  InspectorRun run = Meta("/QV/Bulk/ProgramFiles/MathMountain");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "meta.inf        /QV/Bulk/ProgramFiles/MathMountain/meta.inf\n"
            "package id      APP-MATH-0207\n"
            "name            Math Mountain\n"
            "type            Application\n"
            "version         3.0.2\n"
            "hidden          no\n"
            "profile access  0, 1  (ProfileAccess=0,1, items read in base 16)\n"
            "valid           yes\n");
}

TEST_F(MetaCommandTest, MissingKeysAndTheirReadings) {
  InspectorRun run = Meta("/QV/Bulk/Downloads/PartialDownload/");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out,
            "meta.inf        /QV/Bulk/Downloads/PartialDownload/meta.inf\n"
            "package id      DL-SONGS-0003\n"
            "name            Sing Along\n"
            "type            Download\n"
            "version         (missing)\n"
            "hidden          yes (no Hidden key)\n"
            "profile access  all profiles\n"
            "valid           no (needs a type other than \"*\", a package id and a version)\n");
}

TEST_F(MetaCommandTest, Json) {
  InspectorRun run = Meta("/QV/Bulk/Downloads/StoryPack1 --json");
  EXPECT_EQ(run.exitStatus, 0);
  Json::Value json = ParseJson(run.out);
  EXPECT_EQ(json["metaInf"].asString(), "/QV/Bulk/Downloads/StoryPack1/meta.inf");
  EXPECT_EQ(json["packageId"].asString(), "DL-STORY-0001-TSL");  // the alternative id comes first
  EXPECT_EQ(json["name"].asString(), "Bedtime Stories, Volume 1");
  EXPECT_EQ(json["type"].asString(), "Download");
  EXPECT_EQ(json["version"].asString(), "1.0");
  EXPECT_TRUE(json["hidden"].asBool());
  ASSERT_EQ(json["profileAccess"].size(), 1u);
  EXPECT_EQ(json["profileAccess"][0].asUInt(), 2u);
  EXPECT_TRUE(json["valid"].asBool());
}

TEST_F(MetaCommandTest, JsonOfMissingValues) {
  WriteFile("/QV/Bulk/ProgramFiles/Bare/meta.inf", "ProfileAccess=10\nHidden=0\n");
  Json::Value json = ParseJson(Meta("/QV/Bulk/ProgramFiles/Bare --json").out);
  EXPECT_TRUE(json["packageId"].isNull());
  EXPECT_TRUE(json["name"].isNull());
  EXPECT_TRUE(json["type"].isNull());
  EXPECT_TRUE(json["version"].isNull());
  EXPECT_FALSE(json["hidden"].asBool());
  EXPECT_EQ(json["profileAccess"][0].asUInt(), 16u);  // list items are read in base 16
  EXPECT_FALSE(json["valid"].asBool());
  Json::Value all = ParseJson(Meta("/QV/Bulk/ProgramFiles/ZooKeeper --json").out);
  EXPECT_TRUE(all["profileAccess"].isNull());
}

TEST_F(MetaCommandTest, EverySamplePackageReads) {
  for (const char* dir : {"/QV/Base", "/QV/Bulk/ProgramFiles/ZooKeeper", "/QV/Bulk/ProgramFiles/MathMountain",
                          "/QV/Bulk/Downloads/StoryPack1", "/QV/Bulk/Downloads/PartialDownload"}) {
    InspectorRun run = Meta(std::string(dir) + " --json");
    EXPECT_EQ(run.exitStatus, 0) << dir;
    Json::Value json = ParseJson(run.out);
    EXPECT_FALSE(json["packageId"].isNull()) << dir;
    EXPECT_FALSE(json["name"].isNull()) << dir;
  }
}

TEST_F(MetaCommandTest, MissingMetaInfIsNotFound) {
  InspectorRun run = Meta("/QV/Bulk/ProgramFiles/Nothing");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "vireline meta: /QV/Bulk/ProgramFiles/Nothing/meta.inf: no such file\n");
}

TEST_F(MetaCommandTest, FolderNamedMetaInfIsAnIoError) {
  MakeDirs("/QV/Bulk/ProgramFiles/Odd/meta.inf");
  InspectorRun run = Meta("/QV/Bulk/ProgramFiles/Odd");
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.err, "vireline meta: /QV/Bulk/ProgramFiles/Odd/meta.inf: not a regular file\n");
}

TEST_F(MetaCommandTest, FolderIsRequired) {
  InspectorRun run = Meta("");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_NE(run.err.find("DIR is required"), std::string::npos) << run.err;
}

TEST_F(MetaCommandTest, FolderPathThatDoesNotFitIsAUsageError) {
  InspectorRun run = Meta("/" + std::string(300, 'x'));
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_NE(run.err.find("not a usable package folder"), std::string::npos) << run.err;
}
