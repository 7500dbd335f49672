#include "InspectorRunner.h"

#include <stdio.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

namespace {

// The value of environment variable `name`, or `fallback` when it is unset or empty.
std::string FromEnvironment(const char* name, const char* fallback) {
  const char* value = getenv(name);
  return value != nullptr && *value != '\0' ? value : fallback;
}

std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

}  // namespace

InspectorRun RunInspector(const std::string& arguments) {
  char errPath[] = "/tmp/vireline-inspector-err-XXXXXX";
  int errFile = mkstemp(errPath);
  close(errFile);
  // $VIRELINE_TEST_TOOL names an installed inspector where the build tree is not at hand.
  std::string command = FromEnvironment("VIRELINE_TEST_TOOL", VIRELINE_TOOL_COMMAND) + " " + arguments + " 2>" + errPath;
  InspectorRun run;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return run;
  char buffer[4096];
  size_t count;
  while ((count = fread(buffer, 1, sizeof buffer, pipe)) > 0) run.out.append(buffer, count);
  int status = pclose(pipe);
  run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.err = Slurp(errPath);
  unlink(errPath);
  return run;
}

std::string ExamplesDir() { return FromEnvironment("VIRELINE_TEST_EXAMPLES_DIR", VIRELINE_EXAMPLES_DIR); }
