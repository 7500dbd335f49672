// The one atomic-replace routine every writer uses: write a temporary file in
// the target's folder, sync it, close it, rename it over the target and sync
// the folder. Any failure removes the temporary file and keeps the old target.
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

#include <vireline/Platform.h>

#include "platform/AtomicFile.h"
#include "platform/DeviceStream.h"
#include "platform/Env.h"

namespace vireline {
namespace {

struct PendingReplace {
  std::string temporary;
  std::string target;
};

struct Registry {
  std::mutex mutex;
  std::map<FILE*, PendingReplace> pending;
};

Registry& Pending() {
  static Registry* registry = new Registry;  // never destroyed: used until exit
  return *registry;
}

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

// Appending modes start from the current content of the target.
Result CopyExistingContent(const std::string& target, FILE* out) {
  DeviceStream in(target.c_str(), "rb");
  if (!in.ok()) return Result::Ok();  // nothing to keep
  char buffer[4096];
  size_t count;
  Result result;
  while (result.ok() && (count = std::fread(buffer, 1, sizeof buffer, in.get())) > 0) {
    if (std::fwrite(buffer, 1, count, out) != count) result = Result::Error(EIO);
  }
  if (std::ferror(in.get())) result = Result::Error(EIO);
  return result;
}

FILE* OpenTemporary(Env* env, const std::string& target, bool append, bool update,
                    std::string* temporary) {
  std::string mode = append ? "a" : "w";
  if (update) mode += "+";
  mode += "x";  // never adopt a file left behind by someone else
  for (int attempt = 0; attempt < 100; ++attempt) {
    *temporary = TemporaryNameFor(target);
    FILE* stream = nullptr;
    Result result = env->OpenStream(*temporary, mode.c_str(), &stream);
    if (result.ok()) return stream;
    if (result.error() != EEXIST) return nullptr;
  }
  return nullptr;
}

Result Commit(Env* env, FILE* stream, const PendingReplace& replace) {
  // A write that failed earlier leaves the stream's error indicator set.
  Result synced = std::ferror(stream) ? Result::Error(EIO) : env->SyncStream(stream);
  Result closed = env->CloseStream(stream);
  Result result = synced.ok() ? closed : synced;
  if (result.ok()) result = env->Rename(replace.temporary, replace.target);
  if (!result.ok()) {
    env->RemoveFile(replace.temporary);
    return result;
  }
  return env->SyncDir(FolderOf(replace.target));
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
  FILE* stream = OpenTemporary(env, replace.target, append, std::strchr(mode, '+') != nullptr,
                               &replace.temporary);
  if (stream == nullptr) return nullptr;
  if (append && !CopyExistingContent(replace.target, stream).ok()) {
    env->CloseStream(stream);
    env->RemoveFile(replace.temporary);
    return nullptr;
  }
  Registry& registry = Pending();
  std::lock_guard<std::mutex> lock(registry.mutex);
  registry.pending[stream] = replace;
  return stream;
}

namespace vireline {
namespace {

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

}  // namespace

void AbandonAtomic(FILE* stream) {
  if (stream == nullptr) return;
  PendingReplace replace;
  Env* env = Env::Current();
  env->CloseStream(stream);
  if (TakePending(stream, &replace)) env->RemoveFile(replace.temporary);
}

}  // namespace vireline

int fcloseAtomic(FILE* stream) {
  using namespace vireline;
  if (stream == nullptr) return EOF;
  PendingReplace replace;
  if (!TakePending(stream, &replace)) {
    Env::Current()->CloseStream(stream);
    return EOF;  // not a stream fopenAtomic opened: nothing was committed
  }
  return Commit(Env::Current(), stream, replace).ok() ? 0 : EOF;
}
