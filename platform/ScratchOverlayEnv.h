// Runs library code against a device image without changing it: everything
// written lands in a private scratch folder laid over the image, and later
// reads see the scratch copy first. The inspector uses it to run operations
// that write (package requests) and show what they would have written.
#ifndef VIRELINE_PLATFORM_SCRATCHOVERLAYENV_H_
#define VIRELINE_PLATFORM_SCRATCHOVERLAYENV_H_

#include <string>
#include <vector>

#include "platform/Env.h"

namespace vireline {

class ScratchOverlayEnv : public EnvWrapper {
 public:
  // Lays a new, empty scratch folder (made in $TMPDIR, else /tmp, through
  // `hostEnv`) over `deviceEnv`, which answers device paths.
  ScratchOverlayEnv(Env* deviceEnv, Env* hostEnv);

  // Removes the scratch folder and everything written into it.
  ~ScratchOverlayEnv() override;

  ScratchOverlayEnv(const ScratchOverlayEnv&) = delete;
  ScratchOverlayEnv& operator=(const ScratchOverlayEnv&) = delete;

  // False when no scratch folder could be made; every write then fails.
  bool ok() const { return !mScratch.empty(); }

  // The device paths of the files written so far, sorted.
  std::vector<std::string> WrittenFiles();

  Result NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) override;
  Result NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) override;
  Result NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) override;
  Result NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) override;
  Result OpenStream(const std::string& path, const char* mode, FILE** stream) override;
  Result Stat(const std::string& path, FileInfo* info) override;
  Result LinkStat(const std::string& path, FileInfo* info) override;
  Result MakeDir(const std::string& path, uint32_t mode) override;
  Result RemoveDir(const std::string& path) override;
  Result RemoveFile(const std::string& path) override;
  Result Rename(const std::string& from, const std::string& to) override;
  Result ChangeMode(const std::string& path, uint32_t mode) override;
  Result ListDir(const std::string& path, std::vector<std::string>* names) override;
  Result SyncDir(const std::string& path) override;
  Result RunCommand(const std::string& command, int* exitStatus) override;

 private:
  // The host path of the scratch copy of device path `path`.
  std::string Scratch(const std::string& path) const;
  bool InScratch(const std::string& path);
  // Creates the scratch folders above `path`'s copy.
  Result MakeScratchParents(const std::string& path);
  // Readies the scratch copy of `path` for a writer: its folders, and for
  // `keepsContent` the image's file copied up; EEXIST for `exclusive` when
  // the image holds `path`.
  Result PrepareWrite(const std::string& path, bool keepsContent, bool exclusive);
  // Copies a file of the image into the scratch folder before it changes.
  Result CopyUp(const std::string& path);
  void RemoveTree(const std::string& hostPath);
  void CollectFiles(const std::string& devicePath, std::vector<std::string>* files);

  Env* mHost;
  std::string mScratch;  // host folder, without a trailing slash; empty when unusable
};

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_SCRATCHOVERLAYENV_H_
