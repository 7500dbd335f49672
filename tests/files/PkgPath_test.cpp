#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include <vireline/PkgPath.h>

#include "DeviceRootTest.h"

namespace {

// Each model's layout written out by hand, to check the tables and the builders against.
struct ModelLayout {
  const char* name;
  const tDirConfig* config;
  std::vector<std::string> volumeRoots;
  std::string modelFolder;  // inserted below the volume root, or empty
  std::string profileDir;
  std::string uploadDir;
  std::vector<std::pair<std::string, std::string>> types;  // type → folder
  std::vector<std::vector<std::string>> volumeTypes;        // types held by each volume
};

const std::vector<std::string> kVoyantTypes = {"System", "Application", "LanguagePack", "Download", "Upload",
                                               "Local", "Consumable", "DiskImage", "DeviceAsset"};

std::vector<ModelLayout> Layouts() {
  return {
      {"Kastrel", &gKastrelCfg, {"a:", "b:"}, "Kastrel", "Profile", "Profile",
       {{"System", "System"}, {"Application", "Apps"}},
       {{}, {"System", "Application"}}},
      {"Vireline", &gVirelineCfg, {"/"}, "Zanto", "Data", "Data",
       {{"System", "Base"}, {"Application", "ProgramFiles"}, {"Avatar", "Data/Avatars"},
        {"CYODataset", "Data/CYO"}, {"MicroDownload", "Data/MDL"}},
       {{"System", "Application", "Avatar", "CYODataset", "MicroDownload"}}},
      {"Scrivel", &gScrivelCfg, {"/"}, "Scrivel", "Profile", "Profile",
       {{"System", "System"}, {"Application", "Apps"}, {"FlashCardSet", "FlashCards"}, {"Quiz", "Quizzes"},
        {"Music", "Music"}, {"ScrivelROM", "Firmware"}},
       {{"System", "Application", "FlashCardSet", "Quiz", "Music", "ScrivelROM"}}},
      {"Tamsel", &gTamselCfg, {"/QV"}, "", "Bulk/Data/Local", "Bulk/Data/Uploads",
       {{"System", "Base"}, {"Application", "Bulk/ProgramFiles"}, {"LanguagePack", "Bulk"},
        {"Download", "Bulk/Downloads"}, {"Upload", "Bulk/Data/Uploads"}, {"Local", "Bulk/Data/Local"},
        {"Consumable", "Bulk/Downloads"}, {"DiskImage", "Bulk/Downloads"}, {"DeviceAsset", "Bulk/ProgramFiles"}},
       {kVoyantTypes}},
      {"PelloraVoyant", &gPelloraVoyantCfg, {"/QV"}, "", "Bulk/Data/Local", "Bulk/Data/Uploads",
       {{"System", "Base"}, {"Application", "Bulk/ProgramFiles"}, {"LanguagePack", "Bulk"},
        {"Download", "Bulk/Downloads"}, {"Upload", "Bulk/Data/Uploads"}, {"Local", "Bulk/Data/Local"},
        {"Consumable", "Bulk/Downloads"}, {"DiskImage", "fuse"}, {"DeviceAsset", "Bulk/ProgramFiles"}},
       {kVoyantTypes}},
      {"KastrelDuo", &gKastrelDuoCfg, {"/QV"}, "", "Bulk/Data/Local", "Bulk/Data/Uploads",
       {{"System", "Base"}, {"Application", "Bulk/ProgramFiles"}, {"LanguagePack", "Bulk"},
        {"Download", "Bulk/Downloads"}, {"Upload", "Bulk/Data/Uploads"}, {"Local", "Bulk/Data/Local"},
        {"Consumable", "Bulk/Downloads"}, {"DiskImage", "Bulk/Downloads"}, {"DeviceAsset", "Bulk/ProgramFiles"}},
       {kVoyantTypes}},
  };
}

// Joins non-empty parts with "/" the way paths are written by hand.
std::string Join(std::initializer_list<std::string> parts) {
  std::string path;
  for (const std::string& part : parts) {
    if (part.empty()) continue;
    if (!path.empty() && path.back() != '/') path += "/";
    path += part;
  }
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path == "/" ? "" : path;
}

bool Holds(const std::vector<std::string>& types, const std::string& type) {
  for (const std::string& held : types) {
    if (held == type) return true;
  }
  return false;
}

const tDeviceVolumeId kVolumes[] = {0, 1, 2, 7};

std::string ProfileFolder(uint32_t profile) {
  if (profile < 3) return std::to_string(profile);
  return profile == 11 ? "All" : "";
}

void PrintTo(const ModelLayout& layout, std::ostream* out) { *out << layout.name; }

class PkgPathModels : public ::testing::TestWithParam<ModelLayout> {};

}  // namespace

