// The avatar packages a player may use, from the avatars folder.
#ifndef VIRELINE_CAVATARS_H_
#define VIRELINE_CAVATARS_H_

#include <vector>

#include <vireline/Export.h>
#include <vireline/Types.h>

namespace LTM {

class VIRELINE_EXPORT CAvatars {
 public:
  // Binds the avatars folder; asserts when the device has none.
  CAvatars();

  // Adds every usable avatar package that `player` may use to the list and
  // returns a copy of it. The list is not cleared first, so a second call
  // lists each package twice.
  std::vector<Glib::ustring> get(tPlayerID player);

  // Appends `path` to the list.
  void AddPath(const Glib::ustring& path);

 private:
  Glib::ustring mFolder;
  std::vector<Glib::ustring> mPaths;
  tPlayerID mPlayer;  // the last player asked for; 0xFFFFFFFF before
};

}  // namespace LTM

#endif  // VIRELINE_CAVATARS_H_
