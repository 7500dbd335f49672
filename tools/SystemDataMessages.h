// What the paths and find commands do with the system paths' own messages
// (lookup traces, locale fallbacks, deprecation warnings): the library raises
// that channel to its most talkative level, so the commands either drop its
// messages or, to explain a lookup, print them in order with the output.
// Every other channel still reaches standard error.
#ifndef VIRELINE_TOOLS_SYSTEMDATAMESSAGES_H_
#define VIRELINE_TOOLS_SYSTEMDATAMESSAGES_H_

#include <cstdio>

#include <vireline/DebugModules.h>
#include <vireline/Platform.h>

namespace vireline {
namespace tools {

inline void DropSystemDataMessages(int module, int, const char* text) {
  if (module != kSystemPathsDebugModule) std::fputs(text, stderr);
}

inline void PrintSystemDataMessages(int module, int, const char* text) {
  std::fputs(text, module == kSystemPathsDebugModule ? stdout : stderr);
}

// Drops the system paths' messages, or with `show` prints them on standard output.
inline void RouteSystemDataMessages(bool show) {
  PlatformDebug::SetOutputFunction(show ? PrintSystemDataMessages : DropSystemDataMessages);
}

}  // namespace tools
}  // namespace vireline

#endif  // VIRELINE_TOOLS_SYSTEMDATAMESSAGES_H_