TEST_P(PkgPathModels, PackageFoldersOfEveryTypeOnEveryVolume) {
  const ModelLayout& layout = GetParam();
  CPkgPathBase paths(layout.config);
  for (tDeviceVolumeId vol : kVolumes) {
    for (const auto& type : layout.types) {
      char buffer[256] = "junk";
      bool ok = paths.GetPackageDir(buffer, sizeof buffer, tPackageType(type.first.c_str()), vol, "Game1");
      bool held = vol < layout.volumeRoots.size() && Holds(layout.volumeTypes[vol], type.first);
      SCOPED_TRACE(type.first + " on volume " + std::to_string(vol));
      EXPECT_EQ(ok, held);
      EXPECT_EQ(std::string(buffer),
                held ? Join({layout.volumeRoots[vol], layout.modelFolder, type.second, "Game1"}) : "");
    }
  }
}

TEST_P(PkgPathModels, UnknownTypeHasNoPackageFolder) {
  CPkgPathBase paths(GetParam().config);
  char buffer[256] = "junk";
  EXPECT_FALSE(paths.GetPackageDir(buffer, sizeof buffer, tPackageType("NoSuchType"), 0, nullptr));
  EXPECT_STREQ(buffer, "");
}

TEST_P(PkgPathModels, ProfileFoldersOfEveryPlayerOnEveryVolume) {
  const ModelLayout& layout = GetParam();
  CPkgPathBase paths(layout.config);
  for (tDeviceVolumeId vol : kVolumes) {
    for (uint32_t profile : {0u, 1u, 2u, 3u, 10u, 11u, 12u, 0xFFFFFFFFu}) {
      char buffer[256];
      SCOPED_TRACE("profile " + std::to_string(profile) + " on volume " + std::to_string(vol));
      EXPECT_TRUE(paths.GetProfileDir(buffer, sizeof buffer, profile, vol, "Sub"));
      std::string expected = vol < layout.volumeRoots.size()
                                 ? Join({layout.volumeRoots[vol], layout.modelFolder, layout.profileDir,
                                         ProfileFolder(profile), "Sub"})
                                 : "";  // no root ends the path before it starts
      EXPECT_EQ(std::string(buffer), expected);
    }
  }
}

TEST_P(PkgPathModels, PlayLogOfEverySlotOnEveryVolume) {
  const ModelLayout& layout = GetParam();
  CPkgPathBase paths(layout.config);
  for (tDeviceVolumeId vol : kVolumes) {
    for (uint32_t profile : {0u, 1u, 2u, 3u, 11u, 0xFFFFFFFFu}) {
      char buffer[256] = "junk";
      bool ok = paths.GetProfileLogFile(buffer, sizeof buffer, profile, vol);
      std::string folder = ProfileFolder(profile);
      SCOPED_TRACE("profile " + std::to_string(profile) + " on volume " + std::to_string(vol));
      EXPECT_EQ(ok, !folder.empty());
      std::string expected;
      if (!folder.empty() && vol < layout.volumeRoots.size()) {
        expected = Join({layout.volumeRoots[vol], layout.modelFolder, layout.uploadDir, folder, "profile.log"});
      }
      EXPECT_EQ(std::string(buffer), expected);
    }
  }
}

