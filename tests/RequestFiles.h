// Reads back the request files left for the desktop connect application, so
// tests can check what was requested by what is on the device afterwards.
#ifndef VIRELINE_TESTS_REQUESTFILES_H_
#define VIRELINE_TESTS_REQUESTFILES_H_

#include <algorithm>
#include <string>
#include <vector>

#include <vireline/CFileIO.h>

#include "platform/Env.h"

// The "AddToDevice" request files in device folder `folder`, each as
// "<package id> <version>", sorted by name.
inline std::vector<std::string> PackageRequestsIn(const std::string& folder) {
  std::vector<std::string> names;
  vireline::Env::Current()->ListDir(folder, &names);
  std::sort(names.begin(), names.end());
  std::vector<std::string> requests;
  for (const std::string& name : names) {
    if (name.size() < 4 || name.compare(name.size() - 4, 4, ".txt") != 0) continue;
    CFileIO file;
    file.Open((folder + name).c_str());
    const char* command = file.GetStr("Command");
    if (command == nullptr || std::string(command) != "AddToDevice") continue;
    const char* version = file.GetStr("Version");
    requests.push_back(name.substr(0, name.size() - 4) + " " + (version != nullptr ? version : ""));
  }
  return requests;
}

#endif  // VIRELINE_TESTS_REQUESTFILES_H_
