#include <vireline/CPlayReport.h>

#include <algorithm>

#include <vireline/LogCatalogue.h>

using namespace LogData::Vireline;

namespace {

const char* const kKindWords[] = {"title", "game", "CYO set", "tutorial"};

// The text of decoded field `index`; empty when the record has fewer.
std::string Text(const tLogRecord& record, size_t index) {
  return index < record.fields.size() ? record.fields[index].text : std::string();
}

// The number in decoded field `index`; 0 when the record has fewer.
int64_t Number(const tLogRecord& record, size_t index) {
  return index < record.fields.size() ? record.fields[index].number : 0;
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

}  // namespace

uint32_t tAnswerTally::Answers() const {
  return correct + correctTimed + semiCorrect + semiCorrectTimed + wrong + wrongTimed;
}

void tAnswerTally::Add(const tAnswerTally& other) {
  correct += other.correct;
  correctTimed += other.correctTimed;
  semiCorrect += other.semiCorrect;
  semiCorrectTimed += other.semiCorrectTimed;
  wrong += other.wrong;
  wrongTimed += other.wrongTimed;
  hints += other.hints;
  helps += other.helps;
  answerTime += other.answerTime;
}

const char* tPlayNotice::KindName(tKind kind) {
  static const char* const kNames[] = {"timeSync",     "clockReset",    "clockSetBack",  "elapsedBack",
                                       "lowBattery",   "criticalError", "missingExit",   "missingLogIn",
                                       "unmatchedExit", "openAtEnd",    "tornRecord",    "unreadableRecord"};
  return kind >= kTimeSync && kind <= kUnreadableRecord ? kNames[kind] : "unknown";
}

CPlayReport::CPlayReport()
    : mSessionOpen(false),
      mLastStamp(0),
      mBeforeKnown(false),
      mBeforeTime(0),
      mLastOffset(0),
      mAnyRecord(false),
      mClockKnown(false),
      mClockTime(0),
      mClockStamp(0),
      mPaused(false),
      mPauseStamp(0) {}

CPlayReport::~CPlayReport() = default;

tPlayerReport CPlayReport::Read(const CPath& path) {
  CLogReader reader(path);
  CPlayReport report;
  tPlayerReport& result = report.Get();
  result.file = path.raw();
  result.status = reader.GetStatus();
  result.fileSize = reader.GetFileSize();
  if (reader.GetStatus() == CLogReader::kHeaderValid) {
    result.player = reader.GetHeader().GetLogNum();
    result.serial = reader.GetHeader().GetDeviceSerialNum();
  }
  tLogRecord record;
  while (reader.Next(&record)) report.Add(record);
  report.Finish(reader.IsTorn(), reader.GetTornOffset(), reader.IsTorn() ? reader.GetTornBytesPresent() : 0);
  return report.Get();
}

void CPlayReport::Add(const tLogRecord& record) {
  ++mReport.records;
  mBeforeKnown = mAnyRecord && TimeAt(mLastStamp, &mBeforeTime);
  if (mAnyRecord && record.timeStamp < mLastStamp) {
    // Elapsed time restarts with the device. With a clock record the restart
    // is an ordinary start-up; without one the start-up records are missing.
    bool clock = record.type == kTimeSync && record.decoded;
    if (!clock) {
      Notice(tPlayNotice::kElapsedBack, record.offset,
             "elapsed time ran back from " + std::to_string(mLastStamp) + " to " + std::to_string(record.timeStamp) +
                 " ms without a clock record: the device restarted; calendar times are unknown until the next "
                 "clock record");
      mClockKnown = false;
    }
    EndSession(false, "the last record before the device restarted");
    mPaused = false;
  }
  mAnyRecord = true;
  mLastStamp = record.timeStamp;
  mLastOffset = record.offset;
  Dispatch(record);
}

void CPlayReport::Dispatch(const tLogRecord& record) {
  if (!record.decoded) {
    std::string what = record.event ? std::string(record.event->className) + " record whose payload does not match it"
                                    : "record of unknown type " + std::to_string(record.type);
    Notice(tPlayNotice::kUnreadableRecord, record.offset, what + "; left out");
    return;
  }
  switch (record.type) {
    case kTimeSync: return OnClock(record);
    case kNewUser: return OnProgress(tProgressEvent::kNewUser, record);
    case kUserLogIn: return OnLogIn(record);
    case kUserLogOut: return OnLogOut(record);
    case kNavAreaStart:
    case kNavAreaExit: return EnsureSession(record);
    case kHelpRequest:
    case kHintRequest:
    case kCorrectAnswer:
    case kCorrectAnswerTimed:
    case kWrongAnswer:
    case kWrongAnswerTimed:
    case kSemiCorrectAnswer:
    case kSemiCorrectAnswerTimed: return OnAnswer(record);
    case kTitleStart: return OnTitleStart(kPlayTitle, Text(record, 1), record);
    case kTitleExit: return OnTitleExit(kPlayTitle, record);
    case kActivityStart:
      return OnActivityStart(kPlayTitle, Text(record, 0), Text(record, 1), Text(record, 2), record);
    case kActivityExit: return OnActivityExit(kPlayTitle, record, true, Number(record, 0));
    case kActivityPause: return OnPause(true, record);
    case kActivityUnpause: return OnPause(false, record);
    case kLevelUp: return OnProgress(tProgressEvent::kLevelUp, record);
    case kLevelDown: return OnProgress(tProgressEvent::kLevelDown, record);
    case kRewardEarned: return OnProgress(tProgressEvent::kReward, record);
    case kAchievementEarned: return OnProgress(tProgressEvent::kAchievement, record);
    case kLowBatteryWarning: return Notice(tPlayNotice::kLowBattery, record.offset, "low battery warning");
    case kCriticalError: return Notice(tPlayNotice::kCriticalError, record.offset, Text(record, 0));
    case kTutorialStart: return OnTitleStart(kPlayTutorial, Text(record, 0), record);
    case kTutorialExit: return OnTitleExit(kPlayTutorial, record);
    case kCyoStart:
      OnTitleStart(kPlayCyo, Text(record, 0), record);
      return OnActivityStart(kPlayCyo, Text(record, 0), Text(record, 1), std::string(), record);
    case kCyoExit:
      OnActivityExit(kPlayCyo, record, false, 0);
      return OnTitleExit(kPlayCyo, record);
    case kGameStart: return OnTitleStart(kPlayGame, Text(record, 0), record);
    case kGameExit: return OnTitleExit(kPlayGame, record);
    case kGameAreaStart: {
      const tOpen& game = mTitles[kPlayGame];
      std::string title = game.open ? mReport.titles[game.index].name : std::string();
      return OnActivityStart(kPlayGame, title, Text(record, 0), std::string(), record);
    }
    case kGameAreaExit: return OnActivityExit(kPlayGame, record, false, 0);
    default: return;  // the device's debug information says nothing about play
  }
}

void CPlayReport::OnClock(const tLogRecord& record) {
  int64_t clock = Number(record, 0);
  mClockKnown = true;
  mClockTime = clock;
  mClockStamp = record.timeStamp;
  Notice(tPlayNotice::kTimeSync, record.offset, "clock record: " + std::to_string(clock));
  if (Number(record, 1) == 2) {
    Notice(tPlayNotice::kClockReset, record.offset,
           "the clock had just been reset to its power-on default; calendar times may be wrong until it is set");
  }
  if (mBeforeKnown && clock < mBeforeTime) {
    Notice(tPlayNotice::kClockSetBack, record.offset,
           "the clock was set back by " + std::to_string(mBeforeTime - clock) + " s; durations are measured on the "
           "elapsed clock and are not affected");
  }
}

void CPlayReport::OnLogIn(const tLogRecord& record) {
  if (mSessionOpen) EndSession(false, "the next log-in");
  EnsureSession(record);
  mReport.sessions.back().loggedIn = true;
}

void CPlayReport::OnLogOut(const tLogRecord& record) {
  if (!mSessionOpen) {
    Notice(tPlayNotice::kUnmatchedExit, record.offset, "CUserLogOut with no session open");
    return;
  }
  EndSession(true, "the log-out");
}

void CPlayReport::OnTitleStart(tPlayKind kind, const std::string& name, const tLogRecord& record) {
  EnsureSession(record);
  CloseTitle(kind, "the next start");
  tOpen& open = mTitles[kind];
  open = tOpen();
  open.open = true;
  open.index = TitleIndex(kind, name);
  open.startStamp = record.timeStamp;
  open.offset = record.offset;
  open.what = std::string(kKindWords[kind]) + " " + Quoted(name);
  ++mReport.titles[open.index].starts;
  std::vector<std::string>& played = mReport.sessions.back().played;
  if (std::find(played.begin(), played.end(), name) == played.end()) played.push_back(name);
}

void CPlayReport::OnTitleExit(tPlayKind kind, const tLogRecord& record) {
  if (!mTitles[kind].open) {
    Notice(tPlayNotice::kUnmatchedExit, record.offset,
           std::string(record.ClassName()) + " with no " + kKindWords[kind] + " open");
    return;
  }
  // An activity of this title that was not ended ends with it.
  CloseActivity(kind, "its title's exit");
  CloseTitle(kind, nullptr);
}

void CPlayReport::OnActivityStart(tPlayKind kind, const std::string& title, const std::string& name,
                                  const std::string& level, const tLogRecord& record) {
  EnsureSession(record);
  CloseActivity(kind, "the next start");
  tOpen& open = mActivities[kind];
  open = tOpen();
  open.open = true;
  open.index = ActivityIndex(kind, title, name);
  open.startStamp = record.timeStamp;
  open.offset = record.offset;
  open.what = "activity " + Quoted(name) + " of " + Quoted(title);
  tActivityStats& activity = mReport.activities[open.index];
  ++activity.starts;
  if (!level.empty()) activity.level = level;
}

void CPlayReport::OnActivityExit(tPlayKind kind, const tLogRecord& record, bool hasScore, int64_t score) {
  if (!mActivities[kind].open) {
    Notice(tPlayNotice::kUnmatchedExit, record.offset, std::string(record.ClassName()) + " with no activity open");
    return;
  }
  tActivityStats& activity = mReport.activities[mActivities[kind].index];
  if (hasScore) {
    activity.hasScore = true;
    activity.lastScore = score;
  }
  CloseActivity(kind, nullptr);
}

void CPlayReport::OnPause(bool pause, const tLogRecord& record) {
  EnsureSession(record);
  if (pause == mPaused) return;  // a repeated pause or a stray unpause changes nothing
  if (pause) {
    mPaused = true;
    mPauseStamp = mLastStamp;
    return;
  }
  uint64_t sessionPause = mLastStamp - mPauseStamp;
  for (tOpen* open : {mTitles, mActivities}) {
    for (int kind = 0; kind < kKindCount; ++kind) {
      if (open[kind].open) open[kind].pausedMillis += mLastStamp - std::max(mPauseStamp, open[kind].startStamp);
    }
  }
  if (mSessionOpen) mReport.sessions.back().pausedMillis += sessionPause;
  mPaused = false;
}

void CPlayReport::OnAnswer(const tLogRecord& record) {
  EnsureSession(record);
  tAnswerTally one;
  switch (record.type) {
    case kHelpRequest: one.helps = 1; break;
    case kHintRequest: one.hints = 1; break;
    case kCorrectAnswer: one.correct = 1; break;
    case kWrongAnswer: one.wrong = 1; break;
    case kSemiCorrectAnswer: one.semiCorrect = 1; break;
    case kCorrectAnswerTimed: one.correctTimed = 1; break;
    case kWrongAnswerTimed: one.wrongTimed = 1; break;
    case kSemiCorrectAnswerTimed: one.semiCorrectTimed = 1; break;
    default: break;
  }
  if (one.correctTimed + one.wrongTimed + one.semiCorrectTimed != 0) {
    one.answerTime = static_cast<uint64_t>(Number(record, 3));
  }
  CurrentActivity().answers.Add(one);
  mReport.sessions.back().answers.Add(one);
  mReport.answers.Add(one);
}

void CPlayReport::OnProgress(tProgressEvent::tKind kind, const tLogRecord& record) {
  bool inSession = kind != tProgressEvent::kNewUser && kind != tProgressEvent::kAchievement;
  if (inSession) EnsureSession(record);
  tProgressEvent event;
  event.kind = kind;
  event.offset = record.offset;
  event.timeKnown = TimeAt(record.timeStamp, &event.time);
  event.session = mSessionOpen ? static_cast<int>(mReport.sessions.size()) - 1 : -1;
  if (kind == tProgressEvent::kLevelUp || kind == tProgressEvent::kLevelDown) event.level = Text(record, 0);
  if (kind != tProgressEvent::kLevelUp && kind != tProgressEvent::kLevelDown) {
    event.number = static_cast<uint32_t>(Number(record, 0));
  }
  if (kind == tProgressEvent::kReward) event.count = static_cast<uint32_t>(Number(record, 1));
  if (mSessionOpen) {
    tActivityStats& activity = CurrentActivity();
    event.title = activity.title;
    event.activity = activity.name;
    if (!event.level.empty()) activity.level = event.level;
  }
  mReport.progress.push_back(event);
}

void CPlayReport::EnsureSession(const tLogRecord& record) {
  if (mSessionOpen) return;
  tPlaySession session;
  session.offset = record.offset;
  session.startStamp = record.timeStamp;
  session.timeKnown = TimeAt(record.timeStamp, &session.start);
  mReport.sessions.push_back(session);
  mSessionOpen = true;
  if (record.type != kUserLogIn) {
    Notice(tPlayNotice::kMissingLogIn, record.offset,
           std::string(record.ClassName()) + " without a log-in; a session is counted from here");
  }
}

void CPlayReport::EndSession(bool loggedOut, const char* why) {
  if (!mSessionOpen) return;
  CloseAll(loggedOut ? "the log-out" : why);
  tPlaySession& session = mReport.sessions.back();
  if (mPaused) session.pausedMillis += mLastStamp - std::max(mPauseStamp, session.startStamp);
  mPaused = false;
  session.millis = mLastStamp - session.startStamp;
  session.loggedOut = loggedOut;
  mReport.playMillis += session.millis;
  if (!loggedOut && why != nullptr) {
    Notice(tPlayNotice::kMissingExit, mLastOffset,
           "session has no log-out; taken to end at " + std::string(why));
  }
  mSessionOpen = false;
}

void CPlayReport::CloseAll(const char* why) {
  for (int kind = 0; kind < kKindCount; ++kind) CloseActivity(static_cast<tPlayKind>(kind), why);
  for (int kind = 0; kind < kKindCount; ++kind) CloseTitle(static_cast<tPlayKind>(kind), why);
}

void CPlayReport::CloseTitle(tPlayKind kind, const char* why) {
  tOpen& open = mTitles[kind];
  if (open.open) Close(&open, &mReport.titles[open.index].millis, why);
}

void CPlayReport::CloseActivity(tPlayKind kind, const char* why) {
  tOpen& open = mActivities[kind];
  if (open.open) Close(&open, &mReport.activities[open.index].millis, why);
}

void CPlayReport::Close(tOpen* open, uint64_t* millis, const char* why) {
  *millis += OpenMillis(*open);
  if (why != nullptr) {
    Notice(tPlayNotice::kMissingExit, open->offset, open->what + " has no exit record; taken to end at " + why);
  }
  open->open = false;
}

uint64_t CPlayReport::OpenMillis(const tOpen& open) const {
  // Everything open started within the current run of the elapsed clock, so
  // the last stamp is never below the start; the guards keep it so anyway.
  uint64_t span = mLastStamp >= open.startStamp ? mLastStamp - open.startStamp : 0;
  uint64_t paused = open.pausedMillis;
  if (mPaused) paused += mLastStamp - std::max(mPauseStamp, std::min(open.startStamp, mLastStamp));
  return span - std::min(paused, span);
}

size_t CPlayReport::TitleIndex(tPlayKind kind, const std::string& name) {
  std::string key = std::to_string(kind) + '\n' + name;
  auto found = mTitleIndex.find(key);
  if (found != mTitleIndex.end()) return found->second;
  tTitleTime title;
  title.kind = kind;
  title.name = name;
  mReport.titles.push_back(title);
  mTitleIndex[key] = mReport.titles.size() - 1;
  return mReport.titles.size() - 1;
}

size_t CPlayReport::ActivityIndex(tPlayKind kind, const std::string& title, const std::string& name) {
  // A NUL cannot occur in a logged text, so the key cannot be ambiguous.
  std::string key = std::to_string(kind) + '\n' + title + std::string(1, '\0') + name;
  auto found = mActivityIndex.find(key);
  if (found != mActivityIndex.end()) return found->second;
  tActivityStats activity;
  activity.kind = kind;
  activity.title = title;
  activity.name = name;
  mReport.activities.push_back(activity);
  mActivityIndex[key] = mReport.activities.size() - 1;
  return mReport.activities.size() - 1;
}

tActivityStats& CPlayReport::CurrentActivity() {
  // The innermost thing open: the activity started last, else the title
  // started last (its answers outside activities), else nothing.
  const tOpen* latest = nullptr;
  for (const tOpen& open : mActivities) {
    if (open.open && (latest == nullptr || open.offset > latest->offset)) latest = &open;
  }
  if (latest != nullptr) return mReport.activities[latest->index];
  int kind = -1;
  for (int k = 0; k < kKindCount; ++k) {
    if (mTitles[k].open && (kind < 0 || mTitles[k].offset > mTitles[kind].offset)) kind = k;
  }
  if (kind < 0) return mReport.activities[ActivityIndex(kPlayTitle, std::string(), std::string())];
  tPlayKind playKind = static_cast<tPlayKind>(kind);
  return mReport.activities[ActivityIndex(playKind, mReport.titles[mTitles[kind].index].name, std::string())];
}

void CPlayReport::Notice(tPlayNotice::tKind kind, uint64_t offset, const std::string& text) {
  tPlayNotice notice;
  notice.kind = kind;
  notice.offset = offset;
  notice.timeKnown = TimeAt(mLastStamp, &notice.time);
  notice.session = mSessionOpen ? static_cast<int>(mReport.sessions.size()) - 1 : -1;
  notice.text = text;
  if (mSessionOpen) ++mReport.sessions.back().notices;
  mReport.notices.push_back(notice);
}

bool CPlayReport::TimeAt(uint32_t stamp, int64_t* time) const {
  if (!mClockKnown || stamp < mClockStamp) return false;
  *time = mClockTime + static_cast<int64_t>((stamp - mClockStamp) / 1000);
  return true;
}

void CPlayReport::Finish(bool torn, uint64_t tornOffset, uint64_t tornBytes) {
  if (torn) {
    Notice(tPlayNotice::kTornRecord, tornOffset,
           "the last record is cut short (" + std::to_string(tornBytes) +
               " bytes present): the device lost power while writing it; it is left out");
  }
  if (!mSessionOpen) return;
  mReport.sessions.back().openAtEnd = true;
  Notice(tPlayNotice::kOpenAtEnd, mLastOffset, "the log ends while a session is open; counted up to its last record");
  EndSession(false, nullptr);
}
