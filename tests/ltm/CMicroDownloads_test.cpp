// Micro-downloads of the running game: the doom, meta, type, game and access
// tests; on the first model, the folder names that "mdls.json" lists.
#include <gtest/gtest.h>

#include <vireline/CMicroDownloads.h>

#include "ltm/ContentListTest.h"

using LTM::CMicroDownloads;

class CMicroDownloadsTest : public ContentListTest {
 protected:
  void SetUp() override {
    ContentListTest::SetUp();
    RunTitle();
  }

  static std::string Download(const std::string& name) { return std::string(kDownloads) + name; }

  void InstallMicroDownloads() {
    Package(Download("Game42_Level2"), "MicroDownload", kGameProduct, "ProfileAccess=2\n");
    Package(Download("NoPrefixAtAll"), "MicroDownload", kGameProduct, "DeviceAccess=1\n");
    Package(Download("OtherGame"), "MicroDownload", kOtherProduct, "DeviceAccess=1\n");
    Package(Download("LowerCaseType"), "microdownload", kGameProduct, "DeviceAccess=1\n");
    Package(Download("Consumable"), "Consumable", kGameProduct, "DeviceAccess=1\n");
    Package(Download("ForPlayer1"), "MicroDownload", kGameProduct, "ProfileAccess=1\n");
    Package(Download("EmptyAccess"), "MicroDownload", kGameProduct, "ProfileAccess=\n");
    Package(Download("Withdrawn"), "MicroDownload", kGameProduct, "DeviceAccess=1\n");
    WriteFile(Download("Withdrawn") + "/doom", "");
    MakeDirs(Download("NoMeta"));
    WriteFile(Download("NoId") + "/meta.inf", "Version=1.0\nType=MicroDownload\nDeviceAccess=1\nProductID=" +
                                                  Hex(kGameProduct) + "\n");
    WriteFile(Download("NoVersion") + "/meta.inf", "PackageID=X\nType=MicroDownload\nDeviceAccess=1\n");
  }

  void WriteLegacyList(const std::string& json) const { WriteFile("/QV/Base/ZantoMDLs/mdls.json", json); }

  // Legacy mode: the flag is read when the list is built, the folder when the object is made.
  static void UseLegacyLayout() { CSystemData::Instance()->SetZantoLegacyFlag(true); }
};

TEST_F(CMicroDownloadsTest, ListsTheRunningGamesPackagesThePlayerMayUse) {
  InstallMicroDownloads();
  EXPECT_EQ(Sorted(CMicroDownloads().get(2)), (Strings{Download("Game42_Level2"), Download("NoPrefixAtAll")}));
}

TEST_F(CMicroDownloadsTest, AnotherGamesProductIsNeverListedEvenWithDeviceAccess) {
  Package(Download("OtherGame"), "MicroDownload", kOtherProduct, "DeviceAccess=1\n");
  EXPECT_TRUE(CMicroDownloads().get(0).empty());
}

TEST_F(CMicroDownloadsTest, TheTypeTagMustMatchLetterForLetter) {
  Package(Download("LowerCaseType"), "microdownload", kGameProduct, "DeviceAccess=1\n");
  Package(Download("Exact"), "MicroDownload", kGameProduct, "DeviceAccess=1\n");
  EXPECT_EQ(Sorted(CMicroDownloads().get(0)), Strings{Download("Exact")});
}

TEST_F(CMicroDownloadsTest, TheGamePrefixDoesNotFilter) {
  InstallMicroDownloads();
  EXPECT_EQ(Sorted(CMicroDownloads("SomeOtherGame").get(2)),
            (Strings{Download("Game42_Level2"), Download("NoPrefixAtAll")}));
}

TEST_F(CMicroDownloadsTest, GetClearsTheListFirst) {
  Package(Download("Only"), "MicroDownload", kGameProduct, "DeviceAccess=1\n");
  CMicroDownloads downloads;
  downloads.AddPath("/dropped");
  downloads.get(0);
  EXPECT_EQ(Sorted(downloads.get(0)), Strings{Download("Only")});
}

