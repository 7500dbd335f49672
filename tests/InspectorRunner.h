// Runs the `vireline` inspector as a child process, for the inspector's tests.
#ifndef VIRELINE_TESTS_INSPECTORRUNNER_H_
#define VIRELINE_TESTS_INSPECTORRUNNER_H_

#include <string>

struct InspectorRun {
  int exitStatus = -1;
  std::string out;  // standard output
  std::string err;  // standard error
};

// Runs `vireline <arguments>` (arguments are passed to the shell as written).
InspectorRun RunInspector(const std::string& arguments);

// The examples folder (with the sample device image): $VIRELINE_TEST_EXAMPLES_DIR
// where the tests run away from the source tree (as on a device), else the
// source tree's own.
std::string ExamplesDir();

#endif  // VIRELINE_TESTS_INSPECTORRUNNER_H_
