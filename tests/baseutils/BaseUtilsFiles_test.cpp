// File and folder helpers of BaseUtils.
#include <vireline/BaseUtils.h>
#include <vireline/Platform.h>

#include <gtest/gtest.h>

#include "DeviceRootTest.h"
#include "platform/Env.h"
#include "platform/FaultInjectionEnv.h"

class BaseUtilsFilesTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    utils = BaseUtils::Instance();
  }
  BaseUtils* utils = nullptr;
};

TEST_F(BaseUtilsFilesTest, InstanceIsCreatedOnceAndKept) { EXPECT_EQ(BaseUtils::Instance(), utils); }

TEST_F(BaseUtilsFilesTest, FileExistsIsTrueForAFileAndForAFolder) {
  WriteFile("/QV/a.txt", "x");
  EXPECT_TRUE(utils->FileExists("/QV/a.txt"));
  EXPECT_TRUE(utils->FileExists("/QV"));
  EXPECT_FALSE(utils->FileExists("/QV/missing"));
}

TEST_F(BaseUtilsFilesTest, FileIsDirIsFalseForAMissingPathAndForAFile) {
  WriteFile("/QV/a.txt", "x");
  EXPECT_FALSE(utils->FileIsDir("/QV/missing"));
  EXPECT_FALSE(utils->FileIsDir("/QV/a.txt"));
  EXPECT_TRUE(utils->FileIsDir("/QV"));
  EXPECT_TRUE(utils->DirectoryExists("/QV"));
  EXPECT_FALSE(utils->DirectoryExists("/QV/a.txt"));
}

TEST_F(BaseUtilsFilesTest, CreateDirectoryMakesEveryMissingParent) {
  EXPECT_TRUE(utils->CreateDirectory("/QV/a/b/c"));
  EXPECT_TRUE(utils->FileIsDir("/QV/a/b/c"));
}

TEST_F(BaseUtilsFilesTest, CreateFileTruncatesAnExistingFile) {
  WriteFile("/QV/a.txt", "old content");
  EXPECT_TRUE(utils->CreateFile("/QV/a.txt"));
  EXPECT_TRUE(Exists("/QV/a.txt"));
  EXPECT_EQ(ReadFile("/QV/a.txt"), "");
}

TEST_F(BaseUtilsFilesTest, CreateFileCreatesMissingParentFolders) {
  EXPECT_TRUE(utils->CreateFile("/QV/x/y/z.log"));
  EXPECT_TRUE(Exists("/QV/x/y/z.log"));
}

TEST_F(BaseUtilsFilesTest, CreateFileInAnExistingFolderThatRefusesAssertsWithThePath) {
  MakeDirs("/QV/ro");
  CaptureDebugOutput();
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  env.FailAfter(vireline::FaultInjectionEnv::kOpen, 0, EACCES);
  EXPECT_FALSE(utils->CreateFile("/QV/ro/f.txt"));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_NE(DebugOutput().find("failed to create file. /QV/ro/f.txt\n (line 135 in VirelineJSON/Src/BaseUtils)"),
            std::string::npos)
      << DebugOutput();
}

TEST_F(BaseUtilsFilesTest, CreateFileBehindAFileGivesUpInsteadOfRetryingForever) {
  WriteFile("/QV/blocker", "not a folder");
  EXPECT_FALSE(utils->CreateFile("/QV/blocker/sub/f.txt"));
}

TEST_F(BaseUtilsFilesTest, ItoaPrintsSignedDecimal) {
  EXPECT_EQ(utils->itoa(0), "0");
  EXPECT_EQ(utils->itoa(-42), "-42");
  EXPECT_EQ(utils->itoa(2147483647), "2147483647");
  EXPECT_EQ(utils->itoa(-2147483647 - 1), "-2147483648");
}

class BaseUtilsClockTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    vireline::Env::SetCurrent(&env);
    env.SetNowMicros(5000000);  // the instance is made at 5 s
  }
  vireline::FaultInjectionEnv env{vireline::Env::Default()};
};

TEST_F(BaseUtilsClockTest, ElapsedTimeCountsMillisecondsFromConstruction) {
  BaseUtils* utils = BaseUtils::Instance();
  env.SetNowMicros(5000000 + 1234567);
  EXPECT_EQ(utils->GetElapsedTimeAsMSecs(), 1234u);
}

TEST_F(BaseUtilsClockTest, ElapsedTimeWrapsAfterTwoToTheThirtyTwoMilliseconds) {
  BaseUtils* utils = BaseUtils::Instance();
  env.SetNowMicros(5000000 + (uint64_t{1} << 32) * 1000 + 7000);
  EXPECT_EQ(utils->GetElapsedTimeAsMSecs(), 7u);
}
