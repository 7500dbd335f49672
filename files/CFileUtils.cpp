#include <vireline/CFileUtils.h>

#include <cstring>
#include <memory>

#include <vireline/COrvoInterface.h>
#include <vireline/PkgPath.h>

#include "platform/Env.h"

namespace {

const uint32_t kPathSize = 256;
const int32_t kRegular = 1;
const int32_t kDirectory = 2;  // the shim's "anything else", folders included

const char* Printable(const char* path) { return path ? path : "(null)"; }

bool IsDotEntry(const char* name) { return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0; }

// Walks the entries of a listed folder. For each entry, `from` (and `to`, when
// `dst` is given) receive the joined paths and visit(joined) decides whether to
// go on; the names ReadDir hands out are freed here. An entry whose paths do
// not fit is traced as `statFailure` and ends the walk unless `skipUnjoinable`.
// False when the walk ended early.
template <typename Visit>
bool WalkListing(tDirStream* dir, const char* src, const char* dst, const char* statFailure,
                 bool skipUnjoinable, Visit visit) {
  bool ok = true;
  while (ok) {
    char* name = COrvoInterface::ReadDir(dir);
    if (name == nullptr) break;
    char from[kPathSize], to[kPathSize];
    bool skip = IsDotEntry(name);
    bool joined = CPkgPathBase::MakeFilePath(from, sizeof from, src, name, nullptr) &&
                  (dst == nullptr || CPkgPathBase::MakeFilePath(to, sizeof to, dst, name, nullptr));
    COrvoInterface::Free(name);
    if (skip) continue;
    if (!joined) {
      COrvoInterface::Trace(statFailure, from);
      ok = skipUnjoinable;
      continue;
    }
    ok = visit(from, to);
  }
  COrvoInterface::CloseDir(dir);
  return ok;
}

}  // namespace

bool CFileUtils::RecursiveCopy(const char* src, const char* dst) {
  tStatLite source;
  if (!COrvoInterface::Stat(src, &source, false)) {
    COrvoInterface::Trace("cp -r: failed to stat %s.", Printable(src));
    return false;
  }
  if (source.type == kRegular) {
    tStatLite target;
    if (dst != nullptr && COrvoInterface::Stat(dst, &target, false) && target.type == kDirectory) {
      const char* slash = std::strrchr(src, '/');
      const char* baseName = slash ? slash + 1 : src;
      char path[kPathSize];
      if (!CPkgPathBase::MakeFilePath(path, sizeof path, dst, baseName, nullptr)) return false;
      return COrvoInterface::CpFile(src, path, true);
    }
    return COrvoInterface::CpFile(src, dst, true);
  }
  if (source.type != kDirectory) {
    COrvoInterface::Trace("cp -r: unsupported stat %d on %s.", source.type, src);
    return false;
  }
  tStatLite target;
  if (!COrvoInterface::Stat(dst, &target, false) && !COrvoInterface::MkDir(dst)) {
    COrvoInterface::Trace("cp -r: failed mkdir -p %s.", Printable(dst));
    return false;
  }
  tDirStream* dir = COrvoInterface::OpenDir(src, false, nullptr, 0);
  if (dir == nullptr) {
    COrvoInterface::Trace("cp -r: failed to opendir %s.", src);
    return false;
  }
  return WalkListing(dir, src, dst, "cp -r: failed to stat %s.", false, [](const char* from, const char* to) {
    tStatLite entry;
    if (!COrvoInterface::Stat(from, &entry, false)) {
      COrvoInterface::Trace("cp -r: failed to stat %s.", from);
      return false;
    }
    if (entry.type == kRegular) return COrvoInterface::CpFile(from, to, true);
    if (entry.type == kDirectory) return COrvoInterface::MkDir(to) && RecursiveCopy(from, to);
    COrvoInterface::Trace("cp -r: unsupported stat %d on %s.", entry.type, from);
    return false;
  });
}

