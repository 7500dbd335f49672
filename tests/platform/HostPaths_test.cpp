// Host paths for a tool's own files: while a HostPaths lives a path is taken
// as it is, not mapped below the device root.
#include <vireline/HostPaths.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include <vireline/Platform.h>

#include "DeviceRootTest.h"

namespace {

bool Replace(const std::string& path, const std::string& content) {
  FILE* out = fopenAtomic(path.c_str(), "w");
  if (out == nullptr) return false;
  std::fputs(content.c_str(), out);
  return fcloseAtomic(out) == 0;
}

}  // namespace

class HostPathsTest : public DeviceRootTest {};

TEST_F(HostPathsTest, APathIsTakenAsItIsWhileItLives) {
  MakeDirs("/QV");
  {
    vireline::HostPaths host;
    ASSERT_TRUE(Replace(Host("/QV/page.html"), "<html>"));
  }
  EXPECT_EQ(ReadFile("/QV/page.html"), "<html>");
}

TEST_F(HostPathsTest, DevicePathsAreMappedAgainAfterwards) {
  MakeDirs("/QV");
  { vireline::HostPaths host; }
  ASSERT_TRUE(Replace("/QV/page.html", "<html>"));
  EXPECT_EQ(ReadFile("/QV/page.html"), "<html>");
}
