#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include <vireline/BaseUtils.h>
#include <vireline/CSystem.h>

#include "baseutils/UpperLayers.h"
#include "ltm/DataObjectTest.h"
#include "platform/FaultInjectionEnv.h"

using LTM::CSystem;
using vireline::FaultInjectionEnv;

class CSystemTest : public DataObjectTest {
 protected:
  // Makes every later open fail, so sets stay unsaved until a write gets through.
  void FailOpening() {
    vireline::Env::SetCurrent(&mFaults);
    mFaults.FailAfter(FaultInjectionEnv::kOpen, 0);
  }

  // True once the running locale answers through the seam; the locale
  // service is built separately and until then keeps no locale.
  static bool LocaleServiceConnected() {
    vireline::upper::SetLocaleCode("zz-zz");
    return vireline::upper::LocaleCode() == "zz-zz";
  }

  FaultInjectionEnv mFaults{vireline::Env::Default()};
};

TEST_F(CSystemTest, ReadsTheSettingsFileOfTheBulkFolder) {
  WriteFile(kSettingsPath,
            "CurrProfile=0x00000002\nRestartAsPlayerID=0x00000001\nContrast=0x00000032\nCheats=0x00000001\n"
            "ClockInUI=1\nRTCAccuracy=0x00000007\nLocale=fr-fr\nDateAndTime=1,2\n");
  CSystem system;
  EXPECT_TRUE(system.IsValid());
  EXPECT_EQ(system.GetCurrentPlayerID(), 2);
  EXPECT_EQ(system.GetRestartPlayerID(), 1);
  EXPECT_EQ(system.GetContrast(), 50);
  EXPECT_TRUE(system.AreCheatsEnabled());
  EXPECT_EQ(system.GetClockOnUI(), 1);
  EXPECT_EQ(system.GetRTCAccuracy(), 7u);
  EXPECT_EQ(system.GetLocale(), "fr-fr");
  tDeviceDateAndTime when = {0, 0};
  EXPECT_TRUE(system.GetDateAndTime(when));
  EXPECT_EQ(when.first, 1u);
  EXPECT_EQ(when.second, 2u);
}

TEST_F(CSystemTest, MissingFileGivesEveryDefault) {
  CSystem system;
  EXPECT_TRUE(system.IsValid());
  EXPECT_EQ(system.GetCurrentPlayerID(), -1);
  EXPECT_EQ(system.GetRestartPlayerID(), -1);
  EXPECT_EQ(system.GetContrast(), -1);
  EXPECT_FALSE(system.AreCheatsEnabled());
  EXPECT_EQ(system.GetClockOnUI(), 0);
  EXPECT_EQ(system.GetRTCAccuracy(), 0u);
  EXPECT_EQ(system.GetLocale(), "");
  tDeviceDateAndTime when = {7, 8};
  EXPECT_FALSE(system.GetDateAndTime(when));
  EXPECT_EQ(when.first, 7u);
}

TEST_F(CSystemTest, DestroyingAnUnchangedObjectLeavesNoFile) {
  { CSystem system; }
  EXPECT_FALSE(Exists(kSettingsPath));
}

TEST_F(CSystemTest, CheatsAreOnOnlyForExactlyOne) {
  WriteFile(kSettingsPath, "Cheats=2\n");
  EXPECT_FALSE(CSystem().AreCheatsEnabled());
  WriteFile(kSettingsPath, "Cheats=0x00000001\n");
  EXPECT_TRUE(CSystem().AreCheatsEnabled());
  WriteFile(kSettingsPath, "Cheats=yes\n");
  EXPECT_FALSE(CSystem().AreCheatsEnabled());
}

TEST_F(CSystemTest, ClockHoldingTwoIsOff) {
  WriteFile(kSettingsPath, "ClockInUI=2\n");
  EXPECT_EQ(CSystem().GetClockOnUI(), 0);
}

TEST_F(CSystemTest, ClockIsStoredAsGiven) {
  CSystem system;
  EXPECT_TRUE(system.SetClockOnUI(2));
  EXPECT_EQ(ReadFile(kSettingsPath), "ClockInUI=0x00000002\n");
  EXPECT_EQ(system.GetClockOnUI(), 0);
}

