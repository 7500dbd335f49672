// The asset lookups of CSystemData (FindArt, FindAudio, ...) with every
// candidate path put to the caller, so a tool can show which paths a title's
// lookup tries, in order, and which one it takes. CSystemData's Find*
// operations run this same lookup with OpensForReading as the probe.
#ifndef VIRELINE_ASSETLOOKUP_H_
#define VIRELINE_ASSETLOOKUP_H_

#include <functional>

#include <vireline/CSystemData.h>
#include <vireline/Export.h>
#include <vireline/Types.h>

namespace vireline {

// Which Find* operation a lookup runs.
enum class tAssetKind { kArt, kAudio, kVideo, kFont, kBookAudio };

// Answers whether one candidate path is the asset; the first true ends the lookup.
typedef std::function<bool(const CPath& path)> tAssetProbe;

// True when `path` opens for reading; the file is closed again at once.
VIRELINE_EXPORT bool OpensForReading(const CPath& path);

// Looks `name` up as the Find* operation of `kind` does: its trace, its
// candidates in order (each put to `probe`), then its not-found message and
// its placeholder. The path accepted, or empty.
VIRELINE_EXPORT CPath LookUpAsset(CSystemData* data, tAssetKind kind, const CPath& name, const tAssetProbe& probe);

}  // namespace vireline

#endif  // VIRELINE_ASSETLOOKUP_H_
