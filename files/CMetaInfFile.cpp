#include <vireline/CMetaInfFile.h>

#include <vireline/COrvoInterface.h>

#include "files/PackageLayout.h"

namespace {

const uint32_t kPathSize = 256;
const uint32_t kSubPathSize = 64;

const char kMetaInfName[] = "meta.inf";

const char kKeyMetaVersion[] = "MetaVersion";
const char kKeyDevice[] = "Device";
const char kKeyDeviceAltPkgId[] = "DeviceAltPkgID";
const char kKeyPackageId[] = "PackageID";
const char kKeyProductId[] = "ProductID";
const char kKeyName[] = "Name";
const char kKeyShortName[] = "ShortName";
const char kKeyBinFile[] = "BinFile";
const char kKeyPartNumber[] = "PartNumber";
const char kKeyType[] = "Type";
const char kKeyVersion[] = "Version";
const char kKeyPublisher[] = "Publisher";
const char kKeyDeveloper[] = "Developer";
const char kKeyIcon[] = "Icon";
const char kKeyHidden[] = "Hidden";
const char kKeyDepends[] = "Depends";
const char kKeyProfileAccess[] = "ProfileAccess";
const char kKeyPersistentData[] = "PersistentData";
const char kKeySize[] = "Size";
const char kKeyDeviceAccess[] = "DeviceAccess";
const char kKeyPathToUploadContent[] = "PathToUploadContent";
const char kKeyPathToUploadContentList[] = "PathToUploadContentList";
const char kKeyOptionalUpload[] = "OptionalUpload";

}  // namespace

CMetaInfFile::CMetaInfFile() = default;

CMetaInfFile::CMetaInfFile(const char* dir) {
  char path[kPathSize];
  // A path that does not fit is bound as the empty path: nothing is read, and
  // nothing could be written to a cut path.
  if (!CPkgPathBase::MakeFilePath(path, sizeof path, dir ? dir : "", kMetaInfName, nullptr)) path[0] = '\0';
  Open(path);
}

CMetaInfFile::CMetaInfFile(const CMetaInfFile& other) : CFileIO(other) {}

CMetaInfFile& CMetaInfFile::operator=(const CMetaInfFile& other) {
  CFileIO::operator=(other);
  return *this;
}

CMetaInfFile::~CMetaInfFile() = default;

bool CMetaInfFile::OpenForApp(tDeviceVolumeId vol, const char* appDir, CPkgPathBase* paths) {
  if (appDir == nullptr) return false;
  char subPath[kSubPathSize];
  COrvoInterface::SNPrintF(subPath, sizeof subPath, "%s%c%s", appDir, '/', kMetaInfName);
  const CPkgPathBase& layout = vireline::LayoutOrDefault(paths);
  char path[kPathSize];
  if (!layout.GetPackageDir(path, sizeof path, tPackageType("Application"), vol, subPath)) path[0] = '\0';
  return Open(path);
}

const char* CMetaInfFile::GetMetaVersion() const { return GetStr(kKeyMetaVersion); }
bool CMetaInfFile::SetMetaVersion(const char* version) { return SetStr(kKeyMetaVersion, version); }
const char* CMetaInfFile::GetDeviceType() const { return GetStr(kKeyDevice); }
bool CMetaInfFile::SetDeviceType(const char* device) { return SetStr(kKeyDevice, device); }

const char* CMetaInfFile::GetPackageId() const {
  const tKeyValueEntry* alternative = FindKey(kKeyDeviceAltPkgId);
  return alternative ? alternative->value : GetStr(kKeyPackageId);
}

bool CMetaInfFile::SetPackageId(const char* id) { return SetStr(kKeyPackageId, id); }
U32 CMetaInfFile::GetProductId() const { return GetUInt(kKeyProductId); }
bool CMetaInfFile::SetProductId(U32 id) { return SetUInt(kKeyProductId, id); }
const char* CMetaInfFile::GetPackageName() const { return GetStr(kKeyName); }
bool CMetaInfFile::SetPackageName(const char* name) { return SetStr(kKeyName, name); }
const char* CMetaInfFile::GetShortName() const { return GetStr(kKeyShortName); }
bool CMetaInfFile::SetShortName(const char* name) { return SetStr(kKeyShortName, name); }
const char* CMetaInfFile::GetBinFile() const { return GetStr(kKeyBinFile); }
bool CMetaInfFile::SetBinFile(const char* file) { return SetStr(kKeyBinFile, file); }
const char* CMetaInfFile::GetPartNumber() const { return GetStr(kKeyPartNumber); }
bool CMetaInfFile::SetPartNumber(const char* partNumber) { return SetStr(kKeyPartNumber, partNumber); }

