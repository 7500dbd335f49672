// Play logs as JSON: the header and record objects that `vireline log dump
// --json` prints and `vireline log export` and the Python module build on, so
// every reader of the logs shows the same names and values.
#ifndef VIRELINE_TOOLS_LOGJSON_H_
#define VIRELINE_TOOLS_LOGJSON_H_

#include <string>
#include <vector>

#include <json/json.h>

#include <vireline/CLogReader.h>
#include <vireline/Types.h>

namespace vireline {
namespace tools {

// The name of a reader status: "valid", "invalid", "not a play log", "too short", "cannot be opened".
const char* LogStatusName(CLogReader::tStatus status);

// The bytes in lower-case hexadecimal, two digits each.
std::string HexBytes(const std::vector<unsigned char>& bytes);

// The file's path, size, header status and, for a valid header, its fields.
Json::Value LogHeaderJson(const CPath& path, const CLogReader& reader);

// One record: offset, time stamp, type, class (null for an unknown type),
// decoded fields by name, and the raw payload when it did not decode.
Json::Value LogRecordJson(const tLogRecord& record);

// `json` on one line without a line end, UTF-8 text as it is (JSON Lines).
std::string JsonLine(const Json::Value& json);

}  // namespace tools
}  // namespace vireline

#endif  // VIRELINE_TOOLS_LOGJSON_H_
