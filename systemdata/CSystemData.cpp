// The singleton, the fixed root folders and the plain getters.
#include <vireline/CSystemData.h>

#include <cstdarg>

#include <vireline/CSystem.h>
#include <vireline/PkgPath.h>
#include <vireline/Platform.h>

#include "systemdata/SystemDataInternal.h"

namespace {

// The folders that never depended on the model: they come from the first
// device and applications still name them literally.
const char kDataPath[] = "/QV/Bulk/Data/";
const char kAvatarsPath[] = "/QV/Base/ZantoAvatars/";
const char kZantoMDLsPath[] = "/QV/Base/ZantoMDLs/";
const char kUniversalLanguagePackPath[] = "/QV/Bulk/LanguagePack/";

// Buffer sizes the layout was always queried with.
const uint32_t kRootBufferSize = 254;
const uint32_t kPackageBufferSize = 256;

// The folder of `type` on volume 0 plus "/"; just "/" when the model has no such type.
CPath PackageFolder(const CPkgPathBase& paths, const char* type) {
  char buffer[kPackageBufferSize];
  paths.GetPackageDir(buffer, sizeof buffer, tPackageType(type), 0, nullptr);
  return CPath(buffer) + "/";
}

// A folder of the universal language pack, for the deprecated getters that name one.
CPath DeprecatedUniversalFolder(const char* signature, const char* folder) {
  vireline::systemdata::WarnDeprecated(signature);
  return CPath(kUniversalLanguagePackPath) + folder;
}

}  // namespace

namespace vireline {
namespace systemdata {

void DebugOut(int level, const char* format, ...) {
  va_list args;
  va_start(args, format);
  PlatformDebug(kDebugModule).VDebugOut(level, format, args);
  va_end(args);
}

void WarnDeprecated(const char* signature) { vireline::WarnDeprecated(kDebugModule, signature); }

CPath DataPath() { return CPath(kDataPath); }

CPath SlashEnded(const CPath& path) {
  const std::string& bytes = path.raw();
  if (!bytes.empty() && bytes.back() == '/') return path;
  return path + "/";
}

}  // namespace systemdata
}  // namespace vireline

using vireline::systemdata::WarnDeprecated;

CSystemData* CSystemData::mpInstance = nullptr;

CSystemData* CSystemData::Instance() {
  if (mpInstance == nullptr) mpInstance = new CSystemData;  // lives until the process ends
  return mpInstance;
}

CSystemData::CSystemData()
    : mZantoLegacy(false), mCurrentGameProductID(0), mEarlyPreKBlackListed(false) {
  PlatformDebug(vireline::systemdata::kDebugModule).SetDebugLevel(5);
  SetRootPaths();
}

bool CSystemData::SetRootPaths() {
  CPkgPathBase paths;
  char root[kRootBufferSize];
  paths.GetRootDir(root, sizeof root, 0, nullptr);
  mRootPath = CPath(root) + "/";
  mCartPath = mRootPath + "Cart/";
  mBasePath = PackageFolder(paths, "System");
  mProgramFilesPath = PackageFolder(paths, "Application");
  mAvatarsPath = kAvatarsPath;
  mCYOPath = PackageFolder(paths, "Download");
  mMDLPath = PackageFolder(paths, "Download");
  mDownloadsPath = mMDLPath;
  mDataPath = vireline::systemdata::DataPath();
  mUniversalLanguagePackPath = kUniversalLanguagePackPath;
  mLanguagePackPath = kUniversalLanguagePackPath;
  mDefaultAvatarPath = mAvatarsPath + "Avatar1/";
  return true;
}

CPath CSystemData::GetRootPath() { return mRootPath; }
CPath CSystemData::GetCartPath() { return mCartPath; }
CPath CSystemData::GetBasePath() { return mBasePath; }

CPath CSystemData::GetDataPath() {
  WarnDeprecated("Quorvane::Orvo::CPath CSystemData::GetDataPath()");
  return mDataPath;
}

CPath CSystemData::GetProgramFilesPath() { return mProgramFilesPath; }
CPath CSystemData::GetAvatarsPath() { return mAvatarsPath; }
CPath CSystemData::GetDefaultAvatarPath() { return mDefaultAvatarPath; }
CPath CSystemData::GetCYOsPath() { return vireline::systemdata::SlashEnded(mCYOPath); }
CPath CSystemData::GetMDLsPath() { return mZantoLegacy ? CPath(kZantoMDLsPath) : mMDLPath; }
CPath CSystemData::GetDownloadsPath() { return mDownloadsPath; }
CPath CSystemData::GetFlashPath() { return mBasePath + "Flash/"; }
CPath CSystemData::GetPetResourcesPath() { return mBasePath + "PetResources/"; }
CPath CSystemData::GetFlashAppPath() { return mBasePath + "Flash/" + "FlashApp.so"; }

CPath CSystemData::GetUniversalAudioPath() {
  return DeprecatedUniversalFolder("Quorvane::Orvo::CPath CSystemData::GetUniversalAudioPath()", "Audio/");
}

CPath CSystemData::GetDefaultArtPath() {
  return DeprecatedUniversalFolder("Quorvane::Orvo::CPath CSystemData::GetDefaultArtPath()", "Art/");
}

CPath CSystemData::GetCustomizedArtPath() {
  return DeprecatedUniversalFolder("Quorvane::Orvo::CPath CSystemData::GetCustomizedArtPath()", "Art/");
}

CPath CSystemData::GetUniversalArtPath() {
  return DeprecatedUniversalFolder("Quorvane::Orvo::CPath CSystemData::GetUniversalArtPath()", "Art/");
}

CPath CSystemData::GetLanguagePackPath(bool localized) {
  return localized ? GetLanguagePackPath() : mUniversalLanguagePackPath;
}

CPath CSystemData::GetCurrentTitlePath() { return mCurrentTitlePath; }
CString CSystemData::GetCurrentGameID() { return mCurrentGameID; }
U32 CSystemData::GetCurrentGameProductID() { return mCurrentGameProductID; }
CString CSystemData::GetCurrentGamePackageID() { return mCurrentGamePackageID; }

void CSystemData::SetZantoLegacyFlag(bool legacy) { mZantoLegacy = legacy; }
bool CSystemData::GetZantoLegacyFlag() { return mZantoLegacy; }
void CSystemData::SetEarlyPreKBlackListed(bool blackListed) { mEarlyPreKBlackListed = blackListed; }
bool CSystemData::GetEarlyPreKBlackListed() { return mEarlyPreKBlackListed; }

tPlayerID CSystemData::GetCurrentPlayerID() { return LTM::CSystem().GetCurrentPlayerID(); }
