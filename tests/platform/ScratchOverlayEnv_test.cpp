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
