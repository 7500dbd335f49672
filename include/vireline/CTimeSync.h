// The clock record (type 1) that opens every start-up of the device in each
// play log, so that the elapsed-time stamps of the records after it can be
// placed on the calendar.
#ifndef VIRELINE_CTIMESYNC_H_
#define VIRELINE_CTIMESYNC_H_

#include <vireline/CLogData.h>
#include <vireline/Export.h>

class VIRELINE_EXPORT CTimeSync : public CLogData {
 public:
  // How far the clock value can be trusted (stored in 1 byte).
  enum tResetCode {
    kClockValid = 0,  // the clock looks set
    kClockReset = 2   // the clock is within minutes of its power-on default
  };

  // A record of the calendar `clock` (seconds since the epoch) and `code`.
  CTimeSync(unsigned long clock, tResetCode code);
  ~CTimeSync() override;
};

#endif  // VIRELINE_CTIMESYNC_H_
