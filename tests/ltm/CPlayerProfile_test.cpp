#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include <vireline/BaseUtils.h>
#include <vireline/CPlayerProfile.h>

#include "baseutils/UpperLayers.h"
#include "ltm/PlayerProfileTest.h"
#include "platform/FaultInjectionEnv.h"

using LTM::CPlayerProfile;
using vireline::FaultInjectionEnv;

class CPlayerProfileTest : public PlayerProfileTest {
 protected:
  void WriteProfile(int slot, const std::string& shared, const std::string& priv) const {
    WriteFile(SharedPath(slot), shared);
    WriteFile(PrivatePath(slot), priv);
  }
};

TEST_F(CPlayerProfileTest, ReadsBothFilesOfTheSlotsLocalDataFolder) {
  WriteFile("/QV/Art/me.png", "png");
  WriteFile("/QV/Art/sky.png", "png");
  WriteProfile(1, "Name=Ann\nID=0x00000007\nGrade=0x00000002\nPoints=0x00000010\nNumLoginsSinceLastConnect=0x00000004\n",
               "AvatarPath=/QV/Art/me.png\nColorArt=/QV/Art/sky.png\nLastSBShown=0x00000009\nLastGamePlayed=Zoo\n"
               "Theme=Jungle\nProfilePicture=cat.png\nBadges=0x00000003\nPetOnUI=0x00000000\nDialogOption=0x00000002\n");
  CPlayerProfile profile(1);
  EXPECT_TRUE(profile.IsValid());
  EXPECT_EQ(profile.GetName(), "Ann");
  EXPECT_EQ(profile.GetId(), 7u);
  EXPECT_EQ(profile.GetGrade(), 2u);
  EXPECT_EQ(profile.GetBitz(), 16u);
  EXPECT_EQ(profile.GetNumLoginsSinceLastConnect(), 4u);
  EXPECT_EQ(profile.GetAvatar(), "/QV/Art/me.png");
  EXPECT_EQ(profile.GetBGColorArt(), "/QV/Art/sky.png");
  EXPECT_EQ(profile.GetLastSBShown(), 9u);
  EXPECT_EQ(profile.GetLastGame(), "Zoo");
  EXPECT_EQ(profile.GetTheme(), "Jungle");
  EXPECT_EQ(profile.GetProfilePicture(), "cat.png");
  EXPECT_EQ(profile.GetBadges(), 3u);
  EXPECT_EQ(profile.GetPetOnUI(), 0);
  EXPECT_EQ(profile.GetDialogOption(), 2u);
}

TEST_F(CPlayerProfileTest, MissingFilesGiveTheKeyTablesDefaults) {
  CPlayerProfile profile(0);
  EXPECT_TRUE(profile.IsValid());
  EXPECT_EQ(profile.GetName(), "");
  EXPECT_EQ(profile.GetId(), 0xFFFFFFFFu);
  EXPECT_EQ(profile.GetGrade(), 0xFFFFFFFFu);
  EXPECT_EQ(profile.GetNumLoginsSinceLastConnect(), 0xFFFFFFFFu);
  EXPECT_EQ(profile.GetLastSBShown(), 0xFFFFFFFFu);
  EXPECT_EQ(profile.GetAvatar(), "/QV/Base/ZantoAvatars/Avatar1/");
  EXPECT_EQ(profile.GetBGColorArt(), "");
  EXPECT_EQ(profile.GetLastGame(), "");
  EXPECT_EQ(profile.GetTheme(), "");
  EXPECT_EQ(profile.GetProfilePicture(), "");
  EXPECT_EQ(profile.GetBadges(), 0u);
  EXPECT_EQ(profile.GetPetOnUI(), 1);
  EXPECT_EQ(profile.GetDialogOption(), 1u);
  EXPECT_EQ(profile.GetU32ByName_Local("Pet", 7), 7u);
  EXPECT_EQ(profile.GetStringByName_Local("Pet", "dog"), "dog");
}

TEST_F(CPlayerProfileTest, AKeyWithoutAValueGivesTheDefaultText) {
  WriteProfile(0, "Name=\n", "Theme=\nPet=\n");
  CPlayerProfile profile(0);
  EXPECT_EQ(profile.GetName(), "");
  EXPECT_EQ(profile.GetStringByName_Local("Pet", "dog"), "");
  EXPECT_EQ(profile.GetStringByName_Local("Missing", "dog"), "dog");
}

