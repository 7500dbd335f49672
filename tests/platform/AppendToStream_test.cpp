// Appending to an open stream at the end of its file, directly and through
// the fault-injecting platform.
#include <gtest/gtest.h>

#include "DeviceRootTest.h"
#include "platform/Env.h"
#include "platform/FaultInjectionEnv.h"

using vireline::Env;

class AppendToStreamTest : public DeviceRootTest {
 protected:
  FILE* Open(const char* path) {
    FILE* stream = nullptr;
    EXPECT_TRUE(Env::Current()->OpenStream(path, "rb+", &stream).ok());
    return stream;
  }
};

TEST_F(AppendToStreamTest, WritesAtTheEndOfAPlainFile) {
  WriteFile("/log.bin", "start");
  FILE* stream = Open("/log.bin");
  ASSERT_NE(stream, nullptr);
  EXPECT_TRUE(Env::Current()->AppendToStream(stream, "+more", 5).ok());
  EXPECT_TRUE(Env::Current()->AppendToStream(stream, "!", 1).ok());
  Env::Current()->CloseStream(stream);
  EXPECT_EQ(ReadFile("/log.bin"), "start+more!");
}

TEST_F(AppendToStreamTest, WritesAtTheEndThroughATestDoublesStream) {
  vireline::FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  WriteFile("/log.bin", "start");
  FILE* stream = Open("/log.bin");
  ASSERT_NE(stream, nullptr);
  EXPECT_TRUE(Env::Current()->AppendToStream(stream, "+more", 5).ok());
  Env::Current()->CloseStream(stream);
  EXPECT_EQ(ReadFile("/log.bin"), "start+more");
}

TEST_F(AppendToStreamTest, AFailingWriteIsReported) {
  vireline::FaultInjectionEnv env(Env::Default());
  Env::SetCurrent(&env);
  WriteFile("/log.bin", "start");
  FILE* stream = Open("/log.bin");
  ASSERT_NE(stream, nullptr);
  env.FailAfter(vireline::FaultInjectionEnv::kWrite, 0, ENOSPC);
  vireline::Result result = Env::Current()->AppendToStream(stream, "+more", 5);
  EXPECT_FALSE(result.ok());
  env.Reset();
  Env::Current()->CloseStream(stream);
  EXPECT_EQ(ReadFile("/log.bin"), "start");
}

TEST_F(AppendToStreamTest, AReadOnlyStreamCannotBeAppendedTo) {
  WriteFile("/log.bin", "start");
  FILE* stream = nullptr;
  ASSERT_TRUE(Env::Current()->OpenStream("/log.bin", "rb", &stream).ok());
  EXPECT_FALSE(Env::Current()->AppendToStream(stream, "x", 1).ok());
  Env::Current()->CloseStream(stream);
  EXPECT_EQ(ReadFile("/log.bin"), "start");
}
