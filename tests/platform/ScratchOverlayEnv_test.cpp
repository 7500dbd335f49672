// The scratch overlay: library code runs against a device image that it can
// read but never change.
#include "platform/ScratchOverlayEnv.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string>
#include <vector>

#include <vireline/Platform.h>

#include "DeviceRootTest.h"
#include "platform/FaultInjectionEnv.h"

namespace {

// The host environment with $TMPDIR pointing where the test wants.
class TmpDirEnv : public vireline::EnvWrapper {
 public:
  explicit TmpDirEnv(const std::string& tmpDir) : EnvWrapper(vireline::Env::Host()), mTmpDir(tmpDir) {}
  std::string GetEnvironment(const std::string& name) override {
    return name == "TMPDIR" ? mTmpDir : EnvWrapper::GetEnvironment(name);
  }

 private:
  std::string mTmpDir;
};

}  // namespace

class ScratchOverlayEnvTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    MakeDirs("/scratch");
    host.reset(new TmpDirEnv(Host("/scratch")));
    overlay.reset(new vireline::ScratchOverlayEnv(vireline::Env::Default(), host.get()));
    ASSERT_TRUE(overlay->ok());
  }

  void TearDown() override {
    overlay.reset();
    DeviceRootTest::TearDown();
  }

  // The content of device file `path` as seen through the overlay.
  std::string ReadThrough(const std::string& path) {
    vireline::Env::SetCurrent(overlay.get());
    std::unique_ptr<vireline::SequentialFile> in;
    std::string content;
    if (overlay->NewSequentialFile(path, &in).ok()) vireline::ReadToString(in.get(), 1 << 20, &content);
    vireline::Env::SetCurrent(nullptr);
    return content;
  }

  void WriteThrough(const std::string& path, const std::string& content, const char* mode = "w") {
    vireline::Env::SetCurrent(overlay.get());
    FILE* out = fopenAtomic(path.c_str(), mode);
    ASSERT_NE(out, nullptr) << path;
    fwrite(content.data(), 1, content.size(), out);
    EXPECT_EQ(fcloseAtomic(out), 0);
    vireline::Env::SetCurrent(nullptr);
  }

  std::unique_ptr<TmpDirEnv> host;
  std::unique_ptr<vireline::ScratchOverlayEnv> overlay;
};

TEST_F(ScratchOverlayEnvTest, NewFilesLandInTheScratchFolderOnly) {
  WriteThrough("/a/b/new", "fresh");
  EXPECT_FALSE(Exists("/a"));
  EXPECT_EQ(ReadThrough("/a/b/new"), "fresh");
  EXPECT_EQ(overlay->WrittenFiles(), std::vector<std::string>{"/a/b/new"});
}

TEST_F(ScratchOverlayEnvTest, RewrittenImageFileKeepsItsImageContent) {
  WriteFile("/a/f", "old");
  WriteThrough("/a/f", "new");
  EXPECT_EQ(ReadFile("/a/f"), "old");
  EXPECT_EQ(ReadThrough("/a/f"), "new");
}

TEST_F(ScratchOverlayEnvTest, AppendingStartsFromTheImageContent) {
  WriteFile("/a/log", "one\n");
  WriteThrough("/a/log", "two\n", "a");
  EXPECT_EQ(ReadFile("/a/log"), "one\n");
  EXPECT_EQ(ReadThrough("/a/log"), "one\ntwo\n");
}

TEST_F(ScratchOverlayEnvTest, ImageEntriesCannotBeRemovedRenamedOrChanged) {
  WriteFile("/a/f", "x");
  vireline::Env* env = overlay.get();
  EXPECT_EQ(env->RemoveFile("/a/f").error(), EROFS);
  EXPECT_EQ(env->RemoveDir("/a").error(), EROFS);
  EXPECT_EQ(env->Rename("/a/f", "/a/g").error(), EROFS);
  EXPECT_EQ(env->RemoveFile("/a/missing").error(), ENOENT);
  EXPECT_TRUE(env->ChangeMode("/a/f", 0555).ok());  // on the scratch copy
  EXPECT_EQ(ReadFile("/a/f"), "x");
  EXPECT_TRUE(Exists("/a/f"));
  int status = 0;
  EXPECT_EQ(env->RunCommand("/bin/true", &status).error(), EROFS);
}

