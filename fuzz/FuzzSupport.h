// What every fuzz target shares: its entry points, the scratch device root
// each input is written into, and the splitting of one input into files.
#ifndef VIRELINE_FUZZ_FUZZSUPPORT_H_
#define VIRELINE_FUZZ_FUZZSUPPORT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vireline {
namespace fuzz {

// The targets: each writes `data` into the current device root and calls the
// library on it. They never fail; a fault shows as a sanitizer report.
void FuzzKeyValue(const uint8_t* data, size_t size);
void FuzzJson(const uint8_t* data, size_t size);
void FuzzPlayLog(const uint8_t* data, size_t size);
void FuzzMfgData(const uint8_t* data, size_t size);
void FuzzDataset(const uint8_t* data, size_t size);
void FuzzCompareVersion(const uint8_t* data, size_t size);
void FuzzChecksum(const uint8_t* data, size_t size);
void FuzzTitlePath(const uint8_t* data, size_t size);

// Separates the files of an input that feeds several files.
extern const char kFileSeparator[];

// Cuts the input at every kFileSeparator into exactly `count` pieces: missing
// ones are empty, the last one keeps any further separators.
std::vector<std::string> SplitInput(const uint8_t* data, size_t size, size_t count);

// Removes everything below the current device root, leaving the root itself:
// for targets whose files move with the input. Others overwrite theirs.
void ClearDeviceRoot();

// Writes `content` to device path `path` below the current device root,
// creating its folders.
void WriteDeviceFile(const std::string& path, const std::string& content);

// Makes a new, empty host folder the device root for the rest of the process
// and removes it when the process exits; debug output is dropped.
void UseScratchDeviceRoot();

}  // namespace fuzz
}  // namespace vireline

#endif  // VIRELINE_FUZZ_FUZZSUPPORT_H_
