#include "platform/RootResolver.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <vector>

#if defined(SYS_openat2) && __has_include(<linux/openat2.h>)
#include <linux/openat2.h>
#define VIRELINE_HAVE_OPENAT2 1
#endif

#include "platform/DeviceRoot.h"
#include "platform/PosixFiles.h"

namespace vireline {
namespace {

// As the kernel's own limit, so a chain that works on a device works here and
// a loop ends.
constexpr int kMaxLinks = 40;

// Cleared once the kernel turns out to lack openat2 (older kernels, qemu-user):
// from then on every path is walked in user space.
std::atomic<bool> gKernelChecks{true};

// Opens host path `host` with `flags` refusing every symbolic link on the way
// (the last one too unless `flags` has O_NOFOLLOW): 0 with *fd set when it
// opened, ELOOP when a link was met, the open's error otherwise. One system call.
int OpenDescriptorWithoutLinks(int folder, const char* host, int flags, int* fd) {
#ifdef VIRELINE_HAVE_OPENAT2
  struct open_how how;
  std::memset(&how, 0, sizeof how);
  how.flags = static_cast<uint64_t>(flags | O_CLOEXEC);
  how.resolve = RESOLVE_NO_SYMLINKS;
  long opened = ::syscall(SYS_openat2, folder, host, &how, sizeof how);
  if (opened < 0) return errno;
  *fd = static_cast<int>(opened);
  return 0;
#else
  (void)folder;
  (void)host;
  (void)flags;
  (void)fd;
  return ENOSYS;
#endif
}

// As OpenDescriptorWithoutLinks, closing what opened: two system calls when
// the path opens, one when it does not.
int OpenWithoutLinks(int folder, const char* host, int flags) {
  int fd = -1;
  int error = OpenDescriptorWithoutLinks(folder, host, flags, &fd);
  if (error == 0) ::close(fd);
  return error;
}

// True when the kernel could not walk the path as asked: no openat2 (ENOSYS,
// or EPERM from a sandbox), flags it does not know, or a link on the way.
bool KernelCannotTell(int error) {
  if (error == ENOSYS) gKernelChecks.store(false, std::memory_order_relaxed);
  return error == ELOOP || error == ENOSYS || error == EPERM || error == EINVAL || error == E2BIG;
}

// True when `path` has a ".." component, or, with `orDot`, a "." one.
bool HasDotComponent(const std::string& path, bool orDot) {
  const char* begin = path.data();
  const char* end = begin + path.size();
  // Dots are rare in a path (an extension or two), so each one found is checked.
  for (const char* dot = begin; (dot = static_cast<const char*>(std::memchr(dot, '.', end - dot))) != nullptr; ++dot) {
    if (dot != begin && dot[-1] != '/') continue;
    size_t length = dot + 1 < end && dot[1] == '.' ? 2 : 1;
    bool ends = dot + length == end || dot[length] == '/';
    if (ends && (length == 2 || orDot)) return true;
  }
  return false;
}

// True when `path` has a ".." component. The kernel takes ".." after a link
// from the link's target, so such paths are walked in user space.
bool HasDotDot(const std::string& path) { return HasDotComponent(path, false); }

// Pushes the components of `path` on `pending` so the first comes out first;
// empty and "." components are left out.
void PushComponents(const std::string& path, std::vector<std::string>* pending) {
  size_t end = path.size();
  while (end > 0) {
    size_t slash = path.rfind('/', end - 1);
    size_t start = slash == std::string::npos ? 0 : slash + 1;
    std::string part = path.substr(start, end - start);
    if (!part.empty() && part != ".") pending->push_back(std::move(part));
    if (slash == std::string::npos) break;
    end = slash;
  }
}

// The target of the link at host path `link`, whose lstat gave `size`.
Result ReadLink(const std::string& link, size_t size, std::string* target) {
  std::vector<char> buffer(size + 1 > 256 ? size + 1 : 256);
  for (;;) {
    ssize_t length = ::readlink(link.c_str(), buffer.data(), buffer.size());
    if (length < 0) return Result::Error(errno);
    if (static_cast<size_t>(length) < buffer.size()) {
      target->assign(buffer.data(), static_cast<size_t>(length));
      return target->empty() ? Result::Error(ENOENT) : Result::Ok();
    }
    buffer.resize(buffer.size() * 2);  // the link grew since its lstat
  }
}

// The walk in user space, one lstat per component and a readlink per link,
// for paths the kernel did not vouch for.
class RootWalk {
 public:
  RootWalk(const std::string& root, LastComponent last, std::string* host)
      : mRoot(root), mLast(last), mHost(host) {}

