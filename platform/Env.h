// The one interface through which the library reaches the operating system.
// Every path is a device path; which implementation answers (the real device,
// a host folder standing in for one, or a fault-injecting test double) is
// invisible to callers.
#ifndef VIRELINE_PLATFORM_ENV_H_
#define VIRELINE_PLATFORM_ENV_H_

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "platform/Result.h"

namespace vireline {

enum class FileType { kRegular, kDirectory, kSymbolicLink, kOther };

struct FileInfo {
  FileType type = FileType::kOther;
  uint64_t size = 0;
  uint32_t mode = 0;  // permission bits
};

// One folder entry: its name and its own type (a link is kSymbolicLink).
struct DirEntry {
  std::string name;
  FileType type = FileType::kOther;
};

struct FsInfo {
  uint64_t blockSize = 0;
  uint64_t blocksAvailable = 0;  // to unprivileged users
};

// A file read from its start to its end.
class SequentialFile {
 public:
  virtual ~SequentialFile();

  // Reads up to `n` bytes into `scratch`; *got is 0 only at the end of the file.
  virtual Result Read(size_t n, char* scratch, size_t* got) = 0;

  // Closes the file; later calls fail. Destruction closes an open file too,
  // for readers that need not learn whether the close failed.
  virtual Result Close() = 0;
};

// A file that can tell its size before it is read, as a regular file can.
// Kept apart from SequentialFile, whose table of virtual calls stays as it was.
class SizeHinting {
 public:
  // The file's size in *size; false when it cannot tell. A hint for sizing
  // buffers: the file may still turn out longer or shorter when read.
  virtual bool SizeHint(uint64_t* size) = 0;

 protected:
  ~SizeHinting() = default;
};

// The size hint of `file` (see SizeHinting); false when it gives none.
bool SizeHintOf(SequentialFile* file, uint64_t* size);

// A file written from its start (or its end, for appending modes).
class WritableFile {
 public:
  virtual ~WritableFile();

  // Adds `size` bytes; they may wait in a buffer until Flush, Sync or Close.
  virtual Result Append(const void* data, size_t size) = 0;

  // Hands buffered bytes to the operating system.
  virtual Result Flush() = 0;

  // Flushes and makes the data durable.
  virtual Result Sync() = 0;

  // Flushes and closes; later calls fail. Destruction closes an open file too.
  virtual Result Close() = 0;
};

// A file read and written in place: play logs and flash partitions.
class RandomRWFile {
 public:
  virtual ~RandomRWFile();

  // The file's size in bytes.
  virtual Result Size(uint64_t* size) = 0;

  // Reads up to `n` bytes at `offset`; *got is 0 only at the end of the file.
  virtual Result Read(uint64_t offset, size_t n, char* scratch, size_t* got) = 0;

  // Writes all `size` bytes at `offset`.
  virtual Result Write(uint64_t offset, const void* data, size_t size) = 0;

  // Writes all `size` bytes at the end of the file with one seek and one
  // write: play logs append a record this way, and asking for the size first
  // would double the cost of a small log.
  virtual Result AppendAtEnd(const void* data, size_t size) = 0;

  // Erases `length` bytes at `offset` of a flash partition (MEMERASE); on a
  // plain file standing in for one, writes 0xFF bytes.
  virtual Result Erase(uint32_t offset, uint32_t length) = 0;

  // Makes the data durable.
  virtual Result Sync() = 0;

  // Closes the file; later calls fail. Destruction closes an open file too.
  virtual Result Close() = 0;
};

// Reads from `file` until `n` bytes or its end; *got says how many came.
Result ReadFully(SequentialFile* file, size_t n, char* scratch, size_t* got);

// Reads `file` to its end, but no more than `limit` bytes, into *bytes.
Result ReadToString(SequentialFile* file, size_t limit, std::string* bytes);

// Appends the rest of `in` to `out`, block by block, until `in` ends or either fails.
Result CopyToEnd(SequentialFile* in, WritableFile* out);

// Reads at `offset` of `file` until `n` bytes or its end; *got says how many came.
Result ReadFullyAt(RandomRWFile* file, uint64_t offset, size_t n, char* scratch, size_t* got);

class Env {
 public:
  virtual ~Env();

  // The environment library code uses: the device-rooted POSIX one unless a
  // test installed another with SetCurrent.
  static Env* Current();

  // Installs `env` for all library code; null restores the default. Not owned.
  static void SetCurrent(Env* env);

  // The process-wide device-rooted POSIX environment.
  static Env* Default();

  // The POSIX environment under Default, which takes host paths as they are.
  static Env* Host();

  // Opens `path` for reading from its start; failures leave *file null.
  virtual Result NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) = 0;

