// A platform wrapper that can cut the power: after a chosen number of
// durability steps (a file sync, a rename, a removal, a folder sync) every
// later one fails, and DropUnsyncedData then leaves the disk as a device
// would find it after the cut. File data written after its last sync is
// lost, and names created, renamed or removed since the last sync of their
// folder fall back to what they were. Files the wrapper has not seen written
// count as safely on disk.
#ifndef VIRELINE_TESTS_HARDENING_POWERLOSSENV_H_
#define VIRELINE_TESTS_HARDENING_POWERLOSSENV_H_

#include <map>
#include <memory>
#include <string>

#include "platform/Env.h"

class PowerLossEnv : public vireline::EnvWrapper {
 public:
  // Wraps `target`; the power stays on.
  explicit PowerLossEnv(vireline::Env* target);

  // Lets `steps` more durability steps through, then fails every later one;
  // a negative count keeps the power on.
  void CutPowerAfter(int steps);

  // Durability steps seen since construction or Forget.
  int Steps() const { return mSteps; }

  // Rewrites the disk as the power cut leaves it, then forgets what it saw.
  void DropUnsyncedData();

  // Forgets what was written and restores the power.
  void Forget();

  vireline::Result NewWritableFile(const std::string& path, std::unique_ptr<vireline::WritableFile>* file) override;
  vireline::Result NewExclusiveFile(const std::string& path, std::unique_ptr<vireline::WritableFile>* file) override;
  vireline::Result NewRandomRWFile(const std::string& path, std::unique_ptr<vireline::RandomRWFile>* file) override;
  vireline::Result OpenStream(const std::string& path, const char* mode, FILE** stream) override;
  vireline::Result AppendToFile(const std::string& path, const void* data, size_t size) override;
  vireline::Result RemoveFile(const std::string& path) override;
  vireline::Result Rename(const std::string& from, const std::string& to) override;
  vireline::Result SyncDir(const std::string& path) override;

 private:
  // What a name stood for when its folder was last synced.
  struct DurableName {
    bool pending = false;  // changed since that sync
    bool existed = false;
    std::string content;
  };

  // True while the power is on; else counts nothing and reports the cut.
  bool PowerOn();
  // Counts one durability step; false when the power is cut before it.
  bool Step();
  // Records the state of `path` the first time it is touched.
  void Track(const std::string& path);
  // Marks the name `path` changed, remembering what it stood for.
  void Change(const std::string& path);
  bool Read(const std::string& path, std::string* content);
  void Write(const std::string& path, const std::string& content);

  class SyncedWritableFile;
  class SyncedRandomRWFile;

  // Notes that `path` is about to be opened for writing; false when the power is cut.
  bool OpeningForWrite(const std::string& path);
  // Records the content of `path` as durable after a successful sync.
  void Synced(const std::string& path);

  int mSteps = 0;
  int mCutAfter = -1;
  std::map<std::string, std::string> mSynced;  // durable data of the file now at each path
  std::map<std::string, DurableName> mNames;
};

#endif  // VIRELINE_TESTS_HARDENING_POWERLOSSENV_H_
