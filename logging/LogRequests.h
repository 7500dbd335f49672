// The records the lower layers add to the play log, reached only through the
// seam (baseutils/UpperLayers.h).
#ifndef VIRELINE_LOGGING_LOGREQUESTS_H_
#define VIRELINE_LOGGING_LOGREQUESTS_H_

#include <vireline/Types.h>

namespace vireline {
namespace logging {

// Appends a critical-error record with `message` to the current player's play
// log, selecting player 0 first when no player is selected.
void AppendCriticalError(const char* message);

// Appends an achievement record for `badge` to the current player's play log.
void AppendAchievementEarned(unsigned short badge);

// Appends a new-player record for player `userId` to the current player's play log.
void AppendNewUser(unsigned long userId);

}  // namespace logging
}  // namespace vireline

#endif  // VIRELINE_LOGGING_LOGREQUESTS_H_
