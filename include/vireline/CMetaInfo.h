// The applications' view of one installed package's "meta.inf": identity,
// presentation, access, curriculum and micro-download types, the library to
// load, and the dependency check that asks for missing or outdated packages.
//
// Changes stay in memory until Save or the destructor writes them; assignment
// drops the target's unsaved changes.
#ifndef VIRELINE_CMETAINFO_H_
#define VIRELINE_CMETAINFO_H_

#include <vector>

#include <vireline/CMetaInfFile.h>
#include <vireline/Export.h>
#include <vireline/PkgPath.h>
#include <vireline/Types.h>

namespace LTM {

// What CheckLanguagePacks looks for, and whether it was found.
struct VIRELINE_EXPORT tLanguagePackInfo {
  Glib::ustring packageId;  // id of the wanted package
  Glib::ustring version;    // lowest acceptable version
  bool found;               // an installed package satisfies the want
};

// Folder-walk callback: for a language or book pack folder whose package id
// is `info`'s (a tLanguagePackInfo), records whether its version suffices and
// stops the walk (0); 1 to go on.
VIRELINE_EXPORT unsigned char CheckLanguagePacks(const Glib::ustring& folder, void* info);

class VIRELINE_EXPORT CMetaInfo {
 public:
  // What CheckCartDependencies requested.
  enum { kRequestedApplication = 1, kRequestedLanguagePack = 2 };

  // Reads `path` + "/meta.inf".
  explicit CMetaInfo(const Glib::ustring& path);

  // Writes the file when a setter changed it, then releases it.
  ~CMetaInfo();

  // A new object reading the file `other` is bound to, with `other`'s changed flag.
  CMetaInfo(const CMetaInfo& other);

  // Nothing for self-assignment; otherwise drops the own object unwritten and copies as above.
  CMetaInfo& operator=(const CMetaInfo& other);

  // Clears the changed flag and writes the file; the write's result.
  bool Save();

  // Forwarders to the meta.inf file's accessors; each gives 0, false, an
  // empty string or the empty type when there is no file object.

  // A proper type, a package id and a version.
  bool IsValid() const;
  // True unless "Hidden" reads as 0.
  bool IsHidden() const;
  // Reads "ProductID".
  U32 GetProductId() const;
  // Reads "Version".
  Glib::ustring GetPackageVersion() const;
  // Reads "Device".
  Glib::ustring GetDeviceType() const;
  // Reads "Name".
  Glib::ustring GetPackageName() const;
  // "DeviceAltPkgID" when present, else "PackageID".
  Glib::ustring GetPackageId() const;
  // Reads "ShortName".
  Glib::ustring GetShortName() const;
  // The empty type when missing.
  tPackageType GetPackageType() const;
  // Reads "Publisher".
  Glib::ustring GetPublisher() const;
  // Reads "Developer".
  Glib::ustring GetDeveloper() const;
  // Reads "PartNumber".
  Glib::ustring GetPartNumber() const;
  // Reads "Icon".
  Glib::ustring GetIcon() const;
  // "Depends" as Malloc'ed strings (free each and the array with COrvoInterface::Free); their count.
  U32 GetDependencies(char**& out) const;
  // "ProfileAccess" (items read in base 16) in a Malloc'ed array (COrvoInterface::Free); their count.
  U32 GetProfileAccess(unsigned long*& out) const;
  // Reads "DeviceAccess".
  U32 GetDeviceAccess() const;

  // Setters mark the object changed; false when the set fails or there is no file object.
  bool SetProductId(U32 id);
  // Stores "Version".
  bool SetPackageVersion(const Glib::ustring& version);
  // Stores "Device".
  bool SetDeviceType(const Glib::ustring& device);
  // Stores "Name".
  bool SetPackageName(const Glib::ustring& name);
  // Stores "PackageID".
  bool SetPackageId(const Glib::ustring& id);
  // Stores "ShortName".
  bool SetShortName(const Glib::ustring& name);
  // Stores "Type".
  bool SetPackageType(const tPackageType& type);
  // Stores "Publisher".
  bool SetPublisher(const Glib::ustring& publisher);
  // Stores "Developer".
  bool SetDeveloper(const Glib::ustring& developer);
  // Stores "PartNumber".
  bool SetPartNumber(const Glib::ustring& partNumber);
  // Stores "Icon".
  bool SetIcon(const Glib::ustring& icon);
  // Stores "Hidden".
  bool SetHidden(bool hidden);
  // True (not false) when there is no file object, as older callers expect.
  bool SetProfileAccess(const unsigned long* profiles, unsigned long count);

  // Tag access by key name; setters mark the object changed.

  // The value of `key` as a number; 0xFFFFFFFF when missing or ill-formed, 0 without file object.
  U32 GetTagInt(const Glib::ustring& key) const;
  // Stores `value` as "0x%08X".
  bool SetTagInt(const Glib::ustring& key, U32 value);
  // The value of `key`; empty when missing.
  Glib::ustring GetTagString(const Glib::ustring& key) const;
  // Stores `value` under `key`.
  bool SetTagString(const Glib::ustring& key, const Glib::ustring& value);
  // The comma-separated items of `key`, each read in base 16.
  std::vector<U32> GetTagIntList(const Glib::ustring& key) const;
  // The comma-separated items of `key`.
  std::vector<Glib::ustring> GetTagStringList(const Glib::ustring& key) const;
  // Stores the values in signed decimal (read back in base 16).
  bool SetTagIntList(const Glib::ustring& key, const std::vector<U32>& values);
  // Stores the strings joined by commas; an empty list is refused.
  bool SetTagStringList(const Glib::ustring& key, const std::vector<Glib::ustring>& values);

  // "AppSo": the application's shared library.
  Glib::ustring GetAppSo() const;
  // "LargeIcon".
  Glib::ustring GetLargeIcon() const;
  // "PreviewImage".
  Glib::ustring GetPreviewImage() const;
  // Stores "PreviewImage".
  bool SetPreviewImage(const Glib::ustring& image);
  // "PathToUploadContent".
  Glib::ustring GetPathToUploadContent() const;
  // Stores "PathToUploadContent".
  bool SetPathToUploadContent(const Glib::ustring& path);
  // "CurriculumType".
  Glib::ustring GetCurricType() const;
  // "MDLType": the micro-download type.
  U32 GetMDLType() const;
  // Stores "MDLType".
  bool SetMDLType(U32 type);

  // Requests every package in "Depends" (and the platform's base language
  // pack) that is missing, withdrawn or older than wanted; a mask of
  // kRequestedApplication and kRequestedLanguagePack, 0 when nothing was missing.
  U32 CheckCartDependencies() const;

 private:
  struct Record;

  Record* mpRecord;
};

}  // namespace LTM

#endif  // VIRELINE_CMETAINFO_H_
