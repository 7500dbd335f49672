#include "ltm/ContentListMessages.h"

#include <cstdarg>

#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"

namespace LTM {

void ReportContentList(const char* format, ...) {
  va_list args;
  va_start(args, format);
  PlatformDebug(vireline::kContentListsDebugModule).VDebugOut(kContentListErrorLevel, format, args);
  va_end(args);
}

}  // namespace LTM
