// printf-style text written through a file object.
#ifndef VIRELINE_PLATFORM_FORMATTEDWRITE_H_
#define VIRELINE_PLATFORM_FORMATTEDWRITE_H_

#include "platform/Env.h"

namespace vireline {

// Formats like printf and appends the text to `file` in one Append.
Result AppendFormatted(WritableFile* file, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_FORMATTEDWRITE_H_
