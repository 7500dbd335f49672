#include <gtest/gtest.h>

#include <string>

#include "systemdata/SystemDataTest.h"

class FindWidgetTest : public SystemDataTest {
 protected:
  // A package folder below the program files with the given "DeviceHidden"
  // line (none when empty).
  void WriteWidget(const std::string& folder, const std::string& name, const std::string& hidden,
                   const std::string& type = "DeviceAsset") const {
    std::string entries = "PackageID=WID-" + folder + "\nVersion=1.0\nType=" + type + "\nName=" + name +
                          "\nAppSo=lib" + folder + ".so\n";
    if (!hidden.empty()) entries += "DeviceHidden=" + hidden + "\n";
    WriteMeta("/QV/Bulk/ProgramFiles/" + folder + "/", entries);
  }
};

TEST_F(FindWidgetTest, HiddenDevicePackageWithTheNameGivesItsSharedObject) {
  WriteWidget("KeyboardWidget", "Keyboard", "0x00000001");
  EXPECT_EQ(Data()->FindWidget("Keyboard"), "/QV/Bulk/ProgramFiles/KeyboardWidget/libKeyboardWidget.so");
}

TEST_F(FindWidgetTest, OtherNamesAreNotFound) {
  WriteWidget("KeyboardWidget", "Keyboard", "0x00000001");
  EXPECT_EQ(Data()->FindWidget("keyboard"), "");
  EXPECT_EQ(Data()->FindWidget("Preview"), "");
}

TEST_F(FindWidgetTest, PackageThatIsNotDeviceHiddenIsNotAWidget) {
  WriteWidget("KeyboardWidget", "Keyboard", "0x00000000");
  EXPECT_EQ(Data()->FindWidget("Keyboard"), "");
}

TEST_F(FindWidgetTest, MissingDeviceHiddenTagCountsAsHidden) {
  WriteWidget("KeyboardWidget", "Keyboard", "");
  EXPECT_EQ(Data()->FindWidget("Keyboard"), "/QV/Bulk/ProgramFiles/KeyboardWidget/libKeyboardWidget.so");
}

TEST_F(FindWidgetTest, PackageMarkedForRemovalIsSkipped) {
  WriteWidget("KeyboardWidget", "Keyboard", "0x00000001");
  Touch("/QV/Bulk/ProgramFiles/KeyboardWidget/doom");
  EXPECT_EQ(Data()->FindWidget("Keyboard"), "");
}

TEST_F(FindWidgetTest, InvalidMetadataIsSkipped) {
  WriteWidget("KeyboardWidget", "Keyboard", "0x00000001", "*");
  EXPECT_EQ(Data()->FindWidget("Keyboard"), "");
}

TEST_F(FindWidgetTest, FolderWithoutMetadataIsSkipped) {
  MakeDirs("/QV/Bulk/ProgramFiles/Empty");
  WriteWidget("KeyboardWidget", "Keyboard", "0x00000001");
  EXPECT_EQ(Data()->FindWidget("Keyboard"), "/QV/Bulk/ProgramFiles/KeyboardWidget/libKeyboardWidget.so");
}

TEST_F(FindWidgetTest, FilesBesideThePackagesAreIgnored) {
  WriteFile("/QV/Bulk/ProgramFiles/meta.inf", "Name=Keyboard\nDeviceHidden=0x00000001\n");
  EXPECT_EQ(Data()->FindWidget("Keyboard"), "");
}

TEST_F(FindWidgetTest, MissingProgramFilesFindNothing) {
  EXPECT_EQ(Data()->FindWidget("Keyboard"), "");
}

TEST_F(FindWidgetTest, WidgetIsFoundAmongOtherPackages) {
  WriteWidget("AppA", "Alphabet", "0x00000000", "Application");
  WriteWidget("Preview", "SneakPeak", "0x00000001");
  WriteWidget("AppB", "Numbers", "0x00000000", "Application");
  EXPECT_EQ(Data()->FindWidget("SneakPeak"), "/QV/Bulk/ProgramFiles/Preview/libPreview.so");
}
