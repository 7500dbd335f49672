// Writes the sample device image's play logs with the library itself: the
// three players' "profile.log" files, each with the start-up records of four
// device starts over four days and the play sessions between them, with every
// kind of answer, a session cut off by a power loss and one still open at the
// end. The clocks are fixed, so the same image always gets the same bytes; run
// it again after changing the log format and commit the result.
//
//   make-play-logs examples/device-image
#include <cstdio>
#include <string>

#include <vireline/CLogFile.h>
#include <vireline/LogEvents.h>
#include <vireline/Platform.h>

#include "platform/Env.h"

using namespace LogData::Vireline;

namespace {

// The device's platform with both clocks under the generator's control.
class FixedClockEnv : public vireline::EnvWrapper {
 public:
  FixedClockEnv() : EnvWrapper(vireline::Env::Default()) {}

  uint64_t NowMicros() override { return mMillis * 1000; }
  int64_t WallClockSeconds() override { return mWallClock; }

  // Lets `millis` of play pass.
  void Advance(uint64_t millis) { mMillis += millis; }

  // The device starts again with its calendar clock at `wallClock`.
  void Restart(int64_t wallClock) {
    mMillis = 0;
    mWallClock = wallClock;
  }

 private:
  uint64_t mMillis = 0;
  int64_t mWallClock = 1709566200;  // 4 March 2024, 15:30 UTC
};

FixedClockEnv gEnv;

// Logs an `Event` built from `arguments` after `millis` more of play.
template <typename Event, typename... Arguments>
void Play(uint64_t millis, Arguments... arguments) {
  gEnv.Advance(millis);
  Event record(arguments...);
  CLogFile::Instance()->Append(record);
}

// Player 0 does sums on Math Mountain.
void MathSession() {
  CLogFile::Instance()->SetCurrentProfile(0);
  Play<CUserLogIn>(1500);
  Play<CNavAreaStart>(800, "Home");
  Play<CTitleStart>(2400, 0x00170042ul, "MathMountain", "1.4.0", static_cast<unsigned char>(0));
  Play<CActivityStart>(3000, "MathMountain", "Climb", "Level 1");
  Play<CCorrectAnswerTimed>(5200, 1ul, "2+3", "5", 5100ul);
  Play<CWrongAnswerTimed>(7300, 2ul, "4+4", "9", static_cast<unsigned short>(7200));
  Play<CHintRequest>(1200, 2ul, "Count on your fingers");
  Play<CCorrectAnswerTimed>(4100, 2ul, "4+4", "8", 4000ul);
  Play<CLevelUp>(600, "Level 2");
  Play<CRewardEarned>(400, static_cast<unsigned short>(3), static_cast<unsigned short>(1));
  Play<CActivityExit>(9000, 120l, static_cast<unsigned char>(0));
  Play<CTitleExit>(1500, static_cast<unsigned char>(0));
  Play<CUserLogOut>(2000, static_cast<unsigned char>(1));
}

// Player 1 explores the zoo game and earns a badge.
void ZooSession() {
  CLogFile::Instance()->SetCurrentProfile(1);
  Play<CUserLogIn>(60000);
  Play<CGameStart>(2200, "ZooKeeper");
  Play<CGameAreaStart>(3100, "Penguin Pool");
  Play<CSemiCorrectAnswer>(8800, 7ul, "Which animal swims?", "duck");
  Play<CCorrectAnswer>(3400, 7ul, "Which animal swims?", "penguin");
  Play<CGameAreaExit>(12000);
  Play<CAchievementEarned>(300, static_cast<unsigned short>(12));
  Play<CLowBatteryWarning>(45000);
  Play<CGameExit>(1000);
  Play<CUserLogOut>(900, static_cast<unsigned char>(0));
}

// Player 2 takes the tutorial and a create-your-own activity; one assertion
// of an application ends up in the log too.
void TutorialSession() {
  CLogFile::Instance()->SetCurrentProfile(2);
  Play<CNewUser>(30000, 2ul);
  Play<CUserLogIn>(1000);
  Play<CTutorialStart>(1500, "Welcome");
  Play<CActivityPause>(20000);
  Play<CActivityUnpause>(65000);
  Play<CTutorialExit>(9000);
  Play<CHelpRequest>(2500, "Settings");
  Play<CCyoStart>(4000, "Letters", "Trace A");
  Play<CSemiCorrectAnswerTimed>(6000, 1ul, "Trace A", "A", static_cast<unsigned short>(5900));
  Play<CCyoExit>(3000, "Letters", "Trace A");
  Play<CCriticalError>(700, "Audio clip missing: cheer.wav (line 88 in VirelineJSON/Src/LTM)");
  Play<CUserLogOut>(1200, static_cast<unsigned char>(0));
}

// The device starts again: elapsed time begins anew and the start-up records
// go into every player's log.
void Restart(int64_t wallClock) {
  CLogFile::Destroy();
  gEnv.Restart(wallClock);
  CLogFile::Instance()->LogInitialLogData();
}

// Player 0 climbs further and builds bridges: every kind of answer, a pause,
// levels up and down, a reward and a badge.
void MathSessionDay2() {
  CLogFile::Instance()->SetCurrentProfile(0);
  Play<CUserLogIn>(2000);
  Play<CTitleStart>(2600, 0x00170042ul, "MathMountain", "1.4.0", static_cast<unsigned char>(0));
  Play<CActivityStart>(2800, "MathMountain", "Climb", "Level 2");
  Play<CCorrectAnswer>(6100, 3ul, "6+7", "13");
  Play<CCorrectAnswerTimed>(4000, 4ul, "9+5", "14", 3900ul);
  Play<CSemiCorrectAnswer>(7400, 5ul, "12-4", "08");
  Play<CWrongAnswer>(8200, 6ul, "15-7", "9");
  Play<CHintRequest>(1500, 6ul, "Take away one at a time");
  Play<CCorrectAnswer>(5600, 6ul, "15-7", "8");
  Play<CLevelUp>(700, "Level 3");
  Play<CRewardEarned>(500, static_cast<unsigned short>(4), static_cast<unsigned short>(2));
  Play<CActivityPause>(3000);
  Play<CActivityUnpause>(30000);
  Play<CActivityExit>(6000, 180l, static_cast<unsigned char>(0));
  Play<CActivityStart>(2500, "MathMountain", "Bridge", "Level 1");
  Play<CCorrectAnswerTimed>(6500, 1ul, "3x4", "12", 6400ul);
  Play<CWrongAnswerTimed>(9100, 2ul, "6x7", "48", static_cast<unsigned short>(9000));
  Play<CHintRequest>(1800, 2ul, "Six sevens are seven sixes");
  Play<CWrongAnswerTimed>(7700, 2ul, "6x7", "49", static_cast<unsigned short>(7600));
  Play<CLevelDown>(600, "Starter");
  Play<CHelpRequest>(2400, "How to build a bridge");
  Play<CSemiCorrectAnswerTimed>(8300, 3ul, "2x5", "10?", static_cast<unsigned short>(8200));
  Play<CCorrectAnswerTimed>(5000, 4ul, "2x6", "12", 4900ul);
  Play<CAchievementEarned>(400, static_cast<unsigned short>(21));
  Play<CActivityExit>(4000, 75l, static_cast<unsigned char>(0));
  Play<CTitleExit>(1600, static_cast<unsigned char>(0));
  Play<CUserLogOut>(1800, static_cast<unsigned char>(0));
}

// Player 1 reads a story, then visits the lions.
void StorySessionDay2() {
  CLogFile::Instance()->SetCurrentProfile(1);
  Play<CUserLogIn>(40000);
  Play<CTitleStart>(2100, 0x00170051ul, "StoryTime", "2.0.1", static_cast<unsigned char>(1));
  Play<CActivityStart>(2400, "StoryTime", "Read Along", "Chapter 1");
  Play<CCorrectAnswer>(21000, 1ul, "Who found the key?", "Mia");
  Play<CWrongAnswer>(18000, 2ul, "Where was the key?", "in the tree");
  Play<CHintRequest>(2000, 2ul, "Look at page 3");
  Play<CCorrectAnswer>(6000, 2ul, "Where was the key?", "under the mat");
  Play<CActivityExit>(30000, 40l, static_cast<unsigned char>(0));
  Play<CTitleExit>(1200, static_cast<unsigned char>(0));
  Play<CGameStart>(3000, "ZooKeeper");
  Play<CGameAreaStart>(2500, "Lion Den");
  Play<CCorrectAnswerTimed>(9000, 9ul, "What do lions eat?", "meat", 8800ul);
  Play<CWrongAnswer>(7000, 10ul, "How many cubs?", "five");
  Play<CGameAreaExit>(15000);
  Play<CRewardEarned>(300, static_cast<unsigned short>(7), static_cast<unsigned short>(1));
  Play<CGameExit>(1500);
  Play<CUserLogOut>(800, static_cast<unsigned char>(0));
}

// Player 2 spells this week's words.
void SpellingSessionDay2() {
  CLogFile::Instance()->SetCurrentProfile(2);
  Play<CUserLogIn>(20000);
  Play<CCyoStart>(3000, "Spelling Week 3", "Spell CAT");
  Play<CCorrectAnswer>(7000, 1ul, "cat", "cat");
  Play<CWrongAnswer>(9000, 2ul, "hat", "hta");
  Play<CHintRequest>(1500, 2ul, "Listen again");
  Play<CSemiCorrectAnswer>(6000, 2ul, "hat", "Hat");
  Play<CCyoExit>(2000, "Spelling Week 3", "Spell CAT");
  Play<CCyoStart>(1500, "Spelling Week 3", "Spell DOG");
  Play<CCorrectAnswerTimed>(5000, 3ul, "dog", "dog", 4800ul);
  Play<CWrongAnswerTimed>(8000, 4ul, "log", "lgo", static_cast<unsigned short>(7900));
  Play<CCorrectAnswerTimed>(6000, 4ul, "log", "log", 5800ul);
  Play<CCyoExit>(2500, "Spelling Week 3", "Spell DOG");
  Play<CLevelUp>(500, "Week 4");
  Play<CAchievementEarned>(300, static_cast<unsigned short>(5));
  Play<CUserLogOut>(1000, static_cast<unsigned char>(0));
}

// A morning: player 1 feeds the penguins; player 0 starts climbing but the
// battery runs out before anything is closed.
void MorningDay3() {
  CLogFile::Instance()->SetCurrentProfile(1);
  Play<CUserLogIn>(5000);
  Play<CGameStart>(2000, "ZooKeeper");
  Play<CGameAreaStart>(2600, "Penguin Pool");
  Play<CCorrectAnswer>(5400, 11ul, "What do penguins eat?", "fish");
  Play<CGameAreaExit>(9000);
  Play<CGameExit>(1000);
  Play<CUserLogOut>(700, static_cast<unsigned char>(0));
  CLogFile::Instance()->SetCurrentProfile(0);
  Play<CUserLogIn>(3000);
  Play<CTitleStart>(2300, 0x00170042ul, "MathMountain", "1.4.0", static_cast<unsigned char>(0));
  Play<CActivityStart>(2600, "MathMountain", "Climb", "Level 3");
  Play<CCorrectAnswer>(6900, 7ul, "8+9", "17");
  Play<CCorrectAnswerTimed>(4400, 8ul, "7+6", "13", 4300ul);
  Play<CLowBatteryWarning>(20000);
  Play<CWrongAnswerTimed>(12000, 9ul, "9+9", "16", static_cast<unsigned short>(11900));
}

// The evening after the power loss: player 2 takes the drawing tutorial and
// player 0 climbs again; the log ends while player 0 still plays.
void EveningDay3() {
  CLogFile::Instance()->SetCurrentProfile(2);
  Play<CUserLogIn>(4000);
  Play<CTutorialStart>(1500, "Drawing");
  Play<CTutorialExit>(42000);
  Play<CUserLogOut>(1000, static_cast<unsigned char>(0));
  CLogFile::Instance()->SetCurrentProfile(0);
  Play<CUserLogIn>(6000);
  Play<CTitleStart>(2200, 0x00170042ul, "MathMountain", "1.4.0", static_cast<unsigned char>(0));
  Play<CActivityStart>(2700, "MathMountain", "Climb", "Level 3");
  Play<CCorrectAnswer>(6600, 10ul, "5+8", "13");
  Play<CSemiCorrectAnswerTimed>(7100, 11ul, "14-6", "8.", static_cast<unsigned short>(7000));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make-play-logs DEVICE-IMAGE\n");
    return 2;
  }
  vireline::SetDeviceRoot(argv[1]);
  vireline::Env::SetCurrent(&gEnv);
  for (int slot = 0; slot < CLogFile::kSlotCount; ++slot) {
    gEnv.RemoveFile(CLogFile::GetLogFilePath(slot).raw());  // start from empty files
  }
  CLogFile::Instance()->LogInitialLogData();
  MathSession();
  ZooSession();
  TutorialSession();
  Restart(1709655000);  // 5 March 2024, 16:10 UTC
  MathSessionDay2();
  StorySessionDay2();
  SpellingSessionDay2();
  Restart(1709802300);  // 7 March 2024, 09:05 UTC
  MorningDay3();
  Restart(1709835600);  // 7 March 2024, 18:20 UTC, after the power loss
  EveningDay3();
  CLogFile::Destroy();
  vireline::Env::SetCurrent(nullptr);
  for (int slot = 0; slot < CLogFile::kSlotCount; ++slot) {
    std::printf("%s\n", CLogFile::GetLogFilePath(slot).c_str());
  }
  return 0;
}
