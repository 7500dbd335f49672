// The play log's debug output: every failure of the log file manager is a
// fatal logging message at level 3, never an error returned to the caller.
#ifndef VIRELINE_LOGGING_LOGDEBUG_H_
#define VIRELINE_LOGGING_LOGDEBUG_H_

#include <cstdarg>

#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"

namespace vireline {

// The debug module the play log speaks for.
const int kLogDebugModule = kDataObjectsDebugModule;

// Writes a fatal logging message at level 3 through a temporary debug object.
inline void LogDebug(const char* format, ...) __attribute__((format(printf, 1, 2)));
inline void LogDebug(const char* format, ...) {
  va_list args;
  va_start(args, format);
  PlatformDebug(kLogDebugModule).VDebugOut(3, format, args);
  va_end(args);
}

}  // namespace vireline

#endif  // VIRELINE_LOGGING_LOGDEBUG_H_
