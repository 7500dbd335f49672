// What the benchmarks share: a device root of their own, and the hand-written
// crash-safe replace that the library's writers are measured against.
#ifndef VIRELINE_BENCH_BENCHSUPPORT_H_
#define VIRELINE_BENCH_BENCHSUPPORT_H_

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include <vireline/Platform.h>

namespace benchsupport {

// Makes a new folder under $VIRELINE_BENCH_DIR (default $TMPDIR or /tmp) and
// makes it the device root; returns its host path.
inline std::string MakeDeviceRoot() {
  const char* chosen = std::getenv("VIRELINE_BENCH_DIR");
  const char* temporary = std::getenv("TMPDIR");
  std::string base = chosen && *chosen ? chosen : (temporary ? temporary : "/tmp");
  std::string pattern = base + "/vireline-bench-XXXXXX";
  if (mkdtemp(&pattern[0]) == nullptr) std::abort();
  vireline::SetDeviceRoot(pattern);
  return pattern;
}

// Replaces host file `path` in host folder `folder` by hand with the C library:
// temporary file, `write`, fsync, rename, fsync of the folder.
inline bool PlainReplace(const std::string& path, const std::string& folder,
                         const std::function<bool(FILE*)>& write) {
  std::string temporary = path + ".tmp";
  FILE* out = std::fopen(temporary.c_str(), "w");
  if (out == nullptr) return false;
  bool ok = write(out) && std::fflush(out) == 0 && fsync(fileno(out)) == 0;
  ok = std::fclose(out) == 0 && ok;
  if (!ok || std::rename(temporary.c_str(), path.c_str()) != 0) {
    std::remove(temporary.c_str());
    return false;
  }
  int dir = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
  if (dir < 0) return false;
  ok = fsync(dir) == 0;
  close(dir);
  return ok;
}

}  // namespace benchsupport

#endif  // VIRELINE_BENCH_BENCHSUPPORT_H_
