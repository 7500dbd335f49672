#include <vireline/CApps.h>

#include <vireline/BaseUtils.h>

#include "baseutils/UpperLayers.h"
#include "ltm/ContentListMessages.h"

namespace LTM {
namespace {

unsigned char AddApp(const CPath& folder, void* context) {
  ReportContentList("folder name while getting apps is : %s \n", folder.c_str());
  static_cast<CApps*>(context)->AddPath(folder);
  return 1;
}

}  // namespace

CApps::CApps() {}

std::vector<Glib::ustring> CApps::get() {
  BaseUtils* utils = BaseUtils::Instance();
  utils->EnumFolder(vireline::upper::ProgramFilesPath(), AddApp, BaseUtils::kSelectDirectories, this);
  utils->EnumFolder(vireline::upper::CartPath(), AddApp, BaseUtils::kSelectDirectories, this);
  return mPaths;
}

void CApps::AddPath(const Glib::ustring& path) { mPaths.push_back(path); }

}  // namespace LTM
