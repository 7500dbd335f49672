#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <vireline/CFileUtils.h>

#include "DeviceRootTest.h"
#include "platform/FaultInjectionEnv.h"

using vireline::FaultInjectionEnv;

class CFileUtilsTest : public DeviceRootTest {
 protected:
  bool IsFolder(const std::string& path) const { return std::filesystem::is_directory(Host(path)); }
  bool IsFile(const std::string& path) const { return std::filesystem::is_regular_file(Host(path)); }
};

// ---- MkPath ----

TEST_F(CFileUtilsTest, MkPathOfAFilePathMakesOnlyItsFolders) {
  ASSERT_TRUE(CFileUtils::MkPath("/a/b/c.txt", true));
  EXPECT_TRUE(IsFolder("/a"));
  EXPECT_TRUE(IsFolder("/a/b"));
  EXPECT_FALSE(Exists("/a/b/c.txt"));
}

TEST_F(CFileUtilsTest, MkPathOfAFolderPathMakesTheLastComponentToo) {
  ASSERT_TRUE(CFileUtils::MkPath("/a/b/c.txt", false));
  EXPECT_TRUE(IsFolder("/a/b/c.txt"));
}

TEST_F(CFileUtilsTest, MkPathAcceptsExistingFoldersAndATrailingSlash) {
  MakeDirs("/QV/Base");
  EXPECT_TRUE(CFileUtils::MkPath("/QV/Base/FR/", false));
  EXPECT_TRUE(IsFolder("/QV/Base/FR"));
  EXPECT_TRUE(CFileUtils::MkPath("/QV/Base/FR", false));
  EXPECT_TRUE(CFileUtils::MkPath("//QV//Base", false));
}

TEST_F(CFileUtilsTest, MkPathOfNothingFails) {
  EXPECT_FALSE(CFileUtils::MkPath(nullptr, false));
  EXPECT_FALSE(CFileUtils::MkPath("", false));
  EXPECT_FALSE(CFileUtils::MkPath("", true));
}

TEST_F(CFileUtilsTest, MkPathOfASingleFileNameMakesNothing) {
  EXPECT_TRUE(CFileUtils::MkPath("/file.txt", true));
  EXPECT_FALSE(Exists("/file.txt"));
}

TEST_F(CFileUtilsTest, MkPathThroughAFileFails) {
  WriteFile("/a/file", "x");
  EXPECT_FALSE(CFileUtils::MkPath("/a/file/b/c", false));
  EXPECT_EQ(ReadFile("/a/file"), "x");
}

TEST_F(CFileUtilsTest, MkPathStopsAtTheFirstFolderThatCannotBeMade) {
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kMakeDir, 1, EACCES);
  EXPECT_FALSE(CFileUtils::MkPath("/a/b/c/d", false));
  EXPECT_EQ(faults.Calls(FaultInjectionEnv::kMakeDir), 2);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_TRUE(IsFolder("/a"));
  EXPECT_FALSE(Exists("/a/b"));
}

// ---- Touch ----

TEST_F(CFileUtilsTest, TouchCreatesAnEmptyFile) {
  MakeDirs("/QV");
  ASSERT_TRUE(CFileUtils::Touch("/QV/new.txt"));
  EXPECT_TRUE(IsFile("/QV/new.txt"));
  EXPECT_EQ(ReadFile("/QV/new.txt"), "");
}

TEST_F(CFileUtilsTest, TouchLeavesAnExistingFileAlone) {
  WriteFile("/QV/old.txt", "content");
  auto before = std::filesystem::last_write_time(Host("/QV/old.txt"));
  EXPECT_TRUE(CFileUtils::Touch("/QV/old.txt"));
  EXPECT_EQ(ReadFile("/QV/old.txt"), "content");
  EXPECT_EQ(std::filesystem::last_write_time(Host("/QV/old.txt")), before);
}

TEST_F(CFileUtilsTest, TouchOfAFolderFailsAndCreatesNothing) {
  MakeDirs("/QV/folder");
  EXPECT_FALSE(CFileUtils::Touch("/QV/folder"));
  EXPECT_TRUE(IsFolder("/QV/folder"));
  EXPECT_EQ(List("/QV/folder"), std::vector<std::string>{});
}

TEST_F(CFileUtilsTest, TouchInAMissingFolderFails) {
  EXPECT_FALSE(CFileUtils::Touch("/QV/missing/new.txt"));
  EXPECT_FALSE(Exists("/QV/missing"));
  EXPECT_FALSE(CFileUtils::Touch(nullptr));
}

// ---- Listing operations on a shim that lists nothing ----

TEST_F(CFileUtilsTest, IsDirEmptyIsTrueForEveryFolder) {
  WriteFile("/QV/full/file.txt", "x");
  EXPECT_TRUE(CFileUtils::IsDirEmpty("/QV/full"));
  EXPECT_TRUE(CFileUtils::IsDirEmpty("/QV/missing"));
  EXPECT_TRUE(CFileUtils::IsDirEmpty("/QV/full/file.txt"));
  EXPECT_TRUE(CFileUtils::IsDirEmpty(nullptr));
}

TEST_F(CFileUtilsTest, GetDirSizeOfAFileIsItsSize) {
  WriteFile("/QV/file.bin", std::string(1234, 'x'));
  EXPECT_EQ(CFileUtils::GetDirSize("/QV/file.bin"), 1234u);
}

