// Package requests for the desktop connect application: one key=value file per
// package in the current player's inventory upload folder.
#include <vireline/BaseUtils.h>

#include <vireline/CFileIO.h>

#include "baseutils/UpperLayers.h"

namespace {

const char kKeyCommand[] = "Command";
const char kKeyVersion[] = "Version";
const char kAddToDevice[] = "AddToDevice";

CPath RequestFile(const CString& packageId) { return vireline::upper::ManageInventoryPath() + packageId + ".txt"; }

}  // namespace

void BaseUtils::RequestPackageQVC(const CString& packageId, const CString& version) {
  CPath path = RequestFile(packageId);
  CFileIO request;
  if (FileExists(path)) {
    request.Open(path.c_str());
    // A request written without a version is compared as an empty version.
    const char* stored = request.GetStr(kKeyVersion);
    if (CompareVersion(version, stored != nullptr ? stored : "") <= 0) return;
    request.SetStr(kKeyVersion, version.c_str());
    request.Write();
    return;
  }
  request.Open(path.c_str());
  request.SetStr(kKeyCommand, kAddToDevice);
  request.SetStr(kKeyVersion, version.c_str());
  request.Write();
}

void BaseUtils::RequestPackageQVCRemoval(const CString& packageId) { RM(RequestFile(packageId)); }