TEST_F(ScratchOverlayEnvTest, ScratchEntriesCanBeRemoved) {
  WriteThrough("/a/new", "x");
  EXPECT_TRUE(overlay->RemoveFile("/a/new").ok());
  EXPECT_TRUE(overlay->WrittenFiles().empty());
}

TEST_F(ScratchOverlayEnvTest, FolderListingsJoinImageAndScratch) {
  WriteFile("/a/old", "x");
  WriteThrough("/a/new", "y");
  WriteThrough("/a/old", "z");
  std::vector<std::string> names;
  EXPECT_TRUE(overlay->ListDir("/a", &names).ok());
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"new", "old"}));
}

TEST_F(ScratchOverlayEnvTest, FoldersAreMadeInTheScratchFolder) {
  MakeDirs("/have");
  EXPECT_EQ(overlay->MakeDir("/have", 0755).error(), EEXIST);
  EXPECT_TRUE(overlay->MakeDir("/new", 0755).ok());
  EXPECT_FALSE(Exists("/new"));
  vireline::FileInfo info;
  EXPECT_TRUE(overlay->Stat("/new", &info).ok());
  EXPECT_EQ(info.type, vireline::FileType::kDirectory);
}

TEST_F(ScratchOverlayEnvTest, TheScratchFolderGoesWithTheOverlay) {
  WriteThrough("/a/b/new", "x");
  EXPECT_EQ(List("/scratch").size(), 1u);
  overlay.reset();
  EXPECT_TRUE(List("/scratch").empty());
}

TEST_F(ScratchOverlayEnvTest, UnusableScratchFolderFailsEveryWrite) {
  TmpDirEnv badHost(Host("/no/such/place"));
  vireline::ScratchOverlayEnv broken(vireline::Env::Default(), &badHost);
  EXPECT_FALSE(broken.ok());
  FILE* stream = nullptr;
  EXPECT_FALSE(broken.OpenStream("/a/f", "w", &stream).ok());
  EXPECT_EQ(stream, nullptr);
  EXPECT_FALSE(Exists("/a"));
}

TEST_F(ScratchOverlayEnvTest, LinkStatSeesTheScratchCopyFirst) {
  WriteFile("/a/f", "image");
  vireline::FileInfo info;
  ASSERT_TRUE(overlay->LinkStat("/a/f", &info).ok());
  EXPECT_EQ(info.size, 5u);
  WriteThrough("/a/f", "the scratch copy");
  ASSERT_TRUE(overlay->LinkStat("/a/f", &info).ok());
  EXPECT_EQ(info.type, vireline::FileType::kRegular);
  EXPECT_EQ(info.size, 16u);
  EXPECT_EQ(overlay->LinkStat("/a/missing", &info).error(), ENOENT);
}

TEST_F(ScratchOverlayEnvTest, ExclusiveCreationOfAnImageFileFails) {
  WriteFile("/a/f", "image");
  FILE* stream = nullptr;
  EXPECT_EQ(overlay->OpenStream("/a/f", "wx", &stream).error(), EEXIST);
  EXPECT_EQ(stream, nullptr);
  EXPECT_TRUE(overlay->WrittenFiles().empty());
}

TEST_F(ScratchOverlayEnvTest, ScratchFoldersCanBeRemoved) {
  ASSERT_TRUE(overlay->MakeDir("/new", 0755).ok());
  EXPECT_TRUE(overlay->RemoveDir("/new").ok());
  vireline::FileInfo info;
  EXPECT_EQ(overlay->Stat("/new", &info).error(), ENOENT);
  EXPECT_EQ(overlay->RemoveDir("/missing").error(), ENOENT);
}

TEST_F(ScratchOverlayEnvTest, ScratchFilesCanBeRenamedIntoNewFolders) {
  WriteThrough("/a/x", "moved");
  EXPECT_TRUE(overlay->Rename("/a/x", "/b/c/y").ok());
  EXPECT_EQ(ReadThrough("/b/c/y"), "moved");
  EXPECT_EQ(overlay->WrittenFiles(), std::vector<std::string>{"/b/c/y"});
  EXPECT_EQ(overlay->Rename("/missing", "/z").error(), ENOENT);
  EXPECT_FALSE(Exists("/b"));
}

