// Runs one durable operation with the power cut after each of its durability
// steps in turn, and hands the disk each cut leaves to the caller's check.
#ifndef VIRELINE_TESTS_HARDENING_POWERLOSSMATRIX_H_
#define VIRELINE_TESTS_HARDENING_POWERLOSSMATRIX_H_

#include <functional>

#include "hardening/PowerLossEnv.h"

// Runs `attempt` once with the power on to count its durability steps, then
// once with the power cut after each of them (calling `reset` before every
// run); `check` sees the disk the cut left. Returns the number of cuts.
int CutPowerAtEveryStep(PowerLossEnv& loss, const std::function<void()>& reset, const std::function<void()>& attempt,
                        const std::function<void(int cut, int steps)>& check);

#endif  // VIRELINE_TESTS_HARDENING_POWERLOSSMATRIX_H_
