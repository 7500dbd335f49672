// Out-of-memory for tests: the test program replaces the non-throwing operators
// new and new[], which behave as the standard ones until a test arms them.
#ifndef VIRELINE_TESTS_FAILINGALLOCATION_H_
#define VIRELINE_TESTS_FAILINGALLOCATION_H_

// Lets `successes` more non-throwing allocations succeed and fails the next one.
void FailNothrowAllocationAfter(int successes);

// Lets every non-throwing allocation succeed again.
void StopFailingNothrowAllocations();

#endif  // VIRELINE_TESTS_FAILINGALLOCATION_H_
