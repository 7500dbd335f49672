// The timing log.
#include <vireline/BaseUtils.h>

#include <gtest/gtest.h>

#include <string>

#include "DeviceRootTest.h"
#include "baseutils/UpperLayers.h"
#include "platform/Env.h"
#include "platform/FaultInjectionEnv.h"

class TimeLogTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    vireline::Env::SetCurrent(&env);
    env.SetProcessorClock(1000000);
    mPath = vireline::upper::DataPath().raw() + "/timelog.txt";
  }
  vireline::FaultInjectionEnv env{vireline::Env::Default()};
  std::string mPath;
};

TEST_F(TimeLogTest, EntriesGiveSecondsSinceBeginAndSinceThePreviousEntry) {
  MakeDirs(vireline::upper::DataPath().raw());
  timelogbegin();
  env.SetProcessorClock(1500000);
  timelog("first");
  env.SetProcessorClock(3750000);
  timelog("second");
  timelogdone();
  EXPECT_EQ(ReadFile(mPath), "0.500 : 0.500 : first\n2.750 : 2.250 : second\n");
}

TEST_F(TimeLogTest, NothingIsLoggedBeforeBegin) {
  MakeDirs(vireline::upper::DataPath().raw());
  timelog("early");
  EXPECT_FALSE(Exists(mPath));
}

TEST_F(TimeLogTest, AfterDoneTheLogNeverOpensAgain) {
  MakeDirs(vireline::upper::DataPath().raw());
  timelogbegin();
  timelog("one");
  timelogdone();
  timelogbegin();
  timelog("two");
  EXPECT_EQ(ReadFile(mPath), "0.000 : 0.000 : one\n");
}

TEST_F(TimeLogTest, ASecondBeginWhileOpenKeepsTheFirstOrigin) {
  MakeDirs(vireline::upper::DataPath().raw());
  timelogbegin();
  env.SetProcessorClock(2000000);
  timelogbegin();
  timelog("x");
  timelogdone();
  EXPECT_EQ(ReadFile(mPath), "1.000 : 1.000 : x\n");
}

TEST_F(TimeLogTest, AnUnopenableLogSaysSoOnStandardError) {
  CaptureDebugOutput();  // the data folder's getter is deprecated and says so in the debug output
  testing::internal::CaptureStderr();
  timelogbegin();  // the data folder does not exist
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Erp, can't open log file\n");
  timelog("lost");
  EXPECT_FALSE(Exists(mPath));
}