TEST_P(PkgPathModels, UploadFoldersByPackageType) {
  const ModelLayout& layout = GetParam();
  CPkgPathBase paths(layout.config);
  for (tDeviceVolumeId vol : kVolumes) {
    for (const auto& type : layout.types) {
      char buffer[256] = "junk";
      bool ok = paths.GetUploadDir(buffer, sizeof buffer, tPackageType(type.first.c_str()), vol, 1, "Game");
      bool hasRoot = vol < layout.volumeRoots.size();
      SCOPED_TRACE(type.first + " on volume " + std::to_string(vol));
      EXPECT_EQ(ok, hasRoot);
      EXPECT_EQ(std::string(buffer),
                hasRoot ? Join({layout.volumeRoots[vol], layout.modelFolder, type.second, "1", "Game"}) : "");
    }
  }
}

TEST_P(PkgPathModels, UploadFoldersByDataType) {
  const ModelLayout& layout = GetParam();
  CPkgPathBase paths(layout.config);
  std::vector<std::pair<std::string, std::string>> dataTypes;
  if (layout.config == &gKastrelCfg) dataTypes = {{"CCLImage", "Rsrc/CCL"}, {"CartLTM", "Rsrc/Cart"}};
  ASSERT_EQ(paths.GetNumUploadDataTypes(), dataTypes.size());
  for (tDeviceVolumeId vol : kVolumes) {
    for (const auto& type : dataTypes) {
      char buffer[256] = "junk";
      bool ok = paths.GetUploadDir(buffer, sizeof buffer, tUploadDataType(type.first.c_str()), vol, 1, "Game");
      bool hasRoot = vol < layout.volumeRoots.size();
      EXPECT_EQ(ok, hasRoot);
      EXPECT_EQ(std::string(buffer),
                hasRoot ? Join({layout.volumeRoots[vol], layout.modelFolder, type.second, "1_Game"}) : "");
    }
  }
}

TEST_P(PkgPathModels, TypeCountsAndTypesPerVolume) {
  const ModelLayout& layout = GetParam();
  CPkgPathBase paths(layout.config);
  EXPECT_EQ(paths.GetNumPackageTypes(7), layout.types.size());
  for (size_t i = 0; i < layout.types.size(); ++i) {
    EXPECT_STREQ(paths.GetPackageType(i, 7).ToString(), layout.types[i].first.c_str());
    EXPECT_STREQ(paths.GetDirName(tPackageType(layout.types[i].first.c_str())), layout.types[i].second.c_str());
  }
  for (tDeviceVolumeId vol = 0; vol < layout.volumeRoots.size(); ++vol) {
    EXPECT_EQ(paths.GetNumPackageTypes(vol), layout.volumeTypes[vol].size());
    EXPECT_STREQ(paths.GetVolumeName(vol, tPackageType()), layout.volumeRoots[vol].c_str());
  }
  EXPECT_EQ(paths.GetNumPackageTypes(layout.volumeRoots.size()), 0u);
}

INSTANTIATE_TEST_SUITE_P(AllModels, PkgPathModels, ::testing::ValuesIn(Layouts()),
                         [](const ::testing::TestParamInfo<ModelLayout>& info) { return info.param.name; });

TEST(PackageType, EqualityIgnoresCase) {
  EXPECT_TRUE(tPackageType("application") == "Application");
  EXPECT_TRUE(tPackageType("APPLICATION") == tPackageType("Application"));
  EXPECT_FALSE(tPackageType("Applicatio") == "Application");
  EXPECT_TRUE(tPackageType("Applicatio") != "Application");
}

TEST(PackageType, OrderingFollowsByteValues) {
  EXPECT_TRUE(tPackageType("B") < tPackageType("a"));
  EXPECT_FALSE(tPackageType("a") < tPackageType("B"));
}

TEST(PackageType, EmptyNamesAreEqual) {
  EXPECT_TRUE(tPackageType() == tPackageType(""));
  EXPECT_TRUE(tPackageType() == tPackageType(nullptr));
}

