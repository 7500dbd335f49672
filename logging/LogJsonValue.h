// The play-log JSON objects as JSON values, for the library's writers that
// add members of their own before the object becomes a line (CLogExporter).
#ifndef VIRELINE_LOGGING_LOGJSONVALUE_H_
#define VIRELINE_LOGGING_LOGJSONVALUE_H_

#include <string>

#include <json/json.h>

#include <vireline/CLogReader.h>

namespace vireline {
namespace logging {

// LogRecordJson's object.
Json::Value RecordValue(const tLogRecord& record);

// `json` on one line without a line end, UTF-8 text as it is.
std::string JsonLine(const Json::Value& json);

}  // namespace logging
}  // namespace vireline

#endif  // VIRELINE_LOGGING_LOGJSONVALUE_H_
