// CRC-32 of files and folder trees, and the 4-byte ".crc" files.
#include <vireline/BaseUtils.h>
#include <vireline/Platform.h>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "DeviceRootTest.h"
#include "platform/Env.h"
#include "platform/FaultInjectionEnv.h"

namespace {

std::string HostContent(const std::string& hostPath) {
  std::ifstream in(hostPath, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

uLong Feed(uLong crc, const std::string& bytes) {
  return crc32(crc, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size()));
}

bool EndsInCrc(const std::string& path) {
  std::string::size_type dot = path.rfind('.');
  return dot != std::string::npos && path.substr(dot) == ".crc";
}

// The names of host folder `folder` in the order readdir gives them. The
// 64-bit calls keep 32-bit builds working on hosts with large inode numbers.
std::vector<std::string> ListingOrder(const std::string& folder) {
  std::vector<std::string> names;
  DIR* dir = opendir(folder.c_str());
  if (dir == nullptr) return names;
  while (dirent64* entry = readdir64(dir)) {
    std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  closedir(dir);
  return names;
}

// zlib's CRC over the files of host folder `folder`, walked by hand in listing
// order; `select` filters the top level as BaseUtils does. Links to folders
// are not entered; ".crc" files do not count.
uLong ExpectedTreeCrc(uLong crc, const std::string& folder, int select) {
  for (const std::string& name : ListingOrder(folder)) {
    std::string path = folder + "/" + name;
    struct stat64 target;
    struct stat64 self;
    if (stat64(path.c_str(), &target) != 0 || lstat64(path.c_str(), &self) != 0) continue;
    bool isDir = S_ISDIR(target.st_mode);
    if ((select == BaseUtils::kSelectFiles && isDir) || (select == BaseUtils::kSelectDirectories && !isDir)) continue;
    if (S_ISDIR(self.st_mode)) {
      crc = ExpectedTreeCrc(crc, path, BaseUtils::kSelectAll);
    } else if (!isDir && !EndsInCrc(path)) {
      crc = Feed(crc, HostContent(path));
    }
  }
  return crc;
}

std::string Bytes(int count, int seed) {
  std::string bytes;
  for (int i = 0; i < count; ++i) bytes += static_cast<char>((i * 31 + seed) & 0xFF);
  return bytes;
}

}  // namespace

class BaseUtilsChecksumTest : public DeviceRootTest {
 protected:
  U32 Checksum(const std::string& path, BaseUtils::tFileSelect select = BaseUtils::kSelectAll) {
    return BaseUtils::Instance()->CalculateChecksum(path, select);
  }

  U32 Expected(const std::string& folder, int select = BaseUtils::kSelectAll) {
    return static_cast<U32>(ExpectedTreeCrc(crc32(0L, Z_NULL, 0), Host(folder), select));
  }

  // A tree with files at three depths, some longer than one read block.
  void WriteTree() {
    WriteFile("/QV/Pack/meta.inf", "PackageID=P-1\n");
    WriteFile("/QV/Pack/big.bin", Bytes(5000, 1));
    WriteFile("/QV/Pack/Art/a.png", Bytes(1024, 2));
    WriteFile("/QV/Pack/Art/b.png", Bytes(1025, 3));
    WriteFile("/QV/Pack/Art/Deep/c.txt", "c");
    WriteFile("/QV/Pack/Audio/d.wav", Bytes(3000, 4));
    MakeDirs("/QV/Pack/Empty");
  }
};

TEST_F(BaseUtilsChecksumTest, ASingleFileGivesZlibsCrc32OfItsBytes) {
  std::string bytes = Bytes(10000, 7);
  WriteFile("/QV/file.bin", bytes);
  EXPECT_EQ(Checksum("/QV/file.bin"), Feed(crc32(0L, Z_NULL, 0), bytes));
  EXPECT_EQ(Checksum("/QV/file.bin", BaseUtils::kSelectDirectories), Feed(crc32(0L, Z_NULL, 0), bytes));
}

TEST_F(BaseUtilsChecksumTest, TheStandardCheckValueOfNineDigits) {
  WriteFile("/QV/check", "123456789");
  EXPECT_EQ(Checksum("/QV/check"), 0xCBF43926u);
}

TEST_F(BaseUtilsChecksumTest, AnEmptyFileGivesZero) {
  WriteFile("/QV/empty.bin", "");
  EXPECT_EQ(Checksum("/QV/empty.bin"), 0u);
}

TEST_F(BaseUtilsChecksumTest, AnEmptyFolderGivesZero) {
  MakeDirs("/QV/Empty");
  EXPECT_EQ(Checksum("/QV/Empty"), 0u);
}

TEST_F(BaseUtilsChecksumTest, AFolderHoldingOnlyACrcFileGivesZero) {
  WriteFile("/QV/Pack/a.crc", "\x01\x02\x03\x04");
  EXPECT_EQ(Checksum("/QV/Pack"), 0u);
}

TEST_F(BaseUtilsChecksumTest, ATreeFeedsOneRegisterInListingOrderDepthFirst) {
  WriteTree();
  U32 value = Checksum("/QV/Pack");
  EXPECT_EQ(value, Expected("/QV/Pack"));
  EXPECT_NE(value, 0u);
}

TEST_F(BaseUtilsChecksumTest, ATrailingSlashNamesTheSameFolder) {
  WriteTree();
  EXPECT_EQ(Checksum("/QV/Pack/"), Checksum("/QV/Pack"));
}

TEST_F(BaseUtilsChecksumTest, SelectingFilesSkipsOnlyTheTopLevelFolders) {
  WriteTree();
  U32 files = Checksum("/QV/Pack", BaseUtils::kSelectFiles);
  EXPECT_EQ(files, Expected("/QV/Pack", BaseUtils::kSelectFiles));
  std::string meta = HostContent(Host("/QV/Pack/meta.inf"));
  std::string big = HostContent(Host("/QV/Pack/big.bin"));
  uLong either = Feed(Feed(crc32(0L, Z_NULL, 0), meta), big);
  uLong other = Feed(Feed(crc32(0L, Z_NULL, 0), big), meta);
  EXPECT_TRUE(files == either || files == other);
}

TEST_F(BaseUtilsChecksumTest, SelectingFoldersSkipsOnlyTheTopLevelFiles) {
  WriteTree();
  U32 folders = Checksum("/QV/Pack", BaseUtils::kSelectDirectories);
  EXPECT_EQ(folders, Expected("/QV/Pack", BaseUtils::kSelectDirectories));
  // Below the top level every file counts, including those beside sub-folders.
  WriteFile("/QV/Pack/Art/e.png", "e");
  EXPECT_NE(Checksum("/QV/Pack", BaseUtils::kSelectDirectories), folders);
  WriteFile("/QV/Pack/top.txt", "top");
  EXPECT_EQ(Checksum("/QV/Pack", BaseUtils::kSelectDirectories), Expected("/QV/Pack", BaseUtils::kSelectDirectories));
}

TEST_F(BaseUtilsChecksumTest, CrcFilesCountNowhereInTheTree) {
  WriteTree();
  U32 before = Checksum("/QV/Pack");
  WriteFile("/QV/Pack/Pack.crc", "abcd");
  WriteFile("/QV/Pack/Art/Deep/inner.crc", "efgh");
  WriteFile("/QV/Pack/Audio/.crc", "ijkl");
  EXPECT_EQ(Checksum("/QV/Pack"), before);
}

TEST_F(BaseUtilsChecksumTest, AChecksumFileGivenItselfGivesZero) {
  WriteFile("/QV/Pack.crc", "abcd");
  EXPECT_EQ(Checksum("/QV/Pack.crc"), 0u);
}

TEST_F(BaseUtilsChecksumTest, OnlyTheTextAfterTheLastDotOfThePathDecides) {
  WriteFile("/QV/old.crc/data", "data");
  WriteFile("/QV/notes.crc.txt", "notes");
  EXPECT_EQ(Checksum("/QV/old.crc/data"), Feed(crc32(0L, Z_NULL, 0), "data"));
  EXPECT_EQ(Checksum("/QV/notes.crc.txt"), Feed(crc32(0L, Z_NULL, 0), "notes"));
  EXPECT_EQ(Checksum("/QV/old.crc"), Feed(crc32(0L, Z_NULL, 0), "data"));
}

TEST_F(BaseUtilsChecksumTest, APathWithoutAnyDotCounts) {
  WriteFile("/QV/Pack/README", "read me");
  EXPECT_EQ(Checksum("/QV/Pack/README"), Feed(crc32(0L, Z_NULL, 0), "read me"));
  EXPECT_EQ(Checksum("/QV/Pack"), Feed(crc32(0L, Z_NULL, 0), "read me"));
}

TEST_F(BaseUtilsChecksumTest, AnUnreadableFileIsSkippedWithALevelThreeMessage) {
  WriteFile("/QV/Pack/one.bin", Bytes(2000, 1));
  WriteFile("/QV/Pack/two.bin", Bytes(2000, 2));
  std::vector<std::string> order = ListingOrder(Host("/QV/Pack"));
  ASSERT_EQ(order.size(), 2u);
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  env.FailAfter(vireline::FaultInjectionEnv::kOpen, 1, EACCES, true);
  CaptureDebugOutput();
  PlatformDebug().SetMasterDebugLevel(3);
  U32 value = Checksum("/QV/Pack");
  EXPECT_EQ(value, Feed(crc32(0L, Z_NULL, 0), HostContent(Host("/QV/Pack/" + order[0]))));
  EXPECT_EQ(DebugOutput(), "CalculateChecksumHelper unable to open file /QV/Pack/" + order[1] + "\n");
}

TEST_F(BaseUtilsChecksumTest, TheUnreadableFileMessageIsHiddenBelowLevelThree) {
  CaptureDebugOutput();
  PlatformDebug().SetMasterDebugLevel(2);
  EXPECT_EQ(Checksum("/QV/missing.bin"), 0u);
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(BaseUtilsChecksumTest, AMissingPathGivesZeroWithTheMessage) {
  CaptureDebugOutput();
  PlatformDebug().SetMasterDebugLevel(3);
  EXPECT_EQ(Checksum("/QV/missing.bin"), 0u);
  EXPECT_EQ(DebugOutput(), "CalculateChecksumHelper unable to open file /QV/missing.bin\n");
}

TEST_F(BaseUtilsChecksumTest, AFailingReadEndsThatFileOnly) {
  WriteFile("/QV/Pack/only.bin", Bytes(4096, 5));
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  env.FailAfter(vireline::FaultInjectionEnv::kRead, 0, EIO);
  EXPECT_EQ(Checksum("/QV/Pack"), 0u);
}

TEST_F(BaseUtilsChecksumTest, ASymbolicLinkLoopEnds) {
  WriteFile("/QV/Pack/a.txt", "a");
  WriteFile("/QV/Pack/Sub/b.txt", "b");
  ASSERT_EQ(symlink("..", Host("/QV/Pack/Sub/up").c_str()), 0);
  ASSERT_EQ(symlink(".", Host("/QV/Pack/self").c_str()), 0);
  U32 value = Checksum("/QV/Pack");
  EXPECT_EQ(value, Expected("/QV/Pack"));
  uLong ab = Feed(Feed(crc32(0L, Z_NULL, 0), "a"), "b");
  uLong ba = Feed(Feed(crc32(0L, Z_NULL, 0), "b"), "a");
  EXPECT_TRUE(value == ab || value == ba);
}

TEST_F(BaseUtilsChecksumTest, ALinkToAFileIsReadThroughTheLink) {
  WriteFile("/QV/target.txt", "linked");
  MakeDirs("/QV/Pack");
  ASSERT_EQ(symlink("/QV/target.txt", Host("/QV/Pack/link").c_str()), 0);
  EXPECT_EQ(Checksum("/QV/Pack"), Feed(crc32(0L, Z_NULL, 0), "linked"));
}

TEST_F(BaseUtilsChecksumTest, WriteChecksumStoresFourLittleEndianBytes) {
  MakeDirs("/QV/Pack");
  EXPECT_TRUE(BaseUtils::Instance()->WriteChecksum("/QV/Pack.crc", 0x12345678u));
  EXPECT_EQ(ReadFile("/QV/Pack.crc"), std::string("\x78\x56\x34\x12", 4));
}

TEST_F(BaseUtilsChecksumTest, WriteChecksumReplacesALongerFile) {
  WriteFile("/QV/Pack.crc", "a much longer old content");
  EXPECT_TRUE(BaseUtils::Instance()->WriteChecksum("/QV/Pack.crc", 0u));
  EXPECT_EQ(ReadFile("/QV/Pack.crc"), std::string(4, '\0'));
}

TEST_F(BaseUtilsChecksumTest, WrittenChecksumsReadBack) {
  WriteTree();
  U32 value = Checksum("/QV/Pack");
  ASSERT_TRUE(BaseUtils::Instance()->WriteChecksum("/QV/Pack/Pack.crc", value));
  EXPECT_EQ(BaseUtils::Instance()->ReadChecksum("/QV/Pack/Pack.crc"), value);
  EXPECT_EQ(Checksum("/QV/Pack"), value);  // the file it was kept in does not count
  for (U32 other : {0u, 1u, 0x80000000u, 0xFFFFFFFFu}) {
    ASSERT_TRUE(BaseUtils::Instance()->WriteChecksum("/QV/other.crc", other));
    EXPECT_EQ(BaseUtils::Instance()->ReadChecksum("/QV/other.crc"), other);
  }
}

TEST_F(BaseUtilsChecksumTest, WriteChecksumIntoAMissingFolderFailsWithATrace) {
  BaseUtils::Instance()->SetupTrace(0, true);
  CaptureDebugOutput();
  EXPECT_FALSE(BaseUtils::Instance()->WriteChecksum("/QV/nofolder/Pack.crc", 1u));
  EXPECT_EQ(DebugOutput(), "BaseUtils::WriteChecksum unable to open file /QV/nofolder/Pack.crc\n");
  EXPECT_FALSE(Exists("/QV/nofolder"));
}

TEST_F(BaseUtilsChecksumTest, WriteChecksumFailsQuietlyWhileTracingIsOff) {
  BaseUtils::Instance()->SetupTrace(0xFFFFFFFFu, false);
  CaptureDebugOutput();
  EXPECT_FALSE(BaseUtils::Instance()->WriteChecksum("/QV/nofolder/Pack.crc", 1u));
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(BaseUtilsChecksumTest, AFailingWriteKeepsTheOldChecksumFile) {
  WriteFile("/QV/Pack.crc", "old!");
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  env.FailAfter(vireline::FaultInjectionEnv::kWrite, 0, ENOSPC);
  EXPECT_FALSE(BaseUtils::Instance()->WriteChecksum("/QV/Pack.crc", 0x01020304u));
  EXPECT_EQ(ReadFile("/QV/Pack.crc"), "old!");
}

TEST_F(BaseUtilsChecksumTest, AFailingSyncKeepsTheOldChecksumFile) {
  WriteFile("/QV/Pack.crc", "old!");
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  env.FailAfter(vireline::FaultInjectionEnv::kSync, 0, EIO);
  EXPECT_FALSE(BaseUtils::Instance()->WriteChecksum("/QV/Pack.crc", 0x01020304u));
  EXPECT_EQ(ReadFile("/QV/Pack.crc"), "old!");
}

TEST_F(BaseUtilsChecksumTest, ReadChecksumOfAMissingFileIsZeroWithATrace) {
  BaseUtils::Instance()->SetupTrace(0, true);
  CaptureDebugOutput();
  EXPECT_EQ(BaseUtils::Instance()->ReadChecksum("/QV/missing.crc"), 0u);
  EXPECT_EQ(DebugOutput(), "BaseUtils::ReadChecksum unable to open file /QV/missing.crc\n");
}

TEST_F(BaseUtilsChecksumTest, AShortChecksumFileLeavesTheMissingBytesZero) {
  WriteFile("/QV/short.crc", std::string("\x01\x02", 2));
  EXPECT_EQ(BaseUtils::Instance()->ReadChecksum("/QV/short.crc"), 0x0201u);
  WriteFile("/QV/empty.crc", "");
  EXPECT_EQ(BaseUtils::Instance()->ReadChecksum("/QV/empty.crc"), 0u);
}

TEST_F(BaseUtilsChecksumTest, OnlyTheFirstFourBytesOfALongerFileCount) {
  WriteFile("/QV/long.crc", std::string("\xAA\xBB\xCC\xDD\xEE\xFF", 6));
  EXPECT_EQ(BaseUtils::Instance()->ReadChecksum("/QV/long.crc"), 0xDDCCBBAAu);
}

TEST_F(BaseUtilsChecksumTest, AFileLargerThanOneBatchGivesZlibsCrc32OfAllItsBytes) {
  std::string bytes = Bytes(200000, 11);  // read in several batches
  WriteFile("/QV/large.bin", bytes);
  EXPECT_EQ(Checksum("/QV/large.bin"), Feed(crc32(0L, Z_NULL, 0), bytes));
}
