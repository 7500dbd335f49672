// How the play report shows times and durations, the same in its text, JSON
// and HTML forms. Calendar times are shown in UTC: the device logs seconds
// since the epoch and the report may be read in another time zone.
#ifndef VIRELINE_TOOLS_REPORTFORMAT_H_
#define VIRELINE_TOOLS_REPORTFORMAT_H_

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <string>

#include <vireline/CPlayReport.h>

namespace vireline {
namespace tools {

// "2024-03-04 15:30:02" (UTC) for `seconds` since the epoch; `format` picks the parts shown.
inline std::string FormatTime(int64_t seconds, const char* format = "%Y-%m-%d %H:%M:%S") {
  std::time_t time = static_cast<std::time_t>(seconds);
  std::tm parts{};
  char text[64];
  if (gmtime_r(&time, &parts) == nullptr || std::strftime(text, sizeof text, format, &parts) == 0) return "?";
  return text;
}

// The UTC day of `seconds` since the epoch: "2024-03-04".
inline std::string FormatDay(int64_t seconds) { return FormatTime(seconds, "%Y-%m-%d"); }

// A duration as people read it: "1 h 02 min", "3 min 05 s", "12 s", "0.4 s".
inline std::string FormatDuration(uint64_t millis) {
  uint64_t seconds = millis / 1000;
  char text[64];
  if (seconds >= 3600) {
    std::snprintf(text, sizeof text, "%llu h %02llu min", static_cast<unsigned long long>(seconds / 3600),
                  static_cast<unsigned long long>(seconds / 60 % 60));
  } else if (seconds >= 60) {
    std::snprintf(text, sizeof text, "%llu min %02llu s", static_cast<unsigned long long>(seconds / 60),
                  static_cast<unsigned long long>(seconds % 60));
  } else if (seconds >= 10 || millis % 1000 == 0) {
    std::snprintf(text, sizeof text, "%llu s", static_cast<unsigned long long>(seconds));
  } else {
    std::snprintf(text, sizeof text, "%llu.%llu s", static_cast<unsigned long long>(seconds),
                  static_cast<unsigned long long>(millis % 1000 / 100));
  }
  return text;
}

// The kind of a title as one word: "title", "game", "cyo", "tutorial".
inline const char* PlayKindName(tPlayKind kind) {
  static const char* const kNames[] = {"title", "game", "cyo", "tutorial"};
  return kind >= kPlayTitle && kind <= kPlayTutorial ? kNames[kind] : "title";
}

// The kind of a progress event as one word.
inline const char* ProgressKindName(tProgressEvent::tKind kind) {
  static const char* const kNames[] = {"levelUp", "levelDown", "reward", "achievement", "newUser"};
  return kind >= tProgressEvent::kLevelUp && kind <= tProgressEvent::kNewUser ? kNames[kind] : "unknown";
}

// How an activity is named for people: "Climb (MathMountain)"; answers outside activities get a name too.
inline std::string ActivityLabel(const tActivityStats& activity) {
  std::string name = activity.name.empty() ? "(outside activities)" : activity.name;
  return activity.title.empty() ? name : name + " (" + activity.title + ")";
}

}  // namespace tools
}  // namespace vireline

#endif  // VIRELINE_TOOLS_REPORTFORMAT_H_
