// `vireline layout`: where each model keeps its packages, profiles, uploads and logs.
#include <cstdio>
#include <string>

#include <vireline/vireline.h>

#include "tools/Commands.h"

namespace vireline {
namespace tools {
namespace {

struct Model {
  const char* record;
  const char* shortName;
  const tDirConfig* config;
};

const Model kModels[] = {
    {"gKastrelCfg", "Kastrel", &gKastrelCfg},
    {"gVirelineCfg", "Vireline", &gVirelineCfg},
    {"gScrivelCfg", "Scrivel", &gScrivelCfg},
    {"gTamselCfg", "Tamsel", &gTamselCfg},
    {"gPelloraVoyantCfg", "PelloraVoyant", &gPelloraVoyantCfg},
    {"gKastrelDuoCfg", "KastrelDuo", &gKastrelDuoCfg},
};

const uint32_t kPathSize = 256;

bool Matches(const Model& model, const std::string& name) {
  tPackageType wanted(name.c_str());  // case-insensitive, like every type name
  return name.size() < 16 &&
         (wanted == model.shortName || wanted == model.config->deviceType || wanted == model.record);
}

void PrintPath(const char* label, bool ok, const char* path) {
  std::printf("    %-22s %s\n", label, ok ? path : "(none)");
}

void PrintVolume(const CPkgPathBase& paths, tDeviceVolumeId vol) {
  std::printf("  volume %u \"%s\"\n", vol, paths.GetVolumeName(vol, tPackageType()));
  uint32_t types = paths.GetNumPackageTypes(vol);
  if (types == 0) std::printf("    (no package types)\n");
  for (uint32_t i = 0; i < types; ++i) {
    tPackageType type = paths.GetPackageType(i, vol);
    char path[kPathSize];
    bool ok = paths.GetPackageDir(path, sizeof path, type, vol, nullptr);
    PrintPath(type.ToString(), ok, path);
  }
}

void PrintPlayerFolders(const CPkgPathBase& paths, tDeviceVolumeId vol) {
  const uint32_t profiles[] = {0, 1, 2, 11};
  for (uint32_t profile : profiles) {
    char label[32], path[kPathSize];
    std::snprintf(label, sizeof label, profile == 11 ? "profiles (all)" : "profile %u", profile);
    PrintPath(label, paths.GetProfileDir(path, sizeof path, profile, vol, nullptr), path);
  }
  for (uint32_t slot = 0; slot < 3; ++slot) {
    char label[32], path[kPathSize];
    std::snprintf(label, sizeof label, "play log %u", slot);
    PrintPath(label, paths.GetProfileLogFile(path, sizeof path, slot, vol), path);
  }
}

void PrintUploads(const CPkgPathBase& paths, const tDirConfig& config) {
  for (tDeviceVolumeId vol = 0; vol < config.numVolumes; ++vol) {
    char path[kPathSize];
    PrintPath("uploads", paths.GetRootDir(path, sizeof path, vol, config.uploadDir), path);
  }
  for (uint32_t i = 0; i < paths.GetNumUploadDataTypes(); ++i) {
    tUploadDataType type = paths.GetUploadDataType(i);
    char path[kPathSize];
    bool ok = paths.GetUploadDir(path, sizeof path, type, config.numVolumes - 1, 10, nullptr);
    PrintPath(type.ToString(), ok, path);
  }
}

void PrintModel(const Model& model) {
  const tDirConfig& config = *model.config;
  CPkgPathBase paths(&config);
  std::printf("%s (%s)\n", config.deviceType, model.record);
  for (tDeviceVolumeId vol = 0; vol < config.numVolumes; ++vol) PrintVolume(paths, vol);
  std::printf("  player data\n");
  PrintPlayerFolders(paths, config.numVolumes - 1);
  PrintUploads(paths, config);
  char path[kPathSize];
  PrintPath("flight recorder", paths.GetFlightRecorderDir(path, sizeof path), path);
}

int RunLayout(const std::string& modelName) {
  bool found = false;
  for (const Model& model : kModels) {
    if (!modelName.empty() && !Matches(model, modelName)) continue;
    if (found) std::printf("\n");
    PrintModel(model);
    found = true;
  }
  if (!found) {
    std::fprintf(stderr, "vireline layout: no model named '%s'\n", modelName.c_str());
    return kNotFound;
  }
  return kSuccess;
}

}  // namespace

void RegisterLayoutCommand(CLI::App& program, Action* action) {
  auto* layout = program.add_subcommand("layout", "Print each model's package, profile, upload and log folders");
  static std::string modelName;  // must outlive the parse and the action
  layout->add_option("--model", modelName,
                     "Only this model (Kastrel, Vireline, Scrivel, Tamsel, PelloraVoyant, KastrelDuo, "
                     "or its device type)");
  layout->callback([action] { *action = [] { return RunLayout(modelName); }; });
}

}  // namespace tools
}  // namespace vireline
