// The one seam through which the base utilities and the data objects call
// the layers built above them (system paths, play log, player profiles,
// package metadata and JSON lists, the language list). Each function only
// forwards to the area that answers it; nothing else in the lower layers
// names those areas, and the build lets no other include through.
#ifndef VIRELINE_BASEUTILS_UPPERLAYERS_H_
#define VIRELINE_BASEUTILS_UPPERLAYERS_H_

#include <cstdio>
#include <vector>

#include <vireline/Types.h>

#include "platform/Env.h"

struct LanguageInfo;

namespace vireline {
namespace upper {

// Appends a critical-error record with `message` to the current player's play
// log, selecting player 0 first when no player is selected.
void AppendCriticalError(const char* message);

// Reads the device settings the way an assertion does (the cheat switch);
// the answer changes nothing, but the settings file is opened and written back.
void ConsultSettingsAfterAssert();

// The active locale code ("en-us").
CString LocaleCode();

// Switches the running library to `code` at once.
void SetLocaleCode(const CString& code);

// The content root, ending in "/".
CPath RootPath();

// The system package folder, ending in "/".
CPath BasePath();

// The data folder, ending in "/"; read without the deprecation warning.
CPath DataPath();

// The download package folder where CYO sets are installed, ending in "/".
CPath CYOsPath();

// The data folder of `player`, ending in "/"; nothing is created.
CPath DataProfilePath(tPlayerID player);

// True while the first model's folder names are in use.
bool ZantoLegacyFlag();

// The name in the profile of player `slot`; empty when there is none.
CString PlayerProfileName(int slot);

// Folders and the running title as the content lists see them.

// The application package folder, ending in "/".
CPath ProgramFilesPath();

// The cartridge folder, ending in "/".
CPath CartPath();

// The avatar package folder, ending in "/".
CPath AvatarsPath();

// The micro-download package folder, ending in "/".
CPath MDLsPath();

// The running title's game id (its folder name).
CString CurrentGameID();

// The running title's product id; 0 without metadata.
U32 CurrentGameProductID();

// The current player's inventory upload package, created when missing.
CPath ManageInventoryPath();

// The current player, read from the settings.
tPlayerID CurrentPlayerID();

// Folders, flags and the play log as the player profiles see them.

// The local data folder `name` of `player` ("/QV/Bulk/Data/Local/<p>/<name>/"), created when missing.
CPath LocalDataPath(tPlayerID player, const CString& name);

// The device's default avatar folder.
CPath DefaultAvatarPath();

// The download package folder.
CPath DownloadsPath();

// True while the EarlyPreK content is black-listed.
bool EarlyPreKBlackListed();

// True once a player has been chosen for the play log.
bool LogProfileSet();

// Appends an achievement record for `badge` to the current player's play log.
void AppendAchievementEarned(unsigned short badge);

// Appends a new-player record for player `userId` to the current player's play log.
void AppendNewUser(unsigned long userId);

// Gives the open log file of `slot` a fresh header when it has none.
void InitLogFile(vireline::RandomRWFile* file, tPlayerID slot);

// Device services.

// The package version in the metadata of package folder `folder`.
CString PackageVersion(const CPath& folder);

// The text tag `key` of the metadata of package folder `folder`; empty when missing.
CString PackageTagString(const CPath& folder, const CString& key);

// The number tag `key` of the metadata of package folder `folder`; 0xFFFFFFFF when missing.
U32 PackageTagInt(const CPath& folder, const CString& key);

// The version in the metadata of package folder `folder`; `missing` when the metadata is not valid.
CString ValidPackageVersion(const CPath& folder, const char* missing);

// Loads JSON document `path`; false unless its root is an object with member
// `member`, whose text entries then go to `texts`.
bool ReadTextList(const CPath& path, const char* member, std::vector<CString>* texts);

// The installed language packs, the device locale's first.
std::vector<LanguageInfo> InstalledLanguages();

}  // namespace upper
}  // namespace vireline

#endif  // VIRELINE_BASEUTILS_UPPERLAYERS_H_
