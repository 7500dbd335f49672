// `vireline kv FILE [KEY]`: a key=value file's entries as the library reads
// them (whitespace trimmed, quotes removed, duplicates kept), or one key's value.
#include <cstdio>
#include <algorithm>
#include <cstdint>
#include <string>

#include <json/json.h>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

// True when an earlier entry has the same key, so lookups never see this one.
bool IsShadowed(const CFileIO& file, U32 index) {
  const tKeyValueEntry* entry = file.GetEntry(index);
  return file.FindKey(entry->key) != entry;
}

Json::Value EntryJson(const CFileIO& file, U32 index) {
  const tKeyValueEntry* entry = file.GetEntry(index);
  Json::Value json(Json::objectValue);
  json["key"] = DisplayText(entry->key);
  json["value"] = entry->value ? Json::Value(DisplayText(entry->value)) : Json::Value(Json::nullValue);
  json["quoted"] = entry->quoted != 0;
  json["quotedList"] = entry->listQuoted != 0;
  json["duplicate"] = IsShadowed(file, index);
  return json;
}

void PrintEntries(const CFileIO& file) {
  for (U32 i = 0; i < file.GetEntryCount(); ++i) {
    const tKeyValueEntry* entry = file.GetEntry(i);
    std::string line = DisplayText(entry->key) + "=" + DisplayText(entry->value);
    if (entry->quoted) line += "  [quoted]";
    if (entry->listQuoted) line += "  [quoted list]";
    if (IsShadowed(file, i)) line += "  [duplicate: lookups find an earlier entry]";
    std::printf("%s\n", line.c_str());
  }
}

// The number of the first line of `path` that holds a NUL byte (lines
// counted at "\n"); 0 when none does or the file cannot be read.
unsigned long FirstLineWithNul(const std::string& path) {
  std::string bytes;
  if (vireline::ReadDeviceFile(path, SIZE_MAX, &bytes) == vireline::tDeviceFileRead::kNotOpened) return 0;
  size_t nul = bytes.find('\0');
  if (nul == std::string::npos) return 0;
  return 1 + static_cast<unsigned long>(std::count(bytes.begin(), bytes.begin() + nul, '\n'));
}

int RunKv(const std::string& path, const std::string& key, bool hasKey, bool json) {
  int status = CheckTextFile("kv", path);
  if (status != kSuccess) return status;
  CFileIO file;
  if (!file.Open(path.c_str())) {
    std::fprintf(stderr, "vireline kv: %s: cannot be read\n", path.c_str());
    return kIoError;
  }
  if (unsigned long line = FirstLineWithNul(path)) {
    std::fprintf(stderr, "vireline kv: %s: line %lu holds a NUL byte (\\x00); the library reads each line only up to it\n",
                 path.c_str(), line);
  }
  if (!hasKey) {
    if (json) {
      Json::Value result(Json::objectValue);
      result["file"] = path;
      result["entries"] = Json::Value(Json::arrayValue);
      for (U32 i = 0; i < file.GetEntryCount(); ++i) result["entries"].append(EntryJson(file, i));
      PrintJson(result);
    } else {
      PrintEntries(file);
    }
    return kSuccess;
  }
  const tKeyValueEntry* entry = file.FindKey(key.c_str());
  if (entry == nullptr) {
    std::fprintf(stderr, "vireline kv: %s: no key '%s'\n", path.c_str(), DisplayText(key.c_str()).c_str());
    return kNotFound;
  }
  if (json) {
    Json::Value result = EntryJson(file, static_cast<U32>(entry - file.GetEntry(0)));
    result.removeMember("duplicate");
    result["file"] = path;
    result["number"] = file.GetUInt(key.c_str());  // 4294967295: missing or not a number
    PrintJson(result);
  } else {
    std::printf("%s\n", DisplayText(entry->value).c_str());
  }
  return kSuccess;
}

}  // namespace

void RegisterKvCommand(CLI::App& program, Action* action) {
  auto* kv = program.add_subcommand("kv", "Print a key=value file's entries as the library reads them, or one value");
  static std::string path, key;  // must outlive the parse and the action
  static bool json = false;
  kv->add_option("FILE", path, "The file, as a device path (below --root)")->required();
  auto* keyOption = kv->add_option("KEY", key, "Print only this key's value (the first entry with it)");
  kv->add_flag("--json", json, "Machine-readable output");
  kv->callback([action, keyOption] {
    bool hasKey = keyOption->count() > 0;
    *action = [hasKey] { return RunKv(path, key, hasKey, json); };
  });
}

}  // namespace tools
}  // namespace vireline
