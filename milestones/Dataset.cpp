// Loading a relocatable dataset: one read of the image into one block, one
// read of the relink list, then one pass that turns each listed offset into
// an address. The format carries no bounds, so every offset is checked
// against the image before anything is relocated.
#include <vireline/Dataset.h>

#include <cstring>
#include <memory>
#include <new>

#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "platform/Env.h"

namespace {

const int kFileErrorLevel = 2;
const char kDatasetExtension[] = "dsetBin";
const char kRelinkExtension[] = "relinkBin";
const uint32_t kFieldSize = 4;

void Report(const char* format, ...) __attribute__((format(printf, 1, 2)));
void Report(const char* format, ...) {
  va_list args;
  va_start(args, format);
  PlatformDebug(vireline::kDataObjectsDebugModule).VDebugOut(kFileErrorLevel, format, args);
  va_end(args);
}

// A block of `size` bytes, or null (reported) when memory runs out.
char* Allocate(uint32_t size, const std::string& path) {
  char* block = new (std::nothrow) char[size];
  if (block == nullptr) Report("LoadDataset: no memory for the %u bytes of %s\n", size, path.c_str());
  return block;
}

// Reads the first `size` bytes of `path` into `buffer` in one read; false
// (reported) when the file cannot be opened or ends early.
bool ReadWhole(const std::string& path, char* buffer, uint32_t size) {
  if (path.empty()) return false;
  std::unique_ptr<vireline::SequentialFile> file;
  size_t got = 0;
  if (vireline::Env::Current()->NewSequentialFile(path, &file).ok()) vireline::ReadFully(file.get(), size, buffer, &got);
  if (got != size) {
    Report("LoadDataset: read %u of the %u bytes of %s\n", static_cast<unsigned>(got), size, path.c_str());
    return false;
  }
  return true;
}

// The relink file's offsets, in the device's native order (trailing bytes
// beyond a multiple of 4 are ignored); false (reported) when it cannot be
// read or memory runs out.
bool ReadOffsets(const std::string& path, uint32_t size, std::vector<uint32_t>* offsets) {
  try {
    offsets->resize(size / kFieldSize);
  } catch (const std::exception&) {  // bad_alloc, or length_error beyond a 32-bit address space
    Report("LoadDataset: no memory for the %u offsets of %s\n", size / kFieldSize, path.c_str());
    return false;
  }
  return ReadWhole(path, reinterpret_cast<char*>(offsets->data()), static_cast<uint32_t>(offsets->size()) * kFieldSize);
}

// True when every offset leaves room for a whole field inside `size` bytes;
// otherwise reports the first that does not.
bool OffsetsFit(const std::vector<uint32_t>& offsets, uint32_t size, const std::string& datasetPath,
                const std::string& relinkPath) {
  for (size_t i = 0; i < offsets.size(); ++i) {
    if (static_cast<uint64_t>(offsets[i]) + kFieldSize > size) {
      Report("LoadDataset: offset %u (entry %u of %s) leaves no room for a 4-byte field in the %u-byte dataset %s\n",
             offsets[i], static_cast<unsigned>(i), relinkPath.c_str(), size, datasetPath.c_str());
      return false;
    }
  }
  return true;
}

}  // namespace

boost::shared_array<char> LoadDataset(const std::string& datasetPath, const std::string& relinkPath) {
  uint32_t datasetSize = FileSize(datasetPath);
  uint32_t relinkSize = FileSize(relinkPath);
  if (datasetSize == 0 || relinkSize == 0) return boost::shared_array<char>();
  if (GetFileExtension(datasetPath) != kDatasetExtension || GetFileExtension(relinkPath) != kRelinkExtension) {
    return boost::shared_array<char>();
  }
  boost::shared_array<char> block(Allocate(datasetSize, datasetPath), boost::checked_array_deleter<char>());
  if (!block || !ReadWhole(datasetPath, block.get(), datasetSize)) return boost::shared_array<char>();
  std::vector<uint32_t> offsets;
  if (!ReadOffsets(relinkPath, relinkSize, &offsets)) return boost::shared_array<char>();
  if (!OffsetsFit(offsets, datasetSize, datasetPath, relinkPath)) return boost::shared_array<char>();
  OffsetsToPtrs(block.get(), offsets);
  return block;
}

void OffsetsToPtrs(char* base, const std::vector<uint32_t>& offsets) {
  // Addresses are 32-bit in the format; wider hosts keep the low 32 bits.
  const uint32_t address = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(base));
  for (uint32_t offset : offsets) {
    // Fields need not be aligned: copied in and out rather than accessed in place.
    uint32_t value;
    std::memcpy(&value, base + offset, sizeof value);
    value += address;
    std::memcpy(base + offset, &value, sizeof value);
  }
}
