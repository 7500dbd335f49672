// The dependency check of a package: which packages named in its "Depends"
// list, and which base language pack of the platform, are missing, withdrawn
// or older than wanted, each of which is requested from the desktop connect
// application.
#include <vireline/CMetaInfo.h>

#include <memory>
#include <vector>

#include <vireline/BaseUtils.h>
#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "baseutils/UpperLayers.h"
#include "ltm/CartDependencyTables.h"
#include "ltm/StreamExtraction.h"
#include "platform/BufferedReader.h"
#include "platform/Env.h"

namespace LTM {
namespace {

const int kFileErrorLevel = 2;

const char kKeyDepends[] = "Depends";
const char kZantoDeviceType[] = "Zanto";
const char kVersionFile[] = "/etc/version";
const size_t kVersionWordLimit = 255;  // far longer than any firmware version

U32 Request(const Glib::ustring& id, const Glib::ustring& version, U32 requestBit) {
  BaseUtils::Instance()->RequestPackageQVC(id, version);
  return requestBit;
}

// The installed firmware's version: the first word of "/etc/version"; empty
// when the file cannot be read or holds no word.
Glib::ustring InstalledFirmwareVersion() {
  std::unique_ptr<vireline::SequentialFile> file;
  if (!vireline::Env::Current()->NewSequentialFile(kVersionFile, &file).ok()) return Glib::ustring();
  vireline::BufferedReader reader(file.get(), 4096);
  return Glib::ustring(vireline::ExtractWord(&reader, kVersionWordLimit));
}

// A device that cannot tell its firmware version is treated as outdated, so
// the wanted firmware is requested rather than silently assumed present.
U32 CheckFirmware(const Glib::ustring& id, const Glib::ustring& version) {
  Glib::ustring installed = InstalledFirmwareVersion();
  if (installed.empty() || BaseUtils::Instance()->CompareVersion(version, installed) > 0) {
    return Request(id, version, CMetaInfo::kRequestedApplication);
  }
  return 0;
}

// True when dependency `id` names a language pack; the shared stem is then
// replaced in `id` by the running platform's own.
bool IsLanguagePack(const tPlatformPackages& platform, Glib::ustring* id) {
  Glib::ustring::size_type at = id->find(kSharedLanguagePackStem);
  if (at != Glib::ustring::npos) {
    if (*platform.languagePackStem != '\0') {
      id->replace(at, Glib::ustring(kSharedLanguagePackStem).size(), platform.languagePackStem);
    }
    return true;
  }
  for (const char* stem : kOwnLanguagePackStems) {
    if (id->find(stem) != Glib::ustring::npos) return true;
  }
  return false;
}

U32 CheckLanguagePack(const Glib::ustring& id, const Glib::ustring& version) {
  tLanguagePackInfo want{id, version, false};
  BaseUtils::Instance()->EnumFolder(vireline::upper::RootPath() + "Bulk", CheckLanguagePacks,
                                    BaseUtils::kSelectDirectories, &want);
  return want.found ? 0 : Request(id, version, CMetaInfo::kRequestedLanguagePack);
}

// An application or widget: wanted again when its folder is missing or
// withdrawn, or when the installed version is older.
U32 CheckPackage(const Glib::ustring& id, const Glib::ustring& version) {
  Glib::ustring folder = vireline::upper::RootPath() + PackageFolder(id);
  if (!BaseUtils::Instance()->FileIsDir(folder) || BaseUtils::Instance()->HasDoomPackage(folder)) {
    return Request(id, version, CMetaInfo::kRequestedApplication);
  }
  CMetaInfo installed(folder);
  if (BaseUtils::Instance()->CompareVersion(version, installed.GetPackageVersion()) > 0) {
    return Request(id, version, CMetaInfo::kRequestedApplication);
  }
  return 0;
}

}  // namespace

U32 CMetaInfo::CheckCartDependencies() const {
  if (GetDeviceType() == kZantoDeviceType) return 0;
  std::vector<Glib::ustring> depends = GetTagStringList(kKeyDepends);
  const tPlatformPackages& platform = PlatformPackages(BaseUtils::Instance()->GetPlatformType());
  U32 result = 0;
  bool sawLanguagePack = false;
  for (size_t i = 0; i < depends.size(); i += 2) {
    if (i + 1 == depends.size()) {
      PlatformDebug(vireline::kDataObjectsDebugModule).DebugOut(kFileErrorLevel, "Missing Version for Depends %s\n",
                                                 depends[i].c_str());
      break;
    }
    Glib::ustring id = depends[i];
    const Glib::ustring& version = depends[i + 1];
    if (*platform.firmwareId != '\0' && id == platform.firmwareId) {
      result |= CheckFirmware(id, version);
    } else if (IsLanguagePack(platform, &id)) {
      result |= CheckLanguagePack(id, version);
      sawLanguagePack = true;
    } else {
      result |= CheckPackage(id, version);
    }
  }
  // Every application needs its platform's base language pack.
  if (!sawLanguagePack) {
    result |= CheckLanguagePack(Glib::ustring(platform.languagePackStem) + kDefaultLanguagePackSuffix,
                                platform.defaultLanguageVersion);
  }
  return result;
}

unsigned char CheckLanguagePacks(const Glib::ustring& folder, void* info) {
  tLanguagePackInfo* want = static_cast<tLanguagePackInfo*>(info);
  if (folder.find("LanguagePack") == Glib::ustring::npos && folder.find("BookPack") == Glib::ustring::npos) {
    return 1;
  }
  if (BaseUtils::Instance()->HasDoomPackage(folder + "/")) return 1;
  CMetaInfo installed(folder);
  if (installed.GetPackageId() != want->packageId) return 1;
  // The first pack with the wanted id decides, whether or not its version suffices.
  if (BaseUtils::Instance()->CompareVersion(want->version, installed.GetPackageVersion()) < 1) want->found = true;
  return 0;
}

}  // namespace LTM
