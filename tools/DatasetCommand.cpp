// `vireline dataset DSET RELINK [--json]`: loads a relocatable dataset as an
// application would and shows its size and every relocated field with the
// offset it now points at; a refused pair is explained, naming the file.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/DebugCapture.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

const int kLoaderErrorLevel = 2;

struct Relocation {
  uint32_t offset;
  uint32_t target;  // offset within the dataset the field points at
};

int Refuse(const std::string& path, const std::string& problem, int status) {
  std::fprintf(stderr, "vireline dataset: %s: %s\n", DisplayText(path.c_str()).c_str(), problem.c_str());
  return status;
}

// The checks the loader makes silently, so the refusal can be named.
int CheckInput(const std::string& path, const char* extension) {
  int status = CheckRegularFile("dataset", path);
  if (status != kSuccess) return status;
  if (FileSize(path) == 0) return Refuse(path, "empty file", kCorrupt);
  if (GetFileExtension(path) != extension) {
    return Refuse(path, std::string("name does not end in .") + extension, kUsage);
  }
  return kSuccess;
}

// The relink file's offsets, read as the loader reads them.
std::vector<uint32_t> ReadOffsets(const std::string& path) {
  std::string bytes;
  if (vireline::ReadDeviceFile(path, FileSize(path) / 4 * 4, &bytes) == vireline::tDeviceFileRead::kNotOpened) {
    return std::vector<uint32_t>();
  }
  std::vector<uint32_t> offsets(bytes.size() / 4);
  if (!offsets.empty()) std::memcpy(offsets.data(), bytes.data(), offsets.size() * 4);
  return offsets;
}

void Print(const std::string& dataset, const std::string& relink, uint32_t size,
           const std::vector<Relocation>& relocations, bool json) {
  if (json) {
    Json::Value out(Json::objectValue);
    out["dataset"] = DisplayText(dataset.c_str());
    out["relink"] = DisplayText(relink.c_str());
    out["size"] = size;
    out["relocations"] = static_cast<Json::UInt>(relocations.size());
    out["fields"] = Json::Value(Json::arrayValue);
    for (const Relocation& relocation : relocations) {
      Json::Value field(Json::objectValue);
      field["offset"] = relocation.offset;
      field["target"] = relocation.target;
      out["fields"].append(field);
    }
    PrintJson(out);
    return;
  }
  std::printf("dataset         %s\nrelink          %s\nsize            %u bytes\nrelocations     %u\n",
              DisplayText(dataset.c_str()).c_str(), DisplayText(relink.c_str()).c_str(), size,
              static_cast<unsigned>(relocations.size()));
  for (const Relocation& relocation : relocations) {
    std::printf("field           0x%08X -> 0x%08X\n", relocation.offset, relocation.target);
  }
}

int RunDataset(const std::string& dataset, const std::string& relink, bool json) {
  int status = CheckInput(dataset, "dsetBin");
  if (status == kSuccess) status = CheckInput(relink, "relinkBin");
  if (status != kSuccess) return status;
  boost::shared_array<char> block;
  std::vector<std::string> reasons;
  {
    DebugCapture capture(kLoaderErrorLevel);
    block = LoadDataset(dataset, relink);
    reasons = capture.texts();
  }
  if (!block) {
    std::string reason = reasons.empty() ? std::string("refused by the loader") : reasons.back();
    if (!reason.empty() && reason.back() == '\n') reason.pop_back();
    std::fprintf(stderr, "vireline dataset: %s\n", DisplayText(reason.c_str()).c_str());
    return kCorrupt;
  }
  const uint32_t base = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(block.get()));
  std::vector<Relocation> relocations;
  for (uint32_t offset : ReadOffsets(relink)) {
    uint32_t value;
    std::memcpy(&value, block.get() + offset, sizeof value);  // within bounds: the loader checked every offset
    relocations.push_back(Relocation{offset, value - base});
  }
  Print(dataset, relink, FileSize(dataset), relocations, json);
  return kSuccess;
}

}  // namespace

void RegisterDatasetCommand(CLI::App& program, Action* action) {
  auto* dataset = program.add_subcommand("dataset", "Load a relocatable dataset and show its relocated fields");
  static std::string datasetPath, relinkPath;  // must outlive the parse and the action
  static bool json = false;
  dataset->add_option("DSET", datasetPath, "The dataset image (*.dsetBin), as a device path")->required();
  dataset->add_option("RELINK", relinkPath, "Its relink list (*.relinkBin), as a device path")->required();
  dataset->add_flag("--json", json, "Machine-readable output");
  dataset->callback([action] { *action = [] { return RunDataset(datasetPath, relinkPath, json); }; });
}

}  // namespace tools
}  // namespace vireline
