// The process-wide utility object: file and folder checks, a one-level folder
// walker, assertions and traces, elapsed time, device identity, the list of
// installed language packs and plain file copies; plus the timing log.
#ifndef VIRELINE_BASEUTILS_H_
#define VIRELINE_BASEUTILS_H_

#include <cstdint>
#include <vector>

#include <vireline/Export.h>
#include <vireline/Types.h>

// One flag of a language pack's selection screen.
struct VIRELINE_EXPORT FlagInfo {
  CString localeCode;  // "LocaleCode"
  CString art;         // "Art"
  CString audio;       // "Audio"
};

// What a language pack's "Data/SelectLanguage.json" says about it.
struct VIRELINE_EXPORT LanguageInfo {
  CString selectionText;                // "LanguageSelectionText"
  std::vector<CString> selectionAudio;  // "LanguageSelectionAudio"
  CString settingText;                  // "LanguageSettingText"
  std::vector<CString> settingAudio;    // "LanguageSettingAudio"
  std::vector<FlagInfo> flags;          // "Flags"
  CString saveText;                     // "SaveText"
};

class VIRELINE_EXPORT BaseUtils {
 public:
  // What EnumFolder hands to its callback.
  enum tFileSelect { kSelectDirectories = 0, kSelectFiles = 1, kSelectAll = 2 };

  // The device family member, from the platform name.
  enum tPlatformType {
    kPlatformUnknown = 0,
    kPlatformZanto = 1,
    kPlatformTamsel = 2,
    kPlatformOskava = 3,
    kPlatformMira = 4,
    kPlatformTarvessa = 5
  };

  // Commands of the system daemon's control socket; 1 and 4 exist but have no wrapper here.
  enum qvd_command {
    kQvdGetVolume = 0,
    kQvdGetBrightness = 2,
    kQvdSetBrightness = 3,
    kQvdSetRtcTime = 5
  };

  // Called with each entry's full device path and the walk's context; 0 stops the walk.
  typedef unsigned char (*tEnumFolderCallback)(const CPath& path, void* context);

  // The process-wide instance, created on first use and never destroyed.
  static BaseUtils* Instance();

  // True when anything exists at `path`.
  bool FileExists(const CPath& path);

  // True when `path` is a folder.
  bool FileIsDir(const CPath& path);

  // The same test as FileIsDir.
  bool DirectoryExists(const CPath& path);

  // Creates `path` and every missing parent folder.
  bool CreateDirectory(const CPath& path);

  // Creates (or truncates) the file, creating missing parent folders first;
  // a failure inside an existing folder asserts.
  bool CreateFile(const CPath& path);

  // Calls `callback` for the entries of `folder` chosen by `select`
  // (a tFileSelect), in listing order; false only when the folder cannot be read.
  bool EnumFolder(const CPath& folder, tEnumFolderCallback callback, int select, void* context);

  // On a zero `condition` logs a critical error and raises the platform assertion.
  void Assert(int condition, const char* file, int line, const char* format, ...)
      __attribute__((format(printf, 5, 6)));

  // Sets the TraceEx id mask and the Trace switch.
  void SetupTrace(uint32_t mask, bool enable);

  // Prints when bit `traceId` of the mask is set; ids 32-63 are accepted but never shown.
  void TraceEx(unsigned int traceId, const char* format, ...) __attribute__((format(printf, 3, 4)));

  // Prints when tracing is enabled.
  void Trace(const char* format, ...) __attribute__((format(printf, 2, 3)));

  // Milliseconds since the instance was created, wrapping at 2^32.
  uint32_t GetElapsedTimeAsMSecs();

  // The device serial number from the manufacturing record; twenty zeros when unreadable.
  CString GetSerialNumber();

  // The same as GetSerialNumber, kept for the first model's callers.
  CString GetZantoSerialNumber();

  // True when the device has a touch screen.
  bool HasTouchScreen();

  // The platform's numeric id, cached after the first call.
  int GetPlatformID();

  // The platform's name, as the platform reports it.
  CString GetPlatformName();

  // The platform type; a known type is cached, an unknown name is looked at again each call.
  tPlatformType GetPlatformType();

  // True when the platform type is `type`.
  bool IsPlatformType(tPlatformType type);

  // Decimal text of `value`.
  CString itoa(int value);

  // The installed language packs, the device locale's pack first.
  std::vector<LanguageInfo> GetLanguages();

  // Copies `source` to `destination` byte for byte; a missing source gives an
  // empty destination and true.
  bool CopyPNGFile(const CPath& source, const CPath& destination);

  // Copies a folder tree; `destination` must end in "/". Always true.
  bool RecursiveCopy(const CPath& source, const CPath& destination);

  // True when players 0, 1 and 2 all have empty profile names.
  bool AreAllPlayerProfilesEmpty();

  // Checksum files and withdrawn content.

  // CRC-32 of a file, or of every file below a folder in listing order
  // (`select` filters the top level only); ".crc" files never count.
  U32 CalculateChecksum(const CPath& path, tFileSelect select);

  // Writes `value` as a 4-byte little-endian ".crc" file; false when it cannot be opened.
  bool WriteChecksum(const CPath& file, U32 value);

