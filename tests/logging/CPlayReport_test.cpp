// Sessions, times and answers rebuilt from hand-built play logs, including
// the logs that power losses, restarts and clock changes leave behind.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include <vireline/CLogHeader.h>
#include <vireline/CPlayReport.h>
#include <vireline/CTimeSync.h>
#include <vireline/LogEvents.h>

#include "tests/logging/LogTest.h"

using namespace LogData::Vireline;

namespace {

const char kPath[] = "/QV/Bulk/Data/Uploads/0/profile.log";
const uint32_t kMarch4 = 1709566200;  // 4 March 2024, 15:30 UTC

size_t CountNotices(const tPlayerReport& report, tPlayNotice::tKind kind) {
  size_t count = 0;
  for (const tPlayNotice& notice : report.notices) count += notice.kind == kind;
  return count;
}

const tActivityStats* FindActivity(const tPlayerReport& report, const std::string& name) {
  for (const tActivityStats& activity : report.activities) {
    if (activity.name == name) return &activity;
  }
  return nullptr;
}

}  // namespace

class PlayReportTest : public LogTest {
 protected:
  void SetUp() override {
    LogTest::SetUp();
    CLogHeader header;
    header.SetPlatform(10);
    header.SetDeviceSerialNum("SERIAL-1");
    header.SetLogNum(0);
    mLog.assign(reinterpret_cast<const char*>(header.GetBytes()), CLogHeader::kSize);
  }

  // Appends `record` stamped with `stamp` elapsed milliseconds.
  void At(uint32_t stamp, const CLogData& record) {
    std::string bytes = Bytes(record);
    for (int i = 0; i < 4; ++i) bytes[i] = static_cast<char>(stamp >> (8 * i));
    mLog += bytes;
  }

  void Clock(uint32_t stamp, uint32_t clock, CTimeSync::tResetCode code = CTimeSync::kClockValid) {
    At(stamp, CTimeSync(clock, code));
  }

  tPlayerReport Read() {
    WriteFile(kPath, mLog);
    return CPlayReport::Read(kPath);
  }

  std::string mLog;
};

TEST_F(PlayReportTest, ASessionCountsItsTitleActivityAndAnswers) {
  Clock(0, kMarch4);
  At(1000, CUserLogIn());
  At(2000, CTitleStart(7, "Math", "1.0", 0));
  At(3000, CActivityStart("Math", "Climb", "L1"));
  At(5000, CCorrectAnswer(1, "1+1", "2"));
  At(6000, CWrongAnswerTimed(2, "2+2", "5", 900));
  At(6500, CHintRequest(2, "count"));
  At(7000, CCorrectAnswerTimed(2, "2+2", "4", 400));
  At(7200, CLevelUp("L2"));
  At(9000, CActivityExit(55, 0));
  At(10000, CTitleExit(0));
  At(11000, CUserLogOut(0));
  tPlayerReport report = Read();
  EXPECT_EQ(report.player, 0);
  EXPECT_EQ(report.serial, "SERIAL-1");
  EXPECT_EQ(report.records, 12u);
  ASSERT_EQ(report.sessions.size(), 1u);
  const tPlaySession& session = report.sessions[0];
  EXPECT_TRUE(session.timeKnown);
  EXPECT_EQ(session.start, kMarch4 + 1);
  EXPECT_EQ(session.millis, 10000u);
  EXPECT_TRUE(session.loggedIn);
  EXPECT_TRUE(session.loggedOut);
  EXPECT_FALSE(session.openAtEnd);
  ASSERT_EQ(session.played.size(), 1u);
  EXPECT_EQ(session.played[0], "Math");
  ASSERT_EQ(report.titles.size(), 1u);
  EXPECT_EQ(report.titles[0].millis, 8000u);
  const tActivityStats* climb = FindActivity(report, "Climb");
  ASSERT_NE(climb, nullptr);
  EXPECT_EQ(climb->millis, 6000u);
  EXPECT_EQ(climb->answers.correct, 1u);
  EXPECT_EQ(climb->answers.correctTimed, 1u);
  EXPECT_EQ(climb->answers.wrongTimed, 1u);
  EXPECT_EQ(climb->answers.hints, 1u);
  EXPECT_EQ(climb->answers.answerTime, 1300u);
  EXPECT_EQ(climb->level, "L2");
  EXPECT_TRUE(climb->hasScore);
  EXPECT_EQ(climb->lastScore, 55);
  EXPECT_EQ(report.answers.Answers(), 3u);
  EXPECT_EQ(report.playMillis, 10000u);
  ASSERT_EQ(report.progress.size(), 1u);
  EXPECT_EQ(report.progress[0].activity, "Climb");
  ASSERT_EQ(report.notices.size(), 1u);
  EXPECT_EQ(report.notices[0].kind, tPlayNotice::kTimeSync);
}

