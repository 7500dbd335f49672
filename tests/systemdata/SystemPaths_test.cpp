#include <gtest/gtest.h>

#include <vireline/Platform.h>

#include "systemdata/SystemDataInternal.h"
#include "systemdata/SystemDataTest.h"

using SystemPathsTest = SystemDataTest;

TEST_F(SystemPathsTest, InstanceIsCreatedOnceAndKeptForTheProcess) {
  CSystemData* first = CSystemData::Instance();
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(CSystemData::Instance(), first);
}

TEST_F(SystemPathsTest, RootAndPackageFoldersComeFromTheDefaultLayout) {
  CSystemData* data = Data();
  EXPECT_EQ(data->GetRootPath(), "/QV/");
  EXPECT_EQ(data->GetCartPath(), "/QV/Cart/");
  EXPECT_EQ(data->GetBasePath(), "/QV/Base/");
  EXPECT_EQ(data->GetProgramFilesPath(), "/QV/Bulk/ProgramFiles/");
  EXPECT_EQ(data->GetDownloadsPath(), "/QV/Bulk/Downloads/");
  EXPECT_EQ(data->GetCYOsPath(), "/QV/Bulk/Downloads/");
  EXPECT_EQ(data->GetMDLsPath(), "/QV/Bulk/Downloads/");
  EXPECT_EQ(data->GetAvatarsPath(), "/QV/Base/ZantoAvatars/");
  EXPECT_EQ(data->GetDefaultAvatarPath(), "/QV/Base/ZantoAvatars/Avatar1/");
  EXPECT_EQ(data->GetFlashPath(), "/QV/Base/Flash/");
  EXPECT_EQ(data->GetPetResourcesPath(), "/QV/Base/PetResources/");
  EXPECT_EQ(data->GetFlashAppPath(), "/QV/Base/Flash/FlashApp.so");
  EXPECT_EQ(data->GetLanguagePackPath(false), "/QV/Bulk/LanguagePack/");
}

TEST_F(SystemPathsTest, SetRootPathsIsRepeatableAndReportsSuccess) {
  EXPECT_TRUE(Data()->SetRootPaths());
  EXPECT_EQ(Data()->GetRootPath(), "/QV/");
}

TEST_F(SystemPathsTest, NothingIsCreatedOrReadWhenTheInstanceIsMade) {
  Data();
  EXPECT_TRUE(List("/").empty());
}

TEST_F(SystemPathsTest, CyoFolderGetsASlashOnlyWhenItLacksOne) {
  EXPECT_EQ(Data()->GetCYOsPath(), "/QV/Bulk/Downloads/");  // held with its slash: none added
  EXPECT_EQ(vireline::systemdata::SlashEnded("/QV/Bulk/Downloads"), "/QV/Bulk/Downloads/");
  EXPECT_EQ(vireline::systemdata::SlashEnded("/QV/Bulk/Downloads/"), "/QV/Bulk/Downloads/");
  EXPECT_EQ(vireline::systemdata::SlashEnded(""), "/");
}

TEST_F(SystemPathsTest, ZantoLegacyFlagSwitchesTheMicroDownloadFolder) {
  CSystemData* data = Data();
  EXPECT_FALSE(data->GetZantoLegacyFlag());
  data->SetZantoLegacyFlag(true);
  EXPECT_TRUE(data->GetZantoLegacyFlag());
  EXPECT_EQ(data->GetMDLsPath(), "/QV/Base/ZantoMDLs/");
  EXPECT_EQ(data->GetDownloadsPath(), "/QV/Bulk/Downloads/");
  data->SetZantoLegacyFlag(false);
  EXPECT_EQ(data->GetMDLsPath(), "/QV/Bulk/Downloads/");
}

TEST_F(SystemPathsTest, EarlyPreKFlagIsOnlyRecorded) {
  EXPECT_FALSE(Data()->GetEarlyPreKBlackListed());
  Data()->SetEarlyPreKBlackListed(true);
  EXPECT_TRUE(Data()->GetEarlyPreKBlackListed());
}

TEST_F(SystemPathsTest, TitleValuesAreEmptyBeforeATitleIsSet) {
  EXPECT_EQ(Data()->GetCurrentTitlePath(), "");
  EXPECT_EQ(Data()->GetCurrentGameID(), "");
  EXPECT_EQ(Data()->GetCurrentGameProductID(), 0u);
  EXPECT_EQ(Data()->GetCurrentGamePackageID(), "");
}

TEST_F(SystemPathsTest, ConstructionRaisesItsDebugChannelToLevel5) {
  Data();
  EXPECT_EQ(PlatformDebug(vireline::systemdata::kDebugModule).GetEffectiveDebugLevel(), 5);
}

struct DeprecatedGetter {
  const char* name;
  CPath (CSystemData::*getter)();
  const char* result;
  const char* signature;
};

void PrintTo(const DeprecatedGetter& getter, std::ostream* out) { *out << getter.name; }

class DeprecatedGetterTest : public SystemDataTest, public ::testing::WithParamInterface<DeprecatedGetter> {};

TEST_P(DeprecatedGetterTest, WarnsWithItsSignatureAndStillAnswers) {
  const DeprecatedGetter& getter = GetParam();
  CSystemData* data = Data();
  CaptureDebugOutput();
  EXPECT_EQ((data->*getter.getter)(), getter.result);
  EXPECT_EQ(DebugOutput(), std::string("WARNING:  Use of a deprecated function: ") + getter.signature + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    AllDeprecated, DeprecatedGetterTest,
    ::testing::Values(
        DeprecatedGetter{"DataPath", &CSystemData::GetDataPath, "/QV/Bulk/Data/",
                         "Quorvane::Orvo::CPath CSystemData::GetDataPath()"},
        DeprecatedGetter{"UniversalAudioPath", &CSystemData::GetUniversalAudioPath, "/QV/Bulk/LanguagePack/Audio/",
                         "Quorvane::Orvo::CPath CSystemData::GetUniversalAudioPath()"},
        DeprecatedGetter{"DefaultArtPath", &CSystemData::GetDefaultArtPath, "/QV/Bulk/LanguagePack/Art/",
                         "Quorvane::Orvo::CPath CSystemData::GetDefaultArtPath()"},
        DeprecatedGetter{"CustomizedArtPath", &CSystemData::GetCustomizedArtPath, "/QV/Bulk/LanguagePack/Art/",
                         "Quorvane::Orvo::CPath CSystemData::GetCustomizedArtPath()"},
        DeprecatedGetter{"UniversalArtPath", &CSystemData::GetUniversalArtPath, "/QV/Bulk/LanguagePack/Art/",
                         "Quorvane::Orvo::CPath CSystemData::GetUniversalArtPath()"}),
    [](const ::testing::TestParamInfo<DeprecatedGetter>& info) { return std::string(info.param.name); });

TEST_F(SystemPathsTest, PlainGettersPrintNothing) {
  CSystemData* data = Data();
  CaptureDebugOutput();
  data->GetRootPath();
  data->GetBasePath();
  data->GetProgramFilesPath();
  data->GetCYOsPath();
  data->GetDataProfilePath(0);
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(SystemPathsTest, CurrentPlayerIsReadFromTheSettingsEveryTime) {
  WriteSettings("en-us", 1);
  EXPECT_EQ(Data()->GetCurrentPlayerID(), 1);
  WriteSettings("en-us", 2);
  EXPECT_EQ(Data()->GetCurrentPlayerID(), 2);
}

TEST_F(SystemPathsTest, CurrentPlayerIsMinusOneWithoutSettings) {
  EXPECT_EQ(Data()->GetCurrentPlayerID(), -1);
}
