// Finding a player's CYO set without CCyo's writes (CCyo creates the progress
// folder when it finds a set and saves the progress file when it is
// destroyed), for tools that show a set and a player's progress read-only.
#ifndef VIRELINE_CYOSETS_H_
#define VIRELINE_CYOSETS_H_

#include <vireline/Export.h>
#include <vireline/Types.h>

namespace LTM {

// A CYO set as its meta.inf describes it.
struct tCyoSetInfo {
  CPath path;            // the set's folder, ending in "/"
  CString packageId;     // names the player's progress folder
  CString manifestFile;  // "ManifestFile", relative to path
};

// The set whose curriculum type is `wanted` that `player` may use, found by
// the same folder walk as CCyo's, opening no document and writing nothing;
// false when no set matches.
VIRELINE_EXPORT bool FindCyoSet(const CString& wanted, tPlayerID player, tCyoSetInfo* found);

// The file in which CCyo keeps `player`'s progress in set `packageId`.
VIRELINE_EXPORT CPath CyoProgressFile(tPlayerID player, const CString& packageId);

}  // namespace LTM

#endif  // VIRELINE_CYOSETS_H_
