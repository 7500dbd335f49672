#include <vireline/CLogExporter.h>

#include <vireline/CLogFile.h>
#include <vireline/DisplayText.h>
#include <vireline/LogCatalogue.h>

#include "logging/LogJsonValue.h"

using namespace LogData::Vireline;

namespace {

// Follows the title being played: set by a title or game start, ended by
// its exit and by a clock record (the device started afresh).
void FollowTitle(const tLogRecord& record, const Json::Value& fields, Json::Value* title) {
  switch (record.type) {
    case kTitleStart:
      *title = fields.get("title", Json::Value());
      break;
    case kGameStart:
      *title = fields.get("game", Json::Value());
      break;
    case kTitleExit:
    case kGameExit:
    case kTimeSync:
      *title = Json::Value();
      break;
    default:
      break;
  }
}

}  // namespace

std::vector<CLogExporter::tTarget> CLogExporter::Resolve(const std::vector<std::string>& targets) {
  std::vector<tTarget> resolved;
  if (targets.empty()) {
    for (int slot = 0; slot < CLogFile::kSlotCount; ++slot) resolved.push_back({CLogFile::GetLogFilePath(slot), slot});
  }
  for (const std::string& target : targets) {
    if (target.size() == 1 && target[0] >= '0' && target[0] < '0' + CLogFile::kSlotCount) {
      int slot = target[0] - '0';
      resolved.push_back({CLogFile::GetLogFilePath(slot), slot});
    } else {
      resolved.push_back({target, -1});
    }
  }
  return resolved;
}

CLogExporter::tResult CLogExporter::Export(const tTarget& target, const tLineSink& sink) {
  tResult result;
  CLogReader reader(target.path);
  result.status = reader.GetStatus();
  const CLogHeader& header = reader.GetHeader();
  Json::Value serial =
      header.IsValid() ? Json::Value(vireline::DisplayText(header.GetDeviceSerialNum())) : Json::Value();
  Json::Value slot = target.slot >= 0 ? Json::Value(target.slot) : Json::Value();
  if (target.slot < 0 && header.IsValid()) slot = header.GetLogNum();
  Json::Value title;
  tLogRecord record;
  while (reader.Next(&record)) {
    Json::Value line = vireline::logging::RecordValue(record);
    FollowTitle(record, line["fields"], &title);
    line["serial"] = serial;
    line["slot"] = slot;
    line["title"] = title;
    sink(vireline::logging::JsonLine(line));
    ++result.records;
  }
  result.torn = reader.IsTorn();
  if (result.torn) {
    result.tornOffset = reader.GetTornOffset();
    result.tornBytesPresent = reader.GetTornBytesPresent();
  }
  return result;
}
