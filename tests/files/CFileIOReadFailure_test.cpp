// A key=value file that is there but cannot be read (a flash read error, no
// permission) is never replaced by a table that lacks its entries; a missing
// file is still created from an empty table.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include <vireline/CFileIO.h>
#include <vireline/CMetaInfFile.h>
#include <vireline/CProfileDscFile.h>
#include <vireline/CSettingsCfgFile.h>

#include "DeviceRootTest.h"
#include "platform/FaultInjectionEnv.h"

using vireline::FaultInjectionEnv;

namespace {

const char kPath[] = "/QV/Bulk/ProgramFiles/Game/meta.inf";
const char kOld[] = "PackageID=GAME-1\nVersion=1.0\nName=Old Game\n";
const char kTrace[] = "CFileIO::Write() - failed opening /QV/Bulk/ProgramFiles/Game/meta.inf for writing.";

}  // namespace

class CFileIOReadFailureTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    WriteFile(kPath, kOld);
  }

  void TearDown() override {
    vireline::Env::SetCurrent(nullptr);
    DeviceRootTest::TearDown();
  }

  // Opens kPath in `file` with `op` failing once with EIO; Open's result.
  bool OpenWithFault(CFileIO& file, FaultInjectionEnv::Op op) {
    vireline::Env::SetCurrent(&mFaults);
    mFaults.FailAfter(op, 0, EIO, true);
    bool opened = file.Open(kPath);
    mFaults.Reset();
    return opened;
  }

  // After a failed read, a change and a Write: the Write fails with the
  // write trace and the old file is kept byte for byte.
  void ExpectKeptAfterChange(CFileIO& file) {
    CaptureDebugOutput();
    EXPECT_TRUE(file.SetStr("Version", "2.0"));
    EXPECT_FALSE(file.Write());
    EXPECT_EQ(ReadFile(kPath), kOld);
    EXPECT_EQ(DebugOutput(), kTrace);
  }

  FaultInjectionEnv mFaults{vireline::Env::Default()};
};

TEST_F(CFileIOReadFailureTest, ReadErrorWhileOpeningKeepsTheFileOnWrite) {
  CFileIO file;
  EXPECT_TRUE(OpenWithFault(file, FaultInjectionEnv::kRead));
  ExpectKeptAfterChange(file);
}

TEST_F(CFileIOReadFailureTest, OpenErrorOnAnExistingFileKeepsTheFileOnWrite) {
  CFileIO file;
  EXPECT_FALSE(OpenWithFault(file, FaultInjectionEnv::kOpen));
  ExpectKeptAfterChange(file);
}

TEST_F(CFileIOReadFailureTest, ImmediateSynchSetFailsAndKeepsTheFile) {
  CFileIO file;
  file.SetImmediateSynch(true);
  EXPECT_TRUE(OpenWithFault(file, FaultInjectionEnv::kRead));
  CaptureDebugOutput();
  EXPECT_FALSE(file.SetStr("Version", "2.0"));
  EXPECT_EQ(ReadFile(kPath), kOld);
  EXPECT_EQ(DebugOutput(), kTrace);
}

TEST_F(CFileIOReadFailureTest, ASuccessfulOpenAfterTheErrorAllowsWritingAgain) {
  CFileIO file;
  EXPECT_TRUE(OpenWithFault(file, FaultInjectionEnv::kRead));
  ASSERT_TRUE(file.Open(kPath));
  EXPECT_TRUE(file.SetStr("Version", "2.0"));
  EXPECT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "PackageID=GAME-1\nVersion=2.0\nName=Old Game\n");
}

TEST_F(CFileIOReadFailureTest, AMissingFileIsStillCreatedFromAnEmptyTable) {
  CFileIO file;
  EXPECT_FALSE(file.Open("/QV/Bulk/ProgramFiles/New/meta.inf"));
  EXPECT_TRUE(file.SetStr("Version", "2.0"));
  EXPECT_TRUE(file.Write());
  EXPECT_EQ(ReadFile("/QV/Bulk/ProgramFiles/New/meta.inf"), "Version=2.0\n");
}

TEST_F(CFileIOReadFailureTest, AFileUnderAMissingFolderIsStillCreated) {
  WriteFile("/QV/Bulk/plain", "x");
  CFileIO file;
  EXPECT_FALSE(file.Open("/QV/Bulk/Nothing/Here/meta.inf"));
  EXPECT_TRUE(file.SetStr("Version", "2.0"));
  EXPECT_TRUE(file.Write());
  EXPECT_EQ(ReadFile("/QV/Bulk/Nothing/Here/meta.inf"), "Version=2.0\n");
}

TEST_F(CFileIOReadFailureTest, CopyOfAnUnreadableFileKeepsItToo) {
  CFileIO file;
  EXPECT_TRUE(OpenWithFault(file, FaultInjectionEnv::kRead));
  vireline::Env::SetCurrent(&mFaults);
  mFaults.FailAfter(FaultInjectionEnv::kRead, 0, EIO, true);
  CFileIO copy(file);
  mFaults.Reset();
  ExpectKeptAfterChange(copy);
}

TEST_F(CFileIOReadFailureTest, MetaInfFileKeepsTheFile) {
  CMetaInfFile file;
  EXPECT_TRUE(OpenWithFault(file, FaultInjectionEnv::kRead));
  ExpectKeptAfterChange(file);
}

TEST_F(CFileIOReadFailureTest, SettingsFileKeepsTheFile) {
  CSettingsCfgFile file;
  EXPECT_TRUE(OpenWithFault(file, FaultInjectionEnv::kRead));
  ExpectKeptAfterChange(file);
}

TEST_F(CFileIOReadFailureTest, ProfileDescriptorKeepsTheFile) {
  CProfileDscFile file;
  EXPECT_TRUE(OpenWithFault(file, FaultInjectionEnv::kRead));
  ExpectKeptAfterChange(file);
}
