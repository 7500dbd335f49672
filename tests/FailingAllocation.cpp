#include "FailingAllocation.h"

#include <new>

namespace {

// How many more non-throwing allocations succeed before one fails; -1: none fails.
int gNothrowCountdown = -1;

}  // namespace

void FailNothrowAllocationAfter(int successes) { gNothrowCountdown = successes; }

void StopFailingNothrowAllocations() { gNothrowCountdown = -1; }

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (gNothrowCountdown >= 0 && gNothrowCountdown-- == 0) return nullptr;
  try {
    return ::operator new(size);
  } catch (...) {
    return nullptr;
  }
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return ::operator new(size, tag); }
