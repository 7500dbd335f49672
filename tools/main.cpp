// vireline: inspects the persistent data of a learning device, or of a folder
// that mirrors one (--root).
#include <cstdio>
#include <string>

#include <vireline/vireline.h>

#include "tools/Commands.h"

namespace {

const char kVersion[] = "0.1.0";

int UsageError(const std::string& message) {
  std::fprintf(stderr, "vireline: %s\nRun 'vireline --help' for usage.\n", message.c_str());
  return vireline::tools::kUsage;
}

// True when the device root ("/", --root or $VIRELINE_ROOT) is a folder;
// otherwise says so: every path would be missing and every answer a default.
bool DeviceRootIsUsable() {
  tStatLite info = {};
  if (COrvoInterface::Stat("/", &info, false) && info.type != 1) return true;
  std::fprintf(stderr, "vireline: device root %s: not a folder\n", vireline::GetDeviceRoot().c_str());
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program("Inspect the persistent data of a learning device: package layout, settings, "
                   "profiles, play logs and manufacturing data.",
                   "vireline");
  program.set_version_flag("--version", kVersion);
  std::string root;
  program.add_option("--root", root, "Folder that mirrors the device's file tree (default: $VIRELINE_ROOT, else /)");
  program.require_subcommand(1);
  program.fallthrough();

  vireline::tools::Action action;
  vireline::tools::RegisterLayoutCommand(program, &action);
  vireline::tools::RegisterMfgCommand(program, &action);
  vireline::tools::RegisterMetaCommand(program, &action);
  vireline::tools::RegisterKvCommand(program, &action);
  vireline::tools::RegisterJsonCommand(program, &action);
  vireline::tools::RegisterSettingsCommand(program, &action);
  vireline::tools::RegisterDepsCommand(program, &action);
  vireline::tools::RegisterLogCommand(program, &action);
  vireline::tools::RegisterPathsCommand(program, &action);
  vireline::tools::RegisterFindCommand(program, &action);
  vireline::tools::RegisterAppsCommand(program, &action);
  vireline::tools::RegisterAvatarsCommand(program, &action);
  vireline::tools::RegisterMdlsCommand(program, &action);
  vireline::tools::RegisterConsumablesCommand(program, &action);
  vireline::tools::RegisterDatasetCommand(program, &action);
  vireline::tools::RegisterCyoCommand(program, &action);
  vireline::tools::RegisterMilestonesCommand(program, &action);
  vireline::tools::RegisterProfilesCommand(program, &action);
  vireline::tools::RegisterProfileCommand(program, &action);
  vireline::tools::RegisterDaemonCommand(program, &action);
  vireline::tools::RegisterChecksumCommand(program, &action);
  vireline::tools::RegisterDoomCommand(program, &action);
  vireline::tools::RegisterVersionCompareCommand(program, &action);
  vireline::tools::RegisterReportCommand(program, &action);

  try {
    program.parse(argc, argv);
  } catch (const CLI::CallForHelp& help) {
    return program.exit(help);
  } catch (const CLI::CallForVersion& version) {
    return program.exit(version);
  } catch (const CLI::ParseError& error) {
    return UsageError(error.what());
  }
  if (!root.empty()) vireline::SetDeviceRoot(root);
  if (!DeviceRootIsUsable()) return vireline::tools::kUsage;
  return action ? action() : vireline::tools::kUsage;
}
