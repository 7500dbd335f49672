// Avatar packages: the doom, meta and access tests decide; type and product
// id do not matter.
#include <gtest/gtest.h>

#include <vireline/CAvatars.h>

#include "ltm/ContentListTest.h"

using LTM::CAvatars;

class CAvatarsTest : public ContentListTest {
 protected:
  // One avatar folder for each way of failing, and three that pass for player 2.
  void InstallAvatars() {
    Package(Avatar("ForPlayer2"), "Avatar", kOtherProduct, "ProfileAccess=1,2\n");
    Package(Avatar("Everyone"), "Application", 7, "DeviceAccess=1\n");
    Package(Avatar("EveryoneHexAccess"), "Avatar", 7, "DeviceAccess=0x00000001\nProfileAccess=\n");
    Package(Avatar("ForPlayer1"), "Avatar", 7, "ProfileAccess=1\n");
    Package(Avatar("EmptyAccess"), "Avatar", 7, "ProfileAccess=\n");
    Package(Avatar("NoAccessKey"), "Avatar", 7, "");
    Package(Avatar("Withdrawn"), "Avatar", 7, "DeviceAccess=1\n");
    WriteFile(Avatar("Withdrawn") + "/doom", "");
    MakeDirs(Avatar("NoMeta"));
    WriteFile(Avatar("InvalidMeta") + "/meta.inf", "Type=Avatar\nDeviceAccess=1\n");
    WriteFile(Avatar("NoId") + "/meta.inf", "Version=1.0\nType=Avatar\nDeviceAccess=1\n");
    WriteFile(Avatar("Garbage") + "/meta.inf", std::string("\x01\xFF\x00==\n\n=\xC3", 10));
  }

  static std::string Avatar(const std::string& name) { return std::string(kAvatars) + name; }
};

TEST_F(CAvatarsTest, ListsOnlyUsablePackagesThePlayerMayUse) {
  InstallAvatars();
  EXPECT_EQ(Sorted(CAvatars().get(2)),
            (Strings{Avatar("Everyone"), Avatar("EveryoneHexAccess"), Avatar("ForPlayer2")}));
}

TEST_F(CAvatarsTest, AnEmptyOrMissingAccessListAdmitsNobody) {
  InstallAvatars();
  Strings listed = Sorted(CAvatars().get(1));
  EXPECT_EQ(listed, (Strings{Avatar("Everyone"), Avatar("EveryoneHexAccess"), Avatar("ForPlayer1"),
                             Avatar("ForPlayer2")}));
}

TEST_F(CAvatarsTest, CalledTwiceReturnsEachAdmittedFolderTwice) {
  Package(Avatar("Only"), "Avatar", 7, "DeviceAccess=1\n");
  CAvatars avatars;
  EXPECT_EQ(avatars.get(0).size(), 1u);
  EXPECT_EQ(Sorted(avatars.get(0)), (Strings{Avatar("Only"), Avatar("Only")}));
}

TEST_F(CAvatarsTest, EveryFolderLookedAtIsReportedWithItsTrailingBlank) {
  Package(Avatar("Only"), "Avatar", 7, "DeviceAccess=1\n");
  WriteFile(Avatar("Withdrawn") + "/doom", "");
  CAvatars().get(0);
  EXPECT_EQ(ListMessages(3), (Strings{"folder name while getting avatars is : /QV/Base/ZantoAvatars/Only \n",
                                      "folder name while getting avatars is : /QV/Base/ZantoAvatars/Withdrawn \n"}));
}

TEST_F(CAvatarsTest, AddPathAppendsToTheList) {
  Package(Avatar("Only"), "Avatar", 7, "DeviceAccess=1\n");
  CAvatars avatars;
  avatars.AddPath("/custom");
  EXPECT_EQ(Sorted(avatars.get(3)), (Strings{Avatar("Only"), "/custom"}));
}

TEST_F(CAvatarsTest, AMissingFolderAssertsWithTheMicroDownloadText) {
  CAvatars avatars;
  EXPECT_NE(MessageText().find("MDLs not available for this profile (line 2019 in VirelineJSON/Src/LTM)"),
            std::string::npos)
      << MessageText();
  EXPECT_TRUE(avatars.get(0).empty());
}

TEST_F(CAvatarsTest, AnExistingFolderDoesNotAssert) {
  MakeDirs(kAvatars);
  CAvatars avatars;
  EXPECT_EQ(MessageText().find("MDLs not available"), std::string::npos);
}

TEST_F(CAvatarsTest, AFileInPlaceOfTheFolderAsserts) {
  WriteFile("/QV/Base/ZantoAvatars", "not a folder");
  CAvatars avatars;
  EXPECT_NE(MessageText().find("MDLs not available for this profile"), std::string::npos);
  EXPECT_TRUE(avatars.get(0).empty());
}
