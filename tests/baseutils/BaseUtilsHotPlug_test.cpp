// The hot-plug scan over the USB devices of sysfs, with the device's language
// taken from a manufacturing record built in the test's device root.
#include <vireline/BaseUtils.h>
#include <vireline/CSystemData.h>
#include <vireline/Platform.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "RequestFiles.h"
#include "mfg/MfgDataTest.h"

namespace {

const char kUsb[] = "/sys/class/usb_device/";

typedef std::vector<std::string> Strings;

}  // namespace

class BaseUtilsHotPlugTest : public MfgDataTest {
 protected:
  void SetUp() override {
    MfgDataTest::SetUp();
    SetLocale("en-us");
  }

  // Both manufacturing copies with `locale` (8 bytes, zero-filled).
  void SetLocale(const std::string& locale) {
    std::string record = mfgtest::SampleRecord();
    mfgtest::PutBytes(&record, 104, (locale + std::string(8, '\0')).substr(0, 8));
    WriteCopy(0, mfgtest::Sealed(record));
    WriteCopy(1, mfgtest::Sealed(record));
  }

  void SetPlatform(const std::string& name) { WriteFile("/etc/vireline/platform.cfg", "Name=" + name + "\n"); }

  // A sysfs USB device entry `name` with the ids as sysfs writes them.
  void PlugDevice(const std::string& name, const std::string& vendor, const std::string& product) {
    WriteFile(std::string(kUsb) + name + "/device/idVendor", vendor + "\n");
    WriteFile(std::string(kUsb) + name + "/device/idProduct", product + "\n");
  }

  static std::string Inventory() { return CSystemData::Instance()->GetManageInventoryPath(); }

  static Strings Requests() { return PackageRequestsIn(Inventory()); }

  std::string DeviceRequest(const std::string& name) const { return ReadFile(Inventory() + name); }

  BaseUtils* utils = BaseUtils::Instance();
};

TEST_F(BaseUtilsHotPlugTest, FindDeviceJoinsVendorAndProduct) {
  PlugDevice("usbdev1.2", "093a", "2801");
  EXPECT_EQ(FindDevice(std::string(kUsb) + "usbdev1.2"), 0x093A2801u);
}

TEST_F(BaseUtilsHotPlugTest, FindDeviceCountsAnUnreadableHalfAsZero) {
  WriteFile(std::string(kUsb) + "a/device/idVendor", "1286\n");
  WriteFile(std::string(kUsb) + "b/device/idProduct", "203c\n");
  WriteFile(std::string(kUsb) + "c/device/idVendor", "not hex\n");
  EXPECT_EQ(FindDevice(std::string(kUsb) + "a"), 0x12860000u);
  EXPECT_EQ(FindDevice(std::string(kUsb) + "b"), 0x0000203Cu);
  EXPECT_EQ(FindDevice(std::string(kUsb) + "c"), 0u);
  EXPECT_EQ(FindDevice("/nowhere"), 0u);
}

TEST_F(BaseUtilsHotPlugTest, MatchDeviceRejectsOnlyTheRootHub) {
  EXPECT_EQ(MatchDevice(0x1D6B0001u), 0u);
  EXPECT_EQ(MatchDevice(0x1D6B0002u), 0x1D6B0002u);
  EXPECT_EQ(MatchDevice(0x093A2801u), 0x093A2801u);
  EXPECT_EQ(MatchDevice(0u), 0u);
}

TEST_F(BaseUtilsHotPlugTest, MatchDevicePackageByDeviceAndLanguage) {
  EXPECT_EQ(MatchDevicePackage(0x093A2801u, false), "KVR9-0x00170038-000000");
  EXPECT_EQ(MatchDevicePackage(0x1286203Cu, false), "KVR9-0x00170039-000000");
  EXPECT_EQ(MatchDevicePackage(0x12345678u, true), "KVR9-0x0017003A-100001");
  SetLocale("fr-ca");
  EXPECT_EQ(MatchDevicePackage(0x093A2801u, true), "KVR9-0x00180029-100001");
  EXPECT_EQ(MatchDevicePackage(0x1286203Cu, false), "KVR9-0x0018003F-000000");
  EXPECT_EQ(MatchDevicePackage(0x12345678u, false), "KVR9-0x00180040-000000");
}