TEST(PackageType, LongNamesAreCutToFifteenCharacters) {
  tPackageType type("ABCDEFGHIJKLMNOPQRSTUVWXYZ");
  EXPECT_STREQ(type.ToString(), "ABCDEFGHIJKLMNO");
  EXPECT_FALSE(type == "ABCDEFGHIJKLMNOPQRSTUVWXYZ");
}

TEST(PackageType, AssigningNullClearsTheName) {
  tPackageType type("System");
  type = nullptr;
  EXPECT_STREQ(type.ToString(), "");
  type = "Music";
  EXPECT_STREQ(type.ToString(), "Music");
}

TEST(UploadDataType, FollowsTheSameRules) {
  EXPECT_TRUE(tUploadDataType("cclimage") == "CCLImage");
  EXPECT_TRUE(tUploadDataType("B") < tUploadDataType("a"));
}

TEST(PkgPathBase, DefaultModelIsTamsel) {
  CPkgPathBase paths;
  EXPECT_STREQ(paths.getDeviceType(), "KastrelVoyant");
  EXPECT_EQ(paths.MkRoot(), nullptr);
}

TEST(PkgPathBase, OlderModelsInsertTheirNameBelowTheRoot) {
  EXPECT_STREQ(CPkgPathBase(&gVirelineCfg).MkRoot(), "Zanto");
  EXPECT_STREQ(CPkgPathBase(&gKastrelCfg).MkRoot(), "Kastrel");
  EXPECT_STREQ(CPkgPathBase(&gScrivelCfg).MkRoot(), "Scrivel");
}

TEST(PkgPathBase, NoModelBoundAnswersEmpty) {
  CPkgPathBase paths(nullptr);
  char buffer[64] = "junk";
  EXPECT_EQ(paths.getDeviceType(), nullptr);
  EXPECT_EQ(paths.GetNumPackageTypes(7), 0u);
  EXPECT_FALSE(paths.GetPackageDir(buffer, sizeof buffer, tPackageType("System"), 0, nullptr));
  EXPECT_TRUE(paths.CheckDeviceIntegrity());
  paths.init(&gTamselCfg);
  EXPECT_STREQ(paths.getDeviceType(), "KastrelVoyant");
}

TEST(PkgPathBase, WorkedExamples) {
  char buffer[256];
  ASSERT_TRUE(CPkgPathBase(&gTamselCfg).GetPackageDir(buffer, sizeof buffer, tPackageType("Application"), 0,
                                                      "Game1"));
  EXPECT_STREQ(buffer, "/QV/Bulk/ProgramFiles/Game1");
  ASSERT_TRUE(CPkgPathBase(&gVirelineCfg).GetPackageDir(buffer, sizeof buffer, tPackageType("Avatar"), 0, nullptr));
  EXPECT_STREQ(buffer, "/Zanto/Data/Avatars");
  ASSERT_TRUE(CPkgPathBase(&gKastrelCfg).GetPackageDir(buffer, sizeof buffer, tPackageType("System"), 1, nullptr));
  EXPECT_STREQ(buffer, "b:/Kastrel/System");
}

TEST(PkgPathBase, SecondVolumeOfASingleVolumeModelIsNull) {
  EXPECT_EQ(CPkgPathBase(&gTamselCfg).GetVolumeName(1, tPackageType("System")), nullptr);
  EXPECT_EQ(CPkgPathBase(&gTamselCfg).GetVolumeName(1, tPackageType()), nullptr);
}

TEST(PkgPathBase, VolumeWithoutTheTypeHasNoName) {
  EXPECT_EQ(CPkgPathBase(&gKastrelCfg).GetVolumeName(0, tPackageType("System")), nullptr);
  EXPECT_STREQ(CPkgPathBase(&gKastrelCfg).GetVolumeName(1, tPackageType("system")), "b:");
}

TEST(PkgPathBase, WildcardVolumeHoldsEveryType) {
  const tPackageType any[1] = {"*"};
  const tVolumeConfig volume[1] = {{"/media", 1, any}};
  tDirConfig config = gTamselCfg;
  config.volumes = volume;
  EXPECT_STREQ(CPkgPathBase(&config).GetVolumeName(0, tPackageType("Music")), "/media");
}

