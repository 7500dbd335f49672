// `vireline cyo [TYPE|NAME] [--player N]`: the CYO sets a player gets, found
// by the same folder walk as LTM::CCyo, with each item's value, audio file and
// the player's status. Read-only: LTM::CCyo creates the progress folder and
// saves the progress file, so the documents are read here through
// LTM::CJSonFile, and kinds are checked before every read so that a damaged
// document never raises the library's type assertion (which logs).
#include <cstdio>
#include <string>
#include <vector>

#include <json/json.h>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/DebugCapture.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

struct Item {
  std::string value;
  std::string audio;
  U32 status;
};

// One curriculum as the player would get it.
struct SetView {
  std::string wanted;
  bool found;
  LTM::tCyoSetInfo set;
  std::string progressFile;
  bool progressPresent;
  std::string id;
  U32 completion;
  std::vector<Item> items;
};

const LTM::Value& Member(const LTM::Value& value, const char* key) {
  static const LTM::Value null;
  return value.isObject() && value.isMember(key) ? value[key] : null;
}

std::string Text(const LTM::Value& value) { return value.isString() ? value.asString().raw() : std::string(); }

U32 Number(const LTM::Value& value) { return value.isConvertibleTo(LTM::uintValue) ? value.asUInt() : 0; }

void ReadDocuments(SetView* view, tPlayerID player) {
  DebugCapture quiet(1);  // a missing progress file is shown below, not traced
  LTM::CJSonFile manifest(view->set.path + view->set.manifestFile, 0);
  manifest.Load();
  view->progressFile = LTM::CyoProgressFile(player, view->set.packageId).raw();
  LTM::CJSonFile progress(view->progressFile, 0);
  view->progressPresent = progress.Load() == 0;
  view->id = Text(Member(manifest.mRoot, "ID"));
  view->completion = Number(Member(manifest.mRoot, "CompletionParam"));
  const LTM::Value& items = Member(manifest.mRoot, "ItemList");
  const LTM::Value& statuses = Member(progress.mRoot, "ItemList");
  for (LTM::ArrayIndex i = 0; items.isArray() && i < items.size(); ++i) {
    const LTM::Value& status = statuses.isArray() ? statuses[i] : statuses;
    view->items.push_back(Item{Text(Member(items[i], "Val")), view->set.path.raw() + Text(Member(items[i], "Audio")),
                               Number(Member(status, "Status"))});
  }
}

SetView FindView(const std::string& wanted, tPlayerID player) {
  SetView view{wanted, false, LTM::tCyoSetInfo(), std::string(), false, std::string(), 0, std::vector<Item>()};
  view.found = LTM::FindCyoSet(wanted, player, &view.set);
  if (view.found) ReadDocuments(&view, player);
  return view;
}

// A type number or name asks for that type; anything else is a curriculum name.
std::vector<std::string> WantedNames(const std::string& argument) {
  std::vector<std::string> names;
  if (argument.empty()) {
    for (U32 type = 0; type < LTM::kCyoTypeCount; ++type) names.push_back(LTM::CyoType[type].raw());
  } else if (argument.size() == 1 && argument[0] >= '0' && argument[0] < '0' + static_cast<int>(LTM::kCyoTypeCount)) {
    names.push_back(LTM::CyoType[argument[0] - '0'].raw());
  } else {
    names.push_back(argument);
  }
  return names;
}

void PrintText(const SetView& view, tPlayerID player) {
  if (!view.found) {
    std::printf("%s: no set for player %d\n", DisplayText(view.wanted.c_str()).c_str(), player);
    return;
  }
  std::printf("%s: %s\n", DisplayText(view.wanted.c_str()).c_str(), view.set.path.c_str());
  std::printf("  id          %s\n", DisplayText(view.id.c_str()).c_str());
  std::printf("  package id  %s\n", DisplayText(view.set.packageId.c_str()).c_str());
  std::printf("  completion  %u\n", view.completion);
  std::printf("  progress    %s%s\n", view.progressFile.c_str(), view.progressPresent ? "" : "  (none yet)");
  for (size_t i = 0; i < view.items.size(); ++i) {
    const Item& item = view.items[i];
    std::printf("  %-3zu %-12s status %-3u %s\n", i, DisplayText(item.value.c_str()).c_str(), item.status,
                DisplayText(item.audio.c_str()).c_str());
  }
}

Json::Value JsonOf(const SetView& view) {
  Json::Value json(Json::objectValue);
  json["curriculum"] = view.wanted;
  json["found"] = view.found;
  if (!view.found) return json;
  json["path"] = view.set.path.raw();
  json["packageId"] = view.set.packageId.raw();
  json["id"] = view.id;
  json["completionParam"] = view.completion;
  json["progressFile"] = view.progressFile;
  json["progressFilePresent"] = view.progressPresent;
  json["items"] = Json::Value(Json::arrayValue);
  for (const Item& item : view.items) {
    Json::Value entry(Json::objectValue);
    entry["value"] = item.value;
    entry["audio"] = item.audio;
    entry["status"] = item.status;
    json["items"].append(entry);
  }
  return json;
}

int RunCyo(const std::string& argument, bool hasPlayer, int playerOption, bool json) {
  tPlayerID player = hasPlayer ? playerOption : CSystemData::Instance()->GetCurrentPlayerID();
  std::vector<SetView> views;
  bool anyFound = false;
  for (const std::string& wanted : WantedNames(argument)) {
    views.push_back(FindView(wanted, player));
    anyFound = anyFound || views.back().found;
  }
  if (json) {
    Json::Value out(Json::objectValue);
    out["player"] = player;
    out["sets"] = Json::Value(Json::arrayValue);
    for (const SetView& view : views) out["sets"].append(JsonOf(view));
    PrintJson(out);
  } else {
    for (const SetView& view : views) PrintText(view, player);
  }
  return anyFound ? kSuccess : kNotFound;
}

}  // namespace

void RegisterCyoCommand(CLI::App& program, Action* action) {
  auto* cyo = program.add_subcommand("cyo", "Show the CYO curriculum sets a player gets, with progress (read-only)");
  static std::string argument;  // must outlive the parse and the action
  static int player = 0;
  static bool json = false;
  cyo->add_option("TYPE|NAME", argument,
                  "A curriculum type (0-3, Spelling, LanguageArts, MathFacts, MathPlus) or name; default: the four types");
  auto* playerOption = cyo->add_option("--player", player, "Player slot (default: the current player)");
  cyo->add_flag("--json", json, "Machine-readable output");
  cyo->callback([action, playerOption] {
    bool hasPlayer = playerOption->count() > 0;
    *action = [hasPlayer] { return RunCyo(argument, hasPlayer, player, json); };
  });
}

}  // namespace tools
}  // namespace vireline
