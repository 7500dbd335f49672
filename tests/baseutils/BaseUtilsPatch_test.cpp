// Patched and external launches through the launcher's wrapper script, and
// the free space of the running title's volume.
#include <vireline/BaseUtils.h>
#include <vireline/CSystemData.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "DeviceRootTest.h"
#include "platform/Env.h"

namespace {

const char kWrapper[] = "/tmp/oam-wrapper";

// Answers the environment and space queries itself; everything else reaches the device root.
class FakeHostEnv : public vireline::EnvWrapper {
 public:
  FakeHostEnv() : EnvWrapper(vireline::Env::Default()) {}

  std::string GetEnvironment(const std::string& name) override {
    return name == "LD_LIBRARY_PATH" ? libraryPath : std::string();
  }

  vireline::Result StatFs(const std::string& path, vireline::FsInfo* info) override {
    statFsPath = path;
    if (!statFsWorks) return vireline::Result::Error(EIO);
    info->blockSize = 4096;
    info->blocksAvailable = 3000000;  // more than 4 GiB in all
    return vireline::Result::Ok();
  }

  std::string libraryPath;
  std::string statFsPath;
  bool statFsWorks = true;
};

}  // namespace

class BaseUtilsPatchTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    MakeDirs("/tmp");
    vireline::Env::SetCurrent(&env);
  }

  static CSystemData* Data() { return CSystemData::Instance(); }

  std::string Bulk() const { return Data()->GetRootPath() + "Bulk/"; }

  FakeHostEnv env;
  BaseUtils* utils = BaseUtils::Instance();
};

TEST_F(BaseUtilsPatchTest, CartridgePatchesLiveInTheCartridgesLibFolder) {
  EXPECT_EQ(utils->GetPatchPath(Data()->GetCartPath() + "Game/Game.so"), Data()->GetCartPath() + "lib/");
}

TEST_F(BaseUtilsPatchTest, BulkPackagePatchIsNamedByItsMetadata) {
  WriteFile(Bulk() + "ProgramFiles/App/meta.inf", "PackageID=APP\nPatchLibs=Patch-7/lib/\n");
  EXPECT_EQ(utils->GetPatchPath(Bulk() + "ProgramFiles/App/App.so"), Data()->GetDownloadsPath() + "Patch-7/lib/");
}

TEST_F(BaseUtilsPatchTest, BulkPackageWithoutPatchLibsGivesTheDownloadsFolder) {
  WriteFile(Bulk() + "ProgramFiles/App/meta.inf", "PackageID=APP\n");
  EXPECT_EQ(utils->GetPatchPath(Bulk() + "ProgramFiles/App/App.so"), Data()->GetDownloadsPath());
}

TEST_F(BaseUtilsPatchTest, OtherPathsHaveNoPatch) {
  EXPECT_EQ(utils->GetPatchPath("/usr/lib/App.so"), "");
  EXPECT_EQ(utils->GetPatchPath(""), "");
}

TEST_F(BaseUtilsPatchTest, NotPatchedWithoutTheWrapper) {
  env.libraryPath = Data()->GetCartPath() + "lib/";
  EXPECT_FALSE(utils->IsPatched(Data()->GetCartPath() + "Game/Game.so"));
}

TEST_F(BaseUtilsPatchTest, PatchedWhenTheLibraryPathHoldsThePatchFolder) {
  WriteFile(kWrapper, "AppManager x 0\n");
  env.libraryPath = "/usr/lib:" + Data()->GetCartPath() + "lib/:/lib";
  EXPECT_TRUE(utils->IsPatched(Data()->GetCartPath() + "Game/Game.so"));
  env.libraryPath = "/usr/lib";
  EXPECT_FALSE(utils->IsPatched(Data()->GetCartPath() + "Game/Game.so"));
}

TEST_F(BaseUtilsPatchTest, EmptyPatchPathCountsAsPatchedWhileTheWrapperExists) {
  WriteFile(kWrapper, "AppManager x 0\n");
  EXPECT_TRUE(utils->IsPatched("/usr/lib/App.so"));
}

TEST_F(BaseUtilsPatchTest, HasPatchWhenThePatchIsNewerThanTheSystemLibraries) {
  WriteFile(Data()->GetBasePath() + "lib/meta.inf", "Version=1.9\n");
  WriteFile(Data()->GetCartPath() + "lib/meta.inf", "Version=1.10\n");
  EXPECT_TRUE(utils->HasPatch(Data()->GetCartPath() + "Game/Game.so"));
}

TEST_F(BaseUtilsPatchTest, NoPatchWhenThePatchIsNotNewer) {
  WriteFile(Data()->GetBasePath() + "lib/meta.inf", "Version=2.0\n");
  WriteFile(Data()->GetCartPath() + "lib/meta.inf", "Version=2.0\n");
  EXPECT_FALSE(utils->HasPatch(Data()->GetCartPath() + "Game/Game.so"));
  WriteFile(Data()->GetCartPath() + "lib/meta.inf", "Version=1.5\n");
  EXPECT_FALSE(utils->HasPatch(Data()->GetCartPath() + "Game/Game.so"));
}

