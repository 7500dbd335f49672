// Symbolic links inside a device image resolve as they would on the device,
// with the image's folder as "/": neither a link nor ".." ever leads the
// library to a host file outside the image.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <vireline/BaseUtils.h>
#include <vireline/CMfgData.h>
#include <vireline/Platform.h>

#include "DeviceRootTest.h"
#include "OutsideFolder.h"
#include "platform/Env.h"

namespace fs = std::filesystem;

namespace {

const char kHostBytes[] = "host file: must never be read or written";

vireline::Env* env() { return vireline::Env::Current(); }

}  // namespace

class DeviceRootLinksTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    mOutside = mFolder.path();
    mFolder.Write("host.txt", kHostBytes);
  }

  // The host file outside the image.
  std::string OutsideFile() const { return mOutside + "/host.txt"; }

  // Makes device path `path` a symbolic link to `target`.
  void Link(const std::string& target, const std::string& path) const {
    MakeDirs(fs::path(path).parent_path().string());
    ASSERT_EQ(::symlink(target.c_str(), Host(path).c_str()), 0) << path;
  }

  // True when the folder outside holds its one file, unchanged.
  bool OutsideUntouched() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(mOutside)) names.push_back(entry.path().filename());
    return names == std::vector<std::string>{"host.txt"} && OutsideFolder::Content(OutsideFile()) == kHostBytes;
  }

  // The content of device file `path` read through the library, or "error N".
  static std::string Read(const std::string& path) {
    FILE* stream = nullptr;
    vireline::Result result = env()->OpenStream(path, "rb", &stream);
    if (!result.ok()) return "error " + std::to_string(result.error());
    std::string content;
    char buffer[256];
    for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, stream)) > 0;) content.append(buffer, n);
    env()->CloseStream(stream);
    return content;
  }

  // Writes `content` to device file `path` through the library: the open's error, 0 when written.
  static int Write(const std::string& path, const std::string& content) {
    FILE* stream = nullptr;
    vireline::Result result = env()->OpenStream(path, "wb", &stream);
    if (!result.ok()) return result.error();
    std::fwrite(content.data(), 1, content.size(), stream);
    return env()->CloseStream(stream).error();
  }

  static std::string Error(int error) { return "error " + std::to_string(error); }

  // As Read, through the sequential file the key=value reader uses.
  static std::string ReadSequential(const std::string& path) {
    std::unique_ptr<vireline::SequentialFile> file;
    vireline::Result result = env()->NewSequentialFile(path, &file);
    if (!result.ok()) return Error(result.error());
    std::string content;
    return vireline::ReadToString(file.get(), 1 << 20, &content).ok() ? content : Error(EIO);
  }

  OutsideFolder mFolder;
  std::string mOutside;  // the host folder beside the image
};

TEST_F(DeviceRootLinksTest, AnAbsoluteLinkTargetIsTakenFromTheRoot) {
  WriteFile("/etc/real.txt", "image");
  Link("/etc/real.txt", "/QV/link.txt");
  EXPECT_EQ(Read("/QV/link.txt"), "image");
}

TEST_F(DeviceRootLinksTest, AnAbsoluteLinkToAHostFileNamesTheImagesFileOfThatPath) {
  Link(OutsideFile(), "/dev/mtd3");
  EXPECT_EQ(Read("/dev/mtd3"), Error(ENOENT));
  WriteFile(OutsideFile(), "the image's own");  // the same path, inside the image
  EXPECT_EQ(Read("/dev/mtd3"), "the image's own");
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, ARelativeLinkClimbingWithDotDotStaysInTheRoot) {
  Link("../../../../../../../../../../.." + OutsideFile(), "/QV/Base/link");
  EXPECT_EQ(Read("/QV/Base/link"), Error(ENOENT));
  WriteFile(OutsideFile(), "inside");
  EXPECT_EQ(Read("/QV/Base/link"), "inside");
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, DotDotAfterALinkLeavesTheLinksTarget) {
  MakeDirs("/a/b");
  WriteFile("/a/x", "beside the target");
  WriteFile("/x", "at the top");
  Link("/a/b", "/l");
  EXPECT_EQ(Read("/l/../x"), "beside the target");
}

TEST_F(DeviceRootLinksTest, ALinkChainIsFollowed) {
  WriteFile("/QV/end.txt", "end");
  Link("/QV/second", "/QV/first");
  Link("../QV/./third", "/QV/second");
  Link("end.txt", "/QV/third");
  EXPECT_EQ(Read("/QV/first"), "end");
}

