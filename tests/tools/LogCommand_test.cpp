// `vireline log dump`, `vireline log stats` and `vireline log export` on the
// sample image's play logs and on damaged ones.
#include <gtest/gtest.h>

#include <stdlib.h>

#include <sstream>
#include <string>
#include <vector>

#include "tools/SampleImageTest.h"

namespace {

const char kSlot0[] = "/QV/Bulk/Data/Uploads/0/profile.log";

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace

class LogCommandTest : public SampleImageTest {
 protected:
  InspectorRun Log(const std::string& arguments) const { return Run("log " + arguments); }
};

TEST_F(LogCommandTest, DumpPrintsTheHeaderAndOneLinePerRecord) {
  InspectorRun run = Log("dump 0");
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.err, "");
  std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 61u);
  EXPECT_EQ(lines[0].rfind("== /QV/Bulk/Data/Uploads/0/profile.log: 1407 bytes, header valid: platform 10, serial \"", 0),
            0u)
      << lines[0];
  EXPECT_EQ(lines[1], "         0  CTimeSync  clock=1709566200  resetCode=0");
  EXPECT_EQ(lines[2],
            "         0  CDebugInfo  code=0  text=\"Product Id = 1507369; Part Number = 152-11029-004; Pkg Version = 2.4.1\"");
  EXPECT_EQ(lines[7], "     12900  CCorrectAnswerTimed  questionId=1  question=\"2+3\"  answer=\"5\"  time=5100");
  EXPECT_EQ(lines[8], "     20200  CWrongAnswerTimed  questionId=2  question=\"4+4\"  answer=\"9\"  time=7200");
  EXPECT_EQ(lines[15], "     39000  CUserLogOut  reason=1");
  EXPECT_EQ(lines[16], "         0  CTimeSync  clock=1709655000  resetCode=0");
}

TEST_F(LogCommandTest, DumpWithoutATargetPrintsAllThreeSlots) {
  InspectorRun run = Log("dump");
  EXPECT_EQ(run.exitStatus, 0);
  size_t headers = 0;
  for (const std::string& line : Lines(run.out)) headers += line.rfind("== ", 0) == 0;
  EXPECT_EQ(headers, 3u);
  EXPECT_NE(run.out.find("CCriticalError  message=\"Audio clip missing: cheer.wav (line 88 in VirelineJSON/Src/LTM)\""),
            std::string::npos);
}

TEST_F(LogCommandTest, DumpTakesAFileAsADevicePath) {
  EXPECT_EQ(Log("dump " + std::string(kSlot0)).out, Log("dump 0").out);
}

TEST_F(LogCommandTest, DumpJsonIsOneObjectPerLine) {
  InspectorRun run = Log("dump 1 --json");
  EXPECT_EQ(run.exitStatus, 0);
  std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 43u);
  Json::Value header = ParseJson(lines[0]);
  EXPECT_EQ(header["header"].asString(), "valid");
  EXPECT_EQ(header["platform"].asInt(), 10);
  EXPECT_EQ(header["logNumber"].asInt(), 1);
  EXPECT_EQ(header["size"].asInt(), 1066);
  Json::Value record = ParseJson(lines[7]);
  EXPECT_EQ(record["class"].asString(), "CCorrectAnswer");
  EXPECT_EQ(record["type"].asInt(), 18);
  EXPECT_EQ(record["time"].asUInt(), 116500u);
  EXPECT_EQ(record["fields"]["answer"].asString(), "penguin");
  EXPECT_EQ(record["fields"]["questionId"].asInt(), 7);
  EXPECT_FALSE(record.isMember("payload"));
  for (const std::string& line : lines) EXPECT_TRUE(ParseJson(line).isObject()) << line;
}

TEST_F(LogCommandTest, ATornLastRecordIsReportedAfterTheRecordsBeforeIt) {
  std::string content = ReadFile(kSlot0);
  WriteFile(kSlot0, content.substr(0, content.size() - 3));
  InspectorRun run = Log("dump 0");
  EXPECT_EQ(run.exitStatus, 4);
  EXPECT_EQ(Lines(run.out).size(), 60u);
  EXPECT_EQ(run.err, "vireline log: /QV/Bulk/Data/Uploads/0/profile.log: torn record at offset 1387 (17 bytes present)\n");
  InspectorRun json = Log("dump 0 --json");
  Json::Value torn = ParseJson(Lines(json.out).back());
  EXPECT_TRUE(torn["torn"].asBool());
  EXPECT_EQ(torn["offset"].asInt(), 1387);
}

