// Withdrawn ("doomed") content: the per-package and global doom markers, and
// the check that the device's critical content is present and not doomed.
#include <vireline/BaseUtils.h>

#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "baseutils/UpperLayers.h"
#include "files/DoomMarker.h"

namespace {

const char kCriticalCheck[] = "HasDoomPackageCritical";
const char kGlobalDoomMarker[] = "/QV/doom";
const char kCriticalDocument[] = "/Data/CriticalDoom.json";
const char kFolderListKey[] = "FolderList";
const char kAudioFolder[] = "/Audio";
const int kCriticalFindingLevel = 1;
const int kCriticalStartLevel = 2;

// The folder-name prefix of the device's own asset pack; empty where the
// platform has none.
const char* AssetPackPrefix(BaseUtils::tPlatformType type) {
  switch (type) {
    case BaseUtils::kPlatformTamsel: return "K9W_";
    case BaseUtils::kPlatformOskava: return "MqdxAssets_";
    case BaseUtils::kPlatformMira: return "MiraAssets_";
    case BaseUtils::kPlatformTarvessa: return "MqdxAssets_";
    default: return "";
  }
}

// The critical-content list of the asset pack for the device's language; empty
// on a platform without one.
CPath CriticalDocumentPath(BaseUtils::tPlatformType type, const CString& language) {
  const char* prefix = AssetPackPrefix(type);
  if (*prefix == '\0') return CPath();
  return vireline::upper::BasePath() + prefix + language + kCriticalDocument;
}

void Report(const char* format, const CPath& folder) {
  PlatformDebug(vireline::kDataObjectsDebugModule).DebugOut(kCriticalFindingLevel, format, kCriticalCheck, folder.c_str());
}

// Dooms the pack a missing critical folder belongs to: the marker goes above
// any "/Audio" part of the path, and the global marker is set as well.
void DoomCriticalFolder(const CPath& folder) {
  CPath pack = folder.raw().substr(0, folder.raw().find(kAudioFolder));
  BaseUtils::Instance()->CreateFile(pack + "/" + vireline::kDoomMarkerName);
  BaseUtils::Instance()->CreateFile(kGlobalDoomMarker);
}

// Checks one "FolderList" folder; true when it is missing or doomed.
bool CheckCriticalFolder(const CPath& folder) {
  BaseUtils* utils = BaseUtils::Instance();
  // A doomed folder is reported as missing: to the device it is gone.
  if (!utils->FileIsDir(folder) || utils->HasDoomPackage(folder)) {
    Report("%s: missing critical folder %s\n", folder);
    DoomCriticalFolder(folder);
    return true;
  }
  if (utils->HasDoomPackage(folder)) {
    Report("%s: doom file detected %s\n", folder);
    return true;
  }
  return false;
}

}  // namespace

bool BaseUtils::HasDoomPackage(const CPath& folder) { return vireline::HasDoomMarker(folder.raw()); }

bool BaseUtils::HasDoomPackage() { return HasDoomPackage(vireline::upper::RootPath()); }

// Anything that keeps the list from being read counts as doomed: the device
// cannot vouch for content it cannot check.
bool BaseUtils::HasDoomPackageCritical() {
  // Printed on every call before any test, whatever the outcome, exactly as
  // the device firmware always has.
  PlatformDebug(vireline::kDataObjectsDebugModule)
      .DebugOut(kCriticalStartLevel, "%s: global doom file detected\n", kCriticalCheck);
  tPlatformType type = GetPlatformType();
  CString language = vireline::upper::LocaleCode().substr(0, 2);
  CPath path = CriticalDocumentPath(type, language);
  if (path.empty() || !FileExists(path)) return true;
  // A "FolderList" that is not an array, and entries that are not text, name no folder.
  std::vector<CString> list;
  if (!vireline::upper::ReadTextList(path, kFolderListKey, &list)) return true;
  bool doomed = false;
  for (const CString& folder : list) {
    if (CheckCriticalFolder(folder)) doomed = true;
  }
  return doomed;
}
