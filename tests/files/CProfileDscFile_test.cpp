#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/CProfileDscFile.h>

#include "DeviceRootTest.h"
#include "files/KeyValueTest.h"

namespace {

const char kPath[] = "/QV/Bulk/Data/Local/1/profile.dsc";
const U32 kMissing = 0xFFFFFFFFu;

}  // namespace

class CProfileDscFileTest : public DeviceRootTest {};

TEST_F(CProfileDscFileTest, DefaultLayoutReadsTheProfilesFile) {
  WriteFile(kPath, "Name=Ann\n");
  CProfileDscFile profile(0, 1, nullptr);
  EXPECT_STREQ(profile.GetPath(), kPath);
  EXPECT_STREQ(profile.GetName(), "Ann");
}

TEST_F(CProfileDscFileTest, ProfileFoldersOfTheLayout) {
  EXPECT_STREQ(CProfileDscFile(0, 0, nullptr).GetPath(), "/QV/Bulk/Data/Local/0/profile.dsc");
  EXPECT_STREQ(CProfileDscFile(0, 11, nullptr).GetPath(), "/QV/Bulk/Data/Local/All/profile.dsc");
  EXPECT_STREQ(CProfileDscFile(0, 3, nullptr).GetPath(), "/QV/Bulk/Data/Local/profile.dsc");
  CPkgPathBase zanto(&gVirelineCfg);
  EXPECT_STREQ(CProfileDscFile(0, 2, &zanto).GetPath(), "/Zanto/Data/2/profile.dsc");
}

TEST_F(CProfileDscFileTest, PathConstructorReadsThatFile) {
  WriteFile("/tmp/p.dsc", "Name=Bo\n");
  CProfileDscFile profile("/tmp/p.dsc");
  EXPECT_STREQ(profile.GetName(), "Bo");
}

TEST_F(CProfileDscFileTest, NumbersAreWrittenInHex) {
  CProfileDscFile profile(0, 1, nullptr);
  ASSERT_TRUE(profile.SetName("Ann"));
  ASSERT_TRUE(profile.SetId(2));
  ASSERT_TRUE(profile.SetPoints(5));
  ASSERT_TRUE(profile.SetTotalPoints(300));
  ASSERT_TRUE(profile.SetNumLogins(4));
  ASSERT_TRUE(profile.SetAge(7));
  ASSERT_TRUE(profile.SetGrade(2));
  ASSERT_TRUE(profile.Write());
  EXPECT_EQ(ReadFile(kPath),
            "Name=Ann\nID=0x00000002\nPoints=0x00000005\nTotalPoints=0x0000012C\n"
            "NumLoginsSinceLastConnect=0x00000004\nAge=0x00000007\nGrade=0x00000002\n");
  CProfileDscFile reread(0, 1, nullptr);
  EXPECT_EQ(reread.GetId(), 2u);
  EXPECT_EQ(reread.GetPoints(), 5u);
  EXPECT_EQ(reread.GetTotalPoints(), 300u);
  EXPECT_EQ(reread.GetNumLogins(), 4u);
  EXPECT_EQ(reread.GetAge(), 7u);
  EXPECT_EQ(reread.GetGrade(), 2u);
}

TEST_F(CProfileDscFileTest, MissingNumbersAreAllOnes) {
  CProfileDscFile profile(0, 1, nullptr);
  EXPECT_EQ(profile.GetId(), kMissing);
  EXPECT_EQ(profile.GetPoints(), kMissing);
  EXPECT_EQ(profile.GetAge(), kMissing);
  EXPECT_EQ(profile.GetName(), nullptr);
}

TEST_F(CProfileDscFileTest, Validity) {
  WriteFile(kPath, "Name=\n");
  EXPECT_FALSE(CProfileDscFile(0, 1, nullptr).IsValid());
  WriteFile(kPath, "ID=1\n");
  EXPECT_FALSE(CProfileDscFile(0, 1, nullptr).IsValid());
  WriteFile(kPath, "Name=Ann\n");
  EXPECT_TRUE(CProfileDscFile(0, 1, nullptr).IsValid());
}

TEST_F(CProfileDscFileTest, ResetPointsAddsToTheTotal) {
  WriteFile(kPath, "Points=0x00000005\n");
  CProfileDscFile profile(0, 1, nullptr);
  ASSERT_TRUE(profile.ResetPoints(true));
  EXPECT_EQ(profile.GetTotalPoints(), 5u);
  EXPECT_EQ(profile.GetPoints(), 0u);
  ASSERT_TRUE(profile.Write());
  EXPECT_EQ(ReadFile(kPath), "Points=0x00000000\nTotalPoints=0x00000005\n");
}

TEST_F(CProfileDscFileTest, ResetPointsWithAnExistingTotal) {
  WriteFile(kPath, "TotalPoints=0x00000010\nPoints=0x00000005\n");
  CProfileDscFile profile(0, 1, nullptr);
  ASSERT_TRUE(profile.ResetPoints(true));
  EXPECT_EQ(profile.GetTotalPoints(), 0x15u);
  EXPECT_EQ(profile.GetPoints(), 0u);
}

