// Manufacturing data when memory runs out: each allocation of Init and of the
// sector check fails with its own status, and nothing is written.
#include <gtest/gtest.h>

#include <vireline/CMfgData.h>

#include "FailingAllocation.h"
#include "mfg/MfgDataTest.h"

class CMfgDataOutOfMemoryTest : public MfgDataTest {
 protected:
  void SetUp() override {
    MfgDataTest::SetUp();
    WriteCopy(0, mfgtest::SampleRecord());
    WriteCopy(1, mfgtest::SampleRecord());
  }

  void TearDown() override {
    StopFailingNothrowAllocations();
    MfgDataTest::TearDown();
  }

  // Init's status when its allocation number `failing` (0: the first partition) fails.
  int InitFailingAllocation(int failing) {
    FailNothrowAllocationAfter(failing);
    int status = mData.Init();
    StopFailingNothrowAllocations();
    return status;
  }

  CMfgData mData;
};

TEST_F(CMfgDataOutOfMemoryTest, EachAllocationOfInitReportsOutOfMemory) {
  EXPECT_EQ(InitFailingAllocation(0), kMfgOutOfMemory);
  EXPECT_EQ(InitFailingAllocation(1), kMfgOutOfMemory);
  EXPECT_EQ(InitFailingAllocation(2), kMfgOutOfMemory);
  EXPECT_EQ(mData.Init(), kMfgSuccess);  // with memory again it loads
}

TEST_F(CMfgDataOutOfMemoryTest, WithoutItsBufferAnUpdateFindsNoPartition) {
  ASSERT_EQ(InitFailingAllocation(2), kMfgOutOfMemory);
  WriteModeScript(0);
  ASSERT_EQ(mData.SetMfgMode(true), 0);
  EXPECT_EQ(mData.Update(), kMfgPartitionNotFound);
  EXPECT_EQ(Copy(0), mfgtest::SampleRecord());
  EXPECT_EQ(Copy(1), mfgtest::SampleRecord());
}

TEST_F(CMfgDataOutOfMemoryTest, TheSectorCheckReportsOutOfMemory) {
  ASSERT_EQ(mData.Init(), kMfgSuccess);
  FailNothrowAllocationAfter(0);
  EXPECT_EQ(mData.ValidateNORMfgSector(0), kMfgOutOfMemory);
  StopFailingNothrowAllocations();
  EXPECT_EQ(mData.ValidateNORMfgSector(0), 0);
}
