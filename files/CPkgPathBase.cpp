#include <vireline/PkgPath.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include <vireline/COrvoInterface.h>

#include "files/DoomMarker.h"

namespace {

const uint32_t kIntegrityPathSize = 256;

// The folder of one profile: "0" to "2", "All" for 11, none for the rest.
struct ProfileComponent {
  explicit ProfileComponent(uint32_t profile) : text{} {
    if (profile < 3) {
      std::snprintf(text, sizeof text, "%u", profile);
    } else if (profile == 11) {
      std::snprintf(text, sizeof text, "All");
    }
  }
  bool empty() const { return text[0] == '\0'; }
  char text[4];
};

// Appends one component and its separator after the first `*length` bytes;
// false when the component does not fit. A separator with no room left is
// dropped: nothing could follow it, and a final one is removed anyway.
bool AppendComponent(char* buffer, uint32_t size, size_t* length, const char* component) {
  size_t componentLength = std::strlen(component);
  if (size == 0 || componentLength > size - *length - 1) return false;
  std::memcpy(buffer + *length, component, componentLength + 1);
  *length += componentLength;
  if (buffer[*length - 1] != '/' && *length + 1 < size) {
    buffer[(*length)++] = '/';
    buffer[*length] = '\0';
  }
  return true;
}

bool VMakeFilePath(char* buffer, uint32_t size, const char* component, va_list args) {
  if (buffer == nullptr) return false;
  if (size > 0) buffer[0] = '\0';
  size_t length = 0;
  for (; component != nullptr; component = va_arg(args, const char*)) {
    if (*component == '\0') continue;
    if (!AppendComponent(buffer, size, &length, component)) return false;
  }
  if (length > 0 && buffer[length - 1] == '/') buffer[length - 1] = '\0';
  return true;
}

bool Exists(const char* path) {
  tStatLite info;
  return COrvoInterface::Stat(path, &info, false);
}

void ClearBuffer(char* buffer, uint32_t size) {
  if (buffer != nullptr && size > 0) buffer[0] = '\0';
}

const char* OrEmpty(const char* text) { return text ? text : ""; }

}  // namespace

CPkgPathBase::CPkgPathBase() : mConfig(&gTamselCfg) {}

CPkgPathBase::CPkgPathBase(const tDirConfig* config) : mConfig(config) {}

CPkgPathBase::~CPkgPathBase() = default;

void CPkgPathBase::init(const tDirConfig* config) { mConfig = config; }

const char* CPkgPathBase::getDeviceType() const { return mConfig ? mConfig->deviceType : nullptr; }

const char* CPkgPathBase::MkRoot() const {
  if (mConfig == nullptr) return nullptr;
  return (mConfig->rootKind == 1 || mConfig->rootKind == 3) ? mConfig->deviceType : nullptr;
}

const char* CPkgPathBase::MkRootOrEmpty() const { return OrEmpty(MkRoot()); }

const tVolumeConfig* CPkgPathBase::Volume(tDeviceVolumeId vol) const {
  if (mConfig == nullptr || vol >= mConfig->numVolumes) return nullptr;
  return &mConfig->volumes[vol];
}

const char* CPkgPathBase::GetVolumeName(tDeviceVolumeId vol, const tPackageType& type) const {
  const tVolumeConfig* volume = Volume(vol);
  if (volume == nullptr) return nullptr;
  if (type == "") return volume->root;
  for (uint32_t i = 0; i < volume->numPkgTypes; ++i) {
    if (volume->pkgTypes[i] == type || volume->pkgTypes[i] == "*") return volume->root;
  }
  return nullptr;
}

uint32_t CPkgPathBase::GetNumPackageTypes(tDeviceVolumeId vol) const {
  if (mConfig == nullptr) return 0;
  if (vol == kAllVolumes) return mConfig->numPkgTypes;
  const tVolumeConfig* volume = Volume(vol);
  return volume ? volume->numPkgTypes : 0;
}

tPackageType CPkgPathBase::GetPackageType(uint32_t index, tDeviceVolumeId vol) const {
  if (mConfig == nullptr) return tPackageType();
  if (vol == kAllVolumes) return index < mConfig->numPkgTypes ? mConfig->pkgTypes[index] : tPackageType();
  const tVolumeConfig* volume = Volume(vol);
  return (volume && index < volume->numPkgTypes) ? volume->pkgTypes[index] : tPackageType();
}

uint32_t CPkgPathBase::GetNumUploadDataTypes() const { return mConfig ? mConfig->numUploadDataTypes : 0; }

tUploadDataType CPkgPathBase::GetUploadDataType(uint32_t index) const {
  if (mConfig == nullptr || index >= mConfig->numUploadDataTypes) return tUploadDataType();
  return mConfig->uploadDataTypes[index];
}

const char* CPkgPathBase::GetDirName(const tPackageType& type) const {
  if (mConfig == nullptr) return nullptr;
  for (uint32_t i = 0; i < mConfig->numPkgTypes && i < mConfig->numPkgDirs; ++i) {
    if (mConfig->pkgTypes[i] == type) return mConfig->pkgDirs[i];
  }
  return nullptr;
}

bool CPkgPathBase::MakeFilePath(char* buffer, uint32_t size, const char* component, ...) {
  va_list args;
  va_start(args, component);
  bool result = VMakeFilePath(buffer, size, component, args);
  va_end(args);
  return result;
}

