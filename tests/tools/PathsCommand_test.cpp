#include <gtest/gtest.h>

#include <string>

#include "mfg/MfgDataTest.h"
#include "tools/SampleImageTest.h"

class PathsCommandTest : public SampleImageTest {};

TEST_F(PathsCommandTest, PrintsEveryFolderAndTheLocaleWithItsSource) {
  InspectorRun run = Run("paths");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "root                   /QV/\n"
            "cart                   /QV/Cart/\n"
            "base                   /QV/Base/\n"
            "programFiles           /QV/Bulk/ProgramFiles/\n"
            "downloads              /QV/Bulk/Downloads/\n"
            "cyos                   /QV/Bulk/Downloads/\n"
            "mdls                   /QV/Bulk/Downloads/\n"
            "data                   /QV/Bulk/Data/\n"
            "avatars                /QV/Base/ZantoAvatars/\n"
            "defaultAvatar          /QV/Base/ZantoAvatars/Avatar1/\n"
            "flash                  /QV/Base/Flash/\n"
            "petResources           /QV/Base/PetResources/\n"
            "universalLanguagePack  /QV/Bulk/LanguagePack/\n"
            "languagePack           /QV/Bulk/LanguagePack_en/\n"
            "tutorials              /QV/Bulk/LanguagePack_en/Tutorials/\n"
            "locale                 en-us (settings)\n"
            "currentPlayer          0\n"
            "player 0 data          /QV/Bulk/Data/Local/0/\n"
            "player 0 log           /QV/Bulk/Data/Uploads/0/\n"
            "player 1 data          /QV/Bulk/Data/Local/1/\n"
            "player 1 log           /QV/Bulk/Data/Uploads/1/\n"
            "player 2 data          /QV/Bulk/Data/Local/2/\n"
            "player 2 log           /QV/Bulk/Data/Uploads/2/\n"
            "manageInventory        /QV/Bulk/Data/Uploads/0/KVR9-0x0017000C-999999/\n");
}

TEST_F(PathsCommandTest, CreatesNothing) {
  std::vector<std::string> localBefore = List("/QV/Bulk/Data/Local");
  std::vector<std::string> uploadsBefore = List("/QV/Bulk/Data/Uploads");
  std::string settings = ReadFile("/QV/Bulk/settings.cfg");
  ASSERT_EQ(Run("paths").exitStatus, 0);
  EXPECT_EQ(List("/QV/Bulk/Data/Local"), localBefore);
  EXPECT_EQ(List("/QV/Bulk/Data/Uploads"), uploadsBefore);
  EXPECT_EQ(ReadFile("/QV/Bulk/settings.cfg"), settings);
}

TEST_F(PathsCommandTest, AMissingInventoryPackageIsMarked) {
  std::filesystem::remove_all(Host("/QV/Bulk/Data/Uploads/0/KVR9-0x0017000C-999999"));
  InspectorRun run = Run("paths");
  EXPECT_NE(run.out.find("manageInventory        /QV/Bulk/Data/Uploads/0/KVR9-0x0017000C-999999/  (not created yet)\n"),
            std::string::npos);
}

TEST_F(PathsCommandTest, LocaleFromTheManufacturingRecordWhenTheSettingsHaveNone) {
  WriteFile("/QV/Bulk/settings.cfg", "CurrProfile=0x00000001\n");
  InspectorRun run = Run("paths --json");
  EXPECT_EQ(run.exitStatus, 0);
  Json::Value json = ParseJson(run.out);
  EXPECT_EQ(json["locale"]["code"].asString(), ReadFile("/dev/mtd3").substr(104, 5));
  EXPECT_EQ(json["locale"]["source"].asString(), "manufacturing data");
  EXPECT_EQ(json["currentPlayer"].asInt(), 1);
  EXPECT_EQ(json["manageInventory"]["path"].asString(), "/QV/Bulk/Data/Uploads/1/KVR9-0x0017000C-999999/");
}

TEST_F(PathsCommandTest, DefaultLocaleWithoutSettingsOrManufacturingRecord) {
  WriteFile("/QV/Bulk/settings.cfg", "");
  WriteFile("/proc/mtd", "");
  Json::Value json = ParseJson(Run("paths --json").out);
  EXPECT_EQ(json["locale"]["code"].asString(), "en-us");
  EXPECT_EQ(json["locale"]["source"].asString(), "default");
  EXPECT_EQ(json["currentPlayer"].asInt(), -1);
  EXPECT_EQ(json["manageInventory"]["path"].asString(), "/QV/Bulk/Data/Uploads/0/KVR9-0x0017000C-999999/");
}

TEST_F(PathsCommandTest, JsonHasEveryFolder) {
  InspectorRun run = Run("paths --json");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  Json::Value json = ParseJson(run.out);
  EXPECT_EQ(json["root"].asString(), "/QV/");
  EXPECT_EQ(json["base"].asString(), "/QV/Base/");
  EXPECT_EQ(json["programFiles"].asString(), "/QV/Bulk/ProgramFiles/");
  EXPECT_EQ(json["downloads"].asString(), "/QV/Bulk/Downloads/");
  EXPECT_EQ(json["data"].asString(), "/QV/Bulk/Data/");
  EXPECT_EQ(json["languagePack"].asString(), "/QV/Bulk/LanguagePack_en/");
  EXPECT_EQ(json["universalLanguagePack"].asString(), "/QV/Bulk/LanguagePack/");
  EXPECT_EQ(json["locale"]["code"].asString(), "en-us");
  EXPECT_EQ(json["locale"]["source"].asString(), "settings");
  ASSERT_EQ(json["players"].size(), 3u);
  EXPECT_EQ(json["players"][2]["data"].asString(), "/QV/Bulk/Data/Local/2/");
  EXPECT_EQ(json["players"][2]["log"].asString(), "/QV/Bulk/Data/Uploads/2/");
  EXPECT_TRUE(json["manageInventory"]["exists"].asBool());
  EXPECT_EQ(json["manageInventory"]["deviceType"].asString(), "KastrelVoyant");
  EXPECT_EQ(json["manageInventory"]["productId"].asUInt(), 0x17000Cu);
}

TEST_F(PathsCommandTest, UnknownPlatformHasNoInventoryPackage) {
  WriteFile("/etc/vireline/platform.cfg", "Name=Prototype\n");
  std::filesystem::remove_all(Host("/QV/Bulk/Data/Uploads/0"));  // the sample's play log lives there
  Json::Value json = ParseJson(Run("paths --json").out);
  EXPECT_EQ(json["manageInventory"]["path"].asString(), "/QV/Bulk/Data/Uploads/0/");
  EXPECT_TRUE(json["manageInventory"]["deviceType"].isNull());
  EXPECT_FALSE(json["manageInventory"]["exists"].asBool());
}
