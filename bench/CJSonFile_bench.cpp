// JSON documents against a hand-written JsonCpp baseline, on a 2 KiB
// document: load it, change one value and replace the file crash-safely.
// The baseline reads the file with one fread, parses with Json::Reader,
// writes with Json::FastWriter and replaces by hand: temporary file, fsync,
// rename, fsync of the folder. The library additionally converts to and from
// its own value tree, which is what the comparison measures.
//
// Files live in $VIRELINE_BENCH_DIR (default: a new folder under $TMPDIR or
// /tmp); point it at the storage you care about, since fsync dominates.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include <json/json.h>

#include <vireline/CJSonFile.h>
#include <vireline/Platform.h>

#include "BenchSupport.h"

namespace {

// A device root of its own with "/QV/Bulk/Data/Milestones.json" (about 2 KiB) in it.
struct BenchFiles {
  BenchFiles() {
    root = benchsupport::MakeDeviceRoot();
    folder = root + "/QV/Bulk/Data";
    hostPath = folder + "/Milestones.json";
    std::filesystem::create_directories(folder);
    Json::Value document(Json::objectValue);
    document["Version"] = 3;
    for (int i = 0; document.toStyledString().size() < 2048; ++i) {
      Json::Value milestone(Json::objectValue);
      milestone["Id"] = "MS-" + std::to_string(i);
      milestone["Reached"] = i % 3 == 0;
      milestone["Score"] = i * 17;
      milestone["Title"] = "Milestone number " + std::to_string(i);
      document["Milestones"].append(milestone);
    }
    std::string text = Json::FastWriter().write(document);
    FILE* out = std::fopen(hostPath.c_str(), "w");
    std::fprintf(out, "%s\n", text.c_str());
    std::fclose(out);
  }
  ~BenchFiles() { std::filesystem::remove_all(root); }

  std::string root, folder, hostPath;
  const char* devicePath = "/QV/Bulk/Data/Milestones.json";
};

BenchFiles& Files() {
  static BenchFiles files;
  return files;
}

// ---- The library ----

void BM_CJSonFile_LoadChangeSave(benchmark::State& state) {
  const char* path = Files().devicePath;
  unsigned score = 0;
  for (auto _ : state) {
    LTM::CJSonFile file(path, 0);
    if (file.Load() != 0) state.SkipWithError("Load failed");
    file.mRoot["Milestones"][0u]["Score"] = score++ & 1;
    if (file.Save() != 0) state.SkipWithError("Save failed");
  }
}
BENCHMARK(BM_CJSonFile_LoadChangeSave)->Unit(benchmark::kMicrosecond);

void BM_CJSonFile_Load(benchmark::State& state) {
  const char* path = Files().devicePath;
  for (auto _ : state) {
    LTM::CJSonFile file(path, 0);
    if (file.Load() != 0) state.SkipWithError("Load failed");
    benchmark::DoNotOptimize(file.mRoot["Version"].asInt());
  }
}
BENCHMARK(BM_CJSonFile_Load)->Unit(benchmark::kMicrosecond);

// ---- The baseline: one fread, JsonCpp, and a hand-written crash-safe replace ----

bool PlainLoad(const std::string& path, Json::Value* root) {
  FILE* in = std::fopen(path.c_str(), "r");
  if (in == nullptr) return false;
  std::fseek(in, 0, SEEK_END);
  long size = std::ftell(in);
  std::rewind(in);
  std::unique_ptr<char[]> buffer(new char[size + 1]);
  bool read = std::fread(buffer.get(), 1, size, in) == static_cast<size_t>(size);
  std::fclose(in);
  buffer[size] = '\0';
  return read && Json::Reader().parse(std::string(buffer.get()), *root, false);
}

bool PlainReplace(const std::string& text, const std::string& path, const std::string& folder) {
  return benchsupport::PlainReplace(path, folder, [&](FILE* out) { return std::fprintf(out, "%s\n", text.c_str()) >= 0; });
}

void BM_Baseline_JsonCppLoadChangeReplace(benchmark::State& state) {
  const std::string& path = Files().hostPath;
  unsigned score = 0;
  for (auto _ : state) {
    Json::Value root;
    if (!PlainLoad(path, &root)) state.SkipWithError("load failed");
    root["Milestones"][0u]["Score"] = score++ & 1;
    if (!PlainReplace(Json::FastWriter().write(root), path, Files().folder)) state.SkipWithError("replace failed");
  }
}
BENCHMARK(BM_Baseline_JsonCppLoadChangeReplace)->Unit(benchmark::kMicrosecond);

void BM_Baseline_JsonCppLoad(benchmark::State& state) {
  const std::string& path = Files().hostPath;
  for (auto _ : state) {
    Json::Value root;
    if (!PlainLoad(path, &root)) state.SkipWithError("load failed");
    benchmark::DoNotOptimize(root["Version"].asInt());
  }
}
BENCHMARK(BM_Baseline_JsonCppLoad)->Unit(benchmark::kMicrosecond);

}  // namespace
