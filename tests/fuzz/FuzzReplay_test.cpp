// The fuzz targets in the normal suite: each replays its seed corpus and
// every input that once made it fail, so a fixed fault stays fixed.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "DeviceRootTest.h"
#include "fuzz/FuzzSupport.h"

namespace fs = std::filesystem;

namespace {

typedef void (*tFuzzTarget)(const uint8_t* data, size_t size);

class FuzzReplayTest : public DeviceRootTest {
 protected:
  // The files of `folder`, sorted; none when it does not exist.
  static std::vector<fs::path> Inputs(const fs::path& folder) {
    std::vector<fs::path> inputs;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder, ignored)) {
      if (entry.is_regular_file()) inputs.push_back(entry.path());
    }
    std::sort(inputs.begin(), inputs.end());
    return inputs;
  }

  static std::string Content(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

  // Runs `target` over its corpus and regressions; the corpus must not be empty.
  void Replay(const std::string& name, tFuzzTarget target) {
    std::vector<fs::path> corpus = Inputs(fs::path(VIRELINE_FUZZ_DIR) / "corpus" / name);
    EXPECT_FALSE(corpus.empty()) << name;
    std::vector<fs::path> inputs = Inputs(fs::path(VIRELINE_FUZZ_DIR) / "regressions" / name);
    inputs.insert(inputs.end(), corpus.begin(), corpus.end());
    for (const fs::path& input : inputs) {
      SCOPED_TRACE(input.string());
      std::string bytes = Content(input);
      target(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    }
    // An empty input is the first thing a fuzzer tries.
    const uint8_t none = 0;
    target(&none, 0);
  }
};

TEST_F(FuzzReplayTest, KeyValueFiles) { Replay("key_value", vireline::fuzz::FuzzKeyValue); }
TEST_F(FuzzReplayTest, JsonDocuments) { Replay("json", vireline::fuzz::FuzzJson); }
TEST_F(FuzzReplayTest, PlayLogs) { Replay("play_log", vireline::fuzz::FuzzPlayLog); }
TEST_F(FuzzReplayTest, ManufacturingRecord) { Replay("mfg_data", vireline::fuzz::FuzzMfgData); }
TEST_F(FuzzReplayTest, Datasets) { Replay("dataset", vireline::fuzz::FuzzDataset); }
TEST_F(FuzzReplayTest, VersionOrder) { Replay("compare_version", vireline::fuzz::FuzzCompareVersion); }
TEST_F(FuzzReplayTest, ChecksumFiles) { Replay("checksum", vireline::fuzz::FuzzChecksum); }
TEST_F(FuzzReplayTest, TitlePath) { Replay("title_path", vireline::fuzz::FuzzTitlePath); }

}  // namespace
