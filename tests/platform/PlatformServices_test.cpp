#include <gtest/gtest.h>

#include <algorithm>

#include <vireline/Platform.h>

#include "DeviceRootTest.h"

class PlatformKernelTest : public DeviceRootTest {};

TEST_F(PlatformKernelTest, ElapsedTimeNeverGoesBack) {
  uint64_t first = PlatformKernel::GetElapsedTimeAsUSecs();
  uint64_t second = PlatformKernel::GetElapsedTimeAsUSecs();
  EXPECT_LE(first, second);
}

TEST_F(PlatformKernelTest, IsDirectoryTellsFoldersFromFiles) {
  WriteFile("/QV/Base/file", "x");
  EXPECT_TRUE(PlatformKernel::IsDirectory("/QV/Base"));
  EXPECT_FALSE(PlatformKernel::IsDirectory("/QV/Base/file"));
  EXPECT_FALSE(PlatformKernel::IsDirectory("/QV/missing"));
}

TEST_F(PlatformKernelTest, FilesInDirectoryAreFullDevicePaths) {
  WriteFile("/QV/Base/a", "1");
  MakeDirs("/QV/Base/sub");
  std::vector<CPath> paths = PlatformKernel::GetFilesInDirectory("/QV/Base");
  std::vector<std::string> raw;
  for (const CPath& path : paths) raw.push_back(path.raw());
  std::sort(raw.begin(), raw.end());
  EXPECT_EQ(raw, (std::vector<std::string>{"/QV/Base/a", "/QV/Base/sub"}));
}

TEST_F(PlatformKernelTest, TrailingSlashIsNotDoubled) {
  WriteFile("/QV/a", "1");
  std::vector<CPath> paths = PlatformKernel::GetFilesInDirectory("/QV/");
  ASSERT_EQ(paths.size(), 1u);
  EXPECT_EQ(paths[0].raw(), "/QV/a");
}

TEST_F(PlatformKernelTest, MissingFolderListsNothing) {
  EXPECT_TRUE(PlatformKernel::GetFilesInDirectory("/QV/missing").empty());
}

class PlatformIdentityTest : public DeviceRootTest {};

TEST_F(PlatformIdentityTest, ReadsNameIdAndTouchScreen) {
  WriteFile("/etc/vireline/platform.cfg", "Name=Tamsel\nID=0x21\nTouchScreen=1\n");
  EXPECT_EQ(PlatformIdentity::GetPlatformName().raw(), "Tamsel");
  EXPECT_EQ(PlatformIdentity::GetPlatformID(), 0x21);
  EXPECT_TRUE(PlatformIdentity::HasPlatformCapability(kPlatformCapabilityTouchScreen));
}

TEST_F(PlatformIdentityTest, MissingFileIsAnUnknownPlatform) {
  EXPECT_EQ(PlatformIdentity::GetPlatformName().raw(), "");
  EXPECT_EQ(PlatformIdentity::GetPlatformID(), 0);
  EXPECT_FALSE(PlatformIdentity::HasPlatformCapability(kPlatformCapabilityTouchScreen));
}

TEST_F(PlatformIdentityTest, BlanksAroundKeysAndValuesAreIgnored) {
  WriteFile("/etc/vireline/platform.cfg", "  Name = MIRA \r\nID= 17\nTouchScreen=0\n");
  EXPECT_EQ(PlatformIdentity::GetPlatformName().raw(), "MIRA");
  EXPECT_EQ(PlatformIdentity::GetPlatformID(), 17);
  EXPECT_FALSE(PlatformIdentity::HasPlatformCapability(kPlatformCapabilityTouchScreen));
}

TEST_F(PlatformIdentityTest, UnknownCapabilitiesAreAbsent) {
  WriteFile("/etc/vireline/platform.cfg", "TouchScreen=1\n");
  EXPECT_FALSE(PlatformIdentity::HasPlatformCapability(1));
}
