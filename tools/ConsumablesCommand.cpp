// `vireline consumables [--title DIR]`: the running title's consumables that
// the current player still has. Read-only: giving one back is not offered.
#include <string>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/PathListDisplay.h"

namespace vireline {
namespace tools {
namespace {

int RunConsumables(const std::string& title, bool json) {
  RunTitle(title);
  Json::Value context(Json::objectValue);
  context["player"] = CSystemData::Instance()->GetCurrentPlayerID();
  return PrintPathList(LTM::CConsumable().Get(), json, context);
}

}  // namespace

void RegisterConsumablesCommand(CLI::App& program, Action* action) {
  auto* consumables =
      program.add_subcommand("consumables", "List the running title's consumables the current player still has");
  static std::string title;  // must outlive the parse and the action
  static bool json = false;
  consumables->add_option("--title", title, "The running title's package folder (a device path)");
  consumables->add_flag("--json", json, "Machine-readable output");
  consumables->callback([action] { *action = [] { return RunConsumables(title, json); }; });
}

}  // namespace tools
}  // namespace vireline
