#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include <vireline/COrvoInterface.h>
#include <vireline/Platform.h>

#include "DeviceRootTest.h"
#include "platform/FaultInjectionEnv.h"

class COrvoInterfaceTest : public DeviceRootTest {
 protected:
  mode_t ModeOf(const std::string& path) {
    struct stat st;
    stat(Host(path).c_str(), &st);
    return st.st_mode & 07777;
  }
};

TEST_F(COrvoInterfaceTest, MkDirOnAnExistingFolderSucceeds) {
  MakeDirs("/QV/Base");
  EXPECT_TRUE(COrvoInterface::MkDir("/QV/Base"));
}

TEST_F(COrvoInterfaceTest, MkDirWithAMissingParentFails) {
  EXPECT_FALSE(COrvoInterface::MkDir("/QV/Missing/Child"));
  EXPECT_FALSE(Exists("/QV/Missing"));
}

TEST_F(COrvoInterfaceTest, MkDirCreatesAnOwnerOnlyFolder) {
  ASSERT_TRUE(COrvoInterface::MkDir("/QV"));
  EXPECT_EQ(ModeOf("/QV") & 0777, 0700u);
}

TEST_F(COrvoInterfaceTest, StatOfAFolderIsTypeTwo) {
  MakeDirs("/QV");
  tStatLite info = {0, 0};
  ASSERT_TRUE(COrvoInterface::Stat("/QV", &info, false));
  EXPECT_EQ(info.type, 2);
}

TEST_F(COrvoInterfaceTest, StatOfAFileIsTypeOneWithItsSize) {
  WriteFile("/QV/a", "12345");
  tStatLite info = {0, 0};
  ASSERT_TRUE(COrvoInterface::Stat("/QV/a", &info, true));
  EXPECT_EQ(info.type, 1);
  EXPECT_EQ(info.size, 5u);
}

TEST_F(COrvoInterfaceTest, StatSizeIsTheLowThirtyTwoBits) {
  WriteFile("/QV/big", "");
  ASSERT_EQ(truncate64(Host("/QV/big").c_str(), (1LL << 32) + 7), 0);  // sparse: takes no space
  tStatLite info = {0, 0};
  ASSERT_TRUE(COrvoInterface::Stat("/QV/big", &info, false));
  EXPECT_EQ(info.size, 7u);
}

TEST_F(COrvoInterfaceTest, StatOfAMissingPathFails) {
  tStatLite info = {0, 0};
  EXPECT_FALSE(COrvoInterface::Stat("/QV/none", &info, false));
}

TEST_F(COrvoInterfaceTest, RmFileWithFlagNeverRemoves) {
  WriteFile("/QV/keep", "x");
  EXPECT_FALSE(COrvoInterface::RmFile("/QV/keep", true));
  EXPECT_TRUE(Exists("/QV/keep"));
  EXPECT_EQ(ReadFile("/QV/keep"), "x");
}

TEST_F(COrvoInterfaceTest, RmFileRemovesAReadOnlyFile) {
  WriteFile("/QV/ro", "x");
  chmod(Host("/QV/ro").c_str(), 0444);
  EXPECT_TRUE(COrvoInterface::RmFile("/QV/ro", false));
  EXPECT_FALSE(Exists("/QV/ro"));
}

TEST_F(COrvoInterfaceTest, RmFileOfAMissingFileFails) { EXPECT_FALSE(COrvoInterface::RmFile("/QV/none", false)); }

TEST_F(COrvoInterfaceTest, RmDirRemovesAnEmptyFolder) {
  MakeDirs("/QV/empty");
  EXPECT_TRUE(COrvoInterface::RmDir("/QV/empty"));
  EXPECT_FALSE(Exists("/QV/empty"));
}

TEST_F(COrvoInterfaceTest, RmDirKeepsAFolderWithEntries) {
  WriteFile("/QV/full/a", "x");
  EXPECT_FALSE(COrvoInterface::RmDir("/QV/full"));
  EXPECT_TRUE(Exists("/QV/full/a"));
}

TEST_F(COrvoInterfaceTest, OpenDirOnAnExistingFolderGivesNull) {
  WriteFile("/QV/a", "x");
  EXPECT_EQ(COrvoInterface::OpenDir("/QV", true, nullptr, 0), nullptr);
}

TEST_F(COrvoInterfaceTest, OpenDirOnAFileOrNothingGivesNull) {
  WriteFile("/QV/a", "x");
  EXPECT_EQ(COrvoInterface::OpenDir("/QV/a", false, nullptr, 0), nullptr);
  EXPECT_EQ(COrvoInterface::OpenDir("/QV/none", false, nullptr, 0), nullptr);
  EXPECT_EQ(COrvoInterface::OpenDir(nullptr, false, nullptr, 0), nullptr);
}

