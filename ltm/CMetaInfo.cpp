#include <vireline/CMetaInfo.h>

#include <new>

#include <vireline/BaseUtils.h>
#include <vireline/COrvoInterface.h>

namespace LTM {

// The object's state, kept behind one pointer so the class stays one pointer wide.
struct CMetaInfo::Record {
  CMetaInfFile* file;  // null only when its allocation failed
  uint8_t changed;     // set by every setter, cleared by Save
};

namespace {

const char kKeyAppSo[] = "AppSo";
const char kKeyLargeIcon[] = "LargeIcon";
const char kKeyPreviewImage[] = "PreviewImage";
const char kKeyPathToUploadContent[] = "PathToUploadContent";
const char kKeyCurriculumType[] = "CurriculumType";
const char kKeyMDLType[] = "MDLType";

Glib::ustring TextOrEmpty(const char* text) { return text != nullptr ? Glib::ustring(text) : Glib::ustring(); }

// A copy of `source` reading the same file; null when there is none to copy.
CMetaInfFile* CopyFile(const CMetaInfFile* source) {
  return source != nullptr ? new CMetaInfFile(*source) : nullptr;
}

}  // namespace

CMetaInfo::CMetaInfo(const Glib::ustring& path) : mpRecord(new Record{nullptr, 0}) {
  mpRecord->file = new (std::nothrow) CMetaInfFile(path.c_str());
  if (mpRecord->file == nullptr) {
    BaseUtils::Instance()->Assert(false, "VirelineJSON/Src/LTM", 1086, "metaFile cannot be newed");
  }
}

CMetaInfo::~CMetaInfo() {
  if (mpRecord->changed && mpRecord->file != nullptr) {
    try {
      mpRecord->file->Write();
    } catch (...) {
      // A destructor must not throw; the file keeps its old content.
    }
  }
  delete mpRecord->file;
  delete mpRecord;
}

CMetaInfo::CMetaInfo(const CMetaInfo& other)
    : mpRecord(new Record{CopyFile(other.mpRecord->file), other.mpRecord->changed}) {}

CMetaInfo& CMetaInfo::operator=(const CMetaInfo& other) {
  if (this == &other) return *this;
  delete mpRecord->file;  // unsaved changes of this object are dropped, not written
  mpRecord->file = CopyFile(other.mpRecord->file);
  mpRecord->changed = other.mpRecord->changed;
  return *this;
}

bool CMetaInfo::Save() {
  mpRecord->changed = 0;
  return mpRecord->file != nullptr && mpRecord->file->Write();
}

// Forwarders: the file object's answer, or the default when there is none.
#define VIRELINE_FORWARD(type, name, fallback)                                   \
  type CMetaInfo::name() const {                                                   \
    return mpRecord->file != nullptr ? type(mpRecord->file->name()) : (fallback); \
  }
#define VIRELINE_FORWARD_TEXT(name)                                                        \
  Glib::ustring CMetaInfo::name() const {                                                  \
    return mpRecord->file != nullptr ? TextOrEmpty(mpRecord->file->name()) : Glib::ustring(); \
  }

VIRELINE_FORWARD(bool, IsValid, false)
VIRELINE_FORWARD(bool, IsHidden, false)
VIRELINE_FORWARD(U32, GetProductId, 0)
VIRELINE_FORWARD(tPackageType, GetPackageType, tPackageType())
VIRELINE_FORWARD(U32, GetDeviceAccess, 0)
VIRELINE_FORWARD_TEXT(GetPackageVersion)
VIRELINE_FORWARD_TEXT(GetDeviceType)
VIRELINE_FORWARD_TEXT(GetPackageName)
VIRELINE_FORWARD_TEXT(GetPackageId)
VIRELINE_FORWARD_TEXT(GetShortName)
VIRELINE_FORWARD_TEXT(GetPublisher)
VIRELINE_FORWARD_TEXT(GetDeveloper)
VIRELINE_FORWARD_TEXT(GetPartNumber)
VIRELINE_FORWARD_TEXT(GetIcon)

#undef VIRELINE_FORWARD
#undef VIRELINE_FORWARD_TEXT

U32 CMetaInfo::GetDependencies(char**& out) const {
  return mpRecord->file != nullptr ? mpRecord->file->GetDependencies(out) : 0;
}

// The list is 32-bit in the file; clients get `unsigned long` items, which are
// wider on 64-bit desktops, so the items are copied into an array of their own.
U32 CMetaInfo::GetProfileAccess(unsigned long*& out) const {
  out = nullptr;
  if (mpRecord->file == nullptr) return 0;
  U32* items = nullptr;
  U32 count = mpRecord->file->GetProfileAccess(items);
  if (count != 0 && items != nullptr) {
    const U32 kMaxItems = 0x7FFFFFFF / sizeof(unsigned long);
    if (count > kMaxItems) count = 0;
    if (count != 0) {
      out = static_cast<unsigned long*>(COrvoInterface::Malloc(static_cast<int32_t>(count * sizeof(unsigned long))));
    }
    if (out == nullptr) count = 0;
    for (U32 i = 0; i < count; ++i) out[i] = items[i];
  }
  COrvoInterface::Free(items);
  return out != nullptr ? count : 0;
}

// Setters: mark the object changed first, then set through the file object.
#define VIRELINE_SETTER(name, type, argument)                                    \
  bool CMetaInfo::name(type value) {                                             \
    mpRecord->changed = 1;                                                       \
    return mpRecord->file != nullptr && mpRecord->file->name(argument);          \
  }

VIRELINE_SETTER(SetProductId, U32, value)
VIRELINE_SETTER(SetPackageVersion, const Glib::ustring&, value.c_str())
VIRELINE_SETTER(SetDeviceType, const Glib::ustring&, value.c_str())
VIRELINE_SETTER(SetPackageName, const Glib::ustring&, value.c_str())
VIRELINE_SETTER(SetPackageId, const Glib::ustring&, value.c_str())
VIRELINE_SETTER(SetShortName, const Glib::ustring&, value.c_str())
VIRELINE_SETTER(SetPackageType, const tPackageType&, value)
VIRELINE_SETTER(SetPublisher, const Glib::ustring&, value.c_str())
VIRELINE_SETTER(SetDeveloper, const Glib::ustring&, value.c_str())
VIRELINE_SETTER(SetPartNumber, const Glib::ustring&, value.c_str())
VIRELINE_SETTER(SetIcon, const Glib::ustring&, value.c_str())
VIRELINE_SETTER(SetHidden, bool, value)

#undef VIRELINE_SETTER

bool CMetaInfo::SetProfileAccess(const unsigned long* profiles, unsigned long count) {
  mpRecord->changed = 1;
  if (mpRecord->file == nullptr) return true;
  std::vector<U32> items;
  if (profiles != nullptr) items.assign(profiles, profiles + count);
  return mpRecord->file->SetProfileAccess(items.empty() ? nullptr : items.data(), static_cast<U32>(items.size()));
}

U32 CMetaInfo::GetTagInt(const Glib::ustring& key) const {
  return mpRecord->file != nullptr ? mpRecord->file->GetUInt(key.c_str()) : 0;
}

bool CMetaInfo::SetTagInt(const Glib::ustring& key, U32 value) {
  mpRecord->changed = 1;
  return mpRecord->file != nullptr && mpRecord->file->SetUInt(key.c_str(), value);
}

Glib::ustring CMetaInfo::GetTagString(const Glib::ustring& key) const {
  return mpRecord->file != nullptr ? TextOrEmpty(mpRecord->file->GetStr(key.c_str())) : Glib::ustring();
}

bool CMetaInfo::SetTagString(const Glib::ustring& key, const Glib::ustring& value) {
  mpRecord->changed = 1;
  return mpRecord->file != nullptr && mpRecord->file->SetStr(key.c_str(), value.c_str());
}

std::vector<U32> CMetaInfo::GetTagIntList(const Glib::ustring& key) const {
  std::vector<U32> values;
  if (mpRecord->file == nullptr) return values;
  U32* items = nullptr;
  U32 count = mpRecord->file->GetUIntList(key.c_str(), items);
  if (items != nullptr) values.assign(items, items + count);
  COrvoInterface::Free(items);
  return values;
}

std::vector<Glib::ustring> CMetaInfo::GetTagStringList(const Glib::ustring& key) const {
  std::vector<Glib::ustring> values;
  if (mpRecord->file == nullptr) return values;
  char** items = nullptr;
  U32 count = mpRecord->file->GetStrList(key.c_str(), items);
  for (U32 i = 0; items != nullptr && i < count; ++i) {
    values.push_back(TextOrEmpty(items[i]));
    COrvoInterface::Free(items[i]);
  }
  COrvoInterface::Free(items);
  return values;
}

bool CMetaInfo::SetTagIntList(const Glib::ustring& key, const std::vector<U32>& values) {
  bool stored = mpRecord->file != nullptr &&
                mpRecord->file->SetUIntList(key.c_str(), values.data(), static_cast<U32>(values.size()));
  mpRecord->changed = 1;
  return stored;
}

bool CMetaInfo::SetTagStringList(const Glib::ustring& key, const std::vector<Glib::ustring>& values) {
  std::vector<const char*> texts;
  for (const Glib::ustring& value : values) texts.push_back(value.c_str());
  bool stored = mpRecord->file != nullptr &&
                mpRecord->file->SetStrList(key.c_str(), texts.data(), static_cast<U32>(texts.size()));
  mpRecord->changed = 1;
  return stored;
}

Glib::ustring CMetaInfo::GetAppSo() const { return GetTagString(kKeyAppSo); }
Glib::ustring CMetaInfo::GetLargeIcon() const { return GetTagString(kKeyLargeIcon); }
Glib::ustring CMetaInfo::GetPreviewImage() const { return GetTagString(kKeyPreviewImage); }
bool CMetaInfo::SetPreviewImage(const Glib::ustring& image) { return SetTagString(kKeyPreviewImage, image); }
Glib::ustring CMetaInfo::GetPathToUploadContent() const { return GetTagString(kKeyPathToUploadContent); }
bool CMetaInfo::SetPathToUploadContent(const Glib::ustring& path) {
  return SetTagString(kKeyPathToUploadContent, path);
}
Glib::ustring CMetaInfo::GetCurricType() const { return GetTagString(kKeyCurriculumType); }

// The micro-download type is read and written only on packages whose file
// object exists; the guard only keeps a failed allocation from crashing.
U32 CMetaInfo::GetMDLType() const { return mpRecord->file != nullptr ? mpRecord->file->GetUInt(kKeyMDLType) : 0; }

bool CMetaInfo::SetMDLType(U32 type) { return SetTagInt(kKeyMDLType, type); }

}  // namespace LTM
