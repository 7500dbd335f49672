// What the inspector's key=value commands share: how the text of key=value
// files is shown (tools/DisplayText.h), JSON output, and the check that a
// path names a regular file.
#ifndef VIRELINE_TOOLS_KEYVALUEDISPLAY_H_
#define VIRELINE_TOOLS_KEYVALUEDISPLAY_H_

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include <json/json.h>

#include <vireline/COrvoInterface.h>
#include <vireline/PkgPath.h>

#include "tools/Commands.h"
#include "tools/DisplayText.h"

namespace vireline {
namespace tools {

// Prints `json` on standard output, indented, with UTF-8 text as it is.
inline void PrintJson(const Json::Value& json) {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "  ";
  builder["emitUTF8"] = true;
  std::unique_ptr<Json::StreamWriter> writer(builder.newStreamWriter());
  writer->write(json, &std::cout);
  std::cout << std::endl;
}

// kSuccess when `path` is a regular file; otherwise reports why on standard
// error ("vireline <command>: ...") and returns the exit status.
inline int CheckRegularFile(const char* command, const std::string& path) {
  tStatLite info;
  if (!COrvoInterface::Stat(path.c_str(), &info, false)) {
    std::fprintf(stderr, "vireline %s: %s: no such file\n", command, path.c_str());
    return kNotFound;
  }
  if (info.type != 1) {
    std::fprintf(stderr, "vireline %s: %s: not a regular file\n", command, path.c_str());
    return kIoError;
  }
  return kSuccess;
}

// kSuccess and `dir` + "/meta.inf" in *path when that names a regular file;
// otherwise reports why on standard error and returns the exit status.
inline int PackageMetaInf(const char* command, const std::string& dir, std::string* path) {
  char joined[256];
  if (!CPkgPathBase::MakeFilePath(joined, sizeof joined, dir.c_str(), "meta.inf", nullptr) || joined[0] == '\0') {
    std::fprintf(stderr, "vireline %s: %s: not a usable package folder\n", command, dir.c_str());
    return kUsage;
  }
  *path = joined;
  return CheckRegularFile(command, *path);
}

}  // namespace tools
}  // namespace vireline

#endif  // VIRELINE_TOOLS_KEYVALUEDISPLAY_H_
