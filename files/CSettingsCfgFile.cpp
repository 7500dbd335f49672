#include <vireline/CSettingsCfgFile.h>

#include <vireline/COrvoInterface.h>

#include "files/PackageLayout.h"

namespace {

const uint32_t kPathSize = 256;

const char kKeySerialNumber[] = "SerialNumber";
const char kKeySerial[] = "Serial";
const char kKeyLocale[] = "Locale";
const char kKeyDateAndTime[] = "DateAndTime";

}  // namespace

CSettingsCfgFile::CSettingsCfgFile() = default;

CSettingsCfgFile::CSettingsCfgFile(tDeviceVolumeId vol, CPkgPathBase* paths) {
  const CPkgPathBase& layout = vireline::LayoutOrDefault(paths);
  char path[kPathSize];
  if (!layout.GetPackageDir(path, sizeof path, tPackageType("System"), vol, "settings.cfg")) path[0] = '\0';
  Open(path);
}

CSettingsCfgFile::CSettingsCfgFile(const CSettingsCfgFile& other) : CFileIO(other) {}

CSettingsCfgFile& CSettingsCfgFile::operator=(const CSettingsCfgFile& other) {
  CFileIO::operator=(other);
  return *this;
}

CSettingsCfgFile::~CSettingsCfgFile() = default;

const char* CSettingsCfgFile::GetSerialNumber() const { return GetStr(kKeySerialNumber); }
bool CSettingsCfgFile::SetSerialNumber(const char* serial) { return SetStr(kKeySerial, serial); }
const char* CSettingsCfgFile::GetLocale() const { return GetStr(kKeyLocale); }
bool CSettingsCfgFile::SetLocale(const char* locale) { return SetStr(kKeyLocale, locale); }

bool CSettingsCfgFile::GetDateAndTime(tDeviceDateAndTime& out) const {
  U32* values = nullptr;
  U32 count = GetUIntList(kKeyDateAndTime, values);
  if (count == 2) {
    out.first = values[0];
    out.second = values[1];
    COrvoInterface::Free(values);
    return true;
  }
  COrvoInterface::Trace("DateAndTime corruption in %s, only %u values!", GetPath() ? GetPath() : "(null)", count);
  COrvoInterface::Free(values);
  return false;
}

bool CSettingsCfgFile::SetDateAndTime(const tDeviceDateAndTime& in) {
  const U32 values[2] = {in.first, in.second};
  return SetUIntList(kKeyDateAndTime, values, 2);
}
