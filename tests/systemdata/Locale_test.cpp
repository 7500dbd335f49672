#include <gtest/gtest.h>

#include <string>

#include "systemdata/SystemDataInternal.h"
#include "systemdata/SystemDataTest.h"

namespace {

const char kNoSettingsMessage[] = "CSystemData::GetLocaleCode unable to read from settings.cfg, using mfg_data\n";
const char kNoMfgMessage[] = "CSystemData::GetLocaleCode unable to read from mfg_data, using en-us\n";

}  // namespace

using LocaleTest = SystemDataTest;

TEST_F(LocaleTest, SettingsLocaleIsUsedAndKept) {
  WriteSettings("fr-fr");
  WriteMfgLocale("de-de");
  CSystemData* data = Data();
  CaptureDebugOutput();
  EXPECT_EQ(data->GetLocaleCode(), "fr-fr");
  EXPECT_EQ(DebugOutput(), "");
  WriteSettings("es-mx");
  EXPECT_EQ(data->GetLocaleCode(), "fr-fr");  // cached
  EXPECT_EQ(data->GetLanguagePackPath(), "/QV/Bulk/LanguagePack_fr/");
}

TEST_F(LocaleTest, ValidManufacturingLocaleIsUsedWhenTheSettingsHaveNone) {
  WriteSettings("");
  WriteMfgLocale("fr-ca");
  CSystemData* data = Data();
  CaptureDebugOutput();
  EXPECT_EQ(data->GetLocaleCode(), "fr-ca");
  EXPECT_EQ(DebugOutput(), kNoSettingsMessage);
}

TEST_F(LocaleTest, ManufacturingLocaleIsNotKept) {
  WriteSettings("");
  WriteMfgLocale("fr-ca");
  EXPECT_EQ(Data()->GetLocaleCode(), "fr-ca");
  WriteSettings("de-de");
  EXPECT_EQ(Data()->GetLocaleCode(), "de-de");
}

TEST_F(LocaleTest, ManufacturingLocaleWithAnUnderscoreGivesEnglishAndTheSettingsAreReadAgain) {
  WriteSettings("");
  WriteMfgLocale("fr_ca");
  CSystemData* data = Data();
  CaptureDebugOutput();
  EXPECT_EQ(data->GetLocaleCode(), "en-us");
  EXPECT_EQ(DebugOutput(), std::string(kNoSettingsMessage) + kNoMfgMessage);
  WriteSettings("it-it");
  EXPECT_EQ(data->GetLocaleCode(), "it-it");
}

TEST_F(LocaleTest, MissingManufacturingDataGivesEnglish) {
  WriteSettings("");
  CSystemData* data = Data();
  CaptureDebugOutput();
  EXPECT_EQ(data->GetLocaleCode(), "en-us");
  EXPECT_EQ(DebugOutput(), std::string(kNoSettingsMessage) + kNoMfgMessage);
}

TEST_F(LocaleTest, MissingSettingsFileFallsBackToTheManufacturingLocale) {
  WriteMfgLocale("nl-nl");
  EXPECT_EQ(Data()->GetLocaleCode(), "nl-nl");
  EXPECT_FALSE(Exists(kSettings));  // reading the settings never writes them
}

TEST_F(LocaleTest, EmptyManufacturingLocaleGivesEnglish) {
  WriteMfgLocale("");
  EXPECT_EQ(Data()->GetLocaleCode(), "en-us");
}

TEST_F(LocaleTest, ShortManufacturingLocaleGivesEnglish) {
  WriteMfgLocale("fr");
  EXPECT_EQ(Data()->GetLocaleCode(), "en-us");
}

TEST_F(LocaleTest, ManufacturingLocaleIsCutAfterFiveCharacters) {
  WriteMfgLocale("en-gbXYZ");
  EXPECT_EQ(Data()->GetLocaleCode(), "en-gb");
}

TEST_F(LocaleTest, ManufacturingCopiesThatFailTheirChecksumGiveEnglish) {
  WriteMfgLocale("fr-ca");
  std::string broken = ReadFile(mfgtest::CopyPath(0));
  broken[200] ^= 0x55;
  WriteFile(mfgtest::CopyPath(0), broken);
  WriteFile(mfgtest::CopyPath(1), broken);
  EXPECT_EQ(Data()->GetLocaleCode(), "en-us");
}

