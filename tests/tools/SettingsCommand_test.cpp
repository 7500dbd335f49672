#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tools/SampleImageTest.h"

namespace {

const char kSettings[] = "/QV/Bulk/settings.cfg";

// Every entry below `root` with its size and modification time.
std::string Snapshot(const std::string& root) {
  std::string snapshot;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    snapshot += entry.path().string();
    if (entry.is_regular_file()) {
      snapshot += " " + std::to_string(entry.file_size()) + " " +
                  std::to_string(entry.last_write_time().time_since_epoch().count());
    }
    snapshot += "\n";
  }
  return snapshot;
}

}  // namespace

class SettingsCommandTest : public SampleImageTest {};

TEST_F(SettingsCommandTest, PrintsTheSampleDevicesSettings) {
  InspectorRun run = Run("settings");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "settings.cfg    /QV/Bulk/settings.cfg\n"
            "current player  0\n"
            "restart player  none\n"
            "contrast        50\n"
            "cheats          off\n"
            "clock on UI     on\n"
            "RTC accuracy    2\n"
            "locale          en-us\n"
            "date and time   4294967295, 4294868992  (items read in base 16)\n"
            "debug level     2  (/var/loglevel)\n");
}

TEST_F(SettingsCommandTest, Json) {
  InspectorRun run = Run("settings --json");
  EXPECT_EQ(run.exitStatus, 0);
  Json::Value json = ParseJson(run.out);
  EXPECT_EQ(json["settingsFile"].asString(), kSettings);
  EXPECT_TRUE(json["settingsFilePresent"].asBool());
  EXPECT_EQ(json["currentPlayer"].asInt(), 0);
  EXPECT_EQ(json["restartPlayer"].asInt(), -1);
  EXPECT_EQ(json["contrast"].asInt(), 50);
  EXPECT_FALSE(json["cheats"].asBool());
  EXPECT_TRUE(json["clockOnUI"].asBool());
  EXPECT_EQ(json["rtcAccuracy"].asUInt(), 2u);
  EXPECT_EQ(json["locale"].asString(), "en-us");
  ASSERT_EQ(json["dateAndTime"].size(), 2u);
  EXPECT_EQ(json["dateAndTime"][0].asUInt(), 4294967295u);
  EXPECT_EQ(json["logLevelFile"].asString(), "/var/loglevel");
  EXPECT_TRUE(json["logLevelFilePresent"].asBool());
  EXPECT_EQ(json["debugLevel"].asUInt(), 2u);
}

TEST_F(SettingsCommandTest, ReadingChangesNothingOnTheDevice) {
  const std::string settings = "\xEF\xBB\xBF" "Locale=\"fr-fr\"\r\nCheats=2\r\nCheats=1\r\n";
  WriteFile(kSettings, settings);
  std::string before = Snapshot(mRoot);
  EXPECT_EQ(Run("settings").exitStatus, 0);
  EXPECT_EQ(Run("settings --json").exitStatus, 0);
  EXPECT_EQ(ReadFile(kSettings), settings);
  EXPECT_EQ(Snapshot(mRoot), before);
}

TEST_F(SettingsCommandTest, MissingSettingsShowTheDefaultsWithoutCreatingTheFile) {
  std::filesystem::remove(Host(kSettings));
  std::filesystem::remove(Host("/var/loglevel"));
  InspectorRun run = Run("settings");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "settings.cfg    /QV/Bulk/settings.cfg  (missing: defaults shown)\n"
            "current player  none\n"
            "restart player  none\n"
            "contrast        -1\n"
            "cheats          off\n"
            "clock on UI     off\n"
            "RTC accuracy    0\n"
            "locale          (missing)\n"
            "date and time   (missing or not two values)\n"
            "debug level     3  (/var/loglevel missing: default)\n");
  EXPECT_FALSE(Exists(kSettings));
  Json::Value json = ParseJson(Run("settings --json").out);
  EXPECT_FALSE(json["settingsFilePresent"].asBool());
  EXPECT_TRUE(json["locale"].isNull());
  EXPECT_TRUE(json["dateAndTime"].isNull());
  EXPECT_FALSE(json["logLevelFilePresent"].asBool());
  EXPECT_EQ(json["debugLevel"].asUInt(), 3u);
}

TEST_F(SettingsCommandTest, OnlyExactlyOneTurnsAFlagOn) {
  WriteFile(kSettings, "Cheats=2\nClockInUI=0x00000002\n");
  Json::Value json = ParseJson(Run("settings --json").out);
  EXPECT_FALSE(json["cheats"].asBool());
  EXPECT_FALSE(json["clockOnUI"].asBool());
}

TEST_F(SettingsCommandTest, LogLevelWithoutLineFeedReadsAsThree) {
  WriteFile("/var/loglevel", "5");
  InspectorRun run = Run("settings");
  EXPECT_NE(run.out.find("debug level     3  (/var/loglevel)\n"), std::string::npos) << run.out;
  WriteFile("/var/loglevel", "5\n");
  EXPECT_EQ(ParseJson(Run("settings --json").out)["debugLevel"].asUInt(), 5u);
}

TEST_F(SettingsCommandTest, DamagedDateAndTimeIsShownNotTraced) {
  WriteFile(kSettings, "DateAndTime=1,2,3\nLocale=de-de\n");
  InspectorRun run = Run("settings");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.out.find("date and time   (missing or not two values)\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("locale          de-de\n"), std::string::npos) << run.out;
}

TEST_F(SettingsCommandTest, UnreadableSettingsShowTheDefaults) {
  std::filesystem::remove(Host(kSettings));
  MakeDirs(kSettings);
  InspectorRun run = Run("settings --json");
  EXPECT_EQ(run.exitStatus, 0);
  Json::Value json = ParseJson(run.out);
  EXPECT_EQ(json["currentPlayer"].asInt(), -1);
  EXPECT_TRUE(json["locale"].isNull());
}

TEST_F(SettingsCommandTest, BinaryLocaleIsEscaped) {
  WriteFile(kSettings, "Locale=fr\x01\xFF\n");
  InspectorRun run = Run("settings");
  EXPECT_NE(run.out.find("locale          fr\\x01\\xFF\n"), std::string::npos) << run.out;
}

TEST_F(SettingsCommandTest, TakesNoArguments) {
  InspectorRun run = Run("settings extra");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.out, "");
}
