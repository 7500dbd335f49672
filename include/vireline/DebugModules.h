// The debug output channels the library speaks on (the `module` a
// tDebugOutputFunction receives), so a tool can tell them apart.
#ifndef VIRELINE_DEBUGMODULES_H_
#define VIRELINE_DEBUGMODULES_H_

namespace vireline {

// The base utilities, the data objects and the play log.
const int kDataObjectsDebugModule = 0x281;

// The channel through which the process-wide master level is set.
const int kMasterLevelDebugModule = 0x280;

// The system paths (CSystemData): lookup traces, locale fallbacks,
// deprecation warnings. A channel of their own, so raising their level to 5
// does not switch on every data object's messages.
const int kSystemPathsDebugModule = 0x282;

// The content lists (apps, avatars, micro-downloads, consumables): the
// default channel, where the applications that call them print too.
const int kContentListsDebugModule = 0;

}  // namespace vireline

#endif  // VIRELINE_DEBUGMODULES_H_