TEST_F(LocaleTest, SetLocaleCodeKeepsTheCodeAndMovesTheLanguagePack) {
  WriteSettings("en-us");
  CSystemData* data = Data();
  data->SetLocaleCode("de-at");
  EXPECT_EQ(data->GetLocaleCode(), "de-at");
  EXPECT_EQ(data->GetLanguagePackPath(), "/QV/Bulk/LanguagePack_de/");
  EXPECT_EQ(data->GetLanguagePackPath(true), "/QV/Bulk/LanguagePack_de/");
  EXPECT_EQ(data->GetLanguagePackPath(false), "/QV/Bulk/LanguagePack/");
  EXPECT_EQ(data->GetBaseTutorialPath(), "/QV/Bulk/LanguagePack_de/Tutorials/");
  EXPECT_EQ(ReadFile(kSettings), "Locale=en-us\nCurrProfile=0x00000000\n");  // the settings are not changed
}

TEST_F(LocaleTest, EmptyCodeReturnsToTheDeviceLocale) {
  WriteSettings("pt-br");
  CSystemData* data = Data();
  data->SetLocaleCode("de-de");
  data->SetLocaleCode("");
  EXPECT_EQ(data->GetLocaleCode(), "pt-br");
  EXPECT_EQ(data->GetLanguagePackPath(), "/QV/Bulk/LanguagePack_pt/");
}

TEST_F(LocaleTest, EmptyCodeWithoutSettingsUsesTheFallbackWithoutKeepingIt) {
  WriteMfgLocale("sv-se");
  CSystemData* data = Data();
  data->SetLocaleCode("de-de");
  data->SetLocaleCode("");
  EXPECT_EQ(data->GetLocaleCode(), "sv-se");
  WriteSettings("fi-fi");
  EXPECT_EQ(data->GetLocaleCode(), "fi-fi");
}

TEST_F(LocaleTest, LanguagePackFollowsAnUnkeptLocaleOnEveryCall) {
  WriteMfgLocale("sv-se");
  CSystemData* data = Data();
  EXPECT_EQ(data->GetLanguagePackPath(), "/QV/Bulk/LanguagePack_sv/");
  EXPECT_EQ(data->GetBaseTutorialPath(), "/QV/Bulk/LanguagePack_sv/Tutorials/");
  WriteMfgLocale("da-dk");
  EXPECT_EQ(data->GetLanguagePackPath(), "/QV/Bulk/LanguagePack_da/");
  EXPECT_EQ(data->GetBaseTutorialPath(), "/QV/Bulk/LanguagePack_da/Tutorials/");
}

TEST_F(LocaleTest, LocalizedAudioFolderReadsTheLocaleFirstAndWarns) {
  WriteSettings("fr-fr");
  CSystemData* data = Data();
  CaptureDebugOutput();
  EXPECT_EQ(data->GetLocalizedAudioPath(), "/QV/Bulk/LanguagePack_fr/Audio/");
  EXPECT_EQ(DebugOutput(),
            "WARNING:  Use of a deprecated function: Quorvane::Orvo::CPath CSystemData::GetLocalizedAudioPath()\n");
}

TEST_F(LocaleTest, LocalizedAudioFolderFollowsAFallbackLocale) {
  WriteMfgLocale("ja-jp");
  EXPECT_EQ(Data()->GetLocalizedAudioPath(), "/QV/Bulk/LanguagePack_ja/Audio/");
}

TEST_F(LocaleTest, LocalizedAudioFolderCannotBeSet) {
  WriteSettings("en-us");
  Data()->SetLocalizedAudioPath("/elsewhere/");
  EXPECT_EQ(Data()->GetLocalizedAudioPath(), "/QV/Bulk/LanguagePack_en/Audio/");
}

TEST_F(LocaleTest, DeviceLocaleNamesItsSource) {
  using vireline::ReadDeviceLocale;
  WriteMfgLocale("fr-ca");
  EXPECT_EQ(ReadDeviceLocale().source, vireline::kLocaleFromMfgData);
  WriteSettings("en-gb");
  vireline::tDeviceLocale fromSettings = ReadDeviceLocale();
  EXPECT_EQ(fromSettings.code, "en-gb");
  EXPECT_EQ(fromSettings.source, vireline::kLocaleFromSettings);
  WriteSettings("");
  WriteMfgLocale("fr_ca");
  EXPECT_EQ(ReadDeviceLocale().source, vireline::kLocaleDefault);
  EXPECT_STREQ(vireline::LocaleSourceName(vireline::kLocaleFromMfgData),
               "manufacturing data");
}

TEST_F(LocaleTest, LanguageAndCountryOfShortLocales) {
  EXPECT_EQ(vireline::systemdata::LanguageOf("f"), "f");
  EXPECT_EQ(vireline::systemdata::CountryOf("fr-"), "");
  EXPECT_EQ(vireline::systemdata::CountryOf("fr-c"), "c");
  EXPECT_EQ(vireline::systemdata::CountryOf("fr-ca"), "ca");
}