TEST(PkgPathBase, TypeBeyondTheTableIsEmpty) {
  CPkgPathBase paths(&gTamselCfg);
  EXPECT_TRUE(paths.GetPackageType(9, 7) == tPackageType());
  EXPECT_TRUE(paths.GetPackageType(0, 1) == tPackageType());
  EXPECT_TRUE(paths.GetUploadDataType(0) == tUploadDataType());
  EXPECT_STREQ(CPkgPathBase(&gKastrelCfg).GetUploadDataType(1).ToString(), "CartLTM");
}

TEST(PkgPathBase, RootFolderOfEachVolume) {
  char buffer[64];
  ASSERT_TRUE(CPkgPathBase(&gTamselCfg).GetRootDir(buffer, sizeof buffer, 0, "doom"));
  EXPECT_STREQ(buffer, "/QV/doom");
  ASSERT_TRUE(CPkgPathBase(&gVirelineCfg).GetRootDir(buffer, sizeof buffer, 0, nullptr));
  EXPECT_STREQ(buffer, "/Zanto");
  ASSERT_TRUE(CPkgPathBase(&gTamselCfg).GetRootDir(buffer, sizeof buffer, 3, "doom"));
  EXPECT_STREQ(buffer, "");  // no such volume: nothing to compose
}

TEST(PkgPathBase, VolumeTagNames) {
  char buffer[64];
  ASSERT_TRUE(CPkgPathBase(&gTamselCfg).GetVolumeTagName(buffer, sizeof buffer, 0));
  EXPECT_STREQ(buffer, "/QV/Primary");
  ASSERT_TRUE(CPkgPathBase(&gKastrelCfg).GetVolumeTagName(buffer, sizeof buffer, 1));
  EXPECT_STREQ(buffer, "b:/Secondary");
  ASSERT_TRUE(CPkgPathBase(&gVirelineCfg).GetVolumeTagName(buffer, sizeof buffer, 0));
  EXPECT_STREQ(buffer, "/Primary");
}

TEST(PkgPathBase, FurtherVolumesAreNumbered) {
  const tVolumeConfig volumes[3] = {{"/a", 0, nullptr}, {"/b", 0, nullptr}, {"/c", 0, nullptr}};
  tDirConfig config = gTamselCfg;
  config.numVolumes = 3;
  config.volumes = volumes;
  char buffer[64];
  ASSERT_TRUE(CPkgPathBase(&config).GetVolumeTagName(buffer, sizeof buffer, 2));
  EXPECT_STREQ(buffer, "/c/Volume-2");
}

TEST(PkgPathBase, FlightRecorderFolder) {
  char buffer[64];
  ASSERT_TRUE(CPkgPathBase().GetFlightRecorderDir(buffer, sizeof buffer));
  EXPECT_STREQ(buffer, "/QV/Base/FR");
  ASSERT_TRUE(CPkgPathBase(&gVirelineCfg).GetFlightRecorderDir(buffer, sizeof buffer));
  EXPECT_STREQ(buffer, "/Base/FR");  // the model name is not inserted here
}

TEST(PkgPathBase, DataTypeUploadsOfTheSharedProfilesTakeTheSubPathAlone) {
  CPkgPathBase paths(&gKastrelCfg);
  char buffer[256];
  for (uint32_t profile : {10u, 11u, 12u}) {
    ASSERT_TRUE(paths.GetUploadDir(buffer, sizeof buffer, tUploadDataType("cartltm"), 1, profile, "Game"));
    EXPECT_STREQ(buffer, "b:/Kastrel/Rsrc/Cart/Game");
  }
  ASSERT_TRUE(paths.GetUploadDir(buffer, sizeof buffer, tUploadDataType("CCLImage"), 1, 3, nullptr));
  EXPECT_STREQ(buffer, "b:/Kastrel/Rsrc/CCL/3_");
}