  // Creates `path`, or empties it, for writing; failures leave *file null.
  virtual Result NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) = 0;

  // Creates `path` for writing, failing with EEXIST when it exists: temporary
  // files never adopt one left behind by someone else.
  virtual Result NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) = 0;

  // Opens the existing file `path` for reading and writing in place.
  virtual Result NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) = 0;

  // Opens a C stream on `path` (fopen modes) for the public calls that hand
  // one out; failures leave *stream null.
  virtual Result OpenStream(const std::string& path, const char* mode, FILE** stream) = 0;

  // Closes a stream this environment opened.
  virtual Result CloseStream(FILE* stream) = 0;

  // True when `path` opens for reading; the file is closed again at once.
  virtual bool OpensForReading(const std::string& path);

  // Opens `path` in place, writes `size` bytes at its end as AppendAtEnd
  // does, and closes it: the open's outcome. Play logs append
  // a record this way, so the whole step costs just its four system calls.
  virtual Result AppendToFile(const std::string& path, const void* data, size_t size);

  // Describes `path`, following links.
  virtual Result Stat(const std::string& path, FileInfo* info) = 0;

  // Describes `path` itself: a symbolic link is reported as kSymbolicLink,
  // so that walks which remove or read whole trees do not follow link loops.
  virtual Result LinkStat(const std::string& path, FileInfo* info) = 0;

  // Creates one folder with permission bits `mode`.
  virtual Result MakeDir(const std::string& path, uint32_t mode) = 0;

  // Removes an empty folder.
  virtual Result RemoveDir(const std::string& path) = 0;

  // Removes a file.
  virtual Result RemoveFile(const std::string& path) = 0;

  // Renames `from` to `to`, replacing `to` atomically.
  virtual Result Rename(const std::string& from, const std::string& to) = 0;

  // Sets the permission bits of `path`.
  virtual Result ChangeMode(const std::string& path, uint32_t mode) = 0;

  // The names of the entries of `path` in listing order, without "." and "..".
  virtual Result ListDir(const std::string& path, std::vector<std::string>* names) = 0;

  // The entries of `path` in listing order with their own types, without "."
  // and ".."; walks of whole trees use it to tell folders, files and links
  // apart without a look at each entry.
  virtual Result ListDirEntries(const std::string& path, std::vector<DirEntry>* entries) = 0;

  // Makes the entries of folder `path` durable (after a rename into it).
  virtual Result SyncDir(const std::string& path) = 0;

  // Space figures of the file system holding `path`.
  virtual Result StatFs(const std::string& path, FsInfo* info) = 0;

  // Runs a shell command whose first word, when absolute, is a device path;
  // *exitStatus gets the wait status that system() reports.
  virtual Result RunCommand(const std::string& command, int* exitStatus) = 0;

  // Creates a local (UNIX-domain) stream socket.
  virtual Result CreateLocalSocket(int* socket) = 0;

  // Connects `socket` to the local address `path`.
  virtual Result ConnectLocalSocket(int socket, const std::string& path) = 0;

  // Sends bytes; *sent gets the count.
  virtual Result Send(int socket, const void* data, size_t length, size_t* sent) = 0;

  // Receives up to `length` bytes; *received gets the count.
  virtual Result Receive(int socket, void* data, size_t length, size_t* received) = 0;

  // Closes a socket.
  virtual Result CloseSocket(int socket) = 0;

  // Microseconds on a monotonic clock.
  virtual uint64_t NowMicros() = 0;

  // Seconds since the epoch on the wall clock.
  virtual int64_t WallClockSeconds() = 0;

  // Processor time used, in clock() ticks.
  virtual int64_t ProcessorClock() = 0;

  // The value of environment variable `name`; empty when unset.
  virtual std::string GetEnvironment(const std::string& name) = 0;
};

// Forwards every call to another environment; wrappers override what they change.
// OpensForReading and AppendToFile are not forwarded: they run on the
// wrapper's own NewSequentialFile and NewRandomRWFile, so a wrapper that
// changes those changes them too.
class EnvWrapper : public Env {
 public:
  explicit EnvWrapper(Env* target) : mTarget(target) {}

  // The wrapped environment.
  Env* target() const { return mTarget; }

  Result NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) override;
  Result NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) override;
  Result NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) override;
  Result NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) override;
  Result OpenStream(const std::string& path, const char* mode, FILE** stream) override;
  Result CloseStream(FILE* stream) override;
  Result Stat(const std::string& path, FileInfo* info) override;
  Result LinkStat(const std::string& path, FileInfo* info) override;
  Result MakeDir(const std::string& path, uint32_t mode) override;
  Result RemoveDir(const std::string& path) override;
  Result RemoveFile(const std::string& path) override;
  Result Rename(const std::string& from, const std::string& to) override;
  Result ChangeMode(const std::string& path, uint32_t mode) override;
  Result ListDir(const std::string& path, std::vector<std::string>* names) override;
  Result ListDirEntries(const std::string& path, std::vector<DirEntry>* entries) override;
  Result SyncDir(const std::string& path) override;
  Result StatFs(const std::string& path, FsInfo* info) override;
  Result RunCommand(const std::string& command, int* exitStatus) override;
  Result CreateLocalSocket(int* socket) override;
  Result ConnectLocalSocket(int socket, const std::string& path) override;
  Result Send(int socket, const void* data, size_t length, size_t* sent) override;
  Result Receive(int socket, void* data, size_t length, size_t* received) override;
  Result CloseSocket(int socket) override;
  uint64_t NowMicros() override;
  int64_t WallClockSeconds() override;
  int64_t ProcessorClock() override;
  std::string GetEnvironment(const std::string& name) override;

 private:
  Env* mTarget;
};

// Convenience: true when `path` exists.
bool PathExists(const std::string& path);

// Convenience: true when `path` is itself a symbolic link (whatever it points to).
bool IsSymbolicLink(const std::string& path);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_ENV_H_
