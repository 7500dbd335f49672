// Desktop tools that read a device image still write some files of their own
// (a report page): while a HostPaths lives, the library's file operations
// take host paths as they are instead of mapping them below the device root.
#ifndef VIRELINE_HOSTPATHS_H_
#define VIRELINE_HOSTPATHS_H_

#include <memory>

#include <vireline/Export.h>

namespace vireline {

class ScopedEnv;

class VIRELINE_EXPORT HostPaths {
 public:
  // From now on paths are host paths.
  HostPaths();

  // Paths are device paths again (or whatever they were before).
  ~HostPaths();

  HostPaths(const HostPaths&) = delete;
  HostPaths& operator=(const HostPaths&) = delete;

 private:
  std::unique_ptr<ScopedEnv> mInstalled;
};

}  // namespace vireline

#endif  // VIRELINE_HOSTPATHS_H_
