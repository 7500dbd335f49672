// What CSystemData's folders are computed from, for tools that show them
// without creating anything: the device's locale with where it was found,
// and the inventory upload package of the current platform.
#ifndef VIRELINE_SYSTEMPATHS_H_
#define VIRELINE_SYSTEMPATHS_H_

#include <vireline/Export.h>
#include <vireline/Types.h>

namespace vireline {

// Where the device's locale was found.
enum tLocaleSource { kLocaleFromSettings, kLocaleFromMfgData, kLocaleDefault };

// The device's locale and its source.
struct tDeviceLocale {
  CString code;
  tLocaleSource source;
};

// The locale as the device states it: the settings, else the manufacturing
// record, else "en-us" (printing the fallback messages); nothing is cached.
VIRELINE_EXPORT tDeviceLocale ReadDeviceLocale();

// The name of `source` as tools show it: "settings", "manufacturing data" or "default".
VIRELINE_EXPORT const char* LocaleSourceName(tLocaleSource source);

// The inventory upload package of the current platform.
struct tManageInventoryPackage {
  CPath folder;            // the data path's "Uploads/<player>/<package>/"
  const char* deviceType;  // null: the platform has none
  U32 productId;
};

// The package that CSystemData::GetManageInventoryPath returns for
// `currentPlayer` below `dataPath`, computed without creating anything.
VIRELINE_EXPORT tManageInventoryPackage ManageInventoryFor(const CPath& dataPath, tPlayerID currentPlayer);

}  // namespace vireline

#endif  // VIRELINE_SYSTEMPATHS_H_
