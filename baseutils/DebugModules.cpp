#include "baseutils/DebugModules.h"

#include <vireline/Platform.h>

namespace vireline {

void WarnDeprecated(int module, const char* signature) {
  PlatformDebug(module).DebugOut(5, "WARNING:  Use of a deprecated function: %s\n", signature);
}

}  // namespace vireline
