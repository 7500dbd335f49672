#include <gtest/gtest.h>

#include <string>

#include "systemdata/SystemDataTest.h"

class CurrentTitleTest : public SystemDataTest {
 protected:
  const std::string kTitle = "/QV/Bulk/ProgramFiles/Game42/";

  // A title with the given "Locale" tag (none when empty).
  void WriteTitle(const std::string& locale, const std::string& packageId = "PKG-42") const {
    std::string entries = "PackageID=" + packageId + "\nProductID=0x00012345\n";
    if (!locale.empty()) entries += "Locale=" + locale + "\n";
    WriteMeta(kTitle, entries);
  }

  void WriteConversion(const std::string& language, const std::string& json) const {
    WriteFile("/QV/Bulk/LanguagePack_" + language + "/Data/CountryConversion.json", json);
  }
};

TEST_F(CurrentTitleTest, GameIdIsTheLastFolderName) {
  Data()->SetCurrentTitlePath("/a/b/Game42/");
  EXPECT_EQ(Data()->GetCurrentGameID(), "Game42");
  EXPECT_EQ(Data()->GetCurrentTitlePath(), "/a/b/Game42/");
}

TEST_F(CurrentTitleTest, ShortestTitlePathGivesItsOnlyFolder) {
  Data()->SetCurrentTitlePath("/t/");
  EXPECT_EQ(Data()->GetCurrentGameID(), "t");
}

TEST_F(CurrentTitleTest, PathWithoutSlashKeepsTheGameId) {
  Data()->SetCurrentTitlePath("/t/");
  Data()->SetCurrentTitlePath("plain");
  EXPECT_EQ(Data()->GetCurrentGameID(), "t");
  EXPECT_EQ(Data()->GetCurrentTitlePath(), "plain");
}

TEST_F(CurrentTitleTest, RelativePathWithOneFolderKeepsTheGameId) {
  Data()->SetCurrentTitlePath("/t/");
  Data()->SetCurrentTitlePath("u/");
  EXPECT_EQ(Data()->GetCurrentGameID(), "t");
}

TEST_F(CurrentTitleTest, PathWithoutTrailingSlashTakesTheParentFolder) {
  Data()->SetCurrentTitlePath("/a/b/c");
  EXPECT_EQ(Data()->GetCurrentGameID(), "b");
}

TEST_F(CurrentTitleTest, TitleWithoutMetadataHasNoIdentity) {
  WriteTitle("");
  Data()->SetCurrentTitlePath(kTitle);
  Data()->SetCurrentTitlePath("/QV/Bulk/ProgramFiles/Other/");
  EXPECT_EQ(Data()->GetCurrentGameProductID(), 0u);
  EXPECT_EQ(Data()->GetCurrentGamePackageID(), "");
  EXPECT_EQ(Data()->GetCurrentGameID(), "Other");
}

TEST_F(CurrentTitleTest, TitleMetadataGivesItsIdentity) {
  WriteSettings("en-us");
  WriteTitle("");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetCurrentGameProductID(), 0x12345u);
  EXPECT_EQ(Data()->GetCurrentGamePackageID(), "PKG-42");
  EXPECT_EQ(Data()->GetCurrentGameID(), "Game42");
  EXPECT_EQ(Data()->GetLocaleCode(), "en-us");
}

TEST_F(CurrentTitleTest, TitleInTheSameLanguageKeepsTheLocale) {
  WriteSettings("en-us");
  WriteTitle("en-gb");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetLocaleCode(), "en-us");
}

TEST_F(CurrentTitleTest, TitleInAnotherLanguageKeepsTheDeviceCountry) {
  WriteSettings("en-us");
  WriteTitle("fr-fr");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetLocaleCode(), "fr-us");
  EXPECT_EQ(Data()->GetLanguagePackPath(), "/QV/Bulk/LanguagePack_fr/");
}

TEST_F(CurrentTitleTest, CountryConversionGivesTheLanguagePacksSpelling) {
  WriteSettings("en-ca");
  WriteTitle("fr-fr");
  WriteConversion("fr", "{\"us\": \"-fr\", \"ca\": \"_CA\"}");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetLocaleCode(), "fr_CA");
}

TEST_F(CurrentTitleTest, CountryConversionWithoutTheCountryUsesTheDeviceCountry) {
  WriteSettings("en-gb");
  WriteTitle("fr-fr");
  WriteConversion("fr", "{\"us\": \"-fr\"}");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetLocaleCode(), "fr-gb");
}

TEST_F(CurrentTitleTest, CountryConversionOfAnotherLanguageIsNotUsed) {
  WriteSettings("en-ca");
  WriteTitle("fr-fr");
  WriteConversion("es", "{\"ca\": \"-mx\"}");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetLocaleCode(), "fr-ca");
}

TEST_F(CurrentTitleTest, MalformedCountryConversionUsesTheDeviceCountry) {
  WriteSettings("en-ca");
  WriteTitle("fr-fr");
  WriteConversion("fr", "{\"ca\": ");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetLocaleCode(), "fr-ca");
}

TEST_F(CurrentTitleTest, CountryConversionThatIsNotAnObjectUsesTheDeviceCountry) {
  WriteSettings("en-ca");
  WriteTitle("fr-fr");
  WriteConversion("fr", "[\"ca\"]");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetLocaleCode(), "fr-ca");
}

TEST_F(CurrentTitleTest, CountryConversionMemberThatIsNotTextIsIgnored) {
  WriteSettings("en-ca");
  WriteTitle("fr-fr");
  WriteConversion("fr", "{\"ca\": 7}");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetLocaleCode(), "fr-ca");
}

TEST_F(CurrentTitleTest, LanguageChooserReturnsToTheDeviceLocale) {
  WriteSettings("de-de");
  WriteTitle("fr-fr", "KVR9-0x0017000C-000003");
  Data()->SetLocaleCode("es-es");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetLocaleCode(), "de-de");
  EXPECT_EQ(Data()->GetCurrentGamePackageID(), "KVR9-0x0017000C-000003");
  EXPECT_EQ(Data()->GetLanguagePackPath(), "/QV/Bulk/LanguagePack_de/");
}

TEST_F(CurrentTitleTest, TitleWithoutLocaleKeepsALocaleAnotherTitleChose) {
  WriteSettings("en-us");
  Data()->SetLocaleCode("fr-us");
  WriteTitle("");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetLocaleCode(), "fr-us");
}

TEST_F(CurrentTitleTest, TitleLocaleOnAFallbackLocaleUsesItsCountry) {
  WriteMfgLocale("de-at");
  WriteTitle("it-it");
  Data()->SetCurrentTitlePath(kTitle);
  EXPECT_EQ(Data()->GetLocaleCode(), "it-at");
}
