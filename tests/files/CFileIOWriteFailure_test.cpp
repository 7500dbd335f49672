// A Write that fails at any step keeps the old file byte for byte and leaves
// no temporary file behind.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include <vireline/CFileIO.h>

#include "DeviceRootTest.h"
#include "files/KeyValueTest.h"
#include "platform/FaultInjectionEnv.h"

using vireline::FaultInjectionEnv;

namespace {

const char kFolder[] = "/QV/Bulk/ProgramFiles/Game";
const char kPath[] = "/QV/Bulk/ProgramFiles/Game/meta.inf";
const char kOld[] = "\xEF\xBB\xBFPackageID=GAME-1\r\nVersion=1.0\r\nName=\"Old Game\"\r\n";
const char kNew[] = "PackageID=GAME-1\nVersion=2.0\nName=\"New Game\"\nProfileAccess=\"0\",\"1\"\nHidden=0x00000000\n";

}  // namespace

class CFileIOWriteFailureTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    WriteFile(kPath, kOld);
    vireline::Env::SetCurrent(&mFaults);
  }

  // Reads the old file and changes it so that a Write produces kNew.
  void Change(CFileIO& file) {
    ASSERT_TRUE(file.Open(kPath));
    ASSERT_TRUE(file.SetStr("Version", "2.0"));
    ASSERT_TRUE(file.SetStr("Name", "New Game"));
    ASSERT_TRUE(file.SetStr("ProfileAccess", "0,1"));
    file.FindKey("ProfileAccess")->listQuoted = 1;
    ASSERT_TRUE(file.SetUInt("Hidden", 0));
  }

  // The old file is there, whole, and alone in its folder.
  void ExpectOldFileWhole(const std::string& step) {
    EXPECT_EQ(ReadFile(kPath), kOld) << step;
    EXPECT_EQ(List(kFolder), std::vector<std::string>{"meta.inf"}) << step;
  }

  FaultInjectionEnv mFaults{vireline::Env::Default()};
};

TEST_F(CFileIOWriteFailureTest, WithoutFaultsTheNewFileReplacesTheOld) {
  CFileIO file;
  Change(file);
  mFaults.Reset();
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), kNew);
  EXPECT_EQ(List(kFolder), std::vector<std::string>{"meta.inf"});
  // Every byte is one write: the failures below cover each of them.
  EXPECT_EQ(mFaults.Calls(FaultInjectionEnv::kWrite), static_cast<int>(sizeof kNew - 1));
}

TEST_F(CFileIOWriteFailureTest, FailedOpenKeepsTheOldFile) {
  CaptureDebugOutput();
  CFileIO file;
  Change(file);
  mFaults.FailAfter(FaultInjectionEnv::kOpen, 0);
  EXPECT_FALSE(file.Write());
  ExpectOldFileWhole("open");
  EXPECT_EQ(DebugOutput(), "CFileIO::Write() - failed opening /QV/Bulk/ProgramFiles/Game/meta.inf for writing.");
}

TEST_F(CFileIOWriteFailureTest, FailedOpenIsRetriedByTheNextWrite) {
  CaptureDebugOutput();
  CFileIO file;
  Change(file);
  mFaults.FailAfter(FaultInjectionEnv::kOpen, 0);
  EXPECT_FALSE(file.Write());
  mFaults.Reset();
  EXPECT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), kNew);
}

TEST_F(CFileIOWriteFailureTest, FailureAtEveryByteKeepsTheOldFile) {
  const int bytes = static_cast<int>(sizeof kNew - 1);
  for (int once = 0; once < 2; ++once) {
    for (int at = 0; at < bytes; ++at) {
      std::string step = "byte " + std::to_string(at) + (once ? " (once)" : " (from then on)");
      CaptureDebugOutput();
      CFileIO file;
      Change(file);
      mFaults.Reset();
      mFaults.FailAfter(FaultInjectionEnv::kWrite, at, at % 2 ? ENOSPC : EIO, once != 0);
      EXPECT_FALSE(file.Write()) << step;
      ExpectOldFileWhole(step);
      EXPECT_NE(DebugOutput().find(") - WRITE FAILURE."), std::string::npos) << step;
      mFaults.Reset();
    }
  }
}

