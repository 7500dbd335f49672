#include "DeviceRootTest.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <algorithm>

#include <vireline/Platform.h>

#include "platform/Env.h"

namespace fs = std::filesystem;

namespace {

std::string gDebugOutput;

void CollectDebugOutput(int, int, const char* text) { gDebugOutput += text; }

}  // namespace

void DeviceRootTest::SetUp() {
  std::string pattern = (fs::temp_directory_path() / "vireline-test-XXXXXX").string();
  ASSERT_NE(mkdtemp(&pattern[0]), nullptr);
  mRoot = pattern;
  vireline::SetDeviceRoot(mRoot);
  vireline::Env::SetCurrent(nullptr);
}

void DeviceRootTest::TearDown() {
  PlatformDebug::SetOutputFunction(nullptr);
  vireline::Env::SetCurrent(nullptr);
  std::error_code ignored;
  fs::permissions(mRoot, fs::perms::owner_all, fs::perm_options::add, ignored);
  fs::remove_all(mRoot, ignored);
}

std::string DeviceRootTest::Host(const std::string& devicePath) const { return mRoot + devicePath; }

void DeviceRootTest::WriteFile(const std::string& path, const std::string& content) const {
  fs::create_directories(fs::path(Host(path)).parent_path());
  std::ofstream out(Host(path), std::ios::binary | std::ios::trunc);
  out << content;
  ASSERT_TRUE(out.good()) << path;
}

std::string DeviceRootTest::ReadFile(const std::string& path) const {
  std::ifstream in(Host(path), std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

bool DeviceRootTest::Exists(const std::string& path) const {
  std::error_code ignored;
  return fs::exists(fs::symlink_status(Host(path), ignored));
}

void DeviceRootTest::MakeDirs(const std::string& path) const { fs::create_directories(Host(path)); }

std::vector<std::string> DeviceRootTest::List(const std::string& path) const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(Host(path))) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

void DeviceRootTest::CaptureDebugOutput() {
  gDebugOutput.clear();
  PlatformDebug::SetOutputFunction(CollectDebugOutput);
}

std::string DeviceRootTest::DebugOutput() const { return gDebugOutput; }
