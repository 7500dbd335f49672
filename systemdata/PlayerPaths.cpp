// The per-player and per-title data folders, and the inventory upload package.
#include <vireline/CSystemData.h>

#include <string>

#include <vireline/BaseUtils.h>
#include <vireline/CMetaInfo.h>
#include <vireline/PkgPath.h>

#include "systemdata/SystemDataInternal.h"

using vireline::systemdata::SlashEnded;
using vireline::systemdata::WarnDeprecated;

namespace {

const tPlayerID kNoPlayer = -1;
const tPlayerID kAllPlayers = -2;
const tPlayerID kCurrentPlayer = -3;

// The highest player slot; any other player uploads into its folder.
const tPlayerID kLastSlot = 3;

const uint32_t kLogPathSize = 256;

CString Decimal(tPlayerID player) { return CString(std::to_string(player)); }

// Creates `folder` unless it is there already.
void EnsureFolder(const CPath& folder) {
  BaseUtils* utils = BaseUtils::Instance();
  if (!utils->FileExists(folder)) utils->CreateDirectory(folder);
}

// `parent` + `game`, slash-ended; always asked to exist, since callers of the
// old game folders write into them at once.
CPath CreateGameFolder(const CPath& parent, const CString& game) {
  CPath path = SlashEnded(parent + game);
  BaseUtils::Instance()->CreateDirectory(path);
  return path;
}

}  // namespace

namespace vireline {

tManageInventoryPackage ManageInventoryFor(const CPath& dataPath, tPlayerID currentPlayer) {
  tPlayerID player = (currentPlayer == kNoPlayer) ? 0 : currentPlayer;
  tManageInventoryPackage package{dataPath + "Uploads/" + Decimal(player) + "/", nullptr, 0};
  switch (BaseUtils::Instance()->GetPlatformType()) {
    case BaseUtils::kPlatformTamsel:
      package = {package.folder + "KVR9-0x0017000C-999999/", "KastrelVoyant", 0x17000C};
      break;
    case BaseUtils::kPlatformMira:
      package = {package.folder + "KVR9-0x0017000C-999999/", "KastrelDuoVoyant", 0x17000C};
      break;
    case BaseUtils::kPlatformOskava:
    case BaseUtils::kPlatformTarvessa:
      package = {package.folder + "MQDX-0x001E000C-999999/", "PelloraVoyant", 0x1E000C};
      break;
    default:
      break;
  }
  return package;
}

}  // namespace vireline

CString CSystemData::GameFolderName() const { return mZantoLegacy ? mCurrentGameID : mCurrentGamePackageID; }

CPath CSystemData::GetDataProfilePath(tPlayerID player) {
  return SlashEnded(mDataPath + "Local/" + Decimal(player));
}

CPath CSystemData::GetDataProfileLogPath(tPlayerID player) {
  char file[kLogPathSize];
  CPkgPathBase().GetProfileLogFile(file, sizeof file, static_cast<uint32_t>(player) & 0xFF, 0);
  std::string path(file);
  size_t slash = path.rfind('/');
  return CPath(slash == std::string::npos ? std::string() : path.substr(0, slash + 1));
}

CPath CSystemData::GetLocalDataPath(tPlayerID player, CString name) {
  if (player == kCurrentPlayer) player = GetCurrentPlayerID();
  CString folderName = (player == kAllPlayers) ? CString("All") : Decimal(player);
  CPath path = mDataPath + "Local/" + folderName + "/" + name + "/";
  EnsureFolder(path);
  return path;
}

CPath CSystemData::GetUploadDataPath(CString name) {
  tPlayerID player = GetCurrentPlayerID();
  CString folderName;
  if (player == kAllPlayers) {
    folderName = "All";
  } else {
    folderName = Decimal((player >= 0 && player <= kLastSlot) ? player : kLastSlot);
  }
  CPath path = mDataPath + "Uploads/" + folderName + "/" + mCurrentGamePackageID + "/" + name + "/";
  EnsureFolder(path);
  return path;
}

CPath CSystemData::GetDataGamePath() {
  WarnDeprecated("Quorvane::Orvo::CPath CSystemData::GetDataGamePath()");
  return CreateGameFolder(mDataPath + "Local/" + "All/", GameFolderName());
}

CPath CSystemData::GetDataProfileGamePath(tPlayerID player) {
  WarnDeprecated("Quorvane::Orvo::CPath CSystemData::GetDataProfileGamePath(tPlayerID)");
  return CreateGameFolder(mDataPath + "Local/" + Decimal(player) + "/", GameFolderName());
}

CPath CSystemData::GetDataProfileGamePath(tPlayerID player, tStorageType storage) {
  vireline::systemdata::DebugOut(5, "WARNING:  Use of deprecated function:  CSystemData::GetDataProfileGamePath(...)\n");
  const char* area = nullptr;
  if (storage == kStorageLocal || storage == kStorageLocalData) area = "Local/";
  if (storage == kStorageUpload) area = "Uploads/";
  if (area == nullptr) return CPath();
  return CreateGameFolder(mDataPath + area + Decimal(player) + "/", GameFolderName());
}

CPath CSystemData::GetManageInventoryPath() {
  vireline::tManageInventoryPackage package =
      vireline::ManageInventoryFor(mDataPath, GetCurrentPlayerID());
  BaseUtils* utils = BaseUtils::Instance();
  if (!utils->FileExists(package.folder)) {
    utils->CreateDirectory(package.folder);
    LTM::CMetaInfo meta(package.folder);  // writes "meta.inf" when it goes out of scope
    if (package.deviceType != nullptr) {
      meta.SetDeviceType(package.deviceType);
      meta.SetProductId(package.productId);
    }
    meta.SetTagString("Type", "ManageInventory");
  }
  return package.folder;
}
