// Shared by the CJSonFile tests: a device root, captured debug output with
// the data objects' module at level 2, and the texts of Load's messages.
#ifndef VIRELINE_TESTS_LTM_CJSONFILETEST_H_
#define VIRELINE_TESTS_LTM_CJSONFILETEST_H_

#include <string>

#include <vireline/CJSonFile.h>
#include <vireline/Platform.h>

#include "DeviceRootTest.h"

class CJSonFileTest : public DeviceRootTest {
 protected:
  static constexpr int kModule = 0x281;
  static constexpr unsigned kSaveFailed = 0x10001005;

  void SetUp() override {
    DeviceRootTest::SetUp();
    SetLevel(2);
    CaptureDebugOutput();
  }

  void TearDown() override {
    SetLevel(1);
    DeviceRootTest::TearDown();
  }

  static void SetLevel(int level) { PlatformDebug(kModule).SetDebugLevel(level); }

  // Load's message for `reason` on `path`.
  static std::string Message(const std::string& reason, const std::string& path) {
    return "CJSonFile::Load() failed to open (" + reason + ") mRsrcPath = " + path + "\n";
  }

  static std::string NoFile(const std::string& path) { return Message("filehandle was NULL", path); }
  static std::string ParseError(const std::string& path) { return Message("JSON parser reported an error", path); }
  static std::string ShortRead(const std::string& path) {
    return Message("buffer size does not match reported size", path);
  }
  static std::string NoMemory(const std::string& path) { return Message("could not allocate memory", path); }
};

#endif  // VIRELINE_TESTS_LTM_CJSONFILETEST_H_
