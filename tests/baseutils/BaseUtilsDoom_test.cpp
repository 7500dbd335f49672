// Doom markers and the check of the device's critical content.
#include <vireline/BaseUtils.h>
#include <vireline/CSystem.h>
#include <vireline/Platform.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "DeviceRootTest.h"
#include "platform/Env.h"

namespace {

const char kPlatformFile[] = "/etc/vireline/platform.cfg";
const char kStartMessage[] = "HasDoomPackageCritical: global doom file detected\n";

// Answers the first look at one path as if nothing were there, the way a
// marker created by someone else between two looks appears.
class LateMarkerEnv : public vireline::EnvWrapper {
 public:
  LateMarkerEnv(vireline::Env* target, const std::string& path) : EnvWrapper(target), mPath(path) {}

  vireline::Result Stat(const std::string& path, vireline::FileInfo* info) override {
    if (path == mPath && !mSeen) {
      mSeen = true;
      return vireline::Result::Error(ENOENT);
    }
    return EnvWrapper::Stat(path, info);
  }

 private:
  std::string mPath;
  bool mSeen = false;
};

}  // namespace

class BaseUtilsDoomTest : public DeviceRootTest {
 protected:
  // The device's language is set, so that the locale lookup has nothing to report.
  void SetUp() override {
    DeviceRootTest::SetUp();
    LTM::CSystem().SetLocale("en-us");
  }

  void SetPlatform(const std::string& name) { WriteFile(kPlatformFile, "Name=" + name + "\nID=2\nTouchScreen=1\n"); }

  // Tamsel's English asset pack and its critical-content list.
  void WriteTamselList(const std::string& json) {
    SetPlatform("Tamsel");
    WriteFile("/QV/Base/K9W_en/Data/CriticalDoom.json", json);
  }

  bool Critical() {
    CaptureDebugOutput();
    PlatformDebug().SetMasterDebugLevel(2);
    return BaseUtils::Instance()->HasDoomPackageCritical();
  }
};

TEST_F(BaseUtilsDoomTest, AFolderWithAndWithoutATrailingSlashTestsTheSameMarker) {
  WriteFile("/x/doom", "");
  EXPECT_TRUE(BaseUtils::Instance()->HasDoomPackage("/x"));
  EXPECT_TRUE(BaseUtils::Instance()->HasDoomPackage("/x/"));
  EXPECT_FALSE(BaseUtils::Instance()->HasDoomPackage("/y"));
  EXPECT_FALSE(BaseUtils::Instance()->HasDoomPackage("/y/"));
}

TEST_F(BaseUtilsDoomTest, AnythingNamedDoomIsAMarkerWhateverItHolds) {
  WriteFile("/QV/Bulk/Pack/doom", "not empty");
  MakeDirs("/QV/Bulk/Other/doom");
  EXPECT_TRUE(BaseUtils::Instance()->HasDoomPackage("/QV/Bulk/Pack"));
  EXPECT_TRUE(BaseUtils::Instance()->HasDoomPackage("/QV/Bulk/Other"));
}

TEST_F(BaseUtilsDoomTest, AMarkerInASubFolderDoesNotDoomTheFolder) {
  WriteFile("/QV/Bulk/Pack/Art/doom", "");
  EXPECT_FALSE(BaseUtils::Instance()->HasDoomPackage("/QV/Bulk/Pack"));
}

TEST_F(BaseUtilsDoomTest, TheGlobalMarkerLiesAtTheContentRoot) {
  EXPECT_FALSE(BaseUtils::Instance()->HasDoomPackage());
  WriteFile("/QV/Bulk/doom", "");
  EXPECT_FALSE(BaseUtils::Instance()->HasDoomPackage());
  WriteFile("/QV/doom", "");
  EXPECT_TRUE(BaseUtils::Instance()->HasDoomPackage());
}

