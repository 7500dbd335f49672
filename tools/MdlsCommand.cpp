// `vireline mdls --player N [--title DIR]`: the running title's micro-downloads
// that player N may use. What the list reports (the first model's
// "mdls.json" problems) is shown as notes.
#include <cstdio>
#include <string>
#include <vector>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/DebugCapture.h"
#include "tools/PathListDisplay.h"

namespace vireline {
namespace tools {
namespace {

const int kListErrorLevel = 3;

int RunMdls(int player, const std::string& title, bool json) {
  RunTitle(title);
  std::vector<Glib::ustring> paths;
  std::vector<std::string> notes;
  {
    DebugCapture capture(kListErrorLevel);
    paths = LTM::CMicroDownloads().get(player);
    notes = capture.texts();
  }
  Json::Value context(Json::objectValue);
  context["player"] = player;
  context["game"] = DisplayText(CSystemData::Instance()->GetCurrentGameID().c_str());
  context["notes"] = Json::Value(Json::arrayValue);
  for (std::string& note : notes) {
    if (!note.empty() && note.back() == '\n') note.pop_back();
    if (json) context["notes"].append(DisplayText(note.c_str()));
    else std::printf("note: %s\n", DisplayText(note.c_str()).c_str());
  }
  return PrintPathList(paths, json, context);
}

}  // namespace

void RegisterMdlsCommand(CLI::App& program, Action* action) {
  auto* mdls = program.add_subcommand("mdls", "List the running title's micro-downloads a player may use");
  static int player = 0;  // must outlive the parse and the action
  static std::string title;
  static bool json = false;
  mdls->add_option("--player", player, "The player slot (0-3)")->required();
  mdls->add_option("--title", title, "The running title's package folder (a device path)");
  mdls->add_flag("--json", json, "Machine-readable output");
  mdls->callback([action] { *action = [] { return RunMdls(player, title, json); }; });
}

}  // namespace tools
}  // namespace vireline
