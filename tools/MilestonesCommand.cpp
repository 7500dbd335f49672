// `vireline milestones [--player N]`: a player's reached milestones;
// `vireline milestones add|remove NAME`: changes the current player's, the
// only player the store lets an application change. Showing changes nothing:
// the store's folder lookup creates a missing player folder, so a player
// without one is shown as having no milestones without asking the store.
#include <cstdio>
#include <string>
#include <vector>

#include <json/json.h>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

bool IsMilestonePlayer(tPlayerID player) { return player >= 0 && player <= 2; }

int RunShow(bool hasPlayer, int playerOption, bool json) {
  tPlayerID player = hasPlayer ? playerOption : CSystemData::Instance()->GetCurrentPlayerID();
  if (!IsMilestonePlayer(player)) {
    std::fprintf(stderr, "vireline milestones: player %d keeps no milestones (only players 0, 1 and 2 do)\n", player);
    return hasPlayer ? kUsage : kNotFound;
  }
  std::vector<CString> names;
  if (BaseUtils::Instance()->FileIsDir(CSystemData::Instance()->GetDataProfilePath(player))) {
    names = CMilestones::Instance()->Get(player);
  }
  if (json) {
    Json::Value out(Json::objectValue);
    out["player"] = player;
    out["milestones"] = Json::Value(Json::arrayValue);
    for (const CString& name : names) out["milestones"].append(name.raw());
    PrintJson(out);
  } else {
    std::printf("player %d: %zu milestone%s\n", player, names.size(), names.size() == 1 ? "" : "s");
    for (const CString& name : names) std::printf("  %s\n", DisplayText(name.c_str()).c_str());
  }
  return kSuccess;
}

int RunChange(bool add, const std::string& name) {
  tPlayerID player = CSystemData::Instance()->GetCurrentPlayerID();
  bool changed = add ? CMilestones::Instance()->Add(name) : CMilestones::Instance()->Remove(name);
  if (changed) {
    std::printf("%s %s for player %d\n", add ? "added" : "removed", DisplayText(name.c_str()).c_str(), player);
    return kSuccess;
  }
  std::fprintf(stderr, "vireline milestones %s: %s: %s for player %d\n", add ? "add" : "remove",
               DisplayText(name.c_str()).c_str(),
               add ? "already reached, or no milestone file can be read" : "not reached, or the file cannot be saved",
               player);
  return kNotFound;
}

}  // namespace

void RegisterMilestonesCommand(CLI::App& program, Action* action) {
  auto* milestones = program.add_subcommand("milestones", "Show a player's milestones, or add or remove one");
  static int player = 0;  // must outlive the parse and the action
  static bool json = false;
  static std::string name;
  auto* playerOption = milestones->add_option("--player", player, "Player slot 0-2 (default: the current player)");
  milestones->add_flag("--json", json, "Machine-readable output");
  milestones->require_subcommand(0, 1);
  auto* add = milestones->add_subcommand("add", "Record milestone NAME for the current player");
  add->add_option("NAME", name, "The milestone")->required();
  auto* remove = milestones->add_subcommand("remove", "Forget milestone NAME of the current player");
  remove->add_option("NAME", name, "The milestone")->required();
  add->callback([action] { *action = [] { return RunChange(true, name); }; });
  remove->callback([action] { *action = [] { return RunChange(false, name); }; });
  milestones->callback([action, playerOption, milestones] {
    if (milestones->get_subcommands().size() > 0) return;
    bool hasPlayer = playerOption->count() > 0;
    *action = [hasPlayer] { return RunShow(hasPlayer, player, json); };
  });
}

}  // namespace tools
}  // namespace vireline
