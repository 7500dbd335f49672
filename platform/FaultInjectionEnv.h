// A test double that makes chosen platform operations fail on a countdown, so
// tests can prove that a failing disk, flash or socket loses nothing. Files
// it opens move a byte at a time, so every byte is one countable read or write.
// Nothing of it runs unless a test installs it with Env::SetCurrent.
#ifndef VIRELINE_PLATFORM_FAULTINJECTIONENV_H_
#define VIRELINE_PLATFORM_FAULTINJECTIONENV_H_

#include <cerrno>
#include <cstdint>
#include <mutex>

#include "platform/Env.h"

namespace vireline {

class FaultInjectionEnv : public EnvWrapper {
 public:
  enum Op {
    kOpen, kRead, kWrite, kSync, kClose, kErase, kStat, kMakeDir, kRemove, kRename,
    kChangeMode, kListDir, kSyncDir, kStatFs, kRunCommand, kSocket, kConnect, kSend,
    kReceive, kOpCount
  };

  // Wraps `target`; no fault is armed.
  explicit FaultInjectionEnv(Env* target);
  ~FaultInjectionEnv() override;

  // Lets `successes` more calls of `op` succeed, then fails calls of `op` with
  // `error`: only the next one when `once`, else every later one.
  void FailAfter(Op op, int successes, int error = EIO, bool once = false);

  // Disarms every fault and clears the call counts.
  void Reset();

  // Calls of `op` seen since construction or Reset.
  int Calls(Op op) const;

  // Answers WallClockSeconds with `seconds` from now on.
  void SetWallClockSeconds(int64_t seconds);

  // Answers NowMicros with `micros` from now on.
  void SetNowMicros(uint64_t micros);

  // Answers ProcessorClock with `ticks` from now on.
  void SetProcessorClock(int64_t ticks);

  // Checks an operation against its armed fault; sets errno when it fails.
  Result Check(Op op);

  Result NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) override;
  Result NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) override;
  Result NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) override;
  Result NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) override;
  Result OpenStream(const std::string& path, const char* mode, FILE** stream) override;
  Result CloseStream(FILE* stream) override;
  Result Stat(const std::string& path, FileInfo* info) override;
  Result LinkStat(const std::string& path, FileInfo* info) override;
  Result MakeDir(const std::string& path, uint32_t mode) override;
  Result RemoveDir(const std::string& path) override;
  Result RemoveFile(const std::string& path) override;
  Result Rename(const std::string& from, const std::string& to) override;
  Result ChangeMode(const std::string& path, uint32_t mode) override;
  Result ListDir(const std::string& path, std::vector<std::string>* names) override;
  Result ListDirEntries(const std::string& path, std::vector<DirEntry>* entries) override;
  Result SyncDir(const std::string& path) override;
  Result StatFs(const std::string& path, FsInfo* info) override;
  Result RunCommand(const std::string& command, int* exitStatus) override;
  Result CreateLocalSocket(int* socket) override;
  Result ConnectLocalSocket(int socket, const std::string& path) override;
  Result Send(int socket, const void* data, size_t length, size_t* sent) override;
  Result Receive(int socket, void* data, size_t length, size_t* received) override;
  uint64_t NowMicros() override;
  int64_t WallClockSeconds() override;
  int64_t ProcessorClock() override;

 private:
  struct Fault {
    bool armed = false;
    int remaining = 0;
    int error = EIO;
    bool once = false;
  };
  // Runs `call` unless the fault armed for `op` fires.
  template <typename Call>
  Result Guard(Op op, Call call);

  mutable std::mutex mMutex;
  Fault mFaults[kOpCount];
  int mCalls[kOpCount] = {};
  bool mFakeWallClock = false;
  int64_t mWallClockSeconds = 0;
  bool mFakeNowMicros = false;
  uint64_t mNowMicros = 0;
  bool mFakeProcessorClock = false;
  int64_t mProcessorClock = 0;
};

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_FAULTINJECTIONENV_H_
