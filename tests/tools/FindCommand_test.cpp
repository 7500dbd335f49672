#include <gtest/gtest.h>

#include <string>

#include "tools/SampleImageTest.h"

class FindCommandTest : public SampleImageTest {
 protected:
  InspectorRun Find(const std::string& arguments) const { return Run("find " + arguments); }
};

TEST_F(FindCommandTest, PrintsThePathFound) {
  InspectorRun run = Find("art welcome.png");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "/QV/Bulk/LanguagePack_en/Art_en/welcome.png\n");
}

TEST_F(FindCommandTest, MissingAssetGivesThePlaceholder) {
  InspectorRun run = Find("art dragon.png");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "/QV/Bulk/LanguagePack/Art/missingAsset.png\n");
}

TEST_F(FindCommandTest, ExplainShowsEveryCandidateInOrderWithTheMessages) {
  InspectorRun run = Find("art dragon.png --explain");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out,
            "locale en-us, title (none)\n"
            "CSystemData::FindArt( dragon.png )\n"
            "  missing  /QV/Bulk/LanguagePack_en/Art_en/dragon.png\n"
            "  missing  /QV/Bulk/LanguagePack_en/Art/dragon.png\n"
            "  missing  /QV/Bulk/LanguagePack/Art/dragon.png\n"
            "CSystemData::FindArt not found dragon.png\n"
            "CSystemData::FindArt( missingAsset.png )\n"
            "  missing  /QV/Bulk/LanguagePack_en/Art_en/missingAsset.png\n"
            "  missing  /QV/Bulk/LanguagePack_en/Art/missingAsset.png\n"
            "  found    /QV/Bulk/LanguagePack/Art/missingAsset.png\n"
            "result: /QV/Bulk/LanguagePack/Art/missingAsset.png\n");
}

TEST_F(FindCommandTest, TitleLocaleIsConvertedByItsLanguagePack) {
  InspectorRun run = Find("audio bonjour.mp3 --title /QV/Bulk/ProgramFiles/PetitChef --explain");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out,
            "locale fr-ca, title /QV/Bulk/ProgramFiles/PetitChef/\n"
            "CSystemData::FindAudio( bonjour.mp3 )\n"
            "  missing  /QV/Bulk/ProgramFiles/PetitChef/Audio/bonjour.wav\n"
            "  missing  /QV/Bulk/ProgramFiles/PetitChef/Audio/bonjour.mp3\n"
            "  found    /QV/Bulk/LanguagePack_fr/Audio_ca/ca_bonjour.wav\n"
            "result: /QV/Bulk/LanguagePack_fr/Audio_ca/ca_bonjour.wav\n");
}

TEST_F(FindCommandTest, EachKindIsLookedUp) {
  EXPECT_EQ(Find("audio hello.wav").out, "/QV/Bulk/LanguagePack_en/Audio_us/us_hello.wav\n");
  EXPECT_EQ(Find("font Chef.ttf --title /QV/Bulk/ProgramFiles/PetitChef/").out,
            "/QV/Bulk/ProgramFiles/PetitChef/Fonts/Chef.ttf\n");
  EXPECT_EQ(Find("font Other.ttf").out, "/QV/Bulk/LanguagePack/Fonts/QVCurry.ttf\n");
  EXPECT_EQ(Find("bookaudio hello.wav").out, "/QV/Bulk/LanguagePack_en/Audio_us/us_hello.wav\n");
}

TEST_F(FindCommandTest, VideoPathKeepsItsDoubledSlash) {
  WriteFile("/QV/Bulk/LanguagePack/Video/intro.avi", "");
  EXPECT_EQ(Find("video intro.avi").out, "/QV/Bulk/LanguagePack/Video//intro.avi\n");
}

TEST_F(FindCommandTest, NothingFoundExitsWithOne) {
  InspectorRun run = Find("video intro.avi");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "vireline find: video intro.avi: not found\n");
}

TEST_F(FindCommandTest, ExplainOfNothingFound) {
  InspectorRun run = Find("video intro.avi --explain");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out,
            "locale en-us, title (none)\n"
            "CSystemData::FindVideo( intro.avi )\n"
            "  missing  /QV/Bulk/LanguagePack_en/Video_en//intro.avi\n"
            "  missing  /QV/Bulk/LanguagePack_en/Video//intro.avi\n"
            "  missing  /QV/Bulk/LanguagePack/Video//intro.avi\n"
            "CSystemData::FindVideo not found intro.avi\n"
            "result: (none)\n");
}

TEST_F(FindCommandTest, UnknownKindIsAUsageError) {
  InspectorRun run = Find("picture x.png");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_NE(run.err.find("picture"), std::string::npos);
}

TEST_F(FindCommandTest, NameIsRequired) {
  EXPECT_EQ(Find("art").exitStatus, 2);
}
