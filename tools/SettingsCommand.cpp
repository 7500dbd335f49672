// `vireline settings`: the device-wide settings as applications see them
// through LTM::CSystem, and the platform debug level in "/var/loglevel".
// Read-only: the object writes "settings.cfg" back when it is destroyed, but
// only a changed table is ever written, and nothing here changes it.
#include <cstdio>
#include <string>

#include <json/json.h>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/DebugCapture.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

// Where LTM::CSystem finds the settings (the "System" folder of volume 0).
const char kSettingsFile[] = "/QV/Bulk/settings.cfg";
const char kLogLevelFile[] = "/var/loglevel";

// What LTM::CSystem answers, gathered once.
struct SettingsView {
  bool settingsPresent;
  tPlayerID currentPlayer;
  tPlayerID restartPlayer;
  long contrast;
  bool cheats;
  unsigned clockOnUI;
  LTM::tRTCAccuracy rtcAccuracy;
  std::string locale;
  bool hasDateAndTime;
  tDeviceDateAndTime dateAndTime;
  bool logLevelPresent;
  unsigned long debugLevel;
};

bool FileExists(const char* path) {
  tStatLite info;
  return COrvoInterface::Stat(path, &info, false);
}

SettingsView ReadSettings() {
  SettingsView view{};
  view.settingsPresent = FileExists(kSettingsFile);
  view.logLevelPresent = FileExists(kLogLevelFile);
  LTM::CSystem system;
  view.currentPlayer = system.GetCurrentPlayerID();
  view.restartPlayer = system.GetRestartPlayerID();
  view.contrast = system.GetContrast();
  view.cheats = system.AreCheatsEnabled();
  view.clockOnUI = system.GetClockOnUI();
  view.rtcAccuracy = system.GetRTCAccuracy();
  view.locale = system.GetLocale();
  {
    DebugCapture quiet(1);  // a missing or damaged pair is shown below, not traced
    view.hasDateAndTime = system.GetDateAndTime(view.dateAndTime);
  }
  view.debugLevel = system.GetFRDebugLevel();
  return view;
}

void Field(const char* label, const std::string& value) { std::printf("%-15s %s\n", label, value.c_str()); }

std::string Player(tPlayerID id) { return id == -1 ? "none" : std::to_string(id); }

void PrintText(const SettingsView& view) {
  Field("settings.cfg", std::string(kSettingsFile) + (view.settingsPresent ? "" : "  (missing: defaults shown)"));
  Field("current player", Player(view.currentPlayer));
  Field("restart player", Player(view.restartPlayer));
  Field("contrast", std::to_string(view.contrast));
  Field("cheats", view.cheats ? "on" : "off");
  Field("clock on UI", view.clockOnUI ? "on" : "off");
  Field("RTC accuracy", std::to_string(view.rtcAccuracy));
  Field("locale", view.locale.empty() ? "(missing)" : DisplayText(view.locale.c_str()));
  Field("date and time", view.hasDateAndTime ? std::to_string(view.dateAndTime.first) + ", " +
                                                   std::to_string(view.dateAndTime.second) + "  (items read in base 16)"
                                             : "(missing or not two values)");
  Field("debug level", std::to_string(view.debugLevel) + (view.logLevelPresent
                                                              ? "  (/var/loglevel)"
                                                              : "  (/var/loglevel missing: default)"));
}

void PrintJsonOf(const SettingsView& view) {
  Json::Value json(Json::objectValue);
  json["settingsFile"] = kSettingsFile;
  json["settingsFilePresent"] = view.settingsPresent;
  json["currentPlayer"] = view.currentPlayer;
  json["restartPlayer"] = view.restartPlayer;  // -1: none
  json["contrast"] = static_cast<Json::Int64>(view.contrast);
  json["cheats"] = view.cheats;
  json["clockOnUI"] = view.clockOnUI != 0;
  json["rtcAccuracy"] = view.rtcAccuracy;
  json["locale"] = view.locale.empty() ? Json::Value(Json::nullValue) : Json::Value(DisplayText(view.locale.c_str()));
  json["dateAndTime"] = Json::Value(Json::nullValue);
  if (view.hasDateAndTime) {
    json["dateAndTime"] = Json::Value(Json::arrayValue);
    json["dateAndTime"].append(view.dateAndTime.first);
    json["dateAndTime"].append(view.dateAndTime.second);
  }
  json["logLevelFile"] = kLogLevelFile;
  json["logLevelFilePresent"] = view.logLevelPresent;
  json["debugLevel"] = static_cast<Json::UInt64>(view.debugLevel);
  PrintJson(json);
}

int RunSettings(bool json) {
  SettingsView view = ReadSettings();
  if (json) {
    PrintJsonOf(view);
  } else {
    PrintText(view);
  }
  return kSuccess;
}

}  // namespace

void RegisterSettingsCommand(CLI::App& program, Action* action) {
  auto* settings = program.add_subcommand("settings", "Print the device settings and debug level (read-only)");
  static bool json = false;  // must outlive the parse and the action
  settings->add_flag("--json", json, "Machine-readable output");
  settings->callback([action] { *action = [] { return RunSettings(json); }; });
}

}  // namespace tools
}  // namespace vireline