TEST_F(CPlayerProfileTest, ConstructionCreatesTheLocalFolderButNoFile) {
  { CPlayerProfile profile(2); }
  EXPECT_TRUE(Exists(LocalFolder(2)));
  EXPECT_FALSE(Exists(SharedPath(2)));
  EXPECT_FALSE(Exists(PrivatePath(2)));
}

TEST_F(CPlayerProfileTest, KeyConstantsNameTheirKeys) {
  EXPECT_STREQ(kPlayerProfileKey_Pet, "Pet");
  EXPECT_STREQ(kPlayerProfileKey_Theme, "Theme");
  EXPECT_STREQ(kPlayerProfileKey_ProfilePicture, "ProfilePicture");
  EXPECT_STREQ(kPlayerProfileKey_Badges, "Badges");
  EXPECT_STREQ(kPlayerProfileKey_PetOnUI, "PetOnUI");
  EXPECT_STREQ(kPlayerProfileKey_ClockOnUI, "ClockOnUI");
  EXPECT_STREQ(kPlayerProfileKey_SortingOption, "SortingOption");
  EXPECT_STREQ(kPlayerProfileKey_DialogOption, "DialogOption");
  EXPECT_EQ(LTM::kPlayerProfileKey_Theme, kPlayerProfileKey_Theme);
}

TEST_F(CPlayerProfileTest, KeysWithoutTypedOperationsAreReachedByName) {
  CPlayerProfile profile(0);
  EXPECT_TRUE(profile.SetStringByName_Local(kPlayerProfileKey_Pet, "Dragon"));
  EXPECT_TRUE(profile.SetU32ByName_Local(kPlayerProfileKey_ClockOnUI, 1));
  EXPECT_TRUE(profile.SetU32ByName_Local(kPlayerProfileKey_SortingOption, 3));
  EXPECT_EQ(ReadFile(PrivatePath(0)), "Pet=Dragon\nClockOnUI=0x00000001\nSortingOption=0x00000003\n");
  EXPECT_EQ(profile.GetStringByName_Local(kPlayerProfileKey_Pet, ""), "Dragon");
  EXPECT_EQ(profile.GetU32ByName_Local(kPlayerProfileKey_SortingOption, 0), 3u);
}

TEST_F(CPlayerProfileTest, SharedSettersReachProfileDscAtOnce) {
  CPlayerProfile profile(0);
  EXPECT_TRUE(profile.SetName("Ann"));
  EXPECT_TRUE(profile.SetGrade(3));
  EXPECT_TRUE(profile.SetNumLoginsSinceLastConnect(5));
  EXPECT_EQ(ReadFile(SharedPath(0)), "Name=Ann\nGrade=0x00000003\nNumLoginsSinceLastConnect=0x00000005\n");
  EXPECT_FALSE(Exists(PrivatePath(0)));
}

TEST_F(CPlayerProfileTest, PrivateSettersReachProfilePrivateDscAtOnce) {
  CPlayerProfile profile(0);
  Glib::ustring theme = "Space";
  Glib::ustring picture = "owl.png";
  EXPECT_TRUE(profile.SetAvatar("/nowhere/a.png"));
  EXPECT_TRUE(profile.SetBGColorArt("/nowhere/b.png"));
  EXPECT_TRUE(profile.SetLastGame("Zoo"));
  EXPECT_TRUE(profile.SetTheme(theme));
  EXPECT_TRUE(profile.SetProfilePicture(picture));
  EXPECT_TRUE(profile.SetPetOnUI(2));
  EXPECT_TRUE(profile.SetDialogOption(4));
  EXPECT_EQ(ReadFile(PrivatePath(0)),
            "AvatarPath=/nowhere/a.png\nColorArt=/nowhere/b.png\nLastGamePlayed=Zoo\nTheme=Space\n"
            "ProfilePicture=owl.png\nPetOnUI=0x00000002\nDialogOption=0x00000004\n");
  EXPECT_FALSE(Exists(SharedPath(0)));
  EXPECT_EQ(profile.GetPetOnUI(), 1);  // any nonzero value shows the pet
  EXPECT_EQ(profile.GetDialogOption(), 4u);
}

TEST_F(CPlayerProfileTest, AMissingAvatarFileGivesTheDefaultAndKeepsTheStoredPath) {
  WriteProfile(0, "", "AvatarPath=/QV/Art/gone.png\nColorArt=/QV/Art/gone.png\n");
  CPlayerProfile profile(0);
  EXPECT_EQ(profile.GetAvatar(), "/QV/Base/ZantoAvatars/Avatar1/");
  EXPECT_EQ(profile.GetBGColorArt(), "");
  EXPECT_EQ(profile.GetStringByName_Local("AvatarPath", ""), "/QV/Art/gone.png");
  EXPECT_EQ(ReadFile(PrivatePath(0)), "AvatarPath=/QV/Art/gone.png\nColorArt=/QV/Art/gone.png\n");
}

