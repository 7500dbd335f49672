// The key=value reader and every getter on the table it builds, through the
// plain table and the "meta.inf", "settings.cfg" and "profile.dsc" views.
#include <string>

#include <vireline/CFileIO.h>
#include <vireline/CMetaInfFile.h>
#include <vireline/COrvoInterface.h>
#include <vireline/CProfileDscFile.h>
#include <vireline/CSettingsCfgFile.h>

#include "fuzz/FuzzSupport.h"

namespace vireline {
namespace fuzz {

namespace {

const char kFolder[] = "/QV/Base/Fuzz";

void FreeStrings(char** strings, U32 count) {
  for (U32 i = 0; i < count; ++i) COrvoInterface::Free(strings[i]);
  COrvoInterface::Free(strings);
}

// Every getter of the plain table, for every key it holds and one it lacks.
void ReadTable(const CFileIO& table) {
  char** keys = nullptr;
  U32 count = table.Keys(keys);
  for (U32 i = 0; i <= count; ++i) {
    const char* key = i < count ? keys[i] : "NoSuchKey";
    (void)table.HasKey(key);
    (void)table.FindKey(key);
    (void)table.GetStr(key);
    (void)table.GetUInt(key);
    U32* numbers = nullptr;
    (void)table.GetUIntList(key, numbers);
    COrvoInterface::Free(numbers);
    char** strings = nullptr;
    U32 stringCount = table.GetStrList(key, strings);
    FreeStrings(strings, stringCount);
  }
  COrvoInterface::Free(keys);
  for (U32 i = 0; i <= table.GetEntryCount(); ++i) (void)table.GetEntry(i);
}

void ReadMetaInf(const CMetaInfFile& meta) {
  (void)meta.GetMetaVersion();
  (void)meta.GetDeviceType();
  (void)meta.GetPackageId();
  (void)meta.GetProductId();
  (void)meta.GetPackageName();
  (void)meta.GetShortName();
  (void)meta.GetBinFile();
  (void)meta.GetPartNumber();
  (void)meta.GetPackageType();
  (void)meta.GetPackageVersion();
  (void)meta.GetPublisher();
  (void)meta.GetDeveloper();
  (void)meta.GetIcon();
  (void)meta.IsHidden();
  char** strings = nullptr;
  U32 count = meta.GetDependencies(strings);
  FreeStrings(strings, count);
  strings = nullptr;
  count = meta.GetPersistentData(strings);
  FreeStrings(strings, count);
  U32* profiles = nullptr;
  count = meta.GetProfileAccess(profiles);
  COrvoInterface::Free(profiles);
  (void)meta.GetSize();
  (void)meta.GetDeviceAccess();
  (void)meta.GetPathToUploadContent();
  (void)meta.GetPathToUploadContentList();
  (void)meta.GetOptionalUpload();
  (void)meta.ProfileHasAccess(0);
  (void)meta.ProfileHasAccess(3);
  (void)meta.IsValid();
  meta.DumpDebug();
}

void ReadSettings(const CSettingsCfgFile& settings) {
  (void)settings.GetSerialNumber();
  (void)settings.GetLocale();
  tDeviceDateAndTime when = {0, 0};
  (void)settings.GetDateAndTime(when);
}

void ReadProfile(const CProfileDscFile& profile) {
  (void)profile.GetName();
  (void)profile.GetId();
  (void)profile.GetPoints();
  (void)profile.GetTotalPoints();
  (void)profile.GetNumLogins();
  (void)profile.GetAge();
  (void)profile.GetGrade();
  (void)profile.IsValid();
}

}  // namespace

void FuzzKeyValue(const uint8_t* data, size_t size) {
  std::string content(reinterpret_cast<const char*>(data), size);
  std::string file = std::string(kFolder) + "/meta.inf";
  WriteDeviceFile(file, content);
  WriteDeviceFile("/QV/Base/settings.cfg", content);

  CFileIO table;
  table.Open(file.c_str());
  ReadTable(table);

  CMetaInfFile meta(kFolder);
  ReadTable(meta);
  ReadMetaInf(meta);

  CSettingsCfgFile settings(0, nullptr);
  ReadSettings(settings);

  CProfileDscFile profile(file.c_str());
  ReadProfile(profile);
}

}  // namespace fuzz
}  // namespace vireline