bool CPkgPathBase::GetRootDir(char* buffer, uint32_t size, tDeviceVolumeId vol, const char* subPath) const {
  return MakeFilePath(buffer, size, GetVolumeName(vol, tPackageType()), MkRootOrEmpty(), OrEmpty(subPath),
                      nullptr);
}

bool CPkgPathBase::GetPackageDir(char* buffer, uint32_t size, const tPackageType& type, tDeviceVolumeId vol,
                                 const char* subPath) const {
  const char* volume = GetVolumeName(vol, type);
  const char* folder = GetDirName(type);
  if (volume == nullptr || folder == nullptr) {
    ClearBuffer(buffer, size);
    return false;
  }
  return MakeFilePath(buffer, size, volume, MkRootOrEmpty(), folder, OrEmpty(subPath), nullptr);
}

bool CPkgPathBase::GetVolumeTagName(char* buffer, uint32_t size, tDeviceVolumeId vol) const {
  char tag[32];
  if (vol == 0) {
    std::snprintf(tag, sizeof tag, "Primary");
  } else if (vol == 1) {
    std::snprintf(tag, sizeof tag, "Secondary");
  } else {
    std::snprintf(tag, sizeof tag, "Volume-%d", static_cast<int>(vol));
  }
  return MakeFilePath(buffer, size, GetVolumeName(vol, tPackageType()), tag, nullptr);
}

bool CPkgPathBase::GetProfileDir(char* buffer, uint32_t size, uint32_t profile, tDeviceVolumeId vol,
                                 const char* subPath) const {
  ProfileComponent component(profile);
  return MakeFilePath(buffer, size, GetVolumeName(vol, tPackageType()), MkRootOrEmpty(),
                      mConfig ? mConfig->profileDir : nullptr, component.text, OrEmpty(subPath), nullptr);
}

bool CPkgPathBase::GetProfileLogFile(char* buffer, uint32_t size, uint32_t profile, tDeviceVolumeId vol) const {
  ProfileComponent component(profile);
  if (component.empty()) {
    ClearBuffer(buffer, size);
    return false;
  }
  return MakeFilePath(buffer, size, GetVolumeName(vol, tPackageType()), MkRootOrEmpty(),
                      mConfig ? mConfig->uploadDir : nullptr, component.text, "profile.log", nullptr);
}

bool CPkgPathBase::TraceUploadFailure(char* buffer, const char* typeName) const {
  // The volume has no root, which older firmware printed as "(null)".
  COrvoInterface::Trace("PkgPathBase::GetUploadDir failure vol '%s', type %s.\n", "(null)", typeName);
  if (buffer != nullptr) buffer[0] = '\0';
  return false;
}

bool CPkgPathBase::GetUploadDir(char* buffer, uint32_t size, const tPackageType& type, tDeviceVolumeId vol,
                                uint32_t profile, const char* subPath) const {
  const char* volume = GetVolumeName(vol, tPackageType());
  if (volume == nullptr) return TraceUploadFailure(size > 0 ? buffer : nullptr, type.ToString());
  ProfileComponent component(profile);
  return MakeFilePath(buffer, size, volume, MkRootOrEmpty(), GetDirName(type), component.text,
                      OrEmpty(subPath), nullptr);
}

bool CPkgPathBase::GetUploadDir(char* buffer, uint32_t size, tUploadDataType type, tDeviceVolumeId vol,
                                uint32_t profile, const char* subPath) const {
  const char* volume = GetVolumeName(vol, tPackageType());
  if (volume == nullptr) return TraceUploadFailure(size > 0 ? buffer : nullptr, type.ToString());
  const char* folder = nullptr;
  for (uint32_t i = 0; mConfig && i < mConfig->numUploadDataTypes && i < mConfig->numUploadDataDirs; ++i) {
    if (mConfig->uploadDataTypes[i] == type) {
      folder = mConfig->uploadDataDirs[i];
      break;
    }
  }
  char last[256];
  if (profile >= 10 && profile <= 12) {
    std::snprintf(last, sizeof last, "%s", OrEmpty(subPath));
  } else {
    std::snprintf(last, sizeof last, "%c_%.253s", static_cast<char>('0' + profile), OrEmpty(subPath));
  }
  return MakeFilePath(buffer, size, volume, MkRootOrEmpty(), folder, last, nullptr);
}

bool CPkgPathBase::GetFlightRecorderDir(char* buffer, uint32_t size) const {
  return MakeFilePath(buffer, size, GetVolumeName(0, tPackageType()), GetDirName("System"), "FR", nullptr);
}

bool CPkgPathBase::CheckDeviceIntegrity() const {
  uint32_t volumes = mConfig ? mConfig->numVolumes : 0;
  for (tDeviceVolumeId vol = 0; vol < volumes; ++vol) {
    char path[kIntegrityPathSize];
    GetRootDir(path, sizeof path, vol, vireline::kDoomMarkerName);
    if (Exists(path)) return false;
  }
  return true;
}

bool CPkgPathBase::CheckPackageIntegrity(const tPackageType& type, const char* name, tDeviceVolumeId vol) const {
  char folder[kIntegrityPathSize];
  GetPackageDir(folder, sizeof folder, type, vol, nullptr);
  char package[kIntegrityPathSize * 2];
  std::snprintf(package, sizeof package, "%s/%s", folder, OrEmpty(name));
  tStatLite info;
  if (!COrvoInterface::Stat(package, &info, false) || info.type != 2) return false;
  return !vireline::HasDoomMarker(package);
}
