// `vireline doom [--json]`: the global doom marker and the package folders
// that hold a doom marker; changes nothing. `vireline doom --critical --yes`:
// the check of the device's critical content, which creates doom markers for
// what it finds missing and so runs only when asked for with --yes.
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include <json/json.h>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/DebugCapture.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

const int kCriticalReportLevel = 2;  // the critical check reports at levels 1 and 2
const uint32_t kPathSize = 256;

std::string WithoutTrailingSlash(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

// Every folder that holds packages: each package type's folder on each
// volume, and the avatar and cartridge folders, once each.
std::set<std::string> PackageFolders() {
  std::set<std::string> folders;
  CPkgPathBase paths;
  for (tDeviceVolumeId vol = 0; vol < kAllVolumes; ++vol) {
    for (uint32_t i = 0; i < paths.GetNumPackageTypes(vol); ++i) {
      char path[kPathSize];
      if (paths.GetPackageDir(path, sizeof path, paths.GetPackageType(i, vol), vol, nullptr)) folders.insert(path);
    }
  }
  folders.insert(WithoutTrailingSlash(CSystemData::Instance()->GetAvatarsPath().raw()));
  folders.insert(WithoutTrailingSlash(CSystemData::Instance()->GetCartPath().raw()));
  return folders;
}

unsigned char AddIfDoomed(const CPath& folder, void* context) {
  if (BaseUtils::Instance()->HasDoomPackage(folder)) static_cast<std::set<std::string>*>(context)->insert(folder.raw());
  return 1;
}

std::set<std::string> DoomedPackages() {
  std::set<std::string> doomed;
  for (const std::string& folder : PackageFolders()) {
    BaseUtils::Instance()->EnumFolder(folder, AddIfDoomed, BaseUtils::kSelectDirectories, &doomed);
  }
  return doomed;
}

int RunList(bool json) {
  std::string marker = CSystemData::Instance()->GetRootPath().raw() + "doom";
  bool global = BaseUtils::Instance()->HasDoomPackage();
  std::set<std::string> doomed = DoomedPackages();
  if (json) {
    Json::Value out(Json::objectValue);
    out["globalMarker"] = marker;
    out["global"] = global;
    out["doomed"] = Json::Value(Json::arrayValue);
    for (const std::string& folder : doomed) out["doomed"].append(folder);
    PrintJson(out);
    return kSuccess;
  }
  std::printf("global marker %s: %s\n", marker.c_str(), global ? "present (all content withdrawn)" : "absent");
  std::printf("doomed packages: %zu\n", doomed.size());
  for (const std::string& folder : doomed) std::printf("  %s\n", DisplayText(folder.c_str()).c_str());
  return kSuccess;
}

int RunCritical() {
  bool doomed;
  std::vector<std::string> texts;
  {
    DebugCapture capture(kCriticalReportLevel);
    doomed = BaseUtils::Instance()->HasDoomPackageCritical();
    texts = capture.lines();
  }
  for (const std::string& text : texts) std::printf("%s\n", DisplayText(text.c_str()).c_str());
  std::printf("critical content: %s\n", doomed ? "incomplete or withdrawn" : "complete");
  return doomed ? kNotFound : kSuccess;
}

}  // namespace

void RegisterDoomCommand(CLI::App& program, Action* action) {
  auto* doom = program.add_subcommand("doom", "Doom markers of withdrawn content; --critical --yes checks the critical content");
  static bool json = false;  // must outlive the parse and the action
  static bool critical = false;
  static bool yes = false;
  doom->add_flag("--json", json, "Machine-readable output (the listing only)");
  doom->add_flag("--critical", critical,
                 "Check the device's critical content (creates doom markers for what is missing); needs --yes");
  doom->add_flag("--yes", yes, "Let --critical create doom markers");
  doom->callback([action] {
    *action = [] {
      if (!critical) return RunList(json);
      if (!yes) {
        std::fprintf(stderr,
                     "vireline doom: --critical creates doom markers for missing critical content; "
                     "add --yes to run it\n");
        return static_cast<int>(kUsage);
      }
      return RunCritical();
    };
  });
}

}  // namespace tools
}  // namespace vireline
