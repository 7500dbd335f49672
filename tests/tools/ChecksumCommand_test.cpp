#include <zlib.h>

#include <gtest/gtest.h>

#include <string>

#include "tools/SampleImageTest.h"

namespace {

const char kPackage[] = "/QV/Bulk/ProgramFiles/ZooKeeper";
const char kStored[] = "/QV/Bulk/ProgramFiles/ZooKeeper/ZooKeeper.crc";

std::string Hex(uLong value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", value);
  return text;
}

}  // namespace

class ChecksumCommandTest : public SampleImageTest {
 protected:
  uLong Crc(const std::string& bytes) {
    return crc32(crc32(0L, Z_NULL, 0), reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size()));
  }
};

TEST_F(ChecksumCommandTest, TheSampleImagesChecksumFileMatchesItsPackage) {
  // The package holds one file besides its checksum file, so no listing order is involved.
  std::string expected = Hex(Crc(ReadFile(std::string(kPackage) + "/meta.inf")));
  InspectorRun run = Run(std::string("checksum ") + kPackage + " --verify " + kStored);
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.out, expected + "  " + kPackage + "  matches " + kStored + "\n");
  EXPECT_EQ(run.err, "");
}

TEST_F(ChecksumCommandTest, ShowsTheValueOfAFile) {
  WriteFile("/QV/Bulk/check.txt", "123456789");
  InspectorRun run = Run("checksum /QV/Bulk/check.txt");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "0xCBF43926  /QV/Bulk/check.txt\n");
}

TEST_F(ChecksumCommandTest, WriteStoresFourLittleEndianBytes) {
  WriteFile("/QV/Bulk/check.txt", "123456789");
  InspectorRun run = Run("checksum /QV/Bulk/check.txt --write /QV/Bulk/check.crc");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "0xCBF43926  /QV/Bulk/check.txt  written to /QV/Bulk/check.crc\n");
  EXPECT_EQ(ReadFile("/QV/Bulk/check.crc"), "\x26\x39\xF4\xCB");
}

TEST_F(ChecksumCommandTest, AMismatchIsReportedWithExitStatusOne) {
  WriteFile(std::string(kPackage) + "/extra.bin", "changed");
  InspectorRun run = Run(std::string("checksum ") + kPackage + " --verify " + kStored);
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find(std::string(", but ") + kStored + " holds 0x"), std::string::npos) << run.err;
}

TEST_F(ChecksumCommandTest, AMissingChecksumFileIsReported) {
  InspectorRun run = Run(std::string("checksum ") + kPackage + " --verify /QV/Bulk/none.crc");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, "vireline checksum: /QV/Bulk/none.crc: no such checksum file\n");
}

TEST_F(ChecksumCommandTest, AMissingPathIsReported) {
  InspectorRun run = Run("checksum /QV/Bulk/Nothing");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, "vireline checksum: /QV/Bulk/Nothing: no such file or folder\n");
}

TEST_F(ChecksumCommandTest, AFailedWriteIsAnIoError) {
  WriteFile("/QV/Bulk/check.txt", "123456789");
  InspectorRun run = Run("checksum /QV/Bulk/check.txt --write /QV/Bulk/NoFolder/check.crc");
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.err, "vireline checksum: /QV/Bulk/NoFolder/check.crc: cannot be written\n");
}

TEST_F(ChecksumCommandTest, WriteAndVerifyTogetherAreAUsageError) {
  InspectorRun run = Run(std::string("checksum ") + kPackage + " --write a.crc --verify b.crc");
  EXPECT_EQ(run.exitStatus, 2);
}

TEST_F(ChecksumCommandTest, ChecksumFilesInsideDoNotCount) {
  InspectorRun before = Run(std::string("checksum ") + kPackage);
  WriteFile(std::string(kPackage) + "/other.crc", "abcd");
  EXPECT_EQ(Run(std::string("checksum ") + kPackage).out, before.out);
}

TEST_F(ChecksumCommandTest, NoProgressWhenStandardErrorIsNotATerminal) {
  for (int i = 0; i < 50; ++i) WriteFile("/QV/Bulk/Tree/f" + std::to_string(i), std::string(100, 'x'));
  InspectorRun run = Run("checksum /QV/Bulk/Tree");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
}
