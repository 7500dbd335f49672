#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

#include <vireline/Platform.h>

#include "DeviceRootTest.h"
#include "platform/AtomicFile.h"
#include "platform/FaultInjectionEnv.h"

using vireline::FaultInjectionEnv;

class AtomicFileTest : public DeviceRootTest {
 protected:
  // Replaces `path` with `content` through the atomic routine; its close result.
  int Replace(const std::string& path, const std::string& content) {
    FILE* stream = fopenAtomic(path.c_str(), "w");
    if (stream == nullptr) return -100;
    for (char c : content) {
      if (std::putc(c, stream) == EOF) break;
    }
    return fcloseAtomic(stream);
  }
};

TEST_F(AtomicFileTest, CloseReplacesTheTarget) {
  WriteFile("/QV/a.cfg", "old");
  ASSERT_EQ(Replace("/QV/a.cfg", "new"), 0);
  EXPECT_EQ(ReadFile("/QV/a.cfg"), "new");
  EXPECT_EQ(List("/QV"), std::vector<std::string>{"a.cfg"});
}

TEST_F(AtomicFileTest, TargetIsUntouchedUntilTheClose) {
  WriteFile("/QV/a.cfg", "old");
  FILE* stream = fopenAtomic("/QV/a.cfg", "w");
  ASSERT_NE(stream, nullptr);
  std::fputs("new", stream);
  std::fflush(stream);
  EXPECT_EQ(ReadFile("/QV/a.cfg"), "old");
  ASSERT_EQ(fcloseAtomic(stream), 0);
  EXPECT_EQ(ReadFile("/QV/a.cfg"), "new");
}

TEST_F(AtomicFileTest, CreatesAMissingTarget) {
  MakeDirs("/QV");
  ASSERT_EQ(Replace("/QV/new.cfg", "x=1\n"), 0);
  EXPECT_EQ(ReadFile("/QV/new.cfg"), "x=1\n");
}

TEST_F(AtomicFileTest, MissingFolderFailsTheOpen) {
  EXPECT_EQ(fopenAtomic("/QV/none/a.cfg", "w"), nullptr);
}

TEST_F(AtomicFileTest, ReadModeIsRefused) {
  WriteFile("/QV/a.cfg", "old");
  EXPECT_EQ(fopenAtomic("/QV/a.cfg", "r"), nullptr);
  EXPECT_EQ(errno, EINVAL);
}

TEST_F(AtomicFileTest, AppendModeStartsFromTheOldContent) {
  WriteFile("/QV/log.txt", "one\n");
  FILE* stream = fopenAtomic("/QV/log.txt", "a");
  ASSERT_NE(stream, nullptr);
  std::fputs("two\n", stream);
  ASSERT_EQ(fcloseAtomic(stream), 0);
  EXPECT_EQ(ReadFile("/QV/log.txt"), "one\ntwo\n");
}

TEST_F(AtomicFileTest, NullStreamIsAFailure) { EXPECT_NE(fcloseAtomic(nullptr), 0); }

TEST_F(AtomicFileTest, StreamNotOpenedAtomicallyIsAFailure) {
  WriteFile("/QV/a.cfg", "old");
  FILE* stream = nullptr;
  ASSERT_TRUE(vireline::Env::Current()->OpenStream("/QV/a.cfg", "r", &stream).ok());
  EXPECT_NE(fcloseAtomic(stream), 0);
}

// Each platform operation of a replacement, failed in turn.
struct InjectedFailure {
  const char* name;
  FaultInjectionEnv::Op op;
  int successes;
};

void PrintTo(const InjectedFailure& failure, std::ostream* out) { *out << failure.name; }

class AtomicFileFailureTest : public AtomicFileTest, public ::testing::WithParamInterface<InjectedFailure> {};

TEST_P(AtomicFileFailureTest, OldContentSurvivesAndNoTemporaryIsLeft) {
  WriteFile("/QV/a.cfg", "old content\n");
  FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  env.FailAfter(GetParam().op, GetParam().successes, ENOSPC);
  EXPECT_NE(Replace("/QV/a.cfg", "new content\n"), 0);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile("/QV/a.cfg"), "old content\n");
  EXPECT_EQ(List("/QV"), std::vector<std::string>{"a.cfg"});
}

INSTANTIATE_TEST_SUITE_P(
    EveryStep, AtomicFileFailureTest,
    ::testing::Values(InjectedFailure{"Open", FaultInjectionEnv::kOpen, 0},
                      InjectedFailure{"FirstWrite", FaultInjectionEnv::kWrite, 0},
                      InjectedFailure{"MiddleWrite", FaultInjectionEnv::kWrite, 5},
                      InjectedFailure{"LastWrite", FaultInjectionEnv::kWrite, 11},
                      InjectedFailure{"Sync", FaultInjectionEnv::kSync, 0},
                      InjectedFailure{"Close", FaultInjectionEnv::kClose, 0},
                      InjectedFailure{"Rename", FaultInjectionEnv::kRename, 0}),
    [](const ::testing::TestParamInfo<InjectedFailure>& info) { return std::string(info.param.name); });

