// `vireline profile remove SLOT --yes`: removes a player as the device's
// settings screen does. It cannot be undone, so it refuses to run without --yes.
#include <cstdio>
#include <string>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

const int kLastSlot = 2;

int RunRemove(int slot, bool yes) {
  if (slot < 0 || slot > kLastSlot) {
    std::fprintf(stderr, "vireline profile remove: %d is not a player slot (0, 1 or 2)\n", slot);
    return kUsage;
  }
  if (!yes) {
    std::fprintf(stderr,
                 "vireline profile remove: this deletes player %d's settings, saved games, uploads and play log; "
                 "add --yes to do it\n",
                 slot);
    return kUsage;
  }
  // The removal traces every folder entry it walks; that is for developers on
  // the device, not for the user of the inspector.
  BaseUtils::Instance()->SetupTrace(0, false);
  LTM::CPlayerProfile profile(slot);
  std::string name = profile.GetName().raw();
  profile.RemoveProfile();
  std::printf("removed player %d%s%s%s\n", slot, name.empty() ? "" : " (", DisplayText(name.c_str()).c_str(),
              name.empty() ? "" : ")");
  return kSuccess;
}

}  // namespace

void RegisterProfileCommand(CLI::App& program, Action* action) {
  auto* profile = program.add_subcommand("profile", "Change a player profile");
  profile->require_subcommand(1);
  static int slot = 0;  // must outlive the parse and the action
  static bool yes = false;
  auto* remove = profile->add_subcommand("remove", "Remove player SLOT's profile and data (needs --yes)");
  remove->add_option("SLOT", slot, "Player slot 0-2")->required();
  remove->add_flag("--yes", yes, "Really remove");
  remove->callback([action] { *action = [] { return RunRemove(slot, yes); }; });
}

}  // namespace tools
}  // namespace vireline
