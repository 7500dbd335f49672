#include "logging/LogRequests.h"

#include <vireline/CLogFile.h>
#include <vireline/LogEvents.h>

namespace vireline {
namespace logging {

void AppendCriticalError(const char* message) {
  CLogFile* log = CLogFile::Instance();
  // An assertion before any player was chosen still leaves its trace.
  if (!log->IsProfileSet()) log->SetCurrentProfile(0);
  LogData::Vireline::CCriticalError record(message);
  log->Append(record);
}

void AppendAchievementEarned(unsigned short badge) {
  LogData::Vireline::CAchievementEarned record(badge);
  CLogFile::Instance()->Append(record);
}

void AppendNewUser(unsigned long userId) {
  LogData::Vireline::CNewUser record(userId);
  CLogFile::Instance()->Append(record);
}

}  // namespace logging
}  // namespace vireline
