// The base fixture: every test gets a new, empty device root of its own.
#ifndef VIRELINE_TESTS_DEVICEROOTTEST_H_
#define VIRELINE_TESTS_DEVICEROOTTEST_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

class DeviceRootTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // The host path of a device path inside this test's root.
  std::string Host(const std::string& devicePath) const;

  // Writes `content` to the device file `path`, creating its folders.
  void WriteFile(const std::string& path, const std::string& content) const;

  // The content of the device file `path`; empty when it is missing.
  std::string ReadFile(const std::string& path) const;

  // True when the device path exists.
  bool Exists(const std::string& path) const;

  // Creates the device folder `path` and its parents.
  void MakeDirs(const std::string& path) const;

  // The names in device folder `path`, sorted.
  std::vector<std::string> List(const std::string& path) const;

  // Starts collecting debug output instead of printing it.
  void CaptureDebugOutput();

  // Everything the debug output received since CaptureDebugOutput.
  std::string DebugOutput() const;

  std::string mRoot;
};

#endif  // VIRELINE_TESTS_DEVICEROOTTEST_H_
