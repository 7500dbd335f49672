// The parts of the Python module, each adding its classes and functions.
#ifndef VIRELINE_PYTHON_BINDINGS_H_
#define VIRELINE_PYTHON_BINDINGS_H_

#include <pybind11/pybind11.h>

namespace vireline {
namespace python {

// The device root, key=value files and JSON files.
void BindFiles(pybind11::module_& module);

// The play-log reader and the JSON Lines export.
void BindLogs(pybind11::module_& module);

// The manufacturing record.
void BindMfg(pybind11::module_& module);

// System paths, asset lookup, profiles, content lists, checksums and versions.
void BindDevice(pybind11::module_& module);

}  // namespace python
}  // namespace vireline

#endif  // VIRELINE_PYTHON_BINDINGS_H_
