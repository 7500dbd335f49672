// The running title: its folder, its identity, and the language it asks for.
#include <vireline/CSystemData.h>

#include <string>

#include <vireline/BaseUtils.h>
#include <vireline/CJSonFile.h>
#include <vireline/CMetaInfo.h>

#include "systemdata/SystemDataInternal.h"

using vireline::systemdata::CountryOf;
using vireline::systemdata::LanguageOf;

namespace {

// The title that lets a child choose the device's language; starting it
// always returns to the device's own locale.
const char kLanguageChooserPackageId[] = "KVR9-0x0017000C-000003";

// The game id a title path gives: for "/a/b/Game42/" the folder name Game42;
// false when the path holds no such folder name.
bool GameIdOf(const std::string& path, std::string* gameId) {
  size_t last = path.rfind('/');
  if (last == std::string::npos) return false;
  std::string remainder = path.substr(0, last);
  size_t previous = remainder.rfind('/');
  if (previous == std::string::npos) return false;
  *gameId = remainder.substr(previous + 1);
  return true;
}

// The country part a language pack's "CountryConversion.json" gives for
// `country` ("-us", "_CA", ...); false when the pack has no conversion for it.
bool ConvertedCountry(const CPath& file, const CString& country, CString* converted) {
  if (!BaseUtils::Instance()->FileExists(file)) return false;
  LTM::CJSonFile conversion(file, 0);
  conversion.Load();
  const LTM::Value& root = conversion.mRoot;
  if (!root.isObject() || !root.isMember(country) || !root[country].isString()) return false;
  *converted = root[country].asString();
  return true;
}

}  // namespace

void CSystemData::SetCurrentTitlePath(const CPath& path) {
  std::string gameId;
  if (GameIdOf(path.raw(), &gameId)) mCurrentGameID = gameId;
  mCurrentTitlePath = path;
  if (!BaseUtils::Instance()->FileExists(path + "meta.inf")) {
    mCurrentGameProductID = 0;
    mCurrentGamePackageID.clear();
    return;
  }
  LTM::CMetaInfo meta(path);
  mCurrentGameProductID = meta.GetProductId();
  mCurrentGamePackageID = meta.GetPackageId();
  if (mCurrentGamePackageID.raw() == kLanguageChooserPackageId) {
    SetLocaleCode("");
    return;
  }
  CString titleLocale = meta.GetTagString("Locale");
  if (titleLocale.empty()) return;
  CString titleLanguage = LanguageOf(titleLocale);
  CString current = GetLocaleCode();
  if (titleLanguage.raw() == LanguageOf(current).raw()) return;
  // The title's language in the device's country, spelt the way that language's pack knows it.
  CString country = CountryOf(current);
  CString converted;
  CPath conversionFile =
      vireline::systemdata::LanguagePackFolder(mRootPath, titleLanguage) + "Data/CountryConversion.json";
  if (ConvertedCountry(conversionFile, country, &converted)) {
    SetLocaleCode(titleLanguage + converted);
  } else {
    SetLocaleCode(titleLanguage + "-" + country);
  }
}
