// The device-wide "settings.cfg" in the "System" package folder: a key=value
// file (CFileIO) with the serial number, locale, and a date-and-time pair.
#ifndef VIRELINE_CSETTINGSCFGFILE_H_
#define VIRELINE_CSETTINGSCFGFILE_H_

#include <vireline/CFileIO.h>
#include <vireline/Export.h>
#include <vireline/PkgPath.h>
#include <vireline/Types.h>

// Two numbers kept together under "DateAndTime".
struct tDeviceDateAndTime {
  U32 first;
  U32 second;
};

class VIRELINE_EXPORT CSettingsCfgFile : public CFileIO {
 public:
  // Empty, bound to no file.
  CSettingsCfgFile();

  // Reads "settings.cfg" in the "System" folder of volume `vol` of `paths`
  // (the default model when null: "/QV/Base/settings.cfg").
  CSettingsCfgFile(tDeviceVolumeId vol, CPkgPathBase* paths);

  // Reads the file `other` is bound to (its unsaved changes are not seen).
  CSettingsCfgFile(const CSettingsCfgFile& other);
  CSettingsCfgFile& operator=(const CSettingsCfgFile& other);

  ~CSettingsCfgFile() override;

  // Reads "SerialNumber". Note: SetSerialNumber writes another key.
  const char* GetSerialNumber() const;

  // Writes "Serial" (not "SerialNumber", which GetSerialNumber reads).
  bool SetSerialNumber(const char* serial);

  // Reads "Locale"; null when missing.
  const char* GetLocale() const;

  // Stores "Locale" (added at the end when new); saved by Write.
  bool SetLocale(const char* locale);

  // The two "DateAndTime" items (read in base 16); false, traced and `out`
  // unchanged unless there are exactly two.
  bool GetDateAndTime(tDeviceDateAndTime& out) const;

  // Writes the two numbers in signed decimal: values of 10 and more read back
  // differently through GetDateAndTime.
  bool SetDateAndTime(const tDeviceDateAndTime& in);
};

#endif  // VIRELINE_CSETTINGSCFGFILE_H_