TEST_F(PlayReportTest, PausesAreLeftOutOfPlayTimeButNotOutOfTheSession) {
  Clock(0, kMarch4);
  At(1000, CUserLogIn());
  At(1000, CActivityStart("T", "A", ""));
  At(4000, CActivityPause());
  At(4000, CActivityPause());  // a repeated pause changes nothing
  At(64000, CActivityUnpause());
  At(66000, CActivityExit(0, 0));
  At(67000, CUserLogOut(0));
  tPlayerReport report = Read();
  ASSERT_EQ(report.sessions.size(), 1u);
  EXPECT_EQ(report.sessions[0].millis, 66000u);
  EXPECT_EQ(report.sessions[0].pausedMillis, 60000u);
  EXPECT_EQ(FindActivity(report, "A")->millis, 5000u);
}

TEST_F(PlayReportTest, AMissingExitEndsAtTheNextStart) {
  Clock(0, kMarch4);
  At(1000, CUserLogIn());
  At(1000, CGameStart("Zoo"));
  At(2000, CGameAreaStart("Pool"));
  At(4000, CCorrectAnswer(1, "q", "a"));
  At(5000, CGameAreaStart("Den"));
  At(8000, CGameExit());
  At(9000, CUserLogOut(0));
  tPlayerReport report = Read();
  EXPECT_EQ(FindActivity(report, "Pool")->millis, 3000u);
  EXPECT_EQ(FindActivity(report, "Pool")->title, "Zoo");
  EXPECT_EQ(FindActivity(report, "Pool")->answers.correct, 1u);
  EXPECT_EQ(FindActivity(report, "Den")->millis, 3000u);  // ended with its game
  EXPECT_EQ(report.titles[0].millis, 7000u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kMissingExit), 2u);
}

TEST_F(PlayReportTest, ALogOutClosesWhatIsStillOpen) {
  Clock(0, kMarch4);
  At(1000, CUserLogIn());
  At(2000, CCyoStart("Letters", "Trace A"));
  At(3000, CSemiCorrectAnswerTimed(1, "A", "a", 800));
  At(6000, CUserLogOut(0));
  tPlayerReport report = Read();
  ASSERT_EQ(report.titles.size(), 1u);
  EXPECT_EQ(report.titles[0].kind, kPlayCyo);
  EXPECT_EQ(report.titles[0].millis, 4000u);
  EXPECT_EQ(FindActivity(report, "Trace A")->answers.semiCorrectTimed, 1u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kMissingExit), 2u);
  EXPECT_TRUE(report.sessions[0].loggedOut);
}

TEST_F(PlayReportTest, ATornLastRecordIsLeftOutAndTheSessionCountsUpToItsLastRecord) {
  Clock(0, kMarch4);
  At(1000, CUserLogIn());
  At(2000, CTitleStart(7, "Math", "1.0", 0));
  At(4000, CWrongAnswer(1, "q", "a"));
  At(9000, CTitleExit(0));
  mLog.resize(mLog.size() - 2);
  tPlayerReport report = Read();
  EXPECT_EQ(CountNotices(report, tPlayNotice::kTornRecord), 1u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kOpenAtEnd), 1u);
  ASSERT_EQ(report.sessions.size(), 1u);
  EXPECT_TRUE(report.sessions[0].openAtEnd);
  EXPECT_EQ(report.sessions[0].millis, 3000u);
  EXPECT_EQ(report.titles[0].millis, 2000u);
  EXPECT_EQ(report.answers.wrong, 1u);
}

