// The string and file helpers beside the dataset loader.
#include <vireline/Dataset.h>

#include "platform/Env.h"

uint32_t FileSize(const std::string& path) {
  // Paths built by desktop tools may end in a Windows separator.
  vireline::FileInfo info;
  if (!vireline::Env::Current()->Stat(StripTrailing(path, "\\"), &info).ok()) return 0;
  return static_cast<uint32_t>(info.size);
}

std::string GetFileExtension(const std::string& path) {
  std::string::size_type dot = path.rfind('.');
  return dot == std::string::npos ? std::string() : path.substr(dot + 1);
}

std::string StripTrailing(const std::string& text, const std::string& characters) {
  std::string::size_type end = text.size();
  while (end > 0 && characters.find(text[end - 1]) != std::string::npos) --end;
  return text.substr(0, end);
}
