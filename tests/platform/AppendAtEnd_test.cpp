// Appending at the end of a file opened in place, directly and through the
// fault-injecting platform.
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

#include "DeviceRootTest.h"
#include "platform/Env.h"
#include "platform/FaultInjectionEnv.h"

using vireline::Env;
using vireline::RandomRWFile;

class AppendAtEndTest : public DeviceRootTest {
 protected:
  std::unique_ptr<RandomRWFile> Open(const char* path) {
    std::unique_ptr<RandomRWFile> file;
    EXPECT_TRUE(Env::Current()->NewRandomRWFile(path, &file).ok());
    return file;
  }
};

TEST_F(AppendAtEndTest, WritesAtTheEndOfAPlainFile) {
  WriteFile("/log.bin", "start");
  std::unique_ptr<RandomRWFile> file = Open("/log.bin");
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(file->AppendAtEnd("+more", 5).ok());
  EXPECT_TRUE(file->AppendAtEnd("!", 1).ok());
  EXPECT_TRUE(file->Close().ok());
  EXPECT_EQ(ReadFile("/log.bin"), "start+more!");
}

TEST_F(AppendAtEndTest, WritesAtTheEndAfterAReadElsewhere) {
  WriteFile("/log.bin", "start");
  std::unique_ptr<RandomRWFile> file = Open("/log.bin");
  ASSERT_NE(file, nullptr);
  char first[2];
  size_t got = 0;
  EXPECT_TRUE(vireline::ReadFullyAt(file.get(), 0, sizeof first, first, &got).ok());
  EXPECT_TRUE(file->AppendAtEnd("+more", 5).ok());
  file.reset();
  EXPECT_EQ(ReadFile("/log.bin"), "start+more");
}

TEST_F(AppendAtEndTest, WritesAtTheEndThroughATestDoublesFile) {
  vireline::FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  WriteFile("/log.bin", "start");
  std::unique_ptr<RandomRWFile> file = Open("/log.bin");
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(file->AppendAtEnd("+more", 5).ok());
  file.reset();
  Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile("/log.bin"), "start+more");
}

TEST_F(AppendAtEndTest, AFailingWriteIsReported) {
  vireline::FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  WriteFile("/log.bin", "start");
  std::unique_ptr<RandomRWFile> file = Open("/log.bin");
  ASSERT_NE(file, nullptr);
  env.FailAfter(vireline::FaultInjectionEnv::kWrite, 0, ENOSPC);
  EXPECT_EQ(file->AppendAtEnd("+more", 5).error(), ENOSPC);
  env.Reset();
  file.reset();
  Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile("/log.bin"), "start");
}

TEST_F(AppendAtEndTest, AFileThatIsNotThereIsNotMade) {
  MakeDirs("/QV");
  EXPECT_EQ(Env::Current()->AppendToFile("/QV/none.log", "x", 1).error(), ENOENT);
  EXPECT_FALSE(Exists("/QV/none.log"));
}