TEST_F(DeviceRootLinksTest, FortyLinksAreFollowedAndOneMoreIsALoop) {
  WriteFile("/file", "reached");
  for (int i = 0; i <= 40; ++i) Link(i == 40 ? "file" : "l" + std::to_string(i + 1), "/l" + std::to_string(i));
  EXPECT_EQ(Read("/l1"), "reached");
  EXPECT_EQ(Read("/l0"), Error(ELOOP));
}

TEST_F(DeviceRootLinksTest, ALinkLoopIsAnErrorNotAHang) {
  Link("/QV/b", "/QV/a");
  Link("a", "/QV/b");
  Link("self", "/QV/self");
  vireline::FileInfo info;
  EXPECT_EQ(env()->Stat("/QV/a", &info).error(), ELOOP);
  EXPECT_EQ(Write("/QV/a", "x"), ELOOP);
  EXPECT_EQ(Read("/QV/self/file"), Error(ELOOP));
}

TEST_F(DeviceRootLinksTest, ALinkToAFolderOutsideIsTakenFromTheRoot) {
  Link(mOutside, "/QV/Bulk");
  EXPECT_EQ(Read("/QV/Bulk/host.txt"), Error(ENOENT));
  EXPECT_EQ(Write("/QV/Bulk/settings.cfg", "x"), ENOENT);
  std::vector<std::string> names;
  EXPECT_EQ(env()->ListDir("/QV/Bulk", &names).error(), ENOENT);
  MakeDirs(mOutside);  // the image's folder of that path
  EXPECT_EQ(Write("/QV/Bulk/settings.cfg", "x"), 0);
  EXPECT_EQ(ReadFile(mOutside + "/settings.cfg"), "x");
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, OpeningForReadingNeverReadsAHostFile) {
  Link(OutsideFile(), "/QV/Bulk/settings.cfg");
  EXPECT_EQ(Read("/QV/Bulk/settings.cfg"), Error(ENOENT));
  EXPECT_FALSE(env()->OpensForReading("/QV/Bulk/settings.cfg"));
}

TEST_F(DeviceRootLinksTest, ASequentialReadFollowsLinksInsideTheImageOnly) {
  WriteFile("/etc/real.txt", "image");
  Link("/etc/real.txt", "/QV/link.txt");
  Link("/etc", "/QV/folder");
  Link(OutsideFile(), "/QV/host.txt");
  EXPECT_EQ(ReadSequential("/etc/real.txt"), "image");
  EXPECT_EQ(ReadSequential("/QV/link.txt"), "image");
  EXPECT_EQ(ReadSequential("/QV/folder/real.txt"), "image");
  EXPECT_EQ(ReadSequential("/QV/host.txt"), Error(ENOENT));
  EXPECT_EQ(ReadSequential("/QV/link.txt/"), Error(ENOTDIR));
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, OpeningForWritingWritesInsideTheImage) {
  Link(OutsideFile(), "/QV/out.txt");
  EXPECT_EQ(Write("/QV/out.txt", "new"), ENOENT);  // the image has no such folder
  MakeDirs(mOutside);
  EXPECT_EQ(Write("/QV/out.txt", "new"), 0);
  EXPECT_EQ(ReadFile(OutsideFile()), "new");
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, AnAtomicReplaceReplacesTheLinkNotTheHostFile) {
  Link(OutsideFile(), "/QV/settings.cfg");
  FILE* stream = fopenAtomic("/QV/settings.cfg", "w");
  ASSERT_NE(stream, nullptr);
  std::fputs("A=1\n", stream);
  ASSERT_EQ(fcloseAtomic(stream), 0);
  EXPECT_FALSE(fs::is_symlink(Host("/QV/settings.cfg")));
  EXPECT_EQ(ReadFile("/QV/settings.cfg"), "A=1\n");
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, AnAppendNeverReachesAHostFile) {
  Link(OutsideFile(), "/QV/play.log");
  EXPECT_EQ(env()->AppendToFile("/QV/play.log", "rec", 3).error(), ENOENT);
  WriteFile(OutsideFile(), "log:");
  EXPECT_TRUE(env()->AppendToFile("/QV/play.log", "rec", 3).ok());
  EXPECT_EQ(ReadFile(OutsideFile()), "log:rec");
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, StatDescribesTheImagesFileAndLinkStatTheLinkItself) {
  Link(OutsideFile(), "/QV/x");
  vireline::FileInfo info;
  EXPECT_EQ(env()->Stat("/QV/x", &info).error(), ENOENT);
  ASSERT_TRUE(env()->LinkStat("/QV/x", &info).ok());
  EXPECT_EQ(info.type, vireline::FileType::kSymbolicLink);
  WriteFile(OutsideFile(), "abc");
  ASSERT_TRUE(env()->Stat("/QV/x", &info).ok());
  EXPECT_EQ(info.size, 3u);
}

