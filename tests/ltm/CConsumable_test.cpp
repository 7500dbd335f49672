// Consumables of the running game for the current player, and giving one back.
#include <gtest/gtest.h>

#include <filesystem>

#include <vireline/CConsumable.h>

#include "ltm/ContentListTest.h"

using LTM::CConsumable;

class CConsumableTest : public ContentListTest {
 protected:
  static constexpr const char* kInventory = "/QV/Bulk/Data/Uploads/1/KVR9-0x0017000C-999999/";

  void SetUp() override {
    ContentListTest::SetUp();
    WriteFile("/etc/vireline/platform.cfg", "Name=Tamsel\n");
    SetCurrentPlayer(1);
    RunTitle();
  }

  static std::string Download(const std::string& name) { return std::string(kDownloads) + name; }
};

TEST_F(CConsumableTest, ListsTheCurrentPlayersConsumablesOfTheRunningGame) {
  Package(Download("Coins"), "Consumable", kGameProduct, "ProfileAccess=1\n");
  Package(Download("Gems"), "Consumable", kGameProduct, "DeviceAccess=1\n");
  Package(Download("ForPlayer2"), "Consumable", kGameProduct, "ProfileAccess=2\n");
  Package(Download("EmptyAccess"), "Consumable", kGameProduct, "ProfileAccess=\n");
  Package(Download("OtherGame"), "Consumable", kOtherProduct, "DeviceAccess=1\n");
  Package(Download("LowerCaseType"), "consumable", kGameProduct, "DeviceAccess=1\n");
  Package(Download("MicroDownload"), "MicroDownload", kGameProduct, "DeviceAccess=1\n");
  Package(Download("Withdrawn"), "Consumable", kGameProduct, "DeviceAccess=1\n");
  WriteFile(Download("Withdrawn") + "/doom", "");
  MakeDirs(Download("NoMeta"));
  WriteFile(Download("NoId") + "/meta.inf",
            "Version=1.0\nType=Consumable\nDeviceAccess=1\nProductID=" + Hex(kGameProduct) + "\n");
  WriteFile(Download("Invalid") + "/meta.inf", "PackageID=I\nType=Consumable\nDeviceAccess=1\n");
  EXPECT_EQ(Sorted(CConsumable().Get()), (Strings{Download("Coins/"), Download("Gems/")}));
}

TEST_F(CConsumableTest, APendingRemovalRequestHidesThePackage) {
  Package(Download("Coins"), "Consumable", kGameProduct, "DeviceAccess=1\n", "COINS-1");
  Package(Download("Gems"), "Consumable", kGameProduct, "DeviceAccess=1\n", "GEMS-1");
  WriteFile(std::string(kInventory) + "COINS-1.txt", "Command=RemoveFromInventory\n");
  EXPECT_EQ(Sorted(CConsumable().Get()), Strings{Download("Gems/")});
}

TEST_F(CConsumableTest, TheAlternativeDeviceIdNamesTheRemovalRequest) {
  Package(Download("Coins"), "Consumable", kGameProduct, "DeviceAccess=1\nDeviceAltPkgID=ALT-COINS\n", "COINS-1");
  WriteFile(std::string(kInventory) + "ALT-COINS.txt", "Command=RemoveFromInventory\n");
  EXPECT_TRUE(CConsumable().Get().empty());
}

TEST_F(CConsumableTest, ReceiveClearsAccessAndWritesTheRemovalRequest) {
  Package(Download("Coins"), "Consumable", kGameProduct, "ProfileAccess=1,2\n", "COINS-1");
  CConsumable().Receive(Download("Coins"));
  EXPECT_EQ(ReadFile(Download("Coins") + "/meta.inf"),
            "PackageID=COINS-1\nVersion=1.0\nType=Consumable\nProductID=" + Hex(kGameProduct) + "\nProfileAccess=\n");
  EXPECT_EQ(ReadFile(std::string(kInventory) + "COINS-1.txt"),
            "Command=RemoveFromInventory\nValueConsumed=0x00000064\n");
}

TEST_F(CConsumableTest, AfterReceiveGetNoLongerListsThePackage) {
  Package(Download("Coins"), "Consumable", kGameProduct, "ProfileAccess=1\n", "COINS-1");
  Package(Download("Gems"), "Consumable", kGameProduct, "ProfileAccess=1\n", "GEMS-1");
  CConsumable consumables;
  std::vector<Glib::ustring> before = consumables.Get();
  ASSERT_EQ(Sorted(before), (Strings{Download("Coins/"), Download("Gems/")}));
  consumables.Receive(Download("Coins/"));
  EXPECT_EQ(Sorted(consumables.Get()), Strings{Download("Gems/")});
}

TEST_F(CConsumableTest, AReceivedPackageStaysHiddenAfterItsRequestIsHandled) {
  Package(Download("Coins"), "Consumable", kGameProduct, "ProfileAccess=1\n", "COINS-1");
  CConsumable().Receive(Download("Coins"));
  ASSERT_TRUE(Exists(std::string(kInventory) + "COINS-1.txt"));
  std::filesystem::remove(Host(std::string(kInventory) + "COINS-1.txt"));
  EXPECT_TRUE(CConsumable().Get().empty());  // its access list is empty now
}

TEST_F(CConsumableTest, ReceiveOfAFolderWithoutMetadataWritesNothing) {
  CConsumable().Receive(Download("Missing"));
  EXPECT_FALSE(Exists(Download("Missing")));
  EXPECT_FALSE(Exists(kInventory));
}

TEST_F(CConsumableTest, ReceiveOfAPackageWithoutAnIdClearsAccessButRequestsNothing) {
  WriteFile(Download("NoId") + "/meta.inf", "Type=Consumable\nProfileAccess=1\n");
  CConsumable().Receive(Download("NoId"));
  EXPECT_EQ(ReadFile(Download("NoId") + "/meta.inf"), "Type=Consumable\nProfileAccess=\n");
  EXPECT_FALSE(Exists(std::string(kInventory) + ".txt"));
}

TEST_F(CConsumableTest, NoMicroDownloadFolderGivesAnEmptyList) { EXPECT_TRUE(CConsumable().Get().empty()); }
