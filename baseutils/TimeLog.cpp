// The timing log: a developer's record of how long start-up steps take,
// written to "timelog.txt" in the data folder, once per process.
#include <vireline/BaseUtils.h>

#include <cstdint>
#include <cstdio>
#include <memory>

#include "baseutils/UpperLayers.h"
#include "platform/Env.h"
#include "platform/FormattedWrite.h"

namespace {

struct TimeLogState {
  std::unique_ptr<vireline::WritableFile> stream;
  bool done = false;
  int64_t begin = 0;
  int64_t previous = 0;
};

TimeLogState gTimeLog;

double SecondsBetween(int64_t later, int64_t earlier) {
  return static_cast<int32_t>(static_cast<uint32_t>(later - earlier)) / 1000000.0;
}

}  // namespace

void timelogbegin() {
  if (gTimeLog.done || gTimeLog.stream != nullptr) return;
  CPath path = vireline::upper::DataPath() + "/timelog.txt";
  vireline::Env* env = vireline::Env::Current();
  if (!env->NewWritableFile(path.raw(), &gTimeLog.stream).ok()) {
    fputs("Erp, can't open log file\n", stderr);
    return;
  }
  gTimeLog.begin = gTimeLog.previous = env->ProcessorClock();
}

void timelog(const char* text) {
  if (gTimeLog.stream == nullptr || gTimeLog.done) return;
  int64_t now = vireline::Env::Current()->ProcessorClock();
  vireline::AppendFormatted(gTimeLog.stream.get(), "%.3lf : %.3lf : %s\n", SecondsBetween(now, gTimeLog.begin),
                            SecondsBetween(now, gTimeLog.previous), text);
  gTimeLog.stream->Flush();
  gTimeLog.previous = now;
}

void timelogdone() {
  if (gTimeLog.stream == nullptr || gTimeLog.done) return;
  gTimeLog.stream->Close();
  gTimeLog.stream.reset();
  gTimeLog.done = true;
}
