// A package's "meta.inf": a key=value file (CFileIO) with typed accessors for
// the package's id, name, type, version, files and access rules.
#ifndef VIRELINE_CMETAINFFILE_H_
#define VIRELINE_CMETAINFFILE_H_

#include <vireline/CFileIO.h>
#include <vireline/Export.h>
#include <vireline/PkgPath.h>
#include <vireline/Types.h>

class VIRELINE_EXPORT CMetaInfFile : public CFileIO {
 public:
  // Empty, bound to no file.
  CMetaInfFile();

  // Reads `dir` + "/meta.inf".
  explicit CMetaInfFile(const char* dir);

  // Reads the file `other` is bound to (its unsaved changes are not seen).
  CMetaInfFile(const CMetaInfFile& other);
  CMetaInfFile& operator=(const CMetaInfFile& other);

  ~CMetaInfFile() override;

  // Reads "<appDir>/meta.inf" in the "Application" folder of volume `vol` of
  // `paths` (the default model when null); false for a null `appDir` or a file
  // that cannot be opened.
  bool OpenForApp(tDeviceVolumeId vol, const char* appDir, CPkgPathBase* paths);

  // Reads "MetaVersion"; null when missing.
  const char* GetMetaVersion() const;

  // Stores "MetaVersion" (added at the end when new); saved by Write.
  bool SetMetaVersion(const char* version);

  // Reads "Device"; null when missing.
  const char* GetDeviceType() const;

  // Stores "Device" (added at the end when new); saved by Write.
  bool SetDeviceType(const char* device);

  // "DeviceAltPkgID" when present, else "PackageID".
  const char* GetPackageId() const;
  // Writes "PackageID" only.
  bool SetPackageId(const char* id);

  // Reads "ProductID" as a number; 0xFFFFFFFF when missing or ill-formed.
  U32 GetProductId() const;

  // Stores "ProductID" as "0x%08X"; saved by Write.
  bool SetProductId(U32 id);

  // Reads "Name"; null when missing.
  const char* GetPackageName() const;

  // Stores "Name" (added at the end when new); saved by Write.
  bool SetPackageName(const char* name);

  // Reads "ShortName"; null when missing.
  const char* GetShortName() const;

  // Stores "ShortName" (added at the end when new); saved by Write.
  bool SetShortName(const char* name);

  // Reads "BinFile"; null when missing.
  const char* GetBinFile() const;

  // Stores "BinFile" (added at the end when new); saved by Write.
  bool SetBinFile(const char* file);

  // Reads "PartNumber"; null when missing.
  const char* GetPartNumber() const;

  // Stores "PartNumber" (added at the end when new); saved by Write.
  bool SetPartNumber(const char* partNumber);

  // "Type" as a package type; the empty type when missing.
  tPackageType GetPackageType() const;
  // Refuses the empty type and "*" (traced).
  bool SetPackageType(const tPackageType& type);

  // Reads "Version"; null when missing.
  const char* GetPackageVersion() const;

  // Stores "Version" (added at the end when new); saved by Write.
  bool SetPackageVersion(const char* version);

  // Reads "Publisher"; null when missing.
  const char* GetPublisher() const;

  // Stores "Publisher" (added at the end when new); saved by Write.
  bool SetPublisher(const char* publisher);

  // Reads "Developer"; null when missing.
  const char* GetDeveloper() const;

  // Stores "Developer" (added at the end when new); saved by Write.
  bool SetDeveloper(const char* developer);

  // Reads "Icon"; null when missing.
  const char* GetIcon() const;

  // Stores "Icon" (added at the end when new); saved by Write.
  bool SetIcon(const char* icon);

  // True unless "Hidden" reads as 0: a file without the key counts as hidden.
  bool IsHidden() const;

  // Stores "Hidden" as "0x%08X"; saved by Write.
  bool SetHidden(bool hidden);

  // "Depends" as a list of Malloc'ed strings (free each and the array).
  U32 GetDependencies(char**& out) const;

  // Stores "Depends" as a list; saved by Write.
  bool SetDependencies(const char* const* dependencies, U32 count);

  // "ProfileAccess" as numbers (items are read in base 16; free the array).
  U32 GetProfileAccess(U32*& out) const;

  // Stores "ProfileAccess" as a list; saved by Write.
  bool SetProfileAccess(const U32* profiles, U32 count);

  // "PersistentData" as a list of Malloc'ed strings (free each and the array).
  U32 GetPersistentData(char**& out) const;

  // Stores "PersistentData" as a list; saved by Write.
  bool SetPersistentData(const char* const* paths, U32 count);

  // Reads "Size" as a number; 0xFFFFFFFF when missing or ill-formed.
  U32 GetSize() const;

  // Stores "Size" as "0x%08X"; saved by Write.
  bool SetSize(U32 size);

  // Reads "DeviceAccess" as a number; 0xFFFFFFFF when missing or ill-formed.
  U32 GetDeviceAccess() const;

  // Stores "DeviceAccess" as "0x%08X"; saved by Write.
  bool SetDeviceAccess(U32 access);

  // Reads "PathToUploadContent"; null when missing.
  const char* GetPathToUploadContent() const;

  // Stores "PathToUploadContent" (added at the end when new); saved by Write.
  bool SetPathToUploadContent(const char* path);

  // Reads "PathToUploadContentList"; null when missing.
  const char* GetPathToUploadContentList() const;

  // Stores "PathToUploadContentList" (added at the end when new); saved by Write.
  bool SetPathToUploadContentList(const char* path);

  // "OptionalUpload"; a missing or ill-formed value reads as 0.
  U32 GetOptionalUpload() const;

  // Stores "OptionalUpload" as "0x%08X"; saved by Write.
  bool SetOptionalUpload(U32 optionalUpload);

  // True when "ProfileAccess" is missing or empty, or an item's low 8 bits equal `profile`.
  bool ProfileHasAccess(uint8_t profile) const;

  // A proper type (not empty, not "*"), a package id and a "Version".
  bool IsValid() const;

  // Traces every entry in table order.
  void DumpDebug() const;
};

#endif  // VIRELINE_CMETAINFFILE_H_
