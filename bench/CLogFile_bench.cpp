// Appending a play-log record against a hand-written baseline on the same
// file: CLogFile::Append of a CGameStart record (open through the platform,
// seek to the end, write, close) versus open, lseek to the end, write and
// close of the same bytes with the C library. Both keep the file below the
// log size cap by emptying it (outside the timing) every kRefill appends, so
// the library never stops logging during the run.
//
// Files live in $VIRELINE_BENCH_DIR (default: a new folder under $TMPDIR or /tmp).
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include <vireline/CLogFile.h>
#include <vireline/LogEvents.h>
#include <vireline/Platform.h>

#include "BenchSupport.h"

namespace {

const int kRefill = 20000;  // appends of 15 bytes stay well below the 1,024,000-byte cap

// A device root of its own with the players' log files in it.
struct BenchLogs {
  BenchLogs() {
    root = benchsupport::MakeDeviceRoot();
    std::filesystem::create_directories(root + "/etc/vireline");
    FILE* identity = std::fopen((root + "/etc/vireline/platform.cfg").c_str(), "w");
    std::fputs("Name=Tamsel\n", identity);
    std::fclose(identity);
    devicePath = CLogFile::GetLogFilePath(0).raw();
    hostPath = root + devicePath;
    Restart();
  }
  ~BenchLogs() {
    CLogFile::Destroy();
    std::filesystem::remove_all(root);
  }

  // Empties slot 0's log back to its header and starts a new manager, whose count starts there.
  void Restart() {
    CLogFile::Destroy();
    if (std::filesystem::exists(hostPath)) std::filesystem::resize_file(hostPath, 104);
    CLogFile::Instance()->SetCurrentProfile(0);
  }

  std::string root, devicePath, hostPath;
};

BenchLogs& Logs() {
  static BenchLogs logs;
  return logs;
}

// Counts one append; every kRefill appends empties the log again, untimed.
void CountAppend(benchmark::State& state, int* appended) {
  if (++*appended < kRefill) return;
  state.PauseTiming();
  Logs().Restart();
  *appended = 0;
  state.ResumeTiming();
}

void BM_CLogFile_AppendGameStart(benchmark::State& state) {
  Logs().Restart();
  LogData::Vireline::CGameStart record("MathMountain");  // 6 + 13 bytes
  int appended = 0;
  for (auto _ : state) {
    CLogFile::Instance()->Append(record);
    CountAppend(state, &appended);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_CLogFile_AppendGameStart)->Unit(benchmark::kMicrosecond);

void BM_Baseline_OpenLseekWriteClose(benchmark::State& state) {
  Logs().Restart();
  LogData::Vireline::CGameStart record("MathMountain");
  const unsigned char* bytes = record.GetPack()->GetBuffer();
  size_t size = record.GetPack()->GetTotalSize();
  const char* path = Logs().hostPath.c_str();
  int appended = 0;
  for (auto _ : state) {
    int fd = open(path, O_RDWR);
    if (fd < 0 || lseek(fd, 0, SEEK_END) < 0 || write(fd, bytes, size) != static_cast<ssize_t>(size)) {
      state.SkipWithError("append failed");
    }
    if (fd >= 0) close(fd);
    CountAppend(state, &appended);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Baseline_OpenLseekWriteClose)->Unit(benchmark::kMicrosecond);

}  // namespace