bool CFileUtils::RecursiveRm(const char* path) {
  tStatLite info;
  if (!COrvoInterface::Stat(path, &info, false)) return false;
  if (info.type == kRegular) return COrvoInterface::RmFile(path, false);
  if (info.type != kDirectory) {
    COrvoInterface::Trace("rm -r: unsupported mode %d for %s.", info.type, path);
    return false;
  }
  tDirStream* dir = COrvoInterface::OpenDir(path, false, nullptr, 0);
  if (dir == nullptr) {
    COrvoInterface::Trace("rm -r: failed to opendir %s.", path);
    return false;
  }
  return WalkListing(dir, path, nullptr, "cp -r: failed to stat %s.", false, [](const char* child, const char*) {
    tStatLite entry;
    if (!COrvoInterface::Stat(child, &entry, false)) {
      COrvoInterface::Trace("cp -r: failed to stat %s.", child);  // the copy's message, as always
      return false;
    }
    if (entry.type == kRegular) return COrvoInterface::RmFile(child, false);
    if (entry.type == kDirectory) return RecursiveRm(child) && COrvoInterface::RmDir(child);
    return true;  // other kinds are left alone
  });
}

bool CFileUtils::MkPath(const char* path, bool isFilePath) {
  if (path == nullptr || path[0] == '\0') return false;
  size_t length = std::strlen(path);
  if (length > static_cast<size_t>(INT32_MAX) - 1) return false;
  char* prefix = static_cast<char*>(COrvoInterface::Malloc(static_cast<int32_t>(length + 1)));
  if (prefix == nullptr) return false;
  std::memcpy(prefix, path, length + 1);
  bool ok = true;
  for (size_t i = 1; i <= length && ok; ++i) {
    bool atSlash = i < length && prefix[i] == '/';
    bool atEnd = i == length && !isFilePath;
    if (!atSlash && !atEnd) continue;
    prefix[i] = '\0';
    ok = COrvoInterface::MkDir(prefix);
    prefix[i] = path[i];
  }
  COrvoInterface::Free(prefix);
  return ok;
}

bool CFileUtils::Touch(const char* path) {
  tStatLite info;
  if (COrvoInterface::Stat(path, &info, false)) return info.type == kRegular;
  std::unique_ptr<vireline::WritableFile> file;
  if (path == nullptr || !vireline::Env::Current()->NewWritableFile(path, &file).ok()) return false;
  return file->Close().ok();
}

bool CFileUtils::IsDirEmpty(const char* path) {
  tDirStream* dir = COrvoInterface::OpenDir(path, false, nullptr, 0);
  if (dir == nullptr) return true;
  char* first = COrvoInterface::ReadDir(dir);
  bool empty = first == nullptr;
  COrvoInterface::Free(first);
  COrvoInterface::CloseDir(dir);
  return empty;
}

U32 CFileUtils::GetDirSize(const char* path) {
  tStatLite info;
  if (!COrvoInterface::Stat(path, &info, false)) return 0;
  if (info.type == kRegular) return info.size;
  if (info.type != kDirectory) {
    COrvoInterface::Trace("dir size: unsupported mode %d for %s.", info.type, path);
    return 0;
  }
  tDirStream* dir = COrvoInterface::OpenDir(path, false, nullptr, 0);
  if (dir == nullptr) {
    COrvoInterface::Trace("dir size: failed to opendir %s.", path);
    return 0;
  }
  U32 total = 0;
  WalkListing(dir, path, nullptr, "dir size: failed to stat %s.", true, [&total](const char* child, const char*) {
    tStatLite entry;
    if (!COrvoInterface::Stat(child, &entry, false)) {
      COrvoInterface::Trace("dir size: failed to stat %s.", child);
      return true;  // counts 0
    }
    total += entry.type == kRegular ? entry.size : (entry.type == kDirectory ? GetDirSize(child) : 0);
    return true;
  });
  return total;
}
