#include "platform/ScratchOverlayEnv.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/DeviceRoot.h"

namespace vireline {
namespace {

const int kNameAttempts = 100;
const uint32_t kScratchFolderMode = 0700;
const uint32_t kFolderMode = 0755;

bool Writes(const char* mode) { return std::strpbrk(mode, "wa+") != nullptr; }

// Modes that start from the file's current content.
bool KeepsContent(const char* mode) { return std::strchr(mode, 'w') == nullptr; }


}  // namespace

ScratchOverlayEnv::ScratchOverlayEnv(Env* deviceEnv, Env* hostEnv) : EnvWrapper(deviceEnv), mHost(hostEnv) {
  std::string base = hostEnv->GetEnvironment("TMPDIR");
  if (base.empty()) base = "/tmp";
  for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
    std::string folder = base + "/vireline-scratch-" + std::to_string(::getpid()) + "-" + std::to_string(attempt);
    Result made = hostEnv->MakeDir(folder, kScratchFolderMode);
    if (made.ok()) {
      mScratch = folder;
      return;
    }
    if (made.error() != EEXIST) return;
  }
}

ScratchOverlayEnv::~ScratchOverlayEnv() {
  if (ok()) RemoveTree(mScratch);
}

std::string ScratchOverlayEnv::Scratch(const std::string& path) const {
  std::string normalized = NormalizeDevicePath(path);
  return mScratch + (normalized.empty() || normalized[0] != '/' ? "/" : "") + normalized;
}

bool ScratchOverlayEnv::InScratch(const std::string& path) {
  FileInfo info;
  return ok() && mHost->LinkStat(Scratch(path), &info).ok();
}

Result ScratchOverlayEnv::MakeScratchParents(const std::string& path) {
  if (!ok()) return Result::Error(EROFS);
  std::string normalized = NormalizeDevicePath(path);
  for (size_t slash = normalized.find('/', 1); slash != std::string::npos && slash + 1 < normalized.size();
       slash = normalized.find('/', slash + 1)) {
    Result made = mHost->MakeDir(mScratch + normalized.substr(0, slash), kFolderMode);
    if (!made.ok() && made.error() != EEXIST) return made;
  }
  return Result::Ok();
}

Result ScratchOverlayEnv::CopyUp(const std::string& path) {
  FileInfo info;
  if (!target()->Stat(path, &info).ok()) return Result::Ok();  // nothing to keep
  if (info.type != FileType::kRegular) return Result::Error(EROFS);
  Result result = MakeScratchParents(path);
  std::unique_ptr<SequentialFile> in;
  if (result.ok()) result = target()->NewSequentialFile(path, &in);
  if (!result.ok()) return result;
  std::unique_ptr<WritableFile> out;
  result = mHost->NewWritableFile(Scratch(path), &out);
  if (result.ok()) {
    result = CopyToEnd(in.get(), out.get());
    Result closed = out->Close();
    if (result.ok()) result = closed;
    if (result.ok()) result = mHost->ChangeMode(Scratch(path), info.mode);
  }
  return result;
}

Result ScratchOverlayEnv::PrepareWrite(const std::string& path, bool keepsContent, bool exclusive) {
  FileInfo info;
  bool inImage = !InScratch(path) && target()->Stat(path, &info).ok();
  if (inImage && exclusive) return Result::Error(EEXIST, path);
  Result result = MakeScratchParents(path);
  if (result.ok() && inImage && keepsContent) result = CopyUp(path);
  return result;
}

Result ScratchOverlayEnv::NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) {
  return InScratch(path) ? mHost->NewSequentialFile(Scratch(path), file) : target()->NewSequentialFile(path, file);
}

Result ScratchOverlayEnv::NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) {
  file->reset();
  Result result = PrepareWrite(path, false, false);
  return result.ok() ? mHost->NewWritableFile(Scratch(path), file) : result;
}

Result ScratchOverlayEnv::NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) {
  file->reset();
  Result result = PrepareWrite(path, false, true);
  return result.ok() ? mHost->NewExclusiveFile(Scratch(path), file) : result;
}

Result ScratchOverlayEnv::NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) {
  file->reset();
  Result result = PrepareWrite(path, true, false);
  return result.ok() ? mHost->NewRandomRWFile(Scratch(path), file) : result;
}

