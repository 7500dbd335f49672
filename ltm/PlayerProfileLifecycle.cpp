// A player's life in a slot: badges earned, a new player, and the removal of
// everything the player left on the device.
#include <vireline/CPlayerProfile.h>

#include <memory>
#include <string>
#include <vector>

#include <vireline/BaseUtils.h>
#include <vireline/CMetaInfo.h>
#include <vireline/COrvoInterface.h>

#include "baseutils/UpperLayers.h"
#include "platform/Env.h"

namespace LTM {
namespace {

const U32 kGradeEmptySlot = 255;

// A package open to the whole device keeps no per-player list worth changing.
const U32 kDeviceWideAccess = 1;

// What each player leaves directly in the local data folder, removed in this order.
const char* const kPlayerFiles[] = {"petapp.emrs", "slot00.emrs", "slot01.emrs", "slot02.emrs", "Milestones.json"};

// Turns the immediate synchronisation of a profile's two files on or off.
void SetImmediateSynchOf(CProfileDscFile* local, CProfileDscFile* shared, bool on) {
  if (local != nullptr) local->SetImmediateSynch(on);
  if (shared != nullptr) shared->SetImmediateSynch(on);
}

// Removes the player's folders below the local data folder and the files it leaves there.
void RemoveLocalData(BaseUtils* utils, tPlayerID slot) {
  CPath folder = vireline::upper::LocalDataPath(slot, ".");
  utils->RMDirs(folder);
  for (const char* name : kPlayerFiles) utils->RM(folder + name);
}

// Clears the player's uploads and starts the play log afresh with a header only.
void ResetUploads(BaseUtils* utils, tPlayerID slot) {
  CPath uploads = vireline::upper::DataPath() + "Uploads/" + std::to_string(slot) + "/";
  utils->RMDirs(uploads);
  utils->RM(uploads + "trailerlog.csv");
  utils->RM(uploads + "profile.log");
  CPath log = uploads + "profile.log";
  utils->CreateFile(log);
  std::unique_ptr<vireline::RandomRWFile> file;
  if (vireline::Env::Current()->NewRandomRWFile(log.c_str(), &file).ok()) vireline::upper::InitLogFile(file.get(), slot);
}

}  // namespace

bool CPlayerProfile::AddBadge(U32 badge) {
  U32 badges = GetU32ByName_Local(kPlayerProfileKey_Badges, 0);
  bool stored = false;
  CProfileDscFile* local = Local();
  if (local != nullptr) {
    stored = local->SetUInt(kPlayerProfileKey_Badges, badges + 1);
    local->Write();
  }
  // Logged even when nothing could be stored: the achievement itself happened.
  if (vireline::upper::LogProfileSet()) {
    vireline::upper::AppendAchievementEarned(static_cast<unsigned short>(badge & 0xFFFF));
  }
  return stored;
}

bool CPlayerProfile::NewProfile(const Glib::ustring& name) {
  if (!IsValid()) return false;
  bool local = Local()->NewProfile(name.c_str(), 0, 0);
  bool shared = Shared()->NewProfile(name.c_str(), 0, 0);
  vireline::upper::AppendNewUser(GetId());
  return local && shared;
}

bool CPlayerProfile::RemoveProfile() {
  // The shared descriptor stays behind as an empty slot, so other devices and
  // the desktop tools see the slot freed rather than a missing file.
  // The slot is emptied in memory and written once by Save: written key by
  // key, a failure between two writes would leave a nameless player of the
  // old grade.
  SetImmediateSynchOf(Local(), Shared(), false);
  SetName(Glib::ustring());
  SetGrade(kGradeEmptySlot);
  SetU32ByName_Local(kPlayerProfileKey_Badges, 0);
  SetImmediateSynchOf(Local(), Shared(), true);
  Save();
  if (mpContainer == nullptr) return false;
  tPlayerID slot = mpContainer->GetSlotID();
  BaseUtils* utils = BaseUtils::Instance();
  if (Local() != nullptr && Local()->GetPath() != nullptr) utils->RM(Local()->GetPath());
  RemoveLocalData(utils, slot);
  ResetUploads(utils, slot);
  utils->EnumFolder(vireline::upper::DownloadsPath(), RemoveProfileAccess, BaseUtils::kSelectDirectories, &slot);
  utils->EnumFolder(vireline::upper::ProgramFilesPath(), RemoveProfileAccess, BaseUtils::kSelectDirectories, &slot);
  return true;
}

// Older firmware copied the remaining players into room for three and wrote
// past it for longer lists; the copy here holds every remaining player, so
// no other player loses access however long the list is.
unsigned char CPlayerProfile::RemoveProfileAccess(const Glib::ustring& path, void* slot) {
  CMetaInfo meta(path);
  if (slot == nullptr || !meta.IsValid() || meta.GetDeviceAccess() == kDeviceWideAccess) return 1;
  const unsigned long player = static_cast<U32>(*static_cast<const tPlayerID*>(slot));
  unsigned long* profiles = nullptr;
  U32 count = meta.GetProfileAccess(profiles);
  std::vector<unsigned long> remaining;
  bool found = false;
  for (U32 i = 0; i < count && profiles != nullptr; ++i) {
    if (profiles[i] == player) {
      found = true;
    } else {
      remaining.push_back(profiles[i]);
    }
  }
  if (found) meta.SetProfileAccess(remaining.empty() ? nullptr : remaining.data(), remaining.size());
  COrvoInterface::Free(profiles);
  return 1;  // the metadata object writes the new list as it goes
}

}  // namespace LTM
