#include "platform/FaultInjectionEnv.h"

#include <cstdio>

#include "platform/FaultInjectionFiles.h"

namespace vireline {

FaultInjectionEnv::FaultInjectionEnv(Env* target) : EnvWrapper(target) {}

FaultInjectionEnv::~FaultInjectionEnv() = default;

void FaultInjectionEnv::FailAfter(Op op, int successes, int error, bool once) {
  std::lock_guard<std::mutex> lock(mMutex);
  mFaults[op] = Fault{true, successes, error, once};
}

void FaultInjectionEnv::Reset() {
  std::lock_guard<std::mutex> lock(mMutex);
  for (int op = 0; op < kOpCount; ++op) {
    mFaults[op] = Fault();
    mCalls[op] = 0;
  }
}

int FaultInjectionEnv::Calls(Op op) const {
  std::lock_guard<std::mutex> lock(mMutex);
  return mCalls[op];
}

void FaultInjectionEnv::SetWallClockSeconds(int64_t seconds) {
  std::lock_guard<std::mutex> lock(mMutex);
  mFakeWallClock = true;
  mWallClockSeconds = seconds;
}

void FaultInjectionEnv::SetNowMicros(uint64_t micros) {
  std::lock_guard<std::mutex> lock(mMutex);
  mFakeNowMicros = true;
  mNowMicros = micros;
}

void FaultInjectionEnv::SetProcessorClock(int64_t ticks) {
  std::lock_guard<std::mutex> lock(mMutex);
  mFakeProcessorClock = true;
  mProcessorClock = ticks;
}

Result FaultInjectionEnv::Check(Op op) {
  std::lock_guard<std::mutex> lock(mMutex);
  ++mCalls[op];
  Fault& fault = mFaults[op];
  if (!fault.armed) return Result::Ok();
  if (fault.remaining > 0) {
    --fault.remaining;
    return Result::Ok();
  }
  if (fault.once) fault.armed = false;
  errno = fault.error;
  return Result::Error(fault.error);
}

template <typename Call>
Result FaultInjectionEnv::Guard(Op op, Call call) {
  Result result = Check(op);
  return result.ok() ? call() : result;
}

// Opens through `open` after the kOpen check and hands out `wrap` of the result.
template <typename File, typename Open, typename Wrap>
Result OpenChecked(FaultInjectionEnv* env, std::unique_ptr<File>* file, Open open, Wrap wrap) {
  file->reset();
  Result result = env->Check(FaultInjectionEnv::kOpen);
  std::unique_ptr<File> inner;
  if (result.ok()) result = open(&inner);
  if (result.ok()) *file = wrap(env, std::move(inner));
  return result;
}

Result FaultInjectionEnv::NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) {
  return OpenChecked(this, file, [&](std::unique_ptr<SequentialFile>* inner) {
    return target()->NewSequentialFile(path, inner);
  }, NewFaultSequentialFile);
}

Result FaultInjectionEnv::NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) {
  return OpenChecked(this, file, [&](std::unique_ptr<WritableFile>* inner) {
    return target()->NewWritableFile(path, inner);
  }, NewFaultWritableFile);
}

Result FaultInjectionEnv::NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) {
  return OpenChecked(this, file, [&](std::unique_ptr<WritableFile>* inner) {
    return target()->NewExclusiveFile(path, inner);
  }, NewFaultWritableFile);
}

Result FaultInjectionEnv::NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) {
  return OpenChecked(this, file, [&](std::unique_ptr<RandomRWFile>* inner) {
    return target()->NewRandomRWFile(path, inner);
  }, NewFaultRandomRWFile);
}

// A client's C stream: its open and close are checked; the bytes it moves
// itself are the client's own.
Result FaultInjectionEnv::OpenStream(const std::string& path, const char* mode, FILE** stream) {
  *stream = nullptr;
  return Guard(kOpen, [&] { return target()->OpenStream(path, mode, stream); });
}

// The stream is closed even when the close is made to fail.
Result FaultInjectionEnv::CloseStream(FILE* stream) {
  Result injected = Check(kClose);
  Result closed = target()->CloseStream(stream);
  return injected.ok() ? closed : injected;
}

Result FaultInjectionEnv::Stat(const std::string& path, FileInfo* info) {
  return Guard(kStat, [&] { return target()->Stat(path, info); });
}

Result FaultInjectionEnv::LinkStat(const std::string& path, FileInfo* info) {
  return Guard(kStat, [&] { return target()->LinkStat(path, info); });
}

Result FaultInjectionEnv::MakeDir(const std::string& path, uint32_t mode) {
  return Guard(kMakeDir, [&] { return target()->MakeDir(path, mode); });
}

Result FaultInjectionEnv::RemoveDir(const std::string& path) {
  return Guard(kRemove, [&] { return target()->RemoveDir(path); });
}

Result FaultInjectionEnv::RemoveFile(const std::string& path) {
  return Guard(kRemove, [&] { return target()->RemoveFile(path); });
}

Result FaultInjectionEnv::Rename(const std::string& from, const std::string& to) {
  return Guard(kRename, [&] { return target()->Rename(from, to); });
}

Result FaultInjectionEnv::ChangeMode(const std::string& path, uint32_t mode) {
  return Guard(kChangeMode, [&] { return target()->ChangeMode(path, mode); });
}

Result FaultInjectionEnv::ListDir(const std::string& path, std::vector<std::string>* names) {
  return Guard(kListDir, [&] { return target()->ListDir(path, names); });
}

Result FaultInjectionEnv::ListDirEntries(const std::string& path, std::vector<DirEntry>* entries) {
  return Guard(kListDir, [&] { return target()->ListDirEntries(path, entries); });
}

Result FaultInjectionEnv::SyncDir(const std::string& path) {
  return Guard(kSyncDir, [&] { return target()->SyncDir(path); });
}

Result FaultInjectionEnv::StatFs(const std::string& path, FsInfo* info) {
  return Guard(kStatFs, [&] { return target()->StatFs(path, info); });
}

Result FaultInjectionEnv::RunCommand(const std::string& command, int* exitStatus) {
  return Guard(kRunCommand, [&] { return target()->RunCommand(command, exitStatus); });
}

Result FaultInjectionEnv::CreateLocalSocket(int* socket) {
  return Guard(kSocket, [&] { return target()->CreateLocalSocket(socket); });
}

Result FaultInjectionEnv::ConnectLocalSocket(int socket, const std::string& path) {
  return Guard(kConnect, [&] { return target()->ConnectLocalSocket(socket, path); });
}

Result FaultInjectionEnv::Send(int socket, const void* data, size_t length, size_t* sent) {
  return Guard(kSend, [&] { return target()->Send(socket, data, length, sent); });
}

Result FaultInjectionEnv::Receive(int socket, void* data, size_t length, size_t* received) {
  return Guard(kReceive, [&] { return target()->Receive(socket, data, length, received); });
}

uint64_t FaultInjectionEnv::NowMicros() {
  {
    std::lock_guard<std::mutex> lock(mMutex);
    if (mFakeNowMicros) return mNowMicros;
  }
  return target()->NowMicros();
}

int64_t FaultInjectionEnv::WallClockSeconds() {
  {
    std::lock_guard<std::mutex> lock(mMutex);
    if (mFakeWallClock) return mWallClockSeconds;
  }
  return target()->WallClockSeconds();
}

int64_t FaultInjectionEnv::ProcessorClock() {
  {
    std::lock_guard<std::mutex> lock(mMutex);
    if (mFakeProcessorClock) return mProcessorClock;
  }
  return target()->ProcessorClock();
}

}  // namespace vireline
