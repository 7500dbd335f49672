// The one implementation of the asset lookups. CSystemData's Find* operations
// and the inspector's explanation both run it, so the order in which folders
// are tried can only ever be stated once.
#ifndef VIRELINE_SYSTEMDATA_ASSETLOOKUP_H_
#define VIRELINE_SYSTEMDATA_ASSETLOOKUP_H_

#include <functional>

#include <vireline/CSystemData.h>

namespace vireline {
namespace systemdata {

enum class AssetKind { kArt, kAudio, kVideo, kFont, kBookAudio };

// Answers whether one candidate path is the asset; the first true ends the lookup.
typedef std::function<bool(const CPath& path)> CandidateProbe;

// True when `path` opens for reading; the file is closed again at once.
bool OpensForReading(const CPath& path);

// Looks `name` up as the Find* operation of `kind` does: its trace, its
// candidates in order (each put to `probe`), then its not-found message and
// its placeholder. The path accepted, or empty.
CPath LookUpAsset(CSystemData* data, AssetKind kind, const CPath& name, const CandidateProbe& probe);

}  // namespace systemdata
}  // namespace vireline

#endif  // VIRELINE_SYSTEMDATA_ASSETLOOKUP_H_
