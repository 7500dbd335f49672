// The key=value file layer against a hand-written baseline, on a 40-key
// "meta.inf": read it, look up five keys, change one and replace the file
// crash-safely. The baseline reads with a plain fgets loop and replaces by
// hand: temporary file, fsync, rename, fsync of the folder.
//
// Files live in $VIRELINE_BENCH_DIR (default: a new folder under $TMPDIR or
// /tmp); point it at the storage you care about, since fsync dominates.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <vireline/CFileIO.h>
#include <vireline/Platform.h>

#include "BenchSupport.h"

namespace {

const int kKeys = 40;
const size_t kLineSize = 256;

// A device root of its own with "/QV/Bulk/ProgramFiles/Zoo/meta.inf" in it.
struct BenchFiles {
  BenchFiles() {
    root = benchsupport::MakeDeviceRoot();
    folder = root + "/QV/Bulk/ProgramFiles/Zoo";
    hostPath = folder + "/meta.inf";
    std::filesystem::create_directories(folder);
    std::string content = "PackageID=ZOO-1\nName=\"Zoo Keeper\"\nVersion=1.2.3\nType=Application\n"
                          "ProductID=0x00001234\nSize=0x00100000\nHidden=0x00000000\n"
                          "Depends=\"Base\",\"Audio\",\"Fonts\"\nProfileAccess=0,1,2\n";
    for (int i = 9; i < kKeys; ++i) {
      content += "Extra" + std::to_string(i) + "=value number " + std::to_string(i) + " of the bench file\n";
    }
    FILE* out = std::fopen(hostPath.c_str(), "w");
    std::fputs(content.c_str(), out);
    std::fclose(out);
  }
  ~BenchFiles() { std::filesystem::remove_all(root); }

  std::string root, folder, hostPath;
  const char* devicePath = "/QV/Bulk/ProgramFiles/Zoo/meta.inf";
};

BenchFiles& Files() {
  static BenchFiles files;
  return files;
}

// ---- The library ----

void ReadAndLookUp(CFileIO& file, const char* path) {
  file.Open(path);
  benchmark::DoNotOptimize(file.GetStr("PackageID"));
  benchmark::DoNotOptimize(file.GetStr("Name"));
  benchmark::DoNotOptimize(file.GetStr("Version"));
  benchmark::DoNotOptimize(file.GetUInt("ProductID"));
  benchmark::DoNotOptimize(file.GetUInt("Size"));
}

void BM_CFileIO_OpenGetWrite(benchmark::State& state) {
  const char* path = Files().devicePath;
  U32 size = 0;
  for (auto _ : state) {
    CFileIO file;
    ReadAndLookUp(file, path);
    file.SetUInt("Size", 0x00100000 + (size++ & 1));  // a real change, so Write replaces the file
    if (!file.Write()) state.SkipWithError("Write failed");
  }
}
BENCHMARK(BM_CFileIO_OpenGetWrite)->Unit(benchmark::kMicrosecond);

void BM_CFileIO_OpenGet(benchmark::State& state) {
  const char* path = Files().devicePath;
  for (auto _ : state) {
    CFileIO file;
    ReadAndLookUp(file, path);
  }
}
BENCHMARK(BM_CFileIO_OpenGet)->Unit(benchmark::kMicrosecond);

// The read part alone: open and parse the 40-key file.
void BM_CFileIO_Open(benchmark::State& state) {
  const char* path = Files().devicePath;
  for (auto _ : state) {
    CFileIO file;
    file.Open(path);
    benchmark::DoNotOptimize(file.GetEntryCount());
  }
}
BENCHMARK(BM_CFileIO_Open)->Unit(benchmark::kMicrosecond);

// ---- The baseline: fgets and a hand-written crash-safe replace ----

struct PlainTable {
  char lines[kKeys + 8][kLineSize];
  int count = 0;

