#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tools/SampleImageTest.h"

namespace {

// Every entry below `root` with the bytes of each file.
std::string ImageContent(const std::string& root) {
  std::string content;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    content += entry.path().string() + "\n";
    if (entry.is_regular_file()) {
      std::ifstream in(entry.path(), std::ios::binary);
      std::ostringstream bytes;
      bytes << in.rdbuf();
      content += bytes.str() + "\n";
    }
  }
  return content;
}

}  // namespace

class CyoCommandTest : public SampleImageTest {};

TEST_F(CyoCommandTest, ListsTheSetsOfTheCurrentPlayer) {
  InspectorRun run = Run("cyo");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "Spelling: /QV/Bulk/Downloads/SpellingWeek3/\n"
            "  id          SPELL-WEEK3\n"
            "  package id  CYO-SPELL-0003\n"
            "  completion  3\n"
            "  progress    /QV/Bulk/Data/Local/0/CYO-SPELL-0003/progress.json\n"
            "  0   cat          status 1   /QV/Bulk/Downloads/SpellingWeek3/Audio/cat.wav\n"
            "  1   ship         status 3   /QV/Bulk/Downloads/SpellingWeek3/Audio/ship.wav\n"
            "  2   train        status 0   /QV/Bulk/Downloads/SpellingWeek3/Audio/train.wav\n"
            "LanguageArts: no set for player 0\n"
            "MathFacts: /QV/Bulk/Downloads/MathFacts1/\n"
            "  id          ADD-TO-10\n"
            "  package id  CYO-MATH-0001\n"
            "  completion  5\n"
            "  progress    /QV/Bulk/Data/Local/0/CYO-MATH-0001/progress.json  (none yet)\n"
            "  0   2 + 3        status 0   /QV/Bulk/Downloads/MathFacts1/Audio/2plus3.wav\n"
            "  1   4 + 4        status 0   /QV/Bulk/Downloads/MathFacts1/Audio/4plus4.wav\n"
            "MathPlus: no set for player 0\n");
}

TEST_F(CyoCommandTest, APlayerOutsideTheAccessListGetsNoSpellingSet) {
  InspectorRun run = Run("cyo Spelling --player 2");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "Spelling: no set for player 2\n");
}

TEST_F(CyoCommandTest, ATypeNumberOrAName) {
  EXPECT_EQ(Run("cyo 2").out, Run("cyo MathFacts").out);
  InspectorRun run = Run("cyo NoSuchCurriculum");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "NoSuchCurriculum: no set for player 0\n");
}

TEST_F(CyoCommandTest, Json) {
  InspectorRun run = Run("cyo Spelling --player 1 --json");
  EXPECT_EQ(run.exitStatus, 0);
  Json::Value json = ParseJson(run.out);
  EXPECT_EQ(json["player"].asInt(), 1);
  ASSERT_EQ(json["sets"].size(), 1u);
  const Json::Value& set = json["sets"][0];
  EXPECT_TRUE(set["found"].asBool());
  EXPECT_EQ(set["path"].asString(), "/QV/Bulk/Downloads/SpellingWeek3/");
  EXPECT_EQ(set["id"].asString(), "SPELL-WEEK3");
  EXPECT_EQ(set["completionParam"].asUInt(), 3u);
  EXPECT_EQ(set["progressFile"].asString(), "/QV/Bulk/Data/Local/1/CYO-SPELL-0003/progress.json");
  EXPECT_FALSE(set["progressFilePresent"].asBool());
  ASSERT_EQ(set["items"].size(), 3u);
  EXPECT_EQ(set["items"][2]["value"].asString(), "train");
  EXPECT_EQ(set["items"][2]["status"].asUInt(), 0u);
}

TEST_F(CyoCommandTest, ShowingChangesNothingOnTheDevice) {
  std::string before = ImageContent(mRoot);
  EXPECT_EQ(Run("cyo").exitStatus, 0);
  EXPECT_EQ(Run("cyo --player 1 --json").exitStatus, 0);
  EXPECT_EQ(Run("cyo MathFacts --player 2").exitStatus, 0);
  EXPECT_EQ(ImageContent(mRoot), before);
}

TEST_F(CyoCommandTest, DamagedDocumentsShowDefaultsAndChangeNothing) {
  WriteFile("/QV/Bulk/Downloads/SpellingWeek3/manifest.json", "{\"ID\":[1],\"ItemList\":[7,{\"Val\":{}}]}");
  WriteFile("/QV/Bulk/Data/Local/0/CYO-SPELL-0003/progress.json", "[\"not an object\"]");
  std::string before = ImageContent(mRoot);
  InspectorRun run = Run("cyo Spelling");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.out.find("  id          \n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("  1                status 0   /QV/Bulk/Downloads/SpellingWeek3/\n"), std::string::npos)
      << run.out;
  EXPECT_EQ(ImageContent(mRoot), before);
}