TEST_F(CFileUtilsTest, GetDirSizeOfAFileIsItsSizeModulo2To32) {
  MakeDirs("/QV");
  WriteFile("/QV/huge.bin", "");
  std::error_code error;
  std::filesystem::resize_file(Host("/QV/huge.bin"), (1ull << 32) + 5, error);  // sparse
  if (error) GTEST_SKIP() << "no large sparse files here: " << error.message();
  EXPECT_EQ(CFileUtils::GetDirSize("/QV/huge.bin"), 5u);
}

TEST_F(CFileUtilsTest, GetDirSizeOfAFolderCannotListIt) {
  WriteFile("/QV/folder/file.bin", std::string(100, 'x'));
  CaptureDebugOutput();
  EXPECT_EQ(CFileUtils::GetDirSize("/QV/folder"), 0u);
  EXPECT_EQ(DebugOutput(), "dir size: failed to opendir /QV/folder.");
}

TEST_F(CFileUtilsTest, GetDirSizeOfNothingIsZeroWithoutAMessage) {
  CaptureDebugOutput();
  EXPECT_EQ(CFileUtils::GetDirSize("/QV/missing"), 0u);
  EXPECT_EQ(CFileUtils::GetDirSize(nullptr), 0u);
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CFileUtilsTest, RecursiveRmOfAFolderCannotListIt) {
  WriteFile("/QV/folder/file.txt", "keep");
  CaptureDebugOutput();
  EXPECT_FALSE(CFileUtils::RecursiveRm("/QV/folder"));
  EXPECT_EQ(DebugOutput(), "rm -r: failed to opendir /QV/folder.");
  EXPECT_EQ(ReadFile("/QV/folder/file.txt"), "keep");
}

TEST_F(CFileUtilsTest, RecursiveRmRemovesAFile) {
  WriteFile("/QV/file.txt", "x");
  CaptureDebugOutput();
  EXPECT_TRUE(CFileUtils::RecursiveRm("/QV/file.txt"));
  EXPECT_FALSE(Exists("/QV/file.txt"));
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CFileUtilsTest, RecursiveRmOfNothingFailsQuietly) {
  CaptureDebugOutput();
  EXPECT_FALSE(CFileUtils::RecursiveRm("/QV/missing"));
  EXPECT_FALSE(CFileUtils::RecursiveRm(nullptr));
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CFileUtilsTest, RecursiveCopyOfNothingFails) {
  CaptureDebugOutput();
  EXPECT_FALSE(CFileUtils::RecursiveCopy("/QV/missing", "/QV/copy"));
  EXPECT_EQ(DebugOutput(), "cp -r: failed to stat /QV/missing.");
  EXPECT_FALSE(Exists("/QV/copy"));
}

TEST_F(CFileUtilsTest, RecursiveCopyOfAFolderMakesTheTargetButCannotListTheSource) {
  WriteFile("/QV/src/file.txt", "x");
  CaptureDebugOutput();
  EXPECT_FALSE(CFileUtils::RecursiveCopy("/QV/src", "/QV/dst"));
  EXPECT_EQ(DebugOutput(), "cp -r: failed to opendir /QV/src.");
  EXPECT_TRUE(IsFolder("/QV/dst"));
  EXPECT_EQ(List("/QV/dst"), std::vector<std::string>{});
}

TEST_F(CFileUtilsTest, RecursiveCopyOfAFolderIntoAMissingParentFails) {
  WriteFile("/QV/src/file.txt", "x");
  CaptureDebugOutput();
  EXPECT_FALSE(CFileUtils::RecursiveCopy("/QV/src", "/QV/none/dst"));
  EXPECT_EQ(DebugOutput(), "cp -r: failed mkdir -p /QV/none/dst.");
  EXPECT_FALSE(Exists("/QV/none"));
}

TEST_F(CFileUtilsTest, RecursiveCopyOfAFileCopiesItTheWayTheShimCopies) {
  // The shim writes one byte for every whole 512-byte block it reads.
  std::string content(1100, 'a');
  content[0] = 'F';
  content[512] = 'S';
  WriteFile("/QV/src.bin", content);
  CaptureDebugOutput();
  EXPECT_TRUE(CFileUtils::RecursiveCopy("/QV/src.bin", "/QV/dst.bin"));
  EXPECT_EQ(ReadFile("/QV/dst.bin"), "FS");
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CFileUtilsTest, RecursiveCopyOfAFileIntoAFolderUsesItsName) {
  WriteFile("/QV/dir/src.bin", std::string(512, 'z'));
  MakeDirs("/QV/target");
  EXPECT_TRUE(CFileUtils::RecursiveCopy("/QV/dir/src.bin", "/QV/target"));
  EXPECT_EQ(List("/QV/target"), std::vector<std::string>{"src.bin"});
  EXPECT_EQ(ReadFile("/QV/target/src.bin"), "z");
}

TEST_F(CFileUtilsTest, RecursiveCopyOverwritesAnExistingFile) {
  WriteFile("/QV/src.bin", std::string(512, 'n'));
  WriteFile("/QV/dst.bin", "old content");
  EXPECT_TRUE(CFileUtils::RecursiveCopy("/QV/src.bin", "/QV/dst.bin"));
  EXPECT_EQ(ReadFile("/QV/dst.bin"), "n");
}
