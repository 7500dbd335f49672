#include <gtest/gtest.h>

#include <string>

#include "tools/SampleImageTest.h"

namespace {

const char kSample[] = "/QV/Bulk/Data/LanguageSample.json";

}  // namespace

class JsonCommandTest : public SampleImageTest {
 protected:
  InspectorRun Json(const std::string& arguments) const { return Run("json " + arguments); }
};

TEST_F(JsonCommandTest, PrintsTheDocumentStyled) {
  InspectorRun run = Json(kSample);
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out.substr(0, 2), "{\n");
  EXPECT_NE(run.out.find("   \"LanguageSettingText\" : \"Language\",\n"), std::string::npos) << run.out;
  EXPECT_EQ(ParseJson(run.out)["Flags"][1]["LocaleCode"].asString(), "fr-fr");
}

TEST_F(JsonCommandTest, AStringAtAPathPrintsRaw) {
  InspectorRun run = Json(std::string(kSample) + " Flags[0].LocaleCode");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "en-us\n");
  EXPECT_EQ(Json(std::string(kSample) + " Flags[1].Audio").out, "fran\xC3\xA7" "ais.ogg\n");
}

TEST_F(JsonCommandTest, ContainersAndNumbersAtAPathPrintStyled) {
  EXPECT_EQ(Json(std::string(kSample) + " LanguageSettingAudio").out, "[ \"language.ogg\" ]\n");
  EXPECT_EQ(Json(std::string(kSample) + " Version").out, "2\n");
  InspectorRun run = Json(std::string(kSample) + " Flags[0]");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "{\n   \"Art\" : \"flag_us.png\",\n   \"Audio\" : \"english.ogg\",\n   \"LocaleCode\" : \"en-us\"\n}\n");
}

TEST_F(JsonCommandTest, ARootArrayTakesALeadingIndex) {
  WriteFile("/QV/Bulk/Data/list.json", "[{\"a\":[10,20]}]");
  InspectorRun run = Json("/QV/Bulk/Data/list.json '[0].a[1]'");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "20\n");
}

TEST_F(JsonCommandTest, MissingValuesExitWithOne) {
  for (const char* path : {"Nope", "Flags[2]", "Flags[0].Nope", "Version.x", "Version[0]", "SaveText[0]"}) {
    InspectorRun run = Json(std::string(kSample) + " '" + path + "'");
    EXPECT_EQ(run.exitStatus, 1) << path;
    EXPECT_EQ(run.out, "") << path;
    EXPECT_EQ(run.err, std::string("vireline json: ") + kSample + ": no value at '" + path + "'\n") << path;
  }
}

TEST_F(JsonCommandTest, MalformedPathsExitWithTwo) {
  for (const char* path : {"", ".Flags", "Flags.", "Flags..x", "Flags[", "Flags[]", "Flags[x]", "Flags[-1]",
                           "Flags]", "Flags[0]x", "Flags[99999999999]", "a.[0]"}) {
    InspectorRun run = Json(std::string(kSample) + " '" + path + "'");
    EXPECT_EQ(run.exitStatus, 2) << path;
    EXPECT_NE(run.err.find("malformed path"), std::string::npos) << path;
  }
}

TEST_F(JsonCommandTest, FilesThatDoNotLoadExitWithOne) {
  WriteFile("/QV/Bulk/Data/bad.json", "{\"a\":");
  InspectorRun bad = Json("/QV/Bulk/Data/bad.json");
  EXPECT_EQ(bad.exitStatus, 1);
  EXPECT_NE(bad.err.find("vireline json: /QV/Bulk/Data/bad.json: not a JSON document: line 1, column 6: "),
            std::string::npos)
      << bad.err;
  EXPECT_NE(bad.err.find("CJSonFile::Load() failed to open (JSON parser reported an error)"), std::string::npos);
  InspectorRun missing = Json("/QV/Bulk/Data/none.json");
  EXPECT_EQ(missing.exitStatus, 1);
  EXPECT_FALSE(Exists("/QV/Bulk/Data/none.json"));
}

TEST_F(JsonCommandTest, AMissingFileIsNamedWithTheReason) {
  InspectorRun run = Json("/QV/Bulk/Data/none.json");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, "vireline json: /QV/Bulk/Data/none.json: no such file\n");
}

TEST_F(JsonCommandTest, AFolderIsNamedWithTheReason) {
  MakeDirs("/QV/Bulk/Data/folder.json");
  InspectorRun run = Json("/QV/Bulk/Data/folder.json");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, "vireline json: /QV/Bulk/Data/folder.json: not a regular file\n");
}

TEST_F(JsonCommandTest, AParseErrorGivesItsLineAndColumn) {
  WriteFile("/QV/Bulk/Data/bad.json", "{\n  \"a\": 1,\n  \"b\" 2\n}\n");
  InspectorRun run = Json("/QV/Bulk/Data/bad.json");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_NE(run.err.find("vireline json: /QV/Bulk/Data/bad.json: not a JSON document: line 3, column 7: Missing ':' "
                         "after object member name\n"),
            std::string::npos)
      << run.err;
}

TEST_F(JsonCommandTest, MissingFileArgumentIsAUsageError) { EXPECT_EQ(Json("").exitStatus, 2); }