Result ScratchOverlayEnv::OpenStream(const std::string& path, const char* mode, FILE** stream) {
  *stream = nullptr;
  if (!Writes(mode)) {
    return InScratch(path) ? mHost->OpenStream(Scratch(path), mode, stream) : target()->OpenStream(path, mode, stream);
  }
  Result result = PrepareWrite(path, KeepsContent(mode), std::strchr(mode, 'x') != nullptr);
  return result.ok() ? mHost->OpenStream(Scratch(path), mode, stream) : result;
}

Result ScratchOverlayEnv::Stat(const std::string& path, FileInfo* info) {
  return InScratch(path) ? mHost->Stat(Scratch(path), info) : target()->Stat(path, info);
}

Result ScratchOverlayEnv::LinkStat(const std::string& path, FileInfo* info) {
  return InScratch(path) ? mHost->LinkStat(Scratch(path), info) : target()->LinkStat(path, info);
}

Result ScratchOverlayEnv::MakeDir(const std::string& path, uint32_t mode) {
  FileInfo info;
  if (InScratch(path) || target()->LinkStat(path, &info).ok()) return Result::Error(EEXIST);
  Result result = MakeScratchParents(path);
  return result.ok() ? mHost->MakeDir(Scratch(path), mode) : result;
}

// The image itself is never changed: removing what only it holds fails.
Result ScratchOverlayEnv::RemoveDir(const std::string& path) {
  if (InScratch(path)) return mHost->RemoveDir(Scratch(path));
  FileInfo info;
  return Result::Error(target()->LinkStat(path, &info).ok() ? EROFS : ENOENT);
}

Result ScratchOverlayEnv::RemoveFile(const std::string& path) {
  if (InScratch(path)) return mHost->RemoveFile(Scratch(path));
  FileInfo info;
  return Result::Error(target()->LinkStat(path, &info).ok() ? EROFS : ENOENT);
}

Result ScratchOverlayEnv::Rename(const std::string& from, const std::string& to) {
  if (!InScratch(from)) {
    FileInfo info;
    return Result::Error(target()->LinkStat(from, &info).ok() ? EROFS : ENOENT);
  }
  Result result = MakeScratchParents(to);
  return result.ok() ? mHost->Rename(Scratch(from), Scratch(to)) : result;
}

Result ScratchOverlayEnv::ChangeMode(const std::string& path, uint32_t mode) {
  if (!ok()) return Result::Error(EROFS, path);  // never the host file of the same path
  Result result = InScratch(path) ? Result::Ok() : CopyUp(path);
  return result.ok() ? mHost->ChangeMode(Scratch(path), mode) : result;
}

Result ScratchOverlayEnv::ListDir(const std::string& path, std::vector<std::string>* names) {
  Result result = target()->ListDir(path, names);
  if (!InScratch(path)) return result;
  if (!result.ok()) names->clear();
  std::vector<std::string> written;
  Result scratch = mHost->ListDir(Scratch(path), &written);
  for (const std::string& name : written) {
    if (std::find(names->begin(), names->end(), name) == names->end()) names->push_back(name);
  }
  return result.ok() ? result : scratch;
}

Result ScratchOverlayEnv::SyncDir(const std::string& path) {
  return InScratch(path) ? mHost->SyncDir(Scratch(path)) : Result::Ok();
}

// A command could change anything; none is run.
Result ScratchOverlayEnv::RunCommand(const std::string& /*command*/, int* /*exitStatus*/) {
  return Result::Error(EROFS);
}

std::vector<std::string> ScratchOverlayEnv::WrittenFiles() {
  std::vector<std::string> files;
  if (ok()) CollectFiles("/", &files);
  std::sort(files.begin(), files.end());
  return files;
}

void ScratchOverlayEnv::CollectFiles(const std::string& devicePath, std::vector<std::string>* files) {
  std::vector<std::string> names;
  if (!mHost->ListDir(Scratch(devicePath), &names).ok()) return;
  for (const std::string& name : names) {
    std::string path = devicePath + name;
    FileInfo info;
    if (!mHost->LinkStat(Scratch(path), &info).ok()) continue;
    if (info.type == FileType::kDirectory) {
      CollectFiles(path + "/", files);
    } else {
      files->push_back(path);
    }
  }
}

void ScratchOverlayEnv::RemoveTree(const std::string& hostPath) {
  FileInfo info;
  if (!mHost->LinkStat(hostPath, &info).ok()) return;
  if (info.type != FileType::kDirectory) {
    mHost->RemoveFile(hostPath);
    return;
  }
  std::vector<std::string> names;
  mHost->ListDir(hostPath, &names);
  for (const std::string& name : names) RemoveTree(hostPath + "/" + name);
  mHost->RemoveDir(hostPath);
}

}  // namespace vireline
