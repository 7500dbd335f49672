// Whole-file reads and replaces for tools that show or write a device's files
// byte for byte, through the same platform layer (device root, fault
// injection) as the rest of the library.
#ifndef VIRELINE_DEVICEFILES_H_
#define VIRELINE_DEVICEFILES_H_

#include <cstddef>
#include <string>

#include <vireline/Export.h>

namespace vireline {

// What ReadDeviceFile managed.
enum class tDeviceFileRead { kRead, kNotOpened, kNotRead };

// Reads the device file `path` into *bytes, stopping after `limit` bytes, so a
// caller can tell a file over its limit by asking for one byte more.
VIRELINE_EXPORT tDeviceFileRead ReadDeviceFile(const std::string& path, size_t limit, std::string* bytes);

// Replaces the device file `path` with `bytes` in one atomic step; false when
// it could not be written (the old file, if any, is then left as it was).
VIRELINE_EXPORT bool ReplaceDeviceFile(const std::string& path, const std::string& bytes);

}  // namespace vireline

#endif  // VIRELINE_DEVICEFILES_H_