  Result Run(const std::string& devicePath) {
    PushComponents(devicePath, &mPending);
    mHost->assign(mRoot);
    while (!mPending.empty()) {
      std::string part = std::move(mPending.back());
      mPending.pop_back();
      Result step = part == ".." ? Up() : Enter(part);
      if (!step.ok()) return step;
    }
    if (mHost->size() == mRoot.size() || (!devicePath.empty() && devicePath.back() == '/')) mHost->push_back('/');
    return Result::Ok();
  }

 private:
  // ".." takes the folder resolved so far one step up, never above the root.
  Result Up() {
    if (!mStarts.empty()) DropLast();
    return Result::Ok();
  }

  void DropLast() {
    mHost->resize(mStarts.back());
    mStarts.pop_back();
  }

  Result Enter(const std::string& part) {
    mStarts.push_back(mHost->size());
    mHost->append("/").append(part);
    bool isLast = mPending.empty();
    if (isLast && mLast == LastComponent::kKeep) return Result::Ok();
    struct stat64 st;
    if (::lstat64(mHost->c_str(), &st) != 0) {
      int error = errno;
      if (error == ENOENT && isLast && mLast == LastComponent::kFollowOrCreate) return Result::Ok();
      return Result::Error(error);
    }
    if (S_ISLNK(st.st_mode)) return Follow(static_cast<size_t>(st.st_size));
    return isLast || S_ISDIR(st.st_mode) ? Result::Ok() : Result::Error(ENOTDIR);
  }

  // Replaces the link just entered by its target, taken from the root when absolute.
  Result Follow(size_t size) {
    if (++mLinks > kMaxLinks) return Result::Error(ELOOP);
    std::string target;
    Result read = ReadLink(*mHost, size, &target);
    if (!read.ok()) return read;
    DropLast();
    if (target[0] == '/') {
      mHost->resize(mRoot.size());
      mStarts.clear();
    }
    PushComponents(target, &mPending);
    return Result::Ok();
  }

  const std::string& mRoot;
  const LastComponent mLast;
  std::string* const mHost;
  std::vector<std::string> mPending;  // components still to walk, the next one last
  std::vector<size_t> mStarts;        // where each component walked so far starts in *mHost
  int mLinks = 0;
};

// True when the kernel can be asked (it has openat2) and takes `devicePath`
// below the root as the mapping does: it folds "//" as the mapping does, but
// not "." and "..", and a relative path must start at the root.
bool KernelMayMap(const std::string& devicePath) {
  if (!gKernelChecks.load(std::memory_order_relaxed)) return false;
  return !devicePath.empty() && devicePath[0] == '/' && !HasDotComponent(devicePath, true);
}

// The plain mapping of a device path (the root, then the path as it stands),
// built on the stack: lookups probe and play logs append all the time, and a
// path of ordinary length then costs two copies and no allocation.
class PlainHostPath {
 public:
  // False when the kernel cannot be asked (no openat2), when `devicePath` is
  // not absolute or has a "." or ".." component, or when it is too long.
  bool Build(const std::string& root, const std::string& devicePath) {
    size_t size = root.size() + devicePath.size();
    if (size >= sizeof mPath || !KernelMayMap(devicePath)) return false;
    std::memcpy(mPath, root.data(), root.size());
    std::memcpy(mPath + root.size(), devicePath.data(), devicePath.size());
    mPath[size] = '\0';
    return true;
  }

  // The host path Build made.
  const char* c_str() const { return mPath; }

