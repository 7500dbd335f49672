// A fixture for the dataset loader: datasets and relink lists written as
// bytes into a fresh device root, and the loader's messages recorded.
#ifndef VIRELINE_TESTS_MILESTONES_DATASETTEST_H_
#define VIRELINE_TESTS_MILESTONES_DATASETTEST_H_

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>

#include <vireline/Dataset.h>

#include "ltm/DataObjectTest.h"

class DatasetTest : public DataObjectTest {
 public:
  static constexpr const char* kDataset = "/data/level.dsetBin";
  static constexpr const char* kRelink = "/data/level.relinkBin";

  // The values as 4-byte little-endian words, one after another.
  static std::string Words(std::initializer_list<uint32_t> values) {
    std::string bytes;
    for (uint32_t value : values) {
      for (int i = 0; i < 4; ++i) bytes += static_cast<char>((value >> (8 * i)) & 0xFF);
    }
    return bytes;
  }


 protected:
  void SetUp() override {
    DataObjectTest::SetUp();
    RecordDebugMessages();
  }

  // The 32-bit value at `offset` of `block`, however aligned.
  static uint32_t FieldAt(const char* block, size_t offset) {
    uint32_t value;
    std::memcpy(&value, block + offset, sizeof value);
    return value;
  }

  // The low 32 bits of the address of `block`.
  static uint32_t Address(const char* block) { return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(block)); }

  // Writes the dataset and relink files and loads them.
  boost::shared_array<char> Load(const std::string& dataset, const std::string& relink) const {
    WriteFile(kDataset, dataset);
    WriteFile(kRelink, relink);
    return LoadDataset(kDataset, kRelink);
  }
};

#endif  // VIRELINE_TESTS_MILESTONES_DATASETTEST_H_
