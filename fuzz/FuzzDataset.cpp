// The dataset loader over a fuzzed image and relink file, and the small path
// helpers beside it over the same bytes taken as a path.
#include <string>
#include <vector>

#include <vireline/Dataset.h>

#include "fuzz/FuzzSupport.h"

namespace vireline {
namespace fuzz {

namespace {

const char kDataset[] = "/QV/Bulk/Data/Datasets/fuzz.dsetBin";
const char kRelink[] = "/QV/Bulk/Data/Datasets/fuzz.relinkBin";

}  // namespace

void FuzzDataset(const uint8_t* data, size_t size) {
  std::vector<std::string> files = SplitInput(data, size, 2);
  WriteDeviceFile(kDataset, files[0]);
  WriteDeviceFile(kRelink, files[1]);
  boost::shared_array<char> block = LoadDataset(kDataset, kRelink);
  // The block holds the whole image: touch every byte so a short block shows.
  unsigned sum = 0;
  if (block) {
    for (size_t i = 0; i < files[0].size(); ++i) sum += static_cast<unsigned char>(block[i]);
  }
  (void)sum;
  (void)FileSize(kDataset);
  (void)GetFileExtension(files[1]);
  (void)StripTrailing(files[0], files[1]);
}

}  // namespace fuzz
}  // namespace vireline
