#include "files/UnreadableFiles.h"

#include <atomic>
#include <cerrno>
#include <mutex>
#include <unordered_set>

#include "platform/Env.h"

namespace vireline {
namespace {

std::mutex gMutex;
std::unordered_set<const void*>* gMarked = nullptr;  // never freed: objects may outlive static destruction
std::atomic<bool> gAnyMarked{false};                 // lets every write skip the lock while nothing is marked

}  // namespace

void UnreadableFiles::Mark(const void* owner, bool unreadable) {
  if (!unreadable && !gAnyMarked.load(std::memory_order_acquire)) return;
  std::lock_guard<std::mutex> lock(gMutex);
  if (unreadable) {
    if (gMarked == nullptr) gMarked = new std::unordered_set<const void*>;
    gMarked->insert(owner);
  } else if (gMarked != nullptr) {
    gMarked->erase(owner);
  }
  gAnyMarked.store(gMarked != nullptr && !gMarked->empty(), std::memory_order_release);
}

bool UnreadableFiles::IsMarked(const void* owner) {
  if (!gAnyMarked.load(std::memory_order_acquire)) return false;
  std::lock_guard<std::mutex> lock(gMutex);
  return gMarked != nullptr && gMarked->count(owner) != 0;
}

bool UnreadableFiles::IsMissing(const char* path) {
  FileInfo info;
  Result result = Env::Current()->Stat(path, &info);
  return result.error() == ENOENT || result.error() == ENOTDIR;
}

}  // namespace vireline
