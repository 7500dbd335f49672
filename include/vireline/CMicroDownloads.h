// The micro-download packages (MDLs) of the running game that a player may
// use; on the first model, the list its "mdls.json" names.
#ifndef VIRELINE_CMICRODOWNLOADS_H_
#define VIRELINE_CMICRODOWNLOADS_H_

#include <vector>

#include <vireline/Export.h>
#include <vireline/Types.h>

namespace LTM {

class VIRELINE_EXPORT CMicroDownloads {
 public:
  // Binds the micro-download folder for the running game.
  CMicroDownloads();

  // Binds the micro-download folder for game `gameId`.
  explicit CMicroDownloads(Glib::ustring gameId);

  // Replaces the list with the running game's micro-downloads that `player`
  // may use, and returns a copy of it.
  std::vector<Glib::ustring> get(tPlayerID player);

  // Appends `path` to the list.
  void AddPath(const Glib::ustring& path);

 private:
  Glib::ustring mFolder;
  std::vector<Glib::ustring> mPaths;
  tPlayerID mPlayer;          // the last player asked for; 4 before
  Glib::ustring mGamePrefix;  // game id + "_"; kept for callers, not used to filter
};

}  // namespace LTM

#endif  // VIRELINE_CMICRODOWNLOADS_H_
