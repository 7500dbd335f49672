// Every event's record byte for byte, and the catalogue the events and the
// reader share. The elapsed time is fixed so each record starts 01 02 03 04.
#include <vireline/LogEvents.h>

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include <vireline/LogCatalogue.h>

#include "tests/logging/LogTest.h"

using namespace LogData::Vireline;

class LogEventsTest : public LogTest {};

TEST_F(LogEventsTest, DeviceAndLearningEventsHaveTheirExactBytes) {
  EXPECT_EQ(Hex(CNewUser(0x11223344ul)), "01 02 03 04 02 04 44 33 22 11");
  EXPECT_EQ(Hex(CUserLogIn()), "01 02 03 04 03 00");
  EXPECT_EQ(Hex(CUserLogOut(7)), "01 02 03 04 04 01 07");
  EXPECT_EQ(Hex(CNavAreaStart("map")), "01 02 03 04 05 04 6d 61 70 00");
  EXPECT_EQ(Hex(CNavAreaExit()), "01 02 03 04 06 00");
  EXPECT_EQ(Hex(CHelpRequest("ab")), "01 02 03 04 07 03 61 62 00");
  EXPECT_EQ(Hex(CTitleStart(0x01020304ul, "Zoo", "1.2", 9)),
            "01 02 03 04 08 0d 04 03 02 01 5a 6f 6f 00 31 2e 32 00 09");
  EXPECT_EQ(Hex(CTitleExit(1)), "01 02 03 04 09 01 01");
  EXPECT_EQ(Hex(CActivityStart("a", "b", "c")), "01 02 03 04 0a 06 61 00 62 00 63 00");
  EXPECT_EQ(Hex(CActivityExit(-2l, 3)), "01 02 03 04 0b 05 fe ff ff ff 03");
  EXPECT_EQ(Hex(CActivityPause()), "01 02 03 04 0c 00");
  EXPECT_EQ(Hex(CActivityUnpause()), "01 02 03 04 0d 00");
  EXPECT_EQ(Hex(CLevelUp("2")), "01 02 03 04 0e 02 32 00");
  EXPECT_EQ(Hex(CLevelDown("1")), "01 02 03 04 0f 02 31 00");
  EXPECT_EQ(Hex(CRewardEarned(0x0201, 0x0403)), "01 02 03 04 10 04 01 02 03 04");
  EXPECT_EQ(Hex(CHintRequest(5ul, "h")), "01 02 03 04 11 06 05 00 00 00 68 00");
  EXPECT_EQ(Hex(CLowBatteryWarning()), "01 02 03 04 18 00");
  EXPECT_EQ(Hex(CDebugInfo(0, "ok")), "01 02 03 04 19 05 00 00 6f 6b 00");
  EXPECT_EQ(Hex(CCriticalError("bad")), "01 02 03 04 1a 04 62 61 64 00");
  EXPECT_EQ(Hex(CAchievementEarned(0x0102)), "01 02 03 04 1b 02 02 01");
}

TEST_F(LogEventsTest, AnswerEventsHaveTheirExactBytes) {
  EXPECT_EQ(Hex(CCorrectAnswer(0x100ul, "q", "a")), "01 02 03 04 12 08 00 01 00 00 71 00 61 00");
  EXPECT_EQ(Hex(CWrongAnswer(2ul, "q", "b")), "01 02 03 04 14 08 02 00 00 00 71 00 62 00");
  EXPECT_EQ(Hex(CSemiCorrectAnswer(3ul, "q", "c")), "01 02 03 04 16 08 03 00 00 00 71 00 63 00");
}

TEST_F(LogEventsTest, ACorrectTimedAnswerStoresFourBytesOfTimeTheOtherTimedAnswersTwo) {
  EXPECT_EQ(Hex(CCorrectAnswerTimed(0x100ul, "q", "a", 0x00012345ul)),
            "01 02 03 04 13 0c 00 01 00 00 71 00 61 00 45 23 01 00");
  EXPECT_EQ(Hex(CWrongAnswerTimed(2ul, "q", "b", 0x1234)), "01 02 03 04 15 0a 02 00 00 00 71 00 62 00 34 12");
  EXPECT_EQ(Hex(CSemiCorrectAnswerTimed(3ul, "q", "c", 0xBEEF)),
            "01 02 03 04 17 0a 03 00 00 00 71 00 63 00 ef be");
}

TEST_F(LogEventsTest, TutorialCyoAndGameEventsHaveTheirExactBytes) {
  EXPECT_EQ(Hex(CTutorialStart("t")), "01 02 03 04 40 02 74 00");
  EXPECT_EQ(Hex(CTutorialExit()), "01 02 03 04 41 00");
  EXPECT_EQ(Hex(CCyoStart("s", "a")), "01 02 03 04 42 04 73 00 61 00");
  EXPECT_EQ(Hex(CCyoExit("s", "a")), "01 02 03 04 43 04 73 00 61 00");
  EXPECT_EQ(Hex(CGameStart("abc")), "01 02 03 04 44 04 61 62 63 00");
  EXPECT_EQ(Hex(CGameExit()), "01 02 03 04 45 00");
  EXPECT_EQ(Hex(CGameAreaStart("cave")), "01 02 03 04 46 05 63 61 76 65 00");
  EXPECT_EQ(Hex(CGameAreaExit()), "01 02 03 04 47 00");
}

