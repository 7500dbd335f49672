// `vireline profiles [--json]`: the three player slots as the applications see
// them. Reading changes nothing: a profile object asks for its local data
// folder, which creates a missing one, so only slots whose folder already
// exists are read through LTM::CPlayerProfile (an unchanged profile writes
// nothing back); a slot without a folder is shown as having no profile.
#include <cstdio>
#include <string>

#include <json/json.h>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

const tPlayerID kSlotCount = 3;
const U32 kMissing = 0xFFFFFFFFu;

struct SlotView {
  tPlayerID slot;
  bool exists;  // the slot's "profile.dsc" is there
  std::string name;
  U32 id;
  U32 grade;
  U32 points;
  U32 badges;
  std::string avatar;
};

SlotView ReadSlot(tPlayerID slot) {
  SlotView view{slot, false, "", kMissing, kMissing, kMissing, 0, ""};
  CPath folder = CSystemData::Instance()->GetDataProfilePath(slot);
  BaseUtils* utils = BaseUtils::Instance();
  if (!utils->FileIsDir(folder) || !utils->FileExists(folder + "profile.dsc")) return view;
  LTM::CPlayerProfile profile(slot);
  view.exists = true;
  view.name = profile.GetName().raw();
  view.id = profile.GetId();
  view.grade = profile.GetGrade();
  // The points are read from the descriptor itself: the profile's own getters
  // for them are deprecated and would warn.
  view.points = CProfileDscFile((folder + "profile.dsc").c_str()).GetPoints();
  view.badges = profile.GetBadges();
  view.avatar = profile.GetAvatar().raw();
  return view;
}

std::string NumberText(U32 value) { return value == kMissing ? "-" : std::to_string(value); }

Json::Value NumberJson(U32 value) { return value == kMissing ? Json::Value() : Json::Value(value); }

void PrintText(const SlotView& view) {
  if (!view.exists) {
    std::printf("slot %d: no profile\n", view.slot);
    return;
  }
  std::printf("slot %d: %s\n", view.slot, view.name.empty() ? "(empty)" : DisplayText(view.name.c_str()).c_str());
  std::printf("  id: %s\n", NumberText(view.id).c_str());
  std::printf("  grade: %s%s\n", NumberText(view.grade).c_str(), view.grade == 255 ? " (empty slot)" : "");
  std::printf("  points: %s\n", NumberText(view.points).c_str());
  std::printf("  badges: %s\n", NumberText(view.badges).c_str());
  std::printf("  avatar: %s\n", DisplayText(view.avatar.c_str()).c_str());
}

Json::Value ToJson(const SlotView& view) {
  Json::Value out(Json::objectValue);
  out["slot"] = view.slot;
  out["exists"] = view.exists;
  if (!view.exists) return out;
  out["name"] = view.name;
  out["id"] = NumberJson(view.id);
  out["grade"] = NumberJson(view.grade);
  out["points"] = NumberJson(view.points);
  out["badges"] = NumberJson(view.badges);
  out["avatar"] = view.avatar;
  return out;
}

int Run(bool json) {
  Json::Value out(Json::arrayValue);
  for (tPlayerID slot = 0; slot < kSlotCount; ++slot) {
    SlotView view = ReadSlot(slot);
    if (json) {
      out.append(ToJson(view));
    } else {
      PrintText(view);
    }
  }
  if (json) PrintJson(out);
  return kSuccess;
}

}  // namespace

void RegisterProfilesCommand(CLI::App& program, Action* action) {
  auto* profiles = program.add_subcommand("profiles", "Show the player profiles of slots 0-2 (read-only)");
  static bool json = false;  // must outlive the parse and the action
  profiles->add_flag("--json", json, "Machine-readable output");
  profiles->callback([action] { *action = [] { return Run(json); }; });
}

}  // namespace tools
}  // namespace vireline
