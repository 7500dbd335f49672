#include <vireline/CSystem.h>

#include <memory>
#include <new>

#include <vireline/BaseUtils.h>
#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "baseutils/UpperLayers.h"
#include "ltm/StreamExtraction.h"
#include "platform/AtomicFile.h"
#include "platform/BufferedReader.h"
#include "platform/Env.h"
#include "platform/FormattedWrite.h"

namespace LTM {
namespace {


const char kKeyCurrentPlayer[] = "CurrProfile";
const char kKeyRestartPlayer[] = "RestartAsPlayerID";
const char kKeyContrast[] = "Contrast";
const char kKeyCheats[] = "Cheats";
const char kKeyClock[] = "ClockInUI";  // "In", while the operations say "On"
const char kKeyRTCAccuracy[] = "RTCAccuracy";

const char kLogLevelFile[] = "/var/loglevel";
const unsigned long kDefaultLogLevel = 3;

// The settings file of the default model, located through a layout that
// knows only the "System" package type, so no other folder can be chosen.
CSettingsCfgFile* NewSettingsFile() {
  const tPackageType systemType[1] = {tPackageType("System")};
  const char* const systemDir[1] = {"Bulk"};
  const tVolumeConfig volume = {"/QV", 1, systemType};
  const tDirConfig config = {"KastrelVoyant", 0,       "Bulk/Data/Local", "Bulk/Data/Uploads", 1, systemType, 1,
                             systemDir,       0,       nullptr,           0,                   nullptr,       1,
                             &volume};
  CPkgPathBase paths(&config);
  return new (std::nothrow) CSettingsCfgFile(0, &paths);
}

// A copy of `source` reading the same file; null when there is none to copy.
CSettingsCfgFile* CopySettingsFile(const CSettingsCfgFile* source) {
  return source != nullptr ? new CSettingsCfgFile(*source) : nullptr;
}

void WarnDeprecated(const char* signature) { vireline::WarnDeprecated(vireline::kDataObjectsDebugModule, signature); }

// "On" only for exactly 1: older firmware wrote other values that mean off.
bool HoldsOne(const CSettingsCfgFile* settings, const char* key) {
  return settings != nullptr && settings->HasKey(key) && settings->GetUInt(key) == 1;
}

}  // namespace

CSystem::CSystem() : mpSettings(NewSettingsFile()) {
  if (mpSettings == nullptr) {
    BaseUtils::Instance()->Assert(false, "VirelineJSON/Src/LTM", 184, "Settings.cfg cannot be newed");
    return;
  }
  mpSettings->SetImmediateSynch(true);
}

CSystem::~CSystem() {
  if (mpSettings == nullptr) return;
  mpSettings->Write();
  delete mpSettings;
}

CSystem::CSystem(const CSystem& other) : mpSettings(CopySettingsFile(other.mpSettings)) {}

CSystem& CSystem::operator=(const CSystem& other) {
  if (this == &other) return *this;
  delete mpSettings;  // unsaved changes of this object are dropped, not written
  mpSettings = CopySettingsFile(other.mpSettings);
  return *this;
}

bool CSystem::IsValid() const { return mpSettings != nullptr; }

bool CSystem::Save() { return mpSettings != nullptr && mpSettings->Write(); }

tPlayerID CSystem::GetCurrentPlayerID() {
  return mpSettings != nullptr ? static_cast<tPlayerID>(mpSettings->GetUInt(kKeyCurrentPlayer)) : -1;
}

// The three player setters below are used only where the constructor has
// made the settings object; the guard keeps a failed allocation from crashing.
bool CSystem::SetCurrentPlayerID(tPlayerID id) {
  return mpSettings != nullptr && mpSettings->SetUInt(kKeyCurrentPlayer, static_cast<U32>(id));
}

tPlayerID CSystem::GetRestartPlayerID() {
  return mpSettings != nullptr ? static_cast<tPlayerID>(mpSettings->GetUInt(kKeyRestartPlayer)) : -1;
}

bool CSystem::ClearRestartPlayerID() { return mpSettings != nullptr && mpSettings->RmKey(kKeyRestartPlayer); }

bool CSystem::SetRestartPlayerID(tPlayerID id) {
  return mpSettings != nullptr && mpSettings->SetUInt(kKeyRestartPlayer, static_cast<U32>(id));
}

Glib::ustring CSystem::GetSerialNumber() const {
  WarnDeprecated("Quorvane::Orvo::CString LTM::CSystem::GetSerialNumber() const");
  return Glib::ustring();
}

bool CSystem::SetSerialNumber(const Glib::ustring&) {
  WarnDeprecated("bool LTM::CSystem::SetSerialNumber(const Quorvane::Orvo::CString&)");
  return false;
}

Glib::ustring CSystem::GetLocale() const {
  const char* locale = mpSettings != nullptr ? mpSettings->GetLocale() : nullptr;
  return locale != nullptr ? Glib::ustring(locale) : Glib::ustring();
}

bool CSystem::SetLocale(const Glib::ustring& locale) {
  bool stored = mpSettings != nullptr && mpSettings->SetLocale(locale.c_str());
  // The running library follows the choice even when the file refused it.
  vireline::upper::SetLocaleCode(locale);
  return stored;
}

bool CSystem::GetDateAndTime(tDeviceDateAndTime& out) const {
  return mpSettings != nullptr && mpSettings->GetDateAndTime(out);
}

bool CSystem::SetDateAndTime(const tDeviceDateAndTime& in) {
  return mpSettings != nullptr && mpSettings->SetDateAndTime(in);
}

long CSystem::GetContrast() const {
  if (mpSettings == nullptr) return 0;
  return static_cast<int32_t>(mpSettings->GetUInt(kKeyContrast));  // a missing key reads as -1
}

bool CSystem::SetContrast(long contrast) {
  return mpSettings != nullptr && mpSettings->SetUInt(kKeyContrast, static_cast<U32>(contrast));
}

bool CSystem::AreCheatsEnabled() { return HoldsOne(mpSettings, kKeyCheats); }

bool CSystem::SetCheatsEnabled(bool enabled) {
  return mpSettings != nullptr && mpSettings->SetUInt(kKeyCheats, enabled ? 1 : 0);
}

unsigned char CSystem::GetClockOnUI() { return HoldsOne(mpSettings, kKeyClock) ? 1 : 0; }

bool CSystem::SetClockOnUI(unsigned char clock) { return mpSettings != nullptr && mpSettings->SetUInt(kKeyClock, clock); }

tRTCAccuracy CSystem::GetRTCAccuracy() {
  if (mpSettings == nullptr || !mpSettings->HasKey(kKeyRTCAccuracy)) return 0;
  return mpSettings->GetUInt(kKeyRTCAccuracy);
}

bool CSystem::SetRTCAccuracy(tRTCAccuracy accuracy) {
  return mpSettings != nullptr && mpSettings->SetUInt(kKeyRTCAccuracy, accuracy);
}

unsigned long CSystem::GetFRDebugLevel() {
  std::unique_ptr<vireline::SequentialFile> file;
  unsigned long level = kDefaultLogLevel;  // kept unless a number is read with the stream left good
  if (vireline::Env::Current()->NewSequentialFile(kLogLevelFile, &file).ok()) {
    vireline::BufferedReader reader(file.get(), 4096);
    vireline::ExtractUnsigned(&reader, &level);
  }
  return level;
}

int CSystem::SetFRDebugLevel(unsigned long level) {
  std::unique_ptr<vireline::WritableFile> file;
  if (vireline::NewAtomicFile(kLogLevelFile, false, &file).ok()) {
    vireline::AppendFormatted(file.get(), "%lu\n", level);
    file->Close();  // an unwritable file is not reported: the level below still applies
  }
  PlatformDebug(vireline::kMasterLevelDebugModule).SetMasterDebugLevel(static_cast<int>(level));
  return 0;
}

}  // namespace LTM
