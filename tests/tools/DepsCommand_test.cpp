// The requests shown are the request files the check writes, read back from
// the scratch overlay it runs on: the device image itself never changes.
#include <gtest/gtest.h>

#include <stdlib.h>

#include <filesystem>
#include <map>
#include <string>

#include <vireline/CSystemData.h>

#include "tools/SampleImageTest.h"

namespace {

// Every file of a host tree with its content.
std::map<std::string, std::string> Snapshot(const std::string& root) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    std::string path = entry.path().string();
    files[path] = entry.is_regular_file() ? std::string() : "<folder>";
    if (entry.is_regular_file()) {
      FILE* in = fopen(path.c_str(), "rb");
      char buffer[4096];
      size_t got;
      while (in != nullptr && (got = fread(buffer, 1, sizeof buffer, in)) > 0) files[path].append(buffer, got);
      if (in != nullptr) fclose(in);
    }
  }
  return files;
}

}  // namespace

class DepsCommandTest : public SampleImageTest {
 protected:
  void SetUp() override {
    SampleImageTest::SetUp();
    std::filesystem::create_directories(mRoot + ".tmp");
    setenv("TMPDIR", (mRoot + ".tmp").c_str(), 1);  // where the inspector makes its scratch folder
  }

  void TearDown() override {
    unsetenv("TMPDIR");
    std::filesystem::remove_all(mRoot + ".tmp");
    SampleImageTest::TearDown();
  }

  InspectorRun Deps(const std::string& arguments) const { return Run("deps " + arguments); }

  // The request file of package `id` in the current player's inventory folder.
  static std::string RequestFile(const std::string& id) {
    return CSystemData::Instance()->GetManageInventoryPath() + id + ".txt";
  }
};

TEST_F(DepsCommandTest, PrintsTheResultAndTheRequests) {
  InspectorRun run = Deps("/QV/Bulk/ProgramFiles/StoryTime");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "meta.inf        /QV/Bulk/ProgramFiles/StoryTime/meta.inf\n"
            "platform        Tamsel (type 2)\n"
            "result          0x3  (application or firmware, language pack)\n"
            "requested       APP-PAINT-0300 1.0\n"
            "requested       KVR9-0x00170030-000002 1.0\n");
}

TEST_F(DepsCommandTest, Json) {
  InspectorRun run = Deps("/QV/Bulk/ProgramFiles/StoryTime --json");
  EXPECT_EQ(run.exitStatus, 0);
  Json::Value json = ParseJson(run.out);
  EXPECT_EQ(json["metaInf"].asString(), "/QV/Bulk/ProgramFiles/StoryTime/meta.inf");
  EXPECT_EQ(json["platformName"].asString(), "Tamsel");
  EXPECT_EQ(json["platformType"].asInt(), 2);
  EXPECT_EQ(json["result"].asUInt(), 3u);
  EXPECT_TRUE(json["requestedApplication"].asBool());
  EXPECT_TRUE(json["requestedLanguagePack"].asBool());
  ASSERT_EQ(json["requests"].size(), 2u);
  EXPECT_EQ(json["requests"][0]["id"].asString(), "APP-PAINT-0300");
  EXPECT_EQ(json["requests"][0]["version"].asString(), "1.0");
  EXPECT_EQ(json["requests"][1]["id"].asString(), "KVR9-0x00170030-000002");
  EXPECT_EQ(json["notes"].size(), 0u);
}

TEST_F(DepsCommandTest, NothingMissing) {
  WriteFile("/QV/Bulk/LanguagePack_en/meta.inf", "PackageID=KVR9-0x00170030-000001\nVersion=1.0.8\n");
  WriteFile("/QV/Bulk/ProgramFiles/Small/meta.inf",
            "PackageID=APP-SMALL\nVersion=1.0\nDepends=\"MQDX-0x001E0003-000001\",\"1.2\"\n");
  InspectorRun run = Deps("/QV/Bulk/ProgramFiles/Small");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_NE(run.out.find("result          0x0  (nothing missing)\n"), std::string::npos) << run.out;
  EXPECT_EQ(run.out.find("requested"), std::string::npos) << run.out;
}

TEST_F(DepsCommandTest, NewerFirmwareThanInstalledIsRequested) {
  WriteFile("/QV/Bulk/ProgramFiles/Needy/meta.inf",
            "PackageID=APP-NEEDY\nVersion=1.0\nDepends=KVR9-0x00170029-000000,2.5,KVR9-0x00170030-000001,1.0\n");
  WriteFile("/QV/Bulk/LanguagePack_en/meta.inf", "PackageID=KVR9-0x00170030-000001\nVersion=1.0.8\n");
  Json::Value json = ParseJson(Deps("/QV/Bulk/ProgramFiles/Needy --json").out);
  EXPECT_EQ(json["result"].asUInt(), 1u);
  ASSERT_EQ(json["requests"].size(), 1u);
  EXPECT_EQ(json["requests"][0]["id"].asString(), "KVR9-0x00170029-000000");  // /etc/version says 2.4.1
  EXPECT_EQ(json["requests"][0]["version"].asString(), "2.5");
}

