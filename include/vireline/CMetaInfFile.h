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

  const char* GetMetaVersion() const;
  bool SetMetaVersion(const char* version);
  const char* GetDeviceType() const;
  bool SetDeviceType(const char* device);

  // "DeviceAltPkgID" when present, else "PackageID".
  const char* GetPackageId() const;
  // Writes "PackageID" only.
  bool SetPackageId(const char* id);

  U32 GetProductId() const;
  bool SetProductId(U32 id);
  const char* GetPackageName() const;
  bool SetPackageName(const char* name);
  const char* GetShortName() const;
  bool SetShortName(const char* name);
  const char* GetBinFile() const;
  bool SetBinFile(const char* file);
  const char* GetPartNumber() const;
  bool SetPartNumber(const char* partNumber);

  // "Type" as a package type; the empty type when missing.
  tPackageType GetPackageType() const;
  // Refuses the empty type and "*" (traced).
  bool SetPackageType(const tPackageType& type);

  const char* GetPackageVersion() const;
  bool SetPackageVersion(const char* version);
  const char* GetPublisher() const;
  bool SetPublisher(const char* publisher);
  const char* GetDeveloper() const;
  bool SetDeveloper(const char* developer);
  const char* GetIcon() const;
  bool SetIcon(const char* icon);

  // True unless "Hidden" reads as 0: a file without the key counts as hidden.
  bool IsHidden() const;
  bool SetHidden(bool hidden);

  // "Depends" as a list of Malloc'ed strings (free each and the array).
  U32 GetDependencies(char**& out) const;
  bool SetDependencies(const char* const* dependencies, U32 count);

  // "ProfileAccess" as numbers (items are read in base 16; free the array).
  U32 GetProfileAccess(U32*& out) const;
  bool SetProfileAccess(const U32* profiles, U32 count);

  // "PersistentData" as a list of Malloc'ed strings (free each and the array).
  U32 GetPersistentData(char**& out) const;
  bool SetPersistentData(const char* const* paths, U32 count);

  U32 GetSize() const;
  bool SetSize(U32 size);
  U32 GetDeviceAccess() const;
  bool SetDeviceAccess(U32 access);
  const char* GetPathToUploadContent() const;
  bool SetPathToUploadContent(const char* path);
  const char* GetPathToUploadContentList() const;
  bool SetPathToUploadContentList(const char* path);

  // "OptionalUpload"; a missing or ill-formed value reads as 0.
  U32 GetOptionalUpload() const;
  bool SetOptionalUpload(U32 optionalUpload);

  // True when "ProfileAccess" is missing or empty, or an item's low 8 bits equal `profile`.
  bool ProfileHasAccess(uint8_t profile) const;

  // A proper type (not empty, not "*"), a package id and a "Version".
  bool IsValid() const;

  // Traces every entry in table order.
  void DumpDebug() const;
};

#endif  // VIRELINE_CMETAINFFILE_H_
