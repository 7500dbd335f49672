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
  // Holds `userId` in 4 bytes: a 10-byte record.
  explicit CNewUser(unsigned long userId);
  ~CNewUser() override;
};

// Type 3. A player logged in.
class VIRELINE_EXPORT CUserLogIn : public CLogData {
 public:
  // No payload: the 6-byte header alone, stamped now.
  CUserLogIn();
  ~CUserLogIn() override;
};

// Type 4. A player logged out.
class VIRELINE_EXPORT CUserLogOut : public CLogData {
 public:
  // Holds the application's `reason` code in 1 byte: a 7-byte record.
  explicit CUserLogOut(unsigned char reason);
  ~CUserLogOut() override;
};

// Type 5. The player entered a navigation area.
class VIRELINE_EXPORT CNavAreaStart : public CLogData {
 public:
  // Holds `area`, whole, with its NUL.
  explicit CNavAreaStart(const char* area);
  ~CNavAreaStart() override;
};

// Type 6. The player left the navigation area.
class VIRELINE_EXPORT CNavAreaExit : public CLogData {
 public:
  // No payload: the 6-byte header alone, stamped now.
  CNavAreaExit();
  ~CNavAreaExit() override;
};

// Type 7. The player asked for help.
class VIRELINE_EXPORT CHelpRequest : public CLogData {
 public:
  // Holds `topic`, whole, with its NUL.
  explicit CHelpRequest(const char* topic);
  ~CHelpRequest() override;
};

// Type 8. A title (application) started.
class VIRELINE_EXPORT CTitleStart : public CLogData {
 public:
  // Holds `titleId` in 4 bytes, `title` and `version` each whole with its NUL,
  // and `mode` in 1 byte.
  CTitleStart(unsigned long titleId, const char* title, const char* version, unsigned char mode);
  ~CTitleStart() override;
};

// Type 9. The title ended.
class VIRELINE_EXPORT CTitleExit : public CLogData {
 public:
  // Holds the application's `reason` code in 1 byte: a 7-byte record.
  explicit CTitleExit(unsigned char reason);
  ~CTitleExit() override;
};

// Type 10. An activity started.
class VIRELINE_EXPORT CActivityStart : public CLogData {
 public:
  // Holds `title`, `activity` and `level`, each whole with its NUL.
  CActivityStart(const char* title, const char* activity, const char* level);
  ~CActivityStart() override;
};

// Type 11. The activity ended.
class VIRELINE_EXPORT CActivityExit : public CLogData {
 public:
  // Holds `score` as a signed 4-byte number and `reason` in 1 byte: an 11-byte record.
  CActivityExit(long score, unsigned char reason);
  ~CActivityExit() override;
};

// Type 12. The activity was paused.
class VIRELINE_EXPORT CActivityPause : public CLogData {
 public:
  // No payload: the 6-byte header alone, stamped now.
  CActivityPause();
  ~CActivityPause() override;
};

// Type 13. The activity was resumed.
class VIRELINE_EXPORT CActivityUnpause : public CLogData {
 public:
  // No payload: the 6-byte header alone, stamped now.
  CActivityUnpause();
  ~CActivityUnpause() override;
};

// Type 14. The player moved up a level.
class VIRELINE_EXPORT CLevelUp : public CLogData {
 public:
  // Holds the level reached, whole, with its NUL.
  explicit CLevelUp(const char* level);
  ~CLevelUp() override;
};

// Type 15. The player moved down a level.
class VIRELINE_EXPORT CLevelDown : public CLogData {
 public:
  // Holds the level reached, whole, with its NUL.
  explicit CLevelDown(const char* level);
  ~CLevelDown() override;
};

// Type 16. The player earned a reward.
class VIRELINE_EXPORT CRewardEarned : public CLogData {
 public:
  // Holds `reward` and `count`, 2 bytes each: a 10-byte record.
  CRewardEarned(unsigned short reward, unsigned short count);
  ~CRewardEarned() override;
};

// Type 17. The player asked for a hint.
class VIRELINE_EXPORT CHintRequest : public CLogData {
 public:
  // Holds `questionId` in 4 bytes and `hint`, whole, with its NUL.
  CHintRequest(unsigned long questionId, const char* hint);
  ~CHintRequest() override;
};

// Type 18. A correct answer.
class VIRELINE_EXPORT CCorrectAnswer : public CLogData {
 public:
  // Holds `questionId` in 4 bytes, then `question` and `answer`, each whole with its NUL.
  CCorrectAnswer(unsigned long questionId, const char* question, const char* answer);
  ~CCorrectAnswer() override;
};

// Type 19. A correct answer with its time, stored in 4 bytes.
class VIRELINE_EXPORT CCorrectAnswerTimed : public CLogData {
 public:
  // Holds `questionId` in 4 bytes, `question` and `answer` each whole with its NUL,
  // then `time` in 4 bytes.
  CCorrectAnswerTimed(unsigned long questionId, const char* question, const char* answer, unsigned long time);
  ~CCorrectAnswerTimed() override;
};

