// What the pieces of CSystemData share with each other and with the inspector:
// the debug channel, path helpers, the device locale with where it came from,
// and the inventory upload package of each platform.
#ifndef VIRELINE_SYSTEMDATA_SYSTEMDATAINTERNAL_H_
#define VIRELINE_SYSTEMDATA_SYSTEMDATAINTERNAL_H_

#include <vector>

#include <vireline/BaseUtils.h>
#include <vireline/Types.h>

#include "baseutils/DebugModules.h"

namespace vireline {
namespace systemdata {

// The debug channel of the system paths.
const int kDebugModule = kSystemPathsDebugModule;

// Emits a message on the system paths' channel.
void DebugOut(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

// The level-5 warning of a deprecated operation, naming its signature.
void WarnDeprecated(const char* signature);

// The data folder ("/QV/Bulk/Data/"), as GetDataPath answers it but without
// the deprecation warning, for the library's own callers.
CPath DataPath();

// `path` with a "/" appended unless it already ends in one.
CPath SlashEnded(const CPath& path);

// The first two characters of a locale: its language.
CString LanguageOf(const CString& locale);

// Characters 3 and 4 of a locale: its country.
CString CountryOf(const CString& locale);

// The language pack of `locale`'s language below `root`: "Bulk/LanguagePack_" + ll + "/".
CPath LanguagePackFolder(const CPath& root, const CString& locale);

// Where the device's locale was found.
enum LocaleSource { kLocaleFromSettings, kLocaleFromMfgData, kLocaleDefault };

struct DeviceLocale {
  CString code;
  LocaleSource source;
};

// The locale as the device states it: the settings, else the manufacturing
// record, else "en-us" (printing the fallback messages); nothing is cached.
DeviceLocale ReadDeviceLocale();

// The name of `source` as the inspector shows it.
const char* LocaleSourceName(LocaleSource source);

// The inventory upload package of the current platform.
struct ManageInventoryPackage {
  CPath folder;            // the data path's "Uploads/<player>/<package>/"
  const char* deviceType;  // null: the platform has none
  U32 productId;
};

// The package that GetManageInventoryPath returns, computed without creating anything.
ManageInventoryPackage ManageInventoryFor(const CPath& dataPath, tPlayerID currentPlayer);

// The installed language packs, the device locale's first (BaseUtils::GetLanguages).
std::vector<LanguageInfo> InstalledLanguages();

}  // namespace systemdata
}  // namespace vireline

#endif  // VIRELINE_SYSTEMDATA_SYSTEMDATAINTERNAL_H_
