// The manufacturing record.
#include <array>
#include <memory>

#include <pybind11/stl.h>

#include <vireline/vireline.h>

#include "python/src/Bindings.h"
#include "python/src/Convert.h"

namespace vireline {
namespace python {
namespace {

// Every field of the record, in record order: what MfgData.as_dict() holds.
const char* const kFieldNames[] = {
    "ts_cal_data",   "bl_cal_data", "adc_cal_data", "audio_gain",  "serial_number_raw", "sn_valid",
    "siras_barcode", "locale",      "ts_pressure",  "soft_board_id", "acl_bias",        "mfg_version",
    "bl2_cal_data",  "mac_address", "ipv6_address", "sku",          "accelerometer_cal_data"};

// Raises MfgError unless `status` is 0.
void Check(int status, const std::string& what) {
  if (status != kMfgSuccess) Raise(GetErrors().mfg, what + " failed with status " + std::to_string(status), py::int_(status));
}

// A record field of `N` values of `Value` through `get` and `set`.
template <typename Value, size_t N, typename Class>
void ArrayField(Class& cls, const char* name, int (CMfgData::*get)(Value*), int (CMfgData::*set)(Value*),
                const char* doc) {
  cls.def_property(
      name,
      [get, name](CMfgData& mfg) {
        std::array<Value, N> values{};
        Check((mfg.*get)(values.data()), name);
        return std::vector<Value>(values.begin(), values.end());
      },
      [set, name](CMfgData& mfg, const std::vector<Value>& values) {
        if (values.size() != N) throw py::value_error(std::string(name) + " holds " + std::to_string(N) + " values");
        std::array<Value, N> stored{};
        std::copy(values.begin(), values.end(), stored.begin());
        Check((mfg.*set)(stored.data()), name);
      },
      doc);
}

// A fixed-size byte block of the record.
template <typename Byte, size_t N, typename Class>
void BlockField(Class& cls, const char* name, int (CMfgData::*get)(Byte*), int (CMfgData::*set)(const Byte*),
                const char* doc) {
  cls.def_property(
      name,
      [get, name](CMfgData& mfg) {
        std::array<Byte, N> block{};
        Check((mfg.*get)(block.data()), name);
        return py::bytes(reinterpret_cast<const char*>(block.data()), N);
      },
      [set, name](CMfgData& mfg, const py::bytes& value) {
        std::string bytes = value;
        if (bytes.size() != N) throw py::value_error(std::string(name) + " is " + std::to_string(N) + " bytes");
        Check((mfg.*set)(reinterpret_cast<const Byte*>(bytes.data())), name);
      },
      doc);
}

// A single signed number of the record.
template <typename Class>
void NumberField(Class& cls, const char* name, int (CMfgData::*get)(int&), int (CMfgData::*set)(int),
                 const char* doc) {
  cls.def_property(
      name,
      [get, name](CMfgData& mfg) {
        int value = 0;
        Check((mfg.*get)(value), name);
        return value;
      },
      [set, name](CMfgData& mfg, int value) { Check((mfg.*set)(value), name); }, doc);
}

int SetPressure(CMfgData& mfg, const char* bytes) {
  ts_pressure_data data;
  std::copy(bytes, bytes + sizeof data.bytes, data.bytes);
  return mfg.SetTSPressure(&data);
}

template <typename Class>
void BindFields(Class& cls) {
  ArrayField<int, 7>(cls, "ts_cal_data", &CMfgData::GetTSCalData, &CMfgData::SetTSCalData,
                     "Touch-screen calibration: 7 numbers.");
  NumberField(cls, "bl_cal_data", &CMfgData::GetBLCalData, &CMfgData::SetBLCalData, "Backlight calibration.");
  cls.def_property(
      "adc_cal_data",
      [](CMfgData& mfg) {
        int first = 0, second = 0;
        Check(mfg.GetADCCalData(first, second), "adc_cal_data");
        return std::vector<int>{first, second};
      },
      [](CMfgData& mfg, const std::vector<int>& values) {
        if (values.size() != 2) throw py::value_error("adc_cal_data holds 2 values");
        Check(mfg.SetADCCalData(values[0], values[1]), "adc_cal_data");
      },
      "ADC calibration: 2 numbers.");
  NumberField(cls, "audio_gain", &CMfgData::GetAudioGain, &CMfgData::SetAudioGain, "Audio gain.");
  BlockField<char, 24>(cls, "serial_number_raw", &CMfgData::GetSerialNumberRaw, &CMfgData::SetSerialNumberRaw,
                       "The serial number as stored: 24 bytes.");
  cls.def_property(
      "sn_valid",
      [](CMfgData& mfg) {
        bool valid = false;
        Check(mfg.GetSNValidFlag(valid), "sn_valid");
        return valid;
      },
      [](CMfgData& mfg, bool valid) { Check(mfg.SetSNValidFlag(valid), "sn_valid"); },
      "Whether the serial number is marked valid.");
  BlockField<char, 32>(cls, "siras_barcode", &CMfgData::GetSirasBarcode, &CMfgData::SetSirasBarcode,
                       "Barcode: 32 bytes.");
  BlockField<char, 8>(cls, "locale", &CMfgData::GetLocale, &CMfgData::SetLocale, "Locale: 8 bytes.");
  cls.def_property(
      "ts_pressure",
      [](CMfgData& mfg) {
        ts_pressure_data data{};
        Check(mfg.GetTSPressure(&data), "ts_pressure");
        return py::bytes(reinterpret_cast<const char*>(data.bytes), sizeof data.bytes);
      },
      [](CMfgData& mfg, const py::bytes& value) {
        std::string bytes = value;
        if (bytes.size() != sizeof(ts_pressure_data)) throw py::value_error("ts_pressure is 96 bytes");
        Check(SetPressure(mfg, bytes.data()), "ts_pressure");
      },
      "Touch-screen pressure table: 96 bytes.");
  NumberField(cls, "soft_board_id", &CMfgData::GetSoftBoardId, &CMfgData::SetSoftBoardId, "Factory board id.");
  ArrayField<int, 3>(cls, "acl_bias", &CMfgData::GetAclBias, &CMfgData::SetAclBias, "Accelerometer bias: 3 numbers.");
  NumberField(cls, "mfg_version", &CMfgData::GetMfgVersion, &CMfgData::SetMfgVersion, "Version of the record's layout.");
  cls.def_property(
      "bl2_cal_data",
      [](CMfgData& mfg) {
        std::vector<int> v(5);
        Check(mfg.GetBL2CalData(v[0], v[1], v[2], v[3], v[4]), "bl2_cal_data");
        return v;
      },
      [](CMfgData& mfg, const std::vector<int>& v) {
        if (v.size() != 5) throw py::value_error("bl2_cal_data holds 5 values");
        Check(mfg.SetBL2CalData(v[0], v[1], v[2], v[3], v[4]), "bl2_cal_data");
      },
      "Second backlight calibration: 5 numbers.");
  BlockField<unsigned char, 20>(cls, "mac_address", &CMfgData::GetMacAddress, &CMfgData::SetMacAddress,
                                "MAC address: 20 bytes.");
  cls.def_property(
      "ipv6_address",
      [](CMfgData& mfg) {
        std::array<unsigned short, 8> groups{};
        Check(mfg.GetIPv6Address(groups.data()), "ipv6_address");
        return std::vector<unsigned short>(groups.begin(), groups.end());
      },
      [](CMfgData& mfg, const std::vector<unsigned short>& groups) {
        if (groups.size() != 8) throw py::value_error("ipv6_address holds 8 groups");
        Check(mfg.SetIPv6Address(groups.data()), "ipv6_address");
      },
      "IPv6 address: 8 16-bit groups.");
  BlockField<char, 11>(cls, "sku", &CMfgData::GetSku, &CMfgData::SetSku, "SKU: 11 bytes.");
  ArrayField<long, 10>(cls, "accelerometer_cal_data", &CMfgData::GetAccelerometerCalData,
                       &CMfgData::SetAccelerometerCalData, "Accelerometer calibration: 10 signed 32-bit numbers.");
}

}  // namespace

void BindMfg(py::module_& m) {
  py::class_<CMfgData> cls(
      m, "MfgData",
      "The manufacturing record, loaded from the first of the two flash copies whose checksum is valid (with "
      "no valid copy, an all-zero record). Properties read and change the record in memory; update() writes "
      "both copies, in manufacturing mode only. Failures raise MfgError with the status as `code`. Use it as "
      "a context manager, or call close().");
  cls.def(py::init([] {
            auto mfg = std::make_unique<CMfgData>();
            Check(mfg->Init(), "loading the manufacturing record");
            return mfg;
          }),
          "Finds both partitions and loads the valid copy.");
  cls.def("close", [](CMfgData& mfg) { mfg.Exit(); }, "Releases the record and the partitions.");
  cls.def("__enter__", [](py::object self) { return self; });
  cls.def("__exit__", [](CMfgData& mfg, const py::args&) { mfg.Exit(); });
  BindFields(cls);
  cls.def_property_readonly(
      "serial_number",
      [](CMfgData& mfg) {
        char serial[24] = {};
        Check(mfg.GetSerialNumber(serial), "serial_number");
        return Text(serial);
      },
      "The 20-character device serial number composed from the stored one, the board id and the platform.");
  cls.def("set_serial_number", [](CMfgData& mfg, const Str& text) { Check(mfg.SetSerialNumber(text.bytes.c_str()), "set_serial_number"); },
          py::arg("text"),
          "Stores `text` as the serial number: at most 20 characters, padded with spaces; marks it not valid.");
  cls.def_property_readonly(
      "checksum_results",
      [](CMfgData& mfg) {
        int first = -1, second = -1;
        mfg.GetNorChecksumResults(first, second);
        return py::make_tuple(first, second);
      },
      "The checksum state of copies 0 and 1 when the record was loaded: 0 valid, 1 invalid, -1 not examined "
      "(copy 1 is examined only when copy 0 is invalid).");
  cls.def("validate_sector", &CMfgData::ValidateNORMfgSector, py::arg("index"),
          "The checksum state of copy `index` as it is on flash now: 0 valid, 1 invalid, 2 out of memory, "
          "3 unreadable.");
  cls.def_static(
      "partition_path",
      [](int index) {
        char path[16] = {};
        Check(CMfgData::GetNorPartitionFilename(path, index), "partition_path");
        return Text(path);
      },
      py::arg("index"), "The device path (\"/dev/mtd3\") of the partition /proc/mtd names MfgData<index>.");
  cls.def("set_mfg_mode", [](CMfgData& mfg, bool on) { Check(mfg.SetMfgMode(on), "set_mfg_mode"); }, py::arg("on"),
          "Enters or leaves manufacturing mode (runs /usr/bin/mfgmode.sh).");
  cls.def("update", [](CMfgData& mfg) { Check(mfg.Update(), "update"); },
          "Writes the record to both copies, the one not loaded first, verifying each.");
  cls.def(
      "as_dict",
      [](py::object self) {
        py::dict fields;
        for (const char* name : kFieldNames) fields[name] = self.attr(name);
        fields["serial_number"] = self.attr("serial_number");
        fields["checksum_results"] = self.attr("checksum_results");
        return fields;
      },
      "Every field, the composed serial number and both copies' checksum state, as a dict.");
}

}  // namespace python
}  // namespace vireline
