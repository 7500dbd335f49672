// The "doom" marker: an empty file named "doom" inside a package folder (or
// at a volume's root) saying that the content is withdrawn and must be
// treated as gone. Every layer that tests for one asks here.
#ifndef VIRELINE_FILES_DOOMMARKER_H_
#define VIRELINE_FILES_DOOMMARKER_H_

#include <string>

namespace vireline {

// The marker file's name.
extern const char kDoomMarkerName[];

// The marker path of `folder`: a "/" is added unless the folder ends in one.
std::string DoomMarkerPath(const std::string& folder);

// True when anything exists at DoomMarkerPath(folder).
bool HasDoomMarker(const std::string& folder);

}  // namespace vireline

#endif  // VIRELINE_FILES_DOOMMARKER_H_
