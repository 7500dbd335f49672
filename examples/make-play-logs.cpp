// Writes the sample device image's play logs with the library itself: the
// three players' "profile.log" files, each with the start-up records and a
// few play sessions. The clocks are fixed, so the same image always gets the
// same bytes; run it again after changing the log format and commit the result.
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
  int64_t WallClockSeconds() override { return 1709566200; }  // 4 March 2024, 15:30 UTC

  // Lets `millis` of play pass.
  void Advance(uint64_t millis) { mMillis += millis; }

 private:
  uint64_t mMillis = 0;
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
  CLogFile::Destroy();
  vireline::Env::SetCurrent(nullptr);
  for (int slot = 0; slot < CLogFile::kSlotCount; ++slot) {
    std::printf("%s\n", CLogFile::GetLogFilePath(slot).c_str());
  }
  return 0;
}
