#include <vireline/CConsumable.h>

#include <vireline/BaseUtils.h>
#include <vireline/CFileIO.h>
#include <vireline/CMetaInfFile.h>

#include "baseutils/UpperLayers.h"
#include "ltm/PackageCandidate.h"

namespace LTM {
namespace {

const char kConsumableType[] = "Consumable";
const char kRequestSuffix[] = ".txt";
const char kKeyCommand[] = "Command";
const char kRemoveFromInventory[] = "RemoveFromInventory";
const char kKeyValueConsumed[] = "ValueConsumed";
const U32 kFullyConsumed = 100;

// The request file that asks the inventory manager to remove package `id`.
Glib::ustring RemovalRequestPath(const Glib::ustring& id) {
  return vireline::upper::ManageInventoryPath() + id + kRequestSuffix;
}

unsigned char AddConsumable(const CPath& folder, void* context) {
  CPackageCandidate package(folder);
  if (!package.IsUsable() || !package.HasType(kConsumableType) || !package.IsForRunningGame()) return 1;
  if (BaseUtils::Instance()->FileExists(RemovalRequestPath(package.PackageId()))) return 1;
  if (package.Admits(vireline::upper::CurrentPlayerID())) {
    static_cast<std::vector<Glib::ustring>*>(context)->push_back(folder + "/");
  }
  return 1;
}

}  // namespace

std::vector<Glib::ustring> CConsumable::Get() {
  std::vector<Glib::ustring> consumables;
  BaseUtils::Instance()->EnumFolder(vireline::upper::MDLsPath(), AddConsumable, BaseUtils::kSelectDirectories,
                                    &consumables);
  return consumables;
}

void CConsumable::Receive(Glib::ustring packagePath) {
  CMetaInfFile meta(packagePath.c_str());
  // A folder without metadata is no package: nothing is written into it.
  if (meta.GetEntryCount() == 0) return;
  meta.SetProfileAccess(nullptr, 0);
  meta.Write();
  // A package without an id cannot be named in a removal request.
  if (meta.GetPackageId() == nullptr) return;
  CFileIO request;
  request.Open(RemovalRequestPath(meta.GetPackageId()).c_str());
  request.SetStr(kKeyCommand, kRemoveFromInventory);
  request.SetUInt(kKeyValueConsumed, kFullyConsumed);
  request.Write();
}

}  // namespace LTM
