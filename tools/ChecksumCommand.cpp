// `vireline checksum PATH [--write FILE.crc | --verify FILE.crc]`: the CRC-32
// of a file or folder tree as BaseUtils computes it (".crc" files left out),
// optionally kept in or checked against a 4-byte ".crc" file. A tree that
// takes longer than a second shows how many files were read so far on a
// terminal's standard error.
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>

#include <vireline/vireline.h>

#include "platform/Env.h"
#include "tools/Commands.h"
#include "tools/DebugCapture.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

const int kSkippedFileLevel = 3;  // files the checksum could not read are reported at this level
const uint64_t kProgressDelayMicros = 1000000;
const uint64_t kProgressIntervalMicros = 100000;

// Counts the files the checksum opens and, once a second has passed, shows
// the count on standard error, at most ten times a second.
class ProgressEnv : public EnvWrapper {
 public:
  explicit ProgressEnv(Env* target) : EnvWrapper(target), mNextShow(target->NowMicros() + kProgressDelayMicros) {}

  ~ProgressEnv() override {
    if (mShown) std::fprintf(stderr, "\n");
  }

  Result NewSequentialFile(const std::string& path, std::unique_ptr<vireline::SequentialFile>* file) override {
    ++mFiles;
    uint64_t now = target()->NowMicros();
    if (now >= mNextShow) {
      std::fprintf(stderr, "\rvireline checksum: %lu files read", mFiles);
      mShown = true;
      mNextShow = now + kProgressIntervalMicros;
    }
    return EnvWrapper::NewSequentialFile(path, file);
  }

 private:
  unsigned long mFiles = 0;
  uint64_t mNextShow;
  bool mShown = false;
};

// The checksum of `path`, with the progress count on a terminal; the files
// that could not be read are reported on standard error.
U32 Compute(const std::string& path) {
  DebugCapture capture(kSkippedFileLevel);
  U32 value;
  if (isatty(STDERR_FILENO)) {
    ProgressEnv progress(Env::Current());
    Env::SetCurrent(&progress);
    value = BaseUtils::Instance()->CalculateChecksum(path, BaseUtils::kSelectAll);
    Env::SetCurrent(nullptr);
  } else {
    value = BaseUtils::Instance()->CalculateChecksum(path, BaseUtils::kSelectAll);
  }
  for (const std::string& line : capture.lines()) std::fprintf(stderr, "vireline checksum: %s\n", DisplayText(line.c_str()).c_str());
  return value;
}

int Verify(const std::string& path, U32 value, const std::string& file) {
  if (!BaseUtils::Instance()->FileExists(file) || BaseUtils::Instance()->FileIsDir(file)) {
    std::fprintf(stderr, "vireline checksum: %s: no such checksum file\n", DisplayText(file.c_str()).c_str());
    return kNotFound;
  }
  U32 stored = BaseUtils::Instance()->ReadChecksum(file);
  if (stored != value) {
    std::fprintf(stderr, "vireline checksum: %s: 0x%08X, but %s holds 0x%08X\n", DisplayText(path.c_str()).c_str(),
                 value, DisplayText(file.c_str()).c_str(), stored);
    return kNotFound;
  }
  std::printf("0x%08X  %s  matches %s\n", value, DisplayText(path.c_str()).c_str(), DisplayText(file.c_str()).c_str());
  return kSuccess;
}

int Write(const std::string& path, U32 value, const std::string& file) {
  BaseUtils::Instance()->SetupTrace(0, false);  // the failure is reported below, once
  if (!BaseUtils::Instance()->WriteChecksum(file, value)) {
    std::fprintf(stderr, "vireline checksum: %s: cannot be written\n", DisplayText(file.c_str()).c_str());
    return kIoError;
  }
  std::printf("0x%08X  %s  written to %s\n", value, DisplayText(path.c_str()).c_str(), DisplayText(file.c_str()).c_str());
  return kSuccess;
}

int Run(const std::string& path, const std::string& writeFile, const std::string& verifyFile) {
  if (!BaseUtils::Instance()->FileExists(path)) {
    std::fprintf(stderr, "vireline checksum: %s: no such file or folder\n", DisplayText(path.c_str()).c_str());
    return kNotFound;
  }
  U32 value = Compute(path);
  if (!writeFile.empty()) return Write(path, value, writeFile);
  if (!verifyFile.empty()) return Verify(path, value, verifyFile);
  std::printf("0x%08X  %s\n", value, DisplayText(path.c_str()).c_str());
  return kSuccess;
}

}  // namespace

void RegisterChecksumCommand(CLI::App& program, Action* action) {
  auto* checksum = program.add_subcommand("checksum", "CRC-32 of a file or folder tree; keep it in or check it against a .crc file");
  static std::string path;  // must outlive the parse and the action
  static std::string writeFile;
  static std::string verifyFile;
  checksum->add_option("PATH", path, "File or folder (device path); .crc files inside do not count")->required();
  auto* write = checksum->add_option("--write", writeFile, "Store the value in FILE.crc (4 bytes, little-endian)");
  auto* verify = checksum->add_option("--verify", verifyFile, "Compare with the value FILE.crc holds; exit status 1 when they differ");
  write->excludes(verify);
  checksum->callback([action] { *action = [] { return Run(path, writeFile, verifyFile); }; });
}

}  // namespace tools
}  // namespace vireline
