// What the pieces of CSystemData share with each other: the debug channel,
// the path helpers and the installed language packs. What tools may see of
// the same (the locale's source, the inventory package) is public, in
// <vireline/SystemPaths.h>.
#ifndef VIRELINE_SYSTEMDATA_SYSTEMDATAINTERNAL_H_
#define VIRELINE_SYSTEMDATA_SYSTEMDATAINTERNAL_H_

#include <vector>

#include <vireline/BaseUtils.h>
#include <vireline/SystemPaths.h>
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

// The installed language packs, the device locale's first (BaseUtils::GetLanguages).
std::vector<LanguageInfo> InstalledLanguages();

}  // namespace systemdata
}  // namespace vireline

#endif  // VIRELINE_SYSTEMDATA_SYSTEMDATAINTERNAL_H_