TEST(PkgPathBase, DataTypeUploadKeepsAtMost253CharactersOfTheSubPath) {
  CPkgPathBase paths(&gKastrelCfg);
  std::string longName(300, 'n');
  char buffer[512];
  ASSERT_TRUE(paths.GetUploadDir(buffer, sizeof buffer, tUploadDataType("CCLImage"), 1, 2, longName.c_str()));
  EXPECT_EQ(std::string(buffer), "b:/Kastrel/Rsrc/CCL/2_" + std::string(253, 'n'));
}

TEST(PkgPathBase, UnknownDataTypeStopsAfterTheRoot) {
  char buffer[256];
  ASSERT_TRUE(CPkgPathBase(&gKastrelCfg).GetUploadDir(buffer, sizeof buffer, tUploadDataType("Other"), 1, 1, "x"));
  EXPECT_STREQ(buffer, "b:/Kastrel");
}

class PkgPathTraceTest : public DeviceRootTest {};

TEST_F(PkgPathTraceTest, UploadWithoutAVolumeTracesBothForms) {
  CaptureDebugOutput();
  char buffer[64] = "junk";
  EXPECT_FALSE(CPkgPathBase(&gTamselCfg).GetUploadDir(buffer, sizeof buffer, tPackageType("Upload"), 1, 0, "x"));
  EXPECT_STREQ(buffer, "");
  EXPECT_FALSE(CPkgPathBase(&gKastrelCfg).GetUploadDir(buffer, sizeof buffer, tUploadDataType("CartLTM"), 4, 0, "x"));
  EXPECT_EQ(DebugOutput(),
            "PkgPathBase::GetUploadDir failure vol '(null)', type Upload.\n"
            "PkgPathBase::GetUploadDir failure vol '(null)', type CartLTM.\n");
}

TEST_F(PkgPathTraceTest, DeviceIntegrityFailsOnADoomMarker) {
  CPkgPathBase paths;
  MakeDirs("/QV");
  EXPECT_TRUE(paths.CheckDeviceIntegrity());
  WriteFile("/QV/doom", "");
  EXPECT_FALSE(paths.CheckDeviceIntegrity());
}

TEST_F(PkgPathTraceTest, PackageIntegrityNeedsTheFolderAndNoMarker) {
  CPkgPathBase paths;
  tPackageType application("Application");
  EXPECT_FALSE(paths.CheckPackageIntegrity(application, "Game1", 0));
  WriteFile("/QV/Bulk/ProgramFiles/Game1", "a file, not a package folder");
  EXPECT_FALSE(paths.CheckPackageIntegrity(application, "Game1", 0));
  MakeDirs("/QV/Bulk/ProgramFiles/Game2");
  EXPECT_TRUE(paths.CheckPackageIntegrity(application, "Game2", 0));
  WriteFile("/QV/Bulk/ProgramFiles/Game2/doom", "");
  EXPECT_FALSE(paths.CheckPackageIntegrity(application, "Game2", 0));
}

TEST(MakeFilePath, JoinsComponentsWithOneSlash) {
  char buffer[64];
  ASSERT_TRUE(CPkgPathBase::MakeFilePath(buffer, sizeof buffer, "/QV/", "Base", "", "settings.cfg", nullptr));
  EXPECT_STREQ(buffer, "/QV/Base/settings.cfg");
}

TEST(MakeFilePath, RootAloneBecomesEmpty) {
  char buffer[8] = "junk";
  ASSERT_TRUE(CPkgPathBase::MakeFilePath(buffer, sizeof buffer, "/", nullptr));
  EXPECT_STREQ(buffer, "");
}

TEST(MakeFilePath, EmptyComponentsAreSkipped) {
  char buffer[16] = "junk";
  ASSERT_TRUE(CPkgPathBase::MakeFilePath(buffer, sizeof buffer, "", "", nullptr));
  EXPECT_STREQ(buffer, "");
  ASSERT_TRUE(CPkgPathBase::MakeFilePath(buffer, sizeof buffer, "a", "", "b", nullptr));
  EXPECT_STREQ(buffer, "a/b");
}

