#include <vireline/CTimeSync.h>

#include <vireline/LogCatalogue.h>

CTimeSync::CTimeSync(unsigned long clock, tResetCode code) {
  BuildEvent(LogData::Vireline::kTimeSync, {clock, static_cast<unsigned char>(code)});
}

CTimeSync::~CTimeSync() {}
