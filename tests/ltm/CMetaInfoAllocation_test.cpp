// A package metadata object whose file object cannot be allocated asserts
// once, then answers every question with the default and stores nothing.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/CMetaInfo.h>

#include "DeviceRootTest.h"
#include "FailingAllocation.h"

using LTM::CMetaInfo;

namespace {

const char kFolder[] = "/QV/Bulk/ProgramFiles/ZooKeeper";
const char kPath[] = "/QV/Bulk/ProgramFiles/ZooKeeper/meta.inf";
const char kContent[] = "PackageID=APP-ZOO-0102\nProductID=0x00010102\nName=Zoo\nVersion=1.2.0\nProfileAccess=0,1\n";

}  // namespace

class CMetaInfoAllocationTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    WriteFile(kPath, kContent);
    CaptureDebugOutput();
    FailNothrowAllocationAfter(0);
    mInfo = new CMetaInfo(kFolder);
    StopFailingNothrowAllocations();
  }

  void TearDown() override {
    delete mInfo;
    DeviceRootTest::TearDown();
  }

  CMetaInfo* mInfo = nullptr;
};

TEST_F(CMetaInfoAllocationTest, ItAssertsOnce) {
  EXPECT_NE(DebugOutput().find("metaFile cannot be newed"), std::string::npos) << DebugOutput();
  EXPECT_NE(DebugOutput().find("line 1086 in VirelineJSON/Src/LTM"), std::string::npos) << DebugOutput();
}

TEST_F(CMetaInfoAllocationTest, EveryGetterGivesTheDefault) {
  EXPECT_FALSE(mInfo->IsValid());
  EXPECT_FALSE(mInfo->IsHidden());
  EXPECT_EQ(mInfo->GetProductId(), 0u);
  EXPECT_EQ(mInfo->GetDeviceAccess(), 0u);
  EXPECT_EQ(mInfo->GetPackageVersion(), "");
  EXPECT_EQ(mInfo->GetDeviceType(), "");
  EXPECT_EQ(mInfo->GetPackageName(), "");
  EXPECT_EQ(mInfo->GetPackageId(), "");
  EXPECT_EQ(mInfo->GetShortName(), "");
  EXPECT_EQ(mInfo->GetPublisher(), "");
  EXPECT_EQ(mInfo->GetDeveloper(), "");
  EXPECT_EQ(mInfo->GetPartNumber(), "");
  EXPECT_EQ(mInfo->GetIcon(), "");
  EXPECT_EQ(mInfo->GetAppSo(), "");
  EXPECT_EQ(mInfo->GetMDLType(), 0u);
  EXPECT_EQ(mInfo->GetTagInt("ProductID"), 0u);
  EXPECT_TRUE(mInfo->GetTagIntList("ProfileAccess").empty());
  EXPECT_TRUE(mInfo->GetTagStringList("ProfileAccess").empty());
  char** dependencies = nullptr;
  EXPECT_EQ(mInfo->GetDependencies(dependencies), 0u);
  unsigned long* profiles = reinterpret_cast<unsigned long*>(1);
  EXPECT_EQ(mInfo->GetProfileAccess(profiles), 0u);
  EXPECT_EQ(profiles, nullptr);
}

TEST_F(CMetaInfoAllocationTest, EverySetterFailsAndNothingIsWritten) {
  EXPECT_FALSE(mInfo->SetProductId(7));
  EXPECT_FALSE(mInfo->SetPackageVersion("2.0"));
  EXPECT_FALSE(mInfo->SetDeviceType("Tamsel"));
  EXPECT_FALSE(mInfo->SetPackageName("Other"));
  EXPECT_FALSE(mInfo->SetPackageId("APP-OTHER"));
  EXPECT_FALSE(mInfo->SetShortName("Oth"));
  EXPECT_FALSE(mInfo->SetPackageType(tPackageType()));
  EXPECT_FALSE(mInfo->SetPublisher("P"));
  EXPECT_FALSE(mInfo->SetDeveloper("D"));
  EXPECT_FALSE(mInfo->SetPartNumber("N"));
  EXPECT_FALSE(mInfo->SetIcon("I"));
  EXPECT_FALSE(mInfo->SetHidden(true));
  EXPECT_FALSE(mInfo->SetTagInt("X", 1));
  EXPECT_FALSE(mInfo->SetTagString("Y", "y"));
  EXPECT_FALSE(mInfo->SetTagIntList("Z", {1, 2}));
  EXPECT_FALSE(mInfo->SetTagStringList("W", {"a"}));
  EXPECT_FALSE(mInfo->SetMDLType(3));
  EXPECT_FALSE(mInfo->SetPreviewImage("p.png"));
  EXPECT_FALSE(mInfo->SetPathToUploadContent("Up"));
  EXPECT_FALSE(mInfo->Save());
  delete mInfo;
  mInfo = nullptr;
  EXPECT_EQ(ReadFile(kPath), kContent);
}

// The profile list setter alone reports success without a file object, as it always has.
TEST_F(CMetaInfoAllocationTest, TheProfileListSetterReportsSuccess) {
  const unsigned long profiles[] = {2, 3};
  EXPECT_TRUE(mInfo->SetProfileAccess(profiles, 2));
  delete mInfo;
  mInfo = nullptr;
  EXPECT_EQ(ReadFile(kPath), kContent);
}

TEST_F(CMetaInfoAllocationTest, CopiesHaveNoFileEither) {
  mInfo->SetTagInt("X", 1);
  CMetaInfo copy(*mInfo);
  EXPECT_FALSE(copy.IsValid());
  CMetaInfo assigned(kFolder);
  ASSERT_EQ(assigned.GetPackageId(), "APP-ZOO-0102");
  assigned = *mInfo;
  EXPECT_EQ(assigned.GetPackageId(), "");
}
