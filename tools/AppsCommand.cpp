// `vireline apps`: the installed application and cartridge folders, as the launcher lists them.
#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/PathListDisplay.h"

namespace vireline {
namespace tools {

void RegisterAppsCommand(CLI::App& program, Action* action) {
  auto* apps = program.add_subcommand("apps", "List the installed application and cartridge folders");
  static bool json = false;  // must outlive the parse and the action
  apps->add_flag("--json", json, "Machine-readable output");
  apps->callback([action] { *action = [] { return PrintPathList(LTM::CApps().get(), json, Json::Value()); }; });
}

}  // namespace tools
}  // namespace vireline
