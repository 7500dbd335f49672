#include <vireline/LogCatalogue.h>

namespace LogData {
namespace Vireline {
namespace {

// Field names say what applications store there; the library only keeps them.
const tEventInfo kCatalogue[] = {
    {kTimeSync, "CTimeSync", 2, {{"clock", kFieldU32}, {"resetCode", kFieldU8}}},
    {kNewUser, "CNewUser", 1, {{"userId", kFieldU32}}},
    {kUserLogIn, "CUserLogIn", 0, {}},
    {kUserLogOut, "CUserLogOut", 1, {{"reason", kFieldU8}}},
    {kNavAreaStart, "CNavAreaStart", 1, {{"area", kFieldString}}},
    {kNavAreaExit, "CNavAreaExit", 0, {}},
    {kHelpRequest, "CHelpRequest", 1, {{"topic", kFieldString}}},
    {kTitleStart, "CTitleStart", 4,
     {{"titleId", kFieldU32}, {"title", kFieldString}, {"version", kFieldString}, {"mode", kFieldU8}}},
    {kTitleExit, "CTitleExit", 1, {{"reason", kFieldU8}}},
    {kActivityStart, "CActivityStart", 3,
     {{"title", kFieldString}, {"activity", kFieldString}, {"level", kFieldString}}},
    {kActivityExit, "CActivityExit", 2, {{"score", kFieldS32}, {"reason", kFieldU8}}},
    {kActivityPause, "CActivityPause", 0, {}},
    {kActivityUnpause, "CActivityUnpause", 0, {}},
    {kLevelUp, "CLevelUp", 1, {{"level", kFieldString}}},
    {kLevelDown, "CLevelDown", 1, {{"level", kFieldString}}},
    {kRewardEarned, "CRewardEarned", 2, {{"reward", kFieldU16}, {"count", kFieldU16}}},
    {kHintRequest, "CHintRequest", 2, {{"questionId", kFieldU32}, {"hint", kFieldString}}},
    {kCorrectAnswer, "CCorrectAnswer", 3,
     {{"questionId", kFieldU32}, {"question", kFieldString}, {"answer", kFieldString}}},
    // The timed answers differ in the width of the time: 4 bytes for a
    // correct answer, 2 for the others. Files in the field depend on it.
    {kCorrectAnswerTimed, "CCorrectAnswerTimed", 4,
     {{"questionId", kFieldU32}, {"question", kFieldString}, {"answer", kFieldString}, {"time", kFieldU32}}},
    {kWrongAnswer, "CWrongAnswer", 3,
     {{"questionId", kFieldU32}, {"question", kFieldString}, {"answer", kFieldString}}},
    {kWrongAnswerTimed, "CWrongAnswerTimed", 4,
     {{"questionId", kFieldU32}, {"question", kFieldString}, {"answer", kFieldString}, {"time", kFieldU16}}},
    {kSemiCorrectAnswer, "CSemiCorrectAnswer", 3,
     {{"questionId", kFieldU32}, {"question", kFieldString}, {"answer", kFieldString}}},
    {kSemiCorrectAnswerTimed, "CSemiCorrectAnswerTimed", 4,
     {{"questionId", kFieldU32}, {"question", kFieldString}, {"answer", kFieldString}, {"time", kFieldU16}}},
    {kLowBatteryWarning, "CLowBatteryWarning", 0, {}},
    {kDebugInfo, "CDebugInfo", 2, {{"code", kFieldU16}, {"text", kFieldString}}},
    {kCriticalError, "CCriticalError", 1, {{"message", kFieldString}}},
    {kAchievementEarned, "CAchievementEarned", 1, {{"badge", kFieldU16}}},
    {kTutorialStart, "CTutorialStart", 1, {{"tutorial", kFieldString}}},
    {kTutorialExit, "CTutorialExit", 0, {}},
    {kCyoStart, "CCyoStart", 2, {{"set", kFieldString}, {"activity", kFieldString}}},
    {kCyoExit, "CCyoExit", 2, {{"set", kFieldString}, {"activity", kFieldString}}},
    {kGameStart, "CGameStart", 1, {{"game", kFieldString}}},
    {kGameExit, "CGameExit", 0, {}},
    {kGameAreaStart, "CGameAreaStart", 1, {{"area", kFieldString}}},
    {kGameAreaExit, "CGameAreaExit", 0, {}},
};

const size_t kCatalogueSize = sizeof kCatalogue / sizeof kCatalogue[0];

}  // namespace

unsigned FieldWidth(tFieldKind kind) {
  switch (kind) {
    case kFieldU8:
      return 1;
    case kFieldU16:
      return 2;
    case kFieldU32:
    case kFieldS32:
      return 4;
    case kFieldString:
      break;
  }
  return 0;
}

const tEventInfo* FindEvent(unsigned type) {
  for (const tEventInfo& info : kCatalogue) {
    if (static_cast<unsigned>(info.type) == type) return &info;
  }
  return nullptr;
}

const tEventInfo* GetEventCatalogue(size_t* count) {
  if (count != nullptr) *count = kCatalogueSize;
  return kCatalogue;
}

}  // namespace Vireline
}  // namespace LogData
