// The file objects the platform hands out: on the device root, through the
// fault-injecting platform, and with failures that name their path.
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <string>

#include "DeviceRootTest.h"
#include "platform/Env.h"
#include "platform/FaultInjectionEnv.h"

using vireline::Env;
using vireline::FaultInjectionEnv;
using vireline::RandomRWFile;
using vireline::Result;
using vireline::SequentialFile;
using vireline::WritableFile;

namespace {

std::string ReadAll(SequentialFile* file) {
  std::string text;
  char buffer[3];
  size_t got = 0;
  while (file->Read(sizeof buffer, buffer, &got).ok() && got > 0) text.append(buffer, got);
  return text;
}

}  // namespace

class FileObjectsTest : public DeviceRootTest {};

TEST_F(FileObjectsTest, ASequentialFileReadsTheWholeFileThenReportsItsEnd) {
  WriteFile("/QV/a.txt", "hello, world");
  std::unique_ptr<SequentialFile> file;
  ASSERT_TRUE(Env::Current()->NewSequentialFile("/QV/a.txt", &file).ok());
  EXPECT_EQ(ReadAll(file.get()), "hello, world");
  size_t got = 99;
  char scratch[4];
  EXPECT_TRUE(file->Read(sizeof scratch, scratch, &got).ok());
  EXPECT_EQ(got, 0u);
}

TEST_F(FileObjectsTest, AMissingFileFailsWithItsDevicePath) {
  std::unique_ptr<SequentialFile> file;
  Result result = Env::Current()->NewSequentialFile("/QV/missing.txt", &file);
  EXPECT_EQ(result.error(), ENOENT);
  EXPECT_EQ(result.path(), "/QV/missing.txt");
  EXPECT_EQ(file, nullptr);
}

TEST_F(FileObjectsTest, AWritableFileReplacesTheContentAndKeepsItAfterClose) {
  WriteFile("/QV/w.txt", "old content that is longer");
  std::unique_ptr<WritableFile> file;
  ASSERT_TRUE(Env::Current()->NewWritableFile("/QV/w.txt", &file).ok());
  EXPECT_TRUE(file->Append("new", 3).ok());
  EXPECT_TRUE(file->Append(" text", 5).ok());
  EXPECT_TRUE(file->Sync().ok());
  EXPECT_TRUE(file->Close().ok());
  EXPECT_FALSE(file->Close().ok());
  EXPECT_EQ(ReadFile("/QV/w.txt"), "new text");
}

TEST_F(FileObjectsTest, AnExclusiveFileIsNeverMadeOverAnExistingOne) {
  WriteFile("/QV/x.txt", "kept");
  std::unique_ptr<WritableFile> file;
  EXPECT_EQ(Env::Current()->NewExclusiveFile("/QV/x.txt", &file).error(), EEXIST);
  EXPECT_EQ(ReadFile("/QV/x.txt"), "kept");
  ASSERT_TRUE(Env::Current()->NewExclusiveFile("/QV/y.txt", &file).ok());
  EXPECT_TRUE(file->Append("made", 4).ok());
  file.reset();  // closing by letting go keeps what was written
  EXPECT_EQ(ReadFile("/QV/y.txt"), "made");
}

TEST_F(FileObjectsTest, ARandomRWFileReadsWritesAndAppendsInPlace) {
  WriteFile("/QV/r.bin", "0123456789");
  std::unique_ptr<RandomRWFile> file;
  ASSERT_TRUE(Env::Current()->NewRandomRWFile("/QV/r.bin", &file).ok());
  uint64_t size = 0;
  EXPECT_TRUE(file->Size(&size).ok());
  EXPECT_EQ(size, 10u);
  char bytes[4] = {};
  size_t got = 0;
  EXPECT_TRUE(vireline::ReadFullyAt(file.get(), 6, sizeof bytes, bytes, &got).ok());
  EXPECT_EQ(std::string(bytes, got), "6789");
  EXPECT_TRUE(file->Write(2, "ab", 2).ok());
  EXPECT_TRUE(file->AppendAtEnd("!", 1).ok());
  EXPECT_TRUE(file->Close().ok());
  EXPECT_EQ(ReadFile("/QV/r.bin"), "01ab456789!");
}

