#include <vireline/CAvatars.h>

#include <vireline/BaseUtils.h>

#include "baseutils/UpperLayers.h"
#include "ltm/ContentListMessages.h"
#include "ltm/PackageCandidate.h"

namespace LTM {
namespace {

const int kNoFolderLine = 2019;

struct AvatarWalk {
  CAvatars* list;
  tPlayerID player;
};

unsigned char AddAvatar(const CPath& folder, void* context) {
  const AvatarWalk* walk = static_cast<const AvatarWalk*>(context);
  ReportContentList("folder name while getting avatars is : %s \n", folder.c_str());
  CPackageCandidate package(folder);
  if (package.IsUsable() && package.Admits(walk->player)) walk->list->AddPath(folder);
  return 1;
}

}  // namespace

CAvatars::CAvatars() : mFolder(vireline::upper::AvatarsPath()), mPlayer(static_cast<tPlayerID>(0xFFFFFFFF)) {
  // The text speaks of MDLs: applications match on it as older firmware wrote it.
  if (!BaseUtils::Instance()->DirectoryExists(mFolder)) {
    BaseUtils::Instance()->Assert(false, "VirelineJSON/Src/LTM", kNoFolderLine, "MDLs not available for this profile");
  }
}

std::vector<Glib::ustring> CAvatars::get(tPlayerID player) {
  mPlayer = player;
  AvatarWalk walk{this, mPlayer};
  BaseUtils::Instance()->EnumFolder(mFolder, AddAvatar, BaseUtils::kSelectDirectories, &walk);
  return mPaths;
}

void CAvatars::AddPath(const Glib::ustring& path) { mPaths.push_back(path); }

}  // namespace LTM
