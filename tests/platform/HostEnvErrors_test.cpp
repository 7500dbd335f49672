// The host environment reports what the operating system refused, so that
// callers can tell a missing file from a full or read-only one.
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
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
  std::unique_ptr<vireline::RandomRWFile> file;
  ASSERT_TRUE(host->NewRandomRWFile("/dev/full", &file).ok());
  EXPECT_EQ(file->AppendAtEnd("abc", 3).error(), ENOSPC);
}

TEST_F(HostEnvErrorsTest, BufferedBytesForAFullDeviceFailAtTheLatestOnSync) {
  std::unique_ptr<vireline::WritableFile> file;
  ASSERT_TRUE(host->NewWritableFile("/dev/full", &file).ok());
  vireline::Result appended = file->Append("pending", 7);
  vireline::Result synced = file->Sync();
  EXPECT_TRUE(appended.error() == ENOSPC || synced.error() == ENOSPC);
}

TEST_F(HostEnvErrorsTest, ErasingADeviceThatIsNoFlashPartitionFails) {
  std::unique_ptr<vireline::RandomRWFile> file;
  ASSERT_TRUE(host->NewRandomRWFile("/dev/null", &file).ok());
  EXPECT_FALSE(file->Erase(0, 4).ok());  // the erase request is not understood
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
