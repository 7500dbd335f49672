// Maps every device path onto the host folder chosen as the device root.
#ifndef VIRELINE_PLATFORM_DEVICEROOTENV_H_
#define VIRELINE_PLATFORM_DEVICEROOTENV_H_

#include "platform/Env.h"

namespace vireline {

class DeviceRootEnv : public EnvWrapper {
 public:
  // Wraps `hostEnv`, which works on host paths.
  explicit DeviceRootEnv(Env* hostEnv) : EnvWrapper(hostEnv) {}

  Result NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) override;
  Result NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) override;
  Result NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) override;
  Result NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) override;
  Result OpenStream(const std::string& path, const char* mode, FILE** stream) override;
  bool OpensForReading(const std::string& path) override;
  Result AppendToFile(const std::string& path, const void* data, size_t size) override;
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
  Result ConnectLocalSocket(int socket, const std::string& path) override;

 private:
  template <typename Open>
  Result OpenExisting(const std::string& path, Open open);
};

// `command` with its first word mapped into the device root when it is an
// absolute device path (quoted for the shell, links resolved inside the root);
// otherwise unchanged. Empty when that path cannot be resolved (a link loop,
// a missing folder on the way).
std::string MapDeviceCommand(const std::string& command);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_DEVICEROOTENV_H_
