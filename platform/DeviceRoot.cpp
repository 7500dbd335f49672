#include "platform/DeviceRoot.h"

#include <cstdlib>
#include <mutex>
#include <vector>

#include <vireline/Platform.h>

namespace vireline {
namespace {

struct RootState {
  std::mutex mutex;
  bool known = false;
  std::string root;  // without a trailing slash; empty for the real "/"
};

RootState& State() {
  static RootState* state = new RootState;  // never destroyed: used until exit
  return *state;
}

std::string TrimTrailingSlashes(std::string folder) {
  while (!folder.empty() && folder.back() == '/') folder.pop_back();
  return folder;
}

std::string CurrentRoot() {
  RootState& state = State();
  std::lock_guard<std::mutex> lock(state.mutex);
  if (!state.known) {
    const char* fromEnvironment = std::getenv("VIRELINE_ROOT");
    state.root = TrimTrailingSlashes(fromEnvironment ? fromEnvironment : "");
    state.known = true;
  }
  return state.root;
}

}  // namespace

void SetDeviceRoot(const std::string& hostFolder) {
  RootState& state = State();
  std::lock_guard<std::mutex> lock(state.mutex);
  state.root = TrimTrailingSlashes(hostFolder);
  state.known = true;
}

std::string GetDeviceRoot() {
  std::string root = CurrentRoot();
  return root.empty() ? "/" : root;
}

// True when `path` is absolute and has no empty, "." or ".." component, so
// normalizing would return it unchanged; lookups hit this on every open.
bool IsNormalized(const std::string& path) {
  if (path.empty() || path[0] != '/') return false;
  for (size_t slash = 0; slash != std::string::npos; slash = path.find('/', slash + 1)) {
    size_t next = path.find('/', slash + 1);
    size_t length = (next == std::string::npos ? path.size() : next) - slash - 1;
    if (length == 0 && next != std::string::npos) return false;
    if (length == 1 && path[slash + 1] == '.') return false;
    if (length == 2 && path[slash + 1] == '.' && path[slash + 2] == '.') return false;
  }
  return true;
}

std::string NormalizeDevicePath(const std::string& devicePath) {
  if (devicePath.empty() || IsNormalized(devicePath)) return devicePath;
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
  std::string root = CurrentRoot();
  if (root.empty() || devicePath.empty()) return devicePath;
  return root + NormalizeDevicePath(devicePath);
}

}  // namespace vireline