TEST_F(LogCommandTest, UnknownAndMismatchedRecordsShowTheirPayload) {
  std::string content = ReadFile(kSlot0);
  WriteFile(kSlot0, content + std::string("\x10\0\0\0\x30\x02\xAB\xCD" "\x20\0\0\0\x44\x01x", 15));
  InspectorRun run = Log("dump 0");
  EXPECT_EQ(run.exitStatus, 0);
  std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 63u);
  EXPECT_EQ(lines[61], "        16  type 48  payload=abcd");
  EXPECT_EQ(lines[62], "        32  CGameStart  payload=78");
  Json::Value unknown = ParseJson(Lines(Log("dump 0 --json").out)[61]);
  EXPECT_TRUE(unknown["class"].isNull());
  EXPECT_EQ(unknown["payload"].asString(), "abcd");
}

TEST_F(LogCommandTest, AFileThatIsNoPlayLogIsCorrupt) {
  WriteFile("/QV/notes.txt", std::string(200, 'n'));
  InspectorRun run = Log("dump /QV/notes.txt");
  EXPECT_EQ(run.exitStatus, 4);
  EXPECT_EQ(run.err, "vireline log: /QV/notes.txt: not a play log\n");
  WriteFile("/QV/short.log", "606F7B93");
  EXPECT_EQ(Log("dump /QV/short.log").err, "vireline log: /QV/short.log: too short\n");
}

TEST_F(LogCommandTest, AMissingFileIsNotFound) {
  InspectorRun run = Log("dump /QV/none.log");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, "vireline log: /QV/none.log: cannot be opened\n");
}

TEST_F(LogCommandTest, StatsCountsRecordsByClassAndTheBytesLeft) {
  InspectorRun run = Log("stats");
  EXPECT_EQ(run.exitStatus, 0);
  std::vector<std::string> lines = Lines(run.out);
  EXPECT_EQ(lines[0], "slot 0  /QV/Bulk/Data/Uploads/0/profile.log  1407 bytes  header valid  60 records");
  EXPECT_NE(run.out.find("  CCorrectAnswerTimed      6\n"), std::string::npos);
  EXPECT_EQ(lines.back(), "total 3479 bytes of 1024000; 1020521 bytes left under the cap");
}

TEST_F(LogCommandTest, StatsJsonGivesEachSlot) {
  Json::Value stats = ParseJson(Log("stats --json").out);
  ASSERT_EQ(stats["slots"].size(), 3u);
  EXPECT_EQ(stats["slots"][2]["records"].asInt(), 39);
  EXPECT_EQ(stats["slots"][2]["classes"]["CCriticalError"].asInt(), 1);
  EXPECT_EQ(stats["bytesLeft"].asInt(), 1020521);
  EXPECT_EQ(stats["cap"].asInt(), 1024000);
}

TEST_F(LogCommandTest, StatsShowNothingLeftOnceTheCapIsReached) {
  WriteFile(kSlot0, ReadFile(kSlot0) + std::string(1024000, '\0'));
  Json::Value stats = ParseJson(Log("stats --json").out);
  EXPECT_EQ(stats["bytesLeft"].asInt(), 0);
}

TEST_F(LogCommandTest, StatsOfMissingFilesCountNothing) {
  std::string slot1 = "/QV/Bulk/Data/Uploads/1/profile.log";
  ASSERT_EQ(std::remove(Host(slot1).c_str()), 0);
  Json::Value stats = ParseJson(Log("stats --json").out);
  EXPECT_EQ(stats["slots"][1]["header"].asString(), "cannot be opened");
  EXPECT_EQ(stats["slots"][1]["records"].asInt(), 0);
}

TEST_F(LogCommandTest, LogNeedsASubcommand) { EXPECT_EQ(Log("").exitStatus, 2); }

