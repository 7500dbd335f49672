// The applications' typed view of one player slot: name, grade, id, avatar,
// background art, theme, picture, badges, interface options and counters, the
// creation of a new player and the removal of everything a player left behind.
//
// A profile is two key=value files in the player's local data folder:
// "profile.dsc", the shared descriptor that other devices and the desktop
// tools read, and "profile_private.dsc", the player's settings on this device.
// Both synchronise immediately: every setter reaches the disk at once, and
// Save and the destructor write again.
//
// Copies share their source's two file objects (and slot): a change through
// one is seen through the other. Each copy's destruction writes the files;
// the last one releases them.
#ifndef VIRELINE_CPLAYERPROFILE_H_
#define VIRELINE_CPLAYERPROFILE_H_

#include <memory>

#include <vireline/CProfileDscFile.h>
#include <vireline/Export.h>
#include <vireline/Platform.h>
#include <vireline/Types.h>

// Keys of the private file without a typed operation of their own (or with
// one), for the ...ByName_Local operations.
VIRELINE_EXPORT extern const char* const kPlayerProfileKey_Pet;             // "Pet"
VIRELINE_EXPORT extern const char* const kPlayerProfileKey_Theme;           // "Theme"
VIRELINE_EXPORT extern const char* const kPlayerProfileKey_ProfilePicture;  // "ProfilePicture"
VIRELINE_EXPORT extern const char* const kPlayerProfileKey_Badges;          // "Badges"
VIRELINE_EXPORT extern const char* const kPlayerProfileKey_PetOnUI;         // "PetOnUI"
VIRELINE_EXPORT extern const char* const kPlayerProfileKey_ClockOnUI;       // "ClockOnUI"
VIRELINE_EXPORT extern const char* const kPlayerProfileKey_SortingOption;   // "SortingOption"
VIRELINE_EXPORT extern const char* const kPlayerProfileKey_DialogOption;    // "DialogOption"

namespace LTM {

// The same keys, for clients that name them inside the data objects' namespace.
using ::kPlayerProfileKey_Badges;
using ::kPlayerProfileKey_ClockOnUI;
using ::kPlayerProfileKey_DialogOption;
using ::kPlayerProfileKey_Pet;
using ::kPlayerProfileKey_PetOnUI;
using ::kPlayerProfileKey_ProfilePicture;
using ::kPlayerProfileKey_SortingOption;
using ::kPlayerProfileKey_Theme;

// How the applications present their dialogs to this player, stored as its number.
typedef U32 tDialogOption;

class VIRELINE_EXPORT CPlayerProfile {
 public:
  // The two file objects of one slot.
  class VIRELINE_EXPORT CProfileContainer {
   public:
    // Reads both files of `slot` from its local data folder (created when
    // missing), each with immediate synchronisation.
    explicit CProfileContainer(tPlayerID slot);

    // Writes the private file, then the shared one; the last container
    // holding them releases them.
    ~CProfileContainer();

    // Another container on the same two file objects and slot.
    CProfileContainer(const CProfileContainer& other);

    // Not assignable: a profile replaces its whole container instead.
    CProfileContainer& operator=(const CProfileContainer&) = delete;

    // "profile_private.dsc"; null when it could not be made.
    CProfileDscFile* GetLocal();

    // "profile.dsc"; null when it could not be made.
    CProfileDscFile* GetShared();

    // The player slot.
    tPlayerID GetSlotID();

   private:
    // Shared between copies; the last holder releases the object.
    std::shared_ptr<CProfileDscFile> mpLocal;
    std::shared_ptr<CProfileDscFile> mpShared;
    tPlayerID mSlot;
  };

  // The profile of player `slot`.
  explicit CPlayerProfile(tPlayerID slot);

  // Destroys the container: its files are written and, with the last copy, released.
  ~CPlayerProfile();

  // A profile on the same two file objects and slot as `other`.
  CPlayerProfile(const CPlayerProfile& other);

  // Unless `other` is this object: destroys the own container (writing its
  // files), then shares `other`'s.
  CPlayerProfile& operator=(const CPlayerProfile& other);

  // True when the container and both file objects exist.
  bool IsValid() const;

  // Writes the private file, then the shared one; true when both writes succeed.
  bool Save();

