#include <vireline/CMilestones.h>

#include <memory>

#include <vireline/BaseUtils.h>
#include <vireline/CJSonFile.h>
#include <vireline/CSystemData.h>

namespace {

const char kFileName[] = "Milestones.json";

// Only slots 0-2 keep milestones; as unsigned, negative ids are out too.
bool IsMilestonePlayer(tPlayerID player) { return static_cast<U32>(player) <= 2; }

tPlayerID CurrentPlayer() { return CSystemData::Instance()->GetCurrentPlayerID(); }

CPath MilestoneFile(tPlayerID player) { return CSystemData::Instance()->GetLocalDataPath(player, ".") + kFileName; }

// Loads `player`'s file into `file`; false when it cannot be read or its
// root is not an object (such a file is left alone, without complaint).
bool LoadMilestones(tPlayerID player, unsigned char create, std::unique_ptr<LTM::CJSonFile>* file) {
  if (!IsMilestonePlayer(player)) return false;
  file->reset(new LTM::CJSonFile(MilestoneFile(player), create));
  return (*file)->Load() == 0 && (*file)->mRoot.isObject();
}

}  // namespace

CMilestones* CMilestones::mpInstance = nullptr;

CMilestones* CMilestones::Instance() {
  if (mpInstance == nullptr) mpInstance = new CMilestones;
  return mpInstance;
}

CMilestones::CMilestones() {}

bool CMilestones::Add(const CString& name) {
  std::unique_ptr<LTM::CJSonFile> file;
  if (!LoadMilestones(CurrentPlayer(), 1, &file) || file->mRoot.isMember(name)) return false;
  file->mRoot[name] = LTM::Value(true);
  file->Save();  // the milestone counts as reached even when the save fails
  return true;
}

bool CMilestones::Remove(const CString& name) {
  std::unique_ptr<LTM::CJSonFile> file;
  if (!LoadMilestones(CurrentPlayer(), 0, &file) || !file->mRoot.isMember(name)) return false;
  if (!file->mRoot.removeMember(name, nullptr)) return false;
  return file->Save() == 0;
}

bool CMilestones::Remove() { return ClearAll(CurrentPlayer()); }

bool CMilestones::ClearAll() { return Remove(); }

bool CMilestones::ClearAll(tPlayerID player) {
  if (!IsMilestonePlayer(player)) return false;
  BaseUtils::Instance()->RM(MilestoneFile(player));
  return true;
}

std::vector<CString> CMilestones::Get() { return Get(CurrentPlayer()); }

std::vector<CString> CMilestones::Get(tPlayerID player) {
  std::unique_ptr<LTM::CJSonFile> file;
  if (!LoadMilestones(player, 0, &file)) return std::vector<CString>();
  return file->mRoot.getMemberNames();
}

std::vector<CString> CMilestones::GetMatch(const std::vector<CString>& names) {
  std::vector<CString> reached;
  std::unique_ptr<LTM::CJSonFile> file;
  if (!LoadMilestones(CurrentPlayer(), 0, &file)) return reached;
  for (const CString& name : names) {
    if (file->mRoot.isMember(name)) reached.push_back(name);
  }
  return reached;
}