TEST_F(BaseUtilsPatchTest, NoPatchWhenThePatchFolderIsMissing) {
  WriteFile(Data()->GetBasePath() + "lib/meta.inf", "Version=1.0\n");
  EXPECT_FALSE(utils->HasPatch(Data()->GetCartPath() + "Game/Game.so"));
}

TEST_F(BaseUtilsPatchTest, SetPatchWritesTheLaunchLineWithTheLibraryPathFirst) {
  WriteFile("/QV/Bulk/settings.cfg", "CurrProfile=2\n");
  EXPECT_TRUE(utils->SetPatch("/QV/Cart/lib/", "GAME-1"));
  EXPECT_EQ(ReadFile(kWrapper), "LD_LIBRARY_PATH=/QV/Cart/lib/:$LD_LIBRARY_PATH AppManager GAME-1 2\n");
  EXPECT_EQ(std::filesystem::status(Host(kWrapper)).permissions() & std::filesystem::perms::all,
            std::filesystem::perms(0555));
  EXPECT_TRUE(utils->IsExternal("anything"));
}

TEST_F(BaseUtilsPatchTest, SetPatchWithoutLibraryPathWritesThePlainLaunchLine) {
  WriteFile("/QV/Bulk/settings.cfg", "CurrProfile=1\n");
  EXPECT_TRUE(utils->SetPatch("", "GAME-2"));
  EXPECT_EQ(ReadFile(kWrapper), "AppManager GAME-2 1\n");
}

TEST_F(BaseUtilsPatchTest, SetExternalIsSetPatchWithoutLibraryPath) {
  WriteFile("/QV/Bulk/settings.cfg", "CurrProfile=0\n");
  EXPECT_TRUE(utils->SetExternal("BOOK-3"));
  EXPECT_EQ(ReadFile(kWrapper), "AppManager BOOK-3 0\n");
}

TEST_F(BaseUtilsPatchTest, SetPatchReplacesAnEarlierWrapper) {
  WriteFile(kWrapper, "AppManager OLD 0\nmore\n");
  EXPECT_TRUE(utils->SetExternal("NEW"));
  EXPECT_EQ(ReadFile(kWrapper).find("OLD"), std::string::npos);
}

TEST_F(BaseUtilsPatchTest, SetPatchIsTrueEvenWhenTheWrapperCannotBeWritten) {
  std::filesystem::remove_all(Host("/tmp"));
  EXPECT_TRUE(utils->SetPatch("/lib/", "GAME"));
  EXPECT_FALSE(Exists(kWrapper));
  EXPECT_FALSE(utils->IsExternal("GAME"));
}

TEST_F(BaseUtilsPatchTest, RemovePatchDeletesTheWrapper) {
  utils->SetExternal("GAME");
  EXPECT_TRUE(utils->IsExternal("GAME"));
  EXPECT_TRUE(utils->RemovePatch("GAME"));
  EXPECT_FALSE(Exists(kWrapper));
  EXPECT_FALSE(utils->IsExternal("GAME"));
  EXPECT_TRUE(utils->RemovePatch("GAME"));
}

TEST_F(BaseUtilsPatchTest, ExternalLaunchWhenTheMetadataAsksForACleanLaunch) {
  WriteFile(Bulk() + "ProgramFiles/Clean/meta.inf", "CleanLaunch=1\n");
  WriteFile(Bulk() + "ProgramFiles/Dirty/meta.inf", "CleanLaunch=2\n");
  WriteFile(Bulk() + "ProgramFiles/Plain/meta.inf", "PackageID=P\n");
  EXPECT_TRUE(utils->HasExternalLaunch(Bulk() + "ProgramFiles/Clean/Clean.so"));
  EXPECT_FALSE(utils->HasExternalLaunch(Bulk() + "ProgramFiles/Dirty/Dirty.so"));
  EXPECT_FALSE(utils->HasExternalLaunch(Bulk() + "ProgramFiles/Plain/Plain.so"));
  EXPECT_FALSE(utils->HasExternalLaunch(Bulk() + "ProgramFiles/Missing/x.so"));
}

TEST_F(BaseUtilsPatchTest, BulkFreeBytesOfTheCurrentTitlesDataFolderInSixtyFourBits) {
  WriteFile("/QV/Bulk/settings.cfg", "CurrProfile=1\n");
  WriteFile(Bulk() + "ProgramFiles/Game/meta.inf", "PackageID=GAME-9\n");
  Data()->SetCurrentTitlePath(Bulk() + "ProgramFiles/Game/");
  EXPECT_EQ(utils->GetBulkFreeBytes(), 4096ull * 3000000ull);
  EXPECT_EQ(env.statFsPath, Data()->GetLocalDataPath(1, "Game"));
}

TEST_F(BaseUtilsPatchTest, BulkFreeBytesIsZeroWhenTheVolumeCannotBeQueried) {
  env.statFsWorks = false;
  EXPECT_EQ(utils->GetBulkFreeBytes(), 0u);
}
