// The play-log reader and the JSON Lines export.
#include <memory>

#include <vireline/vireline.h>

#include "python/src/Bindings.h"
#include "python/src/Convert.h"

namespace vireline {
namespace python {
namespace {

// The LogRecord named tuple class, made when the module loads and kept
// until the process ends (never released after the interpreter is gone).
py::object* gRecordType = nullptr;

// A slot number as the device path of its log; ValueError outside 0-2.
CPath SlotLogPath(int slot) {
  if (slot < 0 || slot >= CLogFile::kSlotCount) throw py::value_error("player slots with a play log are 0-2");
  return CLogFile::GetLogFilePath(slot);
}

// A slot (int) or a path-like object as a log's device path.
CPath LogPath(const py::object& log) {
  if (PyLong_Check(log.ptr()) && !PyBool_Check(log.ptr())) return SlotLogPath(log.cast<int>());
  return PathBytes(log);
}

// Raises OpenError or FormatError for a log that yields no records.
void CheckReadable(CLogReader::tStatus status, const std::string& path) {
  if (status == CLogReader::kCannotOpen) Raise(GetErrors().open, path + ": cannot be opened");
  if (status == CLogReader::kNotALog || status == CLogReader::kTooShort) {
    Raise(GetErrors().format, path + ": " + LogStatusName(status), py::int_(static_cast<int>(status)));
  }
}

py::object RecordTuple(const tLogRecord& record) {
  py::dict fields;
  for (const tLogFieldValue& field : record.fields) {
    bool text = field.field->kind == LogData::Vireline::kFieldString;
    fields[field.field->name] = text ? py::object(Text(field.text)) : py::object(py::int_(field.number));
  }
  py::bytes payload(reinterpret_cast<const char*>(record.payload.data()), record.payload.size());
  return (*gRecordType)(record.offset, record.timeStamp, record.type, TextOrNone(record.ClassName()), fields,
                     record.decoded, payload, record.longHeader, record.length);
}

py::object HeaderDict(const CLogReader& reader) {
  const CLogHeader& header = reader.GetHeader();
  if (!header.IsValid()) return py::none();
  py::dict dict;
  dict["platform"] = header.GetPlatform();
  dict["serial"] = TextOrNone(header.GetDeviceSerialNum());
  dict["log_number"] = header.GetLogNum();
  dict["device_clock"] = header.GetDeviceClockVal();
  dict["time_received"] = header.GetTimeRcvd();
  dict["flags"] = header.GetFlags();
  return dict;
}

// The reader with the path it was opened on, for messages.
struct LogReaderHandle {
  std::string path;
  std::unique_ptr<CLogReader> reader;
};

void BindLogReader(py::module_& m) {
  py::object namedTuple = py::module_::import("collections").attr("namedtuple");
  gRecordType = new py::object(namedTuple("LogRecord", py::make_tuple("offset", "time", "type", "class_name", "fields",
                                                                      "decoded", "payload", "long_header", "length")));
  gRecordType->attr("__module__") = "vireline";
  gRecordType->attr("__doc__") =
      "One complete play-log record: offset of its first byte in the file, time stamp (elapsed device "
      "milliseconds), type code, class name (\"CGameStart\"; None for an unknown type), decoded fields by "
      "name, whether the payload is exactly the class's fields, the raw payload, whether the header is the "
      "10-byte long form, and the payload length. record._asdict() gives it as a dict.";
  m.attr("LogRecord") = *gRecordType;

  py::class_<LogReaderHandle>(m, "LogReader",
                              "Reads a play log one record at a time (iterate over it). A log cut in the middle "
                              "of a record yields every complete record before the cut; `torn` then says so.")
      .def(py::init([](const py::object& log) {
             auto handle = std::make_unique<LogReaderHandle>();
             CPath path = LogPath(log);
             handle->path = path.raw();
             handle->reader = std::make_unique<CLogReader>(path);
             CheckReadable(handle->reader->GetStatus(), handle->path);
             return handle;
           }),
           py::arg("log"),
           "Opens player slot `log` (0-2) or the log file at device path `log`. OpenError when it cannot be "
           "opened, FormatError when it is not a play log.")
      .def_property_readonly("path", [](const LogReaderHandle& h) { return Text(h.path); }, "The log's device path.")
      .def_property_readonly("status", [](const LogReaderHandle& h) { return LogStatusName(h.reader->GetStatus()); },
                             "\"valid\", or \"invalid\" for a header whose platform code is not 1-11 (what devices "
                             "of unknown type write; the records are still read).")
      .def_property_readonly("header", [](const LogReaderHandle& h) { return HeaderDict(*h.reader); },
                             "The header's fields as a dict (platform, serial, log_number, device_clock, "
                             "time_received, flags); None when the header is invalid.")
      .def_property_readonly("platform_code", [](const LogReaderHandle& h) { return h.reader->GetPlatformCode(); },
                             "The platform code as stored, also when the header is invalid.")
      .def_property_readonly("file_size", [](const LogReaderHandle& h) { return h.reader->GetFileSize(); },
                             "The file's size in bytes.")
      .def_property_readonly("torn", [](const LogReaderHandle& h) { return h.reader->IsTorn(); },
                             "True once reading stopped at a record cut short by the end of the file.")
      .def_property_readonly(
          "torn_offset",
          [](const LogReaderHandle& h) {
            return h.reader->IsTorn() ? py::object(py::int_(h.reader->GetTornOffset())) : py::object(py::none());
          },
          "Where the torn record starts; None unless torn.")
      .def_property_readonly(
          "torn_bytes_present",
          [](const LogReaderHandle& h) {
            return h.reader->IsTorn() ? py::object(py::int_(h.reader->GetTornBytesPresent())) : py::object(py::none());
          },
          "How many bytes of the torn record the file holds; None unless torn.")
      .def("__iter__", [](py::object self) { return self; })
      .def("__next__", [](LogReaderHandle& h) {
        tLogRecord record;
        if (!h.reader->Next(&record)) throw py::stop_iteration();
        return RecordTuple(record);
      });
}

// A slot (int) or a path-like object as the target text the inspector takes.
std::string ExportTarget(const py::handle& target) {
  if (PyLong_Check(target.ptr()) && !PyBool_Check(target.ptr())) {
    int slot = target.cast<int>();
    SlotLogPath(slot);
    return std::to_string(slot);
  }
  return PathBytes(target);
}

py::dict ExportOutcome(const CLogExporter::tTarget& log, const CLogExporter::tResult& result) {
  py::dict outcome;
  outcome["path"] = Text(log.path.raw());
  outcome["status"] = LogStatusName(result.status);
  outcome["records"] = result.records;
  outcome["torn"] = result.torn;
  outcome["torn_offset"] = result.torn ? py::object(py::int_(result.tornOffset)) : py::object(py::none());
  outcome["torn_bytes_present"] = result.torn ? py::object(py::int_(result.tornBytesPresent)) : py::object(py::none());
  return outcome;
}

void BindExport(py::module_& m) {
  m.def(
      "export_log",
      [](const py::iterable& targets, py::object file) {
        if (file.is_none()) file = py::module_::import("sys").attr("stdout");
        py::object write = file.attr("write");
        std::vector<std::string> texts;
        for (py::handle target : targets) texts.push_back(ExportTarget(target));
        py::list outcomes;
        for (const CLogExporter::tTarget& log : CLogExporter::Resolve(texts)) {
          CLogExporter::tResult result =
              CLogExporter::Export(log, [&write](const std::string& line) { write(Text(line + "\n")); });
          CheckReadable(result.status, log.path.raw());
          outcomes.append(ExportOutcome(log, result));
        }
        return outcomes;
      },
      py::arg("targets") = py::tuple(), py::arg("file") = py::none(),
      "Writes play logs to `file` (default sys.stdout) as JSON Lines, exactly as `vireline log export "
      "--jsonl` prints them: one object per record with serial, slot, offset, time, type, class, title (the "
      "title being played) and fields. `targets` are player slots 0-2 and log files as device paths (default: "
      "all three slots). Returns one dict per log (path, status, records, torn, torn_offset, "
      "torn_bytes_present); a torn last record is reported there, after the records before it. OpenError or "
      "FormatError for a log that cannot be read, after the logs before it were written.");
}

}  // namespace

void BindLogs(py::module_& m) {
  BindLogReader(m);
  BindExport(m);
}

}  // namespace python
}  // namespace vireline
