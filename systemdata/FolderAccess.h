// The folders of CSystemData read in place, without the copies its getters
// hand out: an asset lookup reads several of them on every call.
#ifndef VIRELINE_SYSTEMDATA_FOLDERACCESS_H_
#define VIRELINE_SYSTEMDATA_FOLDERACCESS_H_

#include <vireline/CSystemData.h>

namespace vireline {
namespace systemdata {

class FolderAccess {
 public:
  // As GetLocaleCode(): the locale, read from the device when not yet known
  // (then kept in *scratch, which the result may refer to).
  static const CString& LocaleCode(CSystemData* data, CString* scratch) {
    if (!data->mLocaleCode.empty()) return data->mLocaleCode;
    *scratch = data->GetLocaleCode();
    return *scratch;
  }

  // As GetRootPath().
  static const CPath& RootPath(const CSystemData* data) { return data->mRootPath; }

  // As GetBasePath().
  static const CPath& BasePath(const CSystemData* data) { return data->mBasePath; }

  // As GetCurrentTitlePath().
  static const CPath& CurrentTitlePath(const CSystemData* data) { return data->mCurrentTitlePath; }

  // As GetLanguagePackPath(false): the universal language pack.
  static const CPath& UniversalLanguagePack(const CSystemData* data) { return data->mUniversalLanguagePackPath; }
};

}  // namespace systemdata
}  // namespace vireline

#endif  // VIRELINE_SYSTEMDATA_FOLDERACCESS_H_