TEST_F(ScratchOverlayEnvTest, ChangingTheModeOfAScratchFileKeepsItsContent) {
  WriteThrough("/a/n", "x");
  ASSERT_TRUE(overlay->ChangeMode("/a/n", 0600).ok());
  vireline::FileInfo info;
  ASSERT_TRUE(overlay->Stat("/a/n", &info).ok());
  EXPECT_EQ(info.mode, 0600u);
  EXPECT_EQ(ReadThrough("/a/n"), "x");
}

TEST_F(ScratchOverlayEnvTest, ImageFoldersAndMissingPathsKeepTheirModes) {
  MakeDirs("/folder");
  EXPECT_EQ(overlay->ChangeMode("/folder", 0700).error(), EROFS);
  EXPECT_EQ(overlay->ChangeMode("/missing", 0700).error(), ENOENT);
  EXPECT_TRUE(overlay->WrittenFiles().empty());
}

TEST_F(ScratchOverlayEnvTest, FoldersOfTheScratchFolderAloneAreListedAndSynced) {
  WriteThrough("/only/n", "x");
  std::vector<std::string> names;
  EXPECT_TRUE(overlay->ListDir("/only", &names).ok());
  EXPECT_EQ(names, std::vector<std::string>{"n"});
  EXPECT_TRUE(overlay->SyncDir("/only").ok());
  EXPECT_TRUE(overlay->SyncDir("/image-only").ok());  // nothing of it was written
}

TEST_F(ScratchOverlayEnvTest, ASecondOverlayGetsAScratchFolderOfItsOwn) {
  vireline::ScratchOverlayEnv second(vireline::Env::Default(), host.get());
  ASSERT_TRUE(second.ok());
  EXPECT_EQ(List("/scratch").size(), 2u);
  WriteThrough("/a/first", "x");
  EXPECT_TRUE(second.WrittenFiles().empty());
}

TEST_F(ScratchOverlayEnvTest, WithoutTmpDirTheScratchFolderIsMadeInTmp) {
  TmpDirEnv noTmpDir("");
  vireline::ScratchOverlayEnv inTmp(vireline::Env::Default(), &noTmpDir);
  ASSERT_TRUE(inTmp.ok());
  FILE* stream = nullptr;
  ASSERT_TRUE(inTmp.OpenStream("/a/f", "w", &stream).ok());
  EXPECT_TRUE(inTmp.CloseStream(stream).ok());
  EXPECT_EQ(inTmp.WrittenFiles(), std::vector<std::string>{"/a/f"});
  EXPECT_TRUE(List("/scratch").size() == 1u);  // the fixture's own
}

// Copying an image file up before it changes fails cleanly at every step.
class ScratchOverlayCopyUpTest : public ScratchOverlayEnvTest {
 protected:
  void SetUp() override {
    ScratchOverlayEnvTest::SetUp();
    faults.reset(new vireline::FaultInjectionEnv(host.get()));
    overlay.reset(new vireline::ScratchOverlayEnv(vireline::Env::Default(), faults.get()));
    ASSERT_TRUE(overlay->ok());
    WriteFile("/a/log", "one\n");
  }

  void TearDown() override {
    overlay.reset();
    faults.reset();
    ScratchOverlayEnvTest::TearDown();
  }

  // Opening the image file for appending fails with `error`, and nothing is written.
  void ExpectAppendFails(int error) {
    FILE* stream = nullptr;
    EXPECT_EQ(overlay->OpenStream("/a/log", "a", &stream).error(), error);
    EXPECT_EQ(stream, nullptr);
    EXPECT_EQ(ReadFile("/a/log"), "one\n");
  }

  std::unique_ptr<vireline::FaultInjectionEnv> faults;
};

