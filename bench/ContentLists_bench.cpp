// Listing 200 installed applications with CApps against a plain listing of
// the same two folders doing the same work: read each folder, check that
// each entry is a folder, and collect its path.
#include <benchmark/benchmark.h>

#include <dirent.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <vireline/CApps.h>

#include "BenchSupport.h"

namespace {

const int kPackages = 200;

struct InstalledApps {
  InstalledApps() {
    root = benchsupport::MakeDeviceRoot();
    for (int i = 0; i < kPackages; ++i) {
      std::string folder = root + "/QV/Bulk/ProgramFiles/App" + std::to_string(i);
      std::filesystem::create_directories(folder);
      std::ofstream(folder + "/meta.inf") << "PackageID=APP-" << i << "\nVersion=1.0\nType=Application\n";
    }
    std::filesystem::create_directories(root + "/QV/Cart");
  }
  ~InstalledApps() { std::filesystem::remove_all(root); }

  std::string root;
};

InstalledApps& Apps() {
  static InstalledApps apps;
  return apps;
}

void ListFolders(const std::string& hostFolder, const std::string& deviceFolder, std::vector<std::string>* out) {
  DIR* dir = opendir(hostFolder.c_str());
  if (dir == nullptr) return;
  while (dirent* entry = readdir(dir)) {
    std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    struct stat info;
    if (stat((hostFolder + name).c_str(), &info) == 0 && S_ISDIR(info.st_mode)) out->push_back(deviceFolder + name);
  }
  closedir(dir);
}

void BM_CAppsGet(benchmark::State& state) {
  Apps();
  for (auto _ : state) {
    std::vector<Glib::ustring> listed = LTM::CApps().get();
    if (listed.size() != kPackages) state.SkipWithError("wrong count");
    benchmark::DoNotOptimize(listed.data());
  }
}

void BM_PlainListing(benchmark::State& state) {
  const std::string& root = Apps().root;
  for (auto _ : state) {
    std::vector<std::string> listed;
    ListFolders(root + "/QV/Bulk/ProgramFiles/", "/QV/Bulk/ProgramFiles/", &listed);
    ListFolders(root + "/QV/Cart/", "/QV/Cart/", &listed);
    if (listed.size() != kPackages) state.SkipWithError("wrong count");
    benchmark::DoNotOptimize(listed.data());
  }
}

}  // namespace

BENCHMARK(BM_CAppsGet)->MinTime(0.3);
BENCHMARK(BM_PlainListing)->MinTime(0.3);
