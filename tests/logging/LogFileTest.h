// A fixture for the log file manager: the platform named in the device's
// identity file, the players' log files in the default layout, and the
// manager destroyed after each test.
#ifndef VIRELINE_TESTS_LOGGING_LOGFILETEST_H_
#define VIRELINE_TESTS_LOGGING_LOGFILETEST_H_

#include <stdlib.h>

#include <ctime>
#include <string>

#include <vireline/CLogFile.h>
#include <vireline/CLogHeader.h>
#include <vireline/Platform.h>

#include "tests/logging/LogTest.h"

class LogFileTest : public LogTest {
 protected:
  void SetUp() override {
    LogTest::SetUp();
    // Local time is broken down in UTC whatever the machine's zone.
    setenv("TZ", "UTC", 1);
    tzset();
    PlatformDebug(0x281).SetDebugLevel(3);
  }

  void TearDown() override {
    CLogFile::Destroy();
    LogTest::TearDown();
  }

  // The device path of slot `slot`'s log.
  static std::string SlotPath(int slot) {
    return "/QV/Bulk/Data/Uploads/" + std::to_string(slot) + "/profile.log";
  }

  // Names the platform, which decides the platform type.
  void WritePlatform(const std::string& name) const {
    WriteFile("/etc/vireline/platform.cfg", "Name=" + name + "\n");
  }

  // A header as a device of platform code `platform` writes it for `slot`.
  static std::string HeaderBytes(unsigned short platform, int slot,
                                 const char* serial = "00000000000000000000") {
    CLogHeader header;
    header.SetPlatform(platform);
    header.SetDeviceSerialNum(serial);
    header.SetLogNum(static_cast<unsigned char>(slot));
    return std::string(reinterpret_cast<const char*>(header.GetBytes()), CLogHeader::kSize);
  }

  // Slot files holding a valid header padded with zeros to `sizes` bytes.
  void WriteSlotFiles(size_t size0, size_t size1, size_t size2) const {
    const size_t sizes[] = {size0, size1, size2};
    for (int slot = 0; slot < 3; ++slot) {
      std::string content = HeaderBytes(10, slot);
      content.resize(sizes[slot], '\0');
      WriteFile(SlotPath(slot), content);
    }
  }

  static CLogFile* Log() { return CLogFile::Instance(); }
};

#endif  // VIRELINE_TESTS_LOGGING_LOGFILETEST_H_
