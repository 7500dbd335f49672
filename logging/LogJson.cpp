#include <vireline/LogJson.h>

#include <cstdio>

#include <vireline/DisplayText.h>

#include "logging/LogJsonValue.h"

namespace vireline {
namespace {

const char* const kStatusNames[] = {"valid", "invalid", "not a play log", "too short", "cannot be opened"};

}  // namespace

namespace logging {

Json::Value RecordValue(const tLogRecord& record) {
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

std::string JsonLine(const Json::Value& json) {
  Json::StreamWriterBuilder builder;
  builder["indentation"] = "";
  builder["emitUTF8"] = true;
  return Json::writeString(builder, json);
}

}  // namespace logging

const char* LogStatusName(CLogReader::tStatus status) { return kStatusNames[status]; }

std::string HexBytes(const std::vector<unsigned char>& bytes) {
  std::string text;
  char digits[4];
  for (unsigned char byte : bytes) {
    std::snprintf(digits, sizeof digits, "%02x", byte);
    text += digits;
  }
  return text;
}

std::string LogHeaderJson(const CPath& path, const CLogReader& reader) {
  Json::Value json(Json::objectValue);
  json["file"] = path.raw();
  json["size"] = Json::UInt64(reader.GetFileSize());
  json["header"] = LogStatusName(reader.GetStatus());
  json["platform"] = reader.GetPlatformCode();
  const CLogHeader& header = reader.GetHeader();
  if (header.IsValid()) {
    json["serial"] = DisplayText(header.GetDeviceSerialNum());
    json["logNumber"] = header.GetLogNum();
    json["deviceClock"] = Json::UInt64(header.GetDeviceClockVal());
    json["timeReceived"] = Json::UInt64(header.GetTimeRcvd());
    json["flags"] = Json::UInt64(header.GetFlags());
  }
  return logging::JsonLine(json);
}

std::string LogRecordJson(const tLogRecord& record) { return logging::JsonLine(logging::RecordValue(record)); }

std::string LogTornJson(const CLogReader& reader) {
  Json::Value torn(Json::objectValue);
  torn["torn"] = true;
  torn["offset"] = Json::UInt64(reader.GetTornOffset());
  torn["bytesPresent"] = Json::UInt64(reader.GetTornBytesPresent());
  return logging::JsonLine(torn);
}

}  // namespace vireline
