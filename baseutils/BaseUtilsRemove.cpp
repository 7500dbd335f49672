// Recursive removal of files and folders.
#include <vireline/BaseUtils.h>
#include <vireline/Platform.h>

#include "platform/Env.h"

namespace {

// How deep RMDirs is below the folder it was first called on; files lying
// directly in that folder are kept. Process-wide, as on the device.
int gRMDirsDepth = 0;

// A link is removed as an entry of its own: following it could leave the
// tree or loop forever.
bool IsFolder(const CPath& path) {
  return !vireline::IsSymbolicLink(path.raw()) && PlatformKernel::IsDirectory(path);
}

void RemoveEntry(const CPath& path) { vireline::Env::Current()->RemoveFile(path.raw()); }

}  // namespace

bool BaseUtils::RM(const CPath& path) {
  if (!IsFolder(path)) {
    RemoveEntry(path);
    return true;
  }
  for (const CPath& entry : PlatformKernel::GetFilesInDirectory(path)) RM(entry);
  vireline::Env::Current()->RemoveDir(path.raw());
  return true;
}

bool BaseUtils::RMDirs(const CPath& path) {
  Trace("in RMDirs\n");
  Trace("%s\n", path.c_str());
  for (const CPath& entry : PlatformKernel::GetFilesInDirectory(path)) {
    Trace("%s\n", entry.c_str());
    if (IsFolder(entry)) {
      ++gRMDirsDepth;
      RMDirs(entry);
      --gRMDirsDepth;
      vireline::Env::Current()->RemoveDir(entry.raw());
    } else if (gRMDirsDepth != 0) {
      RemoveEntry(entry);
    }
  }
  return true;
}
