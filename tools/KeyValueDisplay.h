// What the inspector's key=value commands share: how the text of key=value
// files is shown (vireline::DisplayText), JSON output, and the check that a
// path names a regular file.
#ifndef VIRELINE_TOOLS_KEYVALUEDISPLAY_H_
#define VIRELINE_TOOLS_KEYVALUEDISPLAY_H_

#include <cstdint>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include <json/json.h>

#include <vireline/COrvoInterface.h>
#include <vireline/DisplayText.h>
#include <vireline/PkgPath.h>

#include "tools/Commands.h"

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

// The largest text file the inspector reads whole: far above any settings,
// metadata or document file, and a bound on what a wrong file can cost.
const uint32_t kMaxTextFileSize = 16u * 1024 * 1024;

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

// As CheckRegularFile, for a text file read whole: also refused when larger
// than kMaxTextFileSize.
inline int CheckTextFile(const char* command, const std::string& path) {
  int status = CheckRegularFile(command, path);
  tStatLite info;
  if (status == kSuccess && COrvoInterface::Stat(path.c_str(), &info, false) && info.size > kMaxTextFileSize) {
    std::fprintf(stderr, "vireline %s: %s: larger than 16 MiB, the most the inspector reads\n", command, path.c_str());
    return kIoError;
  }
  return status;
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
  return CheckTextFile(command, *path);
}

}  // namespace tools
}  // namespace vireline

#endif  // VIRELINE_TOOLS_KEYVALUEDISPLAY_H_
