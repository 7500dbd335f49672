// Version comparison and doom markers as the lower layers see them: the same
// answers as BaseUtils gives.
#include "baseutils/UpperLayers.h"

#include <vireline/BaseUtils.h>

#include <gtest/gtest.h>

#include <vireline/CSystemData.h>

#include "DeviceRootTest.h"
#include "RequestFiles.h"

class UpperLayersTest : public DeviceRootTest {};

TEST_F(UpperLayersTest, CompareVersionIsTheBaseUtilsOrder) {
  for (const char* a : {"1.10", "1.9", "010", "2.0", "", "1.B"}) {
    for (const char* b : {"1.9", "1.10", "10", "2.0.1", "1", "1.A"}) {
      EXPECT_EQ(vireline::upper::CompareVersion(a, b), BaseUtils::Instance()->CompareVersion(a, b)) << a << " " << b;
    }
  }
  EXPECT_GT(vireline::upper::CompareVersion("1.10", "1.9"), 0);
}

TEST_F(UpperLayersTest, ADoomMarkerIsFoundWithOrWithoutATrailingSlash) {
  WriteFile("/QV/Bulk/Pack/doom", "");
  EXPECT_TRUE(vireline::upper::HasDoomPackage("/QV/Bulk/Pack"));
  EXPECT_TRUE(vireline::upper::HasDoomPackage("/QV/Bulk/Pack/"));
  EXPECT_FALSE(vireline::upper::HasDoomPackage("/QV/Bulk/Other"));
}

TEST_F(UpperLayersTest, PackageRequestsLeaveRequestFilesForTheConnectApplication) {
  vireline::upper::RequestPackageQVC("APP-3", "4.0");
  vireline::upper::RequestPackageQVC("APP-4", "");
  EXPECT_EQ(PackageRequestsIn(CSystemData::Instance()->GetManageInventoryPath()),
            (std::vector<std::string>{"APP-3 4.0", "APP-4 "}));
}
