// How a table read from a file holds up under changes: its strings stay where
// they were handed out, read and added entries are freed alike, and lookups
// find the first of duplicate keys however large the table is.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/CFileIO.h>

#include "DeviceRootTest.h"
#include "files/KeyValueTest.h"

namespace {

const char kPath[] = "/QV/Base/table.cfg";

// "Key0=0\n" ... for `count` keys.
std::string NumberedLines(int count) {
  std::string content;
  for (int i = 0; i < count; ++i) content += "Key" + std::to_string(i) + "=" + std::to_string(i) + "\n";
  return content;
}

std::string Key(int i) { return "Key" + std::to_string(i); }

}  // namespace

class CFileIOTableTest : public DeviceRootTest {};

TEST_F(CFileIOTableTest, ReadStringsStayWhereTheyWereHandedOutWhileTheTableGrows) {
  WriteFile(kPath, "a=1\nb=\"two\"\nc=3\n");
  CFileIO file;
  ASSERT_TRUE(file.Open(kPath));
  const char* value = file.GetStr("b");
  char** keys = nullptr;
  ASSERT_EQ(file.Keys(keys), 3u);
  const char* key = keys[2];
  COrvoInterface::Free(keys);
  for (int i = 0; i < 300; ++i) ASSERT_TRUE(file.SetStr(Key(i).c_str(), "new"));
  EXPECT_EQ(file.GetStr("b"), value);
  EXPECT_STREQ(value, "two");
  EXPECT_EQ(file.GetEntry(2)->key, key);
  EXPECT_STREQ(key, "c");
}

TEST_F(CFileIOTableTest, ReadAndAddedEntriesAreChangedAndRemovedAlike) {
  WriteFile(kPath, NumberedLines(100));
  CFileIO file;
  ASSERT_TRUE(file.Open(kPath));
  ASSERT_EQ(file.GetEntryCount(), 100u);
  for (int i = 100; i < 120; ++i) ASSERT_TRUE(file.SetStr(Key(i).c_str(), "added"));
  for (int i = 0; i < 120; i += 3) ASSERT_TRUE(file.SetStr(Key(i).c_str(), "changed"));
  ASSERT_TRUE(file.SetUIntList("Key1", nullptr, 0));  // a read entry left without a value
  EXPECT_EQ(file.GetStr("Key1"), nullptr);
  // Removing from both ends and the middle shrinks the table through every size.
  for (int i = 0; i < 120; i += 2) ASSERT_TRUE(file.RmKey(Key(i).c_str())) << i;
  ASSERT_EQ(file.GetEntryCount(), 60u);
  EXPECT_EQ(file.GetStr("Key0"), nullptr);
  EXPECT_STREQ(file.GetStr("Key3"), "changed");
  EXPECT_STREQ(file.GetStr("Key5"), "5");
  EXPECT_STREQ(file.GetStr("Key111"), "changed");
  EXPECT_STREQ(file.GetStr("Key119"), "added");
  for (int i = 119; i > 0; i -= 2) ASSERT_TRUE(file.RmKey(Key(i).c_str())) << i;
  EXPECT_EQ(file.GetEntryCount(), 0u);
  EXPECT_TRUE(file.SetStr("again", "1"));
  EXPECT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "again=1\n");
}

TEST_F(CFileIOTableTest, TheFirstOfDuplicatesIsFoundInSmallAndLargeTables) {
  for (int size : {3, 63, 64, 65, 200}) {
    WriteFile(kPath, "dup=first\n" + NumberedLines(size) + "dup=second\n");
    CFileIO file;
    ASSERT_TRUE(file.Open(kPath));
    EXPECT_STREQ(file.GetStr("dup"), "first") << size;
    EXPECT_STREQ(file.GetStr(Key(size - 1).c_str()), std::to_string(size - 1).c_str()) << size;
    // Growing past any size keeps the answer.
    for (int i = size; i < size + 70; ++i) ASSERT_TRUE(file.SetStr(Key(i).c_str(), "x"));
    EXPECT_STREQ(file.GetStr("dup"), "first") << size;
    ASSERT_TRUE(file.RmKey("dup"));
    EXPECT_STREQ(file.GetStr("dup"), "second") << size;
    EXPECT_EQ(file.GetStr("missing"), nullptr);
    EXPECT_EQ(file.GetStr(""), nullptr);
  }
}

TEST_F(CFileIOTableTest, ReopeningReplacesTheTable) {
  WriteFile(kPath, NumberedLines(80));
  CFileIO file;
  ASSERT_TRUE(file.Open(kPath));
  ASSERT_TRUE(file.Open(kPath));
  EXPECT_EQ(file.GetEntryCount(), 80u);
  EXPECT_STREQ(file.GetStr("Key79"), "79");
  file.Clear();
  EXPECT_EQ(file.GetEntryCount(), 0u);
  EXPECT_EQ(file.GetStr("Key79"), nullptr);
}
