// The device root, key=value files and JSON files.
#include <optional>

#include <pybind11/stl.h>

#include <vireline/vireline.h>

#include "python/src/Bindings.h"
#include "python/src/Convert.h"

namespace vireline {
namespace python {
namespace {

// `with DeviceRoot(folder):` maps device paths below `folder` and restores
// the root that was in force before.
struct DeviceRootScope {
  std::string folder;
  std::string previous;
};

std::string PathOf(const CFileIO& file) { return file.GetPath() ? file.GetPath() : "(no file)"; }

// Raises RefusedError unless the library took the change.
void Took(bool ok, const CFileIO& file, const std::string& key) {
  if (!ok) Raise(GetErrors().refused, "refused to set " + key + " in " + PathOf(file));
}

py::object Lookup(const CFileIO& file, const std::string& key) {
  const tKeyValueEntry* entry = file.FindKey(key.c_str());
  if (entry == nullptr) throw py::key_error(key);
  return TextOrNone(entry->value);
}

py::list KeyList(const CFileIO& file) {
  py::list keys;
  for (U32 index = 0; index < file.GetEntryCount(); ++index) keys.append(Text(file.GetEntry(index)->key));
  return keys;
}

py::object StrList(const CFileIO& file, const std::string& key) {
  if (!file.HasKey(key.c_str())) return py::none();
  char** items = nullptr;
  U32 count = file.GetStrList(key.c_str(), items);
  py::list list;
  for (U32 index = 0; index < count; ++index) {
    if (items[index] != nullptr) list.append(Text(items[index]));
    COrvoInterface::Free(items[index]);
  }
  COrvoInterface::Free(items);
  return list;
}

py::object UIntList(const CFileIO& file, const std::string& key) {
  if (!file.HasKey(key.c_str())) return py::none();
  U32* items = nullptr;
  U32 count = file.GetUIntList(key.c_str(), items);
  py::list list;
  for (U32 index = 0; index < count; ++index) list.append(items[index]);
  COrvoInterface::Free(items);
  return list;
}

// The bytes of each string, and pointers to them for the library.
struct CStrings {
  std::vector<std::string> bytes;
  std::vector<const char*> pointers;
  explicit CStrings(const py::iterable& texts) {
    for (py::handle text : texts) bytes.push_back(Bytes(text));
    for (const std::string& text : bytes) pointers.push_back(text.c_str());
  }
};

void Write(CFileIO& file) {
  if (!file.Write()) Raise(GetErrors().write, "cannot write " + PathOf(file));
}

void BindDeviceRoot(py::module_& m) {
  m.def("device_root", &GetDeviceRoot, "The host folder that device paths are mapped below (\"/\" on a device).");
  m.def("set_device_root", [](const Path& folder) { SetDeviceRoot(folder.bytes); }, py::arg("folder"),
        "Maps every device path (\"/QV/...\") below `folder`; an empty folder means the real \"/\".");
  py::class_<DeviceRootScope>(m, "DeviceRoot",
                              "Context manager that maps device paths below a folder for its block and then "
                              "restores the root in force before:\n\n"
                              "    with vireline.DeviceRoot(\"copy-of-image\"):\n"
                              "        print(vireline.SystemData().locale_code)\n\n"
                              "Process-wide caches of the library (the locale, the platform type) survive the "
                              "switch.")
      .def(py::init([](const Path& folder) { return DeviceRootScope{folder.bytes, ""}; }),
           py::arg("folder"))
      .def("__enter__",
           [](DeviceRootScope& scope) {
             scope.previous = GetDeviceRoot();
             SetDeviceRoot(scope.folder);
             return Text(scope.folder);
           })
      .def("__exit__", [](DeviceRootScope& scope, const py::args&) { SetDeviceRoot(scope.previous); });
}

void BindKeyValueFile(py::module_& m) {
  py::class_<CFileIO>(m, "KeyValueFile",
                      "A key=value text file (meta.inf, settings.cfg, profile.dsc, request files) as a mutable "
                      "mapping of str to str. Entries keep the file's order; duplicate keys are kept (iteration "
                      "shows each, lookups find the first). Changes stay in memory until write().")
      .def(py::init([](const std::optional<Path>& path) {
             auto file = std::make_unique<CFileIO>();
             if (path) file->Open(path->bytes.c_str());
             return file;
           }),
           py::arg("path") = py::none(),
           "Reads the file at device path `path`. A missing file gives an empty table; write() creates it.")
      .def("open", [](CFileIO& file, const Path& path) { return file.Open(path.bytes.c_str()); },
           py::arg("path"), "Binds `path` and reads it, forgetting the table; False when it cannot be opened.")
      .def_property_readonly("path", [](const CFileIO& file) { return TextOrNone(file.GetPath()); },
                             "The device path the table is bound to, or None.")
      .def("__getitem__", [](const CFileIO& file, const Str& key) { return Lookup(file, key.bytes); },
           "The first entry's value (None for an entry without one); KeyError when missing.")
      .def("__setitem__",
           [](CFileIO& file, const Str& key, const Str& value) {
             Took(file.SetStr(key.bytes.c_str(), value.bytes.c_str()), file, key.bytes);
           },
           "Stores the text under the key (added at the end when new).")
      .def("__delitem__",
           [](CFileIO& file, const Str& key) {
             std::string name = key.bytes;
             if (!file.RmKey(name.c_str())) throw py::key_error(name);
           },
           "Removes the first entry with the key; KeyError when missing.")
      .def("__contains__",
           [](const CFileIO& file, const py::object& key) {
             return PyUnicode_Check(key.ptr()) && file.HasKey(Bytes(key).c_str());
           })
      .def("__len__", &CFileIO::GetEntryCount, "The number of entries, duplicates included.")
      .def("__iter__", [](const CFileIO& file) { return py::iter(KeyList(file)); })
      .def("keys", &KeyList, "Every entry's key in file order.")
      .def("get",
           [](const CFileIO& file, const Str& key, const py::object& fallback) {
             std::string name = key.bytes;
             return file.HasKey(name.c_str()) ? Lookup(file, name) : fallback;
           },
           py::arg("key"), py::arg("default") = py::none(), "The value of `key`, or `default` when missing.")
      .def("items",
           [](const CFileIO& file) {
             py::list items;
             for (U32 index = 0; index < file.GetEntryCount(); ++index) {
               const tKeyValueEntry* entry = file.GetEntry(index);
               items.append(py::make_tuple(Text(entry->key), TextOrNone(entry->value)));
             }
             return items;
           },
           "(key, value) of every entry in file order.")
      .def("entries",
           [](const CFileIO& file) {
             py::list entries;
             for (U32 index = 0; index < file.GetEntryCount(); ++index) {
               const tKeyValueEntry* entry = file.GetEntry(index);
               entries.append(py::make_tuple(Text(entry->key), TextOrNone(entry->value), entry->quoted != 0,
                                             entry->listQuoted != 0));
             }
             return entries;
           },
           "(key, value, quoted, list_quoted) of every entry: how write() puts the quotes back.")
      .def("get_uint", [](const CFileIO& file, const Str& key) { return NumberOrNone(file.GetUInt(key.bytes.c_str())); },
           py::arg("key"),
           "The value as a number (\"0x\" and hex digits, or decimal digits); None when missing or ill-formed.")
      .def("set_uint",
           [](CFileIO& file, const Str& key, U32 value) {
             std::string name = key.bytes;
             Took(file.SetUInt(name.c_str(), value), file, name);
           },
           py::arg("key"), py::arg("value"), "Stores the number as \"0x%08X\".")
      .def("get_uint_list", [](const CFileIO& file, const Str& key) { return UIntList(file, key.bytes); },
           py::arg("key"),
           "The comma-separated items, each read in base 16 (so a stored 10 reads as 16); None when missing.")
      .def("set_uint_list",
           [](CFileIO& file, const Str& key, const std::vector<U32>& values) {
             std::string name = key.bytes;
             Took(file.SetUIntList(name.c_str(), values.data(), static_cast<U32>(values.size())), file, name);
           },
           py::arg("key"), py::arg("values"),
           "Stores the numbers in decimal joined by commas (get_uint_list reads them in base 16).")
      .def("get_str_list", [](const CFileIO& file, const Str& key) { return StrList(file, key.bytes); },
           py::arg("key"), "The comma-separated items; None when missing.")
      .def("set_str_list",
           [](CFileIO& file, const Str& key, const py::iterable& values) {
             std::string name = key.bytes;
             CStrings strings(values);
             Took(file.SetStrList(name.c_str(), strings.pointers.data(), static_cast<U32>(strings.pointers.size())),
                  file, name);
           },
           py::arg("key"), py::arg("values"), "Stores the strings joined by commas; an empty list is refused.")
      .def("write", &Write,
           "Replaces the file atomically with the table (nothing happens when nothing changed); WriteError "
           "when it cannot be written.");
  // The rest of the mapping interface (pop, update, values, ...) is the
  // standard library's own, built on the methods above.
  py::object mutableMapping = py::module_::import("collections.abc").attr("MutableMapping");
  for (const char* name : {"pop", "popitem", "clear", "update", "setdefault", "values"}) {
    m.attr("KeyValueFile").attr(name) = mutableMapping.attr(name);
  }
  mutableMapping.attr("register")(m.attr("KeyValueFile"));
}

// A text property of meta.inf: None when missing; setting refused raises RefusedError.
template <typename Getter, typename Setter>
void TextProperty(py::class_<CMetaInfFile, CFileIO>& cls, const char* name, Getter get, Setter set, const char* doc) {
  cls.def_property(
      name, [get](const CMetaInfFile& file) { return TextOrNone((file.*get)()); },
      [set, name](CMetaInfFile& file, const Str& value) { Took((file.*set)(value.bytes.c_str()), file, name); },
      doc);
}

// A number property of meta.inf: None when missing or ill-formed.
template <typename Getter, typename Setter>
void NumberProperty(py::class_<CMetaInfFile, CFileIO>& cls, const char* name, Getter get, Setter set, const char* doc) {
  cls.def_property(
      name, [get](const CMetaInfFile& file) { return NumberOrNone((file.*get)()); },
      [set, name](CMetaInfFile& file, U32 value) { Took((file.*set)(value), file, name); }, doc);
}

// A string-list property of meta.inf.
template <typename Getter, typename Setter>
void ListProperty(py::class_<CMetaInfFile, CFileIO>& cls, const char* name, const char* key, Getter, Setter set,
                  const char* doc) {
  cls.def_property(
      name, [key](const CMetaInfFile& file) { return StrList(file, key); },
      [set, name](CMetaInfFile& file, const py::iterable& values) {
        CStrings strings(values);
        Took((file.*set)(strings.pointers.data(), static_cast<U32>(strings.pointers.size())), file, name);
      },
      doc);
}

void BindMetaInfFile(py::module_& m) {
  py::class_<CMetaInfFile, CFileIO> cls(
      m, "MetaInfFile",
      "A package's meta.inf: a KeyValueFile with typed properties for the package's id, name, type, version, "
      "files and access rules. Text properties are None when the key is missing, number properties None when "
      "missing or ill-formed.");
  cls.def(py::init([](const std::optional<Path>& folder) {
            if (!folder) return std::make_unique<CMetaInfFile>();
            return std::make_unique<CMetaInfFile>(folder->bytes.c_str());
          }),
          py::arg("folder") = py::none(), "Reads `folder`/meta.inf (device path); no folder: an empty table.");
  TextProperty(cls, "meta_version", &CMetaInfFile::GetMetaVersion, &CMetaInfFile::SetMetaVersion, "\"MetaVersion\".");
  TextProperty(cls, "device_type", &CMetaInfFile::GetDeviceType, &CMetaInfFile::SetDeviceType, "\"Device\".");
  TextProperty(cls, "package_id", &CMetaInfFile::GetPackageId, &CMetaInfFile::SetPackageId,
               "\"DeviceAltPkgID\" when present, else \"PackageID\"; setting writes \"PackageID\" only.");
  NumberProperty(cls, "product_id", &CMetaInfFile::GetProductId, &CMetaInfFile::SetProductId,
                 "\"ProductID\" (written as \"0x%08X\").");
  TextProperty(cls, "package_name", &CMetaInfFile::GetPackageName, &CMetaInfFile::SetPackageName, "\"Name\".");
  TextProperty(cls, "short_name", &CMetaInfFile::GetShortName, &CMetaInfFile::SetShortName, "\"ShortName\".");
  TextProperty(cls, "bin_file", &CMetaInfFile::GetBinFile, &CMetaInfFile::SetBinFile, "\"BinFile\".");
  TextProperty(cls, "part_number", &CMetaInfFile::GetPartNumber, &CMetaInfFile::SetPartNumber, "\"PartNumber\".");
  TextProperty(cls, "package_version", &CMetaInfFile::GetPackageVersion, &CMetaInfFile::SetPackageVersion,
               "\"Version\".");
  TextProperty(cls, "publisher", &CMetaInfFile::GetPublisher, &CMetaInfFile::SetPublisher, "\"Publisher\".");
  TextProperty(cls, "developer", &CMetaInfFile::GetDeveloper, &CMetaInfFile::SetDeveloper, "\"Developer\".");
  TextProperty(cls, "icon", &CMetaInfFile::GetIcon, &CMetaInfFile::SetIcon, "\"Icon\".");
  TextProperty(cls, "path_to_upload_content", &CMetaInfFile::GetPathToUploadContent,
               &CMetaInfFile::SetPathToUploadContent, "\"PathToUploadContent\".");
  TextProperty(cls, "path_to_upload_content_list", &CMetaInfFile::GetPathToUploadContentList,
               &CMetaInfFile::SetPathToUploadContentList, "\"PathToUploadContentList\".");
  NumberProperty(cls, "size", &CMetaInfFile::GetSize, &CMetaInfFile::SetSize, "\"Size\".");
  NumberProperty(cls, "device_access", &CMetaInfFile::GetDeviceAccess, &CMetaInfFile::SetDeviceAccess,
                 "\"DeviceAccess\".");
  ListProperty(cls, "dependencies", "Depends", &CMetaInfFile::GetDependencies, &CMetaInfFile::SetDependencies,
               "\"Depends\" as a list of str; None when missing.");
  ListProperty(cls, "persistent_data", "PersistentData", &CMetaInfFile::GetPersistentData,
               &CMetaInfFile::SetPersistentData, "\"PersistentData\" as a list of str; None when missing.");
  cls.def_property(
      "package_type",
      [](const CMetaInfFile& file) {
        tPackageType type = file.GetPackageType();
        return type == tPackageType() ? py::object(py::none()) : py::object(Text(type.ToString()));
      },
      [](CMetaInfFile& file, const Str& value) {
        Took(file.SetPackageType(tPackageType(value.bytes.c_str())), file, "Type");
      },
      "\"Type\" (compared without regard to case); None when missing. The empty type and \"*\" are refused.");
  cls.def_property(
      "hidden", &CMetaInfFile::IsHidden,
      [](CMetaInfFile& file, bool hidden) { Took(file.SetHidden(hidden), file, "Hidden"); },
      "True unless \"Hidden\" reads as 0: a file without the key counts as hidden.");
  cls.def_property(
      "profile_access", [](const CMetaInfFile& file) { return UIntList(file, "ProfileAccess"); },
      [](CMetaInfFile& file, const std::vector<U32>& profiles) {
        Took(file.SetProfileAccess(profiles.data(), static_cast<U32>(profiles.size())), file, "ProfileAccess");
      },
      "\"ProfileAccess\" as numbers, items read in base 16 (written in decimal); None when missing.");
  cls.def_property(
      "optional_upload", &CMetaInfFile::GetOptionalUpload,
      [](CMetaInfFile& file, U32 value) { Took(file.SetOptionalUpload(value), file, "OptionalUpload"); },
      "\"OptionalUpload\"; missing or ill-formed reads as 0.");
  cls.def("profile_has_access", &CMetaInfFile::ProfileHasAccess, py::arg("profile"),
          "True when \"ProfileAccess\" is missing or empty, or an item's low 8 bits equal `profile`.");
  cls.def("is_valid", &CMetaInfFile::IsValid, "A proper type (not empty, not \"*\"), a package id and a version.");
}

void BindJson(py::module_& m) {
  m.def(
      "load_json",
      [](const Path& path, bool createIfMissing) {
        LTM::CJSonFile file(path.bytes, createIfMissing ? 1 : 0);
        U32 result = file.Load();
        if (result != 0) Raise(GetErrors().load, "cannot load " + path.bytes, py::int_(result));
        return JsonToPython(file.mRoot);
      },
      py::arg("path"), py::arg("create_if_missing") = false,
      "The JSON document at device path `path` as plain Python objects. With `create_if_missing` a missing "
      "file is first created holding {}. LoadError when it cannot be read or parsed.");
  m.def(
      "save_json",
      [](const Path& path, const py::object& document) {
        LTM::CJSonFile file(path.bytes, 0);
        file.mRoot = PythonToJson(document);
        U32 result = file.Save();
        if (result != 0) Raise(GetErrors().write, "cannot save " + path.bytes, py::int_(result));
      },
      py::arg("path"), py::arg("document"),
      "Replaces the file at device path `path` atomically with the compact JSON of `document` (dict, list, "
      "str, int, float, bool, None). WriteError when it cannot be written.");
}

}  // namespace

void BindFiles(py::module_& m) {
  BindDeviceRoot(m);
  BindKeyValueFile(m);
  BindMetaInfFile(m);
  BindJson(m);
}

}  // namespace python
}  // namespace vireline
