// Shared by the system path tests: a device root with settings, a
// manufacturing record, a platform name and packages written on demand.
// CSystemData lives for the whole process, and every test runs in its own
// process, so each test makes it only after writing what it must see.
#ifndef VIRELINE_TESTS_SYSTEMDATA_SYSTEMDATATEST_H_
#define VIRELINE_TESTS_SYSTEMDATA_SYSTEMDATATEST_H_

#include <string>

#include <vireline/CSystemData.h>

#include "mfg/MfgDataTest.h"

class SystemDataTest : public DeviceRootTest {
 protected:
  // Where LTM::CSystem keeps the device settings.
  static constexpr const char* kSettings = "/QV/Bulk/settings.cfg";

  static CSystemData* Data() { return CSystemData::Instance(); }

  // Writes the settings with the locale (none when empty) and the current player.
  void WriteSettings(const std::string& locale, int player = 0) const {
    std::string text;
    if (!locale.empty()) text += "Locale=" + locale + "\n";
    char number[16];
    std::snprintf(number, sizeof number, "0x%08X", static_cast<unsigned>(player));
    text += std::string("CurrProfile=") + number + "\n";
    WriteFile(kSettings, text);
  }

  // Writes both manufacturing copies with `locale` in the 8-byte locale field.
  void WriteMfgLocale(const std::string& locale) const {
    WriteFile("/proc/mtd", mfgtest::kProcMtd);
    std::string record = mfgtest::SampleRecord();
    std::string field = locale;
    field.resize(8, '\0');
    mfgtest::PutBytes(&record, 104, field);
    record = mfgtest::Sealed(record);
    WriteFile(mfgtest::CopyPath(0), record);
    WriteFile(mfgtest::CopyPath(1), record);
  }

  // Names the platform, which decides the platform type.
  void WritePlatform(const std::string& name) const {
    WriteFile("/etc/vireline/platform.cfg", "Name=" + name + "\n");
  }

  // Writes a package's "meta.inf" into `folder` (ending in "/").
  void WriteMeta(const std::string& folder, const std::string& entries) const {
    WriteFile(folder + "meta.inf", entries);
  }

  // Creates an empty file, and its folders.
  void Touch(const std::string& path) const { WriteFile(path, ""); }
};

#endif  // VIRELINE_TESTS_SYSTEMDATA_SYSTEMDATATEST_H_