tPackageType CMetaInfFile::GetPackageType() const { return tPackageType(GetStr(kKeyType)); }

bool CMetaInfFile::SetPackageType(const tPackageType& type) {
  if (type == tPackageType() || type == "*") {
    COrvoInterface::Trace("meta.inf files cannot have package types of invalid or all!");
    return false;
  }
  return SetStr(kKeyType, type.ToString());
}

const char* CMetaInfFile::GetPackageVersion() const { return GetStr(kKeyVersion); }
bool CMetaInfFile::SetPackageVersion(const char* version) { return SetStr(kKeyVersion, version); }
const char* CMetaInfFile::GetPublisher() const { return GetStr(kKeyPublisher); }
bool CMetaInfFile::SetPublisher(const char* publisher) { return SetStr(kKeyPublisher, publisher); }
const char* CMetaInfFile::GetDeveloper() const { return GetStr(kKeyDeveloper); }
bool CMetaInfFile::SetDeveloper(const char* developer) { return SetStr(kKeyDeveloper, developer); }
const char* CMetaInfFile::GetIcon() const { return GetStr(kKeyIcon); }
bool CMetaInfFile::SetIcon(const char* icon) { return SetStr(kKeyIcon, icon); }

bool CMetaInfFile::IsHidden() const { return GetUInt(kKeyHidden) != 0; }
bool CMetaInfFile::SetHidden(bool hidden) { return SetUInt(kKeyHidden, hidden ? 1 : 0); }

U32 CMetaInfFile::GetDependencies(char**& out) const { return GetStrList(kKeyDepends, out); }
bool CMetaInfFile::SetDependencies(const char* const* dependencies, U32 count) {
  return SetStrList(kKeyDepends, dependencies, count);
}

U32 CMetaInfFile::GetProfileAccess(U32*& out) const { return GetUIntList(kKeyProfileAccess, out); }
bool CMetaInfFile::SetProfileAccess(const U32* profiles, U32 count) {
  return SetUIntList(kKeyProfileAccess, profiles, count);
}

U32 CMetaInfFile::GetPersistentData(char**& out) const { return GetStrList(kKeyPersistentData, out); }
bool CMetaInfFile::SetPersistentData(const char* const* paths, U32 count) {
  return SetStrList(kKeyPersistentData, paths, count);
}

U32 CMetaInfFile::GetSize() const { return GetUInt(kKeySize); }
bool CMetaInfFile::SetSize(U32 size) { return SetUInt(kKeySize, size); }
U32 CMetaInfFile::GetDeviceAccess() const { return GetUInt(kKeyDeviceAccess); }
bool CMetaInfFile::SetDeviceAccess(U32 access) { return SetUInt(kKeyDeviceAccess, access); }
const char* CMetaInfFile::GetPathToUploadContent() const { return GetStr(kKeyPathToUploadContent); }
bool CMetaInfFile::SetPathToUploadContent(const char* path) { return SetStr(kKeyPathToUploadContent, path); }
const char* CMetaInfFile::GetPathToUploadContentList() const { return GetStr(kKeyPathToUploadContentList); }
bool CMetaInfFile::SetPathToUploadContentList(const char* path) {
  return SetStr(kKeyPathToUploadContentList, path);
}

U32 CMetaInfFile::GetOptionalUpload() const {
  U32 value = GetUInt(kKeyOptionalUpload);
  return value == 0xFFFFFFFFu ? 0 : value;
}

bool CMetaInfFile::SetOptionalUpload(U32 optionalUpload) { return SetUInt(kKeyOptionalUpload, optionalUpload); }

bool CMetaInfFile::ProfileHasAccess(uint8_t profile) const {
  U32* profiles = nullptr;
  U32 count = GetProfileAccess(profiles);
  bool access = count == 0;
  for (U32 i = 0; i < count && !access; ++i) access = static_cast<uint8_t>(profiles[i] & 0xFF) == profile;
  COrvoInterface::Free(profiles);
  return access;
}

bool CMetaInfFile::IsValid() const {
  tPackageType type = GetPackageType();
  if (type == tPackageType() || type == "*") return false;
  return GetPackageId() != nullptr && GetStr(kKeyVersion) != nullptr;
}

void CMetaInfFile::DumpDebug() const {
  COrvoInterface::Trace("*** MetaInfFile ***");
  for (U32 i = 0; i < GetEntryCount(); ++i) {
    const tKeyValueEntry* entry = GetEntry(i);
    const char* value = entry->value ? entry->value : "";
    if (entry->quoted) {
      COrvoInterface::Trace("%s=\"%s\"", entry->key, value);
    } else {
      COrvoInterface::Trace("%s=%s", entry->key, value);
    }
  }
}
