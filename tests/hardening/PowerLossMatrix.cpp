#include "hardening/PowerLossMatrix.h"

#include <gtest/gtest.h>

#include <string>

int CutPowerAtEveryStep(PowerLossEnv& loss, const std::function<void()>& reset, const std::function<void()>& attempt,
                        const std::function<void(int cut, int steps)>& check) {
  loss.Forget();
  reset();
  attempt();
  const int steps = loss.Steps();
  EXPECT_GT(steps, 0);
  for (int cut = 0; cut <= steps; ++cut) {
    loss.Forget();
    reset();
    loss.CutPowerAfter(cut);
    attempt();
    loss.DropUnsyncedData();
    SCOPED_TRACE("power cut after step " + std::to_string(cut) + " of " + std::to_string(steps));
    check(cut, steps);
    if (::testing::Test::HasFatalFailure()) break;
  }
  return steps + 1;
}
