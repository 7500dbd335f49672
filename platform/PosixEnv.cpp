// The POSIX implementation of Env, working on host paths. The only code in the
// library that calls the C library's file, folder, socket and process functions.
#include <dirent.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "platform/DeviceRootEnv.h"
#include "platform/Env.h"
#include "platform/PosixFiles.h"

namespace vireline {
namespace {

Result OkUnless(bool failed, const std::string& path = std::string()) {
  return failed ? PosixError(path) : Result::Ok();
}

FileType TypeOf(mode_t mode) {
  if (S_ISREG(mode)) return FileType::kRegular;
  if (S_ISDIR(mode)) return FileType::kDirectory;
  if (S_ISLNK(mode)) return FileType::kSymbolicLink;
  return FileType::kOther;
}

// The type readdir reports; file systems that do not report one are asked with lstat.
FileType EntryType(const std::string& prefix, const struct dirent64& entry) {
  switch (entry.d_type) {
    case DT_REG: return FileType::kRegular;
    case DT_DIR: return FileType::kDirectory;
    case DT_LNK: return FileType::kSymbolicLink;
    case DT_UNKNOWN: break;
    default: return FileType::kOther;
  }
  struct stat64 st;
  return ::lstat64((prefix + entry.d_name).c_str(), &st) == 0 ? TypeOf(st.st_mode) : FileType::kOther;
}

class PosixEnv : public Env {
 public:
  Result NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) override {
    return NewPosixSequentialFile(path, file);
  }

  Result NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) override {
    return NewPosixWritableFile(path, O_TRUNC, file);
  }

