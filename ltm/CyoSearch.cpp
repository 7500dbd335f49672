#include "ltm/CyoSearch.h"

#include <vireline/BaseUtils.h>
#include <vireline/CMetaInfo.h>
#include <vireline/COrvoInterface.h>

#include "baseutils/UpperLayers.h"

namespace LTM {

const Glib::ustring CyoType[kCyoTypeCount] = {"Spelling", "LanguageArts", "MathFacts", "MathPlus"};

}  // namespace LTM

namespace vireline {
namespace cyo {

const char kProgressFile[] = "progress.json";

namespace {

const U32 kWholeDevice = 1;

// Device access 1 admits every player; otherwise the player must be listed.
// An empty list admits nobody: a set is private to the players it names.
bool PlayerMayUse(const LTM::CMetaInfo& meta, tPlayerID player) {
  if (meta.GetDeviceAccess() == kWholeDevice) return true;
  unsigned long* profiles = nullptr;
  U32 count = meta.GetProfileAccess(profiles);
  bool listed = false;
  for (U32 i = 0; i < count && !listed; ++i) listed = static_cast<U32>(profiles[i]) == static_cast<U32>(player);
  COrvoInterface::Free(profiles);
  return listed;
}

CPath SlashEnded(const CPath& folder) {
  if (!folder.empty() && folder[folder.size() - 1] == '/') return folder;
  return folder + "/";
}

struct Walk {
  CString wanted;
  tPlayerID player;
  FoundSet* found;
  bool matched;
};

unsigned char FindSetInFolder(const CPath& folder, void* context) {
  Walk* walk = static_cast<Walk*>(context);
  if (!FolderMayHoldSet(folder)) return 0;
  if (JudgeFolder(folder, walk->wanted, walk->player, walk->found) != kMatch) return 1;
  walk->matched = true;
  return 0;
}

}  // namespace

bool FolderMayHoldSet(const CPath& folder) {
  BaseUtils* utils = BaseUtils::Instance();
  return !utils->HasDoomPackage(folder) && utils->FileExists(folder + "/meta.inf") && !upper::ZantoLegacyFlag();
}

bool TypeName(LTM::tCyoCurricType type, CString* name) {
  if (type >= LTM::kCyoTypeCount) return false;
  *name = LTM::CyoType[type];
  return true;
}

Verdict JudgeFolder(const CPath& folder, const CString& wanted, tPlayerID player, FoundSet* found) {
  if (!FolderMayHoldSet(folder)) return kNextFolder;
  LTM::CMetaInfo meta(folder);
  if (!meta.IsValid()) return kNextFolder;
  if (meta.GetCurricType().raw() != wanted.raw()) return kNextFolder;
  if (!PlayerMayUse(meta, player)) return kNextFolder;
  found->path = SlashEnded(folder);
  found->packageId = meta.GetPackageId();
  found->manifestFile = meta.GetTagString("ManifestFile");
  return kMatch;
}

CPath ProgressFolder(tPlayerID player, const CString& packageId) {
  return upper::DataProfilePath(player) + packageId + "/";
}

bool FindSet(const CString& wanted, tPlayerID player, FoundSet* found) {
  Walk walk{wanted, player, found, false};
  BaseUtils::Instance()->EnumFolder(upper::CYOsPath(), FindSetInFolder, BaseUtils::kSelectDirectories, &walk);
  return walk.matched;
}

}  // namespace cyo
}  // namespace vireline

bool LTM::FindCyoSet(const CString& wanted, tPlayerID player, tCyoSetInfo* found) {
  return vireline::cyo::FindSet(wanted, player, found);
}

CPath LTM::CyoProgressFile(tPlayerID player, const CString& packageId) {
  return vireline::cyo::ProgressFolder(player, packageId) + vireline::cyo::kProgressFile;
}
