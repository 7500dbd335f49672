// A profile whose file objects cannot be allocated: the assertions, then the
// defaults. The allocations are failed through the non-throwing operator new.
#include <gtest/gtest.h>

#include <new>
#include <string>

#include <vireline/CPlayerProfile.h>

#include "FailingAllocation.h"
#include "ltm/PlayerProfileTest.h"

using LTM::CPlayerProfile;

class CPlayerProfileAllocationTest : public PlayerProfileTest {
 protected:
  void SetUp() override {
    PlayerProfileTest::SetUp();
    WriteFile(SharedPath(0), "Name=Ann\nID=0x00000003\nGrade=0x00000002\nPoints=0x00000005\n"
                             "NumLoginsSinceLastConnect=0x00000001\n");
    WriteFile(PrivatePath(0), "Badges=0x00000002\nPetOnUI=0x00000000\nDialogOption=0x00000003\nLastSBShown=0x00000004\n"
                              "Theme=Jungle\n");
    CaptureDebugOutput();
  }

  void TearDown() override {
    StopFailingNothrowAllocations();
    PlayerProfileTest::TearDown();
  }

  // A profile of slot 0 whose `failing`-th non-throwing allocation (0: the container) fails.
  static CPlayerProfile* ProfileFailingAllocation(int failing) {
    CPlayerProfile* profile = nullptr;
    FailNothrowAllocationAfter(failing);
    profile = new CPlayerProfile(0);
    StopFailingNothrowAllocations();
    return profile;
  }
};

TEST_F(CPlayerProfileAllocationTest, WithoutTheSharedFileItAssertsAndGivesDefaults) {
  CPlayerProfile* profile = ProfileFailingAllocation(1);
  EXPECT_NE(DebugOutput().find("shared profile.dsc cannot be created!\n (line 470 in VirelineJSON/Src/LTM)"),
            std::string::npos)
      << DebugOutput();
  EXPECT_EQ(DebugOutput().find("profile_private.dsc cannot"), std::string::npos);
  EXPECT_FALSE(profile->IsValid());
  EXPECT_EQ(profile->GetName(), "");
  EXPECT_EQ(profile->GetId(), 0u);
  EXPECT_EQ(profile->GetGrade(), 0u);
  EXPECT_EQ(profile->GetNumLoginsSinceLastConnect(), 0u);
  EXPECT_EQ(profile->GetNumBitzEarnedSinceLastConnect(), 0u);
  EXPECT_FALSE(profile->SetName("Bob"));
  EXPECT_FALSE(profile->NewProfile("Bob"));
  EXPECT_FALSE(profile->Save());
  EXPECT_EQ(profile->GetTheme(), "Jungle");  // the private file is there
  delete profile;
  EXPECT_EQ(ReadFile(SharedPath(0)), "Name=Ann\nID=0x00000003\nGrade=0x00000002\nPoints=0x00000005\n"
                                     "NumLoginsSinceLastConnect=0x00000001\n");
}

TEST_F(CPlayerProfileAllocationTest, WithoutThePrivateFileItAssertsAndGivesDefaults) {
  CPlayerProfile* profile = ProfileFailingAllocation(2);
  EXPECT_NE(DebugOutput().find("profile_private.dsc cannot be created!\n (line 480 in VirelineJSON/Src/LTM)"),
            std::string::npos)
      << DebugOutput();
  EXPECT_FALSE(profile->IsValid());
  EXPECT_EQ(profile->GetName(), "Ann");
  EXPECT_EQ(profile->GetBadges(), 0u);
  EXPECT_EQ(profile->GetPetOnUI(), 1);
  EXPECT_EQ(profile->GetDialogOption(), 1u);
  EXPECT_EQ(profile->GetLastSBShown(), 0u);
  EXPECT_EQ(profile->GetTheme(), "");
  EXPECT_EQ(profile->GetAvatar(), "/QV/Base/ZantoAvatars/Avatar1/");
  EXPECT_EQ(profile->GetU32ByName_Local("Badges", 9), 9u);
  EXPECT_FALSE(profile->SetU32ByName_Local("Badges", 1));
  EXPECT_FALSE(profile->SetStringByName_Local("Theme", "Space"));
  EXPECT_FALSE(profile->AddBadge(1));
  EXPECT_FALSE(profile->Save());  // nothing is written without the private file
  EXPECT_FALSE(profile->NewProfile("Bob"));
  delete profile;
  EXPECT_EQ(ReadFile(PrivatePath(0)), "Badges=0x00000002\nPetOnUI=0x00000000\nDialogOption=0x00000003\n"
                                      "LastSBShown=0x00000004\nTheme=Jungle\n");
}

TEST_F(CPlayerProfileAllocationTest, WithoutAContainerEveryOperationGivesItsDefault) {
  CPlayerProfile* profile = ProfileFailingAllocation(0);
  EXPECT_FALSE(profile->IsValid());
  EXPECT_EQ(profile->GetName(), "");
  EXPECT_EQ(profile->GetBadges(), 0u);
  EXPECT_FALSE(profile->RemoveProfile());
  CPlayerProfile copy(*profile);
  EXPECT_FALSE(copy.IsValid());
  delete profile;
  EXPECT_TRUE(Exists(PrivatePath(0)));
  EXPECT_EQ(ReadFile(SharedPath(0)).substr(0, 9), "Name=Ann\n");
}

TEST_F(CPlayerProfileAllocationTest, WithoutTheSharedFileItsCountersCannotBeSet) {
  CPlayerProfile* profile = ProfileFailingAllocation(1);
  EXPECT_EQ(profile->GetBitz(), 0u);
  EXPECT_FALSE(profile->SetGrade(3));
  EXPECT_FALSE(profile->SetBitz(10));
  EXPECT_FALSE(profile->SetNumLoginsSinceLastConnect(2));
  delete profile;
  EXPECT_EQ(ReadFile(SharedPath(0)), "Name=Ann\nID=0x00000003\nGrade=0x00000002\nPoints=0x00000005\n"
                                     "NumLoginsSinceLastConnect=0x00000001\n");
}

TEST_F(CPlayerProfileAllocationTest, WithoutThePrivateFileTheLastShownBookCannotBeSet) {
  CPlayerProfile* profile = ProfileFailingAllocation(2);
  EXPECT_FALSE(profile->SetLastSBShown(7));
  delete profile;
  EXPECT_NE(ReadFile(PrivatePath(0)).find("LastSBShown=0x00000004\n"), std::string::npos);
}

TEST_F(CPlayerProfileAllocationTest, AssigningAProfileWithoutAContainerLeavesNone) {
  CPlayerProfile* broken = ProfileFailingAllocation(0);
  CPlayerProfile profile(0);
  ASSERT_EQ(profile.GetName(), "Ann");
  profile = *broken;
  EXPECT_FALSE(profile.IsValid());
  EXPECT_EQ(profile.GetName(), "");
  delete broken;
}

TEST_F(CPlayerProfileAllocationTest, ACopyWhoseContainerCannotBeAllocatedHasNone) {
  CPlayerProfile profile(0);
  ASSERT_TRUE(profile.IsValid());
  FailNothrowAllocationAfter(0);
  CPlayerProfile copy(profile);
  StopFailingNothrowAllocations();
  EXPECT_FALSE(copy.IsValid());
  EXPECT_EQ(copy.GetName(), "");
}
