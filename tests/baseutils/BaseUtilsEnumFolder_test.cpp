// The one-level folder walk of BaseUtils.
#include <vireline/BaseUtils.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "DeviceRootTest.h"

namespace {

struct Walk {
  std::vector<std::string> seen;
  size_t stopAfter = 1000;
};

unsigned char Record(const CPath& path, void* context) {
  Walk* walk = static_cast<Walk*>(context);
  walk->seen.push_back(path.raw());
  return walk->seen.size() < walk->stopAfter ? 1 : 0;
}

std::vector<std::string> Sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

class EnumFolderTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    WriteFile("/QV/f1.txt", "1");
    WriteFile("/QV/f2.txt", "2");
    MakeDirs("/QV/d1");
    MakeDirs("/QV/d2");
  }

  std::vector<std::string> Enumerate(const char* folder, int select) {
    Walk walk;
    EXPECT_TRUE(BaseUtils::Instance()->EnumFolder(folder, Record, select, &walk));
    return Sorted(walk.seen);
  }
};

TEST_F(EnumFolderTest, SelectDirectoriesHandsOnlySubFolders) {
  EXPECT_EQ(Enumerate("/QV", BaseUtils::kSelectDirectories), (std::vector<std::string>{"/QV/d1", "/QV/d2"}));
}

TEST_F(EnumFolderTest, SelectFilesHandsOnlyFiles) {
  EXPECT_EQ(Enumerate("/QV", BaseUtils::kSelectFiles), (std::vector<std::string>{"/QV/f1.txt", "/QV/f2.txt"}));
}

TEST_F(EnumFolderTest, SelectAllHandsEveryEntryWithoutDotEntries) {
  EXPECT_EQ(Enumerate("/QV", BaseUtils::kSelectAll),
            (std::vector<std::string>{"/QV/d1", "/QV/d2", "/QV/f1.txt", "/QV/f2.txt"}));
}

TEST_F(EnumFolderTest, AnUnknownSelectionHandsNothingButSucceeds) {
  EXPECT_TRUE(Enumerate("/QV", 3).empty());
}

TEST_F(EnumFolderTest, ATrailingSlashIsNotDoubled) {
  EXPECT_EQ(Enumerate("/QV/", BaseUtils::kSelectDirectories), (std::vector<std::string>{"/QV/d1", "/QV/d2"}));
}

TEST_F(EnumFolderTest, AMissingFolderReturnsFalse) {
  Walk walk;
  EXPECT_FALSE(BaseUtils::Instance()->EnumFolder("/QV/missing", Record, BaseUtils::kSelectAll, &walk));
  EXPECT_TRUE(walk.seen.empty());
}

TEST_F(EnumFolderTest, AFileInsteadOfAFolderReturnsFalse) {
  Walk walk;
  EXPECT_FALSE(BaseUtils::Instance()->EnumFolder("/QV/f1.txt", Record, BaseUtils::kSelectAll, &walk));
}

TEST_F(EnumFolderTest, ACallbackThatStopsOnTheFirstEntryStillReturnsTrue) {
  Walk walk;
  walk.stopAfter = 1;
  EXPECT_TRUE(BaseUtils::Instance()->EnumFolder("/QV", Record, BaseUtils::kSelectAll, &walk));
  EXPECT_EQ(walk.seen.size(), 1u);
}

TEST_F(EnumFolderTest, ANullCallbackSkipsEveryEntryAndSucceeds) {
  EXPECT_TRUE(BaseUtils::Instance()->EnumFolder("/QV", nullptr, BaseUtils::kSelectAll, nullptr));
}

TEST_F(EnumFolderTest, AnEntryThatCannotBeExaminedIsSkipped) {
  // A dangling symbolic link is listed but cannot be examined.
  ASSERT_EQ(symlink("nowhere", Host("/QV/dangling").c_str()), 0);
  std::vector<std::string> all = Enumerate("/QV", BaseUtils::kSelectAll);
  EXPECT_EQ(std::count(all.begin(), all.end(), "/QV/dangling"), 0);
  EXPECT_EQ(all.size(), 4u);
}
