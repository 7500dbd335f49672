// System settings whose file object cannot be allocated: the assertion, then
// the defaults, and the settings file is left as it was.
#include <gtest/gtest.h>

#include <string>

#include <vireline/CSystem.h>

#include "FailingAllocation.h"
#include "ltm/DataObjectTest.h"

using LTM::CSystem;

namespace {

const char kSettings[] = "CurrProfile=0x00000002\nRestartAsPlayerID=0x00000001\nContrast=0x00000032\n"
                         "Cheats=0x00000001\nClockInUI=1\nRTCAccuracy=0x00000007\nLocale=fr-fr\nDateAndTime=1,2\n";

}  // namespace

class CSystemAllocationTest : public DataObjectTest {
 protected:
  void SetUp() override {
    DataObjectTest::SetUp();
    WriteFile(kSettingsPath, kSettings);
    CaptureDebugOutput();
    FailNothrowAllocationAfter(0);
    mSystem = new CSystem;
    StopFailingNothrowAllocations();
  }

  void TearDown() override {
    delete mSystem;
    DataObjectTest::TearDown();
  }

  CSystem* mSystem = nullptr;
};

TEST_F(CSystemAllocationTest, ItAssertsAndIsNotValid) {
  EXPECT_NE(DebugOutput().find("Settings.cfg cannot be newed"), std::string::npos) << DebugOutput();
  EXPECT_NE(DebugOutput().find("line 184 in VirelineJSON/Src/LTM"), std::string::npos) << DebugOutput();
  EXPECT_FALSE(mSystem->IsValid());
}

TEST_F(CSystemAllocationTest, EveryGetterGivesTheDefault) {
  EXPECT_EQ(mSystem->GetCurrentPlayerID(), -1);
  EXPECT_EQ(mSystem->GetRestartPlayerID(), -1);
  EXPECT_EQ(mSystem->GetLocale(), "");
  tDeviceDateAndTime when;
  EXPECT_FALSE(mSystem->GetDateAndTime(when));
  EXPECT_EQ(mSystem->GetContrast(), 0);
  EXPECT_FALSE(mSystem->AreCheatsEnabled());
  EXPECT_EQ(mSystem->GetClockOnUI(), 0);
  EXPECT_EQ(mSystem->GetRTCAccuracy(), 0u);
}

TEST_F(CSystemAllocationTest, EverySetterFailsAndTheFileStaysAsItWas) {
  EXPECT_FALSE(mSystem->SetCurrentPlayerID(3));
  EXPECT_FALSE(mSystem->SetRestartPlayerID(3));
  EXPECT_FALSE(mSystem->ClearRestartPlayerID());
  tDeviceDateAndTime when{};
  EXPECT_FALSE(mSystem->SetDateAndTime(when));
  EXPECT_FALSE(mSystem->SetContrast(9));
  EXPECT_FALSE(mSystem->SetCheatsEnabled(false));
  EXPECT_FALSE(mSystem->SetClockOnUI(0));
  EXPECT_FALSE(mSystem->SetRTCAccuracy(1));
  EXPECT_FALSE(mSystem->SetLocale("de-de"));
  EXPECT_FALSE(mSystem->Save());
  delete mSystem;
  mSystem = nullptr;
  EXPECT_EQ(ReadFile(kSettingsPath), kSettings);
}

TEST_F(CSystemAllocationTest, CopiesHaveNoFileEither) {
  CSystem copy(*mSystem);
  EXPECT_FALSE(copy.IsValid());
  CSystem assigned;
  ASSERT_EQ(assigned.GetCurrentPlayerID(), 2);
  assigned = *mSystem;
  EXPECT_FALSE(assigned.IsValid());
  EXPECT_EQ(assigned.GetCurrentPlayerID(), -1);
}
