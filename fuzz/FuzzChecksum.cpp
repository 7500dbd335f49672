// The ".crc" reader over a fuzzed file.
#include <string>

#include <vireline/BaseUtils.h>

#include "fuzz/FuzzSupport.h"

namespace vireline {
namespace fuzz {

void FuzzChecksum(const uint8_t* data, size_t size) {
  const char file[] = "/QV/Bulk/ProgramFiles/Fuzz/Fuzz.crc";
  WriteDeviceFile(file, std::string(reinterpret_cast<const char*>(data), size));
  (void)BaseUtils::Instance()->ReadChecksum(file);
}

}  // namespace fuzz
}  // namespace vireline
