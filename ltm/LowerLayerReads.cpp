#include "ltm/LowerLayerReads.h"

#include <vireline/CJSonFile.h>
#include <vireline/CMetaInfo.h>

namespace vireline {
namespace ltm {

CString ValidPackageVersion(const CPath& folder, const char* missing) {
  LTM::CMetaInfo meta(folder);
  return meta.IsValid() ? meta.GetPackageVersion() : CString(missing);
}

bool ReadTextList(const CPath& path, const char* member, std::vector<CString>* texts) {
  LTM::CJSonFile document(path, 0);
  if (document.Load() != 0) return false;
  const LTM::Value& root = document.mRoot;
  if (!root.isObject() || !root.isMember(member)) return false;
  const LTM::Value& list = root[member];
  for (LTM::ArrayIndex i = 0; list.isArray() && i < list.size(); ++i) {
    if (list[i].isString()) texts->push_back(list[i].asString());
  }
  return true;
}

}  // namespace ltm
}  // namespace vireline