TEST_F(CPlayerProfileTest, PreKindergartenFlagReadsGrade254As255) {
  CSystemData::Instance()->SetEarlyPreKBlackListed(true);
  WriteProfile(0, "Grade=0x000000FE\n", "");
  WriteProfile(1, "Grade=0x00000003\n", "");
  EXPECT_EQ(CPlayerProfile(0).GetGrade(), 255u);
  EXPECT_EQ(CPlayerProfile(1).GetGrade(), 3u);
  EXPECT_EQ(CPlayerProfile(2).GetGrade(), 255u);  // missing
}

TEST_F(CPlayerProfileTest, LegacyFlagReadsGrade255As0AndKeeps254) {
  CSystemData::Instance()->SetZantoLegacyFlag(true);
  CSystemData::Instance()->SetEarlyPreKBlackListed(true);  // the legacy rule wins
  WriteProfile(0, "Grade=0x000000FF\n", "");
  WriteProfile(1, "Grade=0x000000FE\n", "");
  EXPECT_EQ(CPlayerProfile(0).GetGrade(), 0u);
  EXPECT_EQ(CPlayerProfile(1).GetGrade(), 254u);
  EXPECT_EQ(CPlayerProfile(2).GetGrade(), 0u);  // missing
}

TEST_F(CPlayerProfileTest, WithoutFlagsTheGradeIsReadAsStored) {
  WriteProfile(0, "Grade=0x000000FE\n", "");
  WriteProfile(1, "Grade=0x000000FF\n", "");
  EXPECT_EQ(CPlayerProfile(0).GetGrade(), 254u);
  EXPECT_EQ(CPlayerProfile(1).GetGrade(), 255u);
}

TEST_F(CPlayerProfileTest, MissingPointsGiveBitz0ButTheOldCounterKeepsAllOnes) {
  WriteProfile(0, "Points=0xFFFFFFFF\n", "");
  CPlayerProfile profile(0);
  EXPECT_EQ(profile.GetBitz(), 0u);
  EXPECT_EQ(profile.GetNumBitzEarnedSinceLastConnect(), 0xFFFFFFFFu);
  CPlayerProfile missing(1);
  EXPECT_EQ(missing.GetBitz(), 0u);
  EXPECT_EQ(missing.GetNumBitzEarnedSinceLastConnect(), 0xFFFFFFFFu);
}

TEST_F(CPlayerProfileTest, DeprecatedOperationsWarnAndStillWork) {
  CPlayerProfile profile(0);
  RecordDebugMessages();
  EXPECT_TRUE(profile.SetBitz(12));
  EXPECT_EQ(profile.GetBitz(), 12u);
  EXPECT_EQ(profile.GetNumBitzEarnedSinceLastConnect(), 12u);
  EXPECT_TRUE(profile.SetLastSBShown(4));
  EXPECT_EQ(MessagesAt(5),
            "WARNING:  Use of a deprecated function: bool LTM::CPlayerProfile::SetBitz(Quorvane::Orvo::U32)\n"
            "WARNING:  Use of a deprecated function: Quorvane::Orvo::U32 LTM::CPlayerProfile::GetBitz() const\n"
            "WARNING:  Use of a deprecated function: Quorvane::Orvo::U32 "
            "LTM::CPlayerProfile::GetNumBitzEarnedSinceLastConnect() const\n"
            "WARNING:  Use of a deprecated function: bool LTM::CPlayerProfile::SetLastSBShown(Quorvane::Orvo::U32)\n");
  EXPECT_EQ(ReadFile(SharedPath(0)), "Points=0x0000000C\n");
  EXPECT_EQ(ReadFile(PrivatePath(0)), "LastSBShown=0x00000004\n");
}

TEST_F(CPlayerProfileTest, OtherOperationsDoNotWarn) {
  CPlayerProfile profile(0);
  RecordDebugMessages();
  profile.GetLastSBShown();
  profile.GetName();
  profile.GetGrade();
  profile.GetAvatar();
  EXPECT_EQ(MessagesAt(5), "");
}

TEST_F(CPlayerProfileTest, GetProfilePictureTracesItsAnswer) {
  WriteProfile(0, "", "ProfilePicture=owl.png\n");
  CPlayerProfile profile(0);
  RecordDebugMessages();
  profile.GetProfilePicture();
  CPlayerProfile(1).GetProfilePicture();
  EXPECT_EQ(MessagesAt(5), "GetProfilePicture: owl.png\nGetProfilePicture: \n");
}

