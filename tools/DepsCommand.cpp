// `vireline deps DIR`: runs the dependency check of the package in DIR, as an
// application does before it starts, and shows what it requested. The check
// writes its requests as files for the desktop connect application; here it
// runs over a scratch overlay, so the requests are read back from the files
// it wrote there and nothing is written into the device image.
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

const int kNoteLevel = 2;  // list errors are reported at this level
const char kRequestSuffix[] = ".txt";
const char kAddToDevice[] = "AddToDevice";

struct Request {
  std::string id;
  std::string version;
  std::string file;  // the request file the check wrote
};

// What the check did: its mask, its requests and anything else it reported.
struct CheckReport {
  U32 result;
  std::vector<Request> requests;
  std::vector<std::string> notes;
};

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The package requests among the files written into `inventory`, in name order.
std::vector<Request> RequestsWritten(const std::vector<std::string>& written, const std::string& inventory) {
  std::vector<Request> requests;
  for (const std::string& path : written) {
    if (path.compare(0, inventory.size(), inventory) != 0 || !EndsWith(path, kRequestSuffix)) continue;
    std::string name = path.substr(inventory.size());
    if (name.find('/') != std::string::npos) continue;
    CFileIO file;
    file.Open(path.c_str());
    const char* command = file.GetStr("Command");
    if (command == nullptr || std::string(command) != kAddToDevice) continue;
    const char* version = file.GetStr("Version");
    requests.push_back(
        Request{name.substr(0, name.size() - (sizeof kRequestSuffix - 1)), version ? version : "", path});
  }
  return requests;
}

// Runs the check over a scratch overlay that takes what it writes; false
// when no scratch folder could be made.
bool Check(const std::string& dir, CheckReport* report) {
  ScratchOverlay overlay;
  if (!overlay.IsUsable()) return false;
  {
    DebugCapture capture(kNoteLevel);
    report->result = LTM::CMetaInfo(dir).CheckCartDependencies();
    report->notes = capture.lines();
  }
  std::string inventory = CSystemData::Instance()->GetManageInventoryPath();
  report->requests = RequestsWritten(overlay.WrittenFiles(), inventory);
  return true;
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
    item["file"] = DisplayText(request.file.c_str());
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
  CheckReport report{0, {}, {}};
  if (!Check(dir, &report)) {
    std::fprintf(stderr, "vireline deps: cannot make a scratch folder for the check's requests\n");
    return kIoError;
  }
  if (json) {
    PrintJsonOf(path, report);
  } else {
    PrintText(path, report);
  }
  return kSuccess;
}

}  // namespace

void RegisterDepsCommand(CLI::App& program, Action* action) {
  auto* deps = program.add_subcommand(
      "deps", "Run a package's dependency check and show what it would request (the image is not changed)");
  static std::string dir;  // must outlive the parse and the action
  static bool json = false;
  deps->add_option("DIR", dir, "The package folder, as a device path (below --root)")->required();
  deps->add_flag("--json", json, "Machine-readable output");
  deps->callback([action] { *action = [] { return RunDeps(dir, json); }; });
}

}  // namespace tools
}  // namespace vireline
