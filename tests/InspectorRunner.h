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

#endif  // VIRELINE_TESTS_INSPECTORRUNNER_H_
