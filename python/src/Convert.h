// What every part of the Python module shares: text, path and JSON
// conversions between the library's types and Python's, and the exceptions
// that stand for the library's failure results.
//
// Text the library keeps as bytes (key=value files, play-log strings, paths)
// becomes str by UTF-8 with "surrogateescape", as os.fsdecode does, so bytes
// that are not UTF-8 survive a round trip unchanged.
#ifndef VIRELINE_PYTHON_CONVERT_H_
#define VIRELINE_PYTHON_CONVERT_H_

#include <cstdint>
#include <string>
#include <vector>

#include <pybind11/pybind11.h>

#include <vireline/LTMJson.h>

namespace vireline {
namespace python {

namespace py = pybind11;

// The module's exception classes, made once when the module loads.
struct Errors {
  py::object base;     // VirelineError
  py::object load;     // LoadError
  py::object write;    // WriteError (an OSError)
  py::object open;     // OpenError (an OSError)
  py::object format;   // FormatError (a ValueError)
  py::object refused;  // RefusedError (a ValueError)
  py::object mfg;      // MfgError
};

// The exception classes; valid once DefineErrors has run.
const Errors& GetErrors();

// Creates the exception classes in `module`.
void DefineErrors(py::module_& module);

// Raises `type` with `message`; the exception's `code` attribute is `code`
// (None when the failure has no number).
[[noreturn]] void Raise(const py::object& type, const std::string& message, const py::object& code = py::none());

// Bytes as str (UTF-8, undecodable bytes as surrogates).
py::str Text(const std::string& bytes);

// A C string as str; None for null.
py::object TextOrNone(const char* text);

// A str (surrogates back to their bytes) or bytes as the library's bytes.
std::string Bytes(const py::handle& text);

// A path-like object (str, bytes, os.PathLike) as the library's bytes.
std::string PathBytes(const py::handle& path);

// A list of strings as str objects.
py::list TextList(const std::vector<std::string>& texts);

// A number the library reads as "missing" when it is 0xFFFFFFFF, as int or None.
py::object NumberOrNone(uint32_t value);

// A text argument: str (surrogates back to their bytes) or bytes, as the
// library's bytes; help() shows it as str.
struct Str {
  std::string bytes;
};

// A path argument: str, bytes or os.PathLike, as the library's bytes; help()
// shows it as os.PathLike.
struct Path {
  std::string bytes;
};

// A JSON document as plain Python objects (dict, list, str, int, float, bool, None).
py::object JsonToPython(const LTM::Value& value);

// Plain Python objects as a JSON document; TypeError for anything else,
// ValueError when nested deeper than the library writes.
LTM::Value PythonToJson(const py::handle& object);

}  // namespace python
}  // namespace vireline

namespace pybind11 {
namespace detail {

// Text arguments go through Bytes; anything else does not match the overload.
template <>
struct type_caster<vireline::python::Str> {
  PYBIND11_TYPE_CASTER(vireline::python::Str, const_name("str"));
  bool load(handle source, bool) {
    if (!PyUnicode_Check(source.ptr()) && !PyBytes_Check(source.ptr())) return false;
    value.bytes = vireline::python::Bytes(source);
    return true;
  }
  static handle cast(const vireline::python::Str& text, return_value_policy, handle) {
    return vireline::python::Text(text.bytes).release();
  }
};

// Path arguments go through os.fsencode; what it refuses does not match the overload.
template <>
struct type_caster<vireline::python::Path> {
  PYBIND11_TYPE_CASTER(vireline::python::Path, const_name("os.PathLike"));
  bool load(handle source, bool) {
    try {
      value.bytes = vireline::python::PathBytes(source);
      return true;
    } catch (error_already_set&) {
      return false;
    } catch (value_error&) {
      return false;
    }
  }
  static handle cast(const vireline::python::Path& path, return_value_policy, handle) {
    return vireline::python::Text(path.bytes).release();
  }
};

}  // namespace detail
}  // namespace pybind11

#endif  // VIRELINE_PYTHON_CONVERT_H_
