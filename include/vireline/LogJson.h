// Play logs as JSON: the header and record objects that `vireline log dump
// --json` prints and CLogExporter and the Python module build on, so every
// reader of the logs shows the same names and values. Each object comes as
// one line of JSON without a line end (JSON Lines), UTF-8 text as it is, and
// text of the log shown as DisplayText shows it.
#ifndef VIRELINE_LOGJSON_H_
#define VIRELINE_LOGJSON_H_

#include <string>
#include <vector>

#include <vireline/CLogReader.h>
#include <vireline/Export.h>
#include <vireline/Types.h>

namespace vireline {

// The name of a reader status: "valid", "invalid", "not a play log", "too short", "cannot be opened".
VIRELINE_EXPORT const char* LogStatusName(CLogReader::tStatus status);

// The bytes in lower-case hexadecimal, two digits each.
VIRELINE_EXPORT std::string HexBytes(const std::vector<unsigned char>& bytes);

// The log's path, size, header status, platform code and, for a valid
// header, its fields.
VIRELINE_EXPORT std::string LogHeaderJson(const CPath& path, const CLogReader& reader);

// One record: offset, time stamp, type, class (null for an unknown type),
// decoded fields by name, and the raw payload when it did not decode.
VIRELINE_EXPORT std::string LogRecordJson(const tLogRecord& record);

// Where the reader found a torn record and how much of it the file holds.
VIRELINE_EXPORT std::string LogTornJson(const CLogReader& reader);

}  // namespace vireline

#endif  // VIRELINE_LOGJSON_H_
