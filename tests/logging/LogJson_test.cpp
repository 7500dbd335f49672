// The play-log JSON objects every reader of the logs shares.
#include <vireline/LogJson.h>

#include <gtest/gtest.h>

#include <vireline/CLogExporter.h>
#include <vireline/CLogFile.h>

#include "DeviceRootTest.h"

class LogJsonTest : public DeviceRootTest {};

TEST_F(LogJsonTest, ARecordThatDidNotDecodeKeepsItsPayload) {
  tLogRecord record;
  record.offset = 104;
  record.timeStamp = 7;
  record.type = 200;
  record.payload = {0xAB, 0x01};
  EXPECT_EQ(vireline::LogRecordJson(record),
            "{\"class\":null,\"fields\":{},\"offset\":104,\"payload\":\"ab01\",\"time\":7,\"type\":200}");
}

TEST_F(LogJsonTest, StatusesHaveTheirNames) {
  EXPECT_STREQ(vireline::LogStatusName(CLogReader::kHeaderValid), "valid");
  EXPECT_STREQ(vireline::LogStatusName(CLogReader::kCannotOpen), "cannot be opened");
}

TEST_F(LogJsonTest, AMissingLogIsNamedInItsHeaderObject) {
  CLogReader reader("/QV/missing.log");
  EXPECT_EQ(vireline::LogHeaderJson("/QV/missing.log", reader),
            "{\"file\":\"/QV/missing.log\",\"header\":\"cannot be opened\",\"platform\":0,\"size\":0}");
}

TEST_F(LogJsonTest, AMissingLogExportsNothing) {
  int lines = 0;
  CLogExporter::tResult result =
      CLogExporter::Export({"/QV/missing.log", 0}, [&lines](const std::string&) { ++lines; });
  EXPECT_EQ(result.status, CLogReader::kCannotOpen);
  EXPECT_EQ(result.records, 0u);
  EXPECT_EQ(lines, 0);
}

TEST_F(LogJsonTest, SlotsAndFilesAreResolved) {
  std::vector<CLogExporter::tTarget> targets = CLogExporter::Resolve({"1", "/QV/other.log"});
  ASSERT_EQ(targets.size(), 2u);
  EXPECT_EQ(targets[0].path, CLogFile::GetLogFilePath(1));
  EXPECT_EQ(targets[0].slot, 1);
  EXPECT_EQ(targets[1].path, "/QV/other.log");
  EXPECT_EQ(targets[1].slot, -1);
}
