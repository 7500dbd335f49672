// Traces and assertions of BaseUtils.
#include <vireline/BaseUtils.h>
#include <vireline/Platform.h>

#include <gtest/gtest.h>

#include <string>

#include "DeviceRootTest.h"

class BaseUtilsTraceTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    CaptureDebugOutput();
  }
};

TEST_F(BaseUtilsTraceTest, TraceExAboveSixtyThreePrintsTheRangeError) {
  BaseUtils::Instance()->TraceEx(64, "hidden %d", 1);
  EXPECT_EQ(DebugOutput(), "Trace Error: traceId must be in the range 0-63; trace will not be displayed");
}

TEST_F(BaseUtilsTraceTest, TraceExBetweenThirtyTwoAndSixtyThreeIsAcceptedButNeverShown) {
  BaseUtils::Instance()->SetupTrace(0xFFFFFFFFu, true);
  BaseUtils::Instance()->TraceEx(40, "hidden");
  BaseUtils::Instance()->TraceEx(32, "hidden");
  BaseUtils::Instance()->TraceEx(63, "hidden");
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(BaseUtilsTraceTest, TraceExShowsAnIdWhoseMaskBitIsSet) {
  BaseUtils::Instance()->SetupTrace(1u << 5, false);
  BaseUtils::Instance()->TraceEx(5, "five %s\n", "shown");
  BaseUtils::Instance()->TraceEx(6, "six\n");
  EXPECT_EQ(DebugOutput(), "five shown\n");
}

TEST_F(BaseUtilsTraceTest, TraceExIgnoresTheEnabledFlag) {
  BaseUtils::Instance()->SetupTrace(1u, false);
  BaseUtils::Instance()->TraceEx(0, "zero");
  EXPECT_EQ(DebugOutput(), "zero");
}

TEST_F(BaseUtilsTraceTest, TraceFollowsTheEnabledFlagAndIgnoresTheMask) {
  BaseUtils::Instance()->SetupTrace(0, true);
  BaseUtils::Instance()->Trace("on %d\n", 1);
  BaseUtils::Instance()->SetupTrace(0xFFFFFFFFu, false);
  BaseUtils::Instance()->Trace("off\n");
  EXPECT_EQ(DebugOutput(), "on 1\n");
}

TEST_F(BaseUtilsTraceTest, TracesAreCutAtTwoKilobytes) {
  std::string longText(5000, 'x');
  BaseUtils::Instance()->Trace("%s", longText.c_str());
  EXPECT_EQ(DebugOutput(), std::string(2047, 'x'));
}

TEST_F(BaseUtilsTraceTest, AssertWithATrueConditionDoesNothing) {
  BaseUtils::Instance()->Assert(1, "VirelineJSON/Src/LTM", 10, "never %s", "shown");
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(BaseUtilsTraceTest, AssertAppendsTheLineAndSourceToTheMessage) {
  BaseUtils::Instance()->Assert(0, "VirelineJSON/Src/LTM", 184, "Settings.cfg cannot be newed");
  EXPECT_NE(DebugOutput().find("Settings.cfg cannot be newed (line 184 in VirelineJSON/Src/LTM)"), std::string::npos)
      << DebugOutput();
}

TEST_F(BaseUtilsTraceTest, AnOverlongAssertMessageIsBoundedToTwoKilobytes) {
  std::string longText(5000, 'y');
  BaseUtils::Instance()->Assert(0, "VirelineJSON/Src/LTM", 1, "%s", longText.c_str());
  std::string out = DebugOutput();
  EXPECT_NE(out.find(std::string(2047, 'y')), std::string::npos);
  EXPECT_EQ(out.find(std::string(2048, 'y')), std::string::npos);
  EXPECT_EQ(out.find("(line 1 in"), std::string::npos);
}
