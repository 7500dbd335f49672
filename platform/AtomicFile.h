// Atomic replace for the library's own writers: a file object whose content
// replaces its target only when its Close succeeds.
#ifndef VIRELINE_PLATFORM_ATOMICFILE_H_
#define VIRELINE_PLATFORM_ATOMICFILE_H_

#include <memory>
#include <string>

#include "platform/Env.h"

namespace vireline {

// Opens a writer on a temporary file beside `path`; `append` starts it from
// the current content of `path`. Its Close syncs and closes the temporary
// file, renames it over `path` and syncs the folder; a failed write before,
// or any failure of those steps, removes the temporary file and keeps the old
// target. Destroying the writer without Close abandons it the same way: for a
// writer that learns, before committing, that its content is incomplete.
Result NewAtomicFile(const std::string& path, bool append, std::unique_ptr<WritableFile>* file);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_ATOMICFILE_H_
