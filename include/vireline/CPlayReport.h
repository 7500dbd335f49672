// What a player did, rebuilt from a play log for desktop tools: sessions
// (log-in to log-out) with the titles, games, CYO sets, tutorials and
// activities played in them, the time spent in each, answers with hint and
// help counts, levels, rewards and achievements, and the device's own
// records (clock records, low battery, critical errors) together with
// whatever in the file did not add up.
//
// Records carry elapsed device milliseconds; the calendar time of a record
// comes from the latest clock record (`CTimeSync`) before it, which the
// device writes whenever it starts. Durations are measured on the elapsed
// clock only, so a clock record that sets the calendar back never makes a
// duration negative. Logs are what devices in the field left behind, so every
// irregularity is repaired the cautious way and reported as a notice:
// - a torn last record ends the reading; what came before counts;
// - a title, activity or session left without its exit record is closed at
//   the last record before whatever ended it (a new start of the same kind,
//   a log-out, a restart) and counted up to there;
// - the elapsed clock running backwards without a clock record means the
//   device restarted without its start-up records: everything open is closed
//   at the last record before, and calendar times are unknown until the next
//   clock record;
// - a session still open at the end of the file is counted up to its last
//   record.
//
//   tPlayerReport report = CPlayReport::Read("/QV/Bulk/Data/Uploads/0/profile.log");
//   for (const tPlaySession& session : report.sessions) Show(session);
#ifndef VIRELINE_CPLAYREPORT_H_
#define VIRELINE_CPLAYREPORT_H_

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <vireline/CLogReader.h>
#include <vireline/Export.h>
#include <vireline/Types.h>

// Answers, hints and help requests, of one activity, session or player.
struct VIRELINE_EXPORT tAnswerTally {
  uint32_t correct = 0;
  uint32_t correctTimed = 0;
  uint32_t semiCorrect = 0;
  uint32_t semiCorrectTimed = 0;
  uint32_t wrong = 0;
  uint32_t wrongTimed = 0;
  uint32_t hints = 0;
  uint32_t helps = 0;
  uint64_t answerTime = 0;  // sum of the timed answers' times, in the application's units

  // Every answer, timed or not.
  uint32_t Answers() const;

  // Adds `other`'s counts to these.
  void Add(const tAnswerTally& other);
};

// What kind of thing a child plays.
enum tPlayKind { kPlayTitle, kPlayGame, kPlayCyo, kPlayTutorial };

// A title (or game, CYO set, tutorial) and the time spent in it.
struct VIRELINE_EXPORT tTitleTime {
  tPlayKind kind = kPlayTitle;
  std::string name;
  uint32_t starts = 0;
  uint64_t millis = 0;  // open time, pauses left out
};

// An activity of a title (a game's area, a CYO set's activity) and what happened in it.
// Answers given outside any activity count for an activity with an empty name.
struct VIRELINE_EXPORT tActivityStats {
  tPlayKind kind = kPlayTitle;
  std::string title;  // empty for answers outside any title
  std::string name;
  uint32_t starts = 0;
  uint64_t millis = 0;  // open time, pauses left out
  tAnswerTally answers;
  std::string level;      // the latest level it started at or reached
  bool hasScore = false;  // an exit record gave a score
  int64_t lastScore = 0;
};

// A step of progress: a level, a reward, an achievement or a new player.
struct VIRELINE_EXPORT tProgressEvent {
  // What the step was: a level up or down, a reward, a badge or a new player profile.
  enum tKind { kLevelUp, kLevelDown, kReward, kAchievement, kNewUser };
  tKind kind = kLevelUp;
  uint64_t offset = 0;        // of the record in the file
  bool timeKnown = false;
  int64_t time = 0;           // calendar seconds, when known
  int session = -1;           // index into the sessions; -1 outside any
  std::string title;          // where it happened (empty when outside any title)
  std::string activity;
  std::string level;          // level events
  uint32_t number = 0;        // reward, badge or user number
  uint32_t count = 0;         // rewards
};

// A record worth a reader's attention, or an irregularity of the file.
struct VIRELINE_EXPORT tPlayNotice {
  // What the notice is about.
  enum tKind {
    kTimeSync,         // a clock record: the device started or its clock was set
    kClockReset,       // a clock record saying the clock had just been reset to its default
    kClockSetBack,     // a clock record setting the calendar earlier than the records before
    kElapsedBack,      // elapsed time ran backwards without a clock record (a restart)
    kLowBattery,
    kCriticalError,
    kMissingExit,      // something closed without its exit record
    kMissingLogIn,     // play without a log-in record
    kUnmatchedExit,    // an exit record with nothing open to end
    kOpenAtEnd,        // a session still open at the end of the file
    kTornRecord,       // the last record is cut short
    kUnreadableRecord  // an unknown type code, or a payload that does not match its type
  };
  tKind kind = kTimeSync;
  uint64_t offset = 0;  // of the record concerned
  bool timeKnown = false;
  int64_t time = 0;     // calendar seconds, when known
  int session = -1;     // index into the sessions; -1 outside any
  std::string text;     // what happened, with the log's own texts as they are

  // The notice kind as one word ("timeSync", "criticalError").
  static const char* KindName(tKind kind);
};

