// `vireline version-compare A B`: how the library orders two package versions.
#include <cstdio>
#include <string>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

const char* OrderWord(int result) { return result < 0 ? "older" : (result > 0 ? "newer" : "equal"); }

int Run(const std::string& a, const std::string& b) {
  int result = BaseUtils::Instance()->CompareVersion(a, b);
  std::printf("%d %s: %s is %s %s\n", result, OrderWord(result), DisplayText(a.c_str()).c_str(),
              result == 0 ? "equal to" : (result < 0 ? "older than" : "newer than"), DisplayText(b.c_str()).c_str());
  return kSuccess;
}

}  // namespace

void RegisterVersionCompareCommand(CLI::App& program, Action* action) {
  auto* compare = program.add_subcommand("version-compare", "Order two package versions as the library does");
  static std::string a;  // must outlive the parse and the action
  static std::string b;
  compare->add_option("A", a, "The first version")->required();
  compare->add_option("B", b, "The second version")->required();
  compare->callback([action] { *action = [] { return Run(a, b); }; });
}

}  // namespace tools
}  // namespace vireline
