// CalculateChecksum against its baselines in the same run: zlib's crc32 over
// the large file's bytes already in memory (and, for scale, a plain read of
// the file feeding zlib), and a plain walk of the tree's host folder
// (opendir/readdir, open/read/close of every file, zlib fed with what was
// read). The large file is 64 MiB; the tree holds 2,000 files of
// 4 KiB in 20 folders. Both are made once and removed at exit.
#include <benchmark/benchmark.h>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <vireline/BaseUtils.h>
#include <vireline/Platform.h>

#include "bench/BenchSupport.h"

namespace {

const char kLargeFile[] = "/QV/Large/content.bin";
const char kTree[] = "/QV/Tree";
const size_t kLargeFileSize = 64u << 20;
const int kTreeFolders = 20;
const int kFilesPerFolder = 100;
const size_t kTreeFileSize = 4096;

class ChecksumImage {
 public:
  static ChecksumImage& Get() {
    static ChecksumImage image;
    vireline::SetDeviceRoot(image.mRoot);
    return image;
  }

  ~ChecksumImage() { std::filesystem::remove_all(mRoot); }

  const std::vector<unsigned char>& large() const { return mLarge; }
  const std::string& treeHost() const { return mTreeHost; }
  std::string largeHost() const { return mRoot + kLargeFile; }

 private:
  ChecksumImage() : mRoot(benchsupport::MakeDeviceRoot()), mTreeHost(mRoot + kTree) {
    mLarge.resize(kLargeFileSize);
    uint32_t state = 12345;
    for (unsigned char& byte : mLarge) {
      state = state * 1103515245u + 12345u;
      byte = static_cast<unsigned char>(state >> 24);
    }
    Write(kLargeFile, mLarge.data(), mLarge.size());
    for (int folder = 0; folder < kTreeFolders; ++folder) {
      for (int file = 0; file < kFilesPerFolder; ++file) {
        std::string path = std::string(kTree) + "/Folder" + std::to_string(folder) + "/file" + std::to_string(file) + ".dat";
        Write(path, mLarge.data() + (folder * kFilesPerFolder + file) * kTreeFileSize, kTreeFileSize);
      }
    }
  }

  void Write(const std::string& path, const unsigned char* data, size_t size) const {
    std::filesystem::create_directories(std::filesystem::path(mRoot + path).parent_path());
    std::ofstream(mRoot + path, std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }

  std::string mRoot;
  std::string mTreeHost;
  std::vector<unsigned char> mLarge;
};

uLong PlainFile(uLong crc, const std::string& path) {
  int fd = open(path.c_str(), O_RDONLY);
  if (fd < 0) return crc;
  unsigned char buffer[65536];
  ssize_t count;
  while ((count = read(fd, buffer, sizeof buffer)) > 0) crc = crc32(crc, buffer, static_cast<uInt>(count));
  close(fd);
  return crc;
}

// readdir64: a 32-bit build's readdir fails on file systems with 64-bit
// directory offsets (ext4), and the walk would then see an empty folder.
uLong PlainWalk(uLong crc, const std::string& folder) {
  DIR* dir = opendir(folder.c_str());
  if (dir == nullptr) return crc;
  while (dirent64* entry = readdir64(dir)) {
    std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    std::string path = folder + "/" + name;
    crc = entry->d_type == DT_DIR ? PlainWalk(crc, path) : PlainFile(crc, path);
  }
  closedir(dir);
  return crc;
}

void BM_ChecksumLargeFile(benchmark::State& state) {
  const ChecksumImage& image = ChecksumImage::Get();
  U32 expected = static_cast<U32>(crc32(0L, image.large().data(), static_cast<uInt>(image.large().size())));
  for (auto _ : state) {
    U32 value = BaseUtils::Instance()->CalculateChecksum(kLargeFile, BaseUtils::kSelectAll);
    if (value != expected) state.SkipWithError("checksum differs from zlib's");
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kLargeFileSize));
}
BENCHMARK(BM_ChecksumLargeFile)->Unit(benchmark::kMillisecond);

void BM_ZlibInMemoryLargeFile(benchmark::State& state) {
  const ChecksumImage& image = ChecksumImage::Get();
  for (auto _ : state) {
    benchmark::DoNotOptimize(crc32(0L, image.large().data(), static_cast<uInt>(image.large().size())));
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kLargeFileSize));
}
BENCHMARK(BM_ZlibInMemoryLargeFile)->Unit(benchmark::kMillisecond);

// What reading the file costs at all: open, 64 KiB reads, zlib, close, on its
// host path. No reader of the file can beat this, whatever its block size.
void BM_PlainReadLargeFile(benchmark::State& state) {
  std::string host = ChecksumImage::Get().largeHost();
  for (auto _ : state) benchmark::DoNotOptimize(PlainFile(crc32(0L, Z_NULL, 0), host));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kLargeFileSize));
}
BENCHMARK(BM_PlainReadLargeFile)->Unit(benchmark::kMillisecond);

void BM_ChecksumTree(benchmark::State& state) {
  const ChecksumImage& image = ChecksumImage::Get();
  U32 expected = static_cast<U32>(PlainWalk(crc32(0L, Z_NULL, 0), image.treeHost()));
  for (auto _ : state) {
    U32 value = BaseUtils::Instance()->CalculateChecksum(kTree, BaseUtils::kSelectAll);
    if (value != expected) state.SkipWithError("checksum differs from the plain walk's");
  }
  state.SetItemsProcessed(state.iterations() * kTreeFolders * kFilesPerFolder);
}
BENCHMARK(BM_ChecksumTree)->Unit(benchmark::kMillisecond);

void BM_PlainWalkTree(benchmark::State& state) {
  const std::string& host = ChecksumImage::Get().treeHost();
  for (auto _ : state) benchmark::DoNotOptimize(PlainWalk(crc32(0L, Z_NULL, 0), host));
  state.SetItemsProcessed(state.iterations() * kTreeFolders * kFilesPerFolder);
}
BENCHMARK(BM_PlainWalkTree)->Unit(benchmark::kMillisecond);

}  // namespace
