// `vireline daemon volume|brightness|set-brightness N|set-rtc T`: asks the
// system daemon over its control socket ("/var/run/qvd-control" below
// --root), as applications do. The daemon confirms nothing for the set
// commands, so those report only that the request was sent.
#include <cstdint>
#include <cstdio>
#include <string>

#include <json/json.h>

#include <vireline/BaseUtils.h>

#include "tools/Commands.h"
#include "tools/DebugCapture.h"
#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {
namespace {

const int kTraceLevel = 1;  // the daemon failures are traced at this level

struct DaemonRequest {
  const char* name;                 // the subcommand
  const char* label;                // what the value is
  BaseUtils::qvd_command command;
  bool answers;                     // the daemon replies with a value
};

const DaemonRequest kVolume = {"volume", "volume", BaseUtils::kQvdGetVolume, true};
const DaemonRequest kBrightness = {"brightness", "brightness", BaseUtils::kQvdGetBrightness, true};
const DaemonRequest kSetBrightness = {"set-brightness", "brightness", BaseUtils::kQvdSetBrightness, false};
const DaemonRequest kSetRtc = {"set-rtc", "clock", BaseUtils::kQvdSetRtcTime, false};

// Sends the request; on failure says why on standard error.
bool Send(const DaemonRequest& request, int* value) {
  BaseUtils* utils = BaseUtils::Instance();
  DebugCapture capture(kTraceLevel);
  utils->SetupTrace(0, true);
  if (utils->DaemonControl(request.command, value) == 0) return true;
  std::string reason;
  for (const std::string& line : capture.lines()) reason += (reason.empty() ? "" : "; ") + line;
  std::fprintf(stderr, "vireline daemon: no answer from the system daemon at /var/run/qvd-control (%s)\n",
               reason.c_str());
  return false;
}

void Print(const DaemonRequest& request, int value, bool json) {
  std::string shown = request.command == BaseUtils::kQvdSetRtcTime ? std::to_string(static_cast<uint32_t>(value))
                                                                   : std::to_string(value);
  if (json) {
    Json::Value out(Json::objectValue);
    out["command"] = request.name;
    out[request.label] = request.command == BaseUtils::kQvdSetRtcTime ? Json::Value(static_cast<uint32_t>(value))
                                                                      : Json::Value(value);
    out["confirmed"] = request.answers;
    PrintJson(out);
    return;
  }
  std::printf("%-15s %s%s\n", request.label, shown.c_str(), request.answers ? "" : " (sent)");
}

int RunDaemon(const DaemonRequest& request, int value, bool json) {
  if (!Send(request, &value)) return kIoError;
  Print(request, value, json);
  return kSuccess;
}

}  // namespace

void RegisterDaemonCommand(CLI::App& program, Action* action) {
  auto* daemon = program.add_subcommand("daemon", "Ask the system daemon for the volume or brightness, or set "
                                                  "the brightness or the real-time clock");
  static bool json = false;  // must outlive the parse and the action
  static int level = 0;
  static uint32_t time = 0;
  daemon->add_flag("--json", json, "Machine-readable output");
  daemon->require_subcommand(1);
  daemon->fallthrough();
  auto* volume = daemon->add_subcommand("volume", "The system volume");
  auto* brightness = daemon->add_subcommand("brightness", "The screen brightness");
  auto* setBrightness = daemon->add_subcommand("set-brightness", "Set the screen brightness to N");
  setBrightness->add_option("N", level, "The brightness level")->required();
  auto* setRtc = daemon->add_subcommand("set-rtc", "Set the real-time clock to T");
  setRtc->add_option("T", time, "The clock value, an unsigned 32-bit number")->required();
  volume->callback([action] { *action = [] { return RunDaemon(kVolume, 0, json); }; });
  brightness->callback([action] { *action = [] { return RunDaemon(kBrightness, 0, json); }; });
  setBrightness->callback([action] { *action = [] { return RunDaemon(kSetBrightness, level, json); }; });
  setRtc->callback([action] { *action = [] { return RunDaemon(kSetRtc, static_cast<int>(time), json); }; });
}

}  // namespace tools
}  // namespace vireline
