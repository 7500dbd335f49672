#include "fuzz/FuzzSupport.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include <vireline/Platform.h>

namespace fs = std::filesystem;

namespace vireline {
namespace fuzz {

namespace {

std::string gScratchRoot;

void DropDebugOutput(int, int, const char*) {}

void RemoveScratchRoot() {
  std::error_code ignored;
  if (!gScratchRoot.empty()) fs::remove_all(gScratchRoot, ignored);
}

}  // namespace

// Bytes that no seed file holds, so every seed splits where it was joined.
const char kFileSeparator[] = "\n@@vireline-next-file@@\n";

std::vector<std::string> SplitInput(const uint8_t* data, size_t size, size_t count) {
  std::string input(reinterpret_cast<const char*>(data), size);
  const std::string separator(kFileSeparator);
  std::vector<std::string> pieces;
  size_t start = 0;
  while (pieces.size() + 1 < count) {
    size_t at = input.find(separator, start);
    if (at == std::string::npos) break;
    pieces.push_back(input.substr(start, at - start));
    start = at + separator.size();
  }
  pieces.push_back(start <= input.size() ? input.substr(start) : std::string());
  pieces.resize(count);
  return pieces;
}

void ClearDeviceRoot() {
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(GetDeviceRoot(), ignored)) fs::remove_all(entry.path(), ignored);
}

void WriteDeviceFile(const std::string& path, const std::string& content) {
  fs::path host = fs::path(GetDeviceRoot()) / fs::path(path).relative_path();
  std::error_code ignored;
  fs::create_directories(host.parent_path(), ignored);
  std::ofstream out(host, std::ios::binary | std::ios::trunc);
  out.write(content.data(), static_cast<std::streamsize>(content.size()));
}

void UseScratchDeviceRoot() {
  std::random_device entropy;
  // A memory file system when there is one: creating and truncating files on
  // a disk costs far more than the parsing each input is for.
  std::error_code ignored;
  fs::path base = fs::is_directory("/dev/shm", ignored) ? fs::path("/dev/shm") : fs::temp_directory_path();
  for (;;) {
    fs::path candidate = base / ("vireline-fuzz-" + std::to_string(getpid()) + "-" + std::to_string(entropy()));
    if (fs::create_directory(candidate)) {
      gScratchRoot = candidate.string();
      break;
    }
  }
  std::atexit(RemoveScratchRoot);
  SetDeviceRoot(gScratchRoot);
  PlatformDebug::SetOutputFunction(DropDebugOutput);
}

}  // namespace fuzz
}  // namespace vireline
