// The public scratch overlay: what the library writes while it lives never
// reaches the device image, and the image is written again once it is gone.
#include <vireline/ScratchOverlay.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include <vireline/Platform.h>

#include "DeviceRootTest.h"

namespace {

// Replaces device file `path` through the library's atomic writer.
bool Replace(const std::string& path, const std::string& content) {
  FILE* out = fopenAtomic(path.c_str(), "w");
  if (out == nullptr) return false;
  std::fputs(content.c_str(), out);
  return fcloseAtomic(out) == 0;
}

}  // namespace

class ScratchOverlayTest : public DeviceRootTest {};

TEST_F(ScratchOverlayTest, WritesAreListedButLeaveTheImageAlone) {
  WriteFile("/QV/Base/settings.cfg", "old\n");
  {
    vireline::ScratchOverlay overlay;
    ASSERT_TRUE(overlay.IsUsable());
    ASSERT_TRUE(Replace("/QV/Base/settings.cfg", "new\n"));
    EXPECT_EQ(overlay.WrittenFiles(), std::vector<std::string>{"/QV/Base/settings.cfg"});
  }
  EXPECT_EQ(ReadFile("/QV/Base/settings.cfg"), "old\n");
}

TEST_F(ScratchOverlayTest, TheImageIsWrittenAgainOnceTheOverlayIsGone) {
  MakeDirs("/QV/Base");
  { vireline::ScratchOverlay overlay; }
  ASSERT_TRUE(Replace("/QV/Base/settings.cfg", "new\n"));
  EXPECT_EQ(ReadFile("/QV/Base/settings.cfg"), "new\n");
}
