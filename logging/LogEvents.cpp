#include <vireline/LogCatalogue.h>
#include <vireline/LogEvents.h>

namespace LogData {
namespace Vireline {

CNewUser::CNewUser(unsigned long userId) { BuildEvent(kNewUser, {userId}); }
CNewUser::~CNewUser() {}

CUserLogIn::CUserLogIn() { BuildEvent(kUserLogIn, {}); }
CUserLogIn::~CUserLogIn() {}

CUserLogOut::CUserLogOut(unsigned char reason) { BuildEvent(kUserLogOut, {reason}); }
CUserLogOut::~CUserLogOut() {}

CNavAreaStart::CNavAreaStart(const char* area) { BuildEvent(kNavAreaStart, {area}); }
CNavAreaStart::~CNavAreaStart() {}

CNavAreaExit::CNavAreaExit() { BuildEvent(kNavAreaExit, {}); }
CNavAreaExit::~CNavAreaExit() {}

CHelpRequest::CHelpRequest(const char* topic) { BuildEvent(kHelpRequest, {topic}); }
CHelpRequest::~CHelpRequest() {}

CTitleStart::CTitleStart(unsigned long titleId, const char* title, const char* version, unsigned char mode) {
  BuildEvent(kTitleStart, {titleId, title, version, mode});
}
CTitleStart::~CTitleStart() {}

CTitleExit::CTitleExit(unsigned char reason) { BuildEvent(kTitleExit, {reason}); }
CTitleExit::~CTitleExit() {}

CActivityStart::CActivityStart(const char* title, const char* activity, const char* level) {
  BuildEvent(kActivityStart, {title, activity, level});
}
CActivityStart::~CActivityStart() {}

CActivityExit::CActivityExit(long score, unsigned char reason) { BuildEvent(kActivityExit, {score, reason}); }
CActivityExit::~CActivityExit() {}

CActivityPause::CActivityPause() { BuildEvent(kActivityPause, {}); }
CActivityPause::~CActivityPause() {}

CActivityUnpause::CActivityUnpause() { BuildEvent(kActivityUnpause, {}); }
CActivityUnpause::~CActivityUnpause() {}

CLevelUp::CLevelUp(const char* level) { BuildEvent(kLevelUp, {level}); }
CLevelUp::~CLevelUp() {}

CLevelDown::CLevelDown(const char* level) { BuildEvent(kLevelDown, {level}); }
CLevelDown::~CLevelDown() {}

CRewardEarned::CRewardEarned(unsigned short reward, unsigned short count) {
  BuildEvent(kRewardEarned, {reward, count});
}
CRewardEarned::~CRewardEarned() {}

CHintRequest::CHintRequest(unsigned long questionId, const char* hint) {
  BuildEvent(kHintRequest, {questionId, hint});
}
CHintRequest::~CHintRequest() {}

CCorrectAnswer::CCorrectAnswer(unsigned long questionId, const char* question, const char* answer) {
  BuildEvent(kCorrectAnswer, {questionId, question, answer});
}
CCorrectAnswer::~CCorrectAnswer() {}

CCorrectAnswerTimed::CCorrectAnswerTimed(unsigned long questionId, const char* question, const char* answer,
                                         unsigned long time) {
  BuildEvent(kCorrectAnswerTimed, {questionId, question, answer, time});
}
CCorrectAnswerTimed::~CCorrectAnswerTimed() {}

CWrongAnswer::CWrongAnswer(unsigned long questionId, const char* question, const char* answer) {
  BuildEvent(kWrongAnswer, {questionId, question, answer});
}
CWrongAnswer::~CWrongAnswer() {}

CWrongAnswerTimed::CWrongAnswerTimed(unsigned long questionId, const char* question, const char* answer,
                                     unsigned short time) {
  BuildEvent(kWrongAnswerTimed, {questionId, question, answer, time});
}
CWrongAnswerTimed::~CWrongAnswerTimed() {}

CSemiCorrectAnswer::CSemiCorrectAnswer(unsigned long questionId, const char* question, const char* answer) {
  BuildEvent(kSemiCorrectAnswer, {questionId, question, answer});
}
CSemiCorrectAnswer::~CSemiCorrectAnswer() {}

CSemiCorrectAnswerTimed::CSemiCorrectAnswerTimed(unsigned long questionId, const char* question,
                                                 const char* answer, unsigned short time) {
  BuildEvent(kSemiCorrectAnswerTimed, {questionId, question, answer, time});
}
CSemiCorrectAnswerTimed::~CSemiCorrectAnswerTimed() {}

CLowBatteryWarning::CLowBatteryWarning() { BuildEvent(kLowBatteryWarning, {}); }
CLowBatteryWarning::~CLowBatteryWarning() {}

CDebugInfo::CDebugInfo(unsigned short code, const char* text) { BuildEvent(kDebugInfo, {code, text}); }
CDebugInfo::~CDebugInfo() {}

CCriticalError::CCriticalError(const char* message) { BuildEvent(kCriticalError, {message}); }
CCriticalError::~CCriticalError() {}

CAchievementEarned::CAchievementEarned(unsigned short badge) { BuildEvent(kAchievementEarned, {badge}); }
CAchievementEarned::~CAchievementEarned() {}

CTutorialStart::CTutorialStart(const char* tutorial) { BuildEvent(kTutorialStart, {tutorial}); }
CTutorialStart::~CTutorialStart() {}

CTutorialExit::CTutorialExit() { BuildEvent(kTutorialExit, {}); }
CTutorialExit::~CTutorialExit() {}

CCyoStart::CCyoStart(const char* set, const char* activity) { BuildEvent(kCyoStart, {set, activity}); }
CCyoStart::~CCyoStart() {}

CCyoExit::CCyoExit(const char* set, const char* activity) { BuildEvent(kCyoExit, {set, activity}); }
CCyoExit::~CCyoExit() {}

CGameStart::CGameStart(const char* game) { BuildEvent(kGameStart, {game}); }
CGameStart::~CGameStart() {}

CGameExit::CGameExit() { BuildEvent(kGameExit, {}); }
CGameExit::~CGameExit() {}

CGameAreaStart::CGameAreaStart(const char* area) { BuildEvent(kGameAreaStart, {area}); }
CGameAreaStart::~CGameAreaStart() {}

CGameAreaExit::CGameAreaExit() { BuildEvent(kGameAreaExit, {}); }
CGameAreaExit::~CGameAreaExit() {}

}  // namespace Vireline
}  // namespace LogData
