// The atomic replace every writer uses, against the same steps written by hand
// with the C library (temporary file, fsync, rename, fsync of the folder).
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include <vireline/Platform.h>

namespace {

const std::string kContent(1024, 'k');

struct Scratch {
  Scratch() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vireline-bench-XXXXXX").string();
    root = mkdtemp(&pattern[0]);
    vireline::SetDeviceRoot(root);
  }
  ~Scratch() { std::filesystem::remove_all(root); }
  std::string root;
};

void BM_AtomicReplace(benchmark::State& state) {
  Scratch scratch;
  for (auto _ : state) {
    FILE* stream = fopenAtomic("/settings.cfg", "w");
    std::fwrite(kContent.data(), 1, kContent.size(), stream);
    if (fcloseAtomic(stream) != 0) state.SkipWithError("replace failed");
  }
}
BENCHMARK(BM_AtomicReplace);

void BM_ReplaceByHandBaseline(benchmark::State& state) {
  Scratch scratch;
  std::string target = scratch.root + "/settings.cfg";
  std::string temporary = target + ".tmp";
  for (auto _ : state) {
    FILE* stream = std::fopen(temporary.c_str(), "w");
    std::fwrite(kContent.data(), 1, kContent.size(), stream);
    std::fflush(stream);
    fsync(fileno(stream));
    std::fclose(stream);
    std::rename(temporary.c_str(), target.c_str());
    int folder = open(scratch.root.c_str(), O_RDONLY | O_DIRECTORY);
    fsync(folder);
    close(folder);
  }
}
BENCHMARK(BM_ReplaceByHandBaseline);

}  // namespace
