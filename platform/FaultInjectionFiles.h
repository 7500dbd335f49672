// The file objects FaultInjectionEnv hands out: each wraps the target's file
// and passes its reads and writes a byte at a time through the env's checks,
// so every byte is one countable read or write, as on an unbuffered stream.
#ifndef VIRELINE_PLATFORM_FAULTINJECTIONFILES_H_
#define VIRELINE_PLATFORM_FAULTINJECTIONFILES_H_

#include <memory>

#include "platform/FaultInjectionEnv.h"

namespace vireline {

// Wraps `inner` so that its reads pass env's kRead checks and its destruction kClose.
std::unique_ptr<SequentialFile> NewFaultSequentialFile(FaultInjectionEnv* env, std::unique_ptr<SequentialFile> inner);

// Wraps `inner` so that appends pass kWrite, syncs kSync and closes kClose.
std::unique_ptr<WritableFile> NewFaultWritableFile(FaultInjectionEnv* env, std::unique_ptr<WritableFile> inner);

// Wraps `inner`: reads pass kRead, writes and appends kWrite, erases kErase,
// syncs kSync and closes kClose. An append at the end is one write.
std::unique_ptr<RandomRWFile> NewFaultRandomRWFile(FaultInjectionEnv* env, std::unique_ptr<RandomRWFile> inner);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_FAULTINJECTIONFILES_H_
