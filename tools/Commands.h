// The inspector's subcommands. Each registers itself on the program and, when
// chosen on the command line, stores in *action the work to run once the whole
// command line is parsed; the work returns the exit status: 0 success, 1 what
// was asked for does not exist or does not hold, 2 usage error, 3 and above
// I/O errors or corrupt data.
#ifndef VIRELINE_TOOLS_COMMANDS_H_
#define VIRELINE_TOOLS_COMMANDS_H_

#include <functional>

#include <CLI/CLI.hpp>

namespace vireline {
namespace tools {

enum ExitStatus { kSuccess = 0, kNotFound = 1, kUsage = 2, kIoError = 3, kCorrupt = 4 };

typedef std::function<int()> Action;

// `vireline layout [--model NAME]`: every model's package, profile, upload and log folders.
void RegisterLayoutCommand(CLI::App& program, Action* action);

// `vireline mfg show|verify|set FIELD VALUE --mfg-mode`: the manufacturing record and its two flash copies.
void RegisterMfgCommand(CLI::App& program, Action* action);

// `vireline meta DIR [--json]`: a package's metadata from DIR/meta.inf.
void RegisterMetaCommand(CLI::App& program, Action* action);

// `vireline kv FILE [KEY] [--json]`: a key=value file's entries as the library reads them, or one value.
void RegisterKvCommand(CLI::App& program, Action* action);

// `vireline json FILE [PATH]`: a JSON document as the library loads it, or the value at PATH.
void RegisterJsonCommand(CLI::App& program, Action* action);

// `vireline settings [--json]`: the device settings through LTM::CSystem and the "/var/loglevel" level (read-only).
void RegisterSettingsCommand(CLI::App& program, Action* action);

// `vireline deps DIR [--json]`: a package's dependency check, its result mask and the packages it requested.
void RegisterDepsCommand(CLI::App& program, Action* action);

// `vireline log dump [SLOT|FILE] [--json]` and `vireline log stats`: the players' play logs.
void RegisterLogCommand(CLI::App& program, Action* action);

// `vireline paths [--json]`: every folder the library names, and the locale with its source.
void RegisterPathsCommand(CLI::App& program, Action* action);

// `vireline find KIND NAME [--title DIR] [--explain]`: the asset file a title gets, and every path tried.
void RegisterFindCommand(CLI::App& program, Action* action);

// `vireline apps [--json]`: the installed application and cartridge folders.
void RegisterAppsCommand(CLI::App& program, Action* action);

// `vireline avatars --player N [--json]`: the avatar packages player N may use.
void RegisterAvatarsCommand(CLI::App& program, Action* action);

// `vireline mdls --player N [--title DIR] [--json]`: the running title's micro-downloads player N may use.
void RegisterMdlsCommand(CLI::App& program, Action* action);

// `vireline consumables [--title DIR] [--json]`: the running title's consumables the current player has (read-only).
void RegisterConsumablesCommand(CLI::App& program, Action* action);

// `vireline dataset DSET RELINK [--json]`: a relocatable dataset's size and relocated fields.
void RegisterDatasetCommand(CLI::App& program, Action* action);
// `vireline cyo [TYPE|NAME] [--player N] [--json]`: the CYO sets a player gets, with progress (read-only).
void RegisterCyoCommand(CLI::App& program, Action* action);

// `vireline milestones [--player N] [--json]` and `milestones add|remove NAME`: a player's milestones.
void RegisterMilestonesCommand(CLI::App& program, Action* action);

// `vireline profiles [--json]`: the player profiles of slots 0-2 (read-only).
void RegisterProfilesCommand(CLI::App& program, Action* action);

// `vireline profile remove SLOT --yes`: removes a player's profile and data.
void RegisterProfileCommand(CLI::App& program, Action* action);

// `vireline daemon volume|brightness|set-brightness N|set-rtc T [--json]`: requests to the system daemon.
void RegisterDaemonCommand(CLI::App& program, Action* action);

// `vireline checksum PATH [--write FILE.crc | --verify FILE.crc]`: the CRC-32 of a file or folder tree.
void RegisterChecksumCommand(CLI::App& program, Action* action);

// `vireline doom [--json]` and `doom --critical --yes`: doom markers, and the check of the critical content.
void RegisterDoomCommand(CLI::App& program, Action* action);

// `vireline version-compare A B`: how the library orders two package versions.
void RegisterVersionCompareCommand(CLI::App& program, Action* action);

// `vireline report [SLOT|FILE...] [--player N] [--html FILE | --json]`: the players' sessions, time and answers.
void RegisterReportCommand(CLI::App& program, Action* action);

}  // namespace tools
}  // namespace vireline

#endif  // VIRELINE_TOOLS_COMMANDS_H_