TEST_F(DeviceRootLinksTest, ListingAFolderLinkListsTheImagesFolder) {
  Link(mOutside, "/QV/dir");
  WriteFile(mOutside + "/inner", "1");
  std::vector<std::string> names;
  ASSERT_TRUE(env()->ListDir("/QV/dir", &names).ok());
  EXPECT_EQ(names, std::vector<std::string>{"inner"});
  std::vector<vireline::DirEntry> entries;
  ASSERT_TRUE(env()->ListDirEntries("/QV/dir/", &entries).ok());
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].name, "inner");
}

TEST_F(DeviceRootLinksTest, MakingAFolderBelowAFolderLinkStaysInside) {
  Link(mOutside, "/QV/dir");
  EXPECT_EQ(env()->MakeDir("/QV/dir/new", 0755).error(), ENOENT);
  EXPECT_EQ(env()->ChangeMode("/QV/dir/host.txt", 0).error(), ENOENT);
  MakeDirs(mOutside);
  EXPECT_TRUE(env()->MakeDir("/QV/dir/new", 0755).ok());
  EXPECT_TRUE(fs::is_directory(Host(mOutside + "/new")));
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, RemovingALinkRemovesTheLinkNotItsTarget) {
  Link(OutsideFile(), "/QV/x");
  Link(mOutside, "/QV/dir");
  EXPECT_EQ(env()->RemoveFile("/QV/dir/host.txt").error(), ENOENT);
  EXPECT_EQ(env()->RemoveDir("/QV/dir/").error(), ENOENT);
  EXPECT_TRUE(env()->RemoveFile("/QV/x").ok());
  EXPECT_FALSE(Exists("/QV/x"));
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, RenamingMovesTheLinkItselfAndNeverAHostFile) {
  Link(OutsideFile(), "/QV/x");
  Link(mOutside, "/QV/dir");
  EXPECT_EQ(env()->Rename("/QV/dir/host.txt", "/QV/stolen").error(), ENOENT);
  WriteFile("/QV/mine", "mine");
  EXPECT_EQ(env()->Rename("/QV/mine", "/QV/dir/host.txt").error(), ENOENT);
  ASSERT_TRUE(env()->Rename("/QV/x", "/QV/y").ok());
  EXPECT_TRUE(fs::is_symlink(Host("/QV/y")));
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, TheChecksumWalkReadsTheImagesFiles) {
  WriteFile("/QV/Pack/a.txt", "a");
  Link(OutsideFile(), "/QV/Pack/b.txt");
  WriteFile(OutsideFile(), "b");
  uLong crc = crc32(0L, Z_NULL, 0);
  crc = crc32(crc, reinterpret_cast<const Bytef*>("a"), 1);
  crc = crc32(crc, reinterpret_cast<const Bytef*>("b"), 1);
  uLong reversed = crc32(crc32(0L, Z_NULL, 0), reinterpret_cast<const Bytef*>("ba"), 2);
  U32 value = BaseUtils::Instance()->CalculateChecksum("/QV/Pack", BaseUtils::kSelectAll);
  EXPECT_TRUE(value == crc || value == reversed) << value;
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, ACopyReadsAndWritesOnlyTheImage) {
  Link(OutsideFile(), "/QV/Art/star.png");
  Link(mOutside, "/QV/Cache");
  EXPECT_TRUE(BaseUtils::Instance()->CopyPNGFile("/QV/Art/star.png", "/QV/Cache/star.png"));
  EXPECT_FALSE(fs::exists(mOutside + "/star.png"));
  WriteFile(OutsideFile(), "png");
  EXPECT_TRUE(BaseUtils::Instance()->CopyPNGFile("/QV/Art/star.png", "/QV/Art/copy.png"));
  EXPECT_EQ(ReadFile("/QV/Art/copy.png"), "png");
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, AManufacturingPartitionLinkNeverReachesAHostFile) {
  std::string record(4096, '\x5A');
  std::ofstream(OutsideFile(), std::ios::binary | std::ios::trunc) << record;
  Link(OutsideFile(), "/dev/mtd3");
  CPartition partition("/dev/mtd3");
  unsigned char buffer[4096] = {};
  EXPECT_EQ(partition.ReadAll(buffer), kMfgReadFailed);
  EXPECT_EQ(partition.WriteAll(buffer), kMfgWriteFailed);
  EXPECT_EQ(OutsideFolder::Content(OutsideFile()), record);
  WriteFile(OutsideFile(), std::string(4096, '\x11'));  // the image's own file of that path
  EXPECT_EQ(partition.WriteAll(buffer), kMfgSuccess);
  EXPECT_EQ(ReadFile(OutsideFile()), std::string(4096, '\0'));
  EXPECT_EQ(OutsideFolder::Content(OutsideFile()), record);
}

