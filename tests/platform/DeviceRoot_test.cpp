#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

#include <vireline/Platform.h>

#include "DeviceRootTest.h"
#include "platform/DeviceRoot.h"
#include "platform/Env.h"

using vireline::MapDevicePath;
using vireline::NormalizeDevicePath;

TEST(NormalizeDevicePath, KeepsPlainAbsolutePaths) {
  EXPECT_EQ(NormalizeDevicePath("/QV/Base/settings.cfg"), "/QV/Base/settings.cfg");
}

TEST(NormalizeDevicePath, TakesRelativePathsFromTheDeviceRoot) {
  EXPECT_EQ(NormalizeDevicePath("QV/Base"), "/QV/Base");
  EXPECT_EQ(NormalizeDevicePath("a:/Kastrel/System"), "/a:/Kastrel/System");
}

TEST(NormalizeDevicePath, DotDotNeverClimbsAboveTheRoot) {
  EXPECT_EQ(NormalizeDevicePath("/QV/../../../etc/passwd"), "/etc/passwd");
  EXPECT_EQ(NormalizeDevicePath("/.."), "/");
  EXPECT_EQ(NormalizeDevicePath("/QV/Base/../Bulk"), "/QV/Bulk");
}

TEST(NormalizeDevicePath, FoldsRepeatedSlashesAndDots) {
  EXPECT_EQ(NormalizeDevicePath("//QV///./Base//"), "/QV/Base/");
}

TEST(NormalizeDevicePath, KeepsATrailingSlash) {
  EXPECT_EQ(NormalizeDevicePath("/QV/Base/"), "/QV/Base/");
}

TEST(NormalizeDevicePath, TheRootItselfStaysTheRoot) {
  EXPECT_EQ(NormalizeDevicePath("/"), "/");
  EXPECT_EQ(NormalizeDevicePath("."), "/");
}

TEST(NormalizeDevicePath, EmptyPathStaysEmpty) { EXPECT_EQ(NormalizeDevicePath(""), ""); }

TEST(IsNormalizedDevicePath, PlainAbsolutePathsAndATrailingSlashAreNormalized) {
  EXPECT_TRUE(vireline::IsNormalizedDevicePath("/"));
  EXPECT_TRUE(vireline::IsNormalizedDevicePath("/QV/Base/settings.cfg"));
  EXPECT_TRUE(vireline::IsNormalizedDevicePath("/QV/Base/"));
  EXPECT_TRUE(vireline::IsNormalizedDevicePath("/QV/.hidden/a..b/..."));
}

TEST(IsNormalizedDevicePath, EmptyDotAndDotDotComponentsAreNot) {
  for (const char* path : {"", "QV/Base", "//QV", "/QV//Base", "/./QV", "/QV/.", "/QV/./Base", "/..", "/QV/..",
                           "/QV/../Base"}) {
    EXPECT_FALSE(vireline::IsNormalizedDevicePath(path)) << path;
  }
}

TEST(MapDevicePath, RealRootUsesPathsUnchanged) {
  vireline::SetDeviceRoot("");
  EXPECT_EQ(MapDevicePath("/proc/mtd"), "/proc/mtd");
  EXPECT_EQ(MapDevicePath("relative/file"), "relative/file");
  EXPECT_EQ(vireline::GetDeviceRoot(), "/");
}

TEST(MapDevicePath, HostFolderPrefixesNormalizedPaths) {
  vireline::SetDeviceRoot("/tmp/image/");
  EXPECT_EQ(vireline::GetDeviceRoot(), "/tmp/image");
  EXPECT_EQ(MapDevicePath("/QV/Base/settings.cfg"), "/tmp/image/QV/Base/settings.cfg");
  EXPECT_EQ(MapDevicePath("/QV/../../x"), "/tmp/image/x");
  EXPECT_EQ(MapDevicePath("/"), "/tmp/image/");
  EXPECT_EQ(MapDevicePath(""), "");
}

TEST(MapDevicePath, RootComesFromTheEnvironmentAtFirstAccess) {
  // Each test runs in its own process, so the root is still unread here.
  setenv("VIRELINE_ROOT", "/srv/device", 1);
  EXPECT_EQ(MapDevicePath("/etc/version"), "/srv/device/etc/version");
}

class DeviceRootFiles : public DeviceRootTest {};

