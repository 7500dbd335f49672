// `vireline meta DIR`: a package's metadata from DIR/meta.inf as the library
// reads it: id, name, type, version, hidden, profile access and validity.
#include <cstdio>
#include <string>
#include <vector>

#include <json/json.h>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

Json::Value JsonText(const char* text) { return text ? Json::Value(DisplayText(text)) : Json::Value(Json::nullValue); }

std::string ShownText(const char* text) { return text ? DisplayText(text) : "(missing)"; }

void Field(const char* label, const std::string& value) { std::printf("%-15s %s\n", label, value.c_str()); }

// The profile numbers "ProfileAccess" grants (the low 8 bits of each item
// read in base 16); false when the key is missing or empty: every profile.
bool ProfilesWithAccess(const CMetaInfFile& meta, std::vector<unsigned>* profiles) {
  U32* items = nullptr;
  U32 count = meta.GetProfileAccess(items);
  for (U32 i = 0; i < count; ++i) profiles->push_back(items[i] & 0xFF);
  COrvoInterface::Free(items);
  return count > 0;
}

void PrintText(const CMetaInfFile& meta, const std::string& path) {
  Field("meta.inf", path);
  Field("package id", ShownText(meta.GetPackageId()));
  Field("name", ShownText(meta.GetPackageName()));
  tPackageType type = meta.GetPackageType();
  Field("type", type == tPackageType() ? "(missing)" : DisplayText(type.ToString()));
  Field("version", ShownText(meta.GetPackageVersion()));
  Field("hidden", meta.IsHidden() ? (meta.HasKey("Hidden") ? "yes" : "yes (no Hidden key)") : "no");
  std::vector<unsigned> profiles;
  if (ProfilesWithAccess(meta, &profiles)) {
    std::string list;
    for (unsigned profile : profiles) list += (list.empty() ? "" : ", ") + std::to_string(profile);
    list += "  (ProfileAccess=" + DisplayText(meta.GetStr("ProfileAccess")) + ", items read in base 16)";
    Field("profile access", list);
  } else {
    Field("profile access", "all profiles");
  }
  Field("valid", meta.IsValid() ? "yes" : "no (needs a type other than \"*\", a package id and a version)");
}

void PrintJsonOf(const CMetaInfFile& meta, const std::string& path) {
  Json::Value json(Json::objectValue);
  json["metaInf"] = path;
  json["packageId"] = JsonText(meta.GetPackageId());
  json["name"] = JsonText(meta.GetPackageName());
  tPackageType type = meta.GetPackageType();
  json["type"] = type == tPackageType() ? Json::Value(Json::nullValue) : Json::Value(DisplayText(type.ToString()));
  json["version"] = JsonText(meta.GetPackageVersion());
  json["hidden"] = meta.IsHidden();
  std::vector<unsigned> profiles;
  if (ProfilesWithAccess(meta, &profiles)) {
    json["profileAccess"] = Json::Value(Json::arrayValue);
    for (unsigned profile : profiles) json["profileAccess"].append(profile);
  } else {
    json["profileAccess"] = Json::Value(Json::nullValue);  // every profile
  }
  json["valid"] = meta.IsValid();
  PrintJson(json);
}

int RunMeta(const std::string& dir, bool json) {
  std::string path;
  int status = PackageMetaInf("meta", dir, &path);
  if (status != kSuccess) return status;
  CMetaInfFile meta;
  if (!meta.Open(path.c_str())) {
    std::fprintf(stderr, "vireline meta: %s: cannot be read\n", path.c_str());
    return kIoError;
  }
  if (json) {
    PrintJsonOf(meta, path);
  } else {
    PrintText(meta, path);
  }
  return kSuccess;
}

}  // namespace

void RegisterMetaCommand(CLI::App& program, Action* action) {
  auto* meta = program.add_subcommand("meta", "Print a package's metadata from its meta.inf");
  static std::string dir;  // must outlive the parse and the action
  static bool json = false;
  meta->add_option("DIR", dir, "The package folder, as a device path (below --root)")->required();
  meta->add_flag("--json", json, "Machine-readable output");
  meta->callback([action] { *action = [] { return RunMeta(dir, json); }; });
}

}  // namespace tools
}  // namespace vireline
