// Tells a tool each time the library opens a file, so that an operation
// over many files (the checksum of a folder tree) can show its progress.
#ifndef VIRELINE_FILEOPENWATCH_H_
#define VIRELINE_FILEOPENWATCH_H_

#include <functional>
#include <memory>

#include <vireline/Export.h>

namespace vireline {

class ScopedEnv;
class WatchingEnv;

class VIRELINE_EXPORT FileOpenWatch {
 public:
  // Calls `onOpen` before every file the library opens until destruction.
  explicit FileOpenWatch(std::function<void()> onOpen);

  // Stops watching.
  ~FileOpenWatch();

  FileOpenWatch(const FileOpenWatch&) = delete;
  FileOpenWatch& operator=(const FileOpenWatch&) = delete;

 private:
  std::unique_ptr<WatchingEnv> mEnv;
  std::unique_ptr<ScopedEnv> mInstalled;  // declared last: uninstalled before its environment goes
};

}  // namespace vireline

#endif  // VIRELINE_FILEOPENWATCH_H_