  // The private file's `key` as a number; `dflt` when missing or without file.
  U32 GetU32ByName_Local(const Glib::ustring& key, U32 dflt);

  // Stores `value` in the private file as "0x%08X"; false without file.
  bool SetU32ByName_Local(const Glib::ustring& key, U32 value);

  // The private file's `key` when present with a value; else `dflt`.
  Glib::ustring GetStringByName_Local(const Glib::ustring& key, const Glib::ustring& dflt);

  // Stores `value` in the private file; false without file.
  bool SetStringByName_Local(const Glib::ustring& key, const Glib::ustring& value);

  // The player's name; empty when there is none.
  Glib::ustring GetName() const;
  // Stores the name in the shared file.
  bool SetName(const Glib::ustring& name);

  // The player's id; 0xFFFFFFFF when missing.
  U32 GetId() const;

  // The grade, with 255 (empty slot) and 254 (hidden pre-kindergarten) read
  // as the legacy and black-list flags require.
  U32 GetGrade() const;
  // Stores the grade in the shared file.
  bool SetGrade(U32 grade);

  // Deprecated: the points, a missing value read as 0.
  U32 GetBitz() const;
  // Deprecated: the points as stored (0xFFFFFFFF when missing).
  U32 GetNumBitzEarnedSinceLastConnect() const;
  // Deprecated: stores the points.
  bool SetBitz(U32 points);

  // "NumLoginsSinceLastConnect" of the shared file; 0xFFFFFFFF when missing.
  U32 GetNumLoginsSinceLastConnect();
  // Stores the login counter in the shared file.
  bool SetNumLoginsSinceLastConnect(U32 logins);

  // "LastSBShown"; 0xFFFFFFFF when missing.
  U32 GetLastSBShown() const;
  // Deprecated: stores "LastSBShown".
  bool SetLastSBShown(U32 value);

  // The avatar file when it exists, else the device's default avatar.
  Glib::ustring GetAvatar() const;
  // Stores the avatar path unchecked.
  bool SetAvatar(const Glib::ustring& path);

  // The background colour art file when it exists; else empty.
  Glib::ustring GetBGColorArt() const;
  // Stores the colour art path unchecked.
  bool SetBGColorArt(const Glib::ustring& path);

  // The title played last; empty when none.
  Glib::ustring GetLastGame();
  // Stores the title played last.
  bool SetLastGame(const Glib::ustring& title);

  // "Theme"; empty when none.
  Glib::ustring GetTheme();
  // Stores "Theme".
  bool SetTheme(Glib::ustring& theme);

  // "ProfilePicture"; empty when none. Traces the answer at level 5.
  Glib::ustring GetProfilePicture();
  // Stores "ProfilePicture".
  bool SetProfilePicture(Glib::ustring& picture);

  // "DialogOption"; 1 when missing.
  tDialogOption GetDialogOption();
  // Stores "DialogOption".
  bool SetDialogOption(tDialogOption option);

  // 1 when the pet is shown (also when "PetOnUI" is missing), else 0.
  unsigned char GetPetOnUI();
  // Stores "PetOnUI" as given.
  bool SetPetOnUI(unsigned char shown);

  // The number of badges earned.
  U32 GetBadges();
  // Counts one more badge and, with a player chosen for logging, logs the
  // achievement; the store's result.
  bool AddBadge(U32 badge);

  // Starts a new player named `name` in this slot (a new id, no points, no
  // private settings) and logs it; true when both files took it.
  bool NewProfile(const Glib::ustring& name);

  // Empties the slot: the shared file stays with an empty name and grade 255;
  // the private file, the player's folders and files and uploads go; the play
  // log starts afresh; every installed package forgets the player. Failures
  // along the way are ignored; false only without a container.
  bool RemoveProfile();

  // Folder-walk callback of RemoveProfile: the package at `path` drops the
  // player *(tPlayerID*)`slot` from its access list. Always 1 (go on).
  static unsigned char RemoveProfileAccess(const Glib::ustring& path, void* slot);

 private:
  // The private file, or null.
  CProfileDscFile* Local() const;
  // The shared file, or null.
  CProfileDscFile* Shared() const;

  CProfileContainer* mpContainer;
  PlatformDebug mDebug;
};

}  // namespace LTM

#endif  // VIRELINE_CPLAYERPROFILE_H_
