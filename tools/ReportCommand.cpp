// `vireline report [SLOT|FILE...] [--player N] [--html FILE | --json]`: what
// the players did, rebuilt from their play logs: sessions, time per title and
// activity, answers, progress and the device's own records.
#include <cstdio>
#include <string>
#include <vector>

#include <json/json.h>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/KeyValueDisplay.h"
#include "tools/ReportFormat.h"
#include "tools/ReportPage.h"

namespace vireline {
namespace tools {
namespace {

const char* const kStatusNames[] = {"valid", "invalid", "not a play log", "too short", "cannot be opened"};

Json::Value TallyJson(const tAnswerTally& tally) {
  Json::Value json(Json::objectValue);
  json["answers"] = tally.Answers();
  json["correct"] = tally.correct;
  json["correctTimed"] = tally.correctTimed;
  json["semiCorrect"] = tally.semiCorrect;
  json["semiCorrectTimed"] = tally.semiCorrectTimed;
  json["wrong"] = tally.wrong;
  json["wrongTimed"] = tally.wrongTimed;
  json["hints"] = tally.hints;
  json["helps"] = tally.helps;
  json["answerTime"] = Json::UInt64(tally.answerTime);
  return json;
}

// A calendar time as the JSON report gives it: text and epoch seconds, or null.
void PutTime(Json::Value* json, const char* name, bool known, int64_t seconds) {
  (*json)[name] = known ? Json::Value(FormatTime(seconds) + " UTC") : Json::Value(Json::nullValue);
  (*json)[std::string(name) + "Epoch"] = known ? Json::Value(Json::Int64(seconds)) : Json::Value(Json::nullValue);
}

Json::Value SessionJson(const tPlaySession& session) {
  Json::Value json(Json::objectValue);
  json["offset"] = Json::UInt64(session.offset);
  PutTime(&json, "start", session.timeKnown, session.start);
  json["day"] = session.timeKnown ? Json::Value(FormatDay(session.start)) : Json::Value(Json::nullValue);
  json["millis"] = Json::UInt64(session.millis);
  json["duration"] = FormatDuration(session.millis);
  json["pausedMillis"] = Json::UInt64(session.pausedMillis);
  json["loggedIn"] = session.loggedIn;
  json["loggedOut"] = session.loggedOut;
  json["openAtEnd"] = session.openAtEnd;
  json["played"] = Json::Value(Json::arrayValue);
  for (const std::string& name : session.played) json["played"].append(DisplayText(name.c_str()));
  json["answers"] = TallyJson(session.answers);
  json["notices"] = session.notices;
  return json;
}

Json::Value TitleJson(const tTitleTime& title) {
  Json::Value json(Json::objectValue);
  json["kind"] = PlayKindName(title.kind);
  json["name"] = DisplayText(title.name.c_str());
  json["starts"] = title.starts;
  json["millis"] = Json::UInt64(title.millis);
  json["time"] = FormatDuration(title.millis);
  return json;
}

Json::Value ActivityJson(const tActivityStats& activity) {
  Json::Value json(Json::objectValue);
  json["kind"] = PlayKindName(activity.kind);
  json["title"] = DisplayText(activity.title.c_str());
  json["name"] = DisplayText(activity.name.c_str());
  json["starts"] = activity.starts;
  json["millis"] = Json::UInt64(activity.millis);
  json["time"] = FormatDuration(activity.millis);
  json["level"] = DisplayText(activity.level.c_str());
  json["lastScore"] = activity.hasScore ? Json::Value(Json::Int64(activity.lastScore)) : Json::Value(Json::nullValue);
  json["answers"] = TallyJson(activity.answers);
  return json;
}

Json::Value ProgressJson(const tProgressEvent& event) {
  Json::Value json(Json::objectValue);
  json["kind"] = ProgressKindName(event.kind);
  json["offset"] = Json::UInt64(event.offset);
  PutTime(&json, "time", event.timeKnown, event.time);
  json["session"] = event.session;
  json["title"] = DisplayText(event.title.c_str());
  json["activity"] = DisplayText(event.activity.c_str());
  if (event.kind == tProgressEvent::kLevelUp || event.kind == tProgressEvent::kLevelDown) {
    json["level"] = DisplayText(event.level.c_str());
  } else {
    json["number"] = event.number;
  }
  if (event.kind == tProgressEvent::kReward) json["count"] = event.count;
  return json;
}

Json::Value NoticeJson(const tPlayNotice& notice) {
  Json::Value json(Json::objectValue);
  json["kind"] = tPlayNotice::KindName(notice.kind);
  json["offset"] = Json::UInt64(notice.offset);
  PutTime(&json, "time", notice.timeKnown, notice.time);
  json["session"] = notice.session;
  json["text"] = DisplayText(notice.text.c_str());
  return json;
}

Json::Value TotalsJson(const tPlayerReport& report) {
  ReportTotals totals = CountTotals(report);
  Json::Value json(Json::objectValue);
  json["sessions"] = Json::UInt64(report.sessions.size());
  json["days"] = Json::UInt64(totals.days);
  json["playMillis"] = Json::UInt64(report.playMillis);
  json["playTime"] = FormatDuration(report.playMillis);
  json["titles"] = Json::UInt64(report.titles.size());
  json["activities"] = Json::UInt64(report.activities.size());
  json["answers"] = TallyJson(report.answers);
  json["levels"] = Json::UInt64(totals.levels);
  json["rewards"] = Json::UInt64(totals.rewards);
  json["achievements"] = Json::UInt64(totals.achievements);
  json["timeSyncs"] = Json::UInt64(totals.timeSyncs);
  json["lowBattery"] = Json::UInt64(totals.lowBattery);
  json["criticalErrors"] = Json::UInt64(totals.criticalErrors);
  json["irregularities"] = Json::UInt64(totals.irregularities);
  return json;
}

template <typename Item, typename Convert>
Json::Value ArrayJson(const std::vector<Item>& items, Convert convert) {
  Json::Value json(Json::arrayValue);
  for (const Item& item : items) json.append(convert(item));
  return json;
}

Json::Value PlayerJson(const tPlayerReport& report) {
  Json::Value json(Json::objectValue);
  json["player"] = report.player;
  json["file"] = DisplayText(report.file.c_str());
  json["header"] = kStatusNames[report.status];
  json["serial"] = DisplayText(report.serial.c_str());
  json["size"] = Json::UInt64(report.fileSize);
  json["records"] = Json::UInt64(report.records);
  json["totals"] = TotalsJson(report);
  json["sessions"] = ArrayJson(report.sessions, SessionJson);
  json["titles"] = ArrayJson(report.titles, TitleJson);
  json["activities"] = ArrayJson(report.activities, ActivityJson);
  json["progress"] = ArrayJson(report.progress, ProgressJson);
  json["notices"] = ArrayJson(report.notices, NoticeJson);
  return json;
}

void PrintText(const tPlayerReport& report) {
  ReportTotals totals = CountTotals(report);
  std::printf("player %d  %s  %llu records\n", report.player, DisplayText(report.file.c_str()).c_str(),
              static_cast<unsigned long long>(report.records));
  std::printf("  %zu sessions on %zu days, %s played; %u answers (%u correct, %u semi-correct, %u wrong), "
              "%u hints, %u help requests\n",
              report.sessions.size(), totals.days, FormatDuration(report.playMillis).c_str(), report.answers.Answers(),
              report.answers.correct + report.answers.correctTimed,
              report.answers.semiCorrect + report.answers.semiCorrectTimed,
              report.answers.wrong + report.answers.wrongTimed, report.answers.hints, report.answers.helps);
  for (const tPlaySession& session : report.sessions) {
    std::string start = session.timeKnown ? FormatTime(session.start) : "(time unknown)";
    std::printf("  %s  %-12s %3u answers%s\n", start.c_str(), FormatDuration(session.millis).c_str(),
                session.answers.Answers(), session.openAtEnd ? "  (open at the end of the log)" : "");
  }
  for (const tTitleTime& title : report.titles) {
    std::printf("  %-8s %-28s %s\n", PlayKindName(title.kind), DisplayText(title.name.c_str()).c_str(),
                FormatDuration(title.millis).c_str());
  }
  std::printf("  %zu levels, %zu rewards, %zu achievements; %zu clock records, %zu low-battery warnings, "
              "%zu critical errors, %zu irregularities\n",
              totals.levels, totals.rewards, totals.achievements, totals.timeSyncs, totals.lowBattery,
              totals.criticalErrors, totals.irregularities);
}

int WritePage(const std::string& path, const std::string& page) {
  if (path == "-") {
    std::fwrite(page.data(), 1, page.size(), stdout);
    return kSuccess;
  }
  HostPaths host;  // the page is for the desktop, not for the device image the inspector reads
  if (!ReplaceDeviceFile(path, page)) {
    std::fprintf(stderr, "vireline report: %s: cannot be written\n", path.c_str());
    return kIoError;
  }
  return kSuccess;
}

struct ReportOptions {
  std::vector<std::string> targets;
  int player = -1;
  std::string html;
  bool json = false;
};

// The logs to read: each named slot or file, or every slot.
std::vector<std::pair<CPath, int>> LogsToRead(const ReportOptions& options) {
  std::vector<std::pair<CPath, int>> logs;
  if (options.targets.empty()) {
    for (int slot = 0; slot < CLogFile::kSlotCount; ++slot) {
      if (options.player < 0 || options.player == slot) logs.emplace_back(CLogFile::GetLogFilePath(slot), slot);
    }
  }
  for (const std::string& target : options.targets) {
    bool slot = target.size() == 1 && target[0] >= '0' && target[0] < '0' + CLogFile::kSlotCount;
    logs.emplace_back(slot ? CLogFile::GetLogFilePath(target[0] - '0') : CPath(target), slot ? target[0] - '0' : -1);
  }
  return logs;
}

int RunReport(const ReportOptions& options) {
  std::vector<tPlayerReport> reports;
  int status = kSuccess;
  for (const auto& log : LogsToRead(options)) {
    tPlayerReport report = CPlayReport::Read(log.first);
    if (log.second >= 0) report.player = log.second;  // a slot's file belongs to that slot's player
    bool readable = report.status == CLogReader::kHeaderValid || report.status == CLogReader::kHeaderInvalid;
    if (!readable) {
      std::fprintf(stderr, "vireline report: %s: %s\n", log.first.c_str(), kStatusNames[report.status]);
      int fileStatus = report.status == CLogReader::kCannotOpen ? kNotFound : kCorrupt;
      if (fileStatus > status) status = fileStatus;
      continue;
    }
    if (options.player < 0 || report.player == options.player) reports.push_back(report);
  }
  if (reports.empty()) {
    if (status == kSuccess) std::fprintf(stderr, "vireline report: no play log of player %d\n", options.player);
    return status == kSuccess ? kNotFound : status;
  }
  if (options.json) {
    Json::Value json(Json::objectValue);
    json["players"] = ArrayJson(reports, PlayerJson);
    PrintJson(json);
  } else if (!options.html.empty()) {
    int written = WritePage(options.html, RenderReportPage(reports));
    if (written > status) status = written;
  } else {
    for (const tPlayerReport& report : reports) PrintText(report);
  }
  return status;
}

}  // namespace

void RegisterReportCommand(CLI::App& program, Action* action) {
  static ReportOptions options;  // must outlive the parse and the action
  auto* report = program.add_subcommand("report", "What the players did, from their play logs: sessions, time per "
                                                  "title and activity, answers, progress and device records");
  report->add_option("TARGET", options.targets,
                     "Player slots 0-2 or play logs as device paths (default: every slot)");
  report->add_option("--player", options.player, "Only the log of player N (its slot, or its header's log number)")
      ->check(CLI::Range(0, 255));
  auto* html = report->add_option("--html", options.html,
                                  "Write a self-contained HTML page to FILE (a host path; - for standard output)");
  report->add_flag("--json", options.json, "The same figures as one JSON document")->excludes(html);
  report->callback([action] { *action = [] { return RunReport(options); }; });
}

}  // namespace tools
}  // namespace vireline
