#include "platform/DeviceRootEnv.h"

#include <cerrno>

#include "platform/DeviceRoot.h"
#include "platform/RootResolver.h"

namespace vireline {

std::string MapDeviceCommand(const std::string& command) {
  if (command.empty() || command[0] != '/') return command;
  size_t end = command.find_first_of(" \t");
  if (end == std::string::npos) end = command.size();
  std::string device = command.substr(0, end);
  std::string program = MapDevicePath(device);
  if (program == device) return command;
  // A link to a missing program gives the missing path inside the root, which
  // the shell reports; a path that does not resolve at all runs nothing.
  if (!ResolveBelowRoot(CurrentDeviceRoot(), device, LastComponent::kFollowOrCreate, &program).ok()) return "";
  std::string quoted = "'";
  for (char c : program) quoted += (c == '\'') ? std::string("'\\''") : std::string(1, c);
  return quoted + "'" + command.substr(end);
}

namespace {

// Each thread maps paths into one buffer of its own, so the appends and
// lookups that run all the time allocate nothing. A mapping made while the
// buffer is taken (a nested call) gets a string of its own. Every call maps
// its path again: a link may have appeared on the way since the last one.
struct MappingBuffer {
  std::string text;
  bool taken = false;
};

thread_local MappingBuffer tMappingBuffer;

// Takes the thread's buffer for one mapping and gives it back.
class BufferLease {
 public:
  BufferLease() : mBuffer(tMappingBuffer.taken ? nullptr : &tMappingBuffer) {
    if (mBuffer != nullptr) mBuffer->taken = true;
  }
  ~BufferLease() {
    if (mBuffer != nullptr) mBuffer->taken = false;
  }
  BufferLease(const BufferLease&) = delete;
  BufferLease& operator=(const BufferLease&) = delete;

  // The buffer, or null when it was taken.
  MappingBuffer* get() const { return mBuffer; }

 private:
  MappingBuffer* mBuffer;
};

// What an operation answers when its path cannot be resolved.
template <typename Answer>
Answer FailedAnswer(const Result& failure) {
  return failure;
}
template <>
bool FailedAnswer<bool>(const Result&) {
  return false;
}

// Calls `use` with the host path of `devicePath`, resolved inside the root
// (links included, see ResolveBelowRoot); under the real root "/" with
// `devicePath` itself, so a device pays nothing for the mapping.
template <typename Use>
auto OnHostPath(const std::string& devicePath, LastComponent last, Use use) {
  const std::string& root = CurrentDeviceRoot();
  if (root.empty() || devicePath.empty()) return use(devicePath);
  BufferLease lease;
  std::string own;
  std::string* host = lease.get() != nullptr ? &lease.get()->text : &own;
  Result resolved = ResolveBelowRoot(root, devicePath, last, host);
  if (!resolved.ok()) return FailedAnswer<decltype(use(*host))>(resolved);
  return use(*host);
}

constexpr LastComponent kFollow = LastComponent::kFollowExisting;
constexpr LastComponent kKeep = LastComponent::kKeep;

}  // namespace

// Under a host folder standing in for a device, a FIFO, socket or device node
// where the image should hold a file would block its reader or feed it
// without end ("/dev/urandom"): it is refused (ENXIO) before it is opened. On
// a device (root "/") nothing is checked: its partitions are character devices.
namespace {
Result RefuseSpecialFile(Env* host, const std::string& hostPath) {
  FileInfo info;
  if (host->Stat(hostPath, &info).ok() && info.type == FileType::kOther) return Result::Error(ENXIO);
  return Result::Ok();
}
}  // namespace

// Opens an existing file for `open` at the host path of `path`, refusing
// special files first as OpenStream does for reading modes; failures name `path`.
template <typename Open>
Result DeviceRootEnv::OpenExisting(const std::string& path, Open open) {
  return OnHostPath(path, kFollow, [&](const std::string& host) {
    if (!CurrentDeviceRoot().empty()) {
      Result refused = RefuseSpecialFile(target(), host);
      if (!refused.ok()) return refused.OnPath(path);
    }
    return open(host).OnPath(path);
  }).OnPath(path);
}

Result DeviceRootEnv::NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) {
  file->reset();
  Result opened;
  const std::string& root = CurrentDeviceRoot();
  if (!root.empty() && !path.empty() && ReadBelowRoot(root, path, file, &opened)) return opened;
  return OpenExisting(path, [&](const std::string& host) { return target()->NewSequentialFile(host, file); });
}
Result DeviceRootEnv::NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) {
  return OpenExisting(path, [&](const std::string& host) { return target()->NewRandomRWFile(host, file); });
}
Result DeviceRootEnv::NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) {
  return OnHostPath(path, LastComponent::kFollowOrCreate,
                    [&](const std::string& host) { return target()->NewWritableFile(host, file); })
      .OnPath(path);
}
Result DeviceRootEnv::NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) {
  return OnHostPath(path, LastComponent::kFollowOrCreate,
                    [&](const std::string& host) { return target()->NewExclusiveFile(host, file); })
      .OnPath(path);
}

