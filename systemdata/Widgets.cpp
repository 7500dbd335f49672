// Hidden device packages that applications load by name (keyboard, previews).
#include <vireline/CSystemData.h>

#include <vireline/BaseUtils.h>
#include <vireline/CMetaInfo.h>

namespace {

// What the folder walk looks for and what it found.
struct WidgetInfo {
  CString name;
  CPath result;
};

unsigned char CheckWidget(const CPath& folder, void* context) {
  WidgetInfo* info = static_cast<WidgetInfo*>(context);
  BaseUtils* utils = BaseUtils::Instance();
  if (utils->HasDoomPackage(folder)) return 1;  // being removed
  if (!utils->FileExists(folder + "/meta.inf")) return 1;
  LTM::CMetaInfo meta(folder);
  // A missing "DeviceHidden" reads as 0xFFFFFFFF and so counts as hidden, as it always has.
  if (!meta.IsValid() || meta.GetTagInt("DeviceHidden") == 0 || meta.GetPackageName().raw() != info->name.raw()) return 1;
  info->result = folder + "/" + meta.GetAppSo();
  return 0;
}

}  // namespace

CPath CSystemData::FindWidget(CString name) {
  WidgetInfo info{name, CPath()};
  BaseUtils::Instance()->EnumFolder(mProgramFilesPath, CheckWidget, BaseUtils::kSelectDirectories, &info);
  return info.result;
}
