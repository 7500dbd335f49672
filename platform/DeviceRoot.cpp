#include "platform/DeviceRoot.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include <vireline/Platform.h>

namespace vireline {
namespace {

// Readers take the root without a lock: every root ever set stays alive in
// `roots`, so a mapping under way never sees its string freed. Roots change
// only when a tool or a test chooses one, so they are few.
struct RootState {
  std::mutex mutex;  // serializes changes
  std::vector<std::unique_ptr<const std::string>> roots;
  std::atomic<const std::string*> current{nullptr};  // without a trailing slash; empty for the real "/"
};

RootState& State() {
  static RootState* state = new RootState;  // never destroyed: used until exit
  return *state;
}

std::string TrimTrailingSlashes(std::string folder) {
  while (!folder.empty() && folder.back() == '/') folder.pop_back();
  return folder;
}

// The descriptor of one thread's device root folder: lookups open their
// candidates below it, so the kernel walks only the device path. Each thread
// holds its own, so a change of root never closes one another thread uses.
class ThreadRootFolder {
 public:
  ~ThreadRootFolder() { Close(); }

  int For(const std::string& root) {
    if (&root == mRoot) return mFd;
    Close();
    mRoot = &root;
    if (!root.empty()) mFd = ::open(root.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    return mFd;
  }

 private:
  void Close() {
    if (mFd >= 0) ::close(mFd);
    mFd = -1;
  }

  const std::string* mRoot = nullptr;  // roots are never freed, so the address names one
  int mFd = -1;
};

thread_local ThreadRootFolder tRootFolder;

// Makes `root` current; the caller holds the state's mutex.
const std::string* Publish(RootState& state, std::string root) {
  state.roots.push_back(std::make_unique<const std::string>(std::move(root)));
  const std::string* published = state.roots.back().get();
  state.current.store(published, std::memory_order_release);
  tRootFolder.For(*published);  // the choosing thread opens it now, with the start-up's other calls
  return published;
}

}  // namespace

const std::string& CurrentDeviceRoot() {
  RootState& state = State();
  const std::string* root = state.current.load(std::memory_order_acquire);
  if (root != nullptr) return *root;
  std::lock_guard<std::mutex> lock(state.mutex);
  root = state.current.load(std::memory_order_relaxed);
  if (root != nullptr) return *root;
  const char* fromEnvironment = std::getenv("VIRELINE_ROOT");
  return *Publish(state, TrimTrailingSlashes(fromEnvironment ? fromEnvironment : ""));
}

void SetDeviceRoot(const std::string& hostFolder) {
  RootState& state = State();
  std::lock_guard<std::mutex> lock(state.mutex);
  Publish(state, TrimTrailingSlashes(hostFolder));
}

int ThreadRootDescriptor(const std::string& root) { return tRootFolder.For(root); }

std::string GetDeviceRoot() {
  const std::string& root = CurrentDeviceRoot();
  return root.empty() ? "/" : root;
}

// Lookups and appends check every path they open, so the check looks only at
// the character after each slash.
bool IsNormalizedDevicePath(const std::string& path) {
  if (path.empty() || path[0] != '/') return false;
  const char* end = path.data() + path.size();
  for (const char* slash = path.data(); slash != nullptr;) {
    const char* component = slash + 1;
    size_t left = static_cast<size_t>(end - component);
    if (left == 0) return true;  // a trailing slash
    if (component[0] == '/') return false;
    if (component[0] == '.') {
      if (left == 1 || component[1] == '/') return false;
      if (component[1] == '.' && (left == 2 || component[2] == '/')) return false;
    }
    slash = static_cast<const char*>(std::memchr(component, '/', left));
  }
  return true;
}

std::string NormalizeDevicePath(const std::string& devicePath) {
  if (devicePath.empty() || IsNormalizedDevicePath(devicePath)) return devicePath;
  std::vector<std::string> parts;
  size_t start = 0;
  while (start <= devicePath.size()) {
    size_t end = devicePath.find('/', start);
    if (end == std::string::npos) end = devicePath.size();
    std::string part = devicePath.substr(start, end - start);
    if (part == "..") {
      if (!parts.empty()) parts.pop_back();
    } else if (!part.empty() && part != ".") {
      parts.push_back(part);
    }
    start = end + 1;
  }
  std::string normalized;
  for (const std::string& part : parts) normalized += "/" + part;
  if (normalized.empty()) return "/";
  if (devicePath.back() == '/') normalized += "/";
  return normalized;
}

std::string MapDevicePath(const std::string& devicePath) {
  const std::string& root = CurrentDeviceRoot();
  if (root.empty() || devicePath.empty()) return devicePath;
  return MapBelowRoot(root, devicePath);
}

std::string MapBelowRoot(const std::string& root, const std::string& devicePath) {
  std::string host;
  MapBelowRootInto(root, devicePath, &host);
  return host;
}

void MapBelowRootInto(const std::string& root, const std::string& devicePath, std::string* host) {
  if (IsNormalizedDevicePath(devicePath)) {
    host->assign(root).append(devicePath);
    return;
  }
  host->assign(root).append(NormalizeDevicePath(devicePath));
}

}  // namespace vireline