TEST_F(CMicroDownloadsTest, NoMessagesOutsideLegacyMode) {
  InstallMicroDownloads();
  CMicroDownloads().get(1);
  EXPECT_EQ(ListMessages(3), Strings{});
}

TEST_F(CMicroDownloadsTest, LegacyListNamesFoldersAroundANumber) {
  UseLegacyLayout();
  WriteLegacyList("{\"GAME42\": [\"Level2\", 7, \"Level3\"], \"OTHER\": [\"Nope\"]}");
  std::vector<Glib::ustring> listed = CMicroDownloads().get(0);
  EXPECT_EQ(listed, (std::vector<Glib::ustring>{"/QV/Base/ZantoMDLs/Level2", "/QV/Base/ZantoMDLs/Level3"}));
  EXPECT_EQ(ListMessages(3), Strings{});
}

TEST_F(CMicroDownloadsTest, LegacyListSkipsEveryElementThatIsNotAString) {
  UseLegacyLayout();
  WriteLegacyList("{\"GAME42\": [null, true, {\"a\": 1}, [\"b\"], 2.5, \"Kept\"]}");
  EXPECT_EQ(CMicroDownloads().get(0), std::vector<Glib::ustring>{"/QV/Base/ZantoMDLs/Kept"});
}

TEST_F(CMicroDownloadsTest, LegacyListWithoutTheGamesKeySaysSo) {
  UseLegacyLayout();
  WriteLegacyList("{\"Game42\": [\"LowerCaseKeyIsNotTheGame\"]}");
  EXPECT_TRUE(CMicroDownloads().get(0).empty());
  EXPECT_EQ(ListMessages(3),
            Strings{"ERROR: No key named \"GAME42\" in the json file: /QV/Base/ZantoMDLs/mdls.json\n"});
}

TEST_F(CMicroDownloadsTest, LegacyListThatIsNotAnObjectSaysSo) {
  UseLegacyLayout();
  WriteLegacyList("[\"Level2\"]");
  EXPECT_TRUE(CMicroDownloads().get(0).empty());
  EXPECT_EQ(ListMessages(3),
            Strings{"ERROR: The JSON file is not in the expected format: /QV/Base/ZantoMDLs/mdls.json\n"});
}

TEST_F(CMicroDownloadsTest, LegacyGameEntryThatIsNotAnArrayListsNothing) {
  UseLegacyLayout();
  WriteLegacyList("{\"GAME42\": \"Level2\"}");
  EXPECT_TRUE(CMicroDownloads().get(0).empty());
  EXPECT_EQ(ListMessages(3),
            Strings{"ERROR: The JSON file is not in the expected format: /QV/Base/ZantoMDLs/mdls.json\n"});
  EXPECT_EQ(MessageText().find("Type is not convertible"), std::string::npos);
}

TEST_F(CMicroDownloadsTest, LegacyListThatCannotBeLoadedSaysSo) {
  UseLegacyLayout();
  EXPECT_TRUE(CMicroDownloads().get(0).empty());
  EXPECT_EQ(ListMessages(3), Strings{"Failed to load JSON file: /QV/Base/ZantoMDLs/mdls.json\n"});
  EXPECT_FALSE(Exists("/QV/Base/ZantoMDLs/mdls.json"));
}

TEST_F(CMicroDownloadsTest, LegacyListThatIsNotJsonSaysSo) {
  UseLegacyLayout();
  WriteLegacyList(std::string("\x00\xFF{[", 4));
  EXPECT_TRUE(CMicroDownloads().get(0).empty());
  EXPECT_EQ(ListMessages(3), Strings{"Failed to load JSON file: /QV/Base/ZantoMDLs/mdls.json\n"});
}

TEST_F(CMicroDownloadsTest, LegacyModeIgnoresThePackageFolders) {
  UseLegacyLayout();
  Package("/QV/Base/ZantoMDLs/Described", "MicroDownload", kGameProduct, "DeviceAccess=1\n");
  WriteLegacyList("{\"GAME42\": []}");
  EXPECT_TRUE(CMicroDownloads().get(0).empty());
}
