// The list of installed language packs, read from each pack's
// "Data/SelectLanguage.json" below the system package folder. BaseUtils hands
// it out; it is read here, beside the other path logic, because reading it
// needs the JSON file class of the data objects.
#include <vireline/BaseUtils.h>

#include <vireline/CJSonFile.h>
#include <vireline/CSystemData.h>

#include "systemdata/SystemDataInternal.h"

bool gFoundFirstLanguage = false;
CString gFirstLanguage;

namespace {

std::vector<CString> StringList(const LTM::Value& array) {
  std::vector<CString> strings;
  for (LTM::ArrayIndex i = 0; i < array.size(); ++i) strings.push_back(array[i].asString());
  return strings;
}

FlagInfo ReadFlag(const LTM::Value& flag) {
  FlagInfo info;
  info.localeCode = flag["LocaleCode"].asString();
  info.art = flag["Art"].asString();
  info.audio = flag["Audio"].asString();
  return info;
}

LanguageInfo ReadLanguage(const LTM::Value& root) {
  LanguageInfo info;
  info.selectionText = root["LanguageSelectionText"].asString();
  info.selectionAudio = StringList(root["LanguageSelectionAudio"]);
  info.settingText = root["LanguageSettingText"].asString();
  info.settingAudio = StringList(root["LanguageSettingAudio"]);
  const LTM::Value& flags = root["Flags"];
  for (LTM::ArrayIndex i = 0; i < flags.size(); ++i) info.flags.push_back(ReadFlag(flags[i]));
  info.saveText = root["SaveText"].asString();
  return info;
}

// A pack without flags cannot be the device locale's pack.
bool IsFirstLanguage(const LanguageInfo& info) {
  return !info.flags.empty() && info.flags[0].localeCode.substr(0, 2) == gFirstLanguage;
}

// The device locale's pack goes to the front; the pack it displaces moves to the end.
void AddLanguage(const LanguageInfo& info, std::vector<LanguageInfo>* list) {
  if (gFoundFirstLanguage || !IsFirstLanguage(info) || list->empty()) {
    if (!gFoundFirstLanguage && IsFirstLanguage(info)) gFoundFirstLanguage = true;
    list->push_back(info);
    return;
  }
  gFoundFirstLanguage = true;
  list->push_back(list->front());
  list->front() = info;
}

unsigned char AddLanguagePack(const CPath& folder, void* context) {
  BaseUtils* utils = BaseUtils::Instance();
  CPath document = folder + "/Data/SelectLanguage.json";
  if (utils->HasDoomPackage(folder) || !utils->FileExists(document)) return 1;
  LTM::CJSonFile file(document, 0);
  if (file.Load() != 0) return 1;
  AddLanguage(ReadLanguage(file.mRoot), static_cast<std::vector<LanguageInfo>*>(context));
  return 1;
}

}  // namespace

namespace vireline {
namespace systemdata {

std::vector<LanguageInfo> InstalledLanguages() {
  gFoundFirstLanguage = false;
  gFirstLanguage = CSystemData::Instance()->GetLocaleCode().substr(0, 2);
  std::vector<LanguageInfo> list;
  BaseUtils::Instance()->EnumFolder(CSystemData::Instance()->GetBasePath(), AddLanguagePack,
                                    BaseUtils::kSelectDirectories, &list);
  return list;
}

}  // namespace systemdata
}  // namespace vireline
