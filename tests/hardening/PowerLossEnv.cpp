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
  std::unique_ptr<vireline::SequentialFile> file;
  content->clear();
  if (!target()->NewSequentialFile(path, &file).ok()) return false;
  char buffer[4096];
  size_t got = 0;
  while (file->Read(sizeof buffer, buffer, &got).ok() && got > 0) content->append(buffer, got);
  return true;
}

void PowerLossEnv::Write(const std::string& path, const std::string& content) {
  std::unique_ptr<vireline::WritableFile> file;
  if (!target()->NewWritableFile(path, &file).ok()) return;
  file->Append(content.data(), content.size());
  file->Close();
}

// A file written through the wrapper: a sync is a durability step, after
// which the file's content counts as on disk.
class PowerLossEnv::SyncedWritableFile : public vireline::WritableFile {
 public:
  SyncedWritableFile(PowerLossEnv* env, const std::string& path, std::unique_ptr<vireline::WritableFile> inner)
      : mEnv(env), mPath(path), mInner(std::move(inner)) {}

  Result Append(const void* data, size_t size) override {
    return mEnv->PowerOn() ? mInner->Append(data, size) : Result::Error(EIO);
  }
  Result Flush() override { return mEnv->PowerOn() ? mInner->Flush() : Result::Error(EIO); }
  Result Sync() override {
    if (!mEnv->Step()) return Result::Error(EIO);
    Result result = mInner->Sync();
    if (result.ok()) mEnv->Synced(mPath);
    return result;
  }
  Result Close() override { return mInner->Close(); }

 private:
  PowerLossEnv* mEnv;
  std::string mPath;
  std::unique_ptr<vireline::WritableFile> mInner;
};

// A file changed in place through the wrapper: the same rules as above.
class PowerLossEnv::SyncedRandomRWFile : public vireline::RandomRWFile {
 public:
  SyncedRandomRWFile(PowerLossEnv* env, const std::string& path, std::unique_ptr<vireline::RandomRWFile> inner)
      : mEnv(env), mPath(path), mInner(std::move(inner)) {}

  Result Size(uint64_t* size) override { return mInner->Size(size); }
  Result Read(uint64_t offset, size_t n, char* scratch, size_t* got) override {
    return mInner->Read(offset, n, scratch, got);
  }
  Result Write(uint64_t offset, const void* data, size_t size) override {
    return mEnv->PowerOn() ? mInner->Write(offset, data, size) : Result::Error(EIO);
  }
  Result AppendAtEnd(const void* data, size_t size) override {
    return mEnv->PowerOn() ? mInner->AppendAtEnd(data, size) : Result::Error(EIO);
  }
  Result Erase(uint32_t offset, uint32_t length) override {
    return mEnv->PowerOn() ? mInner->Erase(offset, length) : Result::Error(EIO);
  }
  Result Sync() override {
    if (!mEnv->Step()) return Result::Error(EIO);
    Result result = mInner->Sync();
    if (result.ok()) mEnv->Synced(mPath);
    return result;
  }
  Result Close() override { return mInner->Close(); }

 private:
  PowerLossEnv* mEnv;
  std::string mPath;
  std::unique_ptr<vireline::RandomRWFile> mInner;
};

bool PowerLossEnv::OpeningForWrite(const std::string& path) {
  if (!PowerOn()) return false;
  Track(path);
  if (mSynced.count(path) == 0) {  // a new file: its name waits for a folder sync
    Change(path);
    mSynced[path] = std::string();
  }
  return true;
}

void PowerLossEnv::Synced(const std::string& path) { Read(path, &mSynced[path]); }

Result PowerLossEnv::NewWritableFile(const std::string& path, std::unique_ptr<vireline::WritableFile>* file) {
  file->reset();
  if (!OpeningForWrite(path)) return Result::Error(EIO);
  std::unique_ptr<vireline::WritableFile> inner;
  Result result = target()->NewWritableFile(path, &inner);
  if (result.ok()) file->reset(new SyncedWritableFile(this, path, std::move(inner)));
  return result;
}

Result PowerLossEnv::NewExclusiveFile(const std::string& path, std::unique_ptr<vireline::WritableFile>* file) {
  file->reset();
  if (!OpeningForWrite(path)) return Result::Error(EIO);
  std::unique_ptr<vireline::WritableFile> inner;
  Result result = target()->NewExclusiveFile(path, &inner);
  if (result.ok()) file->reset(new SyncedWritableFile(this, path, std::move(inner)));
  return result;
}

Result PowerLossEnv::NewRandomRWFile(const std::string& path, std::unique_ptr<vireline::RandomRWFile>* file) {
  file->reset();
  if (!OpeningForWrite(path)) return Result::Error(EIO);
  std::unique_ptr<vireline::RandomRWFile> inner;
  Result result = target()->NewRandomRWFile(path, &inner);
  if (result.ok()) file->reset(new SyncedRandomRWFile(this, path, std::move(inner)));
  return result;
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

// A client's stream opened for writing: a new file's name waits for a folder
// sync like any other; the bytes it writes are never synced by the library.
Result PowerLossEnv::OpenStream(const std::string& path, const char* mode, FILE** stream) {
  if (Writes(mode) && !OpeningForWrite(path)) return Result::Error(EIO);
  return target()->OpenStream(path, mode, stream);
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
