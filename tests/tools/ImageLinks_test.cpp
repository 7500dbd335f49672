// A device image whose links point at host files: the inspector reads and
// writes the image only, as a device would see it.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <string>

#include "OutsideFolder.h"
#include "tools/SampleImageTest.h"

namespace fs = std::filesystem;

namespace {

bool Contains(const std::string& text, const std::string& what) { return text.find(what) != std::string::npos; }

}  // namespace

class ImageLinksTest : public SampleImageTest {
 protected:
  // Writes host file `name` in the folder outside the image; its path.
  std::string Outside(const std::string& name, const std::string& content) const {
    return mFolder.Write(name, content);
  }

  // Replaces device path `path` by a symbolic link to `target`.
  void Link(const std::string& target, const std::string& path) const {
    fs::remove(Host(path));
    ASSERT_EQ(::symlink(target.c_str(), Host(path).c_str()), 0) << path;
  }

  OutsideFolder mFolder;
  const std::string& mOutside = mFolder.path();  // the host folder beside the image
};

TEST_F(ImageLinksTest, KvOfALinkToAHostFileReadsNothingOutside) {
  Link(Outside("secret.cfg", "Secret=host\n"), "/QV/Bulk/settings.cfg");
  InspectorRun linked = Run("kv /QV/Bulk/settings.cfg");
  InspectorRun missing = Run("kv /QV/Bulk/none.cfg");
  EXPECT_FALSE(Contains(linked.out + linked.err, "Secret"));
  EXPECT_EQ(linked.exitStatus, missing.exitStatus);
  EXPECT_NE(linked.exitStatus, 0);
}

TEST_F(ImageLinksTest, KvFollowsALinkInsideTheImage) {
  Link("../Base/../Bulk/ProgramFiles/MathMountain/meta.inf", "/QV/Bulk/settings.cfg");
  InspectorRun run = Run("kv /QV/Bulk/settings.cfg PackageID");
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_TRUE(Contains(run.out, "APP-MATH-0207")) << run.out;
}

TEST_F(ImageLinksTest, MfgSetNeverRewritesAHostFileLinkedAsAPartition) {
  std::string record = ReadFile("/dev/mtd3");
  std::string host = Outside("mtd3", record);
  Link(host, "/dev/mtd3");
  Run("mfg set locale fr-fr --mfg-mode --trust-image");
  EXPECT_EQ(OutsideFolder::Content(host), record);
}

TEST_F(ImageLinksTest, MfgSetNeverWritesThroughAPartitionFolderLink) {
  std::string copy0 = ReadFile("/dev/mtd3");
  std::string copy1 = ReadFile("/dev/mtd4");
  std::string host0 = Outside("mtd3", copy0);
  std::string host1 = Outside("mtd4", copy1);
  fs::remove_all(Host("/dev"));
  Link(mOutside, "/dev");
  InspectorRun run = Run("mfg set locale fr-fr --mfg-mode --trust-image");
  EXPECT_NE(run.exitStatus, 0);
  EXPECT_EQ(OutsideFolder::Content(host0), copy0);
  EXPECT_EQ(OutsideFolder::Content(host1), copy1);
}

TEST_F(ImageLinksTest, MfgModeNeverRunsAHostScriptLinkedIntoTheImage) {
  std::string marker = mOutside + "/ran";
  std::string script = Outside("mfgmode.sh", "#!/bin/sh\ntouch '" + marker + "'\nexit 0\n");
  fs::permissions(script, fs::perms::owner_all);
  Link(script, "/usr/bin/mfgmode.sh");
  Run("mfg set locale fr-fr --mfg-mode --trust-image");
  EXPECT_FALSE(fs::exists(marker));
}

TEST_F(ImageLinksTest, MfgSetWritesTheImagesPartitionBehindALinkInside) {
  fs::rename(Host("/dev/mtd3"), Host("/dev/flash-copy0"));
  Link("flash-copy0", "/dev/mtd3");
  InspectorRun run = Run("mfg set locale fr-fr --mfg-mode --trust-image");
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(ReadFile("/dev/flash-copy0").substr(104, 8), std::string("fr-fr\0\0\0", 8));
}

TEST_F(ImageLinksTest, ChecksumOfALinkToAHostFileReadsNothingOutside) {
  std::string host = Outside("check.txt", "123456789");
  Link(host, "/QV/Bulk/check.txt");
  InspectorRun run = Run("checksum /QV/Bulk/check.txt");
  EXPECT_FALSE(Contains(run.out, "0xCBF43926"));
  EXPECT_EQ(run.exitStatus, Run("checksum /QV/Bulk/nothing.txt").exitStatus);
}

TEST_F(ImageLinksTest, ChecksumWriteNeverWritesAHostFile) {
  WriteFile("/QV/Bulk/check.txt", "123456789");
  std::string host = Outside("check.crc", "keep");
  Link(host, "/QV/Bulk/check.crc");
  Run("checksum /QV/Bulk/check.txt --write /QV/Bulk/check.crc");
  EXPECT_EQ(OutsideFolder::Content(host), "keep");
}