TEST_F(BaseUtilsHotPlugTest, EmptyManufacturingLocaleCountsAsEnglish) {
  SetLocale("");
  EXPECT_EQ(MatchDevicePackage(0x093A2801u, false), "KVR9-0x00170038-000000");
}

TEST_F(BaseUtilsHotPlugTest, DeviceWithoutManufacturingPartitionsCountsAsEnglish) {
  std::filesystem::remove(Host("/proc/mtd"));
  EXPECT_EQ(MatchDevicePackage(0x1286203Cu, true), "KVR9-0x00170039-100001");
}

TEST_F(BaseUtilsHotPlugTest, OtherLanguageGivesAnEmptyPackageId) {
  SetLocale("de-de");
  EXPECT_EQ(MatchDevicePackage(0x093A2801u, false), "");
  EXPECT_EQ(MatchDevicePackage(0x093A2801u, true), "");
}

TEST_F(BaseUtilsHotPlugTest, OnlyTheRootHubIsNoHotPlugDevice) {
  PlugDevice("usbdev1.1", "1d6b", "0001");
  EXPECT_FALSE(utils->HasHotPlugDevice());
  EXPECT_EQ(Requests(), Strings{});
}

TEST_F(BaseUtilsHotPlugTest, NoUsbDevicesAtAll) {
  EXPECT_FALSE(utils->HasHotPlugDevice());
  MakeDirs(kUsb);
  EXPECT_FALSE(utils->HasHotPlugDevice());
}

TEST_F(BaseUtilsHotPlugTest, FrenchKnownDeviceRequestsItsPackageWithoutUsbRequestFile) {
  SetLocale("fr-fr");
  PlugDevice("usbdev1.1", "1d6b", "0001");
  PlugDevice("usbdev1.2", "093a", "2801");
  CPath path;
  U32 id = 0;
  EXPECT_TRUE(utils->HasHotPlugDevice(path, id));
  EXPECT_EQ(path, std::string(kUsb) + "usbdev1.2");
  EXPECT_EQ(id, 0x093A2801u);
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00180029-000000 1.0"});
  EXPECT_FALSE(Exists(Inventory() + "0x093A2801.txt"));
}

TEST_F(BaseUtilsHotPlugTest, UnknownEnglishDeviceRequestsTheGenericPackageAndWritesItsUsbRequestFile) {
  PlugDevice("usbdev2.7", "abcd", "ef01");
  EXPECT_TRUE(utils->HasHotPlugDevice());
  EXPECT_EQ(Requests(), Strings{"KVR9-0x0017003A-000000 1.0"});
  CFileIO request;
  ASSERT_TRUE(request.Open((Inventory() + "0xABCDEF01.txt").c_str()));
  EXPECT_STREQ(request.GetStr("Command"), "RequestPackageForUSBDevice");
  EXPECT_EQ(request.GetUInt("USBDeviceID"), 0xABCDEF01u);
}

TEST_F(BaseUtilsHotPlugTest, GenericFrenchPackageAlsoWritesTheUsbRequestFile) {
  SetLocale("fr-be");
  RequestDevicePackage(0x00000001u);
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00180040-000000 1.0"});
  EXPECT_TRUE(Exists(Inventory() + "0x00000001.txt"));
}

TEST_F(BaseUtilsHotPlugTest, OtherLanguageRequestFileIsNamedDotTxt) {
  SetLocale("es-mx");
  PlugDevice("usbdev1.3", "1286", "203c");
  EXPECT_TRUE(utils->HasHotPlugDevice());
  EXPECT_EQ(Requests(), Strings{" 1.0"});
  EXPECT_EQ(ReadFile(Inventory() + ".txt"), "Command=AddToDevice\nVersion=1.0\n");
  EXPECT_FALSE(Exists(Inventory() + "0x1286203C.txt"));
}

