// Runs library operations against a device image without changing it: while
// a ScratchOverlay lives, everything the library writes lands in a private
// scratch folder laid over the image, and later reads see the scratch copy
// first. Tools use it to show what an operation would write.
//
//   vireline::ScratchOverlay overlay;
//   if (overlay.IsUsable()) { RunTheCheck(); Show(overlay.WrittenFiles()); }
#ifndef VIRELINE_SCRATCHOVERLAY_H_
#define VIRELINE_SCRATCHOVERLAY_H_

#include <memory>
#include <string>
#include <vector>

#include <vireline/Export.h>

namespace vireline {

class ScopedEnv;
class ScratchOverlayEnv;

class VIRELINE_EXPORT ScratchOverlay {
 public:
  // Makes a new, empty scratch folder ($TMPDIR, else /tmp) and lays it over
  // the device image for every library operation until destruction.
  ScratchOverlay();

  // Restores the platform as it was and removes the scratch folder.
  ~ScratchOverlay();

  ScratchOverlay(const ScratchOverlay&) = delete;
  ScratchOverlay& operator=(const ScratchOverlay&) = delete;

  // False when no scratch folder could be made; every write then fails.
  bool IsUsable() const;

  // The device paths of the files written so far, sorted.
  std::vector<std::string> WrittenFiles() const;

 private:
  std::unique_ptr<ScratchOverlayEnv> mEnv;
  std::unique_ptr<ScopedEnv> mInstalled;  // declared last: uninstalled before its environment goes
};

}  // namespace vireline

#endif  // VIRELINE_SCRATCHOVERLAY_H_
