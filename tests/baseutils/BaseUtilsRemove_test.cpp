// Recursive removal: RM takes a whole tree, RMDirs only the sub-folders.
#include <vireline/BaseUtils.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "DeviceRootTest.h"

class BaseUtilsRemoveTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    CaptureDebugOutput();
  }

  void TearDown() override {
    utils->SetupTrace(0, false);
    DeviceRootTest::TearDown();
  }

  BaseUtils* utils = BaseUtils::Instance();
};

TEST_F(BaseUtilsRemoveTest, RMRemovesAFile) {
  WriteFile("/a/f", "x");
  EXPECT_TRUE(utils->RM("/a/f"));
  EXPECT_FALSE(Exists("/a/f"));
  EXPECT_TRUE(Exists("/a"));
}

TEST_F(BaseUtilsRemoveTest, RMRemovesAFolderAndEverythingInIt) {
  WriteFile("/a/f", "x");
  WriteFile("/a/d/g", "y");
  WriteFile("/a/d/e/h", "z");
  MakeDirs("/a/empty");
  EXPECT_TRUE(utils->RM("/a"));
  EXPECT_FALSE(Exists("/a"));
}

TEST_F(BaseUtilsRemoveTest, RMOfAMissingPathIsStillTrue) { EXPECT_TRUE(utils->RM("/nothing/here")); }

TEST_F(BaseUtilsRemoveTest, RMRemovesALinkButNotWhatItPointsTo) {
  WriteFile("/keep/k", "x");
  WriteFile("/a/f", "y");
  std::filesystem::create_directory_symlink("/keep", Host("/a/link"));
  EXPECT_TRUE(utils->RM("/a"));
  EXPECT_FALSE(Exists("/a"));
  EXPECT_EQ(ReadFile("/keep/k"), "x");
}

TEST_F(BaseUtilsRemoveTest, RMEndsOnALinkLoop) {
  MakeDirs("/a/b");
  std::filesystem::create_directory_symlink("/a", Host("/a/b/loop"));
  EXPECT_TRUE(utils->RM("/a"));
  EXPECT_FALSE(Exists("/a"));
}

TEST_F(BaseUtilsRemoveTest, RMDirsKeepsTheFolderAndItsFilesButRemovesItsSubFolders) {
  WriteFile("/a/f", "x");
  WriteFile("/a/d/g", "y");
  EXPECT_TRUE(utils->RMDirs("/a"));
  EXPECT_TRUE(Exists("/a"));
  EXPECT_EQ(ReadFile("/a/f"), "x");
  EXPECT_FALSE(Exists("/a/d"));
}

TEST_F(BaseUtilsRemoveTest, RMDirsRemovesDeeplyNestedFolders) {
  WriteFile("/a/d/e/f/g", "y");
  WriteFile("/a/d/h", "z");
  WriteFile("/a/top", "t");
  EXPECT_TRUE(utils->RMDirs("/a"));
  EXPECT_EQ(List("/a"), std::vector<std::string>{"top"});
}

TEST_F(BaseUtilsRemoveTest, RMDirsOfAMissingFolderIsStillTrue) { EXPECT_TRUE(utils->RMDirs("/nothing")); }

TEST_F(BaseUtilsRemoveTest, RMDirsEndsOnALinkLoop) {
  MakeDirs("/a/d");
  std::filesystem::create_directory_symlink("/a", Host("/a/d/loop"));
  EXPECT_TRUE(utils->RMDirs("/a"));
  EXPECT_TRUE(Exists("/a"));
  EXPECT_FALSE(Exists("/a/d"));
}

TEST_F(BaseUtilsRemoveTest, RMDirsTracesItsWalk) {
  WriteFile("/a/d/g", "y");
  utils->SetupTrace(0, true);
  utils->RMDirs("/a");
  EXPECT_EQ(DebugOutput(), "in RMDirs\n/a\n/a/d\nin RMDirs\n/a/d\n/a/d/g\n");
}

TEST_F(BaseUtilsRemoveTest, RMDirsTracesNothingWithoutTrace) {
  WriteFile("/a/d/g", "y");
  utils->SetupTrace(0xFFFFFFFFu, false);
  utils->RMDirs("/a");
  EXPECT_EQ(DebugOutput(), "");
}
