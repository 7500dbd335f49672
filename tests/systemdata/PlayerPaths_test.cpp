#include <gtest/gtest.h>

#include "systemdata/SystemDataTest.h"

class PlayerPathsTest : public SystemDataTest {
 protected:
  // A title with package id "PKG-1" in the folder "Game7".
  void StartTitle() {
    WriteMeta("/QV/Bulk/ProgramFiles/Game7/", "PackageID=PKG-1\nProductID=0x00000042\n");
    Data()->SetCurrentTitlePath("/QV/Bulk/ProgramFiles/Game7/");
  }

  static std::string DeprecatedWarning(const char* signature) {
    return std::string("WARNING:  Use of a deprecated function: ") + signature + "\n";
  }
};

TEST_F(PlayerPathsTest, ProfileFolderIsNamedByTheNumberAndNotCreated) {
  EXPECT_EQ(Data()->GetDataProfilePath(0), "/QV/Bulk/Data/Local/0/");
  EXPECT_EQ(Data()->GetDataProfilePath(3), "/QV/Bulk/Data/Local/3/");
  EXPECT_EQ(Data()->GetDataProfilePath(-2), "/QV/Bulk/Data/Local/-2/");
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Local/0"));
}

TEST_F(PlayerPathsTest, ProfileLogFolderIsTheFolderOfThePlayLog) {
  EXPECT_EQ(Data()->GetDataProfileLogPath(0), "/QV/Bulk/Data/Uploads/0/");
  EXPECT_EQ(Data()->GetDataProfileLogPath(2), "/QV/Bulk/Data/Uploads/2/");
  EXPECT_EQ(Data()->GetDataProfileLogPath(11), "/QV/Bulk/Data/Uploads/All/");
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Uploads/0"));
}

TEST_F(PlayerPathsTest, ProfileLogFolderIsEmptyForPlayersWithoutAPlayLog) {
  EXPECT_EQ(Data()->GetDataProfileLogPath(3), "");
  EXPECT_EQ(Data()->GetDataProfileLogPath(-1), "");
  EXPECT_EQ(Data()->GetDataProfileLogPath(-2), "");
}

TEST_F(PlayerPathsTest, ProfileLogFolderUsesTheLowEightBitsOfThePlayer) {
  EXPECT_EQ(Data()->GetDataProfileLogPath(256 + 1), "/QV/Bulk/Data/Uploads/1/");
  EXPECT_EQ(Data()->GetDataProfileLogPath(256 + 11), "/QV/Bulk/Data/Uploads/All/");
}

TEST_F(PlayerPathsTest, LocalDataOfAllPlayersIsInTheAllFolder) {
  EXPECT_EQ(Data()->GetLocalDataPath(-2, "x"), "/QV/Bulk/Data/Local/All/x/");
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Local/All/x"));
}

TEST_F(PlayerPathsTest, LocalDataIsCreatedForThePlayer) {
  EXPECT_EQ(Data()->GetLocalDataPath(1, "Stickers"), "/QV/Bulk/Data/Local/1/Stickers/");
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Local/1/Stickers"));
}

TEST_F(PlayerPathsTest, LocalDataOfTheCurrentPlayerAsksTheSettings) {
  WriteSettings("en-us", 2);
  EXPECT_EQ(Data()->GetLocalDataPath(-3, "x"), "/QV/Bulk/Data/Local/2/x/");
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Local/2/x"));
}

TEST_F(PlayerPathsTest, LocalDataKeepsWhatAnExistingFolderHolds) {
  WriteFile("/QV/Bulk/Data/Local/0/x/kept.txt", "kept");
  EXPECT_EQ(Data()->GetLocalDataPath(0, "x"), "/QV/Bulk/Data/Local/0/x/");
  EXPECT_EQ(ReadFile("/QV/Bulk/Data/Local/0/x/kept.txt"), "kept");
}

TEST_F(PlayerPathsTest, UploadDataOfPlayersOutsideTheSlotsGoesToPlayer3) {
  WriteSettings("en-us", 7);
  EXPECT_EQ(Data()->GetUploadDataPath("x"), "/QV/Bulk/Data/Uploads/3//x/");
  WriteSettings("en-us", -1);
  EXPECT_EQ(Data()->GetUploadDataPath("x"), "/QV/Bulk/Data/Uploads/3//x/");
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Uploads/3/x"));
}

TEST_F(PlayerPathsTest, UploadDataWithoutSettingsGoesToPlayer3) {
  EXPECT_EQ(Data()->GetUploadDataPath("x"), "/QV/Bulk/Data/Uploads/3//x/");
}