TEST_F(CSystemTest, ClockKeySaysInWhileTheOperationsSayOn) {
  WriteFile(kSettingsPath, "ClockOnUI=1\n");
  EXPECT_EQ(CSystem().GetClockOnUI(), 0);
}

TEST_F(CSystemTest, MissingRTCAccuracyIsZeroWhileAnIllFormedOneIsMissingNumber) {
  WriteFile(kSettingsPath, "Contrast=1\n");
  EXPECT_EQ(CSystem().GetRTCAccuracy(), 0u);
  WriteFile(kSettingsPath, "RTCAccuracy=fast\n");
  EXPECT_EQ(CSystem().GetRTCAccuracy(), 0xFFFFFFFFu);
}

TEST_F(CSystemTest, ContrastIsSigned) {
  WriteFile(kSettingsPath, "Contrast=0xFFFFFFFB\n");
  EXPECT_EQ(CSystem().GetContrast(), -5);
}

TEST_F(CSystemTest, EverySetReachesTheFileAtOnce) {
  CSystem system;
  EXPECT_TRUE(system.SetCurrentPlayerID(2));
  EXPECT_EQ(ReadFile(kSettingsPath), "CurrProfile=0x00000002\n");
  EXPECT_TRUE(system.SetRestartPlayerID(3));
  EXPECT_EQ(ReadFile(kSettingsPath), "CurrProfile=0x00000002\nRestartAsPlayerID=0x00000003\n");
  EXPECT_TRUE(system.ClearRestartPlayerID());
  EXPECT_EQ(ReadFile(kSettingsPath), "CurrProfile=0x00000002\n");
  EXPECT_TRUE(system.SetContrast(-5));
  EXPECT_EQ(ReadFile(kSettingsPath), "CurrProfile=0x00000002\nContrast=0xFFFFFFFB\n");
  EXPECT_TRUE(system.SetCheatsEnabled(true));
  EXPECT_TRUE(system.SetClockOnUI(1));
  EXPECT_TRUE(system.SetRTCAccuracy(4));
  EXPECT_TRUE(system.SetLocale("de-de"));
  EXPECT_TRUE(system.SetDateAndTime(tDeviceDateAndTime{1763700000, 18000}));
  EXPECT_EQ(ReadFile(kSettingsPath),
            "CurrProfile=0x00000002\nContrast=0xFFFFFFFB\nCheats=0x00000001\nClockInUI=0x00000001\n"
            "RTCAccuracy=0x00000004\nLocale=de-de\nDateAndTime=1763700000,18000\n");
  EXPECT_TRUE(system.SetCheatsEnabled(false));
  EXPECT_EQ(CSystem().AreCheatsEnabled(), false);
  EXPECT_EQ(CSystem().GetRestartPlayerID(), -1);
  EXPECT_EQ(CSystem().GetLocale(), "de-de");
}

TEST_F(CSystemTest, PlayerIdsRoundTripThroughTheFile) {
  CSystem().SetCurrentPlayerID(-2);
  EXPECT_EQ(ReadFile(kSettingsPath), "CurrProfile=0xFFFFFFFE\n");
  EXPECT_EQ(CSystem().GetCurrentPlayerID(), -2);
}

TEST_F(CSystemTest, ClearingAMissingRestartPlayerFails) {
  EXPECT_FALSE(CSystem().ClearRestartPlayerID());
  EXPECT_FALSE(Exists(kSettingsPath));
}

TEST_F(CSystemTest, SaveOfAnUnchangedObjectSucceedsWithoutWriting) {
  CSystem system;
  EXPECT_TRUE(system.Save());
  EXPECT_FALSE(Exists(kSettingsPath));
}

TEST_F(CSystemTest, SetThatCannotBeWrittenFailsAndSaveRetriesIt) {
  WriteFile(kSettingsPath, "Locale=en-us\n");
  CSystem system;
  FailOpening();
  EXPECT_FALSE(system.SetContrast(3));
  EXPECT_EQ(ReadFile(kSettingsPath), "Locale=en-us\n");
  EXPECT_FALSE(system.Save());
  mFaults.Reset();
  EXPECT_TRUE(system.Save());
  EXPECT_EQ(ReadFile(kSettingsPath), "Locale=en-us\nContrast=0x00000003\n");
}

