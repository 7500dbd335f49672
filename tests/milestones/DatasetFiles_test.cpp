// The string and file helpers beside the dataset loader, and the descriptor holder.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <unistd.h>

#include "milestones/DatasetTest.h"

TEST_F(DatasetTest, FileSizeIgnoresTrailingBackslashes) {
  WriteFile("/data/five.dsetBin", "12345");
  EXPECT_EQ(FileSize("/data/five.dsetBin"), 5u);
  EXPECT_EQ(FileSize("/data/five.dsetBin\\"), 5u);
  EXPECT_EQ(FileSize("/data/five.dsetBin\\\\\\"), 5u);
}

TEST_F(DatasetTest, FileSizeIsZeroWhenThePathCannotBeExamined) {
  EXPECT_EQ(FileSize("/data/missing.dsetBin"), 0u);
  EXPECT_EQ(FileSize(""), 0u);
  EXPECT_EQ(FileSize("\\\\"), 0u);
}

TEST_F(DatasetTest, FileSizeOfAnEmptyFileIsZero) {
  WriteFile("/data/empty.relinkBin", "");
  EXPECT_EQ(FileSize("/data/empty.relinkBin"), 0u);
}

TEST_F(DatasetTest, ADatasetPathEndingInABackslashIsRefusedByItsExtension) {
  WriteFile(kDataset, Words({0}));
  WriteFile(kRelink, Words({0}));
  EXPECT_FALSE(LoadDataset(std::string(kDataset) + "\\", kRelink));
}

TEST(DatasetExtensionTest, ANameWithoutADotHasNoExtension) { EXPECT_EQ(GetFileExtension("level"), ""); }

TEST(DatasetExtensionTest, ANameEndingInADotHasAnEmptyExtension) { EXPECT_EQ(GetFileExtension("level."), ""); }

TEST(DatasetExtensionTest, TheExtensionIsTheTextAfterTheLastDot) {
  EXPECT_EQ(GetFileExtension("a.b.c"), "c");
  EXPECT_EQ(GetFileExtension("/data/level.dsetBin"), "dsetBin");
  EXPECT_EQ(GetFileExtension(".hidden"), "hidden");
  EXPECT_EQ(GetFileExtension(""), "");
}

TEST(DatasetExtensionTest, ADotInAFolderNameCountsWhenTheFileHasNone) {
  EXPECT_EQ(GetFileExtension("/data.d/level"), "d/level");
}

TEST(StripTrailingTest, RemovesEveryTrailingCharacterOfTheSet) {
  EXPECT_EQ(StripTrailing("path\\\\\\", "\\"), "path");
  EXPECT_EQ(StripTrailing("path/ \\/", "\\/ "), "path");
  EXPECT_EQ(StripTrailing("a\\b\\", "\\"), "a\\b");
}

TEST(StripTrailingTest, LeavesTextWithoutTrailingSetCharactersAlone) {
  EXPECT_EQ(StripTrailing("path", "\\"), "path");
  EXPECT_EQ(StripTrailing("path", ""), "path");
  EXPECT_EQ(StripTrailing("", "\\"), "");
}

TEST(StripTrailingTest, TextMadeOnlyOfSetCharactersBecomesEmpty) { EXPECT_EQ(StripTrailing("\\\\\\", "\\"), ""); }

TEST(StripTrailingTest, ZeroBytesAreOrdinaryCharacters) {
  EXPECT_EQ(StripTrailing(std::string("a\0b\0\0", 5), std::string("\0", 1)), std::string("a\0b", 3));
}

namespace {

bool IsOpen(int fd) { return fcntl(fd, F_GETFD) != -1; }

}  // namespace

TEST(EFdWrapperTest, HoldsNothingByDefault) {
  EFdWrapper none;
  EXPECT_EQ(none.Get(), -1);
  none.Close();
  EXPECT_EQ(none.Get(), -1);
}

TEST(EFdWrapperTest, CloseClosesTheDescriptorAndForgetsIt) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  EFdWrapper reader(ends[0]);
  EXPECT_EQ(reader.Get(), ends[0]);
  reader.Close();
  EXPECT_EQ(reader.Get(), -1);
  EXPECT_FALSE(IsOpen(ends[0]));
  reader.Close();  // a second close touches nothing
  close(ends[1]);
}

TEST(EFdWrapperTest, LeavingTheScopeClosesTheDescriptor) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  {
    EFdWrapper writer(ends[1]);
    EXPECT_TRUE(IsOpen(ends[1]));
  }
  EXPECT_FALSE(IsOpen(ends[1]));
  close(ends[0]);
}
