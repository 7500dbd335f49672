#include "FailingAllocation.h"

#include <new>

namespace {

// How many more non-throwing allocations succeed before one fails; -1: none fails.
int gNothrowCountdown = -1;

}  // namespace

void FailNothrowAllocationAfter(int successes) { gNothrowCountdown = successes; }

void StopFailingNothrowAllocations() { gNothrowCountdown = -1; }

namespace {

// True when the countdown says this non-throwing allocation fails.
bool NextNothrowAllocationFails() { return gNothrowCountdown >= 0 && gNothrowCountdown-- == 0; }

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (NextNothrowAllocationFails()) return nullptr;
  try {
    return ::operator new(size);
  } catch (...) {
    return nullptr;
  }
}

// The array form allocates as an array, so a sanitizer pairs it with delete[].
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  if (NextNothrowAllocationFails()) return nullptr;
  try {
    return ::operator new[](size);
  } catch (...) {
    return nullptr;
  }
}
