#include <vireline/CProfileDscFile.h>

#include "files/PackageLayout.h"

namespace {

const uint32_t kPathSize = 256;
const U32 kMissing = 0xFFFFFFFFu;

const char kKeyName[] = "Name";
const char kKeyId[] = "ID";
const char kKeyPoints[] = "Points";
const char kKeyTotalPoints[] = "TotalPoints";
const char kKeyNumLogins[] = "NumLoginsSinceLastConnect";
const char kKeyAge[] = "Age";
const char kKeyGrade[] = "Grade";

U32 ZeroIfMissing(U32 value) { return value == kMissing ? 0 : value; }

}  // namespace

CProfileDscFile::CProfileDscFile() = default;

CProfileDscFile::CProfileDscFile(tDeviceVolumeId vol, uint8_t profile, CPkgPathBase* paths) {
  const CPkgPathBase& layout = vireline::LayoutOrDefault(paths);
  char path[kPathSize];
  if (!layout.GetProfileDir(path, sizeof path, profile, vol, "profile.dsc")) path[0] = '\0';
  Open(path);
}

CProfileDscFile::CProfileDscFile(const char* path) { Open(path); }

CProfileDscFile::CProfileDscFile(const CProfileDscFile& other) : CFileIO(other) {}

CProfileDscFile& CProfileDscFile::operator=(const CProfileDscFile& other) {
  CFileIO::operator=(other);
  return *this;
}

CProfileDscFile::~CProfileDscFile() = default;

const char* CProfileDscFile::GetName() const { return GetStr(kKeyName); }
bool CProfileDscFile::SetName(const char* name) { return SetStr(kKeyName, name); }
U32 CProfileDscFile::GetId() const { return GetUInt(kKeyId); }
bool CProfileDscFile::SetId(U32 id) { return SetUInt(kKeyId, id); }
U32 CProfileDscFile::GetPoints() const { return GetUInt(kKeyPoints); }
bool CProfileDscFile::SetPoints(U32 points) { return SetUInt(kKeyPoints, points); }
U32 CProfileDscFile::GetTotalPoints() const { return GetUInt(kKeyTotalPoints); }
bool CProfileDscFile::SetTotalPoints(U32 points) { return SetUInt(kKeyTotalPoints, points); }
U32 CProfileDscFile::GetNumLogins() const { return GetUInt(kKeyNumLogins); }
bool CProfileDscFile::SetNumLogins(U32 logins) { return SetUInt(kKeyNumLogins, logins); }
U32 CProfileDscFile::GetAge() const { return GetUInt(kKeyAge); }
bool CProfileDscFile::SetAge(U32 age) { return SetUInt(kKeyAge, age); }
U32 CProfileDscFile::GetGrade() const { return GetUInt(kKeyGrade); }
bool CProfileDscFile::SetGrade(U32 grade) { return SetUInt(kKeyGrade, grade); }

bool CProfileDscFile::IsValid() const {
  const char* name = GetName();
  return name != nullptr && name[0] != '\0';
}

bool CProfileDscFile::ResetTotalPoints() { return SetTotalPoints(0); }

bool CProfileDscFile::ResetPoints(bool addToTotal) {
  if (!HasKey(kKeyPoints)) return false;
  if (addToTotal && !SetTotalPoints(ZeroIfMissing(GetPoints()) + ZeroIfMissing(GetTotalPoints()))) return false;
  return SetPoints(0);
}

bool CProfileDscFile::ResetNumLogins() {
  if (!HasKey(kKeyNumLogins)) return false;
  return SetNumLogins(0);
}

bool CProfileDscFile::NewProfile(const char* name, U32 id, U32 points) {
  // Built whole before a single write: with immediate synchronisation each
  // set would write a half-made profile (an ID without a name) that a power
  // cut or a failing write could leave as the player's file.
  const uint8_t immediate = mImmediateSynch;
  mImmediateSynch = 0;
  if (id == 0) {
    id = GetId() + 1;  // a missing "ID" (0xFFFFFFFF) wraps to 0
    if (HasKey(kKeyTotalPoints)) ResetTotalPoints();
  }
  Clear();
  const bool built = SetId(id) && SetName(name) && SetPoints(points);
  mImmediateSynch = immediate;
  return built && (immediate == 0 || Write());
}
