// Atomic copies: readers of the destination see the old file or the new one, whole.
#include <vireline/BaseUtils.h>

#include <gtest/gtest.h>

#include <string>

#include "DeviceRootTest.h"
#include "platform/FaultInjectionEnv.h"

class BaseUtilsCopyAtomicTest : public DeviceRootTest {
 protected:
  // Bytes 0-255 repeated up to `size`.
  static std::string Pattern(size_t size) {
    std::string bytes(size, '\0');
    for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 256);
    return bytes;
  }

  // Only the destination, no temporary file, is left in folder /d.
  void ExpectOnlyDestination() const { EXPECT_EQ(List("/d"), std::vector<std::string>{"out"}); }

  BaseUtils* utils = BaseUtils::Instance();
};

TEST_F(BaseUtilsCopyAtomicTest, CopiesEveryByte) {
  for (size_t size : {size_t(0), size_t(1), size_t(511), size_t(512), size_t(513), size_t(5000)}) {
    WriteFile("/s/in", Pattern(size));
    MakeDirs("/d");
    EXPECT_TRUE(utils->CopyAtomicFile("/s/in", "/d/out")) << size;
    EXPECT_EQ(ReadFile("/d/out"), Pattern(size)) << size;
    ExpectOnlyDestination();
  }
}

TEST_F(BaseUtilsCopyAtomicTest, ReplacesTheDestination) {
  WriteFile("/s/in", "new");
  WriteFile("/d/out", "a much longer old content");
  EXPECT_TRUE(utils->CopyAtomicFile("/s/in", "/d/out"));
  EXPECT_EQ(ReadFile("/d/out"), "new");
}

TEST_F(BaseUtilsCopyAtomicTest, MissingSourceFailsAndKeepsTheDestination) {
  WriteFile("/d/out", "old");
  EXPECT_FALSE(utils->CopyAtomicFile("/s/missing", "/d/out"));
  EXPECT_EQ(ReadFile("/d/out"), "old");
  ExpectOnlyDestination();
}

TEST_F(BaseUtilsCopyAtomicTest, DestinationInAMissingFolderFails) {
  WriteFile("/s/in", "x");
  EXPECT_FALSE(utils->CopyAtomicFile("/s/in", "/nowhere/out"));
  EXPECT_FALSE(Exists("/nowhere"));
}

TEST_F(BaseUtilsCopyAtomicTest, FailingWriteKeepsTheOldDestination) {
  WriteFile("/s/in", Pattern(2000));
  WriteFile("/d/out", "old");
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  env.FailAfter(vireline::FaultInjectionEnv::kWrite, 2);
  vireline::Env::SetCurrent(&env);
  EXPECT_FALSE(utils->CopyAtomicFile("/s/in", "/d/out"));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile("/d/out"), "old");
  ExpectOnlyDestination();
}

TEST_F(BaseUtilsCopyAtomicTest, FailingSyncKeepsTheOldDestination) {
  WriteFile("/s/in", Pattern(100));
  WriteFile("/d/out", "old");
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  env.FailAfter(vireline::FaultInjectionEnv::kSync, 0);
  vireline::Env::SetCurrent(&env);
  EXPECT_FALSE(utils->CopyAtomicFile("/s/in", "/d/out"));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile("/d/out"), "old");
  ExpectOnlyDestination();
}

TEST_F(BaseUtilsCopyAtomicTest, FailingRenameKeepsTheOldDestination) {
  WriteFile("/s/in", Pattern(100));
  WriteFile("/d/out", "old");
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  env.FailAfter(vireline::FaultInjectionEnv::kRename, 0);
  vireline::Env::SetCurrent(&env);
  EXPECT_FALSE(utils->CopyAtomicFile("/s/in", "/d/out"));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile("/d/out"), "old");
  ExpectOnlyDestination();
}