TEST_F(FileObjectsTest, ARandomRWFileIsNeverCreated) {
  std::unique_ptr<RandomRWFile> file;
  EXPECT_EQ(Env::Current()->NewRandomRWFile("/QV/none.bin", &file).error(), ENOENT);
  EXPECT_FALSE(Exists("/QV/none.bin"));
}

TEST_F(FileObjectsTest, EraseFillsAPlainFileStandingInForFlash) {
  WriteFile("/dev/mtd3", "abcdefgh");
  std::unique_ptr<RandomRWFile> file;
  ASSERT_TRUE(Env::Current()->NewRandomRWFile("/dev/mtd3", &file).ok());
  EXPECT_TRUE(file->Erase(2, 4).ok());
  file.reset();
  EXPECT_EQ(ReadFile("/dev/mtd3"), std::string("ab") + std::string(4, '\xFF') + "gh");
}

TEST_F(FileObjectsTest, ReadFullyGoesOnAfterShortReads) {
  WriteFile("/QV/f.txt", "abcdef");
  FaultInjectionEnv faults(Env::Default());
  std::unique_ptr<SequentialFile> file;
  ASSERT_TRUE(faults.NewSequentialFile("/QV/f.txt", &file).ok());
  char bytes[8];
  size_t got = 0;
  EXPECT_TRUE(vireline::ReadFully(file.get(), sizeof bytes, bytes, &got).ok());
  EXPECT_EQ(std::string(bytes, got), "abcdef");
  EXPECT_EQ(faults.Calls(FaultInjectionEnv::kRead), 7);  // a byte at a time, then the end
}

TEST_F(FileObjectsTest, TheFaultInjectingPlatformFailsTheChosenByteOfAWrite) {
  MakeDirs("/QV");
  FaultInjectionEnv faults(Env::Default());
  std::unique_ptr<WritableFile> file;
  ASSERT_TRUE(faults.NewWritableFile("/QV/w.txt", &file).ok());
  faults.FailAfter(FaultInjectionEnv::kWrite, 3, ENOSPC);
  EXPECT_EQ(file->Append("abcdef", 6).error(), ENOSPC);
  EXPECT_TRUE(file->Close().ok());
  EXPECT_EQ(ReadFile("/QV/w.txt"), "abc");
}

TEST_F(FileObjectsTest, TheFaultInjectingPlatformFailsOpensSyncsClosesAndErases) {
  WriteFile("/dev/mtd0", std::string(8, 'x'));
  FaultInjectionEnv faults(Env::Default());
  std::unique_ptr<RandomRWFile> file;
  faults.FailAfter(FaultInjectionEnv::kOpen, 0, EACCES, true);
  EXPECT_EQ(faults.NewRandomRWFile("/dev/mtd0", &file).error(), EACCES);
  ASSERT_TRUE(faults.NewRandomRWFile("/dev/mtd0", &file).ok());
  faults.FailAfter(FaultInjectionEnv::kErase, 0);
  faults.FailAfter(FaultInjectionEnv::kSync, 0);
  faults.FailAfter(FaultInjectionEnv::kClose, 0, ENOSPC);
  EXPECT_FALSE(file->Erase(0, 8).ok());
  EXPECT_FALSE(file->Sync().ok());
  EXPECT_EQ(file->Close().error(), ENOSPC);
  EXPECT_EQ(ReadFile("/dev/mtd0"), std::string(8, 'x'));
}

TEST_F(FileObjectsTest, AnAppendAtTheEndIsOneWriteForTheFaultInjectingPlatform) {
  WriteFile("/log.bin", "start");
  FaultInjectionEnv faults(Env::Default());
  EXPECT_TRUE(faults.AppendToFile("/log.bin", "+more", 5).ok());
  EXPECT_EQ(faults.Calls(FaultInjectionEnv::kWrite), 1);
  faults.FailAfter(FaultInjectionEnv::kWrite, 0);
  faults.AppendToFile("/log.bin", "+lost", 5);
  EXPECT_EQ(ReadFile("/log.bin"), "start+more");
}
