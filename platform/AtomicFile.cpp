// The one atomic-replace routine every writer uses: write a temporary file in
// the target's folder, sync it, close it, rename it over the target and sync
// the folder. Any failure removes the temporary file and keeps the old target.
#include "platform/AtomicFile.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <map>
#include <mutex>

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

// Opens a fresh temporary file beside `target` with `open` (which must fail
// with EEXIST for a name in use), trying new names on a clash.
template <typename Open>
Result OpenTemporary(const std::string& target, std::string* temporary, Open open) {
  Result result;
  for (int attempt = 0; attempt < 100; ++attempt) {
    *temporary = TemporaryNameFor(target);
    result = open(*temporary);
    if (result.error() != EEXIST) return result;
  }
  return result;
}

// Appending modes start from the current content of the target, handed to `write`.
template <typename Write>
Result CopyExistingContent(Env* env, const std::string& target, Write write) {
  std::unique_ptr<SequentialFile> in;
  if (!env->NewSequentialFile(target, &in).ok()) return Result::Ok();  // nothing to keep
  char buffer[4096];
  for (;;) {
    size_t count = 0;
    Result result = in->Read(sizeof buffer, buffer, &count);
    if (!result.ok() || count == 0) return result;
    result = write(buffer, count);
    if (!result.ok()) return result;
  }
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
  Result result = OpenTemporary(path, &replace.temporary, [&](const std::string& name) {
    return env->NewExclusiveFile(name, &temporary);
  });
  if (!result.ok()) return result;
  std::unique_ptr<WritableFile> writer(new AtomicWritableFile(env, replace, std::move(temporary)));
  if (append) {
    result = CopyExistingContent(env, path, [&](const char* data, size_t size) { return writer->Append(data, size); });
    if (!result.ok()) return result;  // the writer's destruction removes the temporary file
  }
  *file = std::move(writer);
  return Result::Ok();
}

// fopenAtomic and fcloseAtomic hand clients a C stream; the pending replace
// of each stream is looked up when the client commits it.
namespace {

struct Registry {
  std::mutex mutex;
  std::map<FILE*, PendingReplace> pending;
};

Registry& Pending() {
  static Registry* registry = new Registry;  // never destroyed: used until exit
  return *registry;
}

// Takes `stream` out of the pending replaces; false when fopenAtomic did not open it.
bool TakePending(FILE* stream, PendingReplace* replace) {
  Registry& registry = Pending();
  std::lock_guard<std::mutex> lock(registry.mutex);
  auto found = registry.pending.find(stream);
  if (found == registry.pending.end()) return false;
  *replace = found->second;
  registry.pending.erase(found);
  return true;
}

FILE* OpenTemporaryStream(Env* env, const std::string& target, bool append, bool update, std::string* temporary) {
  std::string mode = append ? "a" : "w";
  if (update) mode += "+";
  mode += "x";  // never adopt a file left behind by someone else
  FILE* stream = nullptr;
  Result result = OpenTemporary(target, temporary, [&](const std::string& name) {
    return env->OpenStream(name, mode.c_str(), &stream);
  });
  return result.ok() ? stream : nullptr;
}

Result WriteToStream(FILE* stream, const char* data, size_t size) {
  return std::fwrite(data, 1, size, stream) == size ? Result::Ok() : Result::Error(EIO);
}

Result CommitStream(Env* env, FILE* stream, const PendingReplace& replace) {
  // A write that failed earlier leaves the stream's error indicator set.
  Result synced = std::ferror(stream) ? Result::Error(EIO, replace.target) : env->SyncStream(stream);
  Result closed = env->CloseStream(stream);
  return FinishReplace(env, synced.ok() ? closed : synced, replace);
}

}  // namespace
}  // namespace vireline

FILE* fopenAtomic(const char* path, const char* mode) {
  using namespace vireline;
  if (path == nullptr || mode == nullptr || (mode[0] != 'w' && mode[0] != 'a')) {
    errno = EINVAL;
    return nullptr;
  }
  Env* env = Env::Current();
  bool append = mode[0] == 'a';
  PendingReplace replace;
  replace.target = path;
  FILE* stream = OpenTemporaryStream(env, replace.target, append, std::strchr(mode, '+') != nullptr,
                                     &replace.temporary);
  if (stream == nullptr) return nullptr;
  if (append && !CopyExistingContent(env, replace.target, [&](const char* data, size_t size) {
        return WriteToStream(stream, data, size);
      }).ok()) {
    env->CloseStream(stream);
    env->RemoveFile(replace.temporary);
    return nullptr;
  }
  Registry& registry = Pending();
  std::lock_guard<std::mutex> lock(registry.mutex);
  registry.pending[stream] = replace;
  return stream;
}

int fcloseAtomic(FILE* stream) {
  using namespace vireline;
  if (stream == nullptr) return EOF;
  PendingReplace replace;
  if (!TakePending(stream, &replace)) {
    Env::Current()->CloseStream(stream);
    return EOF;  // not a stream fopenAtomic opened: nothing was committed
  }
  return CommitStream(Env::Current(), stream, replace).ok() ? 0 : EOF;
}