TEST_F(CProfileDscFileTest, ResetPointsCountsIllFormedPointsAsZero) {
  WriteFile(kPath, "Points=lots\nTotalPoints=0x00000003\n");
  CProfileDscFile profile(0, 1, nullptr);
  ASSERT_TRUE(profile.ResetPoints(true));
  EXPECT_EQ(profile.GetTotalPoints(), 3u);
  EXPECT_EQ(profile.GetPoints(), 0u);
}

TEST_F(CProfileDscFileTest, ResetPointsWithoutAddingLeavesTheTotal) {
  WriteFile(kPath, "Points=0x00000005\n");
  CProfileDscFile profile(0, 1, nullptr);
  ASSERT_TRUE(profile.ResetPoints(false));
  EXPECT_FALSE(profile.HasKey("TotalPoints"));
  EXPECT_EQ(profile.GetPoints(), 0u);
}

TEST_F(CProfileDscFileTest, ResetPointsWithoutPointsDoesNothing) {
  WriteFile(kPath, "TotalPoints=0x00000005\n");
  CProfileDscFile profile(0, 1, nullptr);
  EXPECT_FALSE(profile.ResetPoints(true));
  EXPECT_EQ(profile.GetTotalPoints(), 5u);
  EXPECT_FALSE(profile.HasKey("Points"));
  EXPECT_TRUE(profile.Write());
  EXPECT_EQ(ReadFile(kPath), "TotalPoints=0x00000005\n");
}

TEST_F(CProfileDscFileTest, ResetTotalPointsAndLogins) {
  WriteFile(kPath, "TotalPoints=0x00000005\nNumLoginsSinceLastConnect=0x00000009\n");
  CProfileDscFile profile(0, 1, nullptr);
  ASSERT_TRUE(profile.ResetTotalPoints());
  ASSERT_TRUE(profile.ResetNumLogins());
  EXPECT_EQ(profile.GetTotalPoints(), 0u);
  EXPECT_EQ(profile.GetNumLogins(), 0u);
  WriteFile(kPath, "Name=Ann\n");
  CProfileDscFile fresh(0, 1, nullptr);
  EXPECT_FALSE(fresh.ResetNumLogins());
  EXPECT_FALSE(fresh.HasKey("NumLoginsSinceLastConnect"));
  ASSERT_TRUE(fresh.ResetTotalPoints());
  EXPECT_EQ(fresh.GetTotalPoints(), 0u);
}

TEST_F(CProfileDscFileTest, NewProfileReplacesTheTable) {
  WriteFile(kPath, "Name=Old\nID=0x00000002\nTotalPoints=0x00000050\nAge=0x00000007\n");
  CProfileDscFile profile(0, 1, nullptr);
  ASSERT_TRUE(profile.NewProfile("Ann", 0, 0));
  EXPECT_EQ(EntriesOf(profile), (std::vector<Entry>{Plain("ID", "0x00000003"), Plain("Name", "Ann"),
                                                     Plain("Points", "0x00000000")}));
  EXPECT_EQ(ReadFile(kPath), "Name=Old\nID=0x00000002\nTotalPoints=0x00000050\nAge=0x00000007\n");
  ASSERT_TRUE(profile.Write());
  EXPECT_EQ(ReadFile(kPath), "ID=0x00000003\nName=Ann\nPoints=0x00000000\n");
}

TEST_F(CProfileDscFileTest, NewProfileWithAGivenId) {
  WriteFile(kPath, "ID=0x00000002\n");
  CProfileDscFile profile(0, 1, nullptr);
  ASSERT_TRUE(profile.NewProfile("Bo", 9, 12));
  EXPECT_EQ(EntriesOf(profile), (std::vector<Entry>{Plain("ID", "0x00000009"), Plain("Name", "Bo"),
                                                     Plain("Points", "0x0000000C")}));
}

TEST_F(CProfileDscFileTest, NewProfileWithoutAnIdStartsAtZero) {
  CProfileDscFile profile(0, 1, nullptr);
  ASSERT_TRUE(profile.NewProfile("Cy", 0, 1));
  EXPECT_EQ(profile.GetId(), 0u);
  EXPECT_EQ(profile.GetPoints(), 1u);
}

TEST_F(CProfileDscFileTest, NewProfileUnderImmediateSynchWritesAsItGoes) {
  WriteFile(kPath, "ID=0x00000004\nTotalPoints=0x00000050\n");
  CProfileDscFile profile(0, 1, nullptr);
  profile.SetImmediateSynch(true);
  ASSERT_TRUE(profile.NewProfile("Di", 0, 0));
  EXPECT_EQ(ReadFile(kPath), "ID=0x00000005\nName=Di\nPoints=0x00000000\n");
}

TEST_F(CProfileDscFileTest, CopyReadsTheFileOnDisk) {
  WriteFile(kPath, "Name=Disk\n");
  CProfileDscFile profile(0, 1, nullptr);
  ASSERT_TRUE(profile.SetName("Unsaved"));
  CProfileDscFile copy(profile);
  EXPECT_STREQ(copy.GetName(), "Disk");
  CProfileDscFile assigned;
  assigned = profile;
  EXPECT_STREQ(assigned.GetName(), "Disk");
}
