// Platform identity on Linux: the device image names itself in
// "/etc/vireline/platform.cfg", lines of Key=Value with the keys Name, ID and
// TouchScreen. A missing file or key means an unknown platform.
#include <cstdlib>
#include <map>
#include <memory>
#include <string>

#include <vireline/Platform.h>

#include "platform/BufferedReader.h"
#include "platform/Env.h"

namespace {

const char kIdentityFile[] = "/etc/vireline/platform.cfg";

std::string Trim(const std::string& text) {
  const char* blanks = " \t\r\n";
  size_t first = text.find_first_not_of(blanks);
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::map<std::string, std::string> ReadIdentity() {
  std::map<std::string, std::string> values;
  std::unique_ptr<vireline::SequentialFile> file;
  if (!vireline::Env::Current()->NewSequentialFile(kIdentityFile, &file).ok()) return values;
  vireline::BufferedReader reader(file.get(), 4096);
  std::string text;
  while (reader.ReadLine(&text, 511)) {  // pieces of a line buffer of 512, as always
    size_t equals = text.find('=');
    if (equals != std::string::npos) values[Trim(text.substr(0, equals))] = Trim(text.substr(equals + 1));
  }
  return values;
}

std::string Lookup(const std::string& key) {
  std::map<std::string, std::string> values = ReadIdentity();
  auto found = values.find(key);
  return found == values.end() ? std::string() : found->second;
}

}  // namespace

int PlatformIdentity::GetPlatformID() {
  return static_cast<int>(std::strtol(Lookup("ID").c_str(), nullptr, 0));
}

CString PlatformIdentity::GetPlatformName() { return Lookup("Name"); }

bool PlatformIdentity::HasPlatformCapability(int capability) {
  if (capability != kPlatformCapabilityTouchScreen) return false;
  std::string value = Lookup("TouchScreen");
  return value == "1" || value == "yes" || value == "true";
}
