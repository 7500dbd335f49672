// `vireline mfg`: the manufacturing record - show it, verify its two flash
// copies, or change the serial number, locale or SKU in manufacturing mode.
#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include <vireline/vireline.h>

#include "tools/Commands.h"

namespace vireline {
namespace tools {
namespace {

const int kCopies = 2;

const char* StatusText(int status) {
  switch (status) {
    case kMfgOutOfMemory: return "out of memory";
    case kMfgPartitionNotFound: return "partition not found";
    case kMfgChecksumInvalid0: return "checksum invalid after writing partition 0";
    case kMfgChecksumInvalid1: return "checksum invalid after writing partition 1";
    case kMfgReadFailed0: return "read failed on partition 0";
    case kMfgReadFailed1: return "read failed on partition 1";
    case kMfgWriteFailed0: return "write failed on partition 0";
    case kMfgWriteFailed1: return "write failed on partition 1";
    case kMfgNotInMfgMode: return "manufacturing mode could not be entered";
    default: return "failed";
  }
}

// Reports a failed library call; the exit status it stands for.
int Fail(const char* command, const char* what, int status) {
  std::fprintf(stderr, "vireline mfg %s: %s: %s (status %d)\n", command, what, StatusText(status), status);
  return status == kMfgPartitionNotFound ? kNotFound : kIoError;
}

// Copy `index`'s partition name and device path, as "MfgData0 (/dev/mtd3)".
std::string CopyName(int index) {
  char path[16] = "?";
  CMfgData::GetNorPartitionFilename(path, index);
  return "MfgData" + std::to_string(index) + " (" + path + ")";
}

// Why copy `index` could not be read: its absence, its size, or the error
// the failed read left (`error`).
std::string ReadFailureReason(int index, int error) {
  char path[16] = "";
  CMfgData::GetNorPartitionFilename(path, index);
  tStatLite info = {};
  if (!COrvoInterface::Stat(path, &info, false)) return "no such file";
  if (info.type == 1 && info.size < kMfgRecordSize) {
    return "shorter than a record (" + std::to_string(info.size) + " of " + std::to_string(kMfgRecordSize) + " bytes)";
  }
  return error != 0 ? std::strerror(error) : "read failed";
}

// Loads copy 1 into `data` when Init stopped at an unreadable copy 0 (Init
// reads copy 1 only after a bad checksum in copy 0); false when copy 1 is
// not valid either.
bool LoadCopy1(CMfgData* data) {
  if (data->ValidateNORMfgSector(1) != 0) return false;
  unsigned char record[kMfgRecordSize];
  return data->GetNORMfgSectorData(1, record) == kMfgSuccess &&
         data->Write(record, 0, kMfgRecordSize) == kMfgRecordSize;
}

// Which copy a record was loaded from (-1: none valid), and why copy 0 was
// passed over when it could not be read (empty otherwise).
struct Loaded {
  int source = -1;
  std::string copy0Unreadable;
};

// Loads the record; with no valid copy Init still succeeds (all zeros). An
// unreadable copy 0 beside a valid copy 1 loads copy 1, as verify accepts it.
int Load(CMfgData* data, const char* command, Loaded* loaded) {
  errno = 0;
  int status = data->Init();
  int error = errno;
  if (status == kMfgReadFailed0 || status == kMfgReadFailed1) {
    int index = status == kMfgReadFailed0 ? 0 : 1;
    std::string reason = ReadFailureReason(index, error);
    if (index == 0 && LoadCopy1(data)) {
      std::fprintf(stderr, "vireline mfg %s: copy 0 of the manufacturing record, %s, cannot be read: %s; using copy 1\n",
                   command, CopyName(0).c_str(), reason.c_str());
      loaded->source = 1;
      loaded->copy0Unreadable = reason;
      return kSuccess;
    }
    std::fprintf(stderr, "vireline mfg %s: cannot load the manufacturing record: %s cannot be read: %s\n", command,
                 CopyName(index).c_str(), reason.c_str());
    return kIoError;
  }
  if (status != kMfgSuccess) return Fail(command, "cannot load the manufacturing record", status);
  int first, second;
  data->GetNorChecksumResults(first, second);
  loaded->source = first == 0 ? 0 : second == 0 ? 1 : -1;
  return kSuccess;
}

// A fixed-size text field as a quoted C string: trailing NULs dropped, other
// unprintable bytes escaped.
std::string Quoted(const char* field, size_t size) {
  while (size > 0 && field[size - 1] == '\0') --size;
  std::string text = "\"";
  for (size_t i = 0; i < size; ++i) {
    unsigned char c = static_cast<unsigned char>(field[i]);
    if (c == '"' || c == '\\') {
      text += '\\';
      text += static_cast<char>(c);
    } else if (std::isprint(c)) {
      text += static_cast<char>(c);
    } else {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\x%02X", c);
      text += escaped;
    }
  }
  return text + "\"";
}

std::string Hex(const unsigned char* bytes, size_t size, const char* separator) {
  std::string text;
  for (size_t i = 0; i < size; ++i) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02x", bytes[i]);
    text += (i > 0 ? separator : "") + std::string(digits);
  }
  return text;
}

template <typename T>
std::string Numbers(const T* values, size_t count) {
  std::string text;
  for (size_t i = 0; i < count; ++i) text += (i > 0 ? " " : "") + std::to_string(values[i]);
  return text;
}

void Field(const char* label, const std::string& value) { std::printf("%-30s %s\n", label, value.c_str()); }

const char* SectorState(int status) {
  switch (status) {
    case 0: return "checksum valid";
    case 1: return "checksum invalid";
    case kMfgOutOfMemory: return "out of memory";
    default: return "unreadable";
  }
}

// Each copy's device path and checksum state as it is on flash now; true
// when one of them is valid.
bool PrintCopies(CMfgData& data) {
  bool anyValid = false;
  for (int index = 0; index < kCopies; ++index) {
    char path[16] = "?";
    CMfgData::GetNorPartitionFilename(path, index);
    int state = data.ValidateNORMfgSector(index);
    anyValid = anyValid || state == 0;
    std::printf("copy %d (MfgData%d, %s): %s\n", index, index, path, SectorState(state));
  }
  return anyValid;
}

void PrintLoadedFrom(int source) {
  const char* text = source == 0 ? "copy 0" : source == 1 ? "copy 1" : "none valid: an all-zero record";
  std::printf("loaded from: %s\n", text);
}

void PrintCalibration(CMfgData& data) {
  int ts[7] = {}, bias[3] = {}, bl2[5] = {}, value = 0, other = 0;
  data.GetTSCalData(ts);
  Field("touch-screen calibration", Numbers(ts, 7));
  data.GetBLCalData(value);
  Field("backlight calibration", std::to_string(value));
  data.GetADCCalData(value, other);
  Field("ADC calibration", std::to_string(value) + " " + std::to_string(other));
  data.GetAudioGain(value);
  Field("audio gain", std::to_string(value));
  ts_pressure_data pressure = {};
  data.GetTSPressure(&pressure);
  Field("touch-screen pressure data", Hex(pressure.bytes, sizeof pressure.bytes, ""));
  data.GetAclBias(bias);
  Field("accelerometer bias", Numbers(bias, 3));
  data.GetBL2CalData(bl2[0], bl2[1], bl2[2], bl2[3], bl2[4]);
  Field("second backlight calibration", Numbers(bl2, 5));
  long accel[10] = {};
  data.GetAccelerometerCalData(accel);
  Field("accelerometer calibration", Numbers(accel, 10));
}

void PrintIdentity(CMfgData& data) {
  char raw[24] = {}, serial[24] = {}, barcode[32] = {}, locale[8] = {}, sku[11] = {};
  data.GetSerialNumberRaw(raw);
  Field("serial number (stored)", Quoted(raw, sizeof raw));
  data.GetSerialNumber(serial);
  Field("serial number (device)", serial);
  bool valid = false;
  data.GetSNValidFlag(valid);
  Field("serial number valid", valid ? "yes" : "no");
  data.GetSirasBarcode(barcode);
  Field("barcode", Quoted(barcode, sizeof barcode));
  data.GetLocale(locale);
  Field("locale", Quoted(locale, sizeof locale));
  data.GetSku(sku);
  Field("SKU", Quoted(sku, sizeof sku));
  int value = 0;
  data.GetSoftBoardId(value);
  Field("soft board id", std::to_string(value));
  data.GetMfgVersion(value);
  Field("manufacturing data version", std::to_string(value));
  unsigned char mac[20] = {};
  data.GetMacAddress(mac);
  // A MAC address is 6 bytes; the rest of the field is shown only when used.
  bool rest = std::any_of(mac + 6, mac + sizeof mac, [](unsigned char b) { return b != 0; });
  Field("MAC address", Hex(mac, 6, ":") + (rest ? " + " + Hex(mac + 6, sizeof mac - 6, "") : ""));
  unsigned short ipv6[8] = {};
  data.GetIPv6Address(ipv6);
  char address[48];
  std::snprintf(address, sizeof address, "%x:%x:%x:%x:%x:%x:%x:%x", ipv6[0], ipv6[1], ipv6[2], ipv6[3], ipv6[4],
                ipv6[5], ipv6[6], ipv6[7]);
  Field("IPv6 address", address);
}

int RunShow() {
  CMfgData data;
  Loaded loaded;
  int status = Load(&data, "show", &loaded);
  if (status != kSuccess) return status;
  PrintCopies(data);
  PrintLoadedFrom(loaded.source);
  PrintIdentity(data);
  PrintCalibration(data);
  return kSuccess;
}

int RunVerify() {
  CMfgData data;
  int status = data.Init();
  // Init stops at an unreadable copy 0; both partitions are known by then.
  if (status == kMfgPartitionNotFound || status == kMfgOutOfMemory) {
    return Fail("verify", "cannot find the manufacturing partitions", status);
  }
  if (PrintCopies(data)) return kSuccess;
  std::fprintf(stderr, "vireline mfg verify: no copy of the manufacturing record is valid\n");
  return kCorrupt;
}

struct TextField {
  const char* name;
  size_t size;
  int (CMfgData::*set)(const char*);
};

const TextField kSettable[] = {
    {"serial", 20, &CMfgData::SetSerialNumber},
    {"locale", 8, &CMfgData::SetLocale},
    {"sku", 11, &CMfgData::SetSku},
};

// Why `value` cannot be stored in `field`; empty when it can.
std::string ValueProblem(const TextField& field, const std::string& value) {
  if (value.size() > field.size) {
    return std::string(field.name) + " holds at most " + std::to_string(field.size) + " characters";
  }
  bool hex = std::all_of(value.begin(), value.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); });
  if (std::strcmp(field.name, "serial") == 0 && !hex) return "serial takes hexadecimal digits only (0-9, a-f, A-F)";
  return std::string();
}

