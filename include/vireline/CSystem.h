// The applications' typed view of the device-wide settings in "settings.cfg"
// (current and restart player, contrast, cheats, clock, real-time clock
// accuracy, locale, date and time) and of the platform debug level kept in
// "/var/loglevel". A cheap value object: construct one where it is needed.
//
// Every setter reaches the file at once, and destroying an object writes the
// file once more. Copies read the file from disk; assignment drops the
// target's own object without writing it.
#ifndef VIRELINE_CSYSTEM_H_
#define VIRELINE_CSYSTEM_H_

#include <cstdint>

#include <vireline/CSettingsCfgFile.h>
#include <vireline/Export.h>
#include <vireline/Types.h>

namespace LTM {

// Accuracy class of the real-time clock, stored and returned as its number.
typedef uint32_t tRTCAccuracy;

class VIRELINE_EXPORT CSystem {
 public:
  // Reads "settings.cfg" of the "System" folder on volume 0 with immediate synchronisation.
  CSystem();

  // Writes the settings file, then releases it.
  ~CSystem();

  // A new settings object reading the file `other` is bound to.
  CSystem(const CSystem& other);

  // Nothing for self-assignment; otherwise drops the own object unwritten and copies as above.
  CSystem& operator=(const CSystem& other);

  // True when the settings object exists.
  bool IsValid() const;

  // Writes the settings file; false when that fails or there is no settings object.
  bool Save();

  // "CurrProfile"; -1 when missing.
  tPlayerID GetCurrentPlayerID();

  // Stores "CurrProfile"; the set's (and write's) result.
  bool SetCurrentPlayerID(tPlayerID id);

  // "RestartAsPlayerID"; -1 (no restart player) when missing.
  tPlayerID GetRestartPlayerID();

  // Removes "RestartAsPlayerID".
  bool ClearRestartPlayerID();

  // Stores "RestartAsPlayerID".
  bool SetRestartPlayerID(tPlayerID id);

  // Deprecated: warns and returns an empty string.
  Glib::ustring GetSerialNumber() const;

  // Deprecated: warns, changes nothing, returns false.
  bool SetSerialNumber(const Glib::ustring& serial);

  // The settings' locale; empty when missing.
  Glib::ustring GetLocale() const;

  // Stores the locale and, whatever the file says, switches the running
  // library to it; the settings file's result.
  bool SetLocale(const Glib::ustring& locale);

  // The "DateAndTime" pair; false when it is not exactly two values.
  bool GetDateAndTime(tDeviceDateAndTime& out) const;

  // Stores the "DateAndTime" pair.
  bool SetDateAndTime(const tDeviceDateAndTime& in);

  // "Contrast" as a signed number; -1 when missing.
  long GetContrast() const;

  // Stores "Contrast".
  bool SetContrast(long contrast);

  // True only when "Cheats" holds exactly 1.
  bool AreCheatsEnabled();

  // Stores "Cheats" as 0 or 1.
  bool SetCheatsEnabled(bool enabled);

  // 1 only when "ClockInUI" holds exactly 1, else 0.
  unsigned char GetClockOnUI();

  // Stores "ClockInUI" as given (not folded to 0 or 1).
  bool SetClockOnUI(unsigned char clock);

  // "RTCAccuracy"; 0 when missing.
  tRTCAccuracy GetRTCAccuracy();

  // Stores "RTCAccuracy".
  bool SetRTCAccuracy(tRTCAccuracy accuracy);

  // The number in "/var/loglevel"; 3 unless the file holds a decimal number followed by more text.
  unsigned long GetFRDebugLevel();

  // Writes "/var/loglevel" (failures ignored) and sets the platform's master debug level; 0.
  int SetFRDebugLevel(unsigned long level);

 private:
  CSettingsCfgFile* mpSettings;
};

}  // namespace LTM

#endif  // VIRELINE_CSYSTEM_H_
