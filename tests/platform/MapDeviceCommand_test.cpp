// Commands name their program by its device path; the shell is given the
// program inside the device root, quoted, and the arguments as they are.
#include <gtest/gtest.h>

#include <string>

#include "DeviceRootTest.h"
#include "platform/DeviceRoot.h"
#include "platform/DeviceRootEnv.h"

using vireline::MapDeviceCommand;

class MapDeviceCommandTest : public DeviceRootTest {};

// The folders of the program exist, as on a device: a path through a missing
// folder cannot be checked for links and runs nothing.
TEST_F(MapDeviceCommandTest, TheProgramIsMappedAndQuotedAndTheArgumentsKept) {
  MakeDirs("/usr/bin");
  EXPECT_EQ(MapDeviceCommand("/usr/bin/tool -v x"), "'" + Host("/usr/bin/tool") + "' -v x");
  EXPECT_EQ(MapDeviceCommand("/usr/bin/tool\targ"), "'" + Host("/usr/bin/tool") + "'\targ");
  EXPECT_EQ(MapDeviceCommand("/usr/bin/tool"), "'" + Host("/usr/bin/tool") + "'");
}

TEST_F(MapDeviceCommandTest, AQuoteInTheProgramPathIsEscapedForTheShell) {
  MakeDirs("/opt/it's");
  EXPECT_EQ(MapDeviceCommand("/opt/it's/run now"), "'" + Host("/opt/it") + "'\\''s/run' now");
}

TEST_F(MapDeviceCommandTest, EmptyAndRelativeCommandsAreLeftAlone) {
  EXPECT_EQ(MapDeviceCommand(""), "");
  EXPECT_EQ(MapDeviceCommand("echo /usr/bin/tool"), "echo /usr/bin/tool");
}

TEST(MapDeviceCommandOnTheDevice, WithoutARootTheCommandIsLeftAlone) {
  unsetenv("VIRELINE_ROOT");
  EXPECT_EQ(vireline::MapDevicePath("/usr/bin/tool"), "/usr/bin/tool");
  EXPECT_EQ(MapDeviceCommand("/usr/bin/tool -v"), "/usr/bin/tool -v");
}
