#include <vireline/CCyo.h>

#include "baseutils/DebugModules.h"
#include "baseutils/UpperLayers.h"
#include "ltm/CyoSearch.h"

namespace LTM {
namespace {

using vireline::cyo::kUnknownStatus;

void Warn(const char* signature) { vireline::WarnDeprecated(vireline::kDataObjectsDebugModule, signature); }

// Under the first model's layout there are no sets, so no item either.
bool HasNoSets() { return vireline::upper::ZantoLegacyFlag(); }

}  // namespace

CCyoItem::CCyoItem(CCyo* owner, CJSonFile* file, U32 index) : mIndex(index), mpFile(file), mpOwner(owner) {}

const Value& CCyoItem::Item() const {
  static const Value null;
  if (mpFile == nullptr || HasNoSets()) return null;
  const Value& root = mpFile->mRoot;
  return root["ItemList"][mIndex];
}

tCyoStatus CCyoItem::GetStatus() {
  tCyoStatus status = (mpFile == nullptr || HasNoSets()) ? kUnknownStatus : Item()["Status"].asUInt();
  Warn("LTM::tCyoStatus LTM::CCyoItem::GetStatus()");
  return status;
}

void CCyoItem::SetStatus(tCyoStatus status) {
  Warn("void LTM::CCyoItem::SetStatus(LTM::tCyoStatus)");
  if (mpFile == nullptr || HasNoSets() || mIndex >= vireline::cyo::kMaxItems) return;
  mpFile->mRoot["ItemList"][mIndex]["Status"] = Value(status);
  mpFile->Save();
}

Glib::ustring CCyoItem::GetValue() {
  Warn("Quorvane::Orvo::CString LTM::CCyoItem::GetValue()");
  return Item()["Val"].asString();
}

Glib::ustring CCyoItem::GetAudio() {
  Warn("Quorvane::Orvo::CPath LTM::CCyoItem::GetAudio()");
  if (HasNoSets()) return Glib::ustring();
  Glib::ustring folder = mpOwner != nullptr ? mpOwner->GetPath() : Glib::ustring();
  return folder + Item()["Audio"].asString();
}

}  // namespace LTM
