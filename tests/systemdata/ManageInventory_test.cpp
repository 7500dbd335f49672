#include <gtest/gtest.h>

#include <string>

#include <vireline/CMetaInfFile.h>

#include "systemdata/SystemDataInternal.h"
#include "systemdata/SystemDataTest.h"

class ManageInventoryTest : public SystemDataTest {
 protected:
  // The metadata GetManageInventoryPath wrote into `folder`.
  std::string Meta(const std::string& folder) const { return ReadFile(folder + "meta.inf"); }
};

struct InventoryPlatform {
  const char* platform;
  int player;
  const char* folder;
  const char* deviceType;
  U32 productId;
};

void PrintTo(const InventoryPlatform& platform, std::ostream* out) { *out << platform.platform; }

class ManageInventoryPlatformTest : public ManageInventoryTest,
                                    public ::testing::WithParamInterface<InventoryPlatform> {};

TEST_P(ManageInventoryPlatformTest, PackageFolderIsCreatedWithItsMetadata) {
  const InventoryPlatform& expected = GetParam();
  WritePlatform(expected.platform);
  WriteSettings("en-us", expected.player);
  EXPECT_EQ(Data()->GetManageInventoryPath(), expected.folder);
  CMetaInfFile meta(expected.folder);
  EXPECT_STREQ(meta.GetDeviceType(), expected.deviceType);
  EXPECT_EQ(meta.GetProductId(), expected.productId);
  EXPECT_STREQ(meta.GetStr("Type"), "ManageInventory");
}

INSTANTIATE_TEST_SUITE_P(
    EachPlatform, ManageInventoryPlatformTest,
    ::testing::Values(
        InventoryPlatform{"Tamsel", 1, "/QV/Bulk/Data/Uploads/1/KVR9-0x0017000C-999999/", "KastrelVoyant", 0x17000C},
        InventoryPlatform{"MIRA", 0, "/QV/Bulk/Data/Uploads/0/KVR9-0x0017000C-999999/", "KastrelDuoVoyant",
                          1507340},
        InventoryPlatform{"Oskava", 2, "/QV/Bulk/Data/Uploads/2/MQDX-0x001E000C-999999/", "PelloraVoyant", 1966092},
        InventoryPlatform{"TARVESSA", 0, "/QV/Bulk/Data/Uploads/0/MQDX-0x001E000C-999999/", "PelloraVoyant",
                          0x1E000C}),
    [](const ::testing::TestParamInfo<InventoryPlatform>& info) { return std::string(info.param.platform); });

TEST_F(ManageInventoryTest, ZantoGetsThePlayersUploadFolderTaggedOnly) {
  WritePlatform("Zanto");
  WriteSettings("en-us", 1);
  EXPECT_EQ(Data()->GetManageInventoryPath(), "/QV/Bulk/Data/Uploads/1/");
  EXPECT_EQ(Meta("/QV/Bulk/Data/Uploads/1/"), "Type=ManageInventory\n");
}

TEST_F(ManageInventoryTest, UnknownPlatformGetsThePlayersUploadFolderTaggedOnly) {
  WriteSettings("en-us", 0);
  EXPECT_EQ(Data()->GetManageInventoryPath(), "/QV/Bulk/Data/Uploads/0/");
  EXPECT_EQ(Meta("/QV/Bulk/Data/Uploads/0/"), "Type=ManageInventory\n");
}

TEST_F(ManageInventoryTest, NoCurrentPlayerMeansPlayer0) {
  WritePlatform("Tamsel");
  EXPECT_EQ(Data()->GetManageInventoryPath(), "/QV/Bulk/Data/Uploads/0/KVR9-0x0017000C-999999/");
}

TEST_F(ManageInventoryTest, MetadataIsWrittenOnlyWhenTheFolderIsNew) {
  WritePlatform("Tamsel");
  WriteSettings("en-us", 0);
  const std::string folder = "/QV/Bulk/Data/Uploads/0/KVR9-0x0017000C-999999/";
  Data()->GetManageInventoryPath();
  WriteFile(folder + "meta.inf", "Type=Changed\n");
  EXPECT_EQ(Data()->GetManageInventoryPath(), folder);
  EXPECT_EQ(Meta(folder), "Type=Changed\n");
}

TEST_F(ManageInventoryTest, ExistingFolderWithoutMetadataIsLeftAsItIs) {
  WritePlatform("Tamsel");
  WriteSettings("en-us", 0);
  MakeDirs("/QV/Bulk/Data/Uploads/0/KVR9-0x0017000C-999999");
  Data()->GetManageInventoryPath();
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Uploads/0/KVR9-0x0017000C-999999/meta.inf"));
}

TEST_F(ManageInventoryTest, ThePackageCanBeNamedWithoutCreatingIt) {
  WritePlatform("Oskava");
  vireline::tManageInventoryPackage package =
      vireline::ManageInventoryFor("/QV/Bulk/Data/", -1);
  EXPECT_EQ(package.folder, "/QV/Bulk/Data/Uploads/0/MQDX-0x001E000C-999999/");
  EXPECT_STREQ(package.deviceType, "PelloraVoyant");
  EXPECT_EQ(package.productId, 0x1E000Cu);
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Uploads"));
}
