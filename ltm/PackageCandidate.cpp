#include "ltm/PackageCandidate.h"

#include <vireline/BaseUtils.h>
#include <vireline/COrvoInterface.h>

#include "baseutils/UpperLayers.h"

namespace LTM {
namespace {

const char kMetaInf[] = "/meta.inf";
const char kKeyType[] = "Type";
const U32 kDeviceAccessEveryone = 1;

}  // namespace

CPackageCandidate::CPackageCandidate(const Glib::ustring& folder) : mFolder(folder) {}

CPackageCandidate::~CPackageCandidate() = default;

bool CPackageCandidate::IsUsable() {
  BaseUtils* utils = BaseUtils::Instance();
  if (utils->HasDoomPackage(mFolder)) return false;
  if (!utils->FileExists(mFolder + kMetaInf)) return false;
  mpMeta.reset(new CMetaInfo(mFolder));
  return mpMeta->IsValid();
}

bool CPackageCandidate::HasType(const char* word) const { return mpMeta->GetTagString(kKeyType) == word; }

bool CPackageCandidate::IsForRunningGame() const {
  return mpMeta->GetProductId() == vireline::upper::CurrentGameProductID();
}

bool CPackageCandidate::Admits(tPlayerID player) const {
  if (mpMeta->GetDeviceAccess() == kDeviceAccessEveryone) return true;
  unsigned long* profiles = nullptr;
  U32 count = mpMeta->GetProfileAccess(profiles);
  bool admitted = false;
  for (U32 i = 0; i < count && profiles != nullptr; ++i) {
    if (static_cast<U32>(profiles[i]) == static_cast<U32>(player)) admitted = true;
  }
  COrvoInterface::Free(profiles);
  return admitted;
}

Glib::ustring CPackageCandidate::PackageId() const { return mpMeta->GetPackageId(); }

}  // namespace LTM
