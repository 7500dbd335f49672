// The profile object, its two files and the typed getters and setters.
#include <vireline/CPlayerProfile.h>

#include <new>

#include <vireline/BaseUtils.h>

#include "baseutils/DebugModules.h"
#include "baseutils/UpperLayers.h"

const char* const kPlayerProfileKey_Pet = "Pet";
const char* const kPlayerProfileKey_Theme = "Theme";
const char* const kPlayerProfileKey_ProfilePicture = "ProfilePicture";
const char* const kPlayerProfileKey_Badges = "Badges";
const char* const kPlayerProfileKey_PetOnUI = "PetOnUI";
const char* const kPlayerProfileKey_ClockOnUI = "ClockOnUI";
const char* const kPlayerProfileKey_SortingOption = "SortingOption";
const char* const kPlayerProfileKey_DialogOption = "DialogOption";

namespace LTM {
namespace {

const U32 kMissing = 0xFFFFFFFFu;

// Grades with a meaning of their own: an emptied slot, and the grade the
// early pre-kindergarten black-list hides.
const U32 kGradeEmptySlot = 255;
const U32 kGradeEarlyPreK = 254;

const char kKeyLogins[] = "NumLoginsSinceLastConnect";
const char kKeyAvatar[] = "AvatarPath";
const char kKeyColorArt[] = "ColorArt";
const char kKeyLastSBShown[] = "LastSBShown";
const char kKeyLastGame[] = "LastGamePlayed";

const U32 kDefaultPetOnUI = 1;
const tDialogOption kDefaultDialogOption = 1;

void WarnDeprecated(const char* signature) { vireline::WarnDeprecated(vireline::kDataObjectsDebugModule, signature); }

// The file `name` in `folder` with immediate synchronisation; null (after the
// assertion at `line`) when it cannot be made.
std::shared_ptr<CProfileDscFile> MakeFile(const CPath& folder, const char* name, int line, const char* message) {
  CPath path = folder + name;
  std::shared_ptr<CProfileDscFile> file(new (std::nothrow) CProfileDscFile(path.c_str()));
  if (file == nullptr) {
    BaseUtils::Instance()->Assert(false, "VirelineJSON/Src/LTM", line, "%s", message);
  } else {
    file->SetImmediateSynch(true);
  }
  return file;
}

// Writes `file` (when there is one) and gives up this holder's share of it.
void WriteAndRelease(std::shared_ptr<CProfileDscFile>& file) {
  if (file != nullptr) file->Write();
  file.reset();
}

U32 NumberOf(const CProfileDscFile* file, const char* key, U32 dflt) {
  return (file != nullptr && file->HasKey(key)) ? file->GetUInt(key) : dflt;
}

// The stored text when present with a value, else `dflt`.
Glib::ustring TextOf(const CProfileDscFile* file, const char* key, const Glib::ustring& dflt) {
  const char* value = file != nullptr ? file->GetStr(key) : nullptr;
  return value != nullptr ? Glib::ustring(value) : dflt;
}

// The stored path when it names an existing file, else `dflt`.
Glib::ustring ExistingFileOf(const CProfileDscFile* file, const char* key, const Glib::ustring& dflt) {
  Glib::ustring path = TextOf(file, key, Glib::ustring());
  return (!path.empty() && BaseUtils::Instance()->FileExists(path)) ? path : dflt;
}

}  // namespace

CPlayerProfile::CProfileContainer::CProfileContainer(tPlayerID slot) : mSlot(slot) {
  CPath folder = vireline::upper::LocalDataPath(slot, ".");
  mpShared = MakeFile(folder, "profile.dsc", 470, "shared profile.dsc cannot be created!\n");
  mpLocal = MakeFile(folder, "profile_private.dsc", 480, "profile_private.dsc cannot be created!\n");
}

CPlayerProfile::CProfileContainer::~CProfileContainer() {
  WriteAndRelease(mpLocal);
  WriteAndRelease(mpShared);
}

CPlayerProfile::CProfileContainer::CProfileContainer(const CProfileContainer& other) = default;

CProfileDscFile* CPlayerProfile::CProfileContainer::GetLocal() { return mpLocal.get(); }
CProfileDscFile* CPlayerProfile::CProfileContainer::GetShared() { return mpShared.get(); }
tPlayerID CPlayerProfile::CProfileContainer::GetSlotID() { return mSlot; }

CPlayerProfile::CPlayerProfile(tPlayerID slot)
    : mpContainer(new (std::nothrow) CProfileContainer(slot)), mDebug(vireline::kDataObjectsDebugModule) {}

CPlayerProfile::~CPlayerProfile() { delete mpContainer; }

CPlayerProfile::CPlayerProfile(const CPlayerProfile& other)
    : mpContainer(other.mpContainer != nullptr ? new (std::nothrow) CProfileContainer(*other.mpContainer) : nullptr),
      mDebug(vireline::kDataObjectsDebugModule) {}

CPlayerProfile& CPlayerProfile::operator=(const CPlayerProfile& other) {
  if (this == &other) return *this;
  delete mpContainer;  // writes this object's files first
  mpContainer = other.mpContainer != nullptr ? new (std::nothrow) CProfileContainer(*other.mpContainer) : nullptr;
  return *this;
}

CProfileDscFile* CPlayerProfile::Local() const { return mpContainer != nullptr ? mpContainer->GetLocal() : nullptr; }
CProfileDscFile* CPlayerProfile::Shared() const { return mpContainer != nullptr ? mpContainer->GetShared() : nullptr; }

bool CPlayerProfile::IsValid() const { return Local() != nullptr && Shared() != nullptr; }

bool CPlayerProfile::Save() {
  CProfileDscFile* local = Local();
  if (local == nullptr) return false;
  bool localWritten = local->Write();
  CProfileDscFile* shared = Shared();
  bool sharedWritten = shared != nullptr && shared->Write();  // written even after a failed private write
  return localWritten && sharedWritten;
}

U32 CPlayerProfile::GetU32ByName_Local(const Glib::ustring& key, U32 dflt) { return NumberOf(Local(), key.c_str(), dflt); }

bool CPlayerProfile::SetU32ByName_Local(const Glib::ustring& key, U32 value) {
  CProfileDscFile* local = Local();
  return local != nullptr && local->SetUInt(key.c_str(), value);
}

Glib::ustring CPlayerProfile::GetStringByName_Local(const Glib::ustring& key, const Glib::ustring& dflt) {
  return TextOf(Local(), key.c_str(), dflt);
}

bool CPlayerProfile::SetStringByName_Local(const Glib::ustring& key, const Glib::ustring& value) {
  CProfileDscFile* local = Local();
  return local != nullptr && local->SetStr(key.c_str(), value.c_str());
}

Glib::ustring CPlayerProfile::GetName() const {
  const char* name = Shared() != nullptr ? Shared()->GetName() : nullptr;
  return name != nullptr ? Glib::ustring(name) : Glib::ustring();
}

bool CPlayerProfile::SetName(const Glib::ustring& name) { return Shared() != nullptr && Shared()->SetName(name.c_str()); }

U32 CPlayerProfile::GetId() const { return Shared() != nullptr ? Shared()->GetId() : 0; }

U32 CPlayerProfile::GetGrade() const {
  U32 grade = Shared() != nullptr ? Shared()->GetGrade() : 0;
  // The first model showed an emptied slot as grade 0; the black-list shows
  // the hidden pre-kindergarten grade as an empty slot.
  if (vireline::upper::ZantoLegacyFlag()) return (grade == kGradeEmptySlot || grade == kMissing) ? 0 : grade;
  if (vireline::upper::EarlyPreKBlackListed()) {
    return (grade == kGradeEarlyPreK || grade == kMissing) ? kGradeEmptySlot : grade;
  }
  return grade;
}

bool CPlayerProfile::SetGrade(U32 grade) { return Shared() != nullptr && Shared()->SetGrade(grade); }

U32 CPlayerProfile::GetBitz() const {
  WarnDeprecated("Quorvane::Orvo::U32 LTM::CPlayerProfile::GetBitz() const");
  U32 points = Shared() != nullptr ? Shared()->GetPoints() : 0;
  return points == kMissing ? 0 : points;
}

// Unlike GetBitz, a missing value stays 0xFFFFFFFF: callers of the old counter test for it.
U32 CPlayerProfile::GetNumBitzEarnedSinceLastConnect() const {
  WarnDeprecated("Quorvane::Orvo::U32 LTM::CPlayerProfile::GetNumBitzEarnedSinceLastConnect() const");
  return Shared() != nullptr ? Shared()->GetPoints() : 0;
}

bool CPlayerProfile::SetBitz(U32 points) {
  WarnDeprecated("bool LTM::CPlayerProfile::SetBitz(Quorvane::Orvo::U32)");
  return Shared() != nullptr && Shared()->SetPoints(points);
}

U32 CPlayerProfile::GetNumLoginsSinceLastConnect() { return Shared() != nullptr ? Shared()->GetUInt(kKeyLogins) : 0; }

bool CPlayerProfile::SetNumLoginsSinceLastConnect(U32 logins) {
  return Shared() != nullptr && Shared()->SetUInt(kKeyLogins, logins);
}

U32 CPlayerProfile::GetLastSBShown() const { return Local() != nullptr ? Local()->GetUInt(kKeyLastSBShown) : 0; }

bool CPlayerProfile::SetLastSBShown(U32 value) {
  WarnDeprecated("bool LTM::CPlayerProfile::SetLastSBShown(Quorvane::Orvo::U32)");
  return Local() != nullptr && Local()->SetUInt(kKeyLastSBShown, value);
}

Glib::ustring CPlayerProfile::GetAvatar() const {
  return ExistingFileOf(Local(), kKeyAvatar, vireline::upper::DefaultAvatarPath());
}

bool CPlayerProfile::SetAvatar(const Glib::ustring& path) { return SetStringByName_Local(kKeyAvatar, path); }

Glib::ustring CPlayerProfile::GetBGColorArt() const { return ExistingFileOf(Local(), kKeyColorArt, Glib::ustring()); }

bool CPlayerProfile::SetBGColorArt(const Glib::ustring& path) { return SetStringByName_Local(kKeyColorArt, path); }

Glib::ustring CPlayerProfile::GetLastGame() { return GetStringByName_Local(kKeyLastGame, Glib::ustring()); }

bool CPlayerProfile::SetLastGame(const Glib::ustring& title) { return SetStringByName_Local(kKeyLastGame, title); }

Glib::ustring CPlayerProfile::GetTheme() { return GetStringByName_Local(kPlayerProfileKey_Theme, Glib::ustring()); }

bool CPlayerProfile::SetTheme(Glib::ustring& theme) { return SetStringByName_Local(kPlayerProfileKey_Theme, theme); }

Glib::ustring CPlayerProfile::GetProfilePicture() {
  Glib::ustring picture = GetStringByName_Local(kPlayerProfileKey_ProfilePicture, Glib::ustring());
  mDebug.DebugOut(5, "GetProfilePicture: %s\n", picture.c_str());
  return picture;
}

bool CPlayerProfile::SetProfilePicture(Glib::ustring& picture) {
  return SetStringByName_Local(kPlayerProfileKey_ProfilePicture, picture);
}

tDialogOption CPlayerProfile::GetDialogOption() {
  return GetU32ByName_Local(kPlayerProfileKey_DialogOption, kDefaultDialogOption);
}

bool CPlayerProfile::SetDialogOption(tDialogOption option) {
  return SetU32ByName_Local(kPlayerProfileKey_DialogOption, option);
}

unsigned char CPlayerProfile::GetPetOnUI() {
  return GetU32ByName_Local(kPlayerProfileKey_PetOnUI, kDefaultPetOnUI) != 0 ? 1 : 0;
}

bool CPlayerProfile::SetPetOnUI(unsigned char shown) { return SetU32ByName_Local(kPlayerProfileKey_PetOnUI, shown); }

U32 CPlayerProfile::GetBadges() { return GetU32ByName_Local(kPlayerProfileKey_Badges, 0); }

}  // namespace LTM