TEST_F(CSystemTest, DestructorWritesWhatAFailedSetLeftUnsaved) {
  {
    CSystem system;
    FailOpening();
    EXPECT_FALSE(system.SetCurrentPlayerID(1));
    EXPECT_FALSE(Exists(kSettingsPath));
    mFaults.Reset();
  }
  EXPECT_EQ(ReadFile(kSettingsPath), "CurrProfile=0x00000001\n");
}

TEST_F(CSystemTest, SetLocaleRefusedByTheFileStillSwitchesTheRunningLocale) {
  bool connected = LocaleServiceConnected();
  WriteFile(kSettingsPath, "Locale=en-us\n");
  CSystem system;
  FailOpening();
  EXPECT_FALSE(system.SetLocale("fr-ca"));
  mFaults.Reset();
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(kSettingsPath), "Locale=en-us\n");
  if (!connected) GTEST_SKIP() << "no locale service in this build to observe the switch";
  EXPECT_EQ(vireline::upper::LocaleCode(), "fr-ca");
}

TEST_F(CSystemTest, SetLocaleSwitchesTheRunningLocale) {
  bool connected = LocaleServiceConnected();
  EXPECT_TRUE(CSystem().SetLocale("de-de"));
  EXPECT_EQ(ReadFile(kSettingsPath), "Locale=de-de\n");
  if (!connected) GTEST_SKIP() << "no locale service in this build to observe the switch";
  EXPECT_EQ(vireline::upper::LocaleCode(), "de-de");
}

TEST_F(CSystemTest, UnreadableSettingsFileGivesDefaultsAndIsNotTouched) {
  WriteFile(kSettingsPath, "CurrProfile=0x00000002\n");
  vireline::Env::SetCurrent(&mFaults);
  mFaults.FailAfter(FaultInjectionEnv::kOpen, 0, EACCES);
  {
    CSystem system;
    EXPECT_TRUE(system.IsValid());
    EXPECT_EQ(system.GetCurrentPlayerID(), -1);
  }
  EXPECT_EQ(ReadFile(kSettingsPath), "CurrProfile=0x00000002\n");
}

TEST_F(CSystemTest, SettingsPathThatIsAFolderGivesDefaultsAndRefusesSets) {
  MakeDirs(kSettingsPath);
  {
    CSystem system;
    EXPECT_EQ(system.GetLocale(), "");
    EXPECT_FALSE(system.SetLocale("fr-fr"));
  }
  EXPECT_EQ(List(kSettingsPath), std::vector<std::string>{});
}

TEST_F(CSystemTest, BinaryGarbageReadsAsMissingKeys) {
  WriteFile(kSettingsPath, std::string("\x00\xFF\x01=\x02\r\n\xFE\xFE", 9));
  CSystem system;
  EXPECT_EQ(system.GetCurrentPlayerID(), -1);
  EXPECT_EQ(system.GetLocale(), "");
}

TEST_F(CSystemTest, DeprecatedSerialNumberOperationsOnlyWarn) {
  WriteFile(kSettingsPath, "SerialNumber=3F2A0000000552C81D04\n");
  RecordDebugMessages();
  CSystem system;
  EXPECT_EQ(system.GetSerialNumber(), "");
  EXPECT_FALSE(system.SetSerialNumber("X"));
  ASSERT_EQ(Messages().size(), 2u);
  EXPECT_EQ(Messages()[0].module, 0x281);
  EXPECT_EQ(Messages()[0].level, 5);
  EXPECT_EQ(Messages()[0].text,
            "WARNING:  Use of a deprecated function: Quorvane::Orvo::CString LTM::CSystem::GetSerialNumber() const\n");
  EXPECT_EQ(Messages()[1].module, 0x281);
  EXPECT_EQ(Messages()[1].level, 5);
  EXPECT_EQ(Messages()[1].text,
            "WARNING:  Use of a deprecated function: bool "
            "LTM::CSystem::SetSerialNumber(const Quorvane::Orvo::CString&)\n");
  EXPECT_EQ(ReadFile(kSettingsPath), "SerialNumber=3F2A0000000552C81D04\n");
}

