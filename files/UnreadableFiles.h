// Which file objects were bound to a file that exists but could not be read
// (a flash read error, no permission, a FIFO under a device root): their
// writers must not replace that file with content that lacks what it held.
// Only a missing file may be created afresh. Kept beside the objects, keyed
// by their address, so the objects' layout stays as it always was.
#ifndef VIRELINE_FILES_UNREADABLEFILES_H_
#define VIRELINE_FILES_UNREADABLEFILES_H_

namespace vireline {

class UnreadableFiles {
 public:
  // Records whether `owner`'s file could not be read; false forgets it.
  static void Mark(const void* owner, bool unreadable);

  // True when `owner`'s file was last found unreadable.
  static bool IsMarked(const void* owner);

  // True when nothing is at device path `path` (or a folder on its way is
  // missing), as opposed to a file that is there but cannot be read.
  static bool IsMissing(const char* path);
};

}  // namespace vireline

#endif  // VIRELINE_FILES_UNREADABLEFILES_H_