TEST_F(PlayerPathsTest, UploadDataIsFiledUnderThePlayerAndTheTitlesPackage) {
  StartTitle();
  for (int player = 0; player <= 3; ++player) {
    WriteSettings("en-us", player);
    std::string expected = "/QV/Bulk/Data/Uploads/" + std::to_string(player) + "/PKG-1/Scores/";
    EXPECT_EQ(Data()->GetUploadDataPath("Scores"), expected);
    EXPECT_TRUE(Exists(expected));
  }
}

TEST_F(PlayerPathsTest, UploadDataOfAllPlayersIsInTheAllFolder) {
  StartTitle();
  WriteSettings("en-us", -2);
  EXPECT_EQ(Data()->GetUploadDataPath("x"), "/QV/Bulk/Data/Uploads/All/PKG-1/x/");
}

TEST_F(PlayerPathsTest, DeprecatedGameFolderIsTheTitlesPackageUnderAll) {
  StartTitle();
  CaptureDebugOutput();
  EXPECT_EQ(Data()->GetDataGamePath(), "/QV/Bulk/Data/Local/All/PKG-1/");
  EXPECT_EQ(DebugOutput(), DeprecatedWarning("Quorvane::Orvo::CPath CSystemData::GetDataGamePath()"));
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Local/All/PKG-1"));
}

TEST_F(PlayerPathsTest, DeprecatedGameFolderUsesTheGameIdUnderTheZantoFlag) {
  StartTitle();
  Data()->SetZantoLegacyFlag(true);
  EXPECT_EQ(Data()->GetDataGamePath(), "/QV/Bulk/Data/Local/All/Game7/");
  EXPECT_EQ(Data()->GetDataProfileGamePath(1), "/QV/Bulk/Data/Local/1/Game7/");
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Local/1/Game7"));
}

TEST_F(PlayerPathsTest, DeprecatedGameFolderWithoutATitleIsThePlayersFolder) {
  EXPECT_EQ(Data()->GetDataGamePath(), "/QV/Bulk/Data/Local/All/");
  EXPECT_EQ(Data()->GetDataProfileGamePath(0), "/QV/Bulk/Data/Local/0/");
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Local/0"));
}

TEST_F(PlayerPathsTest, DeprecatedPlayerGameFolderIsCreated) {
  StartTitle();
  CaptureDebugOutput();
  EXPECT_EQ(Data()->GetDataProfileGamePath(2), "/QV/Bulk/Data/Local/2/PKG-1/");
  EXPECT_EQ(DebugOutput(),
            DeprecatedWarning("Quorvane::Orvo::CPath CSystemData::GetDataProfileGamePath(tPlayerID)"));
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Local/2/PKG-1"));
}

TEST_F(PlayerPathsTest, StorageTypesChooseLocalOrUploadData) {
  StartTitle();
  EXPECT_EQ(Data()->GetDataProfileGamePath(1, kStorageLocal), "/QV/Bulk/Data/Local/1/PKG-1/");
  EXPECT_EQ(Data()->GetDataProfileGamePath(1, kStorageLocalData), "/QV/Bulk/Data/Local/1/PKG-1/");
  EXPECT_EQ(Data()->GetDataProfileGamePath(1, kStorageUpload), "/QV/Bulk/Data/Uploads/1/PKG-1/");
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Local/1/PKG-1"));
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Uploads/1/PKG-1"));
}

TEST_F(PlayerPathsTest, UnknownStorageTypeGivesAnEmptyPathWithItsOwnWarning) {
  StartTitle();
  CaptureDebugOutput();
  EXPECT_EQ(Data()->GetDataProfileGamePath(1, static_cast<tStorageType>(3)), "");
  EXPECT_EQ(DebugOutput(), "WARNING:  Use of deprecated function:  CSystemData::GetDataProfileGamePath(...)\n");
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Local/1"));
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Uploads/1"));
}

TEST_F(PlayerPathsTest, StorageTypeOverloadWarnsWithItsOwnText) {
  CaptureDebugOutput();
  Data()->GetDataProfileGamePath(0, kStorageUpload);
  EXPECT_EQ(DebugOutput(), "WARNING:  Use of deprecated function:  CSystemData::GetDataProfileGamePath(...)\n");
}

TEST_F(PlayerPathsTest, InternalUseOfTheDataPathDoesNotWarn) {
  CSystemData* data = Data();
  CaptureDebugOutput();
  data->GetDataProfilePath(0);
  data->GetLocalDataPath(0, "x");
  EXPECT_EQ(DebugOutput(), "");
}
