// The locale and the folders of its language pack.
#include <vireline/CSystemData.h>

#include <cstring>
#include <string>

#include <vireline/CMfgData.h>
#include <vireline/CSystem.h>

#include "systemdata/SystemDataInternal.h"

namespace {

const char kDefaultLocale[] = "en-us";

// The record keeps 8 bytes; a locale is "ll-cc".
const size_t kMfgLocaleSize = 8;
const size_t kLocaleLength = 5;

// The locale in the manufacturing record, cut to 5 bytes; empty when unreadable.
CString MfgLocale() {
  char buffer[kMfgLocaleSize + 1] = {};
  CMfgData mfg;
  mfg.Init();
  mfg.GetLocale(buffer);
  mfg.Exit();
  return CString(std::string(buffer, strnlen(buffer, kLocaleLength)));
}

// "ll-cc" at least as far as the separator: a record written in the factory
// with "_" or nothing at all must not pick a language pack.
bool LooksLikeLocale(const CString& locale) {
  const std::string& bytes = locale.raw();
  return bytes.size() >= 3 && bytes[2] == '-';
}

}  // namespace

namespace vireline {
namespace systemdata {

CString LanguageOf(const CString& locale) { return locale.substr(0, 2); }

CString CountryOf(const CString& locale) { return locale.size() > 3 ? locale.substr(3, 2) : CString(); }

CPath LanguagePackFolder(const CPath& root, const CString& locale) {
  return root + "Bulk/LanguagePack_" + LanguageOf(locale) + "/";
}

}  // namespace systemdata

tDeviceLocale ReadDeviceLocale() {
  CString fromSettings = LTM::CSystem().GetLocale();
  if (!fromSettings.empty()) return {fromSettings, kLocaleFromSettings};
  systemdata::DebugOut(2, "CSystemData::GetLocaleCode unable to read from settings.cfg, using mfg_data\n");
  CString fromMfg = MfgLocale();
  if (LooksLikeLocale(fromMfg)) return {fromMfg, kLocaleFromMfgData};
  systemdata::DebugOut(2, "CSystemData::GetLocaleCode unable to read from mfg_data, using en-us\n");
  return {kDefaultLocale, kLocaleDefault};
}

const char* LocaleSourceName(tLocaleSource source) {
  switch (source) {
    case kLocaleFromSettings:
      return "settings";
    case kLocaleFromMfgData:
      return "manufacturing data";
    default:
      return "default";
  }
}

}  // namespace vireline

using vireline::systemdata::LanguagePackFolder;

CString CSystemData::GetLocaleCode() {
  if (!mLocaleCode.empty()) return mLocaleCode;
  vireline::tDeviceLocale locale = vireline::ReadDeviceLocale();
  // Only a locale the user chose is kept: a factory or default one must give
  // way as soon as the settings name a locale.
  if (locale.source == vireline::kLocaleFromSettings) SetLocaleCode(locale.code);
  return locale.code;
}

void CSystemData::SetLocaleCode(CString code) {
  if (code.empty()) {
    mLocaleCode.clear();
    code = GetLocaleCode();
  } else {
    mLocaleCode = code;
  }
  SetLocalizedFolders(code);
}

void CSystemData::SetLocalizedFolders(const CString& code) {
  mLanguagePackPath = LanguagePackFolder(mRootPath, code);
  mTutorialPath = mLanguagePackPath + "Tutorials/";
}

CPath CSystemData::GetLanguagePackPath() {
  if (!mLocaleCode.empty()) return mLanguagePackPath;
  return LanguagePackFolder(mRootPath, GetLocaleCode());
}

CPath CSystemData::GetBaseTutorialPath() {
  if (!mLocaleCode.empty()) return mTutorialPath;
  return LanguagePackFolder(mRootPath, GetLocaleCode()) + "Tutorials/";
}

CPath CSystemData::GetLocalizedAudioPath() {
  vireline::systemdata::WarnDeprecated("Quorvane::Orvo::CPath CSystemData::GetLocalizedAudioPath()");
  if (mLocaleCode.empty()) SetLocaleCode("");
  return mLanguagePackPath + "Audio/";
}

void CSystemData::SetLocalizedAudioPath(const CPath&) {}
