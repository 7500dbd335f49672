// A failed assertion leaves a critical-error record in the play log.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/BaseUtils.h>
#include <vireline/CLogFile.h>
#include <vireline/CLogReader.h>

#include "tests/logging/LogFileTest.h"

class CriticalErrorRecordTest : public LogFileTest {
 protected:
  void SetUp() override {
    LogFileTest::SetUp();
    WritePlatform("Tamsel");
  }

  // The critical-error messages logged in slot `slot`.
  std::vector<std::string> CriticalErrors(int slot) {
    std::vector<std::string> messages;
    CLogReader reader(SlotPath(slot));
    tLogRecord record;
    while (reader.Next(&record)) {
      if (record.type == 26 && record.decoded) messages.push_back(record.fields[0].text);
    }
    return messages;
  }
};

TEST_F(CriticalErrorRecordTest, AnAssertionWithoutAPlayerChosenIsLoggedForPlayerZero) {
  BaseUtils::Instance()->Assert(0, "VirelineJSON/Src/BaseUtils", 42, "failed to create file. %s\n", "/x");
  EXPECT_EQ(CriticalErrors(0),
            std::vector<std::string>{"failed to create file. /x\n (line 42 in VirelineJSON/Src/BaseUtils)"});
  EXPECT_EQ(CLogFile::Instance()->GetCurrentProfile(), kLoggingProfile0);
}

TEST_F(CriticalErrorRecordTest, AnAssertionGoesToTheCurrentPlayersLog) {
  CLogFile::Instance()->SetCurrentProfile(2);
  BaseUtils::Instance()->Assert(0, "VirelineJSON/Src/LTM", 7, "bad value %d", 5);
  EXPECT_EQ(CriticalErrors(2), std::vector<std::string>{"bad value 5 (line 7 in VirelineJSON/Src/LTM)"});
  EXPECT_TRUE(CriticalErrors(0).empty());
}

TEST_F(CriticalErrorRecordTest, PlayerThreeKeepsAssertionsOutOfTheLogs) {
  CLogFile::Instance()->SetCurrentProfile(tPlayerID{3});
  BaseUtils::Instance()->Assert(0, "VirelineJSON/Src/LTM", 7, "not logged");
  for (int slot = 0; slot < 3; ++slot) EXPECT_TRUE(CriticalErrors(slot).empty());
}

TEST_F(CriticalErrorRecordTest, AHoldingAssertionLogsNothing) {
  BaseUtils::Instance()->Assert(1, "VirelineJSON/Src/LTM", 7, "fine");
  EXPECT_TRUE(CriticalErrors(0).empty());
  EXPECT_FALSE(CLogFile::Instance()->IsProfileSet());
}

TEST_F(CriticalErrorRecordTest, ALongMessageGetsALongRecord) {
  std::string text(600, 'e');
  BaseUtils::Instance()->Assert(0, "VirelineJSON/Src/json_value", 1, "%s", text.c_str());
  CLogReader reader(SlotPath(0));
  tLogRecord record;
  ASSERT_TRUE(reader.Next(&record));
  EXPECT_TRUE(record.longHeader);
  EXPECT_EQ(record.fields[0].text, text + " (line 1 in VirelineJSON/Src/json_value)");
}

TEST_F(CriticalErrorRecordTest, AnAssertionWhileTheLogFilesAreSetUpDoesNotBuildASecondManager) {
  mEnv.FailAfter(vireline::FaultInjectionEnv::kOpen, 0, EACCES);  // creating the files asserts
  CLogFile* log = CLogFile::Instance();
  mEnv.Reset();
  EXPECT_EQ(CLogFile::Instance(), log);
  EXPECT_FALSE(log->IsProfileSet());
}
