#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>

#include "DeviceRootTest.h"
#include "platform/FaultInjectionEnv.h"

using vireline::Env;
using vireline::FaultInjectionEnv;

class FaultInjectionEnvTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    mEnv.reset(new FaultInjectionEnv(Env::Default()));
    Env::SetCurrent(mEnv.get());
  }
  std::unique_ptr<FaultInjectionEnv> mEnv;
};

TEST_F(FaultInjectionEnvTest, CountdownLetsTheFirstCallsThrough) {
  MakeDirs("/QV");
  mEnv->FailAfter(FaultInjectionEnv::kMakeDir, 2, ENOSPC);
  EXPECT_TRUE(Env::Current()->MakeDir("/QV/a", 0755).ok());
  EXPECT_TRUE(Env::Current()->MakeDir("/QV/b", 0755).ok());
  vireline::Result third = Env::Current()->MakeDir("/QV/c", 0755);
  EXPECT_EQ(third.error(), ENOSPC);
  EXPECT_EQ(errno, ENOSPC);
  EXPECT_FALSE(Env::Current()->MakeDir("/QV/d", 0755).ok());  // a full disk stays full
  EXPECT_EQ(mEnv->Calls(FaultInjectionEnv::kMakeDir), 4);
}

TEST_F(FaultInjectionEnvTest, OnceFailsOnlyOneCall) {
  MakeDirs("/QV");
  mEnv->FailAfter(FaultInjectionEnv::kMakeDir, 0, EIO, true);
  EXPECT_FALSE(Env::Current()->MakeDir("/QV/a", 0755).ok());
  EXPECT_TRUE(Env::Current()->MakeDir("/QV/a", 0755).ok());
}

TEST_F(FaultInjectionEnvTest, EveryByteWrittenIsOneWrite) {
  MakeDirs("/QV");
  std::unique_ptr<vireline::WritableFile> file;
  ASSERT_TRUE(Env::Current()->NewWritableFile("/QV/f", &file).ok());
  mEnv->FailAfter(FaultInjectionEnv::kWrite, 3, ENOSPC);
  EXPECT_EQ(file->Append("abcd", 4).error(), ENOSPC);
  EXPECT_EQ(mEnv->Calls(FaultInjectionEnv::kWrite), 4);
  EXPECT_TRUE(file->Close().ok());
  EXPECT_EQ(ReadFile("/QV/f"), "abc");
}

TEST_F(FaultInjectionEnvTest, ReadsCanFail) {
  WriteFile("/QV/f", "abc");
  std::unique_ptr<vireline::SequentialFile> file;
  ASSERT_TRUE(Env::Current()->NewSequentialFile("/QV/f", &file).ok());
  char bytes[3];
  size_t got = 0;
  EXPECT_TRUE(file->Read(sizeof bytes, bytes, &got).ok());
  EXPECT_EQ(std::string(bytes, got), "a");  // a byte at a time
  mEnv->FailAfter(FaultInjectionEnv::kRead, 0, EIO);
  EXPECT_EQ(file->Read(sizeof bytes, bytes, &got).error(), EIO);
  EXPECT_EQ(got, 0u);
}

TEST_F(FaultInjectionEnvTest, FailedCloseStillReleasesTheFile) {
  MakeDirs("/QV");
  std::unique_ptr<vireline::WritableFile> file;
  ASSERT_TRUE(Env::Current()->NewWritableFile("/QV/f", &file).ok());
  file->Append("data", 4);
  mEnv->FailAfter(FaultInjectionEnv::kClose, 0, EIO);
  EXPECT_EQ(file->Close().error(), EIO);
  EXPECT_EQ(ReadFile("/QV/f"), "data");
}

TEST_F(FaultInjectionEnvTest, AClientsStreamIsClosedEvenWhenTheCloseFails) {
  MakeDirs("/QV");
  FILE* stream = nullptr;
  ASSERT_TRUE(Env::Current()->OpenStream("/QV/f", "w", &stream).ok());
  std::fputs("data", stream);
  mEnv->FailAfter(FaultInjectionEnv::kClose, 0, EIO);
  EXPECT_EQ(Env::Current()->CloseStream(stream).error(), EIO);
  EXPECT_EQ(ReadFile("/QV/f"), "data");
}

TEST_F(FaultInjectionEnvTest, EraseReachesTheFile) {
  WriteFile("/dev/mtd0", std::string(8, 'x'));
  std::unique_ptr<vireline::RandomRWFile> file;
  ASSERT_TRUE(Env::Current()->NewRandomRWFile("/dev/mtd0", &file).ok());
  EXPECT_TRUE(file->Erase(0, 8).ok());
  mEnv->FailAfter(FaultInjectionEnv::kErase, 0, EIO);
  EXPECT_FALSE(file->Erase(0, 8).ok());
  file.reset();
  EXPECT_EQ(ReadFile("/dev/mtd0"), std::string(8, '\xFF'));
}

TEST_F(FaultInjectionEnvTest, ClocksCanBeSet) {
  mEnv->SetWallClockSeconds(1234);
  mEnv->SetNowMicros(99);
  EXPECT_EQ(Env::Current()->WallClockSeconds(), 1234);
  EXPECT_EQ(Env::Current()->NowMicros(), 99u);
}

TEST_F(FaultInjectionEnvTest, ResetDisarmsAndClearsCounts) {
  mEnv->FailAfter(FaultInjectionEnv::kStat, 0, EIO);
  vireline::FileInfo info;
  EXPECT_FALSE(Env::Current()->Stat("/", &info).ok());
  mEnv->Reset();
  EXPECT_TRUE(Env::Current()->Stat("/", &info).ok());
  EXPECT_EQ(mEnv->Calls(FaultInjectionEnv::kStat), 1);
}

TEST_F(FaultInjectionEnvTest, AStreamItDidNotOpenIsClosedByItsTarget) {
  FaultInjectionEnv faults(vireline::Env::Default());
  FILE* stream = nullptr;
  ASSERT_TRUE(vireline::Env::Default()->OpenStream("/plain", "w", &stream).ok());
  std::fputs("plain", stream);
  EXPECT_TRUE(faults.CloseStream(stream).ok());
  EXPECT_EQ(ReadFile("/plain"), "plain");
}

TEST_F(FaultInjectionEnvTest, FileSystemFiguresCanFail) {
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::FsInfo info;
  EXPECT_TRUE(faults.StatFs("/", &info).ok());
  EXPECT_GT(info.blockSize, 0u);
  faults.FailAfter(FaultInjectionEnv::kStatFs, 0, ENOSPC);
  EXPECT_EQ(faults.StatFs("/", &info).error(), ENOSPC);
  EXPECT_EQ(faults.Calls(FaultInjectionEnv::kStatFs), 2);
}

TEST_F(FaultInjectionEnvTest, UnsetClocksAreTheTargetsOwn) {
  FaultInjectionEnv faults(vireline::Env::Default());
  EXPECT_GE(faults.ProcessorClock(), 0);
  EXPECT_GT(faults.WallClockSeconds(), 0);
}

TEST_F(FaultInjectionEnvTest, ReadErrorsOfTheFileItselfReachTheReader) {
  MakeDirs("/folder");
  std::unique_ptr<vireline::SequentialFile> file;
  ASSERT_TRUE(mEnv->NewSequentialFile("/folder", &file).ok());  // a folder opens but cannot be read
  char byte = 0;
  size_t got = 0;
  EXPECT_EQ(file->Read(1, &byte, &got).error(), EISDIR);
  EXPECT_EQ(got, 0u);
  EXPECT_EQ(mEnv->Calls(FaultInjectionEnv::kRead), 1);
}
