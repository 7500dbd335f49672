// `vireline log dump [SLOT|FILE] [--json]`, `vireline log stats [--json]` and
// `vireline log export [SLOT|FILE...] --jsonl`: the play logs as the library's
// reader sees them.
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <json/json.h>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

std::string ClassName(const tLogRecord& record) {
  return record.ClassName() ? record.ClassName() : "type " + std::to_string(record.type);
}

// One JSON Lines line.
void PrintJsonLine(const std::string& line) { std::printf("%s\n", line.c_str()); }

std::string HeaderLine(const CPath& path, const CLogReader& reader) {
  std::string line = "== " + path.raw() + ": " + std::to_string(reader.GetFileSize()) + " bytes, header " +
                     LogStatusName(reader.GetStatus());
  const CLogHeader& header = reader.GetHeader();
  if (header.IsValid()) {
    line += ": platform " + std::to_string(header.GetPlatform()) + ", serial \"" +
            DisplayText(header.GetDeviceSerialNum()) + "\", log " + std::to_string(header.GetLogNum());
  } else if (reader.GetStatus() == CLogReader::kHeaderInvalid) {
    line += ": platform code " + std::to_string(reader.GetPlatformCode());
  }
  return line;
}

std::string RecordLine(const tLogRecord& record) {
  char start[48];
  std::snprintf(start, sizeof start, "%10u  ", record.timeStamp);
  std::string line = start + ClassName(record);
  for (const tLogFieldValue& field : record.fields) {
    line += std::string("  ") + field.field->name + "=";
    bool text = field.field->kind == LogData::Vireline::kFieldString;
    line += text ? "\"" + DisplayText(field.text.c_str()) + "\"" : std::to_string(field.number);
  }
  if (!record.decoded) line += "  payload=" + HexBytes(record.payload);
  return line;
}

// True when `path` is there but is no regular file (a folder, a FIFO): a
// reader would report a nonsense size for it, or wait on it.
bool IsNotARegularFile(const CPath& path) {
  tStatLite info = {};
  return COrvoInterface::Stat(path.c_str(), &info, false) && info.type != 1;
}

// The exit status of targets that are numbers but no player slot ("3"):
// the usage error is reported; kSuccess when every target is fine.
int CheckSlots(const char* command, const std::vector<std::string>& targets) {
  for (const std::string& target : targets) {
    bool number = !target.empty() && target.find_first_not_of("0123456789") == std::string::npos;
    if (number && (target.size() != 1 || target[0] - '0' >= CLogFile::kSlotCount)) {
      std::fprintf(stderr, "vireline log %s: no player slot %s (slots are 0-%d; give a log file as a device path)\n",
                   command, target.c_str(), CLogFile::kSlotCount - 1);
      return kUsage;
    }
  }
  return kSuccess;
}

// Prints one file; the exit status it deserves.
int DumpFile(const CPath& path, bool json) {
  if (IsNotARegularFile(path)) {
    std::fprintf(stderr, "vireline log: %s: not a regular file\n", path.c_str());
    return kIoError;
  }
  CLogReader reader(path);
  if (reader.GetStatus() == CLogReader::kCannotOpen) {
    std::fprintf(stderr, "vireline log: %s: cannot be opened\n", path.c_str());
    return kNotFound;
  }
  if (json) PrintJsonLine(LogHeaderJson(path, reader));
  else std::printf("%s\n", HeaderLine(path, reader).c_str());
  tLogRecord record;
  while (reader.Next(&record)) {
    if (json) PrintJsonLine(LogRecordJson(record));
    else std::printf("%s\n", RecordLine(record).c_str());
  }
  if (reader.IsTorn()) {
    std::fprintf(stderr, "vireline log: %s: torn record at offset %llu (%llu bytes present)\n", path.c_str(),
                 static_cast<unsigned long long>(reader.GetTornOffset()),
                 static_cast<unsigned long long>(reader.GetTornBytesPresent()));
    if (json) PrintJsonLine(LogTornJson(reader));
    return kCorrupt;
  }
  bool readable = reader.GetStatus() == CLogReader::kHeaderValid || reader.GetStatus() == CLogReader::kHeaderInvalid;
  if (!readable) std::fprintf(stderr, "vireline log: %s: %s\n", path.c_str(), LogStatusName(reader.GetStatus()));
  return readable ? kSuccess : kCorrupt;
}

int RunDump(const std::string& target, bool json) {
  std::vector<std::string> targets;
  if (!target.empty()) targets.push_back(target);
  int status = CheckSlots("dump", targets);
  if (status != kSuccess) return status;
  for (const CLogExporter::tTarget& log : CLogExporter::Resolve(targets)) {
    int fileStatus = DumpFile(log.path, json);
    if (fileStatus > status) status = fileStatus;
  }
  return status;
}

