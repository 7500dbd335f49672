// The installed applications: every folder in the application package folder
// and in the cartridge folder, as the launcher lists them.
#ifndef VIRELINE_CAPPS_H_
#define VIRELINE_CAPPS_H_

#include <vector>

#include <vireline/Export.h>
#include <vireline/Types.h>

namespace LTM {

class VIRELINE_EXPORT CApps {
 public:
  // An empty list.
  CApps();

  // Adds every application and cartridge folder to the list and returns a
  // copy of it. The list is not cleared first: a second call lists each
  // folder twice, which callers that keep one object per screen rely on.
  std::vector<Glib::ustring> get();

  // Appends `path` to the list.
  void AddPath(const Glib::ustring& path);

 private:
  Glib::ustring mReserved1;  // kept empty
  Glib::ustring mReserved2;  // kept empty
  std::vector<Glib::ustring> mPaths;
};

}  // namespace LTM

#endif  // VIRELINE_CAPPS_H_
