#include <gtest/gtest.h>

#include "platform/DeviceRoot.h"

TEST(NormalizeDevicePath, KeepsAbsolutePaths) {
  EXPECT_EQ(vireline::NormalizeDevicePath("/QV/Base/settings.cfg"), "/QV/Base/settings.cfg");
}
