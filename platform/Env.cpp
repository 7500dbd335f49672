#include "platform/Env.h"

#include <atomic>

namespace vireline {
namespace {

std::atomic<Env*> gCurrentEnv{nullptr};

// How much ReadToString asks for first when the file cannot tell its size:
// small files are the common case.
const size_t kFirstUnhintedStep = 4096;

// The first amount ReadToString asks for: the whole file and one byte more
// (to meet its end at once) when it tells a size below `limit`.
size_t FirstStep(SequentialFile* file, size_t limit) {
  uint64_t size = 0;
  if (!SizeHintOf(file, &size) || size == 0 || size >= limit) return kFirstUnhintedStep;
  return static_cast<size_t>(size) + 1;
}

}  // namespace

Env::~Env() = default;
SequentialFile::~SequentialFile() = default;
WritableFile::~WritableFile() = default;
RandomRWFile::~RandomRWFile() = default;

bool SizeHintOf(SequentialFile* file, uint64_t* size) {
  auto* hinting = dynamic_cast<SizeHinting*>(file);
  return hinting != nullptr && hinting->SizeHint(size);
}

Result ReadFully(SequentialFile* file, size_t n, char* scratch, size_t* got) {
  *got = 0;
  while (*got < n) {
    size_t count = 0;
    Result result = file->Read(n - *got, scratch + *got, &count);
    if (!result.ok()) return result;
    if (count == 0) break;
    *got += count;
  }
  return Result::Ok();
}

Result CopyToEnd(SequentialFile* in, WritableFile* out) {
  char buffer[4096];
  for (;;) {
    size_t count = 0;
    Result result = in->Read(sizeof buffer, buffer, &count);
    if (!result.ok() || count == 0) return result;
    result = out->Append(buffer, count);
    if (!result.ok()) return result;
  }
}

Result ReadToString(SequentialFile* file, size_t limit, std::string* bytes) {
  bytes->clear();
  // The step doubles from there, for files longer than they said or could tell.
  size_t step = FirstStep(file, limit);
  while (bytes->size() < limit) {
    size_t at = bytes->size();
    size_t want = limit - at < step ? limit - at : step;
    if (step < 1024 * 1024) step *= 2;
    bytes->resize(at + want);
    size_t got = 0;
    Result result = ReadFully(file, want, &(*bytes)[at], &got);
    bytes->resize(at + got);
    if (!result.ok()) return result;
    if (got < want) break;
  }
  return Result::Ok();
}

Result ReadFullyAt(RandomRWFile* file, uint64_t offset, size_t n, char* scratch, size_t* got) {
  *got = 0;
  while (*got < n) {
    size_t count = 0;
    Result result = file->Read(offset + *got, n - *got, scratch + *got, &count);
    if (!result.ok()) return result;
    if (count == 0) break;
    *got += count;
  }
  return Result::Ok();
}

Env* Env::Current() {
  Env* env = gCurrentEnv.load(std::memory_order_acquire);
  return env ? env : Default();
}

void Env::SetCurrent(Env* env) { gCurrentEnv.store(env, std::memory_order_release); }

bool Env::OpensForReading(const std::string& path) {
  std::unique_ptr<SequentialFile> file;
  return NewSequentialFile(path, &file).ok();
}

Result Env::AppendToFile(const std::string& path, const void* data, size_t size) {
  std::unique_ptr<RandomRWFile> file;
  Result opened = NewRandomRWFile(path, &file);
  if (!opened.ok()) return opened;
  file->AppendAtEnd(data, size);
  file->Close();
  return opened;
}

bool PathExists(const std::string& path) {
  FileInfo info;
  return Env::Current()->Stat(path, &info).ok();
}

bool IsSymbolicLink(const std::string& path) {
  FileInfo info;
  return Env::Current()->LinkStat(path, &info).ok() && info.type == FileType::kSymbolicLink;
}

Result EnvWrapper::NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) {
  return mTarget->NewSequentialFile(path, file);
}
Result EnvWrapper::NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) {
  return mTarget->NewWritableFile(path, file);
}
Result EnvWrapper::NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) {
  return mTarget->NewExclusiveFile(path, file);
}
Result EnvWrapper::NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) {
  return mTarget->NewRandomRWFile(path, file);
}
Result EnvWrapper::OpenStream(const std::string& path, const char* mode, FILE** stream) {
  return mTarget->OpenStream(path, mode, stream);
}
Result EnvWrapper::CloseStream(FILE* stream) { return mTarget->CloseStream(stream); }
Result EnvWrapper::Stat(const std::string& path, FileInfo* info) { return mTarget->Stat(path, info); }
Result EnvWrapper::LinkStat(const std::string& path, FileInfo* info) { return mTarget->LinkStat(path, info); }
Result EnvWrapper::MakeDir(const std::string& path, uint32_t mode) { return mTarget->MakeDir(path, mode); }
Result EnvWrapper::RemoveDir(const std::string& path) { return mTarget->RemoveDir(path); }
Result EnvWrapper::RemoveFile(const std::string& path) { return mTarget->RemoveFile(path); }
Result EnvWrapper::Rename(const std::string& from, const std::string& to) { return mTarget->Rename(from, to); }
Result EnvWrapper::ChangeMode(const std::string& path, uint32_t mode) { return mTarget->ChangeMode(path, mode); }
Result EnvWrapper::ListDir(const std::string& path, std::vector<std::string>* names) {
  return mTarget->ListDir(path, names);
}

Result EnvWrapper::ListDirEntries(const std::string& path, std::vector<DirEntry>* entries) {
  return mTarget->ListDirEntries(path, entries);
}
Result EnvWrapper::SyncDir(const std::string& path) { return mTarget->SyncDir(path); }
Result EnvWrapper::StatFs(const std::string& path, FsInfo* info) { return mTarget->StatFs(path, info); }
Result EnvWrapper::RunCommand(const std::string& command, int* exitStatus) {
  return mTarget->RunCommand(command, exitStatus);
}
Result EnvWrapper::CreateLocalSocket(int* socket) { return mTarget->CreateLocalSocket(socket); }
Result EnvWrapper::ConnectLocalSocket(int socket, const std::string& path) {
  return mTarget->ConnectLocalSocket(socket, path);
}
Result EnvWrapper::Send(int socket, const void* data, size_t length, size_t* sent) {
  return mTarget->Send(socket, data, length, sent);
}
Result EnvWrapper::Receive(int socket, void* data, size_t length, size_t* received) {
  return mTarget->Receive(socket, data, length, received);
}
Result EnvWrapper::CloseSocket(int socket) { return mTarget->CloseSocket(socket); }
uint64_t EnvWrapper::NowMicros() { return mTarget->NowMicros(); }
int64_t EnvWrapper::WallClockSeconds() { return mTarget->WallClockSeconds(); }
int64_t EnvWrapper::ProcessorClock() { return mTarget->ProcessorClock(); }
std::string EnvWrapper::GetEnvironment(const std::string& name) { return mTarget->GetEnvironment(name); }

}  // namespace vireline
