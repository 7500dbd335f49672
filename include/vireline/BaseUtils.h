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

 private:
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
