// The file-open watch that progress displays count with.
#include <vireline/FileOpenWatch.h>

#include <gtest/gtest.h>

#include <string>

#include <vireline/BaseUtils.h>

#include "DeviceRootTest.h"

class FileOpenWatchTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    WriteFile("/QV/Tree/a.bin", "a");
    WriteFile("/QV/Tree/b.bin", "b");
    WriteFile("/QV/Tree/Sub/c.bin", "c");
  }
};

TEST_F(FileOpenWatchTest, EveryFileTheChecksumReadsIsAnnounced) {
  int opened = 0;
  vireline::FileOpenWatch watch([&opened] { ++opened; });
  BaseUtils::Instance()->CalculateChecksum("/QV/Tree", BaseUtils::kSelectAll);
  EXPECT_EQ(opened, 3);
}

TEST_F(FileOpenWatchTest, NothingIsAnnouncedOnceTheWatchIsGone) {
  int opened = 0;
  { vireline::FileOpenWatch watch([&opened] { ++opened; }); }
  BaseUtils::Instance()->CalculateChecksum("/QV/Tree", BaseUtils::kSelectAll);
  EXPECT_EQ(opened, 0);
}
