// The play report as one self-contained HTML page: inline CSS and SVG charts,
// no scripts, fonts or anything else fetched. Every text from a log is shown
// as text: bytes that are not valid UTF-8 appear as "\xNN" and markup
// characters are escaped.
#ifndef VIRELINE_TOOLS_REPORTPAGE_H_
#define VIRELINE_TOOLS_REPORTPAGE_H_

#include <cstddef>
#include <string>
#include <vector>

#include <vireline/CPlayReport.h>

namespace vireline {
namespace tools {

// The counts the report's summaries give, from one player's report.
struct ReportTotals {
  size_t days = 0;  // distinct calendar days with a session of known time
  size_t levels = 0;
  size_t rewards = 0;
  size_t achievements = 0;
  size_t timeSyncs = 0;
  size_t lowBattery = 0;
  size_t criticalErrors = 0;
  size_t irregularities = 0;  // notices about the file itself: missing exits, torn records and the like
};

// Counts what the summaries show.
ReportTotals CountTotals(const tPlayerReport& report);

// `text` (any bytes) as HTML text or attribute content.
std::string HtmlText(const std::string& text);

// The whole page for `players`, one section each.
std::string RenderReportPage(const std::vector<tPlayerReport>& players);

}  // namespace tools
}  // namespace vireline

#endif  // VIRELINE_TOOLS_REPORTPAGE_H_
