// The calls of the lower layers into the layers above them give the answers
// of the services they forward to.
#include "baseutils/UpperLayers.h"

#include <vireline/BaseUtils.h>

#include <gtest/gtest.h>

#include <vireline/CSystemData.h>

#include "DeviceRootTest.h"
#include "RequestFiles.h"

class UpperLayersTest : public DeviceRootTest {};

TEST_F(UpperLayersTest, PackageRequestsLeaveRequestFilesForTheConnectApplication) {
  vireline::upper::RequestPackageQVC("APP-3", "4.0");
  vireline::upper::RequestPackageQVC("APP-4", "");
  EXPECT_EQ(PackageRequestsIn(CSystemData::Instance()->GetManageInventoryPath()),
            (std::vector<std::string>{"APP-3 4.0", "APP-4 "}));
}