TEST_F(CFileIOWriteFailureTest, WriteFailureTraceNamesTheLine) {
  CaptureDebugOutput();
  CFileIO file;
  Change(file);
  mFaults.FailAfter(FaultInjectionEnv::kWrite, 20);  // inside the second line
  EXPECT_FALSE(file.Write());
  EXPECT_EQ(DebugOutput(), "CFileIO::WriteBuffer( Version=2.0\n ) - WRITE FAILURE.");
}

TEST_F(CFileIOWriteFailureTest, FailureOfEachCommitStepKeepsTheOldFile) {
  const FaultInjectionEnv::Op steps[] = {FaultInjectionEnv::kSync, FaultInjectionEnv::kClose,
                                         FaultInjectionEnv::kRename};
  const char* names[] = {"sync", "close", "rename"};
  for (int i = 0; i < 3; ++i) {
    CFileIO file;
    Change(file);
    mFaults.Reset();
    mFaults.FailAfter(steps[i], 0);
    EXPECT_FALSE(file.Write()) << names[i];
    ExpectOldFileWhole(names[i]);
  }
}

TEST_F(CFileIOWriteFailureTest, FolderSyncFailureAfterTheRenameLeavesTheNewFileWhole) {
  CFileIO file;
  Change(file);
  mFaults.FailAfter(FaultInjectionEnv::kSyncDir, 0);
  EXPECT_FALSE(file.Write());  // not known to be durable
  EXPECT_EQ(ReadFile(kPath), kNew);
  EXPECT_EQ(List(kFolder), std::vector<std::string>{"meta.inf"});
}

TEST_F(CFileIOWriteFailureTest, AFailedWriteIsNotRetriedByTheNextWrite) {
  CFileIO file;
  Change(file);
  mFaults.FailAfter(FaultInjectionEnv::kRename, 0);
  EXPECT_FALSE(file.Write());
  mFaults.Reset();
  // The table no longer counts as changed once a write got as far as its entries.
  EXPECT_TRUE(file.Write());
  ExpectOldFileWhole("second write");
  ASSERT_TRUE(file.SetStr("Version", "2.0"));
  EXPECT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), kNew);
}

TEST_F(CFileIOWriteFailureTest, FolderThatCannotBeMadeFailsTheWrite) {
  CaptureDebugOutput();
  CFileIO file;
  EXPECT_FALSE(file.Open("/QV/Bulk/Data/Local/2/profile.dsc"));
  ASSERT_TRUE(file.SetStr("Name", "Ann"));
  mFaults.FailAfter(FaultInjectionEnv::kMakeDir, 0);
  EXPECT_FALSE(file.Write());
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Local"));
  EXPECT_EQ(DebugOutput(), "CFileIO::Write() - failed opening /QV/Bulk/Data/Local/2/profile.dsc for writing.");
}

TEST_F(CFileIOWriteFailureTest, FailedWriteUnderImmediateSynchFailsTheSet) {
  CaptureDebugOutput();
  CFileIO file;
  ASSERT_TRUE(file.Open(kPath));
  file.SetImmediateSynch(true);
  mFaults.FailAfter(FaultInjectionEnv::kWrite, 3);
  EXPECT_FALSE(file.SetStr("Version", "2.0"));
  ExpectOldFileWhole("immediate synch");
  mFaults.Reset();
  EXPECT_TRUE(file.SetStr("Version", "3.0"));
  EXPECT_EQ(ReadFile(kPath), "PackageID=GAME-1\nVersion=3.0\nName=\"Old Game\"\n");
}
