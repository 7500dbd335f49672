// The process-wide writer of the play logs: one "profile.log" per player slot
// 0-2, each a 104-byte header followed by records appended as the child plays.
// Records go to the file of the current profile. The three files together are
// capped at 1,024,000 bytes; once the running count reaches the cap, logging
// stops for the rest of the process. Failures are only reported as debug
// messages at level 3, never to the caller.
#ifndef VIRELINE_CLOGFILE_H_
#define VIRELINE_CLOGFILE_H_

#include <cstdint>
#include <cstdio>
#include <string>

#include <vireline/CLogData.h>
#include <vireline/Export.h>
#include <vireline/Types.h>

// The profile whose file records go to.
enum tLoggingProfile : int32_t {
  kLoggingProfile0 = 0,
  kLoggingProfile1 = 1,
  kLoggingProfile2 = 2,
  kLoggingProfilePlayer3 = -1,  // player 3 has no log slot: nothing is logged
  kLoggingProfileNotSet = -2    // no player chosen yet: nothing is logged
};

class VIRELINE_EXPORT CLogFile {
 public:
  // The three files together never grow past this many bytes.
  static const uint32_t kSizeCap = 1024000;
  // The number of player slots with a log file.
  static const int kSlotCount = 3;

  // The process-wide instance; built on first use, which creates missing log
  // files, checks or writes their headers and counts their sizes.
  static CLogFile* Instance();

  // Ends the instance; the next Instance() builds a new one from the files on disk.
  static void Destroy();

  // The log file of `slot` (0-2): its log folder + "profile.log".
  static CPath GetLogFilePath(tPlayerID slot);

  // Makes `profile` current when it is 2 or less (negative values too); a
  // larger value is refused with a fatal logging message.
  void SetCurrentProfile(tLoggingProfile profile);

  // Player 0-2 selects that slot, player 3 suppresses logging, anything else
  // leaves no profile set.
  void SetCurrentProfile(tPlayerID player);

  // The current profile.
  tLoggingProfile GetCurrentProfile() const { return mCurrentProfile; }

  // True once a profile (or player 3) has been chosen.
  bool IsProfileSet() const { return mCurrentProfile != kLoggingProfileNotSet; }

  // Appends `record` to the current profile's file, unless no profile is set,
  // the record is empty or the size cap is reached. Every offered record counts
  // towards the cap, also one that is then dropped.
  void Append(CLogData& record);

  // Append, returning this log file for chaining.
  CLogFile& operator<<(CLogData& record);

  // Writes the start-up records to all three files: the clock record and,
  // when the firmware's metadata is found, its identity as debug information.
  // Leaves no profile set.
  void LogInitialLogData();

  // Gives an open file shorter than a header a fresh header for `slot` (over
  // its first bytes, without truncating), then checks the header. Null does nothing.
  void InitLogFile(FILE* file, tPlayerID slot);

 private:
  CLogFile();
  ~CLogFile();
  CLogFile(const CLogFile&) = delete;
  CLogFile& operator=(const CLogFile&) = delete;

  void OpenFiles();
  void CloseFiles();

  static CLogFile* mpInstance;

  FILE* mFiles[kSlotCount];
  uint32_t mByteCount;
  tLoggingProfile mCurrentProfile;
  CString mFileName;
  CPath mFolders[kSlotCount];
  std::string mPaths[kSlotCount];  // folder + file name, composed once for Append
};

// The size of an open file; its position is kept. 0 for null.
VIRELINE_EXPORT unsigned long FileSize(FILE* file);

// Creates an empty file (or empties an existing one) at `path`; null does nothing.
VIRELINE_EXPORT void FileCreate(char const* path);

#endif  // VIRELINE_CLOGFILE_H_