TEST_F(CPlayerProfileTest, AddBadgeTwiceOnAFreshPrivateFileCountsTwoAndLogsTwoAchievements) {
  CLogFile::Instance()->SetCurrentProfile(tPlayerID{0});
  CPlayerProfile profile(0);
  EXPECT_TRUE(profile.AddBadge(0x00010005));
  EXPECT_TRUE(profile.AddBadge(9));
  EXPECT_EQ(ReadFile(PrivatePath(0)), "Badges=0x00000002\n");
  EXPECT_EQ(profile.GetBadges(), 2u);
  std::vector<tLogRecord> events = LogRecords(0, "CAchievementEarned");
  ASSERT_EQ(events.size(), 2u);
  ASSERT_EQ(events[0].fields.size(), 1u);
  EXPECT_EQ(events[0].fields[0].number, 5);  // the low 16 bits
  EXPECT_EQ(events[1].fields[0].number, 9);
}

TEST_F(CPlayerProfileTest, AddBadgeWithoutAPlayerChosenLogsNothing) {
  CPlayerProfile profile(1);
  EXPECT_TRUE(profile.AddBadge(3));
  EXPECT_EQ(ReadFile(PrivatePath(1)), "Badges=0x00000001\n");
  for (int slot = 0; slot < 3; ++slot) EXPECT_TRUE(LogRecords(slot, "CAchievementEarned").empty());
}

TEST_F(CPlayerProfileTest, AddBadgeLogsTheAchievementEvenWhenTheCountCannotBeStored) {
  CLogFile::Instance()->SetCurrentProfile(tPlayerID{0});
  CPlayerProfile profile(0);
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kRename, 0, ENOSPC);
  EXPECT_FALSE(profile.AddBadge(7));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_FALSE(Exists(PrivatePath(0)));
  EXPECT_EQ(LogRecords(0, "CAchievementEarned").size(), 1u);
}

TEST_F(CPlayerProfileTest, NewProfileNumbersTheSlotOneUpAndClearsPrivateSettings) {
  CLogFile::Instance()->SetCurrentProfile(tPlayerID{1});
  WriteProfile(1, "Name=Old\nID=0x00000002\nTotalPoints=0x00000050\nGrade=0x00000001\n", "Theme=Jungle\nBadges=0x00000004\n");
  CPlayerProfile profile(1);
  EXPECT_TRUE(profile.NewProfile("Ann"));
  EXPECT_EQ(ReadFile(SharedPath(1)), "ID=0x00000003\nName=Ann\nPoints=0x00000000\n");
  EXPECT_EQ(ReadFile(PrivatePath(1)), "ID=0x00000000\nName=Ann\nPoints=0x00000000\n");
  EXPECT_EQ(profile.GetTheme(), "");
  EXPECT_EQ(profile.GetBadges(), 0u);
  std::vector<tLogRecord> events = LogRecords(1, "CNewUser");
  ASSERT_EQ(events.size(), 1u);
  ASSERT_EQ(events[0].fields.size(), 1u);
  EXPECT_EQ(events[0].fields[0].number, 3);
}

TEST_F(CPlayerProfileTest, NewProfileFailsWhenTheFilesCannotBeWritten) {
  CPlayerProfile profile(0);
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kOpen, 0, EACCES);
  EXPECT_FALSE(profile.NewProfile("Ann"));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_FALSE(Exists(SharedPath(0)));
}

// A write that cannot even open its file keeps the changes for the next write.
TEST_F(CPlayerProfileTest, FailingWritesAreReportedAndLeaveTheFileWhole) {
  WriteProfile(0, "Name=Ann\n", "Theme=Jungle\n");
  CPlayerProfile profile(0);
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kOpen, 0, EACCES);
  Glib::ustring theme = "Space";
  EXPECT_FALSE(profile.SetName("Bob"));
  EXPECT_FALSE(profile.SetTheme(theme));
  EXPECT_FALSE(profile.Save());
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(SharedPath(0)), "Name=Ann\n");
  EXPECT_EQ(ReadFile(PrivatePath(0)), "Theme=Jungle\n");
  EXPECT_TRUE(profile.Save());  // the unsaved changes get through now
  EXPECT_EQ(ReadFile(SharedPath(0)), "Name=Bob\n");
  EXPECT_EQ(ReadFile(PrivatePath(0)), "Theme=Space\n");
}

