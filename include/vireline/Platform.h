// The platform services the rest of the library stands on: debug output,
// kernel queries, platform identity, atomic file replacement and the device root.
#ifndef VIRELINE_PLATFORM_H_
#define VIRELINE_PLATFORM_H_

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <vireline/Export.h>
#include <vireline/Types.h>

namespace vireline {

// Maps every device path ("/QV/...", "/proc/mtd") below `hostFolder`; an empty
// folder means the real "/". Without a call, VIRELINE_ROOT is read at first access.
VIRELINE_EXPORT void SetDeviceRoot(const std::string& hostFolder);

// The host folder that device paths are mapped below ("/" on a device).
VIRELINE_EXPORT std::string GetDeviceRoot();

}  // namespace vireline

// Receives every emitted debug message: its module, level and formatted text.
typedef void (*tDebugOutputFunction)(int module, int level, const char* text);

// The debug output service. A message of level L from module M is emitted when
// L is at or below the effective level of M, which is the higher of the
// process-wide master level and the level set for M with SetDebugLevel.
class VIRELINE_EXPORT PlatformDebug {
 public:
  // A debug object speaking for `module`.
  explicit PlatformDebug(int module = 0);
  ~PlatformDebug();

  // Formats and emits a message at `level` when the level is enabled for this module.
  void DebugOut(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));

  // DebugOut with an argument list.
  void VDebugOut(int level, const char* format, va_list args) __attribute__((format(printf, 3, 0)));

  // On a false condition reports the formatted message at level 1; aborts only
  // when SetAbortOnAssert(true) was called.
  void Assert(bool condition, const char* format, ...) __attribute__((format(printf, 3, 4)));

  // Sets the level of this object's module.
  void SetDebugLevel(int level);

  // Sets the process-wide master level (initially VIRELINE_DEBUG_LEVEL, or 1).
  void SetMasterDebugLevel(int level);

  // The level that decides whether this module's messages are emitted.
  int GetEffectiveDebugLevel() const;

  // Installs a receiver for emitted messages; null restores standard error.
  static void SetOutputFunction(tDebugOutputFunction output);

  // Chooses whether a failed Assert aborts the process (default: it does not).
  static void SetAbortOnAssert(bool abortOnAssert);

 private:
  int mModule;
};

// The platform kernel service.
class VIRELINE_EXPORT PlatformKernel {
 public:
  // Microseconds on a monotonic clock.
  static uint64_t GetElapsedTimeAsUSecs();

  // True when `path` names a folder.
  static bool IsDirectory(const CPath& path);

  // Full device paths of the entries of `path` (files and folders), in listing order.
  static std::vector<CPath> GetFilesInDirectory(const CPath& path);
};

// Capabilities that HasPlatformCapability answers for.
enum tPlatformCapability { kPlatformCapabilityTouchScreen = 0 };

// Who this device is, from "/etc/vireline/platform.cfg" (keys Name, ID, TouchScreen).
class VIRELINE_EXPORT PlatformIdentity {
 public:
  // The platform's numeric id; 0 when unknown.
  static int GetPlatformID();

  // The platform's name ("Tamsel", "MIRA", ...); empty when unknown.
  static CString GetPlatformName();

  // True when the platform has `capability`.
  static bool HasPlatformCapability(int capability);
};

// Opens `path` for writing so that the target is replaced only by a successful
// fcloseAtomic; modes "w" and "a" (with or without "b" and "+"). Null on failure.
VIRELINE_EXPORT FILE* fopenAtomic(const char* path, const char* mode);

// Flushes, syncs and renames the file over its target; 0 on success. On any
// failure returns non-zero, keeps the old target and removes the temporary file.
VIRELINE_EXPORT int fcloseAtomic(FILE* stream);

#endif  // VIRELINE_PLATFORM_H_
