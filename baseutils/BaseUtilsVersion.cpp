// Package version texts: their order, and the version a package's metadata states.
#include <vireline/BaseUtils.h>

#include <cstring>
#include <string>
#include <vector>

#include "baseutils/UpperLayers.h"

namespace {

const size_t kVersionTextSize = 64;
const char kVersionDelimiters[] = ".-_";
const char kNoVersion[] = "Not Available";

// Splits at most 63 bytes of `text` into tokens on any of ".-_"; runs of
// delimiters count as one.
std::vector<std::string> VersionTokens(const CString& text) {
  char buffer[kVersionTextSize] = {0};
  std::strncpy(buffer, text.c_str(), kVersionTextSize - 1);
  std::vector<std::string> tokens;
  char* save = nullptr;
  for (char* token = strtok_r(buffer, kVersionDelimiters, &save); token != nullptr;
       token = strtok_r(nullptr, kVersionDelimiters, &save)) {
    tokens.push_back(token);
  }
  return tokens;
}

}  // namespace

// Token by token: a longer token is newer, equal lengths compare byte-wise,
// and a version equals its own prefix, as the device firmware has always done.
int BaseUtils::CompareVersion(const CString& a, const CString& b) {
  std::vector<std::string> left = VersionTokens(a);
  std::vector<std::string> right = VersionTokens(b);
  for (size_t i = 0; i < left.size() && i < right.size(); ++i) {
    if (left[i].size() != right[i].size()) {
      return static_cast<int>(left[i].size()) - static_cast<int>(right[i].size());
    }
    int order = std::strcmp(left[i].c_str(), right[i].c_str());
    if (order != 0) return order;
  }
  return 0;
}

CString BaseUtils::ReadVersionFromMeta(const CPath& path) {
  return vireline::upper::ValidPackageVersion(path, kNoVersion);
}
