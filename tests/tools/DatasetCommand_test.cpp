// `vireline dataset`: the sample pair, and each way a pair is refused.
#include <gtest/gtest.h>

#include <string>

#include "tools/SampleImageTest.h"

namespace {

const char kPair[] = "/QV/Bulk/Data/Datasets/dino.dsetBin /QV/Bulk/Data/Datasets/dino.relinkBin";

std::string Words(std::initializer_list<uint32_t> values) {
  std::string bytes;
  for (uint32_t value : values) {
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>((value >> (8 * i)) & 0xFF);
  }
  return bytes;
}

}  // namespace

class DatasetCommandTest : public SampleImageTest {
 protected:
  // Writes a pair under /data and runs the command on it.
  InspectorRun RunPair(const std::string& dataset, const std::string& relink) const {
    WriteFile("/data/x.dsetBin", dataset);
    WriteFile("/data/x.relinkBin", relink);
    return Run("dataset /data/x.dsetBin /data/x.relinkBin");
  }
};

TEST_F(DatasetCommandTest, ShowsSizeRelocationsAndTheirTargets) {
  InspectorRun run = Run(std::string("dataset ") + kPair);
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out,
            "dataset         /QV/Bulk/Data/Datasets/dino.dsetBin\n"
            "relink          /QV/Bulk/Data/Datasets/dino.relinkBin\n"
            "size            24 bytes\n"
            "relocations     3\n"
            "field           0x00000000 -> 0x0000000C\n"
            "field           0x00000008 -> 0x00000014\n"
            "field           0x00000014 -> 0x0000000C\n");
}

TEST_F(DatasetCommandTest, Json) {
  Json::Value json = ParseJson(Run(std::string("dataset --json ") + kPair).out);
  EXPECT_EQ(json["size"].asUInt(), 24u);
  EXPECT_EQ(json["relocations"].asUInt(), 3u);
  ASSERT_EQ(json["fields"].size(), 3u);
  EXPECT_EQ(json["fields"][1]["offset"].asUInt(), 8u);
  EXPECT_EQ(json["fields"][1]["target"].asUInt(), 20u);
}

TEST_F(DatasetCommandTest, AnOffsetPastTheEndIsRefusedNamingTheFiles) {
  InspectorRun run = RunPair(Words({0, 0}), Words({0, 6}));
  EXPECT_EQ(run.exitStatus, 4);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "vireline dataset: LoadDataset: offset 6 (entry 1 of /data/x.relinkBin) leaves no room for a 4-byte "
            "field in the 8-byte dataset /data/x.dsetBin\n");
}

TEST_F(DatasetCommandTest, AnEmptyRelinkFileIsRefused) {
  InspectorRun run = RunPair(Words({0}), "");
  EXPECT_EQ(run.exitStatus, 4);
  EXPECT_EQ(run.err, "vireline dataset: /data/x.relinkBin: empty file\n");
}

TEST_F(DatasetCommandTest, AWrongExtensionIsRefused) {
  WriteFile("/data/x.bin", Words({0}));
  InspectorRun run = Run("dataset /data/x.bin /QV/Bulk/Data/Datasets/dino.relinkBin");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.err, "vireline dataset: /data/x.bin: name does not end in .dsetBin\n");
}

TEST_F(DatasetCommandTest, AMissingFileIsNotFound) {
  InspectorRun run = Run("dataset /data/none.dsetBin /QV/Bulk/Data/Datasets/dino.relinkBin");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, "vireline dataset: /data/none.dsetBin: no such file\n");
}

TEST_F(DatasetCommandTest, NeedsBothFiles) { EXPECT_EQ(Run("dataset /data/x.dsetBin").exitStatus, 2); }