TEST_F(ScratchOverlayCopyUpTest, FailedFolderCreation) {
  faults->FailAfter(vireline::FaultInjectionEnv::kMakeDir, 0, EACCES);
  ExpectAppendFails(EACCES);
  EXPECT_TRUE(overlay->WrittenFiles().empty());
}

TEST_F(ScratchOverlayCopyUpTest, FailedOpenOfTheCopy) {
  faults->FailAfter(vireline::FaultInjectionEnv::kOpen, 0, ENOSPC);
  ExpectAppendFails(ENOSPC);
}

TEST_F(ScratchOverlayCopyUpTest, FailedWriteOfTheCopy) {
  faults->FailAfter(vireline::FaultInjectionEnv::kWrite, 0, ENOSPC);
  ExpectAppendFails(ENOSPC);
}

TEST_F(ScratchOverlayCopyUpTest, FailedCloseOfTheCopy) {
  faults->FailAfter(vireline::FaultInjectionEnv::kClose, 0, EIO);
  ExpectAppendFails(EIO);
}

TEST_F(ScratchOverlayCopyUpTest, FailedModeOfTheCopy) {
  faults->FailAfter(vireline::FaultInjectionEnv::kChangeMode, 0, EPERM);
  ExpectAppendFails(EPERM);
}

TEST_F(ScratchOverlayEnvTest, AnUnusableScratchFolderNeverChangesTheModeOfAHostFile) {
  TmpDirEnv badHost(Host("/no/such/place"));
  vireline::ScratchOverlayEnv broken(vireline::Env::Default(), &badHost);
  ASSERT_FALSE(broken.ok());
  WriteFile("/victim", "x");
  const std::string hostVictim = Host("/victim");
  vireline::FileInfo before;
  ASSERT_TRUE(vireline::Env::Host()->Stat(hostVictim, &before).ok());
  // The image has no such file, so without a scratch folder nothing may change.
  EXPECT_EQ(broken.ChangeMode(hostVictim, 0600).error(), EROFS);
  vireline::FileInfo after;
  ASSERT_TRUE(vireline::Env::Host()->Stat(hostVictim, &after).ok());
  EXPECT_EQ(after.mode, before.mode);
}

TEST_F(ScratchOverlayEnvTest, AnUnusableScratchFolderMakesNoFolders) {
  TmpDirEnv badHost(Host("/no/such/place"));
  vireline::ScratchOverlayEnv broken(vireline::Env::Default(), &badHost);
  ASSERT_FALSE(broken.ok());
  EXPECT_EQ(broken.MakeDir("/new", 0755).error(), EROFS);
  EXPECT_TRUE(broken.SyncDir("/new").ok());  // nothing of it was written
  EXPECT_TRUE(broken.WrittenFiles().empty());
  EXPECT_FALSE(Exists("/new"));
}

// The image itself fails while a file of it is copied up.
class ScratchOverlayImageFaultTest : public ScratchOverlayEnvTest {
 protected:
  void SetUp() override {
    ScratchOverlayEnvTest::SetUp();
    overlay.reset(new vireline::ScratchOverlayEnv(&faults, host.get()));
    ASSERT_TRUE(overlay->ok());
    WriteFile("/a/log", "one\n");
  }

  vireline::FaultInjectionEnv faults{vireline::Env::Default()};
};

TEST_F(ScratchOverlayImageFaultTest, AnImageFileThatDoesNotOpenIsNotCopied) {
  faults.FailAfter(vireline::FaultInjectionEnv::kOpen, 0, EACCES);
  FILE* stream = nullptr;
  EXPECT_EQ(overlay->OpenStream("/a/log", "a", &stream).error(), EACCES);
  EXPECT_EQ(stream, nullptr);
  EXPECT_TRUE(overlay->WrittenFiles().empty());
}

TEST_F(ScratchOverlayImageFaultTest, AnImageFileThatCannotBeReadIsNotCopied) {
  faults.FailAfter(vireline::FaultInjectionEnv::kRead, 0, EIO);
  FILE* stream = nullptr;
  EXPECT_EQ(overlay->OpenStream("/a/log", "a", &stream).error(), EIO);
  EXPECT_EQ(stream, nullptr);
  EXPECT_EQ(ReadFile("/a/log"), "one\n");
}