  const char* Find(const char* key) const {
    size_t length = std::strlen(key);
    for (int i = 0; i < count; ++i) {
      if (std::strncmp(lines[i], key, length) == 0 && lines[i][length] == '=') return lines[i] + length + 1;
    }
    return nullptr;
  }
};

void PlainRead(PlainTable& table, const char* path) {
  table.count = 0;
  FILE* in = std::fopen(path, "r");
  if (in == nullptr) return;
  while (table.count < kKeys + 8 && std::fgets(table.lines[table.count], kLineSize, in) != nullptr) {
    ++table.count;
  }
  std::fclose(in);
  benchmark::DoNotOptimize(table.Find("PackageID"));
  benchmark::DoNotOptimize(table.Find("Name"));
  benchmark::DoNotOptimize(table.Find("Version"));
  benchmark::DoNotOptimize(std::strtoul(table.Find("ProductID"), nullptr, 16));
  benchmark::DoNotOptimize(std::strtoul(table.Find("Size"), nullptr, 16));
}

bool PlainReplace(const PlainTable& table, const std::string& path, const std::string& folder) {
  return benchsupport::PlainReplace(path, folder, [&](FILE* out) {
    for (int i = 0; i < table.count; ++i) {
      if (std::fputs(table.lines[i], out) < 0) return false;
    }
    return true;
  });
}

void BM_Baseline_FgetsReplace(benchmark::State& state) {
  const std::string& path = Files().hostPath;
  const std::string& folder = Files().folder;
  PlainTable table;
  unsigned size = 0;
  for (auto _ : state) {
    PlainRead(table, path.c_str());
    for (int i = 0; i < table.count; ++i) {  // the same change as the library's
      if (std::strncmp(table.lines[i], "Size=", 5) == 0) {
        std::snprintf(table.lines[i], kLineSize, "Size=0x%08X\n", 0x00100000u + (size++ & 1));
      }
    }
    if (!PlainReplace(table, path, folder)) state.SkipWithError("replace failed");
  }
}
BENCHMARK(BM_Baseline_FgetsReplace)->Unit(benchmark::kMicrosecond);

void BM_Baseline_Fgets(benchmark::State& state) {
  const std::string& path = Files().hostPath;
  PlainTable table;
  for (auto _ : state) PlainRead(table, path.c_str());
}
BENCHMARK(BM_Baseline_Fgets)->Unit(benchmark::kMicrosecond);

// ---- How the library scales: reading a file of n lines, adding n keys ----

// A file of `lines` short "kN=v" lines at "/QV/Base/lines<lines>.cfg".
std::string LinesFile(int64_t lines) {
  std::string devicePath = "/QV/Base/lines" + std::to_string(lines) + ".cfg";
  std::string hostPath = Files().root + devicePath;
  if (!std::filesystem::exists(hostPath)) {
    std::filesystem::create_directories(Files().root + "/QV/Base");
    std::string content;
    for (int64_t i = 0; i < lines; ++i) content += "k" + std::to_string(i) + "=v\n";
    FILE* out = std::fopen(hostPath.c_str(), "w");
    std::fputs(content.c_str(), out);
    std::fclose(out);
  }
  return devicePath;
}

// Reading is linear in the file's size: the table grows by doubling.
void BM_CFileIO_OpenLines(benchmark::State& state) {
  std::string path = LinesFile(state.range(0));
  for (auto _ : state) {
    CFileIO file;
    file.Open(path.c_str());
    if (file.GetEntryCount() != static_cast<U32>(state.range(0))) state.SkipWithError("wrong count");
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_CFileIO_OpenLines)->RangeMultiplier(4)->Range(1 << 10, 1 << 18)->Complexity()->Unit(benchmark::kMillisecond);

// Adding n new keys one by one: each set looks the key up first, in the
// table's hash index, so this grows as n.
void BM_CFileIO_SetNewKeys(benchmark::State& state) {
  std::vector<std::string> keys;
  for (int64_t i = 0; i < state.range(0); ++i) keys.push_back("Key" + std::to_string(i));
  for (auto _ : state) {
    CFileIO file;
    for (const std::string& key : keys) file.SetStr(key.c_str(), "v");
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_CFileIO_SetNewKeys)->RangeMultiplier(4)->Range(40, 10240)->Complexity()->Unit(benchmark::kMillisecond);

}  // namespace
