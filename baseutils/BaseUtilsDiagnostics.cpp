// Assertions and trace output of BaseUtils.
#include <vireline/BaseUtils.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "baseutils/UpperLayers.h"

namespace {

const size_t kMessageSize = 2048;

// An assertion raised while another one is being logged (the play log's own
// file failing, say) is only reported, so logging cannot recurse forever.
bool gLoggingAssertion = false;

void LogCriticalError(const char* message) {
  if (gLoggingAssertion) return;
  gLoggingAssertion = true;
  vireline::upper::AppendCriticalError(message);
  vireline::upper::ConsultSettingsAfterAssert();
  gLoggingAssertion = false;
}

}  // namespace

void BaseUtils::Assert(int condition, const char* file, int line, const char* format, ...) {
  if (condition != 0) return;
  char message[kMessageSize];
  va_list args;
  va_start(args, format);
  int used = vsnprintf(message, sizeof message, format, args);
  va_end(args);
  size_t length = used < 0 ? 0 : std::strlen(message);
  snprintf(message + length, sizeof message - length, " (line %d in %s)", line, file);
  LogCriticalError(message);
  PlatformDebug(vireline::kDataObjectsDebugModule).Assert(false, "%s", message);
}

void BaseUtils::SetupTrace(uint32_t mask, bool enable) {
  mTraceMask = mask;
  mTraceEnabled = enable;
}

void BaseUtils::TraceEx(unsigned int traceId, const char* format, ...) {
  PlatformDebug debug(vireline::kDataObjectsDebugModule);
  if (traceId > 63) {
    debug.DebugOut(1, "Trace Error: traceId must be in the range 0-63; trace will not be displayed");
    return;
  }
  // Ids 32 to 63 pass the range check but no 32-bit mask bit stands for them,
  // so they are never shown; callers of older firmware rely on exactly this.
  bool shown = traceId < 32 && ((mTraceMask >> traceId) & 1u) != 0;
  if (!shown) return;
  char message[kMessageSize];
  va_list args;
  va_start(args, format);
  vsnprintf(message, sizeof message, format, args);
  va_end(args);
  debug.DebugOut(1, "%s", message);
}

void BaseUtils::Trace(const char* format, ...) {
  if (!mTraceEnabled) return;
  char message[kMessageSize];
  va_list args;
  va_start(args, format);
  vsnprintf(message, sizeof message, format, args);
  va_end(args);
  PlatformDebug(vireline::kDataObjectsDebugModule).DebugOut(1, "%s", message);
}
