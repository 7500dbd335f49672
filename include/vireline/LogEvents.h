// The play events of the learning applications, one class per record type.
// Each constructor builds the complete record from its arguments, one payload
// field per argument in order, with the type code and field widths of the
// record catalogue (LogCatalogue.h). Hand the event to CLogFile::Append.
// String arguments are stored with their NUL; a null string stores one zero byte.
#ifndef VIRELINE_LOGEVENTS_H_
#define VIRELINE_LOGEVENTS_H_

#include <vireline/CLogData.h>
#include <vireline/Export.h>

namespace LogData {
namespace Vireline {

// Type 2. A player profile was created.
class VIRELINE_EXPORT CNewUser : public CLogData {
 public:
  explicit CNewUser(unsigned long userId);
  ~CNewUser() override;
};

// Type 3. A player logged in.
class VIRELINE_EXPORT CUserLogIn : public CLogData {
 public:
  CUserLogIn();
  ~CUserLogIn() override;
};

// Type 4. A player logged out.
class VIRELINE_EXPORT CUserLogOut : public CLogData {
 public:
  explicit CUserLogOut(unsigned char reason);
  ~CUserLogOut() override;
};

// Type 5. The player entered a navigation area.
class VIRELINE_EXPORT CNavAreaStart : public CLogData {
 public:
  explicit CNavAreaStart(const char* area);
  ~CNavAreaStart() override;
};

// Type 6. The player left the navigation area.
class VIRELINE_EXPORT CNavAreaExit : public CLogData {
 public:
  CNavAreaExit();
  ~CNavAreaExit() override;
};

// Type 7. The player asked for help.
class VIRELINE_EXPORT CHelpRequest : public CLogData {
 public:
  explicit CHelpRequest(const char* topic);
  ~CHelpRequest() override;
};

// Type 8. A title (application) started.
class VIRELINE_EXPORT CTitleStart : public CLogData {
 public:
  CTitleStart(unsigned long titleId, const char* title, const char* version, unsigned char mode);
  ~CTitleStart() override;
};

// Type 9. The title ended.
class VIRELINE_EXPORT CTitleExit : public CLogData {
 public:
  explicit CTitleExit(unsigned char reason);
  ~CTitleExit() override;
};

// Type 10. An activity started.
class VIRELINE_EXPORT CActivityStart : public CLogData {
 public:
  CActivityStart(const char* title, const char* activity, const char* level);
  ~CActivityStart() override;
};

// Type 11. The activity ended.
class VIRELINE_EXPORT CActivityExit : public CLogData {
 public:
  CActivityExit(long score, unsigned char reason);
  ~CActivityExit() override;
};

// Type 12. The activity was paused.
class VIRELINE_EXPORT CActivityPause : public CLogData {
 public:
  CActivityPause();
  ~CActivityPause() override;
};

// Type 13. The activity was resumed.
class VIRELINE_EXPORT CActivityUnpause : public CLogData {
 public:
  CActivityUnpause();
  ~CActivityUnpause() override;
};

// Type 14. The player moved up a level.
class VIRELINE_EXPORT CLevelUp : public CLogData {
 public:
  explicit CLevelUp(const char* level);
  ~CLevelUp() override;
};

// Type 15. The player moved down a level.
class VIRELINE_EXPORT CLevelDown : public CLogData {
 public:
  explicit CLevelDown(const char* level);
  ~CLevelDown() override;
};

// Type 16. The player earned a reward.
class VIRELINE_EXPORT CRewardEarned : public CLogData {
 public:
  CRewardEarned(unsigned short reward, unsigned short count);
  ~CRewardEarned() override;
};

// Type 17. The player asked for a hint.
class VIRELINE_EXPORT CHintRequest : public CLogData {
 public:
  CHintRequest(unsigned long questionId, const char* hint);
  ~CHintRequest() override;
};

// Type 18. A correct answer.
class VIRELINE_EXPORT CCorrectAnswer : public CLogData {
 public:
  CCorrectAnswer(unsigned long questionId, const char* question, const char* answer);
  ~CCorrectAnswer() override;
};

// Type 19. A correct answer with its time, stored in 4 bytes.
class VIRELINE_EXPORT CCorrectAnswerTimed : public CLogData {
 public:
  CCorrectAnswerTimed(unsigned long questionId, const char* question, const char* answer, unsigned long time);
  ~CCorrectAnswerTimed() override;
};

// Type 20. A wrong answer.
class VIRELINE_EXPORT CWrongAnswer : public CLogData {
 public:
  CWrongAnswer(unsigned long questionId, const char* question, const char* answer);
  ~CWrongAnswer() override;
};

// Type 21. A wrong answer with its time, stored in 2 bytes.
class VIRELINE_EXPORT CWrongAnswerTimed : public CLogData {
 public:
  CWrongAnswerTimed(unsigned long questionId, const char* question, const char* answer, unsigned short time);
  ~CWrongAnswerTimed() override;
};

// Type 22. A partly correct answer.
class VIRELINE_EXPORT CSemiCorrectAnswer : public CLogData {
 public:
  CSemiCorrectAnswer(unsigned long questionId, const char* question, const char* answer);
  ~CSemiCorrectAnswer() override;
};

// Type 23. A partly correct answer with its time, stored in 2 bytes.
class VIRELINE_EXPORT CSemiCorrectAnswerTimed : public CLogData {
 public:
  CSemiCorrectAnswerTimed(unsigned long questionId, const char* question, const char* answer,
                          unsigned short time);
  ~CSemiCorrectAnswerTimed() override;
};

// Type 24. The device warned of a low battery.
class VIRELINE_EXPORT CLowBatteryWarning : public CLogData {
 public:
  CLowBatteryWarning();
  ~CLowBatteryWarning() override;
};

// Type 25. Diagnostic text; code 0 is the firmware identity written at start-up.
class VIRELINE_EXPORT CDebugInfo : public CLogData {
 public:
  CDebugInfo(unsigned short code, const char* text);
  ~CDebugInfo() override;
};

// Type 26. A failed assertion's message.
class VIRELINE_EXPORT CCriticalError : public CLogData {
 public:
  explicit CCriticalError(const char* message);
  ~CCriticalError() override;
};

// Type 27. The player earned a badge.
class VIRELINE_EXPORT CAchievementEarned : public CLogData {
 public:
  explicit CAchievementEarned(unsigned short badge);
  ~CAchievementEarned() override;
};

// Type 64. A tutorial started.
class VIRELINE_EXPORT CTutorialStart : public CLogData {
 public:
  explicit CTutorialStart(const char* tutorial);
  ~CTutorialStart() override;
};

// Type 65. The tutorial ended.
class VIRELINE_EXPORT CTutorialExit : public CLogData {
 public:
  CTutorialExit();
  ~CTutorialExit() override;
};

// Type 66. A create-your-own curriculum activity started.
class VIRELINE_EXPORT CCyoStart : public CLogData {
 public:
  CCyoStart(const char* set, const char* activity);
  ~CCyoStart() override;
};

// Type 67. The create-your-own activity ended.
class VIRELINE_EXPORT CCyoExit : public CLogData {
 public:
  CCyoExit(const char* set, const char* activity);
  ~CCyoExit() override;
};

// Type 68. A game started.
class VIRELINE_EXPORT CGameStart : public CLogData {
 public:
  explicit CGameStart(const char* game);
  ~CGameStart() override;
};

// Type 69. The game ended.
class VIRELINE_EXPORT CGameExit : public CLogData {
 public:
  CGameExit();
  ~CGameExit() override;
};

// Type 70. The player entered an area of the game.
class VIRELINE_EXPORT CGameAreaStart : public CLogData {
 public:
  explicit CGameAreaStart(const char* area);
  ~CGameAreaStart() override;
};

// Type 71. The player left the game area.
class VIRELINE_EXPORT CGameAreaExit : public CLogData {
 public:
  CGameAreaExit();
  ~CGameAreaExit() override;
};

}  // namespace Vireline
}  // namespace LogData

#endif  // VIRELINE_LOGEVENTS_H_
