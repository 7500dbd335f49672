#include <vireline/Platform.h>

#include "platform/Env.h"

using vireline::Env;

uint64_t PlatformKernel::GetElapsedTimeAsUSecs() { return Env::Current()->NowMicros(); }

bool PlatformKernel::IsDirectory(const CPath& path) {
  vireline::FileInfo info;
  return Env::Current()->Stat(path.raw(), &info).ok() && info.type == vireline::FileType::kDirectory;
}

std::vector<CPath> PlatformKernel::GetFilesInDirectory(const CPath& path) {
  std::vector<std::string> names;
  std::vector<CPath> paths;
  if (!Env::Current()->ListDir(path.raw(), &names).ok()) return paths;
  std::string folder = path.raw();
  if (folder.empty() || folder.back() != '/') folder += '/';
  for (const std::string& name : names) paths.push_back(folder + name);
  return paths;
}