TEST_F(BaseUtilsDoomTest, AnUnknownPlatformCountsAsDoomedAndCreatesNoMarkers) {
  EXPECT_TRUE(Critical());
  EXPECT_EQ(DebugOutput(), kStartMessage);
  EXPECT_FALSE(Exists("/QV/doom"));
  EXPECT_EQ(List("/QV"), std::vector<std::string>{"Bulk"});
}

TEST_F(BaseUtilsDoomTest, TheFirstModelCountsAsDoomedAndCreatesNoMarkers) {
  SetPlatform("Zanto");
  WriteFile("/QV/Base/K9W_en/Data/CriticalDoom.json", "{\"FolderList\":[\"/QV/Missing\"]}");
  EXPECT_TRUE(Critical());
  EXPECT_EQ(DebugOutput(), kStartMessage);
  EXPECT_FALSE(Exists("/QV/doom"));
  EXPECT_FALSE(Exists("/QV/Missing"));
}

TEST_F(BaseUtilsDoomTest, TheStartMessageComesFirstWhateverTheOutcome) {
  WriteTamselList("{\"FolderList\":[]}");
  EXPECT_FALSE(Critical());
  EXPECT_EQ(DebugOutput(), kStartMessage);
}

TEST_F(BaseUtilsDoomTest, TheStartMessageIsALevelTwoMessage) {
  CaptureDebugOutput();
  PlatformDebug().SetMasterDebugLevel(1);
  EXPECT_TRUE(BaseUtils::Instance()->HasDoomPackageCritical());
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(BaseUtilsDoomTest, EveryListedFolderPresentAndUndoomedIsNotDoomed) {
  MakeDirs("/QV/Base/K9W_en/Audio/en");
  MakeDirs("/QV/Bulk/LanguagePack_en");
  WriteTamselList("{\"FolderList\":[\"/QV/Base/K9W_en/Audio/en\",\"/QV/Bulk/LanguagePack_en/\"]}");
  EXPECT_FALSE(Critical());
  EXPECT_EQ(DebugOutput(), kStartMessage);
  EXPECT_FALSE(Exists("/QV/doom"));
}

TEST_F(BaseUtilsDoomTest, AMissingDocumentCountsAsDoomed) {
  SetPlatform("Tamsel");
  MakeDirs("/QV/Base/K9W_en/Data");
  EXPECT_TRUE(Critical());
  EXPECT_EQ(DebugOutput(), kStartMessage);
  EXPECT_FALSE(Exists("/QV/doom"));
}

TEST_F(BaseUtilsDoomTest, AnUnreadableDocumentCountsAsDoomed) {
  WriteTamselList("{\"FolderList\": [");
  EXPECT_TRUE(Critical());
  EXPECT_FALSE(Exists("/QV/doom"));
}

TEST_F(BaseUtilsDoomTest, ADocumentWithoutAFolderListCountsAsDoomed) {
  WriteTamselList("{\"Folders\":[\"/QV/Base\"]}");
  EXPECT_TRUE(Critical());
  EXPECT_EQ(DebugOutput(), kStartMessage);
  EXPECT_FALSE(Exists("/QV/doom"));
}

TEST_F(BaseUtilsDoomTest, ADocumentThatIsNotAnObjectHasNoFolderListAndAssertsNothing) {
  WriteTamselList("[\"/QV/Base\"]");
  EXPECT_TRUE(Critical());
  EXPECT_EQ(DebugOutput(), kStartMessage);
}

TEST_F(BaseUtilsDoomTest, AFolderListThatIsNotAnArrayListsNoFolders) {
  WriteTamselList("{\"FolderList\":\"/QV/Missing\"}");
  EXPECT_FALSE(Critical());
  EXPECT_EQ(DebugOutput(), kStartMessage);
  EXPECT_FALSE(Exists("/QV/doom"));
}

TEST_F(BaseUtilsDoomTest, EntriesThatAreNotTextArePassedOverWithoutAnAssertion) {
  MakeDirs("/QV/Bulk/Present");
  WriteTamselList("{\"FolderList\":[1,null,true,{\"Folder\":\"/QV/Missing\"},[\"/QV/Missing\"],\"/QV/Bulk/Present\"]}");
  EXPECT_FALSE(Critical());
  EXPECT_EQ(DebugOutput(), kStartMessage);
  EXPECT_FALSE(Exists("/QV/doom"));
  EXPECT_FALSE(Exists("/QV/Missing"));
}

TEST_F(BaseUtilsDoomTest, AMissingFolderBelowAudioDoomsThePackAboveIt) {
  WriteTamselList("{\"FolderList\":[\"/a/b/Audio/en\"]}");
  EXPECT_TRUE(Critical());
  EXPECT_EQ(DebugOutput(), std::string(kStartMessage) + "HasDoomPackageCritical: missing critical folder /a/b/Audio/en\n");
  EXPECT_TRUE(Exists("/a/b/doom"));
  EXPECT_TRUE(Exists("/QV/doom"));
  EXPECT_EQ(ReadFile("/a/b/doom"), "");
  EXPECT_FALSE(Exists("/a/b/Audio"));
  EXPECT_TRUE(BaseUtils::Instance()->HasDoomPackage());
}

TEST_F(BaseUtilsDoomTest, FindingsAreLevelOneMessages) {
  WriteTamselList("{\"FolderList\":[\"/QV/Bulk/Gone\"]}");
  CaptureDebugOutput();
  PlatformDebug().SetMasterDebugLevel(1);
  EXPECT_TRUE(BaseUtils::Instance()->HasDoomPackageCritical());
  EXPECT_EQ(DebugOutput(), "HasDoomPackageCritical: missing critical folder /QV/Bulk/Gone\n");
}

TEST_F(BaseUtilsDoomTest, TheAudioCutIsAPlainSubstringMatch) {
  WriteTamselList("{\"FolderList\":[\"/QV/Base/K9W_en/AudioBooks/Story\"]}");
  EXPECT_TRUE(Critical());
  EXPECT_TRUE(Exists("/QV/Base/K9W_en/doom"));
  EXPECT_FALSE(Exists("/QV/Base/K9W_en/AudioBooks"));
}

TEST_F(BaseUtilsDoomTest, AMissingFolderWithoutAudioGetsItsOwnMarker) {
  WriteTamselList("{\"FolderList\":[\"/QV/Bulk/LanguagePack_en\"]}");
  EXPECT_TRUE(Critical());
  EXPECT_TRUE(Exists("/QV/Bulk/LanguagePack_en/doom"));
  EXPECT_TRUE(Exists("/QV/doom"));
}

TEST_F(BaseUtilsDoomTest, ADoomedFolderIsReportedAsMissing) {
  WriteFile("/QV/Bulk/LanguagePack_en/doom", "");
  WriteTamselList("{\"FolderList\":[\"/QV/Bulk/LanguagePack_en\"]}");
  EXPECT_TRUE(Critical());
  EXPECT_EQ(DebugOutput(),
            std::string(kStartMessage) + "HasDoomPackageCritical: missing critical folder /QV/Bulk/LanguagePack_en\n");
  EXPECT_TRUE(Exists("/QV/doom"));
}

TEST_F(BaseUtilsDoomTest, AFileWhereAFolderShouldBeIsMissing) {
  WriteFile("/QV/Bulk/LanguagePack_en", "not a folder");
  WriteTamselList("{\"FolderList\":[\"/QV/Bulk/LanguagePack_en\"]}");
  EXPECT_TRUE(Critical());
  EXPECT_NE(DebugOutput().find("missing critical folder /QV/Bulk/LanguagePack_en\n"), std::string::npos);
  EXPECT_TRUE(Exists("/QV/doom"));
}

TEST_F(BaseUtilsDoomTest, EveryEntryIsCheckedWithoutAnEarlyStop) {
  MakeDirs("/QV/Bulk/Present");
  WriteTamselList("{\"FolderList\":[\"/QV/Bulk/One/Audio\",\"/QV/Bulk/Present\",\"/QV/Bulk/Two\"]}");
  EXPECT_TRUE(Critical());
  EXPECT_EQ(DebugOutput(), std::string(kStartMessage) +
                               "HasDoomPackageCritical: missing critical folder /QV/Bulk/One/Audio\n"
                               "HasDoomPackageCritical: missing critical folder /QV/Bulk/Two\n");
  EXPECT_TRUE(Exists("/QV/Bulk/One/doom"));
  EXPECT_TRUE(Exists("/QV/Bulk/Two/doom"));
  EXPECT_FALSE(Exists("/QV/Bulk/Present/doom"));
}

TEST_F(BaseUtilsDoomTest, AMarkerThatAppearsBetweenTheTwoLooksIsReportedAsDetected) {
  MakeDirs("/QV/Bulk/Present");
  WriteFile("/QV/Bulk/Present/doom", "");
  WriteTamselList("{\"FolderList\":[\"/QV/Bulk/Present\"]}");
  LateMarkerEnv env(vireline::Env::Default(), "/QV/Bulk/Present/doom");
  vireline::Env::SetCurrent(&env);
  EXPECT_TRUE(Critical());
  EXPECT_EQ(DebugOutput(), std::string(kStartMessage) + "HasDoomPackageCritical: doom file detected /QV/Bulk/Present\n");
  EXPECT_FALSE(Exists("/QV/doom"));
}

TEST_F(BaseUtilsDoomTest, TheListOfTheDevicesLanguageIsRead) {
  SetPlatform("Tamsel");
  LTM::CSystem().SetLocale("fr-fr");
  WriteFile("/QV/Base/K9W_en/Data/CriticalDoom.json", "{\"FolderList\":[]}");
  WriteFile("/QV/Base/K9W_fr/Data/CriticalDoom.json", "{\"FolderList\":[\"/QV/Bulk/LanguagePack_fr\"]}");
  EXPECT_TRUE(Critical());
  EXPECT_TRUE(Exists("/QV/Bulk/LanguagePack_fr/doom"));
}

// The platform type is kept once known, so each platform is a test (and a process) of its own.
struct AssetPackCase {
  const char* platform;
  const char* pack;
};

void PrintTo(const AssetPackCase& value, std::ostream* out) { *out << value.platform << " " << value.pack; }

class BaseUtilsDoomPlatformTest : public BaseUtilsDoomTest, public testing::WithParamInterface<AssetPackCase> {};

TEST_P(BaseUtilsDoomPlatformTest, ReadsTheListInItsOwnAssetPack) {
  SetPlatform(GetParam().platform);
  WriteFile(std::string("/QV/Base/") + GetParam().pack + "/Data/CriticalDoom.json",
            "{\"FolderList\":[\"/QV/Bulk/Critical\"]}");
  EXPECT_TRUE(Critical());
  EXPECT_EQ(DebugOutput(), std::string(kStartMessage) + "HasDoomPackageCritical: missing critical folder /QV/Bulk/Critical\n");
  MakeDirs("/QV/Bulk/Critical");
  ASSERT_EQ(std::remove(Host("/QV/Bulk/Critical/doom").c_str()), 0);
  EXPECT_FALSE(Critical());
}

INSTANTIATE_TEST_SUITE_P(Platforms, BaseUtilsDoomPlatformTest,
                         testing::Values(AssetPackCase{"Tamsel", "K9W_en"}, AssetPackCase{"Oskava", "MqdxAssets_en"},
                                         AssetPackCase{"MIRA", "MiraAssets_en"},
                                         AssetPackCase{"TARVESSA", "MqdxAssets_en"}),
                         [](const testing::TestParamInfo<AssetPackCase>& info) { return std::string(info.param.platform); });
