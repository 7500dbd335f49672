// Calls from the lower layers into the layers above them: each one forwards
// to the service that answers it, so the lower layers never name those
// services themselves.
#include "baseutils/UpperLayers.h"

#include <vireline/BaseUtils.h>
#include <vireline/CPlayerProfile.h>
#include <vireline/CLogFile.h>
#include <vireline/CMetaInfo.h>
#include <vireline/CSystem.h>
#include <vireline/CSystemData.h>
#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "logging/LogFilePreparation.h"
#include "logging/LogRequests.h"
#include "ltm/LowerLayerReads.h"
#include "systemdata/SystemDataInternal.h"

namespace vireline {
namespace upper {

void AppendCriticalError(const char* message) { logging::AppendCriticalError(message); }

void ConsultSettingsAfterAssert() { LTM::CSystem().AreCheatsEnabled(); }

CString LocaleCode() { return CSystemData::Instance()->GetLocaleCode(); }

void SetLocaleCode(const CString& code) { CSystemData::Instance()->SetLocaleCode(code); }

CPath RootPath() { return CSystemData::Instance()->GetRootPath(); }

CPath BasePath() { return CSystemData::Instance()->GetBasePath(); }

CPath DataPath() { return systemdata::DataPath(); }

CPath CYOsPath() { return CSystemData::Instance()->GetCYOsPath(); }

CPath DataProfilePath(tPlayerID player) { return CSystemData::Instance()->GetDataProfilePath(player); }

bool ZantoLegacyFlag() { return CSystemData::Instance()->GetZantoLegacyFlag(); }

CString PlayerProfileName(int slot) { return LTM::CPlayerProfile(slot).GetName(); }

CPath ProgramFilesPath() { return CSystemData::Instance()->GetProgramFilesPath(); }

CPath CartPath() { return CSystemData::Instance()->GetCartPath(); }

CPath AvatarsPath() { return CSystemData::Instance()->GetAvatarsPath(); }

CPath MDLsPath() { return CSystemData::Instance()->GetMDLsPath(); }

CString CurrentGameID() { return CSystemData::Instance()->GetCurrentGameID(); }

U32 CurrentGameProductID() { return CSystemData::Instance()->GetCurrentGameProductID(); }

CPath ManageInventoryPath() { return CSystemData::Instance()->GetManageInventoryPath(); }

tPlayerID CurrentPlayerID() { return CSystemData::Instance()->GetCurrentPlayerID(); }

CPath LocalDataPath(tPlayerID player, const CString& name) {
  return CSystemData::Instance()->GetLocalDataPath(player, name);
}

CPath DefaultAvatarPath() { return CSystemData::Instance()->GetDefaultAvatarPath(); }

CPath DownloadsPath() { return CSystemData::Instance()->GetDownloadsPath(); }

bool EarlyPreKBlackListed() { return CSystemData::Instance()->GetEarlyPreKBlackListed(); }

bool LogProfileSet() { return CLogFile::Instance()->IsProfileSet(); }

void AppendAchievementEarned(unsigned short badge) { logging::AppendAchievementEarned(badge); }

void AppendNewUser(unsigned long userId) { logging::AppendNewUser(userId); }

void InitLogFile(vireline::RandomRWFile* file, tPlayerID slot) {
  CLogFile::Instance();  // the log manager is up before any of its files is prepared
  vireline::PrepareLogFile(file, slot);
}

CString PackageVersion(const CPath& folder) { return LTM::CMetaInfo(folder).GetPackageVersion(); }

CString PackageTagString(const CPath& folder, const CString& key) { return LTM::CMetaInfo(folder).GetTagString(key); }

U32 PackageTagInt(const CPath& folder, const CString& key) { return LTM::CMetaInfo(folder).GetTagInt(key); }

CString ValidPackageVersion(const CPath& folder, const char* missing) {
  return ltm::ValidPackageVersion(folder, missing);
}

bool ReadTextList(const CPath& path, const char* member, std::vector<CString>* texts) {
  return ltm::ReadTextList(path, member, texts);
}

std::vector<LanguageInfo> InstalledLanguages() { return systemdata::InstalledLanguages(); }

}  // namespace upper
}  // namespace vireline