// Type 20. A wrong answer.
class VIRELINE_EXPORT CWrongAnswer : public CLogData {
 public:
  // Holds `questionId` in 4 bytes, then `question` and `answer`, each whole with its NUL.
  CWrongAnswer(unsigned long questionId, const char* question, const char* answer);
  ~CWrongAnswer() override;
};

// Type 21. A wrong answer with its time, stored in 2 bytes.
class VIRELINE_EXPORT CWrongAnswerTimed : public CLogData {
 public:
  // Holds `questionId` in 4 bytes, `question` and `answer` each whole with its NUL,
  // then `time` in 2 bytes.
  CWrongAnswerTimed(unsigned long questionId, const char* question, const char* answer, unsigned short time);
  ~CWrongAnswerTimed() override;
};

// Type 22. A partly correct answer.
class VIRELINE_EXPORT CSemiCorrectAnswer : public CLogData {
 public:
  // Holds `questionId` in 4 bytes, then `question` and `answer`, each whole with its NUL.
  CSemiCorrectAnswer(unsigned long questionId, const char* question, const char* answer);
  ~CSemiCorrectAnswer() override;
};

// Type 23. A partly correct answer with its time, stored in 2 bytes.
class VIRELINE_EXPORT CSemiCorrectAnswerTimed : public CLogData {
 public:
  // Holds `questionId` in 4 bytes, `question` and `answer` each whole with its NUL,
  // then `time` in 2 bytes.
  CSemiCorrectAnswerTimed(unsigned long questionId, const char* question, const char* answer,
                          unsigned short time);
  ~CSemiCorrectAnswerTimed() override;
};

// Type 24. The device warned of a low battery.
class VIRELINE_EXPORT CLowBatteryWarning : public CLogData {
 public:
  // No payload: the 6-byte header alone, stamped now.
  CLowBatteryWarning();
  ~CLowBatteryWarning() override;
};

// Type 25. Diagnostic text; code 0 is the firmware identity written at start-up.
class VIRELINE_EXPORT CDebugInfo : public CLogData {
 public:
  // Holds `code` in 2 bytes and `text`, whole, with its NUL.
  CDebugInfo(unsigned short code, const char* text);
  ~CDebugInfo() override;
};

// Type 26. A failed assertion's message.
class VIRELINE_EXPORT CCriticalError : public CLogData {
 public:
  // Holds `message`, whole, with its NUL.
  explicit CCriticalError(const char* message);
  ~CCriticalError() override;
};

// Type 27. The player earned a badge.
class VIRELINE_EXPORT CAchievementEarned : public CLogData {
 public:
  // Holds `badge` in 2 bytes: an 8-byte record.
  explicit CAchievementEarned(unsigned short badge);
  ~CAchievementEarned() override;
};

// Type 64. A tutorial started.
class VIRELINE_EXPORT CTutorialStart : public CLogData {
 public:
  // Holds `tutorial`, whole, with its NUL.
  explicit CTutorialStart(const char* tutorial);
  ~CTutorialStart() override;
};

// Type 65. The tutorial ended.
class VIRELINE_EXPORT CTutorialExit : public CLogData {
 public:
  // No payload: the 6-byte header alone, stamped now.
  CTutorialExit();
  ~CTutorialExit() override;
};

// Type 66. A create-your-own curriculum activity started.
class VIRELINE_EXPORT CCyoStart : public CLogData {
 public:
  // Holds `set` and `activity`, each whole with its NUL.
  CCyoStart(const char* set, const char* activity);
  ~CCyoStart() override;
};

// Type 67. The create-your-own activity ended.
class VIRELINE_EXPORT CCyoExit : public CLogData {
 public:
  // Holds `set` and `activity`, each whole with its NUL.
  CCyoExit(const char* set, const char* activity);
  ~CCyoExit() override;
};

// Type 68. A game started.
class VIRELINE_EXPORT CGameStart : public CLogData {
 public:
  // Holds `game`, whole, with its NUL.
  explicit CGameStart(const char* game);
  ~CGameStart() override;
};

// Type 69. The game ended.
class VIRELINE_EXPORT CGameExit : public CLogData {
 public:
  // No payload: the 6-byte header alone, stamped now.
  CGameExit();
  ~CGameExit() override;
};

// Type 70. The player entered an area of the game.
class VIRELINE_EXPORT CGameAreaStart : public CLogData {
 public:
  // Holds `area`, whole, with its NUL.
  explicit CGameAreaStart(const char* area);
  ~CGameAreaStart() override;
};

// Type 71. The player left the game area.
class VIRELINE_EXPORT CGameAreaExit : public CLogData {
 public:
  // No payload: the 6-byte header alone, stamped now.
  CGameAreaExit();
  ~CGameAreaExit() override;
};

}  // namespace Vireline
}  // namespace LogData

#endif  // VIRELINE_LOGEVENTS_H_
