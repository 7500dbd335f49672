// Each inspector subcommand given something it cannot use names the file (or
// argument) and the problem in one line, with the documented exit status.
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "tools/SampleImageTest.h"

namespace fs = std::filesystem;

namespace {

// User and system time of the finished child processes so far.
double ChildProcessorSeconds() {
  struct rusage usage;
  getrusage(RUSAGE_CHILDREN, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

}  // namespace

class InspectorClearErrorsTest : public SampleImageTest {};

TEST_F(InspectorClearErrorsTest, LogDumpOfAFolderIsAnErrorWithoutASize) {
  MakeDirs("/QV/Bulk/Data/folder.log");
  InspectorRun run = Run("log dump /QV/Bulk/Data/folder.log");
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "vireline log: /QV/Bulk/Data/folder.log: not a regular file\n");
}

TEST_F(InspectorClearErrorsTest, LogStatsDoesNotCountAFolderInPlaceOfALog) {
  fs::remove(Host("/QV/Bulk/Data/Uploads/1/profile.log"));
  MakeDirs("/QV/Bulk/Data/Uploads/1/profile.log");
  InspectorRun run = Run("log stats --json");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err,
            "vireline log stats: /QV/Bulk/Data/Uploads/1/profile.log: not a regular file; counted as empty\n");
  Json::Value json = ParseJson(run.out);
  EXPECT_EQ(json["slots"][1]["size"].asUInt64(), 0u);
  EXPECT_EQ(json["totalBytes"].asUInt64(),
            json["slots"][0]["size"].asUInt64() + json["slots"][2]["size"].asUInt64());
}

TEST_F(InspectorClearErrorsTest, LogDumpOfANumberThatIsNoSlotIsAUsageError) {
  InspectorRun run = Run("log dump 3");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "vireline log dump: no player slot 3 (slots are 0-2; give a log file as a device path)\n");
  EXPECT_EQ(Run("log export 12 --jsonl").exitStatus, 2);
  EXPECT_EQ(Run("log dump 2").exitStatus, 0);
}

TEST_F(InspectorClearErrorsTest, ARootFolderThatDoesNotExistFails) {
  InspectorRun run = RunInspector("--root " + mRoot + "/missing settings");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "vireline: device root " + mRoot + "/missing: not a folder\n");
}

TEST_F(InspectorClearErrorsTest, FindWithAnEmptyNameIsAUsageError) {
  InspectorRun run = Run("find art ''");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "vireline find: the asset name is empty\n");
}

TEST_F(InspectorClearErrorsTest, KvNamesALineHoldingANulByte) {
  WriteFile("/QV/Bulk/nul.cfg", std::string("A=1\nB=x\0y\nC=3\n", 14));
  InspectorRun run = Run("kv /QV/Bulk/nul.cfg");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "A=1\nB=x\nC=3\n");
  EXPECT_EQ(run.err,
            "vireline kv: /QV/Bulk/nul.cfg: line 2 holds a NUL byte (\\x00); the library reads each line only up to "
            "it\n");
}

TEST_F(InspectorClearErrorsTest, KvListsManyDistinctKeysQuickly) {
  std::string text;
  for (int i = 0; i < 80000; ++i) text += "Key" + std::to_string(i) + "=" + std::to_string(i) + "\n";
  WriteFile("/QV/Bulk/many.cfg", text);
  // Processor time of the inspector, not wall time: a busy machine must not fail the test.
  double before = ChildProcessorSeconds();
  InspectorRun run = Run("kv /QV/Bulk/many.cfg");
  double seconds = ChildProcessorSeconds() - before;
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out.size(), text.size());
  EXPECT_LT(seconds, 1.0);
}

TEST_F(InspectorClearErrorsTest, SettingsWithAFifoInPlaceOfItsFileDoesNotWait) {
  fs::remove(Host("/QV/Bulk/settings.cfg"));
  ASSERT_EQ(::mkfifo(Host("/QV/Bulk/settings.cfg").c_str(), 0600), 0);
  InspectorRun run = Run("settings");
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  InspectorRun kv = Run("kv /QV/Bulk/settings.cfg");
  EXPECT_EQ(kv.exitStatus, 3);
  EXPECT_EQ(kv.err, "vireline kv: /QV/Bulk/settings.cfg: not a regular file\n");
}

TEST_F(InspectorClearErrorsTest, TextFilesLargerThanTheLimitAreRefused) {
  std::string line(1023, 'x');
  std::string text;
  for (int i = 0; i < 16 * 1024 + 1; ++i) text += line + "\n";
  WriteFile("/QV/Bulk/huge.cfg", text);
  InspectorRun run = Run("kv /QV/Bulk/huge.cfg");
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.err, "vireline kv: /QV/Bulk/huge.cfg: larger than 16 MiB, the most the inspector reads\n");
  InspectorRun json = Run("json /QV/Bulk/huge.cfg");
  EXPECT_EQ(json.exitStatus, 1);
  EXPECT_EQ(json.err, "vireline json: /QV/Bulk/huge.cfg: larger than 16 MiB, the most the inspector reads\n");
}
