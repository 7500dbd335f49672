// Typed folder listings: names in listing order with each entry's own type.
#include <unistd.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "DeviceRootTest.h"
#include "platform/Env.h"
#include "platform/FaultInjectionEnv.h"

namespace {

std::map<std::string, vireline::FileType> Typed(const std::vector<vireline::DirEntry>& entries) {
  std::map<std::string, vireline::FileType> typed;
  for (const vireline::DirEntry& entry : entries) typed[entry.name] = entry.type;
  return typed;
}

}  // namespace

class ListDirEntriesTest : public DeviceRootTest {};

TEST_F(ListDirEntriesTest, EachEntryComesWithItsOwnTypeAndLinksAreNotFollowed) {
  WriteFile("/d/file", "1");
  MakeDirs("/d/folder");
  ASSERT_EQ(symlink(".", Host("/d/link").c_str()), 0);
  ASSERT_EQ(symlink("gone", Host("/d/dangling").c_str()), 0);
  std::vector<vireline::DirEntry> entries;
  ASSERT_TRUE(vireline::Env::Current()->ListDirEntries("/d", &entries).ok());
  std::map<std::string, vireline::FileType> typed = Typed(entries);
  ASSERT_EQ(typed.size(), 4u);
  EXPECT_EQ(typed["file"], vireline::FileType::kRegular);
  EXPECT_EQ(typed["folder"], vireline::FileType::kDirectory);
  EXPECT_EQ(typed["link"], vireline::FileType::kSymbolicLink);
  EXPECT_EQ(typed["dangling"], vireline::FileType::kSymbolicLink);
}

TEST_F(ListDirEntriesTest, TheOrderIsTheNamesListingOrder) {
  for (int i = 0; i < 20; ++i) WriteFile("/d/f" + std::to_string(i), "x");
  std::vector<std::string> names;
  ASSERT_TRUE(vireline::Env::Current()->ListDir("/d/", &names).ok());
  std::vector<vireline::DirEntry> entries;
  ASSERT_TRUE(vireline::Env::Current()->ListDirEntries("/d/", &entries).ok());
  ASSERT_EQ(entries.size(), names.size());
  for (size_t i = 0; i < names.size(); ++i) EXPECT_EQ(entries[i].name, names[i]);
}

TEST_F(ListDirEntriesTest, AMissingFolderIsAnError) {
  std::vector<vireline::DirEntry> entries(1);
  vireline::Result result = vireline::Env::Current()->ListDirEntries("/none", &entries);
  EXPECT_FALSE(result.ok());
  EXPECT_EQ(result.error(), ENOENT);
  EXPECT_TRUE(entries.empty());
}

TEST_F(ListDirEntriesTest, FaultInjectionCountsItAsAListing) {
  MakeDirs("/d");
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  env.FailAfter(vireline::FaultInjectionEnv::kListDir, 0, EACCES);
  std::vector<vireline::DirEntry> entries;
  EXPECT_EQ(env.ListDirEntries("/d", &entries).error(), EACCES);
  EXPECT_EQ(env.Calls(vireline::FaultInjectionEnv::kListDir), 1);
}
