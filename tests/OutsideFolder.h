// A host folder beside a test's device root, for files the library must never
// reach from inside the image; removed with everything in it at the end.
#ifndef VIRELINE_TESTS_OUTSIDEFOLDER_H_
#define VIRELINE_TESTS_OUTSIDEFOLDER_H_

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

class OutsideFolder {
 public:
  // Creates a fresh folder in the host's temporary folder.
  OutsideFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vireline-outside-XXXXXX").string();
    if (mkdtemp(&pattern[0]) == nullptr) throw std::runtime_error("mkdtemp failed");
    mPath = pattern;
  }
  ~OutsideFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
  }
  OutsideFolder(const OutsideFolder&) = delete;
  OutsideFolder& operator=(const OutsideFolder&) = delete;

  // The folder's host path.
  const std::string& path() const { return mPath; }

  // Writes host file `name` in the folder; its host path.
  std::string Write(const std::string& name, const std::string& content) const {
    std::ofstream(mPath + "/" + name, std::ios::binary | std::ios::trunc) << content;
    return mPath + "/" + name;
  }

  // The content of host file `hostPath`; empty when it is missing.
  static std::string Content(const std::string& hostPath) {
    std::ifstream in(hostPath, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
  }

 private:
  std::string mPath;
};

#endif  // VIRELINE_TESTS_OUTSIDEFOLDER_H_