TEST_F(PlayReportTest, ARestartEndsTheOpenSessionAtItsLastRecord) {
  Clock(0, kMarch4);
  At(1000, CUserLogIn());
  At(2000, CTitleStart(7, "Math", "1.0", 0));
  At(3000, CActivityPause());
  At(50000, CLowBatteryWarning());
  Clock(0, kMarch4 + 3600);  // power lost; the device starts again an hour later
  At(1000, CUserLogIn());
  At(5000, CUserLogOut(0));
  tPlayerReport report = Read();
  ASSERT_EQ(report.sessions.size(), 2u);
  EXPECT_EQ(report.sessions[0].millis, 49000u);
  EXPECT_EQ(report.sessions[0].pausedMillis, 47000u);
  EXPECT_FALSE(report.sessions[0].loggedOut);
  EXPECT_EQ(report.titles[0].millis, 1000u);
  EXPECT_EQ(report.sessions[1].start, kMarch4 + 3601);
  EXPECT_EQ(report.sessions[1].millis, 4000u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kLowBattery), 1u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kTimeSync), 2u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kMissingExit), 2u);  // the title and the session
  EXPECT_EQ(CountNotices(report, tPlayNotice::kElapsedBack), 0u);
}

TEST_F(PlayReportTest, ElapsedTimeRunningBackwardsWithoutAClockRecordIsARestartOfUnknownTime) {
  Clock(0, kMarch4);
  At(1000, CUserLogIn());
  At(70000, CCorrectAnswer(1, "q", "a"));
  At(500, CUserLogIn());
  At(2500, CUserLogOut(0));
  tPlayerReport report = Read();
  ASSERT_EQ(report.sessions.size(), 2u);
  EXPECT_EQ(report.sessions[0].millis, 69000u);
  EXPECT_TRUE(report.sessions[0].timeKnown);
  EXPECT_FALSE(report.sessions[1].timeKnown);
  EXPECT_EQ(report.sessions[1].millis, 2000u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kElapsedBack), 1u);
  EXPECT_EQ(report.playMillis, 71000u);
}

TEST_F(PlayReportTest, AClockSetBackIsNotedAndNoDurationGoesNegative) {
  Clock(0, kMarch4);
  At(1000, CUserLogIn());
  At(61000, CUserLogOut(0));
  Clock(200, kMarch4 - 86400 * 30);  // the clock is set a month back
  At(1000, CUserLogIn());
  At(4000, CUserLogOut(0));
  tPlayerReport report = Read();
  ASSERT_EQ(report.sessions.size(), 2u);
  EXPECT_EQ(report.sessions[1].start, kMarch4 - 86400 * 30);
  EXPECT_EQ(report.sessions[1].millis, 3000u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kClockSetBack), 1u);
  EXPECT_EQ(report.playMillis, 63000u);
}

TEST_F(PlayReportTest, AClockJustResetToItsDefaultIsFlagged) {
  Clock(0, 1199149200, CTimeSync::kClockReset);  // 1 January 2008, 01:00
  tPlayerReport report = Read();
  EXPECT_EQ(CountNotices(report, tPlayNotice::kClockReset), 1u);
  EXPECT_TRUE(report.sessions.empty());
}

TEST_F(PlayReportTest, PlayWithoutALogInStartsASessionAndStrayExitsAreNoted) {
  At(100, CTitleExit(0));
  At(200, CHintRequest(1, "h"));
  At(900, CUserLogOut(0));
  At(950, CUserLogOut(0));
  tPlayerReport report = Read();
  ASSERT_EQ(report.sessions.size(), 1u);
  EXPECT_FALSE(report.sessions[0].loggedIn);
  EXPECT_FALSE(report.sessions[0].timeKnown);
  EXPECT_EQ(report.sessions[0].millis, 700u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kMissingLogIn), 1u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kUnmatchedExit), 2u);
  ASSERT_NE(FindActivity(report, ""), nullptr);
  EXPECT_EQ(FindActivity(report, "")->answers.hints, 1u);
}

TEST_F(PlayReportTest, UnknownAndMismatchedRecordsAreNotedAndSkipped) {
  Clock(0, kMarch4);
  mLog += std::string("\x10\0\0\0\x30\x02\xAB\xCD", 8);  // type 48 is unassigned
  mLog += std::string("\x20\0\0\0\x44\x01x", 7);         // a game start without its NUL
  At(40, CAchievementEarned(9));
  tPlayerReport report = Read();
  EXPECT_EQ(CountNotices(report, tPlayNotice::kUnreadableRecord), 2u);
  ASSERT_EQ(report.progress.size(), 1u);
  EXPECT_EQ(report.progress[0].kind, tProgressEvent::kAchievement);
  EXPECT_EQ(report.progress[0].number, 9u);
  EXPECT_TRUE(report.sessions.empty());  // a badge alone makes no session
}