// True when the device root is a folder standing in for a device, whose
// programs are the image's own and not the device's.
bool RootIsAnImage() {
  std::string root = GetDeviceRoot();
  return !root.empty() && root != "/";
}

struct SetOptions {
  bool mfgMode = false;
  bool trustImage = false;
  bool force = false;
};

// Why writing the record is refused before anything is written, and the exit
// status for it; empty when it may go ahead.
std::string WriteProblem(const Loaded& loaded, bool force, int* exitStatus) {
  *exitStatus = kCorrupt;
  char first[16] = "", second[16] = "";
  CMfgData::GetNorPartitionFilename(first, 0);
  CMfgData::GetNorPartitionFilename(second, 1);
  if (std::strcmp(first, second) == 0) {
    return std::string("/proc/mtd names one device, ") + first +
           ", for both MfgData0 and MfgData1; writing it twice would leave a single copy";
  }
  if (!loaded.copy0Unreadable.empty() && !force) {
    // Update writes the copy it did not load first: here that is copy 1,
    // the only valid one, and an interruption would leave none.
    *exitStatus = kIoError;
    return "copy 0, " + CopyName(0) + ", cannot be read (" + loaded.copy0Unreadable + "): writing would rewrite " +
           "the only valid copy, " + CopyName(1) + ", first; --force writes anyway";
  }
  if (loaded.source < 0 && !force) {
    return "no valid copy of the manufacturing record in " + CopyName(0) + " or " + CopyName(1) +
           ": writing would replace both with a record of zeros; --force writes anyway";
  }
  return std::string();
}