TEST_F(LogEventsTest, GameStartOfAbcIsTenBytesWithTypeSixtyEightAndLengthFour) {
  CGameStart record("abc");
  std::string bytes = Bytes(record);
  ASSERT_EQ(bytes.size(), 10u);
  EXPECT_EQ(bytes[4], 68);
  EXPECT_EQ(bytes[5], 4);
  EXPECT_EQ(bytes.substr(6), std::string("abc") + '\0');
}

TEST_F(LogEventsTest, RewardEarnedStoresItsFirstArgumentFirst) {
  EXPECT_EQ(Hex(Bytes(CRewardEarned(1, 2)).substr(6)), "01 00 02 00");
}

TEST_F(LogEventsTest, StringArgumentsOverTwoHundredAndFiftyFourBytesGetTheLongHeader) {
  std::string set(200, 's'), activity(100, 'a');
  CCyoStart record(set.c_str(), activity.c_str());
  std::string bytes = Bytes(record);
  ASSERT_EQ(bytes.size(), 10u + 302u);
  EXPECT_EQ(Hex(bytes.substr(0, 10)), "01 02 03 04 42 ff 2e 01 00 00");
  EXPECT_EQ(bytes.substr(10), set + '\0' + activity + '\0');
}

TEST_F(LogEventsTest, ANullStringLeavesItsOneZeroByte) {
  EXPECT_EQ(Hex(CGameStart(nullptr)), "01 02 03 04 44 01 00");
  EXPECT_EQ(Hex(CCorrectAnswer(1ul, nullptr, "a")), "01 02 03 04 12 07 01 00 00 00 00 61 00");
  EXPECT_EQ(Hex(CCorrectAnswer(1ul, nullptr, nullptr)), "01 02 03 04 12 06 01 00 00 00 00 00");
}

TEST_F(LogEventsTest, AnEmptyStringIsItsNulAlone) { EXPECT_EQ(Hex(CGameStart("")), "01 02 03 04 44 01 00"); }

TEST_F(LogEventsTest, IntegerArgumentsKeepOnlyTheBytesOfTheirField) {
  EXPECT_EQ(Hex(CActivityExit(-1l, 0xFF)), "01 02 03 04 0b 05 ff ff ff ff ff");
  EXPECT_EQ(Hex(CAchievementEarned(0xFFFF)), "01 02 03 04 1b 02 ff ff");
}

TEST_F(LogEventsTest, EventsCanBeDeletedThroughTheBaseRecord) {
  std::unique_ptr<CLogData> record(new CCriticalError("oops"));
  EXPECT_EQ(record->GetType(), 26);
  EXPECT_STREQ(record->GetStringField(1), "oops");
}

TEST_F(LogEventsTest, TheCatalogueHasTheClockRecordAndThirtyFourEventsInTwoCodeRanges) {
  size_t count = 0;
  const tEventInfo* catalogue = GetEventCatalogue(&count);
  ASSERT_EQ(count, 35u);
  std::set<std::string> names;
  for (size_t i = 0; i < count; ++i) {
    unsigned type = catalogue[i].type;
    EXPECT_TRUE((type >= 1 && type <= 27) || (type >= 64 && type <= 71)) << type;
    EXPECT_EQ(FindEvent(type), &catalogue[i]);
    EXPECT_LE(catalogue[i].fieldCount, kMaxEventFields);
    names.insert(catalogue[i].className);
    if (i > 0) {
      EXPECT_LT(catalogue[i - 1].type, catalogue[i].type);
    }
  }
  EXPECT_EQ(names.size(), 35u);
  EXPECT_STREQ(FindEvent(1)->className, "CTimeSync");
  for (unsigned unassigned : {0u, 28u, 40u, 63u, 72u, 255u}) EXPECT_EQ(FindEvent(unassigned), nullptr) << unassigned;
}

TEST_F(LogEventsTest, TheCatalogueKeepsTheTimedAnswerWidths) {
  EXPECT_EQ(FieldWidth(FindEvent(kCorrectAnswerTimed)->fields[3].kind), 4u);
  EXPECT_EQ(FieldWidth(FindEvent(kWrongAnswerTimed)->fields[3].kind), 2u);
  EXPECT_EQ(FieldWidth(FindEvent(kSemiCorrectAnswerTimed)->fields[3].kind), 2u);
  EXPECT_EQ(FieldWidth(kFieldString), 0u);
}
