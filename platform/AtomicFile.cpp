// The one atomic-replace routine every writer uses: write a temporary file in
// the target's folder, sync it, close it, rename it over the target and sync
// the folder. Any failure removes the temporary file and keeps the old target.
#include "platform/AtomicFile.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>

#include <vireline/Platform.h>

namespace vireline {
namespace {

struct PendingReplace {
  std::string temporary;
  std::string target;
};

std::string FolderOf(const std::string& path) {
  size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string TemporaryNameFor(const std::string& path) {
  static std::atomic<unsigned> counter{0};
  size_t slash = path.rfind('/');
  std::string folder = slash == std::string::npos ? "" : path.substr(0, slash + 1);
  std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  return folder + "." + name + ".tmp" + std::to_string(::getpid()) + "." + std::to_string(counter++);
}

// Opens a fresh temporary file beside `target`, trying new names on a clash:
// never one left behind by someone else.
Result OpenTemporary(Env* env, const std::string& target, std::string* temporary,
                     std::unique_ptr<WritableFile>* file) {
  Result result;
  for (int attempt = 0; attempt < 100; ++attempt) {
    *temporary = TemporaryNameFor(target);
    result = env->NewExclusiveFile(*temporary, file);
    if (result.error() != EEXIST) return result;
  }
  return result;
}

// Appending writers start from the current content of the target.
Result CopyExistingContent(Env* env, const std::string& target, WritableFile* out) {
  std::unique_ptr<SequentialFile> in;
  if (!env->NewSequentialFile(target, &in).ok()) return Result::Ok();  // nothing to keep
  return CopyToEnd(in.get(), out);
}

// The steps after the temporary file is synced and closed with outcome
// `written`: the rename over the target and the sync of its folder, or the
// removal of the temporary file.
Result FinishReplace(Env* env, Result written, const PendingReplace& replace) {
  Result result = written;
  if (result.ok()) result = env->Rename(replace.temporary, replace.target);
  if (!result.ok()) {
    env->RemoveFile(replace.temporary);
    return result;
  }
  return env->SyncDir(FolderOf(replace.target));
}

// The writer NewAtomicFile hands out. The first failed write is kept and
// makes Close abandon the replace.
class AtomicWritableFile : public WritableFile {
 public:
  AtomicWritableFile(Env* env, const PendingReplace& replace, std::unique_ptr<WritableFile> temporary)
      : mEnv(env), mReplace(replace), mTemporary(std::move(temporary)) {}

  ~AtomicWritableFile() override {
    if (mTemporary == nullptr) return;
    mTemporary->Close();
    mEnv->RemoveFile(mReplace.temporary);
  }

  Result Append(const void* data, size_t size) override { return Keep(Open() ? mTemporary->Append(data, size) : Closed()); }

  Result Flush() override { return Keep(Open() ? mTemporary->Flush() : Closed()); }

  Result Sync() override { return Keep(Open() ? mTemporary->Sync() : Closed()); }

  Result Close() override {
    if (!Open()) return Closed();
    Result synced = mFailure.ok() ? mTemporary->Sync() : mFailure;
    Result closed = mTemporary->Close();
    mTemporary.reset();
    return FinishReplace(mEnv, synced.ok() ? closed : synced, mReplace);
  }

 private:
  bool Open() const { return mTemporary != nullptr; }
  Result Closed() const { return Result::Error(EBADF, mReplace.target); }
  Result Keep(Result result) {
    if (mFailure.ok() && !result.ok()) mFailure = result;
    return result;
  }

  Env* mEnv;
  PendingReplace mReplace;
  std::unique_ptr<WritableFile> mTemporary;
  Result mFailure;
};

}  // namespace

Result NewAtomicFile(const std::string& path, bool append, std::unique_ptr<WritableFile>* file) {
  file->reset();
  Env* env = Env::Current();
  PendingReplace replace;
  replace.target = path;
  std::unique_ptr<WritableFile> temporary;
  Result result = OpenTemporary(env, path, &replace.temporary, &temporary);
  if (!result.ok()) return result;
  std::unique_ptr<WritableFile> writer(new AtomicWritableFile(env, replace, std::move(temporary)));
  if (append) {
    result = CopyExistingContent(env, path, writer.get());
    if (!result.ok()) return result;  // the writer's destruction removes the temporary file
  }
  *file = std::move(writer);
  return Result::Ok();
}

namespace {

// fopenAtomic hands clients a C stream over the same atomic writer: what the
// client writes goes to the writer, and closing the stream commits it, so no
// lookup from a stream to its replace is needed.
ssize_t WriteToAtomicFile(void* cookie, const char* data, size_t size) {
  // A stream's write function reports a failure as nothing written.
  return static_cast<WritableFile*>(cookie)->Append(data, size).ok() ? static_cast<ssize_t>(size) : 0;
}

int CloseAtomicFile(void* cookie) {
  std::unique_ptr<WritableFile> writer(static_cast<WritableFile*>(cookie));
  return writer->Close().ok() ? 0 : -1;
}

}  // namespace
}  // namespace vireline

FILE* fopenAtomic(const char* path, const char* mode) {
  using namespace vireline;
  if (path == nullptr || mode == nullptr || (mode[0] != 'w' && mode[0] != 'a')) {
    errno = EINVAL;  // as fopen reports a mode it does not know
    return nullptr;
  }
  std::unique_ptr<WritableFile> writer;
  if (!NewAtomicFile(path, mode[0] == 'a', &writer).ok()) return nullptr;
  cookie_io_functions_t functions = {nullptr, WriteToAtomicFile, nullptr, CloseAtomicFile};
  // "w": an appending writer already holds the old content.
  FILE* stream = ::fopencookie(writer.get(), "w", functions);
  if (stream == nullptr) return nullptr;
  writer.release();  // the stream's close deletes it
  // Unbuffered: the writer buffers, and a failed byte shows at the call that wrote it.
  std::setvbuf(stream, nullptr, _IONBF, 0);
  return stream;
}

int fcloseAtomic(FILE* stream) {
  using namespace vireline;
  if (stream == nullptr) return EOF;
  // Streams over a file descriptor are not fopenAtomic's: nothing is committed.
  if (::fileno(stream) >= 0) {
    Env::Current()->CloseStream(stream);
    return EOF;
  }
  return std::fclose(stream) == 0 ? 0 : EOF;
}
