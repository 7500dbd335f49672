// Readying one play log file at start-up, shared by the log file manager's
// construction and its re-initialisation of a slot's file.
#ifndef VIRELINE_LOGGING_LOGFILEPREPARATION_H_
#define VIRELINE_LOGGING_LOGFILEPREPARATION_H_

#include <vireline/CLogFile.h>

#include "platform/Env.h"

namespace vireline {

// Gives a new or truncated log file its header and checks it; returns the
// file's size afterwards (0 for a null file), measured once for both.
unsigned long PrepareLogFile(RandomRWFile* file, tPlayerID slot);

}  // namespace vireline

#endif  // VIRELINE_LOGGING_LOGFILEPREPARATION_H_