TEST_F(COrvoInterfaceTest, ReadDirAndCloseDirOfNullDoNothing) {
  EXPECT_EQ(COrvoInterface::ReadDir(nullptr), nullptr);
  COrvoInterface::CloseDir(nullptr);
}

TEST_F(COrvoInterfaceTest, AssertTrueIsSilent) {
  CaptureDebugOutput();
  COrvoInterface::Assert(true, "nothing");
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(COrvoInterfaceTest, AssertFalseTracesTheMessage) {
  CaptureDebugOutput();
  COrvoInterface::Assert(false, "disk gone");
  EXPECT_EQ(DebugOutput(), "ASSERT: disk gone\n");
}

TEST_F(COrvoInterfaceTest, TraceFormatsToTheDebugOutput) {
  CaptureDebugOutput();
  COrvoInterface::Trace("value %d of %s", 3, "x");
  EXPECT_EQ(DebugOutput(), "value 3 of x");
}

TEST_F(COrvoInterfaceTest, CpFileWritesOneBytePerWholeBlock) {
  std::string source(512, 'a');
  source += std::string(512, 'b');
  source += std::string(100, 'c');  // a partial block adds nothing
  WriteFile("/QV/src", source);
  ASSERT_TRUE(COrvoInterface::CpFile("/QV/src", "/QV/dst", false));
  EXPECT_EQ(ReadFile("/QV/dst"), "ab");
}

TEST_F(COrvoInterfaceTest, CpFileOfASmallFileGivesAnEmptyCopy) {
  WriteFile("/QV/src", "short");
  ASSERT_TRUE(COrvoInterface::CpFile("/QV/src", "/QV/dst", false));
  EXPECT_TRUE(Exists("/QV/dst"));
  EXPECT_EQ(ReadFile("/QV/dst"), "");
}

TEST_F(COrvoInterfaceTest, CpFileKeepsAnExistingTargetWithoutOverwrite) {
  WriteFile("/QV/src", std::string(512, 'a'));
  WriteFile("/QV/dst", "old");
  EXPECT_FALSE(COrvoInterface::CpFile("/QV/src", "/QV/dst", false));
  EXPECT_EQ(ReadFile("/QV/dst"), "old");
}

TEST_F(COrvoInterfaceTest, CpFileOverwritesAReadOnlyTarget) {
  WriteFile("/QV/src", std::string(512, 'a'));
  WriteFile("/QV/dst", "old");
  chmod(Host("/QV/dst").c_str(), 0444);
  ASSERT_TRUE(COrvoInterface::CpFile("/QV/src", "/QV/dst", true));
  EXPECT_EQ(ReadFile("/QV/dst"), "a");
}

TEST_F(COrvoInterfaceTest, CpFileRefusesAFolderAsTarget) {
  WriteFile("/QV/src", "x");
  MakeDirs("/QV/dir");
  EXPECT_FALSE(COrvoInterface::CpFile("/QV/src", "/QV/dir", true));
}

TEST_F(COrvoInterfaceTest, CpFileFromAMissingSourceFails) {
  MakeDirs("/QV");
  EXPECT_FALSE(COrvoInterface::CpFile("/QV/none", "/QV/dst", false));
}

TEST_F(COrvoInterfaceTest, MakeWritableAddsTheOwnerWriteBit) {
  WriteFile("/QV/ro", "x");
  chmod(Host("/QV/ro").c_str(), 0444);
  ASSERT_TRUE(MakeWritable("/QV/ro"));
  EXPECT_EQ(ModeOf("/QV/ro"), 0644u);
}

TEST_F(COrvoInterfaceTest, MakeWritableOfAMissingPathFails) { EXPECT_FALSE(MakeWritable("/QV/none")); }

TEST_F(COrvoInterfaceTest, StreamsReadWriteAndSeekByteWise) {
  MakeDirs("/QV");
  FILE* out = COrvoInterface::FOpen("/QV/f", "w");
  ASSERT_NE(out, nullptr);
  EXPECT_EQ(COrvoInterface::PutC('\xFF', out), 0xFF);
  EXPECT_EQ(COrvoInterface::PutC('z', out), 'z');
  EXPECT_EQ(COrvoInterface::FClose(out), 0);
  FILE* in = COrvoInterface::FOpen("/QV/f", "r");
  ASSERT_NE(in, nullptr);
  EXPECT_TRUE(COrvoInterface::FSeek(in, 1, SEEK_SET));
  EXPECT_EQ(COrvoInterface::GetC(in), 'z');
  EXPECT_EQ(COrvoInterface::GetC(in), EOF);
  EXPECT_FALSE(COrvoInterface::FSeek(in, -5, SEEK_SET));
  EXPECT_EQ(COrvoInterface::FClose(in), 0);
}

TEST_F(COrvoInterfaceTest, FOpenOfAMissingFileGivesNull) {
  EXPECT_EQ(COrvoInterface::FOpen("/QV/none", "r"), nullptr);
  EXPECT_EQ(errno, ENOENT);  // errno is left as the system set it
}

TEST_F(COrvoInterfaceTest, AtomicStreamsReplaceOnlyAtTheirClose) {
  WriteFile("/QV/f", "old");
  FILE* out = COrvoInterface::FOpenAtomic("/QV/f", "w");
  ASSERT_NE(out, nullptr);
  COrvoInterface::PutC('n', out);
  EXPECT_EQ(ReadFile("/QV/f"), "old");
  EXPECT_EQ(COrvoInterface::FCloseAtomic(out), 0);
  EXPECT_EQ(ReadFile("/QV/f"), "n");
}

TEST_F(COrvoInterfaceTest, PutCReportsAFailedWrite) {
  MakeDirs("/QV");
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  FILE* out = COrvoInterface::FOpenAtomic("/QV/f", "w");
  ASSERT_NE(out, nullptr);
  env.FailAfter(vireline::FaultInjectionEnv::kWrite, 0, ENOSPC);
  EXPECT_EQ(COrvoInterface::PutC('a', out), EOF);
  EXPECT_NE(COrvoInterface::FCloseAtomic(out), 0);
  EXPECT_FALSE(Exists("/QV/f"));
}

TEST_F(COrvoInterfaceTest, PutCToAStreamOpenForReadingFails) {
  WriteFile("/QV/f", "old");
  FILE* in = COrvoInterface::FOpen("/QV/f", "r");
  ASSERT_NE(in, nullptr);
  EXPECT_EQ(COrvoInterface::PutC('a', in), EOF);
  COrvoInterface::FClose(in);
  EXPECT_EQ(ReadFile("/QV/f"), "old");
}

TEST_F(COrvoInterfaceTest, SNPrintFCutsAndReportsTheFullLength) {
  char buffer[4];
  EXPECT_EQ(COrvoInterface::SNPrintF(buffer, sizeof buffer, "%s", "abcdef"), 6);
  EXPECT_STREQ(buffer, "abc");
}

TEST_F(COrvoInterfaceTest, MallocOfANegativeSizeGivesNull) {
  EXPECT_EQ(COrvoInterface::Malloc(-1), nullptr);
  void* block = COrvoInterface::Malloc(16);
  EXPECT_NE(block, nullptr);
  COrvoInterface::Free(block);
  COrvoInterface::Free(nullptr);
}

TEST_F(COrvoInterfaceTest, AssertFalseWithoutAMessageTracesAnEmptyOne) {
  CaptureDebugOutput();
  COrvoInterface::Assert(false, nullptr);
  EXPECT_EQ(DebugOutput(), "ASSERT: \n");
}

TEST_F(COrvoInterfaceTest, StatWithoutAnAnswerOrAPathOnlyTellsExistence) {
  WriteFile("/QV/f", "abc");
  EXPECT_TRUE(COrvoInterface::Stat("/QV/f", nullptr, false));
  tStatLite info;
  EXPECT_FALSE(COrvoInterface::Stat(nullptr, &info, false));
}

TEST_F(COrvoInterfaceTest, StreamCallsOnNoStreamFail) {
  EXPECT_FALSE(COrvoInterface::FSeek(nullptr, 0, SEEK_SET));
  EXPECT_EQ(COrvoInterface::GetC(nullptr), EOF);
  EXPECT_EQ(COrvoInterface::PutC('x', nullptr), EOF);
  EXPECT_EQ(COrvoInterface::FClose(nullptr), EOF);
  EXPECT_EQ(COrvoInterface::FOpen(nullptr, "r"), nullptr);
  EXPECT_EQ(COrvoInterface::FOpen("/QV/f", nullptr), nullptr);
}

TEST_F(COrvoInterfaceTest, RmDirOfAMissingFolderFails) {
  EXPECT_FALSE(COrvoInterface::RmDir("/QV/none"));
  EXPECT_FALSE(COrvoInterface::MkDir(nullptr));
}
