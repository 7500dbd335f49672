// The hot-plug scan: a USB accessory plugged into the device, found in sysfs,
// and the request of the content package that goes with it.
#include <vireline/BaseUtils.h>

#include <cstdio>
#include <memory>

#include <vireline/CFileIO.h>
#include <vireline/CMfgData.h>
#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "baseutils/UpperLayers.h"
#include "platform/Env.h"

namespace {

const char kUsbDevices[] = "/sys/class/usb_device/";
const U32 kRootHub = 0x1D6B0001;  // the USB 1.1 root hub of the Linux Foundation vendor id
const int kScanLevel = 3;
const size_t kLocaleSize = 8;
const size_t kPackagePrefixSize = 15;

struct tDevicePackages {
  U32 id;
  const char* english;
  const char* french;
};

// The last row answers for every other device.
const tDevicePackages kDevicePackages[] = {
    {0x093A2801, "KVR9-0x00170038", "KVR9-0x00180029"},
    {0x1286203C, "KVR9-0x00170039", "KVR9-0x0018003F"},
    {0, "KVR9-0x0017003A", "KVR9-0x00180040"},
};
const size_t kDevicePackageCount = sizeof kDevicePackages / sizeof kDevicePackages[0];

// The "%x" value of a sysfs file; 0 when it cannot be read.
U32 ReadHex(const CPath& path) {
  std::unique_ptr<vireline::SequentialFile> file;
  if (!vireline::Env::Current()->NewSequentialFile(path.c_str(), &file).ok()) return 0;
  // A sysfs entry is one short line.
  char text[256] = {};
  size_t got = 0;
  vireline::ReadFully(file.get(), sizeof text - 1, text, &got);
  unsigned int value = 0;
  if (std::sscanf(text, "%x", &value) != 1) value = 0;
  return value;
}

// The manufacturing locale; "en-us" when the record holds none.
CString ManufacturingLocale() {
  char locale[kLocaleSize + 1] = {0};
  CMfgData data;
  data.Init();
  data.GetLocale(locale);
  data.Exit();
  return locale[0] == '\0' ? CString("en-us") : CString(locale);
}

const tDevicePackages& PackagesOf(U32 id) {
  size_t row = 0;
  while (row + 1 < kDevicePackageCount && kDevicePackages[row].id != id) ++row;
  return kDevicePackages[row];
}

// The accessories without a package of their own also get a request of their device id.
bool IsGenericPackage(const CString& packageId) {
  CString prefix = packageId.substr(0, kPackagePrefixSize);
  const tDevicePackages& generic = kDevicePackages[kDevicePackageCount - 1];
  return prefix == generic.english || prefix == generic.french;
}

void WriteDeviceRequest(U32 id) {
  char name[16];
  std::snprintf(name, sizeof name, "0x%08X.txt", id);
  CFileIO request;
  request.Open((vireline::upper::ManageInventoryPath() + name).c_str());
  request.SetStr("Command", "RequestPackageForUSBDevice");
  request.SetUInt("USBDeviceID", id);
  request.Write();
}

}  // namespace

U32 FindDevice(const CPath& path) {
  U32 vendor = ReadHex(path + "/device/idVendor");
  U32 product = ReadHex(path + "/device/idProduct");
  return (vendor << 16) | product;
}

U32 MatchDevice(U32 id) { return id == kRootHub ? 0 : id; }

CString MatchDevicePackage(U32 id, bool hotPlug) {
  CString language = ManufacturingLocale().substr(0, 2);
  const tDevicePackages& packages = PackagesOf(id);
  CString packageId;
  if (language == "en") packageId = packages.english;
  if (language == "fr") packageId = packages.french;
  if (packageId.empty()) return packageId;
  return packageId + (hotPlug ? "-100001" : "-000000");
}

void RequestDevicePackage(U32 id) {
  CString packageId = MatchDevicePackage(id, false);
  BaseUtils::Instance()->RequestPackageQVC(packageId, "1.0");
  if (IsGenericPackage(packageId)) WriteDeviceRequest(id);
}

unsigned char EnumDeviceCallback(const CPath& path, void* context) {
  U32 id = FindDevice(path);
  PlatformDebug(vireline::kDataObjectsDebugModule)
      .DebugOut(kScanLevel, "%s: %s: %08X\n", "EnumDeviceCallback", path.c_str(), id);
  if (MatchDevice(id) == 0) return 1;
  BaseUtils* utils = static_cast<BaseUtils*>(context);
  utils->mHotPlugDeviceId = id;
  utils->mHotPlugDevicePath = path;
  return 0;
}

bool BaseUtils::HasHotPlugDevice(CPath& path, U32& id) {
  mHotPlugDeviceId = 0;
  mHotPlugDevicePath.clear();
  if (IsPlatformType(kPlatformOskava) || IsPlatformType(kPlatformTarvessa)) return false;
  EnumFolder(kUsbDevices, EnumDeviceCallback, kSelectDirectories, this);
  if (mHotPlugDeviceId == 0) return false;
  if (DirectoryExists(vireline::upper::DownloadsPath() + MatchDevicePackage(mHotPlugDeviceId, true))) return false;
  path = mHotPlugDevicePath;
  id = mHotPlugDeviceId;
  RequestDevicePackage(id);
  return true;
}

bool BaseUtils::HasHotPlugDevice() {
  CPath path;
  U32 id = 0;
  return HasHotPlugDevice(path, id);
}
