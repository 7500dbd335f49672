// `vireline deps DIR`: runs the dependency check of the package in DIR, as an
// application does before it starts, and shows what was requested. The
// requests are collected from what the library reports while it makes them.
#include <cstdio>
#include <string>
#include <vector>

#include <json/json.h>

#include <vireline/BaseUtils.h>
#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/DebugCapture.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

const int kRequestLevel = 2;  // package requests and list errors are reported at this level
const char kRequestPrefix[] = "RequestPackageQVC: ";

struct Request {
  std::string id;
  std::string version;
};

// What the check did: its mask, its requests and anything else it reported.
struct CheckReport {
  U32 result;
  std::vector<Request> requests;
  std::vector<std::string> notes;
};

std::string WithoutLineFeed(std::string text) {
  if (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

CheckReport Check(const std::string& dir) {
  CheckReport report{0, {}, {}};
  DebugCapture capture(kRequestLevel);
  report.result = LTM::CMetaInfo(dir).CheckCartDependencies();
  for (const std::string& text : capture.texts()) {
    if (text.compare(0, sizeof kRequestPrefix - 1, kRequestPrefix) != 0) {
      report.notes.push_back(WithoutLineFeed(text));
      continue;
    }
    std::string request = WithoutLineFeed(text.substr(sizeof kRequestPrefix - 1));
    size_t blank = request.find(' ');
    report.requests.push_back(blank == std::string::npos ? Request{request, ""}
                                                         : Request{request.substr(0, blank), request.substr(blank + 1)});
  }
  return report;
}

void Field(const char* label, const std::string& value) { std::printf("%-15s %s\n", label, value.c_str()); }

std::string MaskText(U32 result) {
  char hex[16];
  std::snprintf(hex, sizeof hex, "0x%X", result);
  std::string text = hex;
  if (result == 0) return text + "  (nothing missing)";
  std::string parts;
  if (result & LTM::CMetaInfo::kRequestedApplication) parts = "application or firmware";
  if (result & LTM::CMetaInfo::kRequestedLanguagePack) parts += std::string(parts.empty() ? "" : ", ") + "language pack";
  return text + "  (" + parts + ")";
}

void PrintText(const std::string& metaInf, const CheckReport& report) {
  Field("meta.inf", metaInf);
  Field("platform", DisplayText(BaseUtils::Instance()->GetPlatformName().c_str()) + " (type " +
                        std::to_string(BaseUtils::Instance()->GetPlatformType()) + ")");
  Field("result", MaskText(report.result));
  for (const Request& request : report.requests) {
    Field("requested", DisplayText(request.id.c_str()) + " " + DisplayText(request.version.c_str()));
  }
  for (const std::string& note : report.notes) Field("note", DisplayText(note.c_str()));
}

void PrintJsonOf(const std::string& metaInf, const CheckReport& report) {
  Json::Value json(Json::objectValue);
  json["metaInf"] = metaInf;
  json["platformName"] = DisplayText(BaseUtils::Instance()->GetPlatformName().c_str());
  json["platformType"] = BaseUtils::Instance()->GetPlatformType();
  json["result"] = report.result;
  json["requestedApplication"] = (report.result & LTM::CMetaInfo::kRequestedApplication) != 0;
  json["requestedLanguagePack"] = (report.result & LTM::CMetaInfo::kRequestedLanguagePack) != 0;
  json["requests"] = Json::Value(Json::arrayValue);
  for (const Request& request : report.requests) {
    Json::Value item(Json::objectValue);
    item["id"] = DisplayText(request.id.c_str());
    item["version"] = DisplayText(request.version.c_str());
    json["requests"].append(item);
  }
  json["notes"] = Json::Value(Json::arrayValue);
  for (const std::string& note : report.notes) json["notes"].append(DisplayText(note.c_str()));
  PrintJson(json);
}

int RunDeps(const std::string& dir, bool json) {
  std::string path;
  int status = PackageMetaInf("deps", dir, &path);
  if (status != kSuccess) return status;
  CheckReport report = Check(dir);
  if (json) {
    PrintJsonOf(path, report);
  } else {
    PrintText(path, report);
  }
  return kSuccess;
}

}  // namespace

void RegisterDepsCommand(CLI::App& program, Action* action) {
  auto* deps = program.add_subcommand("deps", "Run a package's dependency check and show what it requested");
  static std::string dir;  // must outlive the parse and the action
  static bool json = false;
  deps->add_option("DIR", dir, "The package folder, as a device path (below --root)")->required();
  deps->add_flag("--json", json, "Machine-readable output");
  deps->callback([action] { *action = [] { return RunDeps(dir, json); }; });
}

}  // namespace tools
}  // namespace vireline
