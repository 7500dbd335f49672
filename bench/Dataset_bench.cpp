// Loading a 1 MiB dataset with 10,000 relocations against a bare baseline:
// open, read and close both files with the system calls, then the same
// relocation loop. The library adds its checks of every offset, the stream
// layer and the shared holder, which is what the comparison measures.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <vireline/Dataset.h>

#include "BenchSupport.h"

namespace {

const uint32_t kDatasetSize = 1 << 20;
const uint32_t kRelocations = 10000;

struct DatasetFiles {
  DatasetFiles() {
    root = benchsupport::MakeDeviceRoot();
    std::filesystem::create_directories(root + "/data");
    std::string dataset(kDatasetSize, '\0');
    std::string relink;
    const uint32_t stride = kDatasetSize / kRelocations;  // 104 bytes: fields at unaligned spots too
    for (uint32_t i = 0; i < kRelocations; ++i) {
      uint32_t offset = i * stride + (i % 4);
      uint32_t target = (i * 7919u) % (kDatasetSize - 4);
      std::memcpy(&dataset[offset], &target, 4);
      relink.append(reinterpret_cast<const char*>(&offset), 4);
    }
    std::ofstream(root + datasetPath, std::ios::binary) << dataset;
    std::ofstream(root + relinkPath, std::ios::binary) << relink;
  }
  ~DatasetFiles() { std::filesystem::remove_all(root); }

  std::string root;
  std::string datasetPath = "/data/level.dsetBin";
  std::string relinkPath = "/data/level.relinkBin";
};

DatasetFiles& Files() {
  static DatasetFiles files;
  return files;
}

// Reads host file `path` whole with one read into `buffer`.
bool ReadAll(const std::string& path, char* buffer, size_t size) {
  int fd = open(path.c_str(), O_RDONLY);
  if (fd < 0) return false;
  bool ok = read(fd, buffer, size) == static_cast<ssize_t>(size);
  close(fd);
  return ok;
}

void BM_LoadDataset(benchmark::State& state) {
  DatasetFiles& files = Files();
  for (auto _ : state) {
    boost::shared_array<char> block = LoadDataset(files.datasetPath, files.relinkPath);
    if (!block) state.SkipWithError("LoadDataset refused the dataset");
    benchmark::DoNotOptimize(block.get());
  }
}

void BM_PlainReadAndRelocate(benchmark::State& state) {
  DatasetFiles& files = Files();
  for (auto _ : state) {
    std::unique_ptr<char[]> block(new char[kDatasetSize]);
    std::vector<uint32_t> offsets(kRelocations);
    if (!ReadAll(files.root + files.datasetPath, block.get(), kDatasetSize) ||
        !ReadAll(files.root + files.relinkPath, reinterpret_cast<char*>(offsets.data()), kRelocations * 4)) {
      state.SkipWithError("read failed");
    }
    const uint32_t base = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(block.get()));
    for (uint32_t offset : offsets) {
      uint32_t value;
      std::memcpy(&value, block.get() + offset, 4);
      value += base;
      std::memcpy(block.get() + offset, &value, 4);
    }
    benchmark::DoNotOptimize(block.get());
  }
}

}  // namespace

BENCHMARK(BM_LoadDataset)->MinTime(0.3);
BENCHMARK(BM_PlainReadAndRelocate)->MinTime(0.3);