TEST_F(DepsCommandTest, LoneIdIsShownAsANote) {
  WriteFile("/QV/Bulk/ProgramFiles/Odd/meta.inf", "PackageID=APP-ODD\nVersion=1.0\nDepends=APP-LONELY\n");
  InspectorRun run = Deps("/QV/Bulk/ProgramFiles/Odd");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out,
            "meta.inf        /QV/Bulk/ProgramFiles/Odd/meta.inf\n"
            "platform        Tamsel (type 2)\n"
            "result          0x2  (language pack)\n"
            "requested       KVR9-0x00170030-000001 1.0.8\n"
            "note            Missing Version for Depends APP-LONELY\n");
}

TEST_F(DepsCommandTest, ZantoPackageNeedsNothing) {
  WriteFile("/QV/Bulk/ProgramFiles/Old/meta.inf", "PackageID=APP-OLD\nVersion=1.0\nDevice=Zanto\nDepends=A,1\n");
  Json::Value json = ParseJson(Deps("/QV/Bulk/ProgramFiles/Old --json").out);
  EXPECT_EQ(json["result"].asUInt(), 0u);
  EXPECT_EQ(json["requests"].size(), 0u);
}

TEST_F(DepsCommandTest, MissingMetaInfIsNotFound) {
  InspectorRun run = Deps("/QV/Bulk/ProgramFiles/Nothing");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "vireline deps: /QV/Bulk/ProgramFiles/Nothing/meta.inf: no such file\n");
}

TEST_F(DepsCommandTest, FolderIsRequired) {
  InspectorRun run = Deps("");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_NE(run.err.find("DIR is required"), std::string::npos) << run.err;
}

TEST_F(DepsCommandTest, FolderPathThatDoesNotFitIsAUsageError) {
  InspectorRun run = Deps("/" + std::string(300, 'x'));
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_NE(run.err.find("not a usable package folder"), std::string::npos) << run.err;
}

TEST_F(DepsCommandTest, LeavesTheImageAsItWas) {
  std::map<std::string, std::string> before = Snapshot(mRoot);
  InspectorRun run = Deps("/QV/Bulk/ProgramFiles/StoryTime");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_NE(run.out.find("requested       APP-PAINT-0300 1.0\n"), std::string::npos) << run.out;
  EXPECT_EQ(Snapshot(mRoot), before);
  EXPECT_TRUE(std::filesystem::is_empty(mRoot + ".tmp"));  // the scratch folder is gone too
}

TEST_F(DepsCommandTest, JsonNamesTheRequestFileTheCheckWouldWrite) {
  std::string file = RequestFile("APP-PAINT-0300");
  Json::Value json = ParseJson(Deps("/QV/Bulk/ProgramFiles/StoryTime --json").out);
  ASSERT_EQ(json["requests"].size(), 2u);
  EXPECT_EQ(json["requests"][0]["file"].asString(), file);
  EXPECT_FALSE(Exists(file));
}

TEST_F(DepsCommandTest, StoredNewerRequestIsNotRequestedAgain) {
  WriteFile(RequestFile("APP-PAINT-0300"), "Command=AddToDevice\nVersion=2.0\n");
  Json::Value json = ParseJson(Deps("/QV/Bulk/ProgramFiles/StoryTime --json").out);
  ASSERT_EQ(json["requests"].size(), 1u);
  EXPECT_EQ(json["requests"][0]["id"].asString(), "KVR9-0x00170030-000002");
  EXPECT_EQ(ReadFile(RequestFile("APP-PAINT-0300")), "Command=AddToDevice\nVersion=2.0\n");
}

TEST_F(DepsCommandTest, StoredOlderRequestIsShownRaisedButStaysAsItWas) {
  WriteFile(RequestFile("APP-PAINT-0300"), "Command=AddToDevice\nVersion=0.9\n");
  Json::Value json = ParseJson(Deps("/QV/Bulk/ProgramFiles/StoryTime --json").out);
  ASSERT_EQ(json["requests"].size(), 2u);
  EXPECT_EQ(json["requests"][0]["id"].asString(), "APP-PAINT-0300");
  EXPECT_EQ(json["requests"][0]["version"].asString(), "1.0");
  EXPECT_EQ(ReadFile(RequestFile("APP-PAINT-0300")), "Command=AddToDevice\nVersion=0.9\n");
}

TEST_F(DepsCommandTest, NoScratchFolderIsAnIoError) {
  setenv("TMPDIR", (mRoot + "/no/such/folder").c_str(), 1);
  InspectorRun run = Deps("/QV/Bulk/ProgramFiles/StoryTime");
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.err, "vireline deps: cannot make a scratch folder for the check's requests\n");
  EXPECT_EQ(run.out, "");
}
