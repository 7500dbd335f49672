#include "python/src/Convert.h"

namespace vireline {
namespace python {
namespace {

Errors* gErrors = nullptr;

// A new exception class `name` of the module, derived from `bases`.
py::object NewError(py::module_& module, const char* name, const char* doc, const py::tuple& bases) {
  std::string qualified = std::string("vireline.") + name;
  PyObject* type = PyErr_NewExceptionWithDoc(qualified.c_str(), doc, bases.ptr(), nullptr);
  if (type == nullptr) throw py::error_already_set();
  py::object error = py::reinterpret_steal<py::object>(type);
  module.attr(name) = error;
  return error;
}

// A Python int as the JSON number kind JsonCpp would read it as.
LTM::Value IntegerToJson(const py::handle& object) {
  int overflow = 0;
  long long signedValue = PyLong_AsLongLongAndOverflow(object.ptr(), &overflow);
  if (overflow == 0) {
    if (signedValue == -1 && PyErr_Occurred()) throw py::error_already_set();
    return LTM::Value(static_cast<LTM::Int64>(signedValue));
  }
  if (overflow > 0) {
    unsigned long long unsignedValue = PyLong_AsUnsignedLongLong(object.ptr());
    if (!PyErr_Occurred()) return LTM::Value(static_cast<LTM::UInt64>(unsignedValue));
    PyErr_Clear();
  }
  throw py::value_error("integer out of the range JSON documents keep (64 bits)");
}

LTM::Value ToJson(const py::handle& object, unsigned depth) {
  if (depth > LTM::kMaxJsonDepth) throw py::value_error("JSON document nested too deeply");
  LTM::Value value;
  if (object.is_none()) return value;
  if (PyBool_Check(object.ptr())) return LTM::Value(object.ptr() == Py_True);
  if (PyLong_Check(object.ptr())) return IntegerToJson(object);
  if (PyFloat_Check(object.ptr())) return LTM::Value(PyFloat_AsDouble(object.ptr()));
  if (PyUnicode_Check(object.ptr())) return LTM::Value(Glib::ustring(object.cast<std::string>()));
  if (PyList_Check(object.ptr()) || PyTuple_Check(object.ptr())) {
    value = LTM::Value(LTM::arrayValue);
    for (py::handle item : object) value.append(ToJson(item, depth + 1));
    return value;
  }
  if (PyDict_Check(object.ptr())) {
    value = LTM::Value(LTM::objectValue);
    for (auto item : object.cast<py::dict>()) {
      if (!PyUnicode_Check(item.first.ptr())) throw py::type_error("JSON object keys must be str");
      value[Glib::ustring(item.first.cast<std::string>())] = ToJson(item.second, depth + 1);
    }
    return value;
  }
  throw py::type_error(std::string("cannot store a ") + Py_TYPE(object.ptr())->tp_name + " in a JSON document");
}

}  // namespace

const Errors& GetErrors() { return *gErrors; }

void DefineErrors(py::module_& module) {
  gErrors = new Errors;  // lives as long as the module: the interpreter never unloads it
  py::object exception = py::reinterpret_borrow<py::object>(PyExc_Exception);
  py::object osError = py::reinterpret_borrow<py::object>(PyExc_OSError);
  py::object valueError = py::reinterpret_borrow<py::object>(PyExc_ValueError);
  gErrors->base = NewError(module, "VirelineError",
                           "A failure the library reported by its result; `code` holds the result's number "
                           "when it has one.",
                           py::make_tuple(exception));
  gErrors->load = NewError(module, "LoadError", "A JSON file could not be read or parsed (the library's 1).",
                           py::make_tuple(gErrors->base));
  gErrors->write = NewError(module, "WriteError",
                            "A file could not be written; the old file is left whole (a false write, or the "
                            "library's 0x10001005).",
                            py::make_tuple(gErrors->base, osError));
  gErrors->open = NewError(module, "OpenError", "A file to be read could not be opened.",
                           py::make_tuple(gErrors->base, osError));
  gErrors->format = NewError(module, "FormatError", "A file is not what it should be (not a play log, too short).",
                             py::make_tuple(gErrors->base, valueError));
  gErrors->refused = NewError(module, "RefusedError", "The library refused a value (a setter returned false).",
                              py::make_tuple(gErrors->base, valueError));
  gErrors->mfg = NewError(module, "MfgError",
                          "A manufacturing-data operation returned a status other than 0; `code` is the status.",
                          py::make_tuple(gErrors->base));
}

void Raise(const py::object& type, const std::string& message, const py::object& code) {
  py::object error = type(message);
  error.attr("code") = code;
  PyErr_SetObject(type.ptr(), error.ptr());
  throw py::error_already_set();
}

py::str Text(const std::string& bytes) {
  PyObject* text = PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "surrogateescape");
  if (text == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(text);
}

py::object TextOrNone(const char* text) {
  if (text == nullptr) return py::none();
  return Text(text);
}

std::string Bytes(const py::handle& text) {
  if (PyBytes_Check(text.ptr())) return text.cast<std::string>();
  if (!PyUnicode_Check(text.ptr())) {
    throw py::type_error(std::string("expected str, got ") + Py_TYPE(text.ptr())->tp_name);
  }
  PyObject* encoded = PyUnicode_AsEncodedString(text.ptr(), "utf-8", "surrogateescape");
  if (encoded == nullptr) throw py::error_already_set();
  py::bytes bytes = py::reinterpret_steal<py::bytes>(encoded);
  std::string result = bytes;
  if (result.find('\0') != std::string::npos) throw py::value_error("embedded NUL character");
  return result;
}

std::string PathBytes(const py::handle& path) {
  return Bytes(py::module_::import("os").attr("fsencode")(path));
}

py::list TextList(const std::vector<std::string>& texts) {
  py::list list;
  for (const std::string& text : texts) list.append(Text(text));
  return list;
}

py::object NumberOrNone(uint32_t value) {
  if (value == 0xFFFFFFFFu) return py::none();
  return py::int_(value);
}

py::object JsonToPython(const LTM::Value& value) {
  switch (value.type()) {
    case LTM::intValue:
      return py::int_(value.asInt64());
    case LTM::uintValue:
      return py::int_(value.asUInt64());
    case LTM::realValue:
      return py::float_(value.asDouble());
    case LTM::stringValue:
      return Text(value.asString().raw());
    case LTM::booleanValue:
      return py::bool_(value.asBool());
    case LTM::arrayValue: {
      py::list list;
      for (LTM::ArrayIndex index = 0; index < value.size(); ++index) list.append(JsonToPython(value[index]));
      return list;
    }
    case LTM::objectValue: {
      py::dict dict;
      for (const Glib::ustring& key : value.getMemberNames()) dict[Text(key.raw())] = JsonToPython(value[key]);
      return dict;
    }
    case LTM::nullValue:
    default:
      return py::none();
  }
}

LTM::Value PythonToJson(const py::handle& object) { return ToJson(object, 0); }

}  // namespace python
}  // namespace vireline
