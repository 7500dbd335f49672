// `vireline log dump [SLOT|FILE] [--json]` and `vireline log stats [--json]`:
// the play logs as the library's reader sees them.
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

const char* const kStatusNames[] = {"valid", "invalid", "not a play log", "too short", "cannot be opened"};

std::string HexBytes(const std::vector<unsigned char>& bytes) {
  std::string text;
  char digits[4];
  for (unsigned char byte : bytes) {
    std::snprintf(digits, sizeof digits, "%02x", byte);
    text += digits;
  }
  return text;
}

std::string ClassName(const tLogRecord& record) {
  return record.ClassName() ? record.ClassName() : "type " + std::to_string(record.type);
}

// One JSON document on one line, for JSON Lines output.
void PrintJsonLine(const Json::Value& json) {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "";
  builder["emitUTF8"] = true;
  std::printf("%s\n", Json::writeString(builder, json).c_str());
}

Json::Value HeaderJson(const CPath& path, const CLogReader& reader) {
  Json::Value json(Json::objectValue);
  json["file"] = path.raw();
  json["size"] = Json::UInt64(reader.GetFileSize());
  json["header"] = kStatusNames[reader.GetStatus()];
  json["platform"] = reader.GetPlatformCode();
  const CLogHeader& header = reader.GetHeader();
  if (header.IsValid()) {
    json["serial"] = DisplayText(header.GetDeviceSerialNum());
    json["logNumber"] = header.GetLogNum();
    json["deviceClock"] = Json::UInt64(header.GetDeviceClockVal());
    json["timeReceived"] = Json::UInt64(header.GetTimeRcvd());
    json["flags"] = Json::UInt64(header.GetFlags());
  }
  return json;
}

Json::Value RecordJson(const tLogRecord& record) {
  Json::Value json(Json::objectValue);
  json["offset"] = Json::UInt64(record.offset);
  json["time"] = record.timeStamp;
  json["type"] = record.type;
  json["class"] = record.ClassName() ? Json::Value(record.ClassName()) : Json::Value(Json::nullValue);
  Json::Value fields(Json::objectValue);
  for (const tLogFieldValue& field : record.fields) {
    bool text = field.field->kind == LogData::Vireline::kFieldString;
    fields[field.field->name] = text ? Json::Value(DisplayText(field.text.c_str())) : Json::Value(Json::Int64(field.number));
  }
  json["fields"] = fields;
  if (!record.decoded) json["payload"] = HexBytes(record.payload);
  return json;
}

std::string HeaderLine(const CPath& path, const CLogReader& reader) {
  std::string line = "== " + path.raw() + ": " + std::to_string(reader.GetFileSize()) + " bytes, header " +
                     kStatusNames[reader.GetStatus()];
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

// Prints one file; the exit status it deserves.
int DumpFile(const CPath& path, bool json) {
  CLogReader reader(path);
  if (reader.GetStatus() == CLogReader::kCannotOpen) {
    std::fprintf(stderr, "vireline log: %s: cannot be opened\n", path.c_str());
    return kNotFound;
  }
  if (json) PrintJsonLine(HeaderJson(path, reader));
  else std::printf("%s\n", HeaderLine(path, reader).c_str());
  tLogRecord record;
  while (reader.Next(&record)) {
    if (json) PrintJsonLine(RecordJson(record));
    else std::printf("%s\n", RecordLine(record).c_str());
  }
  if (reader.IsTorn()) {
    std::fprintf(stderr, "vireline log: %s: torn record at offset %llu (%llu bytes present)\n", path.c_str(),
                 static_cast<unsigned long long>(reader.GetTornOffset()),
                 static_cast<unsigned long long>(reader.GetTornBytesPresent()));
    if (json) {
      Json::Value torn(Json::objectValue);
      torn["torn"] = true;
      torn["offset"] = Json::UInt64(reader.GetTornOffset());
      torn["bytesPresent"] = Json::UInt64(reader.GetTornBytesPresent());
      PrintJsonLine(torn);
    }
    return kCorrupt;
  }
  bool readable = reader.GetStatus() == CLogReader::kHeaderValid || reader.GetStatus() == CLogReader::kHeaderInvalid;
  if (!readable) std::fprintf(stderr, "vireline log: %s: %s\n", path.c_str(), kStatusNames[reader.GetStatus()]);
  return readable ? kSuccess : kCorrupt;
}

int RunDump(const std::string& target, bool json) {
  std::vector<CPath> paths;
  if (target.empty()) {
    for (int slot = 0; slot < CLogFile::kSlotCount; ++slot) paths.push_back(CLogFile::GetLogFilePath(slot));
  } else if (target.size() == 1 && target[0] >= '0' && target[0] < '0' + CLogFile::kSlotCount) {
    paths.push_back(CLogFile::GetLogFilePath(target[0] - '0'));
  } else {
    paths.push_back(target);
  }
  int status = kSuccess;
  for (const CPath& path : paths) {
    int fileStatus = DumpFile(path, json);
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
    CLogReader reader(path);
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
    entry["header"] = kStatusNames[reader.GetStatus()];
    entry["records"] = Json::UInt64(records);
    entry["torn"] = reader.IsTorn();
    entry["classes"] = Json::Value(Json::objectValue);
    for (const auto& count : counts) entry["classes"][count.first] = Json::UInt64(count.second);
    result["slots"].append(entry);
    if (json) continue;
    std::printf("slot %d  %s  %llu bytes  header %s  %llu records%s\n", slot, path.c_str(),
                static_cast<unsigned long long>(reader.GetFileSize()), kStatusNames[reader.GetStatus()],
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
  auto* log = program.add_subcommand("log", "Print the players' play logs or count their records");
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
}

}  // namespace tools
}  // namespace vireline
