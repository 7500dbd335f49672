// Runs one durable operation again and again with the platform failing a
// different call each time: every operation kind, every call of that kind,
// failing once or from then on. The caller checks the disk after each run.
#ifndef VIRELINE_TESTS_HARDENING_FAULTMATRIX_H_
#define VIRELINE_TESTS_HARDENING_FAULTMATRIX_H_

#include <functional>
#include <string>
#include <vector>

#include "platform/FaultInjectionEnv.h"

// One injected failure: the call of `op` after `successes` good ones fails,
// alone when `once`, else with every later call of `op`.
struct FaultMatrixStep {
  vireline::FaultInjectionEnv::Op op;
  int successes;
  bool once;
};

// "write #3, once": names a step in failure messages.
std::string Describe(const FaultMatrixStep& step);

// The operation kinds a file writer or reader goes through.
std::vector<vireline::FaultInjectionEnv::Op> FileOps();

// For each op in `ops` and each of its calls in a run without faults, and in
// both modes: calls `reset` (no fault armed), arms the fault, calls `attempt`
// and hands its report to `check` with the fault disarmed. Returns the number
// of runs with a fault armed. When `failing` is given, only the calls it
// accepts (by the number of good calls before them) are failed.
int RunFaultMatrix(vireline::FaultInjectionEnv& faults, const std::vector<vireline::FaultInjectionEnv::Op>& ops,
                   const std::function<void()>& reset, const std::function<bool()>& attempt,
                   const std::function<void(const FaultMatrixStep&, bool reported)>& check,
                   const std::function<bool(int successes)>& failing = nullptr);

#endif  // VIRELINE_TESTS_HARDENING_FAULTMATRIX_H_
