// Installed applications: every folder of the application and cartridge
// folders, with no package test at all.
#include <gtest/gtest.h>

#include <vireline/CApps.h>

#include "ltm/ContentListTest.h"

using LTM::CApps;

class CAppsTest : public ContentListTest {
 protected:
  void SetUp() override {
    ContentListTest::SetUp();
    Package("/QV/Bulk/ProgramFiles/Paint", "Application", 1, "");
    WriteFile("/QV/Bulk/ProgramFiles/Withdrawn/doom", "");
    MakeDirs("/QV/Bulk/ProgramFiles/NoMeta");
    WriteFile("/QV/Bulk/ProgramFiles/loose-file.txt", "not a folder");
    Package("/QV/Cart/Cartridge1", "Application", 2, "");
  }
};

TEST_F(CAppsTest, ListsEveryApplicationAndCartridgeFolderWithoutPackageTests) {
  EXPECT_EQ(Sorted(CApps().get()), (Strings{"/QV/Bulk/ProgramFiles/NoMeta", "/QV/Bulk/ProgramFiles/Paint",
                                            "/QV/Bulk/ProgramFiles/Withdrawn", "/QV/Cart/Cartridge1"}));
}

TEST_F(CAppsTest, ApplicationFoldersComeBeforeCartridgeFolders) {
  std::vector<Glib::ustring> apps = CApps().get();
  ASSERT_EQ(apps.size(), 4u);
  EXPECT_EQ(apps.back(), "/QV/Cart/Cartridge1");
}

TEST_F(CAppsTest, CalledTwiceListsEveryFolderTwice) {
  CApps apps;
  apps.get();
  std::vector<Glib::ustring> second = apps.get();
  ASSERT_EQ(second.size(), 8u);
  EXPECT_EQ(Sorted(second), (Strings{"/QV/Bulk/ProgramFiles/NoMeta", "/QV/Bulk/ProgramFiles/NoMeta",
                                     "/QV/Bulk/ProgramFiles/Paint", "/QV/Bulk/ProgramFiles/Paint",
                                     "/QV/Bulk/ProgramFiles/Withdrawn", "/QV/Bulk/ProgramFiles/Withdrawn",
                                     "/QV/Cart/Cartridge1", "/QV/Cart/Cartridge1"}));
}

TEST_F(CAppsTest, EachFolderIsReportedOnTheDefaultChannelAtLevelThree) {
  CApps().get();
  EXPECT_EQ(ListMessages(3), (Strings{"folder name while getting apps is : /QV/Bulk/ProgramFiles/NoMeta \n",
                                      "folder name while getting apps is : /QV/Bulk/ProgramFiles/Paint \n",
                                      "folder name while getting apps is : /QV/Bulk/ProgramFiles/Withdrawn \n",
                                      "folder name while getting apps is : /QV/Cart/Cartridge1 \n"}));
}

TEST_F(CAppsTest, AddPathAppendsToWhatGetReturns) {
  CApps apps;
  apps.AddPath("/somewhere/else");
  std::vector<Glib::ustring> listed = apps.get();
  ASSERT_EQ(listed.size(), 5u);
  EXPECT_EQ(listed.front(), "/somewhere/else");
}

using CAppsEmptyTest = ContentListTest;

TEST_F(CAppsEmptyTest, MissingFoldersGiveAnEmptyList) {
  EXPECT_TRUE(CApps().get().empty());
  EXPECT_EQ(ListMessages(3), Strings{});
}
