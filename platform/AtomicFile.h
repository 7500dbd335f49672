// The library's own additions to fopenAtomic/fcloseAtomic.
#ifndef VIRELINE_PLATFORM_ATOMICFILE_H_
#define VIRELINE_PLATFORM_ATOMICFILE_H_

#include <cstdio>

namespace vireline {

// Closes a stream fopenAtomic opened without replacing its target, and removes
// its temporary file: for a writer that learns, before committing, that the
// content it wrote is incomplete (a failed read of its source, say).
void AbandonAtomic(FILE* stream);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_ATOMICFILE_H_
