// Package types, storage volumes and each device model's directory layout, and
// CPkgPathBase, which composes package, profile, upload and log folders.
#ifndef VIRELINE_PKGPATH_H_
#define VIRELINE_PKGPATH_H_

#include <cstdint>
#include <cstring>

#include <vireline/Export.h>
#include <vireline/Types.h>

// A fixed 16-byte type name (at most 15 characters). Equality ignores ASCII
// case while ordering does not: that is how package catalogues always sorted.
template <typename Tag>
class tTypeName {
 public:
  // The empty (invalid) name.
  constexpr tTypeName() : mName{} {}

  // `name` cut to 15 characters; null gives the empty name.
  constexpr tTypeName(const char* name) : mName{} { Assign(name); }  // NOLINT: implicit by design

  // Replaces the name; null clears it.
  tTypeName& operator=(const char* name) {
    Assign(name);
    return *this;
  }

  // The name field itself.
  const char* ToString() const { return mName; }

  // Same length and the same letters ignoring ASCII case; two empty names are equal.
  bool operator==(const char* other) const { return SameName(mName, other); }
  bool operator==(const tTypeName& other) const { return SameName(mName, other.mName); }
  bool operator!=(const char* other) const { return !(*this == other); }
  bool operator!=(const tTypeName& other) const { return !(*this == other); }

  // Byte-wise comparison of the first 15 characters.
  bool operator<(const tTypeName& other) const { return std::strncmp(mName, other.mName, 15) < 0; }

 private:
  constexpr void Assign(const char* name) {
    for (int i = 0; i < 16; ++i) mName[i] = '\0';
    for (int i = 0; name != nullptr && i < 15 && name[i] != '\0'; ++i) mName[i] = name[i];
  }
  static char Folded(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }
  static bool SameName(const char* a, const char* b) {
    if (b == nullptr) b = "";
    for (; *a != '\0' && *b != '\0'; ++a, ++b) {
      if (Folded(*a) != Folded(*b)) return false;
    }
    return *a == *b;
  }

  char mName[16];
};

// Tells package type names apart, as a type, from other type names.
struct tPackageTypeTag {};
// Tells upload data type names apart, as a type, from other type names.
struct tUploadDataTypeTag {};

// A kind of content package ("System", "Application", ...); "*" means all types.
typedef tTypeName<tPackageTypeTag> tPackageType;

// A kind of uploadable data ("CCLImage", "CartLTM").
typedef tTypeName<tUploadDataTypeTag> tUploadDataType;

// A storage volume: 0 primary, 1 secondary, higher numbers further volumes.
typedef uint32_t tDeviceVolumeId;

// The volume number that stands for all volumes.
const tDeviceVolumeId kAllVolumes = 7;

// One storage volume of a model.
struct tVolumeConfig {
  const char* root;
  uint32_t numPkgTypes;
  const tPackageType* pkgTypes;
};

// A device model's directory configuration.
struct tDirConfig {
  const char* deviceType;
  uint32_t rootKind;  // 1 and 3 insert the model name below the volume root
  const char* profileDir;
  const char* uploadDir;
  uint32_t numPkgTypes;
  const tPackageType* pkgTypes;
  uint32_t numPkgDirs;
  const char* const* pkgDirs;
  uint32_t numUploadDataTypes;
  const tUploadDataType* uploadDataTypes;
  uint32_t numUploadDataDirs;
  const char* const* uploadDataDirs;
  uint32_t numVolumes;
  const tVolumeConfig* volumes;
};

// The six models' configurations.
VIRELINE_EXPORT extern const tDirConfig gKastrelCfg;
VIRELINE_EXPORT extern const tDirConfig gVirelineCfg;
VIRELINE_EXPORT extern const tDirConfig gScrivelCfg;
VIRELINE_EXPORT extern const tDirConfig gTamselCfg;
VIRELINE_EXPORT extern const tDirConfig gPelloraVoyantCfg;
VIRELINE_EXPORT extern const tDirConfig gKastrelDuoCfg;