  // The value of a 4-byte ".crc" file (a shorter file gives its bytes, zero-filled); 0 when unreadable.
  U32 ReadChecksum(const CPath& file);

  // Negative, 0 or positive as version `a` is older than, equal to or newer than `b`.
  int CompareVersion(const CString& a, const CString& b);

  // The package version in `path` + "/meta.inf"; "Not Available" when unreadable.
  CString ReadVersionFromMeta(const CPath& path);

  // True when `folder` holds a "doom" marker.
  bool HasDoomPackage(const CPath& folder);

  // True when the content root holds the global "doom" marker.
  bool HasDoomPackage();

  // True when the device's critical content is incomplete or withdrawn;
  // marks what it finds missing with doom markers.
  bool HasDoomPackageCritical();

  // Device services.

  // Sends `command` to the system daemon; for the get commands stores the
  // reply in *value. 0 on success, negative on failure.
  int DaemonControl(qvd_command command, int* value);

  // The system volume; 0 when the daemon does not answer.
  int GetSystemVolume();

  // The screen brightness; 0 when the daemon does not answer.
  int GetSystemBrightness();

  // Asks the daemon to set the brightness; as DaemonControl.
  int SetSystemBrightness(int level);

  // Asks the daemon to set the real-time clock; as DaemonControl.
  int SetRTCTime(U32 time);

  // True when a USB accessory whose package is not installed is plugged in;
  // requests that package and reports the device's sysfs path and id.
  bool HasHotPlugDevice(CPath& path, U32& id);

  // HasHotPlugDevice without the device's path and id.
  bool HasHotPlugDevice();

  // Asks the desktop connect application for package `packageId` at `version` or newer.
  void RequestPackageQVC(const CString& packageId, const CString& version);

  // Withdraws the request for package `packageId`.
  void RequestPackageQVCRemoval(const CString& packageId);

  // The folder of patched libraries for the package at `packagePath`; empty when none.
  CPath GetPatchPath(const CPath& packagePath);

  // True when the current launch runs with the package's patched libraries.
  bool IsPatched(const CPath& packagePath);

  // True when the package has a patch newer than the system libraries.
  bool HasPatch(const CPath& packagePath);

  // Prepares the next launch of `package` with `libraryPath` first; always true.
  bool SetPatch(const CPath& libraryPath, const CString& package);

  // Removes the launch wrapper; always true.
  bool RemovePatch(const CString& package);

  // Prepares an external launch of `package`; always true.
  bool SetExternal(const CString& package);

  // True while a launch wrapper exists.
  bool IsExternal(const CString& package);

  // True when the package's metadata asks for a clean launch.
  bool HasExternalLaunch(const CPath& packagePath);

  // Bytes free to applications on the volume of the current player's data.
  uint64_t GetBulkFreeBytes();

  // Removes a file, or a folder and everything in it; a symbolic link is
  // removed itself, never followed. Always true.
  bool RM(const CPath& path);

  // Removes the sub-folders of `path` and what they hold, keeping the files
  // directly in it and the folder itself. Always true.
  bool RMDirs(const CPath& path);

  // Copies `source` over `destination` so that readers see the old or the new file, whole.
  bool CopyAtomicFile(const CPath& source, const CPath& destination);

 private:
  friend unsigned char EnumDeviceCallback(const CPath& path, void* context);

  BaseUtils();
  BaseUtils(const BaseUtils&) = delete;
  BaseUtils& operator=(const BaseUtils&) = delete;

  static BaseUtils* mInstance;

  bool mTraceEnabled;
  uint32_t mTraceMask;
  uint64_t mStartTime;
  uint32_t mHotPlugDeviceId;
  CString mHotPlugDevicePath;
};

// The hot-plug scan's steps, exported for the device's tools.

// The USB device id (vendor << 16 | product) of a sysfs device folder; unreadable halves are 0.
VIRELINE_EXPORT U32 FindDevice(const CPath& path);

// `id`, or 0 for devices that are never accessories (the root hub).
VIRELINE_EXPORT U32 MatchDevice(U32 id);

// The package id that goes with accessory `id` in the device's language;
// the hot-plug form ends in "-100001", the other in "-000000".
VIRELINE_EXPORT CString MatchDevicePackage(U32 id, bool hotPlug);

// Requests the package of accessory `id`, and for generic accessories the USB request file.
VIRELINE_EXPORT void RequestDevicePackage(U32 id);

// Folder-walk callback of the hot-plug scan; records the first accessory in the BaseUtils `context`.
VIRELINE_EXPORT unsigned char EnumDeviceCallback(const CPath& path, void* context);

// Left by GetLanguages: whether the device locale's pack was found, and that
// locale's two-letter language.
extern VIRELINE_EXPORT bool gFoundFirstLanguage;
extern VIRELINE_EXPORT CString gFirstLanguage;

// Starts the timing log "timelog.txt" in the data folder (once per process).
VIRELINE_EXPORT void timelogbegin();

// Adds a line with the seconds since timelogbegin and since the previous line.
VIRELINE_EXPORT void timelog(const char* text);

// Closes the timing log for good.
VIRELINE_EXPORT void timelogdone();

#endif  // VIRELINE_BASEUTILS_H_