int RunSet(const std::string& name, const std::string& value, const SetOptions& options) {
  const TextField* field = nullptr;
  for (const TextField& candidate : kSettable) {
    if (name == candidate.name) field = &candidate;
  }
  if (field == nullptr) {
    std::fprintf(stderr, "vireline mfg set: no settable field '%s' (serial, locale, sku)\n", name.c_str());
    return kUsage;
  }
  std::string problem = ValueProblem(*field, value);
  if (!problem.empty()) {
    std::fprintf(stderr, "vireline mfg set: %s\n", problem.c_str());
    return kUsage;
  }
  if (!options.mfgMode) {
    std::fprintf(stderr, "vireline mfg set: writing the manufacturing record needs --mfg-mode\n");
    return kUsage;
  }
  if (RootIsAnImage() && !options.trustImage) {
    std::fprintf(stderr,
                 "vireline mfg set: --mfg-mode runs the image's own /usr/bin/mfgmode.sh as you; add --trust-image "
                 "only for an image from a source you trust\n");
    return kUsage;
  }
  CMfgData data;
  Loaded loaded;
  int status = Load(&data, "set", &loaded);
  if (status != kSuccess) return status;
  if (!(problem = WriteProblem(loaded, options.force, &status)).empty()) {
    std::fprintf(stderr, "vireline mfg set: %s\n", problem.c_str());
    return status;
  }
  if ((status = data.SetMfgMode(true)) != kMfgSuccess) return Fail("set", "cannot enter manufacturing mode", status);
  char padded[24] = {};  // the fixed-size fields are NUL-padded
  std::memcpy(padded, value.data(), value.size());
  if ((status = (data.*field->set)(padded)) != kMfgSuccess) return Fail("set", "cannot set the field", status);
  if ((status = data.Update()) != kMfgSuccess) return Fail("set", "cannot write the manufacturing record", status);
  std::printf("%s set; both copies written and verified\n", field->name);
  return kSuccess;
}

}  // namespace

