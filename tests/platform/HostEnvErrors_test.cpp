// The host environment reports what the operating system refused, so that
// callers can tell a missing file from a full or read-only one.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "DeviceRootTest.h"
#include "platform/Env.h"

using vireline::Env;

class HostEnvErrorsTest : public DeviceRootTest {
 protected:
  Env* host = Env::Host();
};

TEST_F(HostEnvErrorsTest, AppendingToAMissingFileFails) {
  EXPECT_EQ(host->AppendToFile(Host("/missing.log"), "x", 1).error(), ENOENT);
  EXPECT_FALSE(Exists("/missing.log"));
}

TEST_F(HostEnvErrorsTest, AppendingToAFullDeviceFails) {
  FILE* stream = nullptr;
  ASSERT_TRUE(host->OpenStream("/dev/full", "wb", &stream).ok());
  EXPECT_EQ(host->AppendToStream(stream, "abc", 3).error(), ENOSPC);
  host->CloseStream(stream);
}

TEST_F(HostEnvErrorsTest, SyncingAStreamOnAFullDeviceFails) {
  FILE* stream = nullptr;
  ASSERT_TRUE(host->OpenStream("/dev/full", "wb", &stream).ok());
  std::fputs("pending", stream);
  EXPECT_EQ(host->SyncStream(stream).error(), ENOSPC);
  host->CloseStream(stream);
}

TEST_F(HostEnvErrorsTest, ErasingAFileOpenForReadingFails) {
  WriteFile("/flash.bin", "data");
  FILE* stream = nullptr;
  ASSERT_TRUE(host->OpenStream(Host("/flash.bin"), "rb", &stream).ok());
  EXPECT_EQ(host->EraseFlash(stream, 0, 4).error(), EBADF);
  host->CloseStream(stream);
  EXPECT_EQ(ReadFile("/flash.bin"), "data");
}

TEST_F(HostEnvErrorsTest, ErasingADeviceThatIsNoFlashPartitionFails) {
  FILE* stream = nullptr;
  ASSERT_TRUE(host->OpenStream("/dev/null", "rb+", &stream).ok());
  EXPECT_FALSE(host->EraseFlash(stream, 0, 4).ok());  // the erase request is not understood
  host->CloseStream(stream);
}

TEST_F(HostEnvErrorsTest, MissingFoldersCannotBeSyncedOrMeasured) {
  EXPECT_EQ(host->SyncDir(Host("/missing")).error(), ENOENT);
  vireline::FsInfo info;
  EXPECT_EQ(host->StatFs(Host("/missing"), &info).error(), ENOENT);
}

TEST_F(HostEnvErrorsTest, AFolderListedWithATrailingSlashGivesTheSameEntries) {
  WriteFile("/a/file", "x");
  MakeDirs("/a/sub");
  std::vector<vireline::DirEntry> entries;
  ASSERT_TRUE(host->ListDirEntries(Host("/a") + "/", &entries).ok());
  ASSERT_EQ(entries.size(), 2u);
  for (const vireline::DirEntry& entry : entries) {
    EXPECT_EQ(entry.type, entry.name == "sub" ? vireline::FileType::kDirectory : vireline::FileType::kRegular);
  }
}

TEST_F(HostEnvErrorsTest, AnUnsetVariableIsEmpty) {
  EXPECT_EQ(host->GetEnvironment("VIRELINE_NO_SUCH_VARIABLE_SET"), "");
}
