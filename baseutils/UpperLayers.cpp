// Calls from the lower layers into the layers above them. A function whose
// service is not part of the library yet answers as a device without that
// service would: no player profiles, no package requests sent.
#include "baseutils/UpperLayers.h"

#include <vireline/BaseUtils.h>
#include <vireline/CLogFile.h>
#include <vireline/CSystem.h>
#include <vireline/CSystemData.h>
#include <vireline/LogEvents.h>
#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"

namespace vireline {
namespace upper {

void AppendCriticalError(const char* message) {
  CLogFile* log = CLogFile::Instance();
  if (!log->IsProfileSet()) log->SetCurrentProfile(0);
  LogData::Vireline::CCriticalError record(message);
  log->Append(record);
}

void ConsultSettingsAfterAssert() { LTM::CSystem().AreCheatsEnabled(); }

CString LocaleCode() { return CSystemData::Instance()->GetLocaleCode(); }

void SetLocaleCode(const CString& code) { CSystemData::Instance()->SetLocaleCode(code); }

CPath RootPath() { return CSystemData::Instance()->GetRootPath(); }

CPath BasePath() { return CSystemData::Instance()->GetBasePath(); }

CPath DataPath() { return CSystemData::Instance()->GetDataPath(); }

CPath CYOsPath() { return CSystemData::Instance()->GetCYOsPath(); }

CPath DataProfilePath(tPlayerID player) { return CSystemData::Instance()->GetDataProfilePath(player); }

bool ZantoLegacyFlag() { return CSystemData::Instance()->GetZantoLegacyFlag(); }

CString PlayerProfileName(int /*slot*/) { return CString(); }

int CompareVersion(const CString& a, const CString& b) { return BaseUtils::Instance()->CompareVersion(a, b); }

bool HasDoomPackage(const CPath& folder) { return BaseUtils::Instance()->HasDoomPackage(folder); }

void RequestPackageQVC(const CString& id, const CString& version) {
  PlatformDebug(kDataObjectsDebugModule).DebugOut(2, "RequestPackageQVC: %s %s\n", id.c_str(), version.c_str());
}

CPath ProgramFilesPath() { return CSystemData::Instance()->GetProgramFilesPath(); }

CPath CartPath() { return CSystemData::Instance()->GetCartPath(); }

CPath AvatarsPath() { return CSystemData::Instance()->GetAvatarsPath(); }

CPath MDLsPath() { return CSystemData::Instance()->GetMDLsPath(); }

CString CurrentGameID() { return CSystemData::Instance()->GetCurrentGameID(); }

U32 CurrentGameProductID() { return CSystemData::Instance()->GetCurrentGameProductID(); }

CPath ManageInventoryPath() { return CSystemData::Instance()->GetManageInventoryPath(); }

tPlayerID CurrentPlayerID() { return CSystemData::Instance()->GetCurrentPlayerID(); }

}  // namespace upper
}  // namespace vireline
