// The one deprecation warning every deprecated operation prints, on one of
// the library's debug channels.
#ifndef VIRELINE_BASEUTILS_DEBUGMODULES_H_
#define VIRELINE_BASEUTILS_DEBUGMODULES_H_

#include <vireline/DebugModules.h>

namespace vireline {

// Prints "WARNING:  Use of a deprecated function: <signature>" at level 5 on `module`.
void WarnDeprecated(int module, const char* signature);

}  // namespace vireline

#endif  // VIRELINE_BASEUTILS_DEBUGMODULES_H_
