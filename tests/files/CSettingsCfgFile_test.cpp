#include <gtest/gtest.h>

#include <string>

#include <vireline/CSettingsCfgFile.h>

#include "DeviceRootTest.h"
#include "files/KeyValueTest.h"

namespace {

const char kPath[] = "/QV/Base/settings.cfg";

}  // namespace

class CSettingsCfgFileTest : public DeviceRootTest {};

TEST_F(CSettingsCfgFileTest, DefaultLayoutReadsTheSystemFoldersFile) {
  WriteFile(kPath, "Locale=fr-fr\n");
  CSettingsCfgFile settings(0, nullptr);
  EXPECT_STREQ(settings.GetPath(), kPath);
  EXPECT_STREQ(settings.GetLocale(), "fr-fr");
}

TEST_F(CSettingsCfgFileTest, GivenLayoutIsUsed) {
  WriteFile("/Scrivel/System/settings.cfg", "Locale=de-de\n");
  CPkgPathBase scrivel(&gScrivelCfg);
  CSettingsCfgFile settings(0, &scrivel);
  EXPECT_STREQ(settings.GetPath(), "/Scrivel/System/settings.cfg");
  EXPECT_STREQ(settings.GetLocale(), "de-de");
}

TEST_F(CSettingsCfgFileTest, MissingVolumeBindsTheEmptyPath) {
  CSettingsCfgFile settings(3, nullptr);
  EXPECT_STREQ(settings.GetPath(), "");
}

TEST_F(CSettingsCfgFileTest, MissingFileIsCreatedByWrite) {
  CSettingsCfgFile settings(0, nullptr);
  EXPECT_EQ(settings.GetLocale(), nullptr);
  ASSERT_TRUE(settings.SetLocale("en-us"));
  ASSERT_TRUE(settings.Write());
  EXPECT_EQ(ReadFile(kPath), "Locale=en-us\n");
}

TEST_F(CSettingsCfgFileTest, DateAndTimeOfTwoValues) {
  WriteFile(kPath, "DateAndTime=1,2\n");
  CSettingsCfgFile settings(0, nullptr);
  tDeviceDateAndTime when = {0, 0};
  ASSERT_TRUE(settings.GetDateAndTime(when));
  EXPECT_EQ(when.first, 1u);
  EXPECT_EQ(when.second, 2u);
}

TEST_F(CSettingsCfgFileTest, DateAndTimeOfOneValueIsCorrupt) {
  WriteFile(kPath, "DateAndTime=1\n");
  CSettingsCfgFile settings(0, nullptr);
  CaptureDebugOutput();
  tDeviceDateAndTime when = {7, 8};
  EXPECT_FALSE(settings.GetDateAndTime(when));
  EXPECT_EQ(DebugOutput(), "DateAndTime corruption in /QV/Base/settings.cfg, only 1 values!");
  EXPECT_EQ(when.first, 7u);
  EXPECT_EQ(when.second, 8u);
}

TEST_F(CSettingsCfgFileTest, DateAndTimeOfThreeOrNoValuesIsCorrupt) {
  WriteFile(kPath, "DateAndTime=1,2,3\nEmpty=\n");
  CSettingsCfgFile settings(0, nullptr);
  CaptureDebugOutput();
  tDeviceDateAndTime when = {7, 8};
  EXPECT_FALSE(settings.GetDateAndTime(when));
  EXPECT_EQ(DebugOutput(), "DateAndTime corruption in /QV/Base/settings.cfg, only 3 values!");
  ASSERT_TRUE(settings.RmKey("DateAndTime"));
  CaptureDebugOutput();
  EXPECT_FALSE(settings.GetDateAndTime(when));
  EXPECT_EQ(DebugOutput(), "DateAndTime corruption in /QV/Base/settings.cfg, only 0 values!");
  EXPECT_EQ(when.first, 7u);
}

TEST_F(CSettingsCfgFileTest, DateAndTimeIsWrittenInDecimalAndReadInHex) {
  CSettingsCfgFile settings(0, nullptr);
  ASSERT_TRUE(settings.SetDateAndTime(tDeviceDateAndTime{10, 5}));
  ASSERT_TRUE(settings.Write());
  EXPECT_EQ(ReadFile(kPath), "DateAndTime=10,5\n");
  tDeviceDateAndTime when = {0, 0};
  ASSERT_TRUE(settings.GetDateAndTime(when));
  EXPECT_EQ(when.first, 16u);
  EXPECT_EQ(when.second, 5u);
}

TEST_F(CSettingsCfgFileTest, LargeDateAndTimeValuesAreWrittenSigned) {
  CSettingsCfgFile settings(0, nullptr);
  ASSERT_TRUE(settings.SetDateAndTime(tDeviceDateAndTime{0xFFFFFFFFu, 1700000000u}));
  EXPECT_STREQ(settings.GetStr("DateAndTime"), "-1,1700000000");
}

TEST_F(CSettingsCfgFileTest, SerialNumberIsWrittenAndReadUnderDifferentKeys) {
  WriteFile(kPath, "SerialNumber=OLD123\n");
  CSettingsCfgFile settings(0, nullptr);
  ASSERT_TRUE(settings.SetSerialNumber("X"));
  EXPECT_STREQ(settings.GetSerialNumber(), "OLD123");
  ASSERT_TRUE(settings.Write());
  EXPECT_EQ(ReadFile(kPath), "SerialNumber=OLD123\nSerial=X\n");
}

TEST_F(CSettingsCfgFileTest, SerialNumberWithoutTheReadKeyIsNull) {
  CSettingsCfgFile settings(0, nullptr);
  ASSERT_TRUE(settings.SetSerialNumber("X"));
  EXPECT_EQ(settings.GetSerialNumber(), nullptr);
}

TEST_F(CSettingsCfgFileTest, CopyReadsTheFileOnDisk) {
  WriteFile(kPath, "Locale=en-us\n");
  CSettingsCfgFile settings(0, nullptr);
  ASSERT_TRUE(settings.SetLocale("fr-fr"));
  CSettingsCfgFile copy(settings);
  EXPECT_STREQ(copy.GetLocale(), "en-us");
  CSettingsCfgFile assigned;
  assigned = settings;
  EXPECT_STREQ(assigned.GetLocale(), "en-us");
}
