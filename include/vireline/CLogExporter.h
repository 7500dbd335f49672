// Play logs as JSON Lines for analytics engines (DuckDB, Spark, pandas): one
// object per record, each carrying what a folder of many devices' exports
// needs to keep them apart and to group them: the device's serial number
// (from the log's header), the player slot, and the title being played when
// the record was logged, since answers and rewards name no title of their own.
// The inspector's `log export` and the Python module both export through here.
#ifndef VIRELINE_CLOGEXPORTER_H_
#define VIRELINE_CLOGEXPORTER_H_

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <vireline/CLogReader.h>
#include <vireline/Export.h>
#include <vireline/Types.h>

class VIRELINE_EXPORT CLogExporter {
 public:
  // One log to export: its device path and player slot (-1: the slot its header names).
  struct tTarget {
    CPath path;
    int slot;
  };

  // What exporting one log came to.
  struct tResult {
    CLogReader::tStatus status = CLogReader::kCannotOpen;  // kCannotOpen, kNotALog, kTooShort: nothing exported
    uint64_t records = 0;                                  // lines handed out
    bool torn = false;                                     // the last record was cut short
    uint64_t tornOffset = 0;                               // where the torn record starts
    uint64_t tornBytesPresent = 0;                         // how much of it the file holds
  };

  // Receives one JSON object, without a line end.
  typedef std::function<void(const std::string& line)> tLineSink;

  // The logs `targets` name: "0"-"2" a player slot's log, anything else a
  // log file's device path; the three slots' logs when there are none.
  static std::vector<tTarget> Resolve(const std::vector<std::string>& targets);

  // Hands `sink` one line per complete record of the log, in file order.
  static tResult Export(const tTarget& target, const tLineSink& sink);
};

#endif  // VIRELINE_CLOGEXPORTER_H_
