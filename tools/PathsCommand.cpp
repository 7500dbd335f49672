// `vireline paths`: every folder CSystemData names and the locale with its
// source. It creates nothing: the per-player folders are named with the
// getters that never create, and the inventory package is computed the way
// GetManageInventoryPath computes it, without that getter's folder and
// metadata creation; whether it exists is shown instead.
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <json/json.h>

#include <vireline/BaseUtils.h>
#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/KeyValueDisplay.h"
#include "tools/SystemDataMessages.h"

namespace vireline {
namespace tools {
namespace {

const int kPlayers = 3;

typedef std::vector<std::pair<const char*, std::string>> Folders;

// The device-wide folders under their JSON names.
Folders DeviceFolders(CSystemData* data) {
  return {
      {"root", data->GetRootPath()},
      {"cart", data->GetCartPath()},
      {"base", data->GetBasePath()},
      {"programFiles", data->GetProgramFilesPath()},
      {"downloads", data->GetDownloadsPath()},
      {"cyos", data->GetCYOsPath()},
      {"mdls", data->GetMDLsPath()},
      {"data", data->GetDataPath()},
      {"avatars", data->GetAvatarsPath()},
      {"defaultAvatar", data->GetDefaultAvatarPath()},
      {"flash", data->GetFlashPath()},
      {"petResources", data->GetPetResourcesPath()},
      {"universalLanguagePack", data->GetLanguagePackPath(false)},
      {"languagePack", data->GetLanguagePackPath()},
      {"tutorials", data->GetBaseTutorialPath()},
  };
}

struct Report {
  Folders folders;
  tDeviceLocale locale;
  tPlayerID currentPlayer;
  tManageInventoryPackage inventory;
  bool inventoryExists;
};

Report Gather() {
  CSystemData* data = CSystemData::Instance();
  Report report;
  report.locale = ReadDeviceLocale();
  report.folders = DeviceFolders(data);
  report.currentPlayer = data->GetCurrentPlayerID();
  report.inventory = ManageInventoryFor(data->GetDataPath(), report.currentPlayer);
  report.inventoryExists = BaseUtils::Instance()->FileExists(report.inventory.folder);
  return report;
}

void PrintText(const Report& report) {
  CSystemData* data = CSystemData::Instance();
  for (const auto& folder : report.folders) std::printf("%-22s %s\n", folder.first, folder.second.c_str());
  std::printf("%-22s %s (%s)\n", "locale", report.locale.code.c_str(),
              LocaleSourceName(report.locale.source));
  std::printf("%-22s %d\n", "currentPlayer", report.currentPlayer);
  for (int player = 0; player < kPlayers; ++player) {
    std::printf("player %d %-13s %s\n", player, "data", data->GetDataProfilePath(player).c_str());
    std::printf("player %d %-13s %s\n", player, "log", data->GetDataProfileLogPath(player).c_str());
  }
  std::printf("%-22s %s%s\n", "manageInventory", report.inventory.folder.c_str(),
              report.inventoryExists ? "" : "  (not created yet)");
}

void PrintJsonReport(const Report& report) {
  CSystemData* data = CSystemData::Instance();
  Json::Value json(Json::objectValue);
  for (const auto& folder : report.folders) json[folder.first] = folder.second;
  json["locale"]["code"] = report.locale.code.raw();
  json["locale"]["source"] = LocaleSourceName(report.locale.source);
  json["currentPlayer"] = report.currentPlayer;
  json["players"] = Json::Value(Json::arrayValue);
  for (int player = 0; player < kPlayers; ++player) {
    Json::Value entry(Json::objectValue);
    entry["player"] = player;
    entry["data"] = data->GetDataProfilePath(player).raw();
    entry["log"] = data->GetDataProfileLogPath(player).raw();
    json["players"].append(entry);
  }
  Json::Value& inventory = json["manageInventory"];
  inventory["path"] = report.inventory.folder.raw();
  inventory["exists"] = report.inventoryExists;
  inventory["deviceType"] = report.inventory.deviceType ? Json::Value(report.inventory.deviceType) : Json::Value();
  inventory["productId"] = report.inventory.productId;
  PrintJson(json);
}

int RunPaths(bool json) {
  RouteSystemDataMessages(false);
  Report report = Gather();
  if (json) {
    PrintJsonReport(report);
  } else {
    PrintText(report);
  }
  return kSuccess;
}

}  // namespace

void RegisterPathsCommand(CLI::App& program, Action* action) {
  auto* paths = program.add_subcommand("paths", "Print every folder the library names, and the locale with its source");
  static bool json = false;  // must outlive the parse and the action
  paths->add_flag("--json", json, "Machine-readable output");
  paths->callback([action] { *action = [] { return RunPaths(json); }; });
}

}  // namespace tools
}  // namespace vireline
