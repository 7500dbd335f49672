// Collects the library's debug messages while it is in scope instead of
// printing them, so that the inspector can show what the library reported
// (package requests, corruption notices) as part of its own output.
#ifndef VIRELINE_TOOLS_DEBUGCAPTURE_H_
#define VIRELINE_TOOLS_DEBUGCAPTURE_H_

#include <string>
#include <vector>

#include <vireline/Platform.h>

namespace vireline {
namespace tools {

class DebugCapture {
 public:
  // Starts collecting every message of level `level` or below (the master
  // level is raised to it when lower).
  explicit DebugCapture(int level) {
    Texts().clear();
    PlatformDebug debug;
    if (debug.GetEffectiveDebugLevel() < level) debug.SetMasterDebugLevel(level);
    PlatformDebug::SetOutputFunction([](int, int, const char* text) { Texts().push_back(text); });
  }

  // Messages go to standard error again.
  ~DebugCapture() { PlatformDebug::SetOutputFunction(nullptr); }

  DebugCapture(const DebugCapture&) = delete;
  DebugCapture& operator=(const DebugCapture&) = delete;

  // The texts collected so far, in order.
  const std::vector<std::string>& texts() const { return Texts(); }

  // The texts collected so far, each without its final line feed.
  std::vector<std::string> lines() const {
    std::vector<std::string> lines = Texts();
    for (std::string& line : lines) {
      if (!line.empty() && line.back() == '\n') line.pop_back();
    }
    return lines;
  }

 private:
  static std::vector<std::string>& Texts() {
    static std::vector<std::string> texts;
    return texts;
  }
};

}  // namespace tools
}  // namespace vireline

#endif  // VIRELINE_TOOLS_DEBUGCAPTURE_H_