Result DeviceRootEnv::OpenStream(const std::string& path, const char* mode, FILE** stream) {
  *stream = nullptr;
  bool reads = mode != nullptr && mode[0] == 'r';
  return OnHostPath(path, reads ? kFollow : LastComponent::kFollowOrCreate, [&](const std::string& host) {
    // Writers make fresh temporary files; the files a reader expects are checked.
    if (!CurrentDeviceRoot().empty() && reads) {
      Result refused = RefuseSpecialFile(target(), host);
      if (!refused.ok()) return refused;
    }
    return target()->OpenStream(host, mode, stream);
  });
}
bool DeviceRootEnv::OpensForReading(const std::string& path) {
  bool opens = false;
  const std::string& root = CurrentDeviceRoot();
  if (!root.empty() && !path.empty() && ProbeBelowRoot(root, path, &opens)) return opens;
  return OnHostPath(path, kFollow, [&](const std::string& host) { return target()->OpensForReading(host); });
}
Result DeviceRootEnv::AppendToFile(const std::string& path, const void* data, size_t size) {
  Result appended;
  const std::string& root = CurrentDeviceRoot();
  if (!root.empty() && !path.empty() && AppendBelowRoot(root, path, data, size, &appended)) return appended;
  return OnHostPath(path, kFollow, [&](const std::string& host) { return target()->AppendToFile(host, data, size); });
}
Result DeviceRootEnv::Stat(const std::string& path, FileInfo* info) {
  return OnHostPath(path, kFollow, [&](const std::string& host) { return target()->Stat(host, info); });
}
Result DeviceRootEnv::LinkStat(const std::string& path, FileInfo* info) {
  return OnHostPath(path, kKeep, [&](const std::string& host) { return target()->LinkStat(host, info); });
}
Result DeviceRootEnv::MakeDir(const std::string& path, uint32_t mode) {
  return OnHostPath(path, kKeep, [&](const std::string& host) { return target()->MakeDir(host, mode); });
}
Result DeviceRootEnv::RemoveDir(const std::string& path) {
  return OnHostPath(path, kKeep, [&](const std::string& host) { return target()->RemoveDir(host); });
}
Result DeviceRootEnv::RemoveFile(const std::string& path) {
  return OnHostPath(path, kKeep, [&](const std::string& host) { return target()->RemoveFile(host); });
}
Result DeviceRootEnv::Rename(const std::string& from, const std::string& to) {
  const std::string& root = CurrentDeviceRoot();
  if (root.empty()) return target()->Rename(from, to);
  if (from.empty() || to.empty()) return Result::Error(ENOENT);
  std::string hostFrom;
  std::string hostTo;
  Result resolved = ResolveRenameBelowRoot(root, from, to, &hostFrom, &hostTo);
  if (!resolved.ok()) return resolved;
  return target()->Rename(hostFrom, hostTo);
}
Result DeviceRootEnv::ChangeMode(const std::string& path, uint32_t mode) {
  return OnHostPath(path, kFollow, [&](const std::string& host) { return target()->ChangeMode(host, mode); });
}
// A listing that fails leaves no names, also when its path does not resolve.
Result DeviceRootEnv::ListDir(const std::string& path, std::vector<std::string>* names) {
  names->clear();
  return OnHostPath(path, kFollow, [&](const std::string& host) { return target()->ListDir(host, names); });
}

Result DeviceRootEnv::ListDirEntries(const std::string& path, std::vector<DirEntry>* entries) {
  entries->clear();
  return OnHostPath(path, kFollow, [&](const std::string& host) { return target()->ListDirEntries(host, entries); });
}
Result DeviceRootEnv::SyncDir(const std::string& path) {
  return OnHostPath(path, kFollow, [&](const std::string& host) { return target()->SyncDir(host); });
}
Result DeviceRootEnv::StatFs(const std::string& path, FsInfo* info) {
  return OnHostPath(path, kFollow, [&](const std::string& host) { return target()->StatFs(host, info); });
}
Result DeviceRootEnv::RunCommand(const std::string& command, int* exitStatus) {
  std::string mapped = MapDeviceCommand(command);
  if (mapped.empty() && !command.empty()) {
    *exitStatus = 127 << 8;  // as the shell reports a command it cannot find
    return Result::Ok();
  }
  return target()->RunCommand(mapped, exitStatus);
}
Result DeviceRootEnv::ConnectLocalSocket(int socket, const std::string& path) {
  return OnHostPath(path, kFollow, [&](const std::string& host) { return target()->ConnectLocalSocket(socket, host); });
}

}  // namespace vireline