TEST_F(AtomicFileTest, FolderSyncFailureIsReportedAfterTheReplace) {
  WriteFile("/QV/a.cfg", "old");
  FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  env.FailAfter(FaultInjectionEnv::kSyncDir, 0, EIO);
  EXPECT_NE(Replace("/QV/a.cfg", "new"), 0);
  vireline::Env::SetCurrent(nullptr);
  // The rename happened; the file holds one whole version, never a mix.
  EXPECT_EQ(ReadFile("/QV/a.cfg"), "new");
  EXPECT_EQ(List("/QV"), std::vector<std::string>{"a.cfg"});
}

TEST_F(AtomicFileTest, TwoWritersEachReplaceWholeAndTheLastCloseWins) {
  WriteFile("/QV/a.cfg", "old");
  FILE* first = fopenAtomic("/QV/a.cfg", "w");
  ASSERT_NE(first, nullptr);
  FILE* second = fopenAtomic("/QV/a.cfg", "w");
  ASSERT_NE(second, nullptr);
  std::fputs("second", second);
  std::fputs("first", first);
  ASSERT_EQ(fcloseAtomic(second), 0);
  ASSERT_EQ(fcloseAtomic(first), 0);
  EXPECT_EQ(ReadFile("/QV/a.cfg"), "first");
}

TEST_F(AtomicFileTest, AppendModeCreatesAMissingTarget) {
  MakeDirs("/QV");
  FILE* stream = fopenAtomic("/QV/new.log", "a");
  ASSERT_NE(stream, nullptr);
  std::fputs("first", stream);
  ASSERT_EQ(fcloseAtomic(stream), 0);
  EXPECT_EQ(ReadFile("/QV/new.log"), "first");
}

TEST_F(AtomicFileTest, AppendingToAFolderFailsAndLeavesNoTemporary) {
  MakeDirs("/QV/folder");
  EXPECT_EQ(fopenAtomic("/QV/folder", "a"), nullptr);
  EXPECT_EQ(List("/QV"), std::vector<std::string>{"folder"});
}

TEST_F(AtomicFileTest, TemporaryNamesTakenEveryTimeFailTheOpen) {
  FaultInjectionEnv faults(vireline::Env::Default());
  faults.FailAfter(FaultInjectionEnv::kOpen, 0, EEXIST);
  vireline::Env::SetCurrent(&faults);
  EXPECT_EQ(fopenAtomic("/QV/a.cfg", "w"), nullptr);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(faults.Calls(FaultInjectionEnv::kOpen), 100);
}

TEST_F(AtomicFileTest, AWriterDroppedWithoutClosingLeavesTheTargetAndNoTemporary) {
  WriteFile("/QV/a.cfg", "old");
  {
    std::unique_ptr<vireline::WritableFile> writer;
    ASSERT_TRUE(vireline::NewAtomicFile("/QV/a.cfg", false, &writer).ok());
    ASSERT_TRUE(writer->Append("new", 3).ok());
  }
  EXPECT_EQ(ReadFile("/QV/a.cfg"), "old");
  EXPECT_EQ(List("/QV"), std::vector<std::string>{"a.cfg"});
}

TEST_F(AtomicFileTest, FilesAtTheTopOfTheRootAndRelativePathsAreReplaced) {
  ASSERT_EQ(Replace("/top.cfg", "top"), 0);
  EXPECT_EQ(ReadFile("/top.cfg"), "top");
  ASSERT_EQ(Replace("relative.cfg", "relative"), 0);
  EXPECT_EQ(ReadFile("/relative.cfg"), "relative");
  EXPECT_EQ(List("/"), (std::vector<std::string>{"relative.cfg", "top.cfg"}));
}

TEST_F(AtomicFileTest, AppendModeCopiesLargeOldContentWhole) {
  std::string old(10000, 'o');
  WriteFile("/QV/big.log", old);
  FILE* stream = fopenAtomic("/QV/big.log", "a");
  ASSERT_NE(stream, nullptr);
  std::fputs("+new", stream);
  ASSERT_EQ(fcloseAtomic(stream), 0);
  EXPECT_EQ(ReadFile("/QV/big.log"), old + "+new");
}

TEST_F(AtomicFileTest, AFailedCopyOfTheOldContentFailsTheAppendOpen) {
  WriteFile("/QV/a.log", "old");
  FaultInjectionEnv faults(vireline::Env::Default());
  faults.FailAfter(FaultInjectionEnv::kWrite, 0, ENOSPC);
  vireline::Env::SetCurrent(&faults);
  EXPECT_EQ(fopenAtomic("/QV/a.log", "a"), nullptr);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile("/QV/a.log"), "old");
  EXPECT_EQ(List("/QV"), std::vector<std::string>{"a.log"});
}
