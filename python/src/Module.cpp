// The `vireline` Python module: the device library's readers and writers for
// desktop tools, built on libvireline.so itself so the two never disagree.
#include <pybind11/pybind11.h>

#include "python/src/Bindings.h"
#include "python/src/Convert.h"

PYBIND11_MODULE(vireline, m) {
  m.doc() =
      "The persistent data of the learning devices, read and written by the device library itself.\n\n"
      "Device paths (\"/QV/Bulk/...\") are mapped below the device root: use `with DeviceRoot(folder):` on a "
      "copy of a device's files.\n\n"
      "Failures the library reports by a result become exceptions, all derived from VirelineError:\n"
      "  LoadError     load_json: the file could not be read or parsed (result 1)\n"
      "  WriteError    write(), save_json (result 0x10001005), write_checksum, profile changes: the file "
      "could not be written (also an OSError)\n"
      "  OpenError     LogReader, export_log: the log could not be opened (also an OSError)\n"
      "  FormatError   LogReader, export_log: not a play log, or too short (also a ValueError)\n"
      "  RefusedError  a setter the library refused, e.g. package type \"*\" (also a ValueError)\n"
      "  MfgError      MfgData: a manufacturing status other than 0, in `code`\n"
      "`code` holds the library's number where there is one. A missing key raises KeyError; a value the "
      "library reads as missing (0xFFFFFFFF, a null text) is None. A torn play log is not an exception: "
      "LogReader.torn and export_log's result report it after the complete records.";
  m.attr("__version__") = VIRELINE_VERSION;
  vireline::python::DefineErrors(m);
  vireline::python::BindFiles(m);
  vireline::python::BindLogs(m);
  vireline::python::BindMfg(m);
  vireline::python::BindDevice(m);
}
