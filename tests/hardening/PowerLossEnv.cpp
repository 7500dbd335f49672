#include "hardening/PowerLossEnv.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

using vireline::Result;

namespace {

std::string FolderOf(const std::string& path) {
  const std::string::size_type slash = path.rfind('/');
  return slash == std::string::npos || slash == 0 ? "/" : path.substr(0, slash);
}

bool Writes(const char* mode) { return std::strpbrk(mode, "wa+") != nullptr; }

}  // namespace

PowerLossEnv::PowerLossEnv(vireline::Env* target) : EnvWrapper(target) {}

void PowerLossEnv::CutPowerAfter(int steps) { mCutAfter = mSteps + steps; }

void PowerLossEnv::Forget() {
  mSteps = 0;
  mCutAfter = -1;
  mSynced.clear();
  mNames.clear();
}

bool PowerLossEnv::PowerOn() { return mCutAfter < 0 || mSteps < mCutAfter; }

bool PowerLossEnv::Step() {
  if (!PowerOn()) return false;
  ++mSteps;
  return true;
}

bool PowerLossEnv::Read(const std::string& path, std::string* content) {
  FILE* file = nullptr;
  content->clear();
  if (!target()->OpenStream(path, "rb", &file).ok()) return false;
  char buffer[4096];
  size_t got;
  while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0) content->append(buffer, got);
  target()->CloseStream(file);
  return true;
}

void PowerLossEnv::Write(const std::string& path, const std::string& content) {
  FILE* file = nullptr;
  if (!target()->OpenStream(path, "wb", &file).ok()) return;
  std::fwrite(content.data(), 1, content.size(), file);
  target()->CloseStream(file);
}

void PowerLossEnv::Track(const std::string& path) {
  if (mSynced.count(path) != 0 || mNames.count(path) != 0) return;
  DurableName name;
  name.existed = Read(path, &name.content);
  if (name.existed) mSynced[path] = name.content;
  mNames[path] = name;
}

void PowerLossEnv::Change(const std::string& path) {
  Track(path);
  DurableName& name = mNames[path];
  if (name.pending) return;
  name.pending = true;
  auto synced = mSynced.find(path);
  name.existed = synced != mSynced.end();
  name.content = name.existed ? synced->second : std::string();
}

Result PowerLossEnv::OpenStream(const std::string& path, const char* mode, FILE** stream) {
  if (Writes(mode)) {
    if (!PowerOn()) return Result::Error(EIO);
    Track(path);
    if (mSynced.count(path) == 0) {  // a new file: its name waits for a folder sync
      Change(path);
      mSynced[path] = std::string();
    }
  }
  Result result = target()->OpenStream(path, mode, stream);
  if (result.ok()) mStreams[*stream] = path;
  return result;
}

Result PowerLossEnv::CloseStream(FILE* stream) {
  mStreams.erase(stream);
  return target()->CloseStream(stream);
}

Result PowerLossEnv::SyncStream(FILE* stream) {
  if (!Step()) return Result::Error(EIO);
  Result result = target()->SyncStream(stream);
  auto found = mStreams.find(stream);
  if (result.ok() && found != mStreams.end()) Read(found->second, &mSynced[found->second]);
  return result;
}

Result PowerLossEnv::AppendToStream(FILE* stream, const void* data, size_t size) {
  if (!PowerOn()) return Result::Error(EIO);
  return target()->AppendToStream(stream, data, size);
}

Result PowerLossEnv::AppendToFile(const std::string& path, const void* data, size_t size) {
  if (!PowerOn()) return Result::Error(EIO);
  Track(path);
  return target()->AppendToFile(path, data, size);
}

Result PowerLossEnv::RemoveFile(const std::string& path) {
  if (!Step()) return Result::Error(EIO);
  Change(path);
  Result result = target()->RemoveFile(path);
  if (result.ok()) mSynced.erase(path);
  return result;
}

Result PowerLossEnv::Rename(const std::string& from, const std::string& to) {
  if (!Step()) return Result::Error(EIO);
  Change(from);
  Change(to);
  Result result = target()->Rename(from, to);
  if (!result.ok()) return result;
  auto moved = mSynced.find(from);
  if (moved != mSynced.end()) {
    mSynced[to] = moved->second;
    mSynced.erase(moved);
  } else {
    mSynced.erase(to);
  }
  return result;
}

Result PowerLossEnv::SyncDir(const std::string& path) {
  if (!Step()) return Result::Error(EIO);
  Result result = target()->SyncDir(path);
  if (!result.ok()) return result;
  for (auto& entry : mNames) {
    if (FolderOf(entry.first) == path) entry.second.pending = false;
  }
  return result;
}

void PowerLossEnv::DropUnsyncedData() {
  for (const auto& entry : mNames) {
    const std::string& path = entry.first;
    const DurableName& name = entry.second;
    bool exists;
    std::string content;
    if (name.pending) {
      exists = name.existed;
      content = name.content;
    } else {
      auto synced = mSynced.find(path);
      exists = synced != mSynced.end();
      if (exists) content = synced->second;
    }
    if (exists) {
      Write(path, content);
    } else {
      target()->RemoveFile(path);
    }
  }
  Forget();
}