TEST_F(DeviceRootFiles, FilesAreCreatedBelowTheRoot) {
  FILE* stream = nullptr;
  vireline::Env* env = vireline::Env::Current();
  ASSERT_TRUE(env->MakeDir("/QV", 0755).ok());
  ASSERT_TRUE(env->OpenStream("/QV/hello.txt", "w", &stream).ok());
  std::fputs("hi", stream);
  ASSERT_TRUE(env->CloseStream(stream).ok());
  EXPECT_EQ(ReadFile("/QV/hello.txt"), "hi");
}

TEST_F(DeviceRootFiles, ListingGivesNamesWithoutDotEntries) {
  WriteFile("/d/a", "1");
  WriteFile("/d/b", "2");
  std::vector<std::string> names;
  ASSERT_TRUE(vireline::Env::Current()->ListDir("/d", &names).ok());
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"a", "b"}));
}

TEST_F(DeviceRootFiles, MissingFileReportsItsErrorNumber) {
  vireline::FileInfo info;
  vireline::Result result = vireline::Env::Current()->Stat("/no/such/file", &info);
  EXPECT_FALSE(result.ok());
  EXPECT_EQ(result.error(), ENOENT);
  EXPECT_EQ(result.ToString(), "No such file or directory");
}

TEST_F(DeviceRootFiles, CommandProgramIsTakenFromTheDeviceImage) {
  WriteFile("/usr/bin/answer.sh", "#!/bin/sh\nexit $1\n");
  chmod(Host("/usr/bin/answer.sh").c_str(), 0755);
  int status = -1;
  ASSERT_TRUE(vireline::Env::Current()->RunCommand("/usr/bin/answer.sh 3", &status).ok());
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 3);
}

TEST_F(DeviceRootFiles, EraseOfAPlainFileFillsItWithErasedBytes) {
  WriteFile("/dev/mtd1", std::string(4096, '\0'));
  vireline::Env* env = vireline::Env::Current();
  std::unique_ptr<vireline::RandomRWFile> file;
  ASSERT_TRUE(env->NewRandomRWFile("/dev/mtd1", &file).ok());
  ASSERT_TRUE(file->Erase(0, 4096).ok());
  ASSERT_TRUE(file->Close().ok());
  EXPECT_EQ(ReadFile("/dev/mtd1"), std::string(4096, '\xFF'));
}

TEST_F(DeviceRootFiles, EraseCoversOnlyTheRequestedRange) {
  WriteFile("/dev/mtd2", std::string(16, 'x'));
  vireline::Env* env = vireline::Env::Current();
  std::unique_ptr<vireline::RandomRWFile> file;
  ASSERT_TRUE(env->NewRandomRWFile("/dev/mtd2", &file).ok());
  ASSERT_TRUE(file->Erase(4, 8).ok());
  file.reset();
  EXPECT_EQ(ReadFile("/dev/mtd2"), "xxxx" + std::string(8, '\xFF') + "xxxx");
}

TEST_F(DeviceRootFiles, LocalSocketPathIsMappedIntoTheRoot) {
  vireline::Env* env = vireline::Env::Current();
  int socket = -1;
  ASSERT_TRUE(env->CreateLocalSocket(&socket).ok());
  vireline::Result result = env->ConnectLocalSocket(socket, "/var/run/qvd-control");
  EXPECT_FALSE(result.ok());  // nobody listens in a fresh device image
  EXPECT_EQ(result.error(), ENOENT);
  EXPECT_TRUE(env->CloseSocket(socket).ok());
}

TEST_F(DeviceRootFiles, FileSystemSpaceIsReported) {
  vireline::FsInfo info;
  ASSERT_TRUE(vireline::Env::Current()->StatFs("/", &info).ok());
  EXPECT_GT(info.blockSize, 0u);
}

TEST(NormalizeDevicePath, CollapsesEmptyAndDotComponentsAnywhere) {
  EXPECT_EQ(NormalizeDevicePath("/QV//Base/./x"), "/QV/Base/x");
  EXPECT_EQ(NormalizeDevicePath("/QV/Base/."), "/QV/Base");
  EXPECT_EQ(NormalizeDevicePath("/QV/Base/.."), "/QV");
  EXPECT_EQ(NormalizeDevicePath("/QV/Base/"), "/QV/Base/");
  EXPECT_EQ(NormalizeDevicePath("/QV/.hidden/..x"), "/QV/.hidden/..x");
}

TEST(ResultText, SuccessAndUnknownErrorsHaveTheirOwnTexts) {
  EXPECT_EQ(vireline::Result::Ok().ToString(), "OK");
  EXPECT_EQ(vireline::Result::Error(-5).ToString(), "unknown error");
  EXPECT_EQ(vireline::Result::Error(ENOENT).ToString(), "No such file or directory");
}
