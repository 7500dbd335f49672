// `vireline json FILE [PATH]`: a JSON document as the library loads it, or
// the value at a path such as "Flags[0].LocaleCode" (keys joined by ".",
// array elements chosen by "[N]").
#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

// One step of a path: a member key or an element index.
struct PathStep {
  bool isIndex;
  std::string key;
  LTM::ArrayIndex index;
};

// Reads "[N]" at text[*at]; false when it is not a whole bracketed 32-bit number.
bool ParseIndex(const std::string& text, size_t* at, LTM::ArrayIndex* index) {
  size_t close = text.find(']', *at);
  if (close == std::string::npos || close == *at + 1) return false;
  unsigned long long value = 0;
  for (size_t i = *at + 1; i < close; ++i) {
    if (text[i] < '0' || text[i] > '9') return false;
    value = value * 10 + static_cast<unsigned>(text[i] - '0');
    if (value > 0xFFFFFFFFull) return false;
  }
  *index = static_cast<LTM::ArrayIndex>(value);
  *at = close + 1;
  return true;
}

// The steps of `path`; false when it is malformed (an empty key between
// dots, a stray bracket, an index that is not a number).
bool ParsePath(const std::string& path, std::vector<PathStep>* steps) {
  size_t at = 0;
  while (true) {
    size_t end = path.find_first_of(".[]", at);
    if (end == std::string::npos) end = path.size();
    bool leadingIndex = at == 0 && end == 0 && !path.empty() && path[0] == '[';
    if (end == at && !leadingIndex) return false;
    if (end > at) steps->push_back(PathStep{false, path.substr(at, end - at), 0});
    at = end;
    while (at < path.size() && path[at] == '[') {
      PathStep step{true, std::string(), 0};
      if (!ParseIndex(path, &at, &step.index)) return false;
      steps->push_back(step);
    }
    if (at == path.size()) return true;
    if (path[at] != '.') return false;
    ++at;
  }
}

// The value the steps lead to inside `root`; null when a step finds nothing.
// Kinds are checked first, so a wrong turn never raises a type assertion.
const LTM::Value* Resolve(const LTM::Value& root, const std::vector<PathStep>& steps) {
  const LTM::Value* at = &root;
  for (const PathStep& step : steps) {
    if (step.isIndex) {
      if (!at->isArray() || !at->isValidIndex(step.index)) return nullptr;
      at = &(*at)[step.index];
    } else {
      if (!at->isObject() || !at->isMember(Glib::ustring(step.key))) return nullptr;
      at = &(*at)[Glib::ustring(step.key)];
    }
  }
  return at;
}

// JsonCpp's "* Line 3, Column 5\n  Syntax error: ...\n" as one line,
// "line 3, column 5: Syntax error: ..." (the first error only).
std::string FirstError(const std::string& messages) {
  std::string text = messages;
  if (text.compare(0, 2, "* ") == 0) text.erase(0, 2);
  size_t lineEnd = text.find('\n');
  std::string place = text.substr(0, lineEnd);
  if (!place.empty()) place[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(place[0])));
  size_t columnWord = place.find(", Column");
  if (columnWord != std::string::npos) place[columnWord + 2] = 'c';
  if (lineEnd == std::string::npos) return place;
  size_t start = text.find_first_not_of(' ', lineEnd + 1);
  size_t end = text.find('\n', start);
  return start == std::string::npos ? place : place + ": " + text.substr(start, end - start);
}

// Why a regular file did not load: where its text stops being JSON, or that
// it could not be read.
std::string LoadFailure(const std::string& path) {
  const size_t kMaxText = kMaxTextFileSize;
  std::string text;
  vireline::tDeviceFileRead read = vireline::ReadDeviceFile(path, kMaxText + 1, &text);
  if (read == vireline::tDeviceFileRead::kNotOpened) return "cannot be opened";
  if (read == vireline::tDeviceFileRead::kNotRead) return "cannot be read";
  if (text.size() > kMaxText) return "larger than 16 MiB, the most the inspector reads";
  text.resize(std::strlen(text.c_str()));  // the library's text ends at a zero byte too
  LTM::Reader reader;
  LTM::Value root;
  if (reader.parse(Glib::ustring(text), root)) return "cannot be read";
  return "not a JSON document: " + FirstError(reader.getFormattedErrorMessages());
}

int RunJson(const std::string& path, const std::string& valuePath, bool hasPath) {
  std::vector<PathStep> steps;
  if (hasPath && !ParsePath(valuePath, &steps)) {
    std::fprintf(stderr, "vireline json: malformed path '%s' (expected keys and [N] indexes, e.g. Flags[0].LocaleCode)\n",
                 valuePath.c_str());
    return kUsage;
  }
  // Whatever keeps the document from loading, the exit status is 1.
  if (CheckTextFile("json", path) != kSuccess) return kNotFound;
  LTM::CJSonFile file(path, 0);
  if (file.Load() != 0) {
    std::fprintf(stderr, "vireline json: %s: %s\n", path.c_str(), LoadFailure(path).c_str());
    return kNotFound;
  }
  const LTM::Value* value = Resolve(file.mRoot, steps);
  if (value == nullptr) {
    std::fprintf(stderr, "vireline json: %s: no value at '%s'\n", path.c_str(), valuePath.c_str());
    return kNotFound;
  }
  if (value->isString()) {
    std::printf("%s\n", value->asCString());
  } else {
    std::fputs(LTM::StyledWriter().write(*value).c_str(), stdout);
  }
  return kSuccess;
}

}  // namespace

void RegisterJsonCommand(CLI::App& program, Action* action) {
  auto* json = program.add_subcommand("json", "Print a JSON document as the library loads it, or the value at a path");
  static std::string path, valuePath;  // must outlive the parse and the action
  json->add_option("FILE", path, "The file, as a device path (below --root)")->required();
  auto* pathOption = json->add_option("PATH", valuePath, "Print only this value, e.g. Flags[0].LocaleCode");
  json->callback([action, pathOption] {
    bool hasPath = pathOption->count() > 0;
    *action = [hasPath] { return RunJson(path, valuePath, hasPath); };
  });
}

}  // namespace tools
}  // namespace vireline