// One sitting of a player: from a log-in (or the first play record) to a log-out
// (or whatever ended it).
struct VIRELINE_EXPORT tPlaySession {
  uint64_t offset = 0;       // of its first record
  bool timeKnown = false;    // a clock record came before it
  int64_t start = 0;         // calendar seconds, when known
  uint32_t startStamp = 0;   // elapsed device milliseconds
  uint64_t millis = 0;       // from its first to its last record
  uint64_t pausedMillis = 0; // paused within it
  bool loggedIn = false;     // began with a log-in record
  bool loggedOut = false;    // ended with a log-out record
  bool openAtEnd = false;    // the file ended while it was open
  tAnswerTally answers;
  std::vector<std::string> played;  // titles, games, CYO sets and tutorials, in order of first start
  uint32_t notices = 0;             // notices that fell within it
};

// Everything rebuilt from one player's log.
struct VIRELINE_EXPORT tPlayerReport {
  std::string file;                       // as given
  int player = -1;                        // the header's log number; -1 without a valid header
  CLogReader::tStatus status = CLogReader::kCannotOpen;
  std::string serial;                     // the device's serial number, from a valid header
  uint64_t fileSize = 0;
  uint64_t records = 0;                   // complete records read
  std::vector<tPlaySession> sessions;
  std::vector<tTitleTime> titles;         // in order of first start
  std::vector<tActivityStats> activities; // in order of first start or answer
  std::vector<tProgressEvent> progress;
  std::vector<tPlayNotice> notices;
  tAnswerTally answers;                   // of the whole log
  uint64_t playMillis = 0;                // all sessions together
};

// Only the public calls leave the library, so the rebuilding steps may change freely.
class CPlayReport {
 public:
  // A report to which records are then added in file order.
  VIRELINE_EXPORT CPlayReport();
  VIRELINE_EXPORT ~CPlayReport();
  CPlayReport(const CPlayReport&) = delete;
  CPlayReport& operator=(const CPlayReport&) = delete;

  // Reads the play log at device path `path` and rebuilds what it holds.
  VIRELINE_EXPORT static tPlayerReport Read(const CPath& path);

  // Takes the next record of the log into account.
  VIRELINE_EXPORT void Add(const tLogRecord& record);

  // Ends the log: closes what is still open and notes a torn last record
  // (at `tornOffset`, with `tornBytes` present) when `torn`.
  VIRELINE_EXPORT void Finish(bool torn, uint64_t tornOffset, uint64_t tornBytes);

  // What was rebuilt so far; complete after Finish.
  const tPlayerReport& Get() const { return mReport; }
  // The same, writable: a caller that feeds records itself fills in what the
  // file and its header say (file, status, player, serial, fileSize).
  tPlayerReport& Get() { return mReport; }

 private:
  // Something open: a title-level entry or an activity.
  struct tOpen {
    bool open = false;
    size_t index = 0;          // into titles or activities
    uint32_t startStamp = 0;
    uint64_t offset = 0;
    uint64_t pausedMillis = 0;
    std::string what;          // how notices name it
  };
  enum { kKindCount = 4 };

  void Dispatch(const tLogRecord& record);
  void OnClock(const tLogRecord& record);
  void OnLogIn(const tLogRecord& record);
  void OnLogOut(const tLogRecord& record);
  void OnTitleStart(tPlayKind kind, const std::string& name, const tLogRecord& record);
  void OnTitleExit(tPlayKind kind, const tLogRecord& record);
  void OnActivityStart(tPlayKind kind, const std::string& title, const std::string& name,
                       const std::string& level, const tLogRecord& record);
  void OnActivityExit(tPlayKind kind, const tLogRecord& record, bool hasScore, int64_t score);
  void OnPause(bool pause, const tLogRecord& record);
  void OnAnswer(const tLogRecord& record);
  void OnProgress(tProgressEvent::tKind kind, const tLogRecord& record);

  void EnsureSession(const tLogRecord& record);
  void EndSession(bool loggedOut, const char* why);
  void CloseAll(const char* why);
  void CloseTitle(tPlayKind kind, const char* why);
  void CloseActivity(tPlayKind kind, const char* why);
  void Close(tOpen* open, uint64_t* millis, const char* why);
  uint64_t OpenMillis(const tOpen& open) const;
  size_t TitleIndex(tPlayKind kind, const std::string& name);
  size_t ActivityIndex(tPlayKind kind, const std::string& title, const std::string& name);
  tActivityStats& CurrentActivity();
  void Notice(tPlayNotice::tKind kind, uint64_t offset, const std::string& text);
  bool TimeAt(uint32_t stamp, int64_t* time) const;

  tPlayerReport mReport;
  bool mSessionOpen;
  uint32_t mLastStamp;
  bool mBeforeKnown;       // the calendar time of the record before the current one
  int64_t mBeforeTime;
  uint64_t mLastOffset;
  bool mAnyRecord;
  bool mClockKnown;
  int64_t mClockTime;      // calendar seconds at mClockStamp
  uint32_t mClockStamp;
  bool mPaused;
  uint32_t mPauseStamp;
  tOpen mTitles[kKindCount];
  tOpen mActivities[kKindCount];
  std::map<std::string, size_t> mTitleIndex;
  std::map<std::string, size_t> mActivityIndex;
};

#endif  // VIRELINE_CPLAYREPORT_H_
