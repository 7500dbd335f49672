#include "files/DoomMarker.h"

#include "platform/Env.h"

namespace vireline {

const char kDoomMarkerName[] = "doom";

std::string DoomMarkerPath(const std::string& folder) {
  std::string marker = folder;
  if (marker.empty() || marker.back() != '/') marker += '/';
  return marker + kDoomMarkerName;
}

bool HasDoomMarker(const std::string& folder) { return PathExists(DoomMarkerPath(folder)); }

}  // namespace vireline
