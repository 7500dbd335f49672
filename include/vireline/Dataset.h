// Relocatable datasets: a prebuilt data structure shipped as an image
// ("*.dsetBin") whose 32-bit pointer fields hold offsets from its start, and
// a relink file ("*.relinkBin") listing where those fields are. Loading turns
// every listed offset into an address, so the image is used in place without
// parsing. Beside it, the small string and file helpers it uses. Paths and
// texts are narrow byte strings.
#ifndef VIRELINE_DATASET_H_
#define VIRELINE_DATASET_H_

#include <cstdint>
#include <string>
#include <vector>

#include <boost/checked_delete.hpp>
#include <boost/shared_array.hpp>

#include <vireline/Export.h>

// Holds one file descriptor (-1 for none) and closes it on every way out.
class VIRELINE_EXPORT EFdWrapper {
 public:
  // Takes ownership of `fd`; -1 holds nothing.
  explicit EFdWrapper(int fd = -1);

  // Closes the descriptor if one is still held.
  ~EFdWrapper();

  EFdWrapper(const EFdWrapper&) = delete;
  EFdWrapper& operator=(const EFdWrapper&) = delete;

  // The held descriptor; -1 when none.
  int Get() const { return mFd; }

  // Closes a held descriptor and holds -1 afterwards; nothing when none is held.
  void Close();

 private:
  int mFd;
};

// The dataset in `datasetPath` with every pointer field that `relinkPath`
// lists relocated to an address within the returned block. Empty when either
// file is empty or missing, an extension is not exactly "dsetBin" and
// "relinkBin", a file cannot be read whole, memory runs out, or an offset
// does not leave room for a 32-bit field inside the dataset (the reason is
// reported through the debug output). Addresses are 32-bit: on a host with
// wider pointers each field holds the low 32 bits of its target's address.
VIRELINE_EXPORT boost::shared_array<char> LoadDataset(const std::string& datasetPath, const std::string& relinkPath);

// Adds the address of `base` to the 32-bit value at `base` + each offset.
// Unchecked: every offset must leave room for 4 bytes inside the block.
VIRELINE_EXPORT void OffsetsToPtrs(char* base, const std::vector<uint32_t>& offsets);

// The size of the file at `path` (trailing backslashes ignored); 0 when it
// cannot be examined. Sizes beyond 32 bits keep their low 32 bits.
VIRELINE_EXPORT uint32_t FileSize(const std::string& path);

// The text after the last "." of `path`; empty when there is none.
VIRELINE_EXPORT std::string GetFileExtension(const std::string& path);

// `text` without every trailing character that is one of `characters`.
VIRELINE_EXPORT std::string StripTrailing(const std::string& text, const std::string& characters);

#endif  // VIRELINE_DATASET_H_