TEST_F(LogCommandTest, ExportGivesEveryRecordItsDeviceSlotAndTitle) {
  InspectorRun run = Log("export 0 --jsonl");
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.err, "");
  std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 60u);
  Json::Value header = ParseJson(Lines(Log("dump 0 --json").out)[0]);
  for (const std::string& line : lines) {
    Json::Value record = ParseJson(line);
    EXPECT_EQ(record["serial"], header["serial"]) << line;
    EXPECT_EQ(record["slot"].asInt(), 0) << line;
  }
  Json::Value answer = ParseJson(lines[6]);
  EXPECT_EQ(answer["class"].asString(), "CCorrectAnswerTimed");
  EXPECT_EQ(answer["time"].asUInt(), 12900u);
  EXPECT_EQ(answer["offset"].asInt(), ParseJson(Lines(Log("dump 0 --json").out)[7])["offset"].asInt());
  EXPECT_EQ(answer["fields"]["answer"].asString(), "5");
  EXPECT_EQ(answer["title"].asString(), "MathMountain");
  EXPECT_TRUE(ParseJson(lines[0])["title"].isNull());   // the clock record, before any title
  EXPECT_TRUE(ParseJson(lines[14])["title"].isNull());  // the first day's log-out, after the title's exit
}

TEST_F(LogCommandTest, ExportFollowsGamesAsTitlesToo) {
  std::vector<std::string> lines = Lines(Log("export 1 --jsonl").out);
  ASSERT_EQ(lines.size(), 42u);
  Json::Value answer = ParseJson(lines[6]);
  EXPECT_EQ(answer["class"].asString(), "CCorrectAnswer");
  EXPECT_EQ(answer["title"].asString(), "ZooKeeper");
  EXPECT_EQ(answer["slot"].asInt(), 1);
}

TEST_F(LogCommandTest, ExportWithoutTargetsTakesAllThreeSlotsAndAFileTakesItsSlotFromTheHeader) {
  EXPECT_EQ(Lines(Log("export --jsonl").out).size(), 60u + 42u + 39u);
  InspectorRun file = Log("export /QV/Bulk/Data/Uploads/2/profile.log --jsonl");
  EXPECT_EQ(file.out, Log("export 2 --jsonl").out);
}

TEST_F(LogCommandTest, ExportReportsATornTailAfterTheRecordsBeforeIt) {
  std::string content = ReadFile(kSlot0);
  WriteFile(kSlot0, content.substr(0, content.size() - 3));
  InspectorRun run = Log("export 0 1 --jsonl");
  EXPECT_EQ(run.exitStatus, 4);
  EXPECT_EQ(Lines(run.out).size(), 59u + 42u);
  EXPECT_EQ(run.err, "vireline log: /QV/Bulk/Data/Uploads/0/profile.log: torn record at offset 1387 (17 bytes present)\n");
}

TEST_F(LogCommandTest, ExportNeedsItsFormatAndReadableLogs) {
  EXPECT_EQ(Log("export 0").exitStatus, 2);
  EXPECT_EQ(Log("export /QV/none.log --jsonl").exitStatus, 1);
  WriteFile("/QV/notes.txt", std::string(200, 'n'));
  InspectorRun run = Log("export /QV/notes.txt --jsonl");
  EXPECT_EQ(run.exitStatus, 4);
  EXPECT_EQ(run.err, "vireline log: /QV/notes.txt: not a play log\n");
}

#ifdef VIRELINE_MAKE_PLAY_LOGS
TEST_F(LogCommandTest, TheSampleLogsAreWhatTheGeneratorWrites) {
  if (getenv("VIRELINE_TEST_TOOL") != nullptr) GTEST_SKIP() << "the generator lives in the build tree only";
  std::vector<std::string> committed;
  for (int slot = 0; slot < 3; ++slot) committed.push_back(ReadFile("/QV/Bulk/Data/Uploads/" + std::to_string(slot) + "/profile.log"));
  std::string command = std::string(VIRELINE_MAKE_PLAY_LOGS) + " " + mRoot + " >/dev/null";
  ASSERT_EQ(std::system(command.c_str()), 0);
  for (int slot = 0; slot < 3; ++slot) {
    EXPECT_EQ(ReadFile("/QV/Bulk/Data/Uploads/" + std::to_string(slot) + "/profile.log"), committed[slot]) << slot;
  }
}
#endif
