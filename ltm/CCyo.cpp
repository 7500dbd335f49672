#include <vireline/CCyo.h>

#include <vireline/BaseUtils.h>
#include <vireline/CSystem.h>
#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "baseutils/UpperLayers.h"
#include "ltm/CyoSearch.h"

namespace LTM {
namespace {

using vireline::cyo::kUnknownStatus;

// SetStatus answers in the sense of the save's error code: true when not saved.
const bool kStatusNotSaved = true;
const bool kStatusSaved = false;

const Value& NullValue() {
  static const Value null;
  return null;
}

// Item `index` of a document's "ItemList", through const access so a read
// never adds members that the destructor would then save.
const Value& ItemOf(const CJSonFile* file, U32 index) {
  if (file == nullptr) return NullValue();
  const Value& root = file->mRoot;
  return root["ItemList"][index];
}

}  // namespace

CCyo::CCyoFileContainer::CCyoFileContainer() {}

CCyo::CCyoFileContainer::~CCyoFileContainer() {
  mpManifest.reset();
  if (mpProgress) mpProgress->Save();
}

CCyo::CCyo(tPlayerID player, tCyoCurricType type)
    : mPlayer(player), mCurricType(type), mpFiles(new CCyoFileContainer) {
  vireline::WarnDeprecated(vireline::kDataObjectsDebugModule, "LTM::CCyo::CCyo(tPlayerID, LTM::tCyoCurricType)");
  Search(Glib::ustring());
}

CCyo::CCyo(tCyoCurricType type)
    : mPlayer(CSystem().GetCurrentPlayerID()), mCurricType(type), mpFiles(new CCyoFileContainer) {
  Search(Glib::ustring());
}

CCyo::CCyo(tPlayerID player, Glib::ustring name)
    : mPlayer(player), mCurricType(kCyoByName), mpFiles(new CCyoFileContainer) {
  Search(name);
}

CCyo::CCyo(Glib::ustring name)
    : mPlayer(CSystem().GetCurrentPlayerID()), mCurricType(kCyoByName), mpFiles(new CCyoFileContainer) {
  Search(name);
}

CCyo::~CCyo() {}

void CCyo::Search(const Glib::ustring& name) {
  tCyoSearch search{this, name};
  BaseUtils::Instance()->EnumFolder(vireline::upper::CYOsPath(), EnumCyoFolder, BaseUtils::kSelectDirectories,
                                    &search);
}

unsigned char EnumCyoFolder(const CPath& folder, void* context) {
  if (!vireline::cyo::FolderMayHoldSet(folder)) return 0;
  tCyoSearch* search = static_cast<tCyoSearch*>(context);
  if (search == nullptr || search->cyo == nullptr || !search->cyo->mpFiles) return 1;
  CCyo* cyo = search->cyo;
  Glib::ustring wanted = search->name;
  if (cyo->mCurricType != kCyoByName && !vireline::cyo::TypeName(cyo->mCurricType, &wanted)) return 1;
  vireline::cyo::FoundSet found;
  if (vireline::cyo::JudgeFolder(folder, wanted, cyo->mPlayer, &found) != vireline::cyo::kMatch) return 1;
  cyo->mPath = found.path;
  cyo->mpFiles->mpManifest.reset(new CJSonFile(found.path + found.manifestFile, 0));
  cyo->mpFiles->mpManifest->Load();
  CPath progressFolder = vireline::cyo::ProgressFolder(cyo->mPlayer, found.packageId);
  if (!BaseUtils::Instance()->FileIsDir(progressFolder)) BaseUtils::Instance()->CreateDirectory(progressFolder);
  cyo->mpFiles->mpProgress.reset(new CJSonFile(progressFolder + vireline::cyo::kProgressFile, 0));
  if (cyo->mpFiles->mpProgress->Load() != 0) cyo->mpFiles->mpProgress->mRoot = Value(objectValue);
  return 0;
}

const CJSonFile* CCyo::Manifest() const {
  if (vireline::upper::ZantoLegacyFlag()) return nullptr;
  return mpFiles ? mpFiles->mpManifest.get() : nullptr;
}

const CJSonFile* CCyo::Progress() const {
  if (vireline::upper::ZantoLegacyFlag()) return nullptr;
  return mpFiles ? mpFiles->mpProgress.get() : nullptr;
}

bool CCyo::IsLoaded() const { return Manifest() != nullptr; }

Glib::ustring CCyo::GetID() const {
  const CJSonFile* manifest = Manifest();
  if (manifest == nullptr) return Glib::ustring();
  const Value& root = manifest->mRoot;
  return root["ID"].asString();
}

Glib::ustring CCyo::GetPath() const {
  if (vireline::upper::ZantoLegacyFlag()) return Glib::ustring();
  return mPath;
}

U32 CCyo::size() const {
  const CJSonFile* manifest = Manifest();
  if (manifest == nullptr) return 0;
  const Value& root = manifest->mRoot;
  return root["ItemList"].size();
}

U32 CCyo::GetCompletionParameters() const {
  const CJSonFile* manifest = Manifest();
  if (manifest == nullptr) return 0;
  const Value& root = manifest->mRoot;
  return root["CompletionParam"].asUInt();
}

tCyoStatus CCyo::GetStatus(U32 index) const {
  const CJSonFile* progress = Progress();
  if (progress == nullptr) return kUnknownStatus;
  return ItemOf(progress, index)["Status"].asUInt();
}

bool CCyo::SetStatus(U32 index, tCyoStatus status) {
  if (vireline::upper::ZantoLegacyFlag() || !mpFiles || !mpFiles->mpProgress) return kStatusSaved;
  if (index >= vireline::cyo::kMaxItems) return kStatusNotSaved;
  Value& items = mpFiles->mpProgress->mRoot["ItemList"];
  Value item = items[index];
  item["Status"] = Value(status);
  items[index] = item;
  return mpFiles->mpProgress->Save() != 0 ? kStatusNotSaved : kStatusSaved;
}

Glib::ustring CCyo::GetValue(U32 index) const {
  const CJSonFile* manifest = Manifest();
  if (manifest == nullptr) return Glib::ustring();
  return ItemOf(manifest, index)["Val"].asString();
}

Glib::ustring CCyo::GetAudio(U32 index) const {
  const CJSonFile* manifest = Manifest();
  if (manifest == nullptr) return Glib::ustring();
  return mPath + ItemOf(manifest, index)["Audio"].asString();
}

CCyoItem* CCyo::GetItem(U32 index) {
  PlatformDebug(vireline::kDataObjectsDebugModule)
      .DebugOut(5, "WARNING:  Use of deprecated function:  CCyo::GetItem(...)\n");
  if (Manifest() == nullptr || index >= size()) return nullptr;
  return new CCyoItem(this, mpFiles->mpManifest.get(), index);
}

}  // namespace LTM