TEST_F(DeviceRootLinksTest, ACommandLinkedToAHostProgramNeverRunsIt) {
  std::string marker = mOutside + "/ran";
  std::string script = mOutside + "/mode.sh";
  std::ofstream(script) << "#!/bin/sh\ntouch '" << marker << "'\n";
  fs::permissions(script, fs::perms::owner_all);
  Link(script, "/usr/bin/mode.sh");
  Link("/usr/bin/loop.sh", "/usr/bin/loop.sh");
  int status = 0;
  ASSERT_TRUE(env()->RunCommand("/usr/bin/mode.sh 2", &status).ok());
  EXPECT_EQ(WEXITSTATUS(status), 127);
  ASSERT_TRUE(env()->RunCommand("/usr/bin/loop.sh 2", &status).ok());
  EXPECT_EQ(WEXITSTATUS(status), 127);
  EXPECT_FALSE(fs::exists(marker));
}

// On a device (root "/") paths are host paths and links behave as the kernel makes them.
TEST_F(DeviceRootLinksTest, OnTheRealRootLinksAreFollowedAsOnADevice) {
  vireline::SetDeviceRoot("");
  std::string relative = "../" + fs::path(mOutside).filename().string() + "/host.txt";
  ASSERT_EQ(::symlink(OutsideFile().c_str(), (mOutside + "/absolute").c_str()), 0);
  ASSERT_EQ(::symlink(relative.c_str(), (mOutside + "/relative").c_str()), 0);
  EXPECT_EQ(Read(mOutside + "/absolute"), kHostBytes);
  EXPECT_EQ(Read(mOutside + "/relative"), kHostBytes);
  EXPECT_EQ(Write(mOutside + "/absolute", "written"), 0);
  EXPECT_EQ(OutsideFolder::Content(OutsideFile()), "written");
}

TEST_F(DeviceRootLinksTest, ProbesOfPathsWithDotsAndRepeatedSlashesAnswerForTheImage) {
  WriteFile("/QV/a.txt", "a");
  MakeDirs("/QV/sub");
  Link(OutsideFile(), "/QV/link");
  EXPECT_TRUE(env()->OpensForReading("/QV//a.txt"));
  EXPECT_TRUE(env()->OpensForReading("/QV/./a.txt"));
  EXPECT_TRUE(env()->OpensForReading("/QV/sub/../a.txt"));
  EXPECT_FALSE(env()->OpensForReading("/QV/./gone.txt"));
  EXPECT_FALSE(env()->OpensForReading("/QV/./link"));
  EXPECT_FALSE(env()->OpensForReading("/QV/sub/../link"));
  EXPECT_TRUE(OutsideUntouched());
}

TEST_F(DeviceRootLinksTest, AVeryLongPathIsProbedAndAppendedToInsideTheImage) {
  std::string folder;
  for (int i = 0; i < 6; ++i) folder += "/" + std::string(200, static_cast<char>('a' + i));
  std::string file = folder + "/log.bin";
  WriteFile(file, "x");
  Link(OutsideFile(), folder + "/link");
  EXPECT_TRUE(env()->OpensForReading(file));
  EXPECT_FALSE(env()->OpensForReading(folder + "/link"));
  EXPECT_TRUE(env()->AppendToFile(file, "yz", 2).ok());
  EXPECT_FALSE(env()->AppendToFile(folder + "/link", "yz", 2).ok());
  EXPECT_EQ(Read(file), "xyz");
  EXPECT_TRUE(OutsideUntouched());
}