TEST_F(CPlayerProfileTest, AFailingWriteInTheMiddleOfAFileIsReported) {
  WriteProfile(0, "Name=Ann\n", "");
  CPlayerProfile profile(0);
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kWrite, 2, ENOSPC);
  EXPECT_FALSE(profile.SetName("Bob"));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(SharedPath(0)), "Name=Ann\n");
}

TEST_F(CPlayerProfileTest, SaveWritesThePrivateFileThenTheSharedOne) {
  CPlayerProfile profile(0);
  EXPECT_TRUE(profile.Save());  // nothing changed: nothing to write
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kOpen, 0, EACCES);
  profile.SetName("Ann");
  profile.SetU32ByName_Local("Pet", 1);
  vireline::Env::SetCurrent(nullptr);
  MakeDirs(PrivatePath(0));  // a folder in the way: the private file cannot be replaced
  EXPECT_FALSE(profile.Save());
  EXPECT_EQ(ReadFile(SharedPath(0)), "Name=Ann\n");  // written all the same
}

TEST_F(CPlayerProfileTest, ACopyAndItsSourceSeeTheSameValues) {
  CPlayerProfile source(0);
  CPlayerProfile copy(source);
  Glib::ustring theme = "Space";
  EXPECT_TRUE(copy.SetTheme(theme));
  EXPECT_TRUE(source.SetName("Ann"));
  EXPECT_EQ(source.GetTheme(), "Space");
  EXPECT_EQ(copy.GetName(), "Ann");
}

TEST_F(CPlayerProfileTest, AnAssignedProfileSharesItsSourcesFiles) {
  CPlayerProfile source(1);
  CPlayerProfile target(0);
  target.SetName("Zed");
  target = source;
  CPlayerProfile& same = target;
  target = same;  // self-assignment changes nothing
  EXPECT_TRUE(target.SetName("Bo"));
  EXPECT_EQ(source.GetName(), "Bo");
  EXPECT_EQ(ReadFile(SharedPath(1)), "Name=Bo\n");
  EXPECT_EQ(ReadFile(SharedPath(0)), "Name=Zed\n");
}

TEST_F(CPlayerProfileTest, DestroyingACopyWritesWhatAFailedSetLeftUnsaved) {
  CPlayerProfile* source = new CPlayerProfile(0);
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kOpen, 0, EACCES);
  {
    CPlayerProfile copy(*source);
    copy.SetName("Ann");
    vireline::Env::SetCurrent(nullptr);
    EXPECT_FALSE(Exists(SharedPath(0)));
  }
  EXPECT_EQ(ReadFile(SharedPath(0)), "Name=Ann\n");  // the copy's destruction wrote it
  EXPECT_EQ(source->GetName(), "Ann");              // and the source still holds the file
  source->SetName("Bo");
  delete source;  // the last holder releases the files (checked by the sanitizers)
  EXPECT_EQ(ReadFile(SharedPath(0)), "Name=Bo\n");
}

TEST_F(CPlayerProfileTest, AreAllPlayerProfilesEmptyReadsTheThreeSlotsNames) {
  EXPECT_TRUE(BaseUtils::Instance()->AreAllPlayerProfilesEmpty());
  WriteProfile(3, "Name=Dee\n", "");  // slot 3 does not count
  WriteProfile(1, "Name=\n", "");
  EXPECT_TRUE(BaseUtils::Instance()->AreAllPlayerProfilesEmpty());
  WriteProfile(2, "Name=Cy\n", "");
  EXPECT_FALSE(BaseUtils::Instance()->AreAllPlayerProfilesEmpty());
  EXPECT_EQ(vireline::upper::PlayerProfileName(2), "Cy");
  EXPECT_EQ(vireline::upper::PlayerProfileName(0), "");
}

TEST_F(CPlayerProfileTest, FailingWritesAreReportedByEveryCounterSetter) {
  WriteProfile(0, "Name=Ann\nGrade=0x00000002\n", "LastSBShown=0x00000004\n");
  CPlayerProfile profile(0);
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kOpen, 0, EACCES);
  EXPECT_FALSE(profile.SetGrade(3));
  EXPECT_FALSE(profile.SetBitz(10));
  EXPECT_FALSE(profile.SetNumLoginsSinceLastConnect(2));
  EXPECT_FALSE(profile.SetLastSBShown(7));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(SharedPath(0)), "Name=Ann\nGrade=0x00000002\n");
  EXPECT_EQ(ReadFile(PrivatePath(0)), "LastSBShown=0x00000004\n");
}
