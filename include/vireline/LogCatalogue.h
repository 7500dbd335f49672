// The catalogue of play-log record types: for every type code the class that
// logs it and its payload fields with their stored widths. The event classes
// build their records from it and the log reader decodes records with it, so
// a record's layout is written down exactly once.
#ifndef VIRELINE_LOGCATALOGUE_H_
#define VIRELINE_LOGCATALOGUE_H_

#include <cstddef>

#include <vireline/Export.h>

namespace LogData {
namespace Vireline {

// The record type codes: 1-27 the device's own and learning events, 64-71
// tutorial, CYO and game events; 28-63 are unassigned.
enum tEventType {
  kTimeSync = 1,
  kNewUser = 2,
  kUserLogIn = 3,
  kUserLogOut = 4,
  kNavAreaStart = 5,
  kNavAreaExit = 6,
  kHelpRequest = 7,
  kTitleStart = 8,
  kTitleExit = 9,
  kActivityStart = 10,
  kActivityExit = 11,
  kActivityPause = 12,
  kActivityUnpause = 13,
  kLevelUp = 14,
  kLevelDown = 15,
  kRewardEarned = 16,
  kHintRequest = 17,
  kCorrectAnswer = 18,
  kCorrectAnswerTimed = 19,
  kWrongAnswer = 20,
  kWrongAnswerTimed = 21,
  kSemiCorrectAnswer = 22,
  kSemiCorrectAnswerTimed = 23,
  kLowBatteryWarning = 24,
  kDebugInfo = 25,
  kCriticalError = 26,
  kAchievementEarned = 27,
  kTutorialStart = 64,
  kTutorialExit = 65,
  kCyoStart = 66,
  kCyoExit = 67,
  kGameStart = 68,
  kGameExit = 69,
  kGameAreaStart = 70,
  kGameAreaExit = 71
};

// How a payload field is stored: little-endian integers of 1, 2 or 4 bytes,
// or a string with its terminating NUL.
enum tFieldKind { kFieldU8, kFieldU16, kFieldU32, kFieldS32, kFieldString };

// One payload field: the name the inspector shows and the stored kind.
struct tEventField {
  const char* name;
  tFieldKind kind;
};

// No event has more payload fields than this.
const unsigned kMaxEventFields = 4;

// One record type.
struct tEventInfo {
  tEventType type;
  const char* className;  // without namespace: "CGameStart", "CTimeSync"
  unsigned fieldCount;
  tEventField fields[kMaxEventFields];
};

// The stored size of an integer field kind; 0 for a string, whose size is its text's.
VIRELINE_EXPORT unsigned FieldWidth(tFieldKind kind);

// The entry for record type `type` (1 is the clock record); null for an unassigned code.
VIRELINE_EXPORT const tEventInfo* FindEvent(unsigned type);

// Every entry in type-code order; *count gets their number (35: the clock record and 34 events).
VIRELINE_EXPORT const tEventInfo* GetEventCatalogue(size_t* count);

}  // namespace Vireline
}  // namespace LogData

#endif  // VIRELINE_LOGCATALOGUE_H_
