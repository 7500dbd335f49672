// The lower layers reach the system paths through the seam: the settings
// object switches the locale, the language list orders itself by it, the
// timing log lives in the data folder and the dependency check looks for
// language packs below the content root.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/BaseUtils.h>
#include <vireline/CMetaInfo.h>
#include <vireline/CSystem.h>

#include "baseutils/UpperLayers.h"
#include "systemdata/SystemDataTest.h"

class LowerLayersConnectionTest : public SystemDataTest {
 protected:
  // A language pack in the system folder whose selection screen's first flag is `locale`.
  void WriteLanguagePack(const std::string& folder, const std::string& locale, const std::string& text) const {
    WriteFile("/QV/Base/" + folder + "/Data/SelectLanguage.json",
              "{\"LanguageSelectionText\": \"" + text + "\", \"Flags\": [{\"LocaleCode\": \"" + locale + "\"}]}");
  }
};

TEST_F(LowerLayersConnectionTest, SeamAnswersWithTheSystemPaths) {
  WriteSettings("fr-ca");
  EXPECT_EQ(vireline::upper::LocaleCode(), "fr-ca");
  EXPECT_EQ(vireline::upper::RootPath(), "/QV/");
  EXPECT_EQ(vireline::upper::BasePath(), "/QV/Base/");
  EXPECT_EQ(vireline::upper::DataPath(), "/QV/Bulk/Data/");
  vireline::upper::SetLocaleCode("de-de");
  EXPECT_EQ(Data()->GetLocaleCode(), "de-de");
}

TEST_F(LowerLayersConnectionTest, SettingTheLocaleInTheSettingsSwitchesTheLibrary) {
  WriteSettings("en-us");
  EXPECT_EQ(Data()->GetLocaleCode(), "en-us");
  {
    LTM::CSystem settings;
    EXPECT_TRUE(settings.SetLocale("fr-fr"));
  }
  EXPECT_EQ(Data()->GetLocaleCode(), "fr-fr");
  EXPECT_EQ(Data()->GetLanguagePackPath(), "/QV/Bulk/LanguagePack_fr/");
  EXPECT_NE(ReadFile(kSettings).find("Locale=fr-fr"), std::string::npos);
}

TEST_F(LowerLayersConnectionTest, LanguageListPutsTheDeviceLocalesPackFirst) {
  WriteSettings("fr-ca");
  WriteLanguagePack("LanguagePack_de", "de-de", "Deutsch");
  WriteLanguagePack("LanguagePack_en", "en-us", "English");
  WriteLanguagePack("LanguagePack_fr", "fr-fr", "Francais");
  std::vector<LanguageInfo> languages = BaseUtils::Instance()->GetLanguages();
  ASSERT_EQ(languages.size(), 3u);
  EXPECT_EQ(languages[0].selectionText, "Francais");
}

TEST_F(LowerLayersConnectionTest, LanguageListFollowsALocaleSetThroughTheSettings) {
  WriteSettings("fr-ca");
  WriteLanguagePack("LanguagePack_en", "en-us", "English");
  WriteLanguagePack("LanguagePack_fr", "fr-fr", "Francais");
  LTM::CSystem().SetLocale("en-gb");
  std::vector<LanguageInfo> languages = BaseUtils::Instance()->GetLanguages();
  ASSERT_EQ(languages.size(), 2u);
  EXPECT_EQ(languages[0].selectionText, "English");
}

TEST_F(LowerLayersConnectionTest, TimingLogIsWrittenInTheDataFolder) {
  MakeDirs("/QV/Bulk/Data");
  CaptureDebugOutput();
  timelogbegin();
  timelog("started");
  timelogdone();
  EXPECT_TRUE(Exists("/QV/Bulk/Data/timelog.txt"));
  // The library's own read of the data folder is no use of the deprecated
  // getter, so the applications' debug output shows no warning for it.
  EXPECT_EQ(DebugOutput().find("deprecated"), std::string::npos) << DebugOutput();
}

TEST_F(LowerLayersConnectionTest, DependencyCheckFindsLanguagePacksBelowTheContentRoot) {
  WritePlatform("Tamsel");
  WriteMeta("/QV/Bulk/ProgramFiles/Game/",
            "Device=KastrelVoyant\nPackageID=APP-1\nVersion=1.0\nType=Application\n"
            "Depends=\"KVR9-0x00170030-000002\",\"1.0.0\"\n");
  LTM::CMetaInfo game("/QV/Bulk/ProgramFiles/Game/");
  EXPECT_EQ(game.CheckCartDependencies() & 2u, 2u);  // not installed: requested
  WriteMeta("/QV/Bulk/LanguagePack_fr/",
            "Device=KastrelVoyant\nPackageID=KVR9-0x00170030-000002\nVersion=1.0.8\nType=LanguagePack\n");
  EXPECT_EQ(game.CheckCartDependencies() & 2u, 0u);
}