// Exports one log's records as JSON Lines; the exit status it deserves.
int ExportFile(const CLogExporter::tTarget& log) {
  if (IsNotARegularFile(log.path)) {
    std::fprintf(stderr, "vireline log: %s: not a regular file\n", log.path.c_str());
    return kIoError;
  }
  CLogExporter::tResult result =
      CLogExporter::Export(log, [](const std::string& line) { std::printf("%s\n", line.c_str()); });
  if (result.status == CLogReader::kCannotOpen) {
    std::fprintf(stderr, "vireline log: %s: cannot be opened\n", log.path.c_str());
    return kNotFound;
  }
  if (result.torn) {
    std::fprintf(stderr, "vireline log: %s: torn record at offset %llu (%llu bytes present)\n", log.path.c_str(),
                 static_cast<unsigned long long>(result.tornOffset),
                 static_cast<unsigned long long>(result.tornBytesPresent));
    return kCorrupt;
  }
  bool readable = result.status == CLogReader::kHeaderValid || result.status == CLogReader::kHeaderInvalid;
  if (!readable) std::fprintf(stderr, "vireline log: %s: %s\n", log.path.c_str(), LogStatusName(result.status));
  return readable ? kSuccess : kCorrupt;
}

int RunExport(const std::vector<std::string>& targets) {
  int status = CheckSlots("export", targets);
  if (status != kSuccess) return status;
  for (const CLogExporter::tTarget& log : CLogExporter::Resolve(targets)) {
    int fileStatus = ExportFile(log);
    if (fileStatus > status) status = fileStatus;
  }
  return status;
}

int RunStats(bool json) {
  Json::Value result(Json::objectValue);
  result["slots"] = Json::Value(Json::arrayValue);
  uint64_t total = 0;
  for (int slot = 0; slot < CLogFile::kSlotCount; ++slot) {
    CPath path = CLogFile::GetLogFilePath(slot);
    bool irregular = IsNotARegularFile(path);
    if (irregular) std::fprintf(stderr, "vireline log stats: %s: not a regular file; counted as empty\n", path.c_str());
    CLogReader reader(irregular ? CPath() : path);
    std::map<std::string, uint64_t> counts;
    uint64_t records = 0;
    tLogRecord record;
    while (reader.Next(&record)) {
      ++counts[ClassName(record)];
      ++records;
    }
    total += reader.GetFileSize();
    Json::Value entry(Json::objectValue);
    entry["slot"] = slot;
    entry["file"] = path.raw();
    entry["size"] = Json::UInt64(reader.GetFileSize());
    entry["header"] = LogStatusName(reader.GetStatus());
    entry["records"] = Json::UInt64(records);
    entry["torn"] = reader.IsTorn();
    entry["classes"] = Json::Value(Json::objectValue);
    for (const auto& count : counts) entry["classes"][count.first] = Json::UInt64(count.second);
    result["slots"].append(entry);
    if (json) continue;
    std::printf("slot %d  %s  %llu bytes  header %s  %llu records%s\n", slot, path.c_str(),
                static_cast<unsigned long long>(reader.GetFileSize()), LogStatusName(reader.GetStatus()),
                static_cast<unsigned long long>(records), reader.IsTorn() ? "  (torn last record)" : "");
    for (const auto& count : counts) {
      std::printf("  %-24s %llu\n", count.first.c_str(), static_cast<unsigned long long>(count.second));
    }
  }
  uint64_t left = total < CLogFile::kSizeCap ? CLogFile::kSizeCap - total : 0;
  result["totalBytes"] = Json::UInt64(total);
  result["cap"] = CLogFile::kSizeCap;
  result["bytesLeft"] = Json::UInt64(left);
  if (json) {
    PrintJson(result);
  } else {
    std::printf("total %llu bytes of %u; %llu bytes left under the cap\n", static_cast<unsigned long long>(total),
                CLogFile::kSizeCap, static_cast<unsigned long long>(left));
  }
  return kSuccess;
}

}  // namespace

void RegisterLogCommand(CLI::App& program, Action* action) {
  auto* log = program.add_subcommand("log", "Print the players' play logs, count their records or export them");
  log->require_subcommand(1);
  static std::string target;  // must outlive the parse and the action
  static bool dumpJson = false, statsJson = false;
  auto* dump = log->add_subcommand("dump", "Print a play log's header and every record, one record a line");
  dump->add_option("TARGET", target, "Player slot 0-2, or a log file as a device path (default: all three slots)");
  dump->add_flag("--json", dumpJson, "JSON Lines: the header, then one object per record");
  dump->callback([action] { *action = [] { return RunDump(target, dumpJson); }; });
  auto* stats = log->add_subcommand("stats", "Count each slot's records by class and the bytes left under the cap");
  stats->add_flag("--json", statsJson, "Machine-readable output");
  stats->callback([action] { *action = [] { return RunStats(statsJson); }; });
  static std::vector<std::string> exportTargets;
  static bool exportJsonl = false;
  auto* exporter = log->add_subcommand(
      "export", "Print the records of play logs for analytics engines: one JSON object a line, each with the "
                "device's serial number, slot, time stamp, class, title being played and decoded fields");
  exporter->add_option("TARGETS", exportTargets,
                       "Player slots 0-2 and log files as device paths (default: all three slots)");
  exporter->add_flag("--jsonl", exportJsonl, "JSON Lines (the only format; required)")->required();
  exporter->callback([action] { *action = [] { return RunExport(exportTargets); }; });
}

}  // namespace tools
}  // namespace vireline