TEST(MakeFilePath, ComponentsThatExactlyFit) {
  char buffer[8];  // "/QV/Base" is 8 characters: one too many
  EXPECT_FALSE(CPkgPathBase::MakeFilePath(buffer, sizeof buffer, "/QV", "Base", nullptr));
  char exact[9];
  ASSERT_TRUE(CPkgPathBase::MakeFilePath(exact, sizeof exact, "/QV", "Base", nullptr));
  EXPECT_STREQ(exact, "/QV/Base");
}

TEST(MakeFilePath, OverflowByOneByteFails) {
  char buffer[4];
  EXPECT_FALSE(CPkgPathBase::MakeFilePath(buffer, sizeof buffer, "abcd", nullptr));
  ASSERT_TRUE(CPkgPathBase::MakeFilePath(buffer, sizeof buffer, "abc", nullptr));
  EXPECT_STREQ(buffer, "abc");
}

TEST(MakeFilePath, NothingCanFollowAComponentThatFilledTheBuffer) {
  char buffer[4];
  EXPECT_FALSE(CPkgPathBase::MakeFilePath(buffer, sizeof buffer, "abc", "d", nullptr));
}

TEST(MakeFilePath, NullBufferFails) { EXPECT_FALSE(CPkgPathBase::MakeFilePath(nullptr, 10, "a", nullptr)); }

TEST(MakeFilePath, ZeroSizedBufferFitsNothing) {
  char buffer[1] = {'x'};
  EXPECT_FALSE(CPkgPathBase::MakeFilePath(buffer, 0, "a", nullptr));
  EXPECT_EQ(buffer[0], 'x');
}

TEST(MakeFilePath, PathThatDoesNotFitGivesFalse) {
  char buffer[10];
  EXPECT_FALSE(CPkgPathBase(&gTamselCfg).GetPackageDir(buffer, sizeof buffer, tPackageType("Application"), 0,
                                                        "Game1"));
}

TEST(PkgPathBase, NoModelBoundHasNoTypesAndNoUploadFolders) {
  CPkgPathBase paths(nullptr);
  EXPECT_TRUE(paths.GetPackageType(0, 0) == tPackageType());
  EXPECT_EQ(paths.GetNumUploadDataTypes(), 0u);
  EXPECT_TRUE(paths.GetUploadDataType(0) == tUploadDataType());
  char buffer[64] = "junk";
  EXPECT_FALSE(paths.GetUploadDir(buffer, sizeof buffer, tPackageType("Application"), 0, 1, "x"));
  EXPECT_STREQ(buffer, "");
  std::strcpy(buffer, "junk");
  EXPECT_FALSE(paths.GetUploadDir(buffer, sizeof buffer, tUploadDataType("Journal"), 0, 1, "x"));
  EXPECT_STREQ(buffer, "");
  std::strcpy(buffer, "junk");
  EXPECT_FALSE(paths.GetProfileLogFile(buffer, sizeof buffer, 99, 0));
  EXPECT_STREQ(buffer, "");
}

TEST_F(PkgPathTraceTest, OutOfRangeTypesAndEmptyBuffersAnswerEmpty) {
  CPkgPathBase paths(&gTamselCfg);
  EXPECT_TRUE(paths.GetPackageType(999, 0) == tPackageType());
  EXPECT_TRUE(paths.GetPackageType(0, 42) == tPackageType());
  EXPECT_TRUE(paths.GetUploadDataType(999) == tUploadDataType());
  EXPECT_FALSE(paths.GetPackageDir(nullptr, 0, tPackageType("NoSuchType"), 0, nullptr));
  EXPECT_FALSE(paths.GetProfileLogFile(nullptr, 0, 99, 0));
  char buffer[8] = "junk";
  EXPECT_FALSE(paths.GetUploadDir(buffer, 0, tPackageType("Upload"), 1, 0, "x"));
  EXPECT_FALSE(CPkgPathBase(&gKastrelCfg).GetUploadDir(buffer, 0, tUploadDataType("CartLTM"), 4, 0, "x"));
  EXPECT_STREQ(buffer, "junk");  // a buffer of no size is not touched
}