void RegisterMfgCommand(CLI::App& program, Action* action) {
  auto* mfg = program.add_subcommand("mfg", "Show, verify or change the manufacturing record in flash");
  mfg->require_subcommand(1);
  auto* show = mfg->add_subcommand("show", "Print every field of the record and the state of both copies");
  show->callback([action] { *action = [] { return RunShow(); }; });
  auto* verify = mfg->add_subcommand("verify", "Check both copies; exit status 0 only when one is valid");
  verify->callback([action] { *action = [] { return RunVerify(); }; });

  static std::string field, value;  // must outlive the parse and the action
  static SetOptions options;
  auto* set = mfg->add_subcommand("set", "Change the serial number, locale or SKU and write both copies");
  set->add_option("FIELD", field, "serial (at most 20 characters), locale (8) or sku (11)")->required();
  set->add_option("VALUE", value, "The new value")->required();
  set->add_flag("--mfg-mode", options.mfgMode, "Enter manufacturing mode (/usr/bin/mfgmode.sh 2) to write the flash");
  set->add_flag("--trust-image", options.trustImage,
                "With --root other than /, let --mfg-mode run the image's own /usr/bin/mfgmode.sh as you: an image "
                "from elsewhere could run anything");
  set->add_flag("--force", options.force,
                "Write even when no copy is valid, replacing both with a record of zeros and the new field");
  set->callback([action] { *action = [] { return RunSet(field, value, options); }; });
}

}  // namespace tools
}  // namespace vireline
