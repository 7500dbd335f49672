// The user-mode emulator that runs the cross-built tests cannot start
// threads: a test that needs one skips itself there.
#ifndef VIRELINE_TESTS_EMULATORTHREADS_H_
#define VIRELINE_TESTS_EMULATORTHREADS_H_

#include <gtest/gtest.h>

#ifdef VIRELINE_TESTS_UNDER_EMULATOR
#define SKIP_WITHOUT_THREADS() GTEST_SKIP() << "the emulator running these tests cannot start threads"
#else
#define SKIP_WITHOUT_THREADS() static_cast<void>(0)
#endif

#endif  // VIRELINE_TESTS_EMULATORTHREADS_H_