TEST_F(CSystemTest, DeprecationWarningIsHiddenAtTheDefaultLevel) {
  CaptureDebugOutput();
  PlatformDebug().SetMasterDebugLevel(1);
  EXPECT_EQ(CSystem().GetSerialNumber(), "");
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CSystemTest, CopyReadsTheFileNotTheOthersCache) {
  WriteFile(kSettingsPath, "Contrast=0x00000001\n");
  CSystem original;
  WriteFile(kSettingsPath, "Contrast=0x00000002\n");
  CSystem copy(original);
  EXPECT_EQ(original.GetContrast(), 1);
  EXPECT_EQ(copy.GetContrast(), 2);
  EXPECT_TRUE(copy.SetCheatsEnabled(true));  // the copy synchronises immediately too
  EXPECT_EQ(ReadFile(kSettingsPath), "Contrast=0x00000002\nCheats=0x00000001\n");
}

TEST_F(CSystemTest, AssignmentDropsTheTargetsUnsavedChangesWithoutWriting) {
  WriteFile(kSettingsPath, "Contrast=0x00000001\n");
  CSystem source;
  {
    CSystem target;
    FailOpening();
    EXPECT_FALSE(target.SetContrast(9));
    mFaults.Reset();
    int opensBefore = mFaults.Calls(FaultInjectionEnv::kOpen);
    target = source;
    EXPECT_EQ(mFaults.Calls(FaultInjectionEnv::kOpen), opensBefore + 1);  // the read of the copy only
    EXPECT_EQ(target.GetContrast(), 1);
  }
  EXPECT_EQ(ReadFile(kSettingsPath), "Contrast=0x00000001\n");
}

TEST_F(CSystemTest, SelfAssignmentChangesAndWritesNothing) {
  CSystem system;
  FailOpening();
  EXPECT_FALSE(system.SetContrast(9));
  mFaults.Reset();
  CSystem& same = system;
  system = same;
  EXPECT_EQ(mFaults.Calls(FaultInjectionEnv::kOpen), 0);
  EXPECT_EQ(system.GetContrast(), 9);  // the unsaved change is still there
  EXPECT_FALSE(Exists(kSettingsPath));
  EXPECT_TRUE(system.Save());
  EXPECT_EQ(ReadFile(kSettingsPath), "Contrast=0x00000009\n");
}

TEST_F(CSystemTest, AssertionConsultsTheSettingsWithoutChangingThem) {
  const std::string settings = "\xEF\xBB\xBF" "Cheats=1\r\nLocale=\"en-us\"\r\n";
  WriteFile(kSettingsPath, settings);
  CaptureDebugOutput();
  BaseUtils::Instance()->Assert(0, "VirelineJSON/Src/LTM", 1, "checked %d", 7);
  EXPECT_EQ(ReadFile(kSettingsPath), settings);
}

TEST_F(CSystemTest, ASettingsFileThatCouldNotBeReadIsNotReplacedByAChange) {
  const std::string before = "CurrProfile=0x00000002\nContrast=0x00000032\nLocale=fr-fr\n";
  WriteFile(kSettingsPath, before);
  vireline::Env::SetCurrent(&mFaults);
  mFaults.FailAfter(FaultInjectionEnv::kRead, 0, EIO, true);
  CSystem system;
  mFaults.Reset();
  EXPECT_FALSE(system.SetLocale("de-de"));
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(kSettingsPath), before);
}

TEST_F(CSystemTest, EverySetterReportsAnUnwritableFile) {
  WriteFile(kSettingsPath, "Locale=en-us\n");
  CSystem system;
  FailOpening();
  EXPECT_FALSE(system.SetRestartPlayerID(2));
  tDeviceDateAndTime when{};
  EXPECT_FALSE(system.SetDateAndTime(when));
  EXPECT_FALSE(system.SetCheatsEnabled(true));
  EXPECT_FALSE(system.SetCheatsEnabled(false));
  EXPECT_FALSE(system.SetClockOnUI(1));
  EXPECT_FALSE(system.SetRTCAccuracy(5));
  EXPECT_EQ(ReadFile(kSettingsPath), "Locale=en-us\n");
  mFaults.Reset();
}
