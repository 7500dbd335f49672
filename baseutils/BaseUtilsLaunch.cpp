// Patched and external launches: the launcher runs the next title through the
// wrapper script "/tmp/oam-wrapper" while it exists. Also the free space left
// to the running title.
#include <vireline/BaseUtils.h>

#include <cstdio>
#include <memory>

#include "baseutils/UpperLayers.h"
#include "platform/Env.h"
#include "platform/FormattedWrite.h"

namespace {

const char kWrapper[] = "/tmp/oam-wrapper";
const uint32_t kWrapperMode = 0555;  // read and execute for all
const char kLibraryPathVariable[] = "LD_LIBRARY_PATH";

bool Contains(const CString& text, const CString& part) { return text.find(part) != CString::npos; }

// The package folder of a path inside it: up to and including the last "/".
CPath FolderPart(const CPath& path) {
  CPath::size_type slash = path.rfind('/');
  return slash == CPath::npos ? CPath() : path.substr(0, slash + 1);
}

}  // namespace

CPath BaseUtils::GetPatchPath(const CPath& packagePath) {
  CPath patchPath;
  CPath cartPath = vireline::upper::CartPath();
  if (Contains(packagePath, cartPath)) patchPath = cartPath + "lib/";
  if (Contains(packagePath, vireline::upper::RootPath() + "Bulk")) {
    patchPath = vireline::upper::DownloadsPath() +
                vireline::upper::PackageTagString(FolderPart(packagePath), "PatchLibs");
  }
  return patchPath;
}

bool BaseUtils::IsPatched(const CPath& packagePath) {
  if (!FileExists(kWrapper)) return false;
  CString libraryPath = vireline::Env::Current()->GetEnvironment(kLibraryPathVariable);
  return Contains(libraryPath, GetPatchPath(packagePath));
}

bool BaseUtils::HasPatch(const CPath& packagePath) {
  CPath patchPath = GetPatchPath(packagePath);
  if (!FileIsDir(patchPath)) return false;
  CString patchVersion = vireline::upper::PackageVersion(patchPath);
  CString systemVersion = vireline::upper::PackageVersion(vireline::upper::BasePath() + "lib/");
  return CompareVersion(patchVersion, systemVersion) > 0;
}

bool BaseUtils::SetPatch(const CPath& libraryPath, const CString& package) {
  tPlayerID player = vireline::upper::CurrentPlayerID();
  std::unique_ptr<vireline::WritableFile> wrapper;
  // The launcher finds no wrapper and starts the title plainly: nothing to report.
  if (!vireline::Env::Current()->NewWritableFile(kWrapper, &wrapper).ok()) return true;
  if (!libraryPath.empty()) {
    vireline::AppendFormatted(wrapper.get(), "LD_LIBRARY_PATH=%s:$LD_LIBRARY_PATH AppManager %s %d\n",
                              libraryPath.c_str(), package.c_str(), static_cast<int>(player));
  } else {
    vireline::AppendFormatted(wrapper.get(), "AppManager %s %d\n", package.c_str(), static_cast<int>(player));
  }
  wrapper->Close();
  vireline::Env::Current()->ChangeMode(kWrapper, kWrapperMode);
  return true;
}

bool BaseUtils::RemovePatch(const CString& /*package*/) {
  vireline::Env::Current()->RemoveFile(kWrapper);
  return true;
}

bool BaseUtils::SetExternal(const CString& package) { return SetPatch(CPath(), package); }

bool BaseUtils::IsExternal(const CString& /*package*/) { return FileExists(kWrapper); }

bool BaseUtils::HasExternalLaunch(const CPath& packagePath) {
  return vireline::upper::PackageTagInt(FolderPart(packagePath), "CleanLaunch") == 1;
}

uint64_t BaseUtils::GetBulkFreeBytes() {
  CPath folder =
      vireline::upper::LocalDataPath(vireline::upper::CurrentPlayerID(), vireline::upper::CurrentGameID());
  vireline::FsInfo info;
  vireline::Env::Current()->StatFs(folder.raw(), &info);  // an unreadable volume reports no space
  return info.blockSize * info.blocksAvailable;
}
