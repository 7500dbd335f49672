// Recursive copy and removal, folder creation along a path, touch, emptiness
// and size queries of the legacy layer. Everything goes through
// COrvoInterface, whose folder listing never yields a stream: the operations
// that list a folder therefore report "failed to opendir" for every folder.
// Problems are reported through COrvoInterface::Trace only.
#ifndef VIRELINE_CFILEUTILS_H_
#define VIRELINE_CFILEUTILS_H_

#include <vireline/Export.h>
#include <vireline/Types.h>

class VIRELINE_EXPORT CFileUtils {
 public:
  // Copies a file (into `dst`, or under its own name when `dst` is a folder)
  // or a folder tree (creating `dst` one level deep when missing).
  static bool RecursiveCopy(const char* src, const char* dst);

  // Removes a file, or the contents of a folder (the folder itself stays).
  static bool RecursiveRm(const char* path);

  // Creates every folder along `path`; with `isFilePath` the last component is
  // a file name and is not created. False for a null or empty path, or at the
  // first folder that cannot be made.
  static bool MkPath(const char* path, bool isFilePath);

  // Creates an empty file when nothing exists at `path`; true when a regular
  // file is there afterwards (an existing one is left untouched).
  static bool Touch(const char* path);

  // True when the folder cannot be listed or lists no entry.
  static bool IsDirEmpty(const char* path);

  // The size of a file, or the sum of a folder tree's file sizes, modulo 2^32;
  // 0 when it cannot be examined.
  static U32 GetDirSize(const char* path);
};

#endif  // VIRELINE_CFILEUTILS_H_
