#include "tools/ReportPage.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

#include "tools/KeyValueDisplay.h"
#include "tools/ReportFormat.h"

namespace vireline {
namespace tools {
namespace {

// Long logs hold thousands of rows; the page shows the first ones and the
// JSON report has them all.
const size_t kMaxTableRows = 300;
const size_t kMaxChartRows = 60;

const char kStyle[] =
    "body{font-family:sans-serif;margin:24px;color:#222;background:#fff;max-width:1000px}"
    "h1{font-size:24px;margin:0 0 4px}h2{font-size:20px;border-bottom:2px solid #4a6fa5;padding-bottom:4px;"
    "margin-top:32px}h3{font-size:16px;margin:20px 0 6px}"
    ".meta{color:#666;font-size:13px}.figures{display:flex;flex-wrap:wrap;gap:10px;margin:12px 0}"
    ".figure{background:#eef3fa;border-radius:6px;padding:8px 12px;min-width:110px}"
    ".figure b{display:block;font-size:20px;color:#1f3f6e}.figure span{font-size:12px;color:#555}"
    "table{border-collapse:collapse;font-size:13px;margin:6px 0}td,th{border:1px solid #ccc;padding:3px 8px;"
    "text-align:left;vertical-align:top}th{background:#f0f0f0}"
    ".flag{display:inline-block;border-radius:4px;padding:0 6px;font-size:12px;color:#fff}"
    ".timeSync{background:#4a6fa5}.lowBattery{background:#d98c00}.criticalError{background:#c0392b}"
    ".irregular{background:#7d3c98}.legend span{display:inline-block;margin-right:12px;font-size:12px}"
    ".swatch{display:inline-block;width:10px;height:10px;margin-right:4px}svg text{font-size:12px;"
    "font-family:sans-serif}.more{color:#666;font-size:12px}";

struct Segment {
  const char* name;
  const char* color;
};
const Segment kAnswerSegments[] = {{"correct", "#2e9d4a"},      {"correct, timed", "#84cf95"},
                                   {"semi-correct", "#d9a300"}, {"semi-correct, timed", "#f0d477"},
                                   {"wrong", "#d9453d"},        {"wrong, timed", "#f0a09b"}};

std::string Number(uint64_t value) { return std::to_string(value); }

std::string Fixed(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

bool IsIrregularity(tPlayNotice::tKind kind) {
  return kind != tPlayNotice::kTimeSync && kind != tPlayNotice::kLowBattery && kind != tPlayNotice::kCriticalError;
}

// The CSS class of a notice's flag.
const char* FlagClass(tPlayNotice::tKind kind) {
  if (kind == tPlayNotice::kTimeSync || kind == tPlayNotice::kLowBattery || kind == tPlayNotice::kCriticalError) {
    return tPlayNotice::KindName(kind);
  }
  return "irregular";
}

const char* FlagColor(tPlayNotice::tKind kind) {
  if (kind == tPlayNotice::kTimeSync) return "#4a6fa5";
  if (kind == tPlayNotice::kLowBattery) return "#d98c00";
  if (kind == tPlayNotice::kCriticalError) return "#c0392b";
  return "#7d3c98";
}

std::string Figure(const std::string& id, const std::string& value, const std::string& label,
                   const std::string& data = std::string()) {
  return "<div class=\"figure\"><b id=\"" + id + "\"" + data + ">" + value + "</b><span>" + label + "</span></div>";
}

std::string SummaryFigures(const std::string& prefix, const tPlayerReport& report, const ReportTotals& totals) {
  const tAnswerTally& answers = report.answers;
  std::string html = "<div class=\"figures\">";
  html += Figure(prefix + "-sessions", Number(report.sessions.size()), "sessions");
  html += Figure(prefix + "-days", Number(totals.days), "days");
  html += Figure(prefix + "-play-time", FormatDuration(report.playMillis), "played",
                 " data-ms=\"" + Number(report.playMillis) + "\"");
  html += Figure(prefix + "-correct", Number(answers.correct + answers.correctTimed), "correct answers");
  html += Figure(prefix + "-semi-correct", Number(answers.semiCorrect + answers.semiCorrectTimed), "semi-correct");
  html += Figure(prefix + "-wrong", Number(answers.wrong + answers.wrongTimed), "wrong answers");
  html += Figure(prefix + "-hints", Number(answers.hints), "hints");
  html += Figure(prefix + "-levels", Number(totals.levels), "level changes");
  html += Figure(prefix + "-achievements", Number(totals.achievements), "achievements");
  html += Figure(prefix + "-flags", Number(totals.lowBattery + totals.criticalErrors + totals.irregularities),
                 "flagged records");
  return html + "</div>";
}

// One row of the session timeline: a day, or sessions whose time is unknown.
struct TimelineRow {
  std::string label;
  std::vector<const tPlaySession*> sessions;
  std::vector<const tPlayNotice*> notices;
};

std::vector<TimelineRow> TimelineRows(const tPlayerReport& report) {
  std::map<std::string, TimelineRow> days;
  TimelineRow unknown;
  unknown.label = "time unknown";
  for (const tPlaySession& session : report.sessions) {
    if (!session.timeKnown) {
      unknown.sessions.push_back(&session);
      continue;
    }
    TimelineRow& row = days[FormatDay(session.start)];
    row.label = FormatDay(session.start);
    row.sessions.push_back(&session);
  }
  for (const tPlayNotice& notice : report.notices) {
    if (notice.timeKnown && days.count(FormatDay(notice.time)) != 0) days[FormatDay(notice.time)].notices.push_back(&notice);
  }
  std::vector<TimelineRow> rows;
  for (const auto& day : days) rows.push_back(day.second);
  if (!unknown.sessions.empty()) rows.push_back(unknown);
  return rows;
}

std::string SessionTooltip(const tPlaySession& session) {
  std::string text = (session.timeKnown ? FormatTime(session.start) + " UTC" : std::string("time unknown")) + ", " +
                     FormatDuration(session.millis) + ", " + Number(session.answers.Answers()) + " answers";
  for (const std::string& name : session.played) text += ", " + name;
  if (session.openAtEnd) text += " (open at the end of the log)";
  return text;
}

int64_t SecondOfDay(int64_t time) { return (time % 86400 + 86400) % 86400; }

// The hours of the day the chart spans: whole hours around every session of known time.
void TimelineSpan(const std::vector<TimelineRow>& rows, int64_t* from, int64_t* to) {
  int64_t first = 86400, last = 0;
  for (const TimelineRow& row : rows) {
    for (const tPlaySession* session : row.sessions) {
      if (!session->timeKnown) continue;
      int64_t start = SecondOfDay(session->start);
      first = std::min(first, start);
      last = std::max(last, std::min<int64_t>(86400, start + static_cast<int64_t>(session->millis / 1000) + 1));
    }
  }
  *from = first >= last ? 0 : first / 3600 * 3600;
  *to = first >= last ? 86400 : std::min<int64_t>(86400, (last + 3599) / 3600 * 3600);
  if (*to - *from < 2 * 3600) *to = std::min<int64_t>(86400, *from + 2 * 3600);
  if (*to - *from < 2 * 3600) *from = *to - 2 * 3600;
}

std::string TimelineChart(const tPlayerReport& report) {
  std::vector<TimelineRow> rows = TimelineRows(report);
  if (rows.size() > kMaxChartRows) rows.resize(kMaxChartRows);
  int64_t from = 0, to = 86400;
  TimelineSpan(rows, &from, &to);
  const double left = 100, width = 800, rowHeight = 26, span = static_cast<double>(to - from);
  double height = 24 + rowHeight * rows.size();
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"980\" height=\"" + Fixed(height) +
                    "\" role=\"img\" aria-label=\"sessions by day\">";
  int64_t step = span > 12 * 3600 ? 3 * 3600 : 3600;
  for (int64_t tick = from; tick <= to; tick += step) {
    double x = left + width * (tick - from) / span;
    svg += "<line x1=\"" + Fixed(x) + "\" y1=\"14\" x2=\"" + Fixed(x) + "\" y2=\"" + Fixed(height) +
           "\" stroke=\"#ddd\"/><text x=\"" + Fixed(x - 14) + "\" y=\"11\">" + Number(tick / 3600) + ":00</text>";
  }
  for (size_t i = 0; i < rows.size(); ++i) {
    double y = 20 + rowHeight * i;
    svg += "<text x=\"0\" y=\"" + Fixed(y + 15) + "\">" + HtmlText(rows[i].label) + "</text>";
    for (size_t s = 0; s < rows[i].sessions.size(); ++s) {
      const tPlaySession& session = *rows[i].sessions[s];
      // Sessions of unknown time are shown one after another in their row.
      double start = session.timeKnown ? (SecondOfDay(session.start) - from) / span : s * 0.1;
      double x = left + width * std::max(0.0, std::min(start, 0.99));
      double w = std::min(std::max(6.0, width * session.millis / 1000.0 / span), left + width - x);
      svg += "<rect x=\"" + Fixed(x) + "\" y=\"" + Fixed(y + 3) + "\" width=\"" + Fixed(w) + "\" height=\"16\" fill=\"" +
             (session.openAtEnd ? "#a0a0a0" : "#4a90d9") + "\"><title>" + HtmlText(SessionTooltip(session)) +
             "</title></rect><text x=\"" + Fixed(x + w + 3) + "\" y=\"" + Fixed(y + 15) + "\" fill=\"#555\">" +
             FormatDuration(session.millis) + "</text>";
    }
    for (const tPlayNotice* notice : rows[i].notices) {
      int64_t second = SecondOfDay(notice->time);
      if (second < from || second > to) continue;
      double x = left + width * (second - from) / span;
      svg += "<path d=\"M" + Fixed(x) + " " + Fixed(y + 2) + " l-5 -6 h10 z\" fill=\"" + FlagColor(notice->kind) +
             "\"><title>" + HtmlText(std::string(tPlayNotice::KindName(notice->kind)) + ": " + notice->text) +
             "</title></path>";
    }
  }
  return svg + "</svg>";
}

// A horizontal bar chart: one bar per label, its length by value.
std::string BarChart(const std::vector<std::pair<std::string, uint64_t>>& bars, const char* color, const char* what) {
  uint64_t most = 1;
  for (const auto& bar : bars) most = std::max(most, bar.second);
  size_t count = std::min(bars.size(), kMaxChartRows);
  const double left = 260, width = 560;
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"980\" height=\"" + Number(8 + 22 * count) +
                    "\" role=\"img\" aria-label=\"" + what + "\">";
  for (size_t i = 0; i < count; ++i) {
    double y = 4 + 22.0 * i;
    double w = std::max(1.0, width * bars[i].second / most);
    svg += "<text x=\"0\" y=\"" + Fixed(y + 14) + "\">" + HtmlText(bars[i].first) + "</text><rect x=\"" +
           Fixed(left) + "\" y=\"" + Fixed(y + 2) + "\" width=\"" + Fixed(w) + "\" height=\"16\" fill=\"" + color +
           "\"/><text x=\"" + Fixed(left + w + 6) + "\" y=\"" + Fixed(y + 14) + "\">" +
           FormatDuration(bars[i].second) + "</text>";
  }
  return svg + "</svg>";
}

std::string TitleChart(const tPlayerReport& report) {
  std::vector<std::pair<std::string, uint64_t>> bars;
  for (const tTitleTime& title : report.titles) {
    bars.emplace_back(title.name + " (" + PlayKindName(title.kind) + ")", title.millis);
  }
  return BarChart(bars, "#4a6fa5", "time per title");
}

std::string ActivityChart(const tPlayerReport& report) {
  std::vector<std::pair<std::string, uint64_t>> bars;
  for (const tActivityStats& activity : report.activities) {
    if (activity.starts > 0) bars.emplace_back(ActivityLabel(activity), activity.millis);
  }
  return BarChart(bars, "#6a9f58", "time per activity");
}

std::string AnswerLegend() {
  std::string html = "<div class=\"legend\">";
  for (const Segment& segment : kAnswerSegments) {
    html += std::string("<span><i class=\"swatch\" style=\"background:") + segment.color + "\"></i>" + segment.name +
            "</span>";
  }
  return html + "</div>";
}

std::string AnswerBar(const std::string& id, const tActivityStats& activity, double y, double scale) {
  const tAnswerTally& a = activity.answers;
  const uint32_t counts[] = {a.correct, a.correctTimed, a.semiCorrect, a.semiCorrectTimed, a.wrong, a.wrongTimed};
  const double left = 260;
  double x = left;
  std::string svg = "<text x=\"0\" y=\"" + Fixed(y + 14) + "\">" + HtmlText(ActivityLabel(activity)) + "</text>";
  for (size_t s = 0; s < 6; ++s) {
    if (counts[s] == 0) continue;
    double w = counts[s] * scale;
    svg += "<rect x=\"" + Fixed(x) + "\" y=\"" + Fixed(y + 2) + "\" width=\"" + Fixed(w) + "\" height=\"16\" fill=\"" +
           kAnswerSegments[s].color + "\"><title>" + Number(counts[s]) + " " + kAnswerSegments[s].name +
           "</title></rect>";
    x += w;
  }
  svg += "<text x=\"" + Fixed(x + 6) + "\" y=\"" + Fixed(y + 14) + "\"><tspan id=\"" + id + "-correct\">" +
         Number(a.correct + a.correctTimed) + "</tspan> correct, " + Number(a.semiCorrect + a.semiCorrectTimed) +
         " semi, " + Number(a.wrong + a.wrongTimed) + " wrong \xC2\xB7 <tspan id=\"" + id + "-hints\">" +
         Number(a.hints) + "</tspan> hints, " + Number(a.helps) + " help</text>";
  return svg;
}

std::string AnswerChart(const std::string& prefix, const tPlayerReport& report) {
  std::vector<size_t> rows;
  uint32_t most = 1;
  for (size_t i = 0; i < report.activities.size(); ++i) {
    const tAnswerTally& a = report.activities[i].answers;
    if (a.Answers() + a.hints + a.helps == 0) continue;
    rows.push_back(i);
    most = std::max(most, a.Answers());
  }
  if (rows.size() > kMaxChartRows) rows.resize(kMaxChartRows);
  std::string svg = AnswerLegend() + "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"980\" height=\"" +
                    Number(8 + 22 * rows.size()) + "\" role=\"img\" aria-label=\"answers per activity\">";
  for (size_t r = 0; r < rows.size(); ++r) {
    svg += AnswerBar(prefix + "-activity-" + Number(rows[r]), report.activities[rows[r]], 4 + 22.0 * r, 420.0 / most);
  }
  return svg + "</svg>";
}

std::string Cell(const std::string& text) { return "<td>" + HtmlText(text) + "</td>"; }

std::string More(size_t shown, size_t total) {
  if (total <= shown) return std::string();
  return "<p class=\"more\">\xE2\x80\xA6 and " + Number(total - shown) + " more; `vireline report --json` lists all.</p>";
}

std::string When(bool known, int64_t time) { return known ? FormatTime(time) : "time unknown"; }

std::string ProgressTable(const tPlayerReport& report) {
  static const char* const kWords[] = {"level up", "level down", "reward", "achievement", "new player"};
  std::string html = "<table><tr><th>When (UTC)</th><th>What</th><th>Where</th></tr>";
  size_t shown = std::min(report.progress.size(), kMaxTableRows);
  for (size_t i = 0; i < shown; ++i) {
    const tProgressEvent& event = report.progress[i];
    std::string what = kWords[event.kind];
    if (event.kind == tProgressEvent::kLevelUp || event.kind == tProgressEvent::kLevelDown) {
      what += ": " + event.level;
    } else if (event.kind == tProgressEvent::kReward) {
      what += " " + Number(event.number) + " \xC3\x97 " + Number(event.count);
    } else {
      what += " " + Number(event.number);
    }
    std::string where = event.activity.empty() ? event.title : event.activity + " (" + event.title + ")";
    html += "<tr>" + Cell(When(event.timeKnown, event.time)) + Cell(what) + Cell(where) + "</tr>";
  }
  return html + "</table>" + More(shown, report.progress.size());
}

std::string NoticeTable(const tPlayerReport& report) {
  std::string html = "<table><tr><th>When (UTC)</th><th>Record</th><th>Offset</th><th>Details</th></tr>";
  size_t shown = std::min(report.notices.size(), kMaxTableRows);
  for (size_t i = 0; i < shown; ++i) {
    const tPlayNotice& notice = report.notices[i];
    html += "<tr>" + Cell(When(notice.timeKnown, notice.time)) + "<td><span class=\"flag " + FlagClass(notice.kind) +
            "\">" + tPlayNotice::KindName(notice.kind) + "</span></td>" + Cell(Number(notice.offset)) +
            Cell(notice.text) + "</tr>";
  }
  return html + "</table>" + More(shown, report.notices.size());
}

std::string SessionTable(const tPlayerReport& report) {
  std::string html =
      "<table><tr><th>#</th><th>Start (UTC)</th><th>Duration</th><th>Played</th><th>Answers</th><th>Notes</th></tr>";
  size_t shown = std::min(report.sessions.size(), kMaxTableRows);
  for (size_t i = 0; i < shown; ++i) {
    const tPlaySession& session = report.sessions[i];
    std::string played;
    for (const std::string& name : session.played) played += (played.empty() ? "" : ", ") + name;
    std::string notes = session.openAtEnd ? "open at the end of the log" : session.loggedOut ? "" : "no log-out";
    if (!session.loggedIn) notes += std::string(notes.empty() ? "" : "; ") + "no log-in";
    if (session.notices != 0) notes += std::string(notes.empty() ? "" : "; ") + Number(session.notices) + " notices";
    html += "<tr>" + Cell(Number(i + 1)) + Cell(When(session.timeKnown, session.start)) +
            Cell(FormatDuration(session.millis)) + Cell(played) + Cell(Number(session.answers.Answers())) + Cell(notes) +
            "</tr>";
  }
  return html + "</table>" + More(shown, report.sessions.size());
}

std::string PlayerSection(size_t index, const tPlayerReport& report) {
  std::string prefix = "p" + Number(index);
  ReportTotals totals = CountTotals(report);
  std::string player = report.player >= 0 ? "Player " + Number(report.player) : std::string("Player (unknown slot)");
  std::string html = "<section id=\"" + prefix + "\"><h2>" + HtmlText(player) + "</h2><p class=\"meta\">" +
                     HtmlText(report.file) + " \xC2\xB7 " + Number(report.fileSize) + " bytes \xC2\xB7 " +
                     Number(report.records) + " records" +
                     (report.serial.empty() ? std::string() : " \xC2\xB7 device " + HtmlText(report.serial)) + "</p>";
  html += SummaryFigures(prefix, report, totals);
  html += "<h3>Sessions by day</h3>" + TimelineChart(report);
  html += "<h3>Time per title</h3>" + TitleChart(report);
  html += "<h3>Time per activity</h3>" + ActivityChart(report);
  html += "<h3>Answers per activity</h3>" + AnswerChart(prefix, report);
  html += "<h3>Levels and achievements</h3>" + ProgressTable(report);
  html += "<h3>Device records and irregularities</h3>" + NoticeTable(report);
  html += "<h3>Sessions</h3>" + SessionTable(report);
  return html + "</section>";
}

}  // namespace

ReportTotals CountTotals(const tPlayerReport& report) {
  ReportTotals totals;
  std::set<std::string> days;
  for (const tPlaySession& session : report.sessions) {
    if (session.timeKnown) days.insert(FormatDay(session.start));
  }
  totals.days = days.size();
  for (const tProgressEvent& event : report.progress) {
    totals.levels += event.kind == tProgressEvent::kLevelUp || event.kind == tProgressEvent::kLevelDown;
    totals.rewards += event.kind == tProgressEvent::kReward;
    totals.achievements += event.kind == tProgressEvent::kAchievement;
  }
  for (const tPlayNotice& notice : report.notices) {
    totals.timeSyncs += notice.kind == tPlayNotice::kTimeSync;
    totals.lowBattery += notice.kind == tPlayNotice::kLowBattery;
    totals.criticalErrors += notice.kind == tPlayNotice::kCriticalError;
    totals.irregularities += IsIrregularity(notice.kind);
  }
  return totals;
}

std::string HtmlText(const std::string& text) {
  std::string shown = DisplayText(text.c_str());
  std::string html;
  html.reserve(shown.size());
  for (char c : shown) {
    switch (c) {
      case '&': html += "&amp;"; break;
      case '<': html += "&lt;"; break;
      case '>': html += "&gt;"; break;
      case '"': html += "&quot;"; break;
      case '\'': html += "&#39;"; break;
      default: html += c;
    }
  }
  return html;
}

std::string RenderReportPage(const std::vector<tPlayerReport>& players) {
  std::string html = "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>Play report</title>"
                     "<style>" + std::string(kStyle) + "</style></head><body><h1>Play report</h1>"
                     "<p class=\"meta\">Times are UTC; durations are measured on the device's elapsed clock.</p>";
  for (size_t i = 0; i < players.size(); ++i) html += PlayerSection(i, players[i]);
  return html + "</body></html>\n";
}

}  // namespace tools
}  // namespace vireline