TEST_F(PlayReportTest, FilesThatAreNoLogsGiveAnEmptyReport) {
  WriteFile("/QV/notes.txt", std::string(300, 'n'));
  tPlayerReport report = CPlayReport::Read("/QV/notes.txt");
  EXPECT_EQ(report.status, CLogReader::kNotALog);
  EXPECT_EQ(report.records, 0u);
  EXPECT_EQ(CPlayReport::Read("/QV/none.log").status, CLogReader::kCannotOpen);
}

TEST_F(PlayReportTest, AFullLogOfTheSizeCapIsRebuiltQuickly) {
  uint32_t clock = kMarch4;
  while (mLog.size() < 1024000 - 2000) {
    Clock(0, clock);
    At(1000, CUserLogIn());
    At(2000, CTitleStart(7, "MathMountain", "1.4.0", 0));
    At(3000, CActivityStart("MathMountain", "Climb", "L1"));
    for (uint32_t i = 0; i < 10; ++i) {
      At(4000 + i * 3000, CCorrectAnswerTimed(i, "2+3", "5", 2900));
      At(5000 + i * 3000, CWrongAnswer(i, "4+4", "9"));
      At(6000 + i * 3000, CHintRequest(i, "count on"));
    }
    At(40000, CActivityExit(10, 0));
    At(41000, CTitleExit(0));
    At(42000, CUserLogOut(0));
    clock += 3600;
  }
  // Debug records fill the file to the byte: 9 bytes and their text each.
  while (1024000 - mLog.size() >= 218) At(43000, CDebugInfo(0, std::string(200, 'd').c_str()));
  At(43000, CDebugInfo(0, std::string(1024000 - mLog.size() - 9, 'd').c_str()));
  ASSERT_EQ(mLog.size(), 1024000u);
  WriteFile(kPath, mLog);
  auto start = std::chrono::steady_clock::now();
  tPlayerReport report = CPlayReport::Read(kPath);
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("rebuilt %llu records, %zu sessions of a %llu-byte log in %.3f s\n",
              static_cast<unsigned long long>(report.records), report.sessions.size(),
              static_cast<unsigned long long>(report.fileSize), seconds);
  EXPECT_EQ(report.fileSize, 1024000u);
  EXPECT_GT(report.sessions.size(), 700u);
  for (const tPlaySession& session : report.sessions) EXPECT_LE(session.millis, 42000u);
  EXPECT_EQ(report.answers.correctTimed, report.sessions.size() * 10u);
  EXPECT_EQ(report.titles[0].millis, report.sessions.size() * 39000u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kMissingExit), 0u);
  EXPECT_EQ(CountNotices(report, tPlayNotice::kTornRecord), 0u);
  EXPECT_LT(seconds, 20.0);  // a second at most on a desktop; generous for sanitizers and emulators
}

TEST_F(PlayReportTest, ActivityExitsWithNoActivityOpenAreNotedByTheirRecord) {
  At(100, CGameStart("Puzzles"));
  At(200, CGameAreaExit());
  At(300, CActivityExit(5, 0));
  tPlayerReport report = Read();
  std::vector<std::string> unmatched;
  for (const tPlayNotice& notice : report.notices) {
    if (notice.kind == tPlayNotice::kUnmatchedExit) unmatched.push_back(notice.text);
  }
  ASSERT_EQ(unmatched.size(), 2u);
  EXPECT_NE(unmatched[0].find("with no activity open"), std::string::npos) << unmatched[0];
  EXPECT_NE(unmatched[1].find("with no activity open"), std::string::npos) << unmatched[1];
  EXPECT_NE(unmatched[0], unmatched[1]);  // each names its own record
}

TEST_F(PlayReportTest, NoticeKindsOutsideTheKnownOnesAreUnknown) {
  EXPECT_STREQ(tPlayNotice::KindName(tPlayNotice::kCriticalError), "criticalError");
  // 15 is the largest value the kind's type can hold: newer logs may name kinds this one lacks.
  EXPECT_STREQ(tPlayNotice::KindName(static_cast<tPlayNotice::tKind>(15)), "unknown");
}

TEST_F(PlayReportTest, AGameAreaWithoutAGameBelongsToNoTitle) {
  At(100, CGameAreaStart("Maze"));
  At(400, CGameAreaExit());
  tPlayerReport report = Read();
  ASSERT_NE(FindActivity(report, "Maze"), nullptr);
  EXPECT_EQ(FindActivity(report, "Maze")->title, "");
  EXPECT_EQ(FindActivity(report, "Maze")->starts, 1u);
}
