#include "hardening/FaultMatrix.h"

#include <gtest/gtest.h>

#include <cerrno>

using vireline::FaultInjectionEnv;

std::string Describe(const FaultMatrixStep& step) {
  static const char* const kNames[] = {"open",   "read",       "write",      "sync",    "close",    "erase",  "stat",
                                       "mkdir",  "remove",     "rename",     "chmod",   "list",     "syncdir", "statfs",
                                       "run",    "socket",     "connect",    "send",    "receive"};
  static_assert(sizeof kNames / sizeof kNames[0] == FaultInjectionEnv::kOpCount, "one name per operation");
  return std::string(kNames[step.op]) + " #" + std::to_string(step.successes + 1) +
         (step.once ? ", once" : ", from then on");
}

std::vector<FaultInjectionEnv::Op> FileOps() {
  return {FaultInjectionEnv::kOpen,    FaultInjectionEnv::kRead,   FaultInjectionEnv::kWrite,
          FaultInjectionEnv::kSync,    FaultInjectionEnv::kClose,  FaultInjectionEnv::kStat,
          FaultInjectionEnv::kMakeDir, FaultInjectionEnv::kRemove, FaultInjectionEnv::kRename,
          FaultInjectionEnv::kListDir, FaultInjectionEnv::kSyncDir};
}

int RunFaultMatrix(FaultInjectionEnv& faults, const std::vector<FaultInjectionEnv::Op>& ops,
                   const std::function<void()>& reset, const std::function<bool()>& attempt,
                   const std::function<void(const FaultMatrixStep&, bool reported)>& check,
                   const std::function<bool(int successes)>& failing) {
  faults.Reset();
  reset();
  faults.Reset();
  const bool cleanReport = attempt();
  EXPECT_TRUE(cleanReport) << "the operation fails without any fault";
  int counts[FaultInjectionEnv::kOpCount];
  for (int op = 0; op < FaultInjectionEnv::kOpCount; ++op) counts[op] = faults.Calls(FaultInjectionEnv::Op(op));

  int runs = 0;
  for (FaultInjectionEnv::Op op : ops) {
    for (int successes = 0; successes < counts[op]; ++successes) {
      if (failing && !failing(successes)) continue;
      for (bool once : {true, false}) {
        const FaultMatrixStep step{op, successes, once};
        faults.Reset();
        reset();
        faults.Reset();
        faults.FailAfter(op, successes, EIO, once);
        const bool reported = attempt();
        faults.Reset();
        SCOPED_TRACE(Describe(step));
        check(step, reported);
        ++runs;
        if (::testing::Test::HasFatalFailure()) return runs;
      }
    }
  }
  return runs;
}
