#include <vireline/CMicroDownloads.h>

#include <vireline/BaseUtils.h>
#include <vireline/CJSonFile.h>

#include "baseutils/UpperLayers.h"
#include "ltm/ContentListMessages.h"
#include "ltm/PackageCandidate.h"

namespace LTM {
namespace {

const char kMicroDownloadType[] = "MicroDownload";
const char kLegacyListName[] = "mdls.json";

struct MicroDownloadWalk {
  CMicroDownloads* list;
  tPlayerID player;
};

unsigned char AddMicroDownload(const CPath& folder, void* context) {
  const MicroDownloadWalk* walk = static_cast<const MicroDownloadWalk*>(context);
  CPackageCandidate package(folder);
  if (package.IsUsable() && package.HasType(kMicroDownloadType) && package.IsForRunningGame() &&
      package.Admits(walk->player)) {
    walk->list->AddPath(folder);
  }
  return 1;
}


}  // namespace

CMicroDownloads::CMicroDownloads()
    : mFolder(vireline::upper::MDLsPath()), mPlayer(4), mGamePrefix(vireline::upper::CurrentGameID() + "_") {}

CMicroDownloads::CMicroDownloads(Glib::ustring gameId)
    : mFolder(vireline::upper::MDLsPath()), mPlayer(4), mGamePrefix(gameId + "_") {}

std::vector<Glib::ustring> CMicroDownloads::get(tPlayerID player) {
  mPlayer = player;
  mPaths.clear();
  if (!vireline::upper::ZantoLegacyFlag()) {
    MicroDownloadWalk walk{this, mPlayer};
    BaseUtils::Instance()->EnumFolder(mFolder, AddMicroDownload, BaseUtils::kSelectDirectories, &walk);
    return mPaths;
  }
  // The first model lists its micro-downloads per game in one JSON file
  // instead of describing each package.
  Glib::ustring path = mFolder + kLegacyListName;
  CJSonFile list(path, 0);
  if (list.Load() != 0) {
    ReportContentList("Failed to load JSON file: %s\n", path.c_str());
    return mPaths;
  }
  Glib::ustring key = vireline::upper::CurrentGameID().uppercase();
  const Value& root = list.mRoot;
  if (!root.isObject()) {
    ReportContentList("ERROR: The JSON file is not in the expected format: %s\n", path.c_str());
    return mPaths;
  }
  if (!root.isMember(key)) {
    ReportContentList("ERROR: No key named \"%s\" in the json file: %s\n", key.c_str(),
                  path.c_str());
    return mPaths;
  }
  const Value& names = root[key];
  if (!names.isArray()) {
    // A game's entry that is not a list of folder names names no folder.
    ReportContentList("ERROR: The JSON file is not in the expected format: %s\n", path.c_str());
    return mPaths;
  }
  for (ArrayIndex i = 0; i < names.size(); ++i) {
    if (names[i].isString()) AddPath(mFolder + names[i].asString());
  }
  return mPaths;
}

void CMicroDownloads::AddPath(const Glib::ustring& path) { mPaths.push_back(path); }

}  // namespace LTM
