// The BaseUtils singleton, its file and folder helpers and the folder walker.
#include <vireline/BaseUtils.h>

#include <memory>
#include <string>
#include <vector>

#include <vireline/CFileUtils.h>
#include <vireline/Platform.h>

#include "platform/Env.h"

BaseUtils* BaseUtils::mInstance = nullptr;

namespace {

bool StatPath(const CPath& path, vireline::FileInfo* info) {
  return vireline::Env::Current()->Stat(path.raw(), info).ok();
}

bool IsSelected(const vireline::FileInfo& info, int select) {
  bool isDir = info.type == vireline::FileType::kDirectory;
  switch (select) {
    case BaseUtils::kSelectAll: return true;
    case BaseUtils::kSelectFiles: return !isDir;
    case BaseUtils::kSelectDirectories: return isDir;
    default: return false;
  }
}

CPath ParentOf(const CPath& path) {
  CPath::size_type slash = path.rfind('/');
  return slash == CPath::npos ? CPath() : path.substr(0, slash);
}

}  // namespace

BaseUtils* BaseUtils::Instance() {
  if (mInstance == nullptr) mInstance = new BaseUtils();
  return mInstance;
}

BaseUtils::BaseUtils()
    : mTraceEnabled(true),
      mTraceMask(0xFFFFFFFFu),
      mStartTime(PlatformKernel::GetElapsedTimeAsUSecs() / 1000),
      mHotPlugDeviceId(0) {}

bool BaseUtils::FileExists(const CPath& path) {
  vireline::FileInfo info;
  return StatPath(path, &info);
}

bool BaseUtils::FileIsDir(const CPath& path) {
  vireline::FileInfo info;
  return StatPath(path, &info) && info.type == vireline::FileType::kDirectory;
}

bool BaseUtils::DirectoryExists(const CPath& path) { return FileIsDir(path); }

bool BaseUtils::CreateDirectory(const CPath& path) { return CFileUtils::MkPath(path.c_str(), false); }

bool BaseUtils::CreateFile(const CPath& path) {
  std::unique_ptr<vireline::WritableFile> created;
  if (vireline::Env::Current()->NewWritableFile(path.c_str(), &created).ok()) return true;
  CPath parent = ParentOf(path);
  if (FileExists(parent)) {
    Assert(0, "VirelineJSON/Src/BaseUtils", 135, "failed to create file. %s\n", path.c_str());
    return false;
  }
  // The retry happens once the parent exists; a parent that cannot be created
  // (a file in the way, a read-only volume) ends the attempt instead of looping.
  return CreateDirectory(parent) && FileExists(parent) && CreateFile(path);
}

bool BaseUtils::EnumFolder(const CPath& folder, tEnumFolderCallback callback, int select, void* context) {
  CPath prefix = folder;
  if (prefix.empty() || prefix[prefix.size() - 1] != '/') prefix += "/";
  std::vector<std::string> names;
  if (!vireline::Env::Current()->ListDir(prefix.raw(), &names).ok()) return false;
  for (const std::string& name : names) {
    if (callback == nullptr) continue;
    CPath path = prefix + name;
    vireline::FileInfo info;
    if (!StatPath(path, &info) || !IsSelected(info, select)) continue;
    if (callback(path, context) == 0) break;
  }
  return true;
}

uint32_t BaseUtils::GetElapsedTimeAsMSecs() {
  return static_cast<uint32_t>(PlatformKernel::GetElapsedTimeAsUSecs() / 1000 - mStartTime);
}

CString BaseUtils::itoa(int value) { return std::to_string(value); }
