// CMilestones: which named milestones (achievements) each player has reached.
// Each player of slots 0-2 has one JSON file whose root object holds a member
// `true` per milestone. The object keeps nothing itself: every call reads the
// file and, when it changes something, saves it. One instance per process,
// never destroyed.
#ifndef VIRELINE_CMILESTONES_H_
#define VIRELINE_CMILESTONES_H_

#include <vector>

#include <vireline/Export.h>
#include <vireline/Types.h>

class VIRELINE_EXPORT CMilestones {
 public:
  // The process-wide instance, created on first use.
  static CMilestones* Instance();

  // Records milestone `name` for the current player; false when it was
  // already reached or the file cannot be read (a failed save still answers true).
  bool Add(const CString& name);

  // Forgets milestone `name` of the current player; true only when it was
  // reached and the file was saved.
  bool Remove(const CString& name);

  // Deletes the current player's whole file; false only for a player outside slots 0-2.
  bool Remove();

  // The same as Remove().
  bool ClearAll();

  // Deletes `player`'s whole file; false only for a player outside slots 0-2.
  bool ClearAll(tPlayerID player);

  // The current player's milestones in byte-wise key order; never creates a file.
  std::vector<CString> Get();

  // `player`'s milestones in byte-wise key order; never creates a file.
  std::vector<CString> Get(tPlayerID player);

  // Those of `names`, in their order and with their repeats, that the current player has reached.
  std::vector<CString> GetMatch(const std::vector<CString>& names);

 private:
  CMilestones();
  CMilestones(const CMilestones&) = delete;
  CMilestones& operator=(const CMilestones&) = delete;

  static CMilestones* mpInstance;
};

#endif  // VIRELINE_CMILESTONES_H_
