// Readying one play log file at start-up, shared by the log file manager's
// construction and its re-initialisation of a slot's file.
#ifndef VIRELINE_LOGGING_LOGFILEPREPARATION_H_
#define VIRELINE_LOGGING_LOGFILEPREPARATION_H_

#include <cstdio>

#include <vireline/CLogFile.h>

namespace vireline {

// Gives a new or truncated log file its header and checks it; returns the
// file's size afterwards (0 for a null handle), measured once for both.
unsigned long PrepareLogFile(FILE* file, tPlayerID slot);

}  // namespace vireline

#endif  // VIRELINE_LOGGING_LOGFILEPREPARATION_H_
