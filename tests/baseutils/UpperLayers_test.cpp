// Version comparison and doom markers as the lower layers see them.
#include "baseutils/UpperLayers.h"

#include <gtest/gtest.h>

#include <vireline/CSystemData.h>

#include "DeviceRootTest.h"
#include "RequestFiles.h"

using vireline::upper::CompareVersion;

class UpperLayersTest : public DeviceRootTest {};

TEST_F(UpperLayersTest, LongerNumbersAreNewerWithoutConversion) {
  EXPECT_GT(CompareVersion("1.10", "1.9"), 0);
  EXPECT_LT(CompareVersion("1.9", "1.10"), 0);
}

TEST_F(UpperLayersTest, ALeadingZeroMakesATokenNewer) { EXPECT_GT(CompareVersion("010", "10"), 0); }

TEST_F(UpperLayersTest, AVersionEqualsItsOwnPrefix) {
  EXPECT_EQ(CompareVersion("1.2", "1.2.3"), 0);
  EXPECT_EQ(CompareVersion("1.2.3", "1.2"), 0);
}

TEST_F(UpperLayersTest, AllThreeDelimitersAndTheirRunsSeparate) {
  EXPECT_EQ(CompareVersion("1.0-2_3", "1_0.2-3"), 0);
  EXPECT_EQ(CompareVersion("..1..2", "1.2"), 0);
}

TEST_F(UpperLayersTest, LettersCompareByteWiseInTokensOfEqualLength) {
  EXPECT_LT(CompareVersion("1.a", "1.b"), 0);
  EXPECT_GT(CompareVersion("1.B", "1.A"), 0);
}

TEST_F(UpperLayersTest, AVersionWithoutTokensComparesEqual) {
  EXPECT_EQ(CompareVersion("", "1.0"), 0);
  EXPECT_EQ(CompareVersion("1.0", "..."), 0);
}

TEST_F(UpperLayersTest, OnlyTheFirstSixtyThreeCharactersCount) {
  std::string base(62, '1');
  EXPECT_EQ(CompareVersion(base + ".9", base + ".1"), 0);
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
