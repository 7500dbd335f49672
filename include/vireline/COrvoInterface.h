// The legacy file shim: how the key=value files, the file utilities and the
// metadata files reach files and folders. Nothing here throws or prints, except
// Trace and Assert, which go to the debug output of module 1024.
#ifndef VIRELINE_CORVOINTERFACE_H_
#define VIRELINE_CORVOINTERFACE_H_

#include <cstdarg>
#include <cstdint>
#include <cstdio>

#include <vireline/Export.h>

// What Stat reports.
struct tStatLite {
  int32_t type;   // 1 = regular file, 2 = anything else (folders too)
  uint32_t size;  // the low 32 bits of the file size
};

// A folder listing handle. The shim never hands one out (see OpenDir).
struct tDirStream {
  void* handle;
  uint32_t cursor;
  bool flag;
  const char** filters;
  uint32_t filterCount;
};

class VIRELINE_EXPORT COrvoInterface {
 public:
  // Opens a stream (large-file aware); null on failure.
  static FILE* FOpen(const char* path, const char* mode);

  // Closes a stream FOpen opened; 0 on success, EOF on failure.
  static int FClose(FILE* stream);

  // Opens a stream whose content replaces `path` only when FCloseAtomic succeeds.
  static FILE* FOpenAtomic(const char* path, const char* mode);

  // Commits a stream FOpenAtomic opened; 0 on success.
  static int FCloseAtomic(FILE* stream);

  // Moves the stream position; true when fseek succeeded.
  static bool FSeek(FILE* stream, int32_t offset, int whence);

  // Writes one byte; the byte, or EOF on failure.
  static int PutC(char c, FILE* stream);

  // Reads one byte (0..255), or EOF.
  static int GetC(FILE* stream);

  // Describes `path`; false when it cannot be examined. The flag is ignored.
  static bool Stat(const char* path, tStatLite* info, bool flag);

  // Copies `src` to `dst`, writing one byte per whole 512-byte block read, as
  // older firmware did; stops at end of file.
  static bool CpFile(const char* src, const char* dst, bool overwrite);

  // flag false: makes `path` writable and removes it. flag true: never removes,
  // only probes the file, and always answers false (older callers depend on it).
  static bool RmFile(const char* path, bool flag);

  // Creates one folder (mode 0700); true also when it already exists.
  static bool MkDir(const char* path);

  // Makes `path` writable and removes the (empty) folder.
  static bool RmDir(const char* path);

  // Always null: folder walks through this shim see no entries.
  static tDirStream* OpenDir(const char* path, bool flag, const char** filters, uint32_t count);

  // Always null: there is never an entry.
  static char* ReadDir(tDirStream* stream);

  // Releases a listing handle; null does nothing.
  static void CloseDir(tDirStream* stream);

  // vsnprintf into `buffer`; its result.
  static int SNPrintF(char* buffer, uint32_t size, const char* format, ...)
      __attribute__((format(printf, 3, 4)));

  // Allocates `size` bytes; null for a negative size or when memory is short.
  static void* Malloc(int32_t size);

  // Releases memory from Malloc; null does nothing.
  static void Free(void* pointer);

  // Formats a message to the debug output (module 1024, level 1).
  static void Trace(const char* format, ...) __attribute__((format(printf, 1, 2)));

  // On a false condition traces "ASSERT: <message>"; never aborts.
  static void Assert(bool condition, const char* message);
};

// Adds the owner-write bit to the mode of `path`; true when that succeeded.
VIRELINE_EXPORT bool MakeWritable(const char* path);

#endif  // VIRELINE_CORVOINTERFACE_H_
