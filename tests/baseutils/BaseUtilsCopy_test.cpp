// Plain copies of BaseUtils.
#include <vireline/BaseUtils.h>

#include <gtest/gtest.h>

#include <string>

#include "DeviceRootTest.h"
#include "platform/Env.h"
#include "platform/FaultInjectionEnv.h"

class BaseUtilsCopyTest : public DeviceRootTest {};

TEST_F(BaseUtilsCopyTest, CopyPNGFileCopiesAnyBytesUnchecked) {
  std::string bytes;
  for (int i = 0; i < 1500; ++i) bytes += static_cast<char>(i * 7);
  WriteFile("/QV/in.png", bytes);
  EXPECT_TRUE(BaseUtils::Instance()->CopyPNGFile("/QV/in.png", "/QV/out.png"));
  EXPECT_EQ(ReadFile("/QV/out.png"), bytes);
}

TEST_F(BaseUtilsCopyTest, CopyPNGFileTruncatesTheDestination) {
  WriteFile("/QV/in.png", "short");
  WriteFile("/QV/out.png", "a much longer old content");
  EXPECT_TRUE(BaseUtils::Instance()->CopyPNGFile("/QV/in.png", "/QV/out.png"));
  EXPECT_EQ(ReadFile("/QV/out.png"), "short");
}

TEST_F(BaseUtilsCopyTest, CopyPNGFileFromAMissingSourceSucceedsWithAnEmptyDestination) {
  WriteFile("/QV/out.png", "old");
  EXPECT_TRUE(BaseUtils::Instance()->CopyPNGFile("/QV/missing.png", "/QV/out.png"));
  EXPECT_TRUE(Exists("/QV/out.png"));
  EXPECT_EQ(ReadFile("/QV/out.png"), "");
}

TEST_F(BaseUtilsCopyTest, CopyPNGFileIntoAMissingFolderFails) {
  WriteFile("/QV/in.png", "data");
  EXPECT_FALSE(BaseUtils::Instance()->CopyPNGFile("/QV/in.png", "/QV/nofolder/out.png"));
}

TEST_F(BaseUtilsCopyTest, CopyPNGFileReportsAFailingWrite) {
  WriteFile("/QV/in.png", std::string(2000, 'p'));
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  env.FailAfter(vireline::FaultInjectionEnv::kWrite, 0, ENOSPC);
  EXPECT_FALSE(BaseUtils::Instance()->CopyPNGFile("/QV/in.png", "/QV/out.png"));
}

TEST_F(BaseUtilsCopyTest, RecursiveCopyJoinsNestedNamesWithoutASeparator) {
  WriteFile("/QV/src/top.txt", "top");
  WriteFile("/QV/src/sub/inner.txt", "inner");
  EXPECT_TRUE(BaseUtils::Instance()->RecursiveCopy("/QV/src", "/QV/dst/"));
  EXPECT_EQ(ReadFile("/QV/dst/top.txt"), "top");
  EXPECT_TRUE(Exists("/QV/dst/sub"));
  // Older firmware laid nested files out beside their folder: "sub" + "inner.txt".
  EXPECT_EQ(ReadFile("/QV/dst/subinner.txt"), "inner");
}

TEST_F(BaseUtilsCopyTest, RecursiveCopyOfAMissingSourceStillReturnsTrue) {
  EXPECT_TRUE(BaseUtils::Instance()->RecursiveCopy("/QV/none", "/QV/dst/"));
  EXPECT_TRUE(Exists("/QV/dst"));
}