TEST_F(BaseUtilsHotPlugTest, OtherLanguageTakesTheDownloadsFolderForTheInstalledPackage) {
  SetLocale("es-mx");
  PlugDevice("usbdev1.3", "1286", "203c");
  MakeDirs(CSystemData::Instance()->GetDownloadsPath());
  EXPECT_FALSE(utils->HasHotPlugDevice());
  EXPECT_EQ(Requests(), Strings{});
}

TEST_F(BaseUtilsHotPlugTest, InstalledHotPlugPackageIsNotRequested) {
  PlugDevice("usbdev1.2", "093a", "2801");
  MakeDirs(CSystemData::Instance()->GetDownloadsPath() + "KVR9-0x00170038-100001");
  CPath path = "untouched";
  U32 id = 5;
  EXPECT_FALSE(utils->HasHotPlugDevice(path, id));
  EXPECT_EQ(path, "untouched");
  EXPECT_EQ(id, 5u);
  EXPECT_EQ(Requests(), Strings{});
}

TEST_F(BaseUtilsHotPlugTest, InstalledPackageOfTheOtherFormStillRequests) {
  PlugDevice("usbdev1.2", "093a", "2801");
  MakeDirs(CSystemData::Instance()->GetDownloadsPath() + "KVR9-0x00170038-000000");
  EXPECT_TRUE(utils->HasHotPlugDevice());
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00170038-000000 1.0"});
}

TEST_F(BaseUtilsHotPlugTest, OskavaAndTarvessaNeverScan) {
  SetPlatform("Oskava");
  PlugDevice("usbdev1.2", "093a", "2801");
  EXPECT_FALSE(utils->HasHotPlugDevice());
  EXPECT_EQ(Requests(), Strings{});
}

TEST_F(BaseUtilsHotPlugTest, TarvessaNeverScans) {
  SetPlatform("TARVESSA");
  PlugDevice("usbdev1.2", "093a", "2801");
  EXPECT_FALSE(utils->HasHotPlugDevice());
  EXPECT_FALSE(Exists(CSystemData::Instance()->GetDataPath() + "Uploads/0/MQDX-0x001E000C-999999/"
                                                                "KVR9-0x00170038-000000.txt"));
}

TEST_F(BaseUtilsHotPlugTest, EnumDeviceCallbackRecordsTheFirstAccessoryAndStops) {
  PlugDevice("hub", "1d6b", "0001");
  PlugDevice("pad", "093a", "2801");
  PlatformDebug().SetMasterDebugLevel(9);
  CaptureDebugOutput();
  EXPECT_EQ(EnumDeviceCallback(std::string(kUsb) + "hub", utils), 1);
  EXPECT_EQ(EnumDeviceCallback(std::string(kUsb) + "pad", utils), 0);
  EXPECT_EQ(DebugOutput(), "EnumDeviceCallback: /sys/class/usb_device/hub: 1D6B0001\n"
                           "EnumDeviceCallback: /sys/class/usb_device/pad: 093A2801\n");
}

TEST_F(BaseUtilsHotPlugTest, ScanLogsEachDeviceAtLevelThree) {
  PlugDevice("hub", "1d6b", "0001");
  PlatformDebug().SetMasterDebugLevel(2);
  CaptureDebugOutput();
  EXPECT_FALSE(utils->HasHotPlugDevice());
  EXPECT_EQ(DebugOutput(), "");
  PlatformDebug().SetMasterDebugLevel(3);
  EXPECT_FALSE(utils->HasHotPlugDevice());
  EXPECT_EQ(DebugOutput(), "EnumDeviceCallback: /sys/class/usb_device/hub: 1D6B0001\n");
}

TEST_F(BaseUtilsHotPlugTest, EachScanForgetsTheLastDevice) {
  PlugDevice("usbdev1.2", "abcd", "0001");
  CPath path;
  U32 id = 0;
  EXPECT_TRUE(utils->HasHotPlugDevice(path, id));
  std::filesystem::remove_all(Host("/sys"));
  id = 9;
  EXPECT_FALSE(utils->HasHotPlugDevice(path, id));
  EXPECT_EQ(id, 9u);
}