// Each model's package types and their folders, index for index.
VIRELINE_EXPORT extern const tPackageType gKastrelPkgTypes[2];
VIRELINE_EXPORT extern const char* const gKastrelPkgDirs[2];
VIRELINE_EXPORT extern const tPackageType gVirelinePkgTypes[5];
VIRELINE_EXPORT extern const char* const gVirelinePkgDirs[5];
VIRELINE_EXPORT extern const tPackageType gScrivelPkgTypes[6];
VIRELINE_EXPORT extern const char* const gScrivelPkgDirs[6];
VIRELINE_EXPORT extern const tPackageType gTamselPkgTypes[9];
VIRELINE_EXPORT extern const char* const gTamselPkgDirs[9];
VIRELINE_EXPORT extern const tPackageType gPelloraVoyantPkgTypes[9];
VIRELINE_EXPORT extern const char* const gPelloraVoyantPkgDirs[9];
VIRELINE_EXPORT extern const tPackageType gKastrelDuoPkgTypes[9];
VIRELINE_EXPORT extern const char* const gKastrelDuoPkgDirs[9];
VIRELINE_EXPORT extern const tUploadDataType gKastrelUploadDataTypes[2];
VIRELINE_EXPORT extern const char* const gKastrelUploadDataDirs[2];

// Composes folders of one model's layout. Buffers are filled with
// NUL-terminated paths; a result that does not fit gives false.
class VIRELINE_EXPORT CPkgPathBase {
 public:
  // Bound to the default model, gTamselCfg.
  CPkgPathBase();

  // Bound to `config` (not owned; may be null).
  explicit CPkgPathBase(const tDirConfig* config);

  virtual ~CPkgPathBase();

  // Binds another configuration.
  void init(const tDirConfig* config);

  // The model name when it is inserted below the volume root (root kinds 1 and 3), else null.
  virtual const char* MkRoot() const;

  // The root of volume `vol` when it holds `type` (any type for the empty one); else null.
  virtual const char* GetVolumeName(tDeviceVolumeId vol, const tPackageType& type) const;

  // The bound model's name; null when none is bound.
  const char* getDeviceType() const;

  // How many package types volume `vol` holds (all of the model's for volume 7).
  uint32_t GetNumPackageTypes(tDeviceVolumeId vol) const;

  // The index-th package type of volume `vol` (of the model for volume 7); empty when out of range.
  tPackageType GetPackageType(uint32_t index, tDeviceVolumeId vol) const;

  // How many upload data types the model has.
  uint32_t GetNumUploadDataTypes() const;

  // The index-th upload data type; empty when out of range.
  tUploadDataType GetUploadDataType(uint32_t index) const;

  // The folder of package type `type`; null when the model has no such type.
  const char* GetDirName(const tPackageType& type) const;

  // Joins the components up to a null one with "/", skipping empty ones, and
  // drops a final "/"; false when a component does not fit or `buffer` is null.
  static bool MakeFilePath(char* buffer, uint32_t size, const char* component, ...);

  // Volume root, model name, `subPath`.
  bool GetRootDir(char* buffer, uint32_t size, tDeviceVolumeId vol, const char* subPath) const;

  // Volume root, model name, the type's folder, `subPath`; empty and false when
  // the volume or the type is missing.
  bool GetPackageDir(char* buffer, uint32_t size, const tPackageType& type, tDeviceVolumeId vol,
                     const char* subPath) const;

  // Volume root joined with "Primary", "Secondary" or "Volume-<n>".
  bool GetVolumeTagName(char* buffer, uint32_t size, tDeviceVolumeId vol) const;

  // Volume root, model name, the profile folder, the profile's own folder, `subPath`.
  bool GetProfileDir(char* buffer, uint32_t size, uint32_t profile, tDeviceVolumeId vol,
                     const char* subPath) const;

  // The play log "profile.log" of `profile`; empty and false for a profile without a folder.
  bool GetProfileLogFile(char* buffer, uint32_t size, uint32_t profile, tDeviceVolumeId vol) const;

  // Volume root, model name, the type's folder, the profile's folder, `subPath`.
  bool GetUploadDir(char* buffer, uint32_t size, const tPackageType& type, tDeviceVolumeId vol,
                    uint32_t profile, const char* subPath) const;

  // Volume root, model name, the data type's folder, then `subPath` for profiles
  // 10 to 12, else "<digit>_<subPath>".
  bool GetUploadDir(char* buffer, uint32_t size, tUploadDataType type, tDeviceVolumeId vol,
                    uint32_t profile, const char* subPath) const;

  // The flight recorder folder: volume 0's root, the "System" folder, "FR".
  bool GetFlightRecorderDir(char* buffer, uint32_t size) const;

  // False when any volume holds a "doom" marker at its root.
  bool CheckDeviceIntegrity() const;

  // True when the package folder exists and holds no "doom" marker.
  bool CheckPackageIntegrity(const tPackageType& type, const char* name, tDeviceVolumeId vol) const;

 private:
  const tVolumeConfig* Volume(tDeviceVolumeId vol) const;
  const char* MkRootOrEmpty() const;
  bool TraceUploadFailure(char* buffer, const char* typeName) const;

  const tDirConfig* mConfig;
};

#endif  // VIRELINE_PKGPATH_H_
