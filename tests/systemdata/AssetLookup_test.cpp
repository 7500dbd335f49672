#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/AssetLookup.h>

#include "platform/FaultInjectionEnv.h"
#include "systemdata/SystemDataTest.h"

using vireline::tAssetKind;

namespace {

const char kTitle[] = "/QV/Bulk/ProgramFiles/Game/";

// Every path a lookup tries, in order, when nothing exists.
std::vector<std::string> TriedPaths(tAssetKind kind, const std::string& name) {
  std::vector<std::string> tried;
  vireline::LookUpAsset(CSystemData::Instance(), kind, name, [&tried](const CPath& path) {
    tried.push_back(path);
    return false;
  });
  return tried;
}

std::vector<std::string> Concat(std::vector<std::string> first, const std::vector<std::string>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace

// A device with the locale fr-ca and a running title without metadata.
class AssetLookupTest : public SystemDataTest {
 protected:
  void UseLocale(const std::string& locale) {
    WriteSettings(locale);
    Data()->SetLocaleCode(locale);
    Data()->SetCurrentTitlePath(kTitle);
  }

  void SetUp() override {
    SystemDataTest::SetUp();
    UseLocale("fr-ca");
  }

  // Writes only `present` and expects `find` to return it.
  void ExpectFoundAlone(CPath (CSystemData::*find)(const CPath&), const std::string& name,
                        const std::string& present) {
    WriteFile(present, "asset");
    EXPECT_EQ((Data()->*find)(name), present);
  }
};

// Art: the language's own art folder, the pack's art, the universal art.
const std::vector<std::string> kArtCandidates = {
    "/QV/Bulk/LanguagePack_fr/Art_fr/x.png",
    "/QV/Bulk/LanguagePack_fr/Art/x.png",
    "/QV/Bulk/LanguagePack/Art/x.png",
};

const std::vector<std::string> kPlaceholderArtCandidates = {
    "/QV/Bulk/LanguagePack_fr/Art_fr/missingAsset.png",
    "/QV/Bulk/LanguagePack_fr/Art/missingAsset.png",
    "/QV/Bulk/LanguagePack/Art/missingAsset.png",
};

const std::vector<std::string> kVideoCandidates = {
    "/QV/Bulk/LanguagePack_fr/Video_fr//v.avi",
    "/QV/Bulk/LanguagePack_fr/Video//v.avi",
    "/QV/Bulk/LanguagePack/Video//v.avi",
};

const std::vector<std::string> kFontCandidates = {
    "/QV/Bulk/ProgramFiles/Game/Fonts/f.ttf",
    "/QV/Bulk/LanguagePack/Fonts/f.ttf",
    "/QV/Base/Fonts/f.ttf",
    "/QV/Base/MQDX/Fonts/f.ttf",
};

const std::vector<std::string> kPlaceholderFontCandidates = {
    "/QV/Bulk/ProgramFiles/Game/Fonts/QVCurry.ttf",
    "/QV/Bulk/LanguagePack/Fonts/QVCurry.ttf",
    "/QV/Base/Fonts/QVCurry.ttf",
    "/QV/Base/MQDX/Fonts/QVCurry.ttf",
};

// Audio: in each folder the WAV recording first.
const std::vector<std::string> kAudioCandidates = {
    "/QV/Bulk/ProgramFiles/Game/Audio/a.wav",
    "/QV/Bulk/ProgramFiles/Game/Audio/a.mp3",
    "/QV/Bulk/LanguagePack_fr/Audio_ca/ca_a.wav",
    "/QV/Bulk/LanguagePack_fr/Audio_ca/ca_a.mp3",
    "/QV/Bulk/LanguagePack_fr/Audio/a.wav",
    "/QV/Bulk/LanguagePack_fr/Audio/a.mp3",
    "/QV/Bulk/LanguagePack/Audio/a.wav",
    "/QV/Bulk/LanguagePack/Audio/a.mp3",
};

const std::vector<std::string> kPlaceholderAudioCandidates = {
    "/QV/Bulk/ProgramFiles/Game/Audio/h_BROM_AudioNotFoundSfx_6.wav",
    "/QV/Bulk/ProgramFiles/Game/Audio/h_BROM_AudioNotFoundSfx_6.mp3",
    "/QV/Bulk/LanguagePack_fr/Audio_ca/ca_h_BROM_AudioNotFoundSfx_6.wav",
    "/QV/Bulk/LanguagePack_fr/Audio_ca/ca_h_BROM_AudioNotFoundSfx_6.mp3",
    "/QV/Bulk/LanguagePack_fr/Audio/h_BROM_AudioNotFoundSfx_6.wav",
    "/QV/Bulk/LanguagePack_fr/Audio/h_BROM_AudioNotFoundSfx_6.mp3",
    "/QV/Bulk/LanguagePack/Audio/h_BROM_AudioNotFoundSfx_6.wav",
    "/QV/Bulk/LanguagePack/Audio/h_BROM_AudioNotFoundSfx_6.mp3",
};

const std::vector<std::string> kBookAudioCandidates = {
    "/QV/Bulk/BookPack_fr/Audio_ca/ca_b.mp3",
    "/QV/Bulk/BookPack_fr/Audio/b.mp3",
    "/QV/Bulk/LanguagePack_fr/Audio_ca/ca_b.mp3",
    "/QV/Bulk/LanguagePack_fr/Audio/b.mp3",
    "/QV/Bulk/LanguagePack/Audio/b.mp3",
};

TEST_F(AssetLookupTest, ArtTriesItsFoldersThenThePlaceholder) {
  EXPECT_EQ(TriedPaths(tAssetKind::kArt, "x.png"), Concat(kArtCandidates, kPlaceholderArtCandidates));
}

TEST_F(AssetLookupTest, VideoTriesItsFoldersWithADoubledSlashAndHasNoPlaceholder) {
  EXPECT_EQ(TriedPaths(tAssetKind::kVideo, "v.avi"), kVideoCandidates);
}

TEST_F(AssetLookupTest, FontTriesTheTitleThenTheDeviceThenThePlaceholder) {
  EXPECT_EQ(TriedPaths(tAssetKind::kFont, "f.ttf"), Concat(kFontCandidates, kPlaceholderFontCandidates));
}

TEST_F(AssetLookupTest, AudioTriesEachFolderFullyWavFirstThenThePlaceholder) {
  EXPECT_EQ(TriedPaths(tAssetKind::kAudio, "a.mp3"), Concat(kAudioCandidates, kPlaceholderAudioCandidates));
}

TEST_F(AssetLookupTest, WavAudioIsTriedOncePerFolder) {
  EXPECT_EQ(TriedPaths(tAssetKind::kAudio, "a.wav"),
            (std::vector<std::string>{
                "/QV/Bulk/ProgramFiles/Game/Audio/a.wav",
                "/QV/Bulk/LanguagePack_fr/Audio_ca/ca_a.wav",
                "/QV/Bulk/LanguagePack_fr/Audio/a.wav",
                "/QV/Bulk/LanguagePack/Audio/a.wav",
                "/QV/Bulk/ProgramFiles/Game/Audio/h_BROM_AudioNotFoundSfx_6.wav",
                "/QV/Bulk/LanguagePack_fr/Audio_ca/ca_h_BROM_AudioNotFoundSfx_6.wav",
                "/QV/Bulk/LanguagePack_fr/Audio/h_BROM_AudioNotFoundSfx_6.wav",
                "/QV/Bulk/LanguagePack/Audio/h_BROM_AudioNotFoundSfx_6.wav",
            }));
}

TEST_F(AssetLookupTest, AudioNameWithoutExtensionTriesTheWavFirst) {
  std::vector<std::string> tried = TriedPaths(tAssetKind::kAudio, "hello");
  ASSERT_EQ(tried.size(), 16u);
  EXPECT_EQ(tried[0], "/QV/Bulk/ProgramFiles/Game/Audio/hello.wav");
  EXPECT_EQ(tried[1], "/QV/Bulk/ProgramFiles/Game/Audio/hello");
  EXPECT_EQ(tried[8], "/QV/Bulk/ProgramFiles/Game/Audio/h_BROM_AudioNotFoundSfx_6.wav");
  EXPECT_EQ(tried[9], "/QV/Bulk/ProgramFiles/Game/Audio/h_BROM_AudioNotFoundSfx_6");
}

TEST_F(AssetLookupTest, AudioExtensionIsTakenAfterTheLastDot) {
  std::vector<std::string> tried = TriedPaths(tAssetKind::kAudio, "a.b.ogg");
  EXPECT_EQ(tried[0], "/QV/Bulk/ProgramFiles/Game/Audio/a.b.wav");
  EXPECT_EQ(tried[8], "/QV/Bulk/ProgramFiles/Game/Audio/h_BROM_AudioNotFoundSfx_6.wav");
  EXPECT_EQ(tried[9], "/QV/Bulk/ProgramFiles/Game/Audio/h_BROM_AudioNotFoundSfx_6.ogg");
}

TEST_F(AssetLookupTest, BookAudioTriesTheBookPackThenTheLanguagePacksAndStops) {
  EXPECT_EQ(TriedPaths(tAssetKind::kBookAudio, "b.mp3"), kBookAudioCandidates);
}

TEST_F(AssetLookupTest, ArtIsFoundInEachFolderAlone) {
  for (const std::string& candidate : kArtCandidates) {
    ExpectFoundAlone(&CSystemData::FindArt, "x.png", candidate);
    std::remove(Host(candidate).c_str());
  }
}

TEST_F(AssetLookupTest, VideoIsFoundInEachFolderAlone) {
  for (const std::string& candidate : kVideoCandidates) {
    ExpectFoundAlone(&CSystemData::FindVideo, "v.avi", candidate);
    std::remove(Host(candidate).c_str());
  }
}

TEST_F(AssetLookupTest, FontIsFoundInEachFolderAlone) {
  for (const std::string& candidate : kFontCandidates) {
    ExpectFoundAlone(&CSystemData::FindFont, "f.ttf", candidate);
    std::remove(Host(candidate).c_str());
  }
}

TEST_F(AssetLookupTest, AudioIsFoundInEachFolderAlone) {
  for (const std::string& candidate : kAudioCandidates) {
    ExpectFoundAlone(&CSystemData::FindAudio, "a.mp3", candidate);
    std::remove(Host(candidate).c_str());
  }
}

TEST_F(AssetLookupTest, BookAudioIsFoundInEachFolderAlone) {
  for (const std::string& candidate : kBookAudioCandidates) {
    ExpectFoundAlone(&CSystemData::FindBookAudio, "b.mp3", candidate);
    std::remove(Host(candidate).c_str());
  }
}

TEST_F(AssetLookupTest, EarlierCandidateWins) {
  WriteFile(kArtCandidates[1], "");
  WriteFile(kArtCandidates[2], "");
  EXPECT_EQ(Data()->FindArt("x.png"), kArtCandidates[1]);
}

TEST_F(AssetLookupTest, MissingArtGivesThePlaceholderAfterTwoTraces) {
  WriteFile("/QV/Bulk/LanguagePack/Art/missingAsset.png", "");
  CaptureDebugOutput();
  EXPECT_EQ(Data()->FindArt("x.png"), "/QV/Bulk/LanguagePack/Art/missingAsset.png");
  EXPECT_EQ(DebugOutput(),
            "CSystemData::FindArt( x.png )\n"
            "CSystemData::FindArt not found x.png\n"
            "CSystemData::FindArt( missingAsset.png )\n");
}

TEST_F(AssetLookupTest, MissingArtAndPlaceholderGiveNothingAfterTwoNotFoundMessages) {
  CaptureDebugOutput();
  EXPECT_EQ(Data()->FindArt("x.png"), "");
  EXPECT_EQ(DebugOutput(),
            "CSystemData::FindArt( x.png )\n"
            "CSystemData::FindArt not found x.png\n"
            "CSystemData::FindArt( missingAsset.png )\n"
            "CSystemData::FindArt not found missingAsset.png\n");
}

TEST_F(AssetLookupTest, PlaceholderArtIsLookedUpOnce) {
  CaptureDebugOutput();
  EXPECT_EQ(Data()->FindArt("missingAsset.png"), "");
  EXPECT_EQ(DebugOutput(),
            "CSystemData::FindArt( missingAsset.png )\n"
            "CSystemData::FindArt not found missingAsset.png\n");
}

TEST_F(AssetLookupTest, MissingAudioGivesThePlaceholderInTheAskedFormat) {
  WriteFile("/QV/Bulk/LanguagePack/Audio/h_BROM_AudioNotFoundSfx_6.mp3", "");
  CaptureDebugOutput();
  EXPECT_EQ(Data()->FindAudio("a.mp3"), "/QV/Bulk/LanguagePack/Audio/h_BROM_AudioNotFoundSfx_6.mp3");
  EXPECT_EQ(DebugOutput(),
            "CSystemData::FindAudio( a.mp3 )\n"
            "CSystemData::FindAudio unable to find audio file a.mp3\n"
            "CSystemData::FindAudio( h_BROM_AudioNotFoundSfx_6.mp3 )\n");
}

TEST_F(AssetLookupTest, MissingAudioPrefersAWavPlaceholder) {
  WriteFile("/QV/Bulk/LanguagePack/Audio/h_BROM_AudioNotFoundSfx_6.mp3", "");
  WriteFile("/QV/Bulk/LanguagePack/Audio/h_BROM_AudioNotFoundSfx_6.wav", "");
  EXPECT_EQ(Data()->FindAudio("a.mp3"), "/QV/Bulk/LanguagePack/Audio/h_BROM_AudioNotFoundSfx_6.wav");
}

TEST_F(AssetLookupTest, MissingAudioAndPlaceholderGiveNothing) {
  CaptureDebugOutput();
  EXPECT_EQ(Data()->FindAudio("a.mp3"), "");
  EXPECT_EQ(DebugOutput(),
            "CSystemData::FindAudio( a.mp3 )\n"
            "CSystemData::FindAudio unable to find audio file a.mp3\n"
            "CSystemData::FindAudio( h_BROM_AudioNotFoundSfx_6.mp3 )\n"
            "CSystemData::FindAudio unable to find audio file h_BROM_AudioNotFoundSfx_6.mp3\n");
}

TEST_F(AssetLookupTest, AudioPlaceholderInAnotherFormatIsNotLookedUpAgain) {
  CaptureDebugOutput();
  EXPECT_EQ(Data()->FindAudio("h_BROM_AudioNotFoundSfx_6.ogg"), "");
  EXPECT_EQ(DebugOutput(),
            "CSystemData::FindAudio( h_BROM_AudioNotFoundSfx_6.ogg )\n"
            "CSystemData::FindAudio unable to find audio file h_BROM_AudioNotFoundSfx_6.ogg\n");
}

TEST_F(AssetLookupTest, MissingFontGivesThePlaceholder) {
  WriteFile("/QV/Base/MQDX/Fonts/QVCurry.ttf", "");
  CaptureDebugOutput();
  EXPECT_EQ(Data()->FindFont("f.ttf"), "/QV/Base/MQDX/Fonts/QVCurry.ttf");
  EXPECT_EQ(DebugOutput(),
            "CSystemData::FindFont( f.ttf )\n"
            "CSystemData::FindFont not found f.ttf\n"
            "CSystemData::FindFont( QVCurry.ttf )\n");
}

TEST_F(AssetLookupTest, MissingFontAndPlaceholderGiveNothing) {
  CaptureDebugOutput();
  EXPECT_EQ(Data()->FindFont("f.ttf"), "");
  EXPECT_EQ(DebugOutput(),
            "CSystemData::FindFont( f.ttf )\n"
            "CSystemData::FindFont not found f.ttf\n"
            "CSystemData::FindFont( QVCurry.ttf )\n"
            "CSystemData::FindFont not found QVCurry.ttf\n");
}

TEST_F(AssetLookupTest, MissingVideoGivesNothingAfterOneMessage) {
  CaptureDebugOutput();
  EXPECT_EQ(Data()->FindVideo("v.avi"), "");
  EXPECT_EQ(DebugOutput(), "CSystemData::FindVideo( v.avi )\nCSystemData::FindVideo not found v.avi\n");
}

TEST_F(AssetLookupTest, MissingBookAudioGivesNothingSilentlyAfterItsWarning) {
  CaptureDebugOutput();
  EXPECT_EQ(Data()->FindBookAudio("b.mp3"), "");
  EXPECT_EQ(DebugOutput(),
            "CSystemData::FindBookAudio( b.mp3 ), WARNING: make sure your title has a dependency on a book "
            "pack.\n");
}

TEST_F(AssetLookupTest, FoundAssetPrintsOnlyItsTrace) {
  WriteFile(kVideoCandidates[2], "");
  CaptureDebugOutput();
  Data()->FindVideo("v.avi");
  EXPECT_EQ(DebugOutput(), "CSystemData::FindVideo( v.avi )\n");
}

TEST_F(AssetLookupTest, WavInTheTitleWinsOverTheAskedFormatInTheSameFolder) {
  WriteFile("/QV/Bulk/ProgramFiles/Game/Audio/a.mp3", "");
  WriteFile("/QV/Bulk/ProgramFiles/Game/Audio/a.wav", "");
  EXPECT_EQ(Data()->FindAudio("a.mp3"), "/QV/Bulk/ProgramFiles/Game/Audio/a.wav");
}

TEST_F(AssetLookupTest, AskedFormatInTheTitleWinsOverAWavInTheLanguagePack) {
  WriteFile("/QV/Bulk/ProgramFiles/Game/Audio/a.mp3", "");
  WriteFile("/QV/Bulk/LanguagePack_fr/Audio/a.wav", "");
  EXPECT_EQ(Data()->FindAudio("a.mp3"), "/QV/Bulk/ProgramFiles/Game/Audio/a.mp3");
}

TEST_F(AssetLookupTest, FrenchVideoIsFirstLookedForWithADoubledSlash) {
  EXPECT_EQ(TriedPaths(tAssetKind::kVideo, "v.avi").front(), "/QV/Bulk/LanguagePack_fr/Video_fr//v.avi");
}

TEST_F(AssetLookupTest, AustralianEnglishAudioUsesTheBritishRecordings) {
  UseLocale("en-au");
  std::vector<std::string> tried = TriedPaths(tAssetKind::kAudio, "a.wav");
  EXPECT_EQ(tried[1], "/QV/Bulk/LanguagePack_en/Audio_gb/gb_a.wav");
  EXPECT_EQ(tried[2], "/QV/Bulk/LanguagePack_en/Audio/a.wav");
  std::vector<std::string> book = TriedPaths(tAssetKind::kBookAudio, "b.wav");
  EXPECT_EQ(book[0], "/QV/Bulk/BookPack_en/Audio_gb/gb_b.wav");
  EXPECT_EQ(book[2], "/QV/Bulk/LanguagePack_en/Audio_gb/gb_b.wav");
}

TEST_F(AssetLookupTest, EnglishRecordingsOfTheThreeCountriesAreTheirOwn) {
  for (const char* country : {"us", "ca", "gb"}) {
    UseLocale(std::string("en-") + country);
    EXPECT_EQ(TriedPaths(tAssetKind::kAudio, "a.wav")[1],
              std::string("/QV/Bulk/LanguagePack_en/Audio_") + country + "/" + country + "_a.wav");
  }
}

TEST_F(AssetLookupTest, OtherLanguagesKeepTheirCountry) {
  UseLocale("fr-be");
  EXPECT_EQ(TriedPaths(tAssetKind::kAudio, "a.wav")[1], "/QV/Bulk/LanguagePack_fr/Audio_be/be_a.wav");
}

TEST_F(AssetLookupTest, ArtFollowsALocaleChange) {
  Data()->SetLocaleCode("de-de");
  EXPECT_EQ(TriedPaths(tAssetKind::kArt, "x.png").front(), "/QV/Bulk/LanguagePack_de/Art_de/x.png");
}

TEST_F(AssetLookupTest, FontsWithoutATitleAreLookedForAtTheTitleRelativeFolder) {
  Data()->SetCurrentTitlePath("");
  EXPECT_EQ(TriedPaths(tAssetKind::kFont, "f.ttf").front(), "Fonts/f.ttf");
}

TEST_F(AssetLookupTest, CandidateThatCannotBeOpenedIsPassedOver) {
  WriteFile(kArtCandidates[0], "");
  WriteFile(kArtCandidates[2], "");
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  env.FailAfter(vireline::FaultInjectionEnv::kOpen, 0, EACCES, true);
  EXPECT_EQ(Data()->FindArt("x.png"), kArtCandidates[2]);
}

TEST_F(AssetLookupTest, LookupOpensOnlyItsCandidatesAndStatsNothing) {
  Data()->GetLocaleCode();  // already known: nothing more is read
  WriteFile(kAudioCandidates[5], "");
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  vireline::Env::SetCurrent(&env);
  EXPECT_EQ(Data()->FindAudio("a.mp3"), kAudioCandidates[5]);
  EXPECT_EQ(env.Calls(vireline::FaultInjectionEnv::kOpen), 6);
  EXPECT_EQ(env.Calls(vireline::FaultInjectionEnv::kClose), 1);
  EXPECT_EQ(env.Calls(vireline::FaultInjectionEnv::kStat), 0);
}

TEST_F(AssetLookupTest, AProbeThatLooksUpAnotherAssetStillGetsItsOwnCandidates) {
  WriteFile("/QV/Bulk/LanguagePack/Audio/other.wav", "wav");
  std::vector<std::string> tried;
  std::vector<std::string> nested;
  CPath found = vireline::LookUpAsset(Data(), tAssetKind::kArt, "x.png", [&](const CPath& path) {
    tried.push_back(path);
    nested.push_back(Data()->FindAudio("other.wav"));
    return tried.size() == 2;
  });
  EXPECT_EQ(found, kArtCandidates[1]);
  EXPECT_EQ(tried, std::vector<std::string>(kArtCandidates.begin(), kArtCandidates.begin() + 2));
  EXPECT_EQ(nested, std::vector<std::string>(2, "/QV/Bulk/LanguagePack/Audio/other.wav"));
}

TEST_F(AssetLookupTest, ANameOfManyCharactersIsFoundWhole) {
  std::string name = std::string(200, 'n') + ".png";
  ExpectFoundAlone(&CSystemData::FindArt, name, "/QV/Bulk/LanguagePack/Art/" + name);
}
