// Start-up on a copy of the sample device image: the system paths
// (CSystemData's root folders, computed again) and a new log file manager,
// which checks the three play logs' headers and sizes. The baseline does what
// that needs at the least with bare system calls: for each log file one stat,
// one open, one read of its 104-byte header, one fstat for its size, one close.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include <vireline/CLogFile.h>
#include <vireline/CSystemData.h>
#include <vireline/Platform.h>

#include "BenchSupport.h"

namespace {

// A copy of examples/device-image as the device root.
struct SampleImage {
  SampleImage() {
    root = benchsupport::MakeDeviceRoot();
    std::filesystem::copy(VIRELINE_SAMPLE_IMAGE, root, std::filesystem::copy_options::recursive);
    for (tPlayerID slot = 0; slot < 3; ++slot) logs.push_back(root + CLogFile::GetLogFilePath(slot).raw());
  }
  ~SampleImage() {
    CLogFile::Destroy();
    std::filesystem::remove_all(root);
  }
  std::string root;
  std::vector<std::string> logs;  // host paths
};

SampleImage& Image() {
  static SampleImage image;
  vireline::SetDeviceRoot(image.root);
  return image;
}

void BM_StartUp(benchmark::State& state) {
  Image();
  for (auto _ : state) {
    CLogFile::Destroy();
    CSystemData::Instance()->SetRootPaths();
    benchmark::DoNotOptimize(CLogFile::Instance());
  }
}
BENCHMARK(BM_StartUp)->Unit(benchmark::kMicrosecond);

void BM_StartUpBaseline(benchmark::State& state) {
  const std::vector<std::string>& logs = Image().logs;
  unsigned char header[104];
  for (auto _ : state) {
    unsigned long total = 0;
    for (const std::string& log : logs) {
      struct stat st;
      if (stat(log.c_str(), &st) != 0) state.SkipWithError("no log");
      int fd = open(log.c_str(), O_RDWR);
      if (fd < 0) continue;
      benchmark::DoNotOptimize(read(fd, header, sizeof header));
      if (fstat(fd, &st) == 0) total += static_cast<unsigned long>(st.st_size);
      close(fd);
    }
    benchmark::DoNotOptimize(total);
  }
}
BENCHMARK(BM_StartUpBaseline)->Unit(benchmark::kMicrosecond);

}  // namespace
