// The tests the CYO folder walk applies to each folder, shared by CCyo and by
// LTM::FindCyoSet (<vireline/CyoSets.h>), which finds the same set without
// CCyo's writes (CCyo creates the progress folder when it finds a set and
// saves the progress file when it is destroyed).
#ifndef VIRELINE_LTM_CYOSEARCH_H_
#define VIRELINE_LTM_CYOSEARCH_H_

#include <vireline/CCyo.h>
#include <vireline/CyoSets.h>
#include <vireline/Types.h>

namespace vireline {
namespace cyo {

// What every status reader answers when there is no document to read.
const LTM::tCyoStatus kUnknownStatus = 2;

// Writing item n's status makes the document's "ItemList" hold n + 1
// entries. No set holds this many items; a larger index is refused rather
// than growing the document until memory runs out (near 0xFFFFFFFF the
// element count would even wrap).
const U32 kMaxItems = 10000;

// The progress file's name inside the player's folder of a set.
extern const char kProgressFile[];

// A matching set.
typedef LTM::tCyoSetInfo FoundSet;

// What the walk does with one folder.
enum Verdict { kEndSearch, kNextFolder, kMatch };

// True when `folder` may hold a set: a meta.inf, no doom marker, and the
// first model's layout not in use. Any other folder ends the whole walk, even
// though a later one might match: older firmware searched this way, and the
// sets a device shows must not change with an update.
bool FolderMayHoldSet(const CPath& folder);

// The curriculum name a search for `type` wants; false for a type without a
// name (kCyoByName and anything past it).
bool TypeName(LTM::tCyoCurricType type, CString* name);

// kMatch (with *found filled) when `folder` holds a valid set whose
// "CurriculumType" is exactly `wanted` and which `player` may use;
// kNextFolder otherwise. The folder tests run again first.
Verdict JudgeFolder(const CPath& folder, const CString& wanted, tPlayerID player, FoundSet* found);

// The folder of `player`'s progress in set `packageId`, ending in "/".
CPath ProgressFolder(tPlayerID player, const CString& packageId);

// Walks the CYO folder as CCyo does, opening no document and writing
// nothing; false when no set matches.
bool FindSet(const CString& wanted, tPlayerID player, FoundSet* found);

}  // namespace cyo
}  // namespace vireline

#endif  // VIRELINE_LTM_CYOSEARCH_H_
