#include "platform/DeviceRootEnv.h"

#include <cerrno>

#include "platform/DeviceRoot.h"

namespace vireline {

std::string MapDeviceCommand(const std::string& command) {
  if (command.empty() || command[0] != '/') return command;
  size_t end = command.find_first_of(" \t");
  if (end == std::string::npos) end = command.size();
  std::string program = MapDevicePath(command.substr(0, end));
  if (program == command.substr(0, end)) return command;
  std::string quoted = "'";
  for (char c : program) quoted += (c == '\'') ? std::string("'\\''") : std::string(1, c);
  return quoted + "'" + command.substr(end);
}

namespace {

// Each thread maps paths into one buffer of its own, so the appends and
// lookups that run all the time allocate nothing, and the buffer keeps the
// device path and root it was made from, so the same path again (a log
// append) is not mapped again. A mapping made while the buffer is taken (a
// nested call) gets a string of its own.
struct MappingBuffer {
  std::string text;
  std::string devicePath;
  const std::string* root = nullptr;  // roots live until the process ends
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

// Calls `use` with the host path of `devicePath`; under the real root "/" with
// `devicePath` itself, so a device pays nothing for the mapping.
template <typename Use>
auto OnHostPath(const std::string& devicePath, Use use) {
  const std::string& root = CurrentDeviceRoot();
  if (root.empty() || devicePath.empty()) return use(devicePath);
  BufferLease lease;
  MappingBuffer* buffer = lease.get();
  if (buffer == nullptr) return use(MapBelowRoot(root, devicePath));
  if (buffer->root != &root || buffer->devicePath != devicePath) {
    buffer->root = nullptr;  // until the new mapping is complete
    MapBelowRootInto(root, devicePath, &buffer->text);
    buffer->devicePath = devicePath;
    buffer->root = &root;
  }
  return use(buffer->text);
}

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
  return OnHostPath(path, [&](const std::string& host) {
    if (!CurrentDeviceRoot().empty()) {
      Result refused = RefuseSpecialFile(target(), host);
      if (!refused.ok()) return refused.OnPath(path);
    }
    return open(host).OnPath(path);
  });
}

Result DeviceRootEnv::NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) {
  return OpenExisting(path, [&](const std::string& host) { return target()->NewSequentialFile(host, file); });
}
Result DeviceRootEnv::NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) {
  return OpenExisting(path, [&](const std::string& host) { return target()->NewRandomRWFile(host, file); });
}
Result DeviceRootEnv::NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) {
  return OnHostPath(path, [&](const std::string& host) { return target()->NewWritableFile(host, file).OnPath(path); });
}
Result DeviceRootEnv::NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) {
  return OnHostPath(path, [&](const std::string& host) { return target()->NewExclusiveFile(host, file).OnPath(path); });
}

Result DeviceRootEnv::OpenStream(const std::string& path, const char* mode, FILE** stream) {
  *stream = nullptr;
  return OnHostPath(path, [&](const std::string& host) {
    // Writers make fresh temporary files; the files a reader expects are checked.
    if (!CurrentDeviceRoot().empty() && mode != nullptr && mode[0] == 'r') {
      Result refused = RefuseSpecialFile(target(), host);
      if (!refused.ok()) return refused;
    }
    return target()->OpenStream(host, mode, stream);
  });
}
bool DeviceRootEnv::OpensForReading(const std::string& path) {
  return OnHostPath(path, [&](const std::string& host) { return target()->OpensForReading(host); });
}
Result DeviceRootEnv::AppendToFile(const std::string& path, const void* data, size_t size) {
  return OnHostPath(path, [&](const std::string& host) { return target()->AppendToFile(host, data, size); });
}
Result DeviceRootEnv::Stat(const std::string& path, FileInfo* info) {
  return OnHostPath(path, [&](const std::string& host) { return target()->Stat(host, info); });
}
Result DeviceRootEnv::LinkStat(const std::string& path, FileInfo* info) {
  return OnHostPath(path, [&](const std::string& host) { return target()->LinkStat(host, info); });
}
Result DeviceRootEnv::MakeDir(const std::string& path, uint32_t mode) {
  return OnHostPath(path, [&](const std::string& host) { return target()->MakeDir(host, mode); });
}
Result DeviceRootEnv::RemoveDir(const std::string& path) {
  return OnHostPath(path, [&](const std::string& host) { return target()->RemoveDir(host); });
}
Result DeviceRootEnv::RemoveFile(const std::string& path) {
  return OnHostPath(path, [&](const std::string& host) { return target()->RemoveFile(host); });
}
Result DeviceRootEnv::Rename(const std::string& from, const std::string& to) {
  return target()->Rename(MapDevicePath(from), MapDevicePath(to));
}
Result DeviceRootEnv::ChangeMode(const std::string& path, uint32_t mode) {
  return OnHostPath(path, [&](const std::string& host) { return target()->ChangeMode(host, mode); });
}
Result DeviceRootEnv::ListDir(const std::string& path, std::vector<std::string>* names) {
  return OnHostPath(path, [&](const std::string& host) { return target()->ListDir(host, names); });
}

Result DeviceRootEnv::ListDirEntries(const std::string& path, std::vector<DirEntry>* entries) {
  return OnHostPath(path, [&](const std::string& host) { return target()->ListDirEntries(host, entries); });
}
Result DeviceRootEnv::SyncDir(const std::string& path) {
  return OnHostPath(path, [&](const std::string& host) { return target()->SyncDir(host); });
}
Result DeviceRootEnv::StatFs(const std::string& path, FsInfo* info) {
  return OnHostPath(path, [&](const std::string& host) { return target()->StatFs(host, info); });
}
Result DeviceRootEnv::RunCommand(const std::string& command, int* exitStatus) {
  return target()->RunCommand(MapDeviceCommand(command), exitStatus);
}
Result DeviceRootEnv::ConnectLocalSocket(int socket, const std::string& path) {
  return OnHostPath(path, [&](const std::string& host) { return target()->ConnectLocalSocket(socket, host); });
}

}  // namespace vireline