  Result NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) override {
    return NewPosixWritableFile(path, O_EXCL, file);
  }

  Result NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) override {
    return NewPosixRandomRWFile(path, file);
  }

  Result OpenStream(const std::string& path, const char* mode, FILE** stream) override {
    *stream = ::fopen64(path.c_str(), mode);
    return OkUnless(*stream == nullptr, path);
  }

  Result CloseStream(FILE* stream) override { return OkUnless(std::fclose(stream) != 0); }

  // Without waiting: a FIFO where a file is looked for must not stop the lookup.
  bool OpensForReading(const std::string& path) override {
    int fd = ::open64(path.c_str(), O_RDONLY | O_NONBLOCK);
    if (fd < 0) return false;
    ::close(fd);
    return true;
  }

  Result AppendToFile(const std::string& path, const void* data, size_t size) override {
    int fd = ::open64(path.c_str(), O_RDWR);
    if (fd < 0) return PosixError(path);
    AppendToDescriptor(fd, data, size, path);
    ::close(fd);
    return Result::Ok();
  }

  Result Stat(const std::string& path, FileInfo* info) override {
    struct stat64 st;
    if (::stat64(path.c_str(), &st) != 0) return PosixError(path);
    info->type = TypeOf(st.st_mode);
    info->size = static_cast<uint64_t>(st.st_size);
    info->mode = static_cast<uint32_t>(st.st_mode & 07777);
    return Result::Ok();
  }

  Result LinkStat(const std::string& path, FileInfo* info) override {
    struct stat64 st;
    if (::lstat64(path.c_str(), &st) != 0) return PosixError(path);
    info->type = TypeOf(st.st_mode);
    info->size = static_cast<uint64_t>(st.st_size);
    info->mode = static_cast<uint32_t>(st.st_mode & 07777);
    return Result::Ok();
  }

  Result MakeDir(const std::string& path, uint32_t mode) override {
    return OkUnless(::mkdir(path.c_str(), mode) != 0, path);
  }

  Result RemoveDir(const std::string& path) override { return OkUnless(::rmdir(path.c_str()) != 0, path); }

  Result RemoveFile(const std::string& path) override { return OkUnless(::unlink(path.c_str()) != 0, path); }

  Result Rename(const std::string& from, const std::string& to) override {
    return OkUnless(std::rename(from.c_str(), to.c_str()) != 0, from);
  }

  Result ChangeMode(const std::string& path, uint32_t mode) override {
    return OkUnless(::chmod(path.c_str(), mode) != 0, path);
  }

  Result ListDir(const std::string& path, std::vector<std::string>* names) override {
    names->clear();
    DIR* dir = ::opendir(path.c_str());
    if (dir == nullptr) return PosixError(path);
    while (struct dirent64* entry = ::readdir64(dir)) {
      if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
        names->push_back(entry->d_name);
      }
    }
    ::closedir(dir);
    return Result::Ok();
  }

  Result ListDirEntries(const std::string& path, std::vector<DirEntry>* entries) override {
    entries->clear();
    DIR* dir = ::opendir(path.c_str());
    if (dir == nullptr) return PosixError(path);
    std::string prefix = path.empty() || path.back() == '/' ? path : path + "/";
    while (struct dirent64* found = ::readdir64(dir)) {
      if (std::strcmp(found->d_name, ".") == 0 || std::strcmp(found->d_name, "..") == 0) continue;
      DirEntry entry;
      entry.name = found->d_name;
      entry.type = EntryType(prefix, *found);
      entries->push_back(std::move(entry));
    }
    ::closedir(dir);
    return Result::Ok();
  }

  Result SyncDir(const std::string& path) override {
    int fd = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return PosixError(path);
    Result result = OkUnless(::fsync(fd) != 0, path);
    ::close(fd);
    return result;
  }

  Result StatFs(const std::string& path, FsInfo* info) override {
    struct statvfs64 fs;
    if (::statvfs64(path.c_str(), &fs) != 0) return PosixError(path);
    info->blockSize = fs.f_bsize;
    info->blocksAvailable = fs.f_bavail;
    return Result::Ok();
  }

  Result RunCommand(const std::string& command, int* exitStatus) override {
    int status = std::system(command.c_str());
    if (status == -1) return PosixError();
    *exitStatus = status;
    return Result::Ok();
  }

  Result CreateLocalSocket(int* socket) override {
    *socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    return OkUnless(*socket < 0);
  }

  Result ConnectLocalSocket(int socket, const std::string& path) override {
    struct sockaddr_un address;
    std::memset(&address, 0, sizeof address);
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return Result::Error(ENAMETOOLONG);
    std::memcpy(address.sun_path, path.c_str(), path.size());
    return OkUnless(::connect(socket, reinterpret_cast<struct sockaddr*>(&address), sizeof address) != 0);
  }

  Result Send(int socket, const void* data, size_t length, size_t* sent) override {
    ssize_t count = ::send(socket, data, length, MSG_NOSIGNAL);
    *sent = count < 0 ? 0 : static_cast<size_t>(count);
    return OkUnless(count < 0);
  }

  Result Receive(int socket, void* data, size_t length, size_t* received) override {
    ssize_t count = ::recv(socket, data, length, 0);
    *received = count < 0 ? 0 : static_cast<size_t>(count);
    return OkUnless(count < 0);
  }

  Result CloseSocket(int socket) override { return OkUnless(::close(socket) != 0); }

  uint64_t NowMicros() override {
    struct timespec now;
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000000u + static_cast<uint64_t>(now.tv_nsec) / 1000u;
  }

  int64_t WallClockSeconds() override { return static_cast<int64_t>(std::time(nullptr)); }

  int64_t ProcessorClock() override { return static_cast<int64_t>(std::clock()); }

  std::string GetEnvironment(const std::string& name) override {
    const char* value = std::getenv(name.c_str());
    return value ? value : "";
  }
};

}  // namespace

Env* Env::Host() {
  static PosixEnv* hostEnv = new PosixEnv;  // never destroyed: used until exit
  return hostEnv;
}

Env* Env::Default() {
  static DeviceRootEnv* deviceEnv = new DeviceRootEnv(Host());  // never destroyed: used until exit
  return deviceEnv;
}

}  // namespace vireline