 private:
  char mPath[1024];
};

// Asks the kernel whether the plain mapping of `devicePath` is its host path.
// True when that settles it: *host is the mapping and *outcome the
// operation's error or Ok. False when a link (or no answer) needs the walk.
bool SettledByKernel(const std::string& root, const std::string& devicePath, LastComponent last,
                     std::string* host, Result* outcome) {
  if (!gKernelChecks.load(std::memory_order_relaxed) || HasDotDot(devicePath)) return false;
  MapBelowRootInto(root, devicePath, host);
  int error = OpenWithoutLinks(AT_FDCWD, host->c_str(), last == LastComponent::kKeep ? O_PATH | O_NOFOLLOW : O_PATH);
  if (KernelCannotTell(error)) return false;
  if (error != 0 && error != ENOENT && error != ENOTDIR) return false;  // the operation decides
  // No link before the walk's end; a missing path fails reads as it would anyway.
  bool fails = error != 0 && last == LastComponent::kFollowExisting;
  *outcome = fails ? Result::Error(error) : Result::Ok();
  return true;
}

// True when device paths `from` and `to` name two entries of the same folder.
bool InOneFolder(const std::string& from, const std::string& to) {
  size_t slash = from.rfind('/');
  if (slash == std::string::npos || slash != to.rfind('/')) return false;
  if (slash + 1 == from.size() || slash + 1 == to.size()) return false;
  return from.compare(0, slash, to, 0, slash) == 0;
}

}  // namespace

Result ResolveBelowRoot(const std::string& root, const std::string& devicePath, LastComponent last,
                        std::string* host) {
  // A trailing slash makes the kernel follow the last link whatever the operation.
  if (!devicePath.empty() && devicePath.back() == '/' && last == LastComponent::kKeep) {
    last = LastComponent::kFollowOrCreate;
  }
  Result outcome;
  if (SettledByKernel(root, devicePath, last, host, &outcome)) return outcome;
  return RootWalk(root, last, host).Run(devicePath);
}

Result ResolveRenameBelowRoot(const std::string& root, const std::string& from, const std::string& to,
                              std::string* hostFrom, std::string* hostTo) {
  bool shared = InOneFolder(from, to) && !HasDotDot(from) && !HasDotDot(to);
  if (shared && gKernelChecks.load(std::memory_order_relaxed)) {
    MapBelowRootInto(root, from, hostFrom);
    MapBelowRootInto(root, to, hostTo);
    int error = OpenWithoutLinks(AT_FDCWD, hostFrom->substr(0, hostFrom->rfind('/')).c_str(), O_PATH);
    // No link up to the folder, and neither last component is followed.
    if (!KernelCannotTell(error) && (error == 0 || error == ENOENT || error == ENOTDIR)) return Result::Ok();
  }
  Result resolved = ResolveBelowRoot(root, from, LastComponent::kKeep, hostFrom);
  if (!resolved.ok()) return resolved;
  return ResolveBelowRoot(root, to, LastComponent::kKeep, hostTo);
}

bool ProbeBelowRoot(const std::string& root, const std::string& devicePath, bool* opens) {
  // Without waiting: a FIFO where a file is looked for must not stop the lookup.
  const int flags = O_RDONLY | O_NONBLOCK;
  int error = 0;
  int folder = ThreadRootDescriptor(root);
  if (folder >= 0) {
    // Below the root folder's own descriptor: no host path to build, and the
    // kernel walks only the device path's folders.
    if (!KernelMayMap(devicePath)) return false;
    const char* relative = devicePath.c_str();
    while (*relative == '/') ++relative;
    error = OpenWithoutLinks(folder, *relative != '\0' ? relative : ".", flags);
  } else {
    PlainHostPath host;
    if (!host.Build(root, devicePath)) return false;
    error = OpenWithoutLinks(AT_FDCWD, host.c_str(), flags);
  }
  if (KernelCannotTell(error)) return false;
  *opens = error == 0;
  return true;
}

bool AppendBelowRoot(const std::string& root, const std::string& devicePath, const void* data, size_t size,
                     Result* outcome) {
  PlainHostPath host;
  if (!host.Build(root, devicePath)) return false;
  int fd = -1;
  int error = OpenDescriptorWithoutLinks(AT_FDCWD, host.c_str(), O_RDWR, &fd);
  if (KernelCannotTell(error)) return false;
  if (error != 0) {
    *outcome = Result::Error(error).OnPath(devicePath);
    return true;
  }
  // As on a device, the outcome is the open's: a record that cannot be
  // written is not the caller's to retry.
  AppendToDescriptor(fd, data, size, devicePath);
  ::close(fd);
  *outcome = Result::Ok();
  return true;
}

bool ReadBelowRoot(const std::string& root, const std::string& devicePath, std::unique_ptr<SequentialFile>* file,
                   Result* outcome) {
  PlainHostPath host;
  if (!host.Build(root, devicePath)) return false;
  // Without waiting: a FIFO opens at once, and is then refused.
  int fd = -1;
  int error = OpenDescriptorWithoutLinks(AT_FDCWD, host.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY, &fd);
  if (error == ENOENT || error == ENOTDIR) {
    *outcome = Result::Error(error, devicePath);
    return true;
  }
  if (error != 0) return false;  // a link, or a failure the walk reports as the operation would
  if (IsSpecialDescriptor(fd)) {
    ::close(fd);
    *outcome = Result::Error(ENXIO, devicePath);
    return true;
  }
  *file = NewPosixSequentialFileOn(fd, host.c_str());
  *outcome = Result::Ok();
  return true;
}

}  // namespace vireline
