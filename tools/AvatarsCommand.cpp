// `vireline avatars --player N`: the avatar packages player N may use. A
// device without an avatar folder is reported here rather than through the
// list's assertion, which would also write a critical-error record.
#include <cstdio>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/PathListDisplay.h"

namespace vireline {
namespace tools {
namespace {

int RunAvatars(int player, bool json) {
  CPath folder = CSystemData::Instance()->GetAvatarsPath();
  if (!BaseUtils::Instance()->DirectoryExists(folder)) {
    std::fprintf(stderr, "vireline avatars: %s: no avatar folder on this device\n", folder.c_str());
    return kNotFound;
  }
  Json::Value context(Json::objectValue);
  context["player"] = player;
  return PrintPathList(LTM::CAvatars().get(player), json, context);
}

}  // namespace

void RegisterAvatarsCommand(CLI::App& program, Action* action) {
  auto* avatars = program.add_subcommand("avatars", "List the avatar packages a player may use");
  static int player = 0;  // must outlive the parse and the action
  static bool json = false;
  avatars->add_option("--player", player, "The player slot (0-3)")->required();
  avatars->add_flag("--json", json, "Machine-readable output");
  avatars->callback([action] { *action = [] { return RunAvatars(player, json); }; });
}

}  // namespace tools
}  // namespace vireline
