// A player profile's "profile.dsc": a key=value file (CFileIO) with the
// player's name, id, points, logins, age and grade.
#ifndef VIRELINE_CPROFILEDSCFILE_H_
#define VIRELINE_CPROFILEDSCFILE_H_

#include <vireline/CFileIO.h>
#include <vireline/Export.h>
#include <vireline/PkgPath.h>
#include <vireline/Types.h>

class VIRELINE_EXPORT CProfileDscFile : public CFileIO {
 public:
  // Empty, bound to no file.
  CProfileDscFile();

  // Reads "profile.dsc" in the folder of profile `profile` on volume `vol` of
  // `paths` (the default model when null).
  CProfileDscFile(tDeviceVolumeId vol, uint8_t profile, CPkgPathBase* paths);

  // Reads `path`.
  explicit CProfileDscFile(const char* path);

  // Reads the file `other` is bound to (its unsaved changes are not seen).
  CProfileDscFile(const CProfileDscFile& other);
  CProfileDscFile& operator=(const CProfileDscFile& other);

  ~CProfileDscFile() override;

  // Reads "Name"; null when missing.
  const char* GetName() const;

  // Stores "Name" (added at the end when new); saved by Write.
  bool SetName(const char* name);

  // Reads "ID" as a number; 0xFFFFFFFF when missing or ill-formed.
  U32 GetId() const;

  // Stores "ID" as "0x%08X"; saved by Write.
  bool SetId(U32 id);

  // Reads "Points" as a number; 0xFFFFFFFF when missing or ill-formed.
  U32 GetPoints() const;

  // Stores "Points" as "0x%08X"; saved by Write.
  bool SetPoints(U32 points);

  // Reads "TotalPoints" as a number; 0xFFFFFFFF when missing or ill-formed.
  U32 GetTotalPoints() const;

  // Stores "TotalPoints" as "0x%08X"; saved by Write.
  bool SetTotalPoints(U32 points);

  // Reads "NumLoginsSinceLastConnect" as a number; 0xFFFFFFFF when missing or ill-formed.
  U32 GetNumLogins() const;

  // Stores "NumLoginsSinceLastConnect" as "0x%08X"; saved by Write.
  bool SetNumLogins(U32 logins);

  // Reads "Age" as a number; 0xFFFFFFFF when missing or ill-formed.
  U32 GetAge() const;

  // Stores "Age" as "0x%08X"; saved by Write.
  bool SetAge(U32 age);

  // Reads "Grade" as a number; 0xFFFFFFFF when missing or ill-formed.
  U32 GetGrade() const;

  // Stores "Grade" as "0x%08X"; saved by Write.
  bool SetGrade(U32 grade);

  // True when "Name" is present and not empty.
  bool IsValid() const;

  // Sets "TotalPoints" to 0.
  bool ResetTotalPoints();

  // Sets "Points" to 0, first adding it to "TotalPoints" when `addToTotal`
  // (missing numbers count 0); false when "Points" is missing.
  bool ResetPoints(bool addToTotal);

  // Sets "NumLoginsSinceLastConnect" to 0 when it is present; else false.
  bool ResetNumLogins();

  // Replaces the whole table by "ID", "Name" and "Points" in that order. An
  // `id` of 0 takes the current "ID" plus 1. Not written: call Write.
  bool NewProfile(const char* name, U32 id, U32 points);
};

#endif  // VIRELINE_CPROFILEDSCFILE_H_
