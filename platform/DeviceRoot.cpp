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

std::string NormalizeDevicePath(const std::string& devicePath) {
  if (devicePath.empty()) return devicePath;
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
