// A debug message made of a text between two fixed parts, emitted without a
// format to parse: the asset lookups trace every call this way.
#ifndef VIRELINE_PLATFORM_DEBUGJOINED_H_
#define VIRELINE_PLATFORM_DEBUGJOINED_H_

#include <string_view>

namespace vireline {

// Emits `prefix` + `text` + `suffix` on `module`'s channel at `level`, exactly
// as PlatformDebug(module).DebugOut(level, "<prefix>%s<suffix>", text) would.
void DebugOutJoined(int module, int level, std::string_view prefix, const char* text, std::string_view suffix);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_DEBUGJOINED_H_
