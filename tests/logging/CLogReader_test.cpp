// Reading play logs back: the header check, every catalogue record decoded,
// files cut inside their last record, and bytes that are no log at all.
#include <vireline/CLogReader.h>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <vireline/CLogHeader.h>
#include <vireline/CTimeSync.h>
#include <vireline/LogEvents.h>

#include "InspectorRunner.h"
#include "tests/logging/LogTest.h"

using namespace LogData::Vireline;

namespace {

const char kPath[] = "/QV/Bulk/Data/Local/Uploads/0/profile.log";

std::string HeaderBytes(unsigned short platform) {
  CLogHeader header;
  header.SetPlatform(platform);
  header.SetDeviceSerialNum("SERIAL-7");
  header.SetLogNum(1);
  return std::string(reinterpret_cast<const char*>(header.GetBytes()), CLogHeader::kSize);
}

// One record of every catalogue type, in catalogue order.
std::vector<std::unique_ptr<CLogData>> EveryRecord() {
  std::vector<std::unique_ptr<CLogData>> records;
  records.emplace_back(new CTimeSync(1700000000ul, CTimeSync::kClockValid));
  records.emplace_back(new CNewUser(7ul));
  records.emplace_back(new CUserLogIn());
  records.emplace_back(new CUserLogOut(1));
  records.emplace_back(new CNavAreaStart("map"));
  records.emplace_back(new CNavAreaExit());
  records.emplace_back(new CHelpRequest("help"));
  records.emplace_back(new CTitleStart(9ul, "Zoo", "1.0", 2));
  records.emplace_back(new CTitleExit(0));
  records.emplace_back(new CActivityStart("Zoo", "Count", "1"));
  records.emplace_back(new CActivityExit(-40l, 1));
  records.emplace_back(new CActivityPause());
  records.emplace_back(new CActivityUnpause());
  records.emplace_back(new CLevelUp("2"));
  records.emplace_back(new CLevelDown("1"));
  records.emplace_back(new CRewardEarned(3, 4));
  records.emplace_back(new CHintRequest(11ul, "hint"));
  records.emplace_back(new CCorrectAnswer(12ul, "2+2", "4"));
  records.emplace_back(new CCorrectAnswerTimed(13ul, "3+3", "6", 70000ul));
  records.emplace_back(new CWrongAnswer(14ul, "4+4", "9"));
  records.emplace_back(new CWrongAnswerTimed(15ul, "5+5", "11", 900));
  records.emplace_back(new CSemiCorrectAnswer(16ul, "spell", "speel"));
  records.emplace_back(new CSemiCorrectAnswerTimed(17ul, "spell", "spel", 65535));
  records.emplace_back(new CLowBatteryWarning());
  records.emplace_back(new CDebugInfo(0, "Product Id = 1"));
  records.emplace_back(new CCriticalError("boom"));
  records.emplace_back(new CAchievementEarned(5));
  records.emplace_back(new CTutorialStart("intro"));
  records.emplace_back(new CTutorialExit());
  records.emplace_back(new CCyoStart("set", "act"));
  records.emplace_back(new CCyoExit("set", "act"));
  records.emplace_back(new CGameStart("Maze"));
  records.emplace_back(new CGameExit());
  records.emplace_back(new CGameAreaStart("cave"));
  records.emplace_back(new CGameAreaExit());
  return records;
}

}  // namespace

class CLogReaderTest : public LogTest {
 protected:
  std::vector<tLogRecord> ReadAll(CLogReader& reader) {
    std::vector<tLogRecord> records;
    tLogRecord record;
    while (reader.Next(&record)) records.push_back(record);
    return records;
  }

  std::string EveryRecordFile() {
    std::string content = HeaderBytes(10);
    for (const auto& record : EveryRecord()) content += Bytes(*record);
    return content;
  }
};

TEST_F(CLogReaderTest, ReadsTheHeaderOfADeviceFile) {
  WriteFile(kPath, HeaderBytes(10));
  CLogReader reader(kPath);
  EXPECT_EQ(reader.GetStatus(), CLogReader::kHeaderValid);
  EXPECT_EQ(reader.GetHeader().GetPlatform(), 10);
  EXPECT_STREQ(reader.GetHeader().GetDeviceSerialNum(), "SERIAL-7");
  EXPECT_EQ(reader.GetHeader().GetLogNum(), 1);
  EXPECT_EQ(reader.GetFileSize(), 104u);
  tLogRecord record;
  EXPECT_FALSE(reader.Next(&record));
  EXPECT_FALSE(reader.IsTorn());
}

TEST_F(CLogReaderTest, NamesAndDecodesARecordOfEveryCatalogueType) {
  WriteFile(kPath, EveryRecordFile());
  CLogReader reader(kPath);
  std::vector<tLogRecord> records = ReadAll(reader);
  size_t count = 0;
  const tEventInfo* catalogue = GetEventCatalogue(&count);
  ASSERT_EQ(records.size(), count);
  for (size_t i = 0; i < count; ++i) {
    EXPECT_STREQ(records[i].ClassName(), catalogue[i].className);
    EXPECT_TRUE(records[i].decoded) << catalogue[i].className;
    EXPECT_EQ(records[i].fields.size(), catalogue[i].fieldCount);
    EXPECT_EQ(records[i].timeStamp, 0x04030201u);
  }
  EXPECT_FALSE(reader.IsTorn());
  EXPECT_EQ(records[0].offset, 104u);
  EXPECT_EQ(records[1].offset, 104u + records[0].Size());
}

TEST_F(CLogReaderTest, DecodesFieldsByTheirCatalogueWidths) {
  WriteFile(kPath, EveryRecordFile());
  CLogReader reader(kPath);
  std::vector<tLogRecord> records = ReadAll(reader);
  ASSERT_EQ(records.size(), 35u);
  EXPECT_EQ(records[0].fields[0].number, 1700000000);
  EXPECT_EQ(records[10].fields[0].number, -40);  // CActivityExit's signed score
  EXPECT_STREQ(records[10].fields[0].field->name, "score");
  EXPECT_EQ(records[18].fields[3].number, 70000);  // 4-byte time
  EXPECT_EQ(records[20].fields[3].number, 900);    // 2-byte time
  EXPECT_EQ(records[22].fields[3].number, 65535);
  EXPECT_EQ(records[7].fields[1].text, "Zoo");
  EXPECT_EQ(records[7].fields[3].number, 2);
  EXPECT_EQ(records[24].fields[1].text, "Product Id = 1");
}

TEST_F(CLogReaderTest, ReadsLongHeaderRecords) {
  std::string message(299, 'm');
  CCriticalError big(message.c_str());
  CGameExit after;
  WriteFile(kPath, HeaderBytes(4) + Bytes(big) + Bytes(after));
  CLogReader reader(kPath);
  std::vector<tLogRecord> records = ReadAll(reader);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_TRUE(records[0].longHeader);
  EXPECT_EQ(records[0].length, 300u);
  EXPECT_EQ(records[0].Size(), 310u);
  EXPECT_EQ(records[0].fields[0].text, message);
  EXPECT_STREQ(records[1].ClassName(), "CGameExit");
}

TEST_F(CLogReaderTest, AFileCutAtAnyByteOfItsLastRecordKeepsTheRecordsBeforeIt) {
  std::string complete = EveryRecordFile();
  CTitleStart last(5ul, "A title long enough", "2.0", 1);
  std::string lastBytes = Bytes(last);
  size_t lastStart = complete.size();
  for (size_t cut = 1; cut < lastBytes.size(); ++cut) {
    WriteFile(kPath, complete + lastBytes.substr(0, cut));
    CLogReader reader(kPath);
    std::vector<tLogRecord> records = ReadAll(reader);
    EXPECT_EQ(records.size(), 35u) << "cut after " << cut;
    EXPECT_TRUE(reader.IsTorn()) << "cut after " << cut;
    EXPECT_EQ(reader.GetTornOffset(), lastStart);
    EXPECT_EQ(reader.GetTornBytesPresent(), cut);
  }
}

TEST_F(CLogReaderTest, ALongHeaderRecordCutInsideItsLengthIsTorn) {
  CCriticalError big(std::string(400, 'z').c_str());
  std::string bytes = Bytes(big);
  for (size_t cut = 6; cut < 10; ++cut) {
    WriteFile(kPath, HeaderBytes(4) + bytes.substr(0, cut));
    CLogReader reader(kPath);
    EXPECT_TRUE(ReadAll(reader).empty());
    EXPECT_TRUE(reader.IsTorn());
    EXPECT_EQ(reader.GetTornOffset(), 104u);
  }
}

TEST_F(CLogReaderTest, AHeaderWithPlatformCodeZeroIsInvalidButItsRecordsAreRead) {
  CGameStart record("x");
  WriteFile(kPath, HeaderBytes(0) + Bytes(record));
  CLogReader reader(kPath);
  EXPECT_EQ(reader.GetStatus(), CLogReader::kHeaderInvalid);
  EXPECT_FALSE(reader.GetHeader().IsValid());
  EXPECT_EQ(reader.GetPlatformCode(), 0);
  EXPECT_EQ(ReadAll(reader).size(), 1u);
}

TEST_F(CLogReaderTest, AFileWithAnotherIdentifierIsNotALog) {
  std::string bytes = HeaderBytes(4) + Bytes(CGameExit());
  bytes[16] = 'B';  // "42b9" in upper case
  WriteFile(kPath, bytes);
  CLogReader reader(kPath);
  EXPECT_EQ(reader.GetStatus(), CLogReader::kNotALog);
  EXPECT_TRUE(ReadAll(reader).empty());
  EXPECT_FALSE(reader.IsTorn());
}

TEST_F(CLogReaderTest, AFileShorterThanAHeaderIsTooShort) {
  for (size_t size : {0, 1, 50, 103}) {
    WriteFile(kPath, HeaderBytes(4).substr(0, size));
    CLogReader reader(kPath);
    EXPECT_EQ(reader.GetStatus(), CLogReader::kTooShort) << size;
    EXPECT_TRUE(ReadAll(reader).empty());
  }
}

TEST_F(CLogReaderTest, AMissingFileCannotBeOpened) {
  CLogReader reader("/QV/nothing/here.log");
  EXPECT_EQ(reader.GetStatus(), CLogReader::kCannotOpen);
  EXPECT_TRUE(ReadAll(reader).empty());
  EXPECT_EQ(reader.GetPlatformCode(), 0);
  EXPECT_FALSE(reader.GetHeader().IsValid());
}

TEST_F(CLogReaderTest, AnUnknownTypeCodeIsSkippedByItsLength) {
  std::string unknown("\x10\x00\x00\x00\x30\x03xyz", 9);  // type 48, unassigned
  WriteFile(kPath, HeaderBytes(4) + unknown + Bytes(CGameExit()));
  CLogReader reader(kPath);
  std::vector<tLogRecord> records = ReadAll(reader);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].ClassName(), nullptr);
  EXPECT_EQ(records[0].type, 48);
  EXPECT_FALSE(records[0].decoded);
  EXPECT_EQ(std::string(records[0].payload.begin(), records[0].payload.end()), "xyz");
  EXPECT_STREQ(records[1].ClassName(), "CGameExit");
}

TEST_F(CLogReaderTest, APayloadThatDoesNotFitItsTypeIsKeptUndecoded) {
  std::string noNul("\0\0\0\0\x44\x03" "abc", 9);                 // CGameStart without its NUL
  std::string tooLong("\0\0\0\0\x45\x02" "zz", 8);                // CGameExit with a payload
  std::string shortNumber("\0\0\0\0\x02\x02" "\x01\x02", 8);     // CNewUser with 2 of 4 bytes
  WriteFile(kPath, HeaderBytes(4) + noNul + tooLong + shortNumber);
  CLogReader reader(kPath);
  std::vector<tLogRecord> records = ReadAll(reader);
  ASSERT_EQ(records.size(), 3u);
  for (const tLogRecord& record : records) EXPECT_FALSE(record.decoded) << record.ClassName();
  EXPECT_STREQ(records[0].ClassName(), "CGameStart");
  EXPECT_EQ(records[0].payload.size(), 3u);
}

TEST_F(CLogReaderTest, AHugeLengthInGarbageIsATornRecordNotAnAllocation) {
  std::string garbage("\0\0\0\0\x1a\xff\xff\xff\xff\xff" "rest", 14);
  WriteFile(kPath, HeaderBytes(4) + Bytes(CGameExit()) + garbage);
  CLogReader reader(kPath);
  EXPECT_EQ(ReadAll(reader).size(), 1u);
  EXPECT_TRUE(reader.IsTorn());
  EXPECT_EQ(reader.GetTornOffset(), 110u);
}

TEST_F(CLogReaderTest, RandomBytesAfterAHeaderNeverReadPastTheFile) {
  uint32_t state = 12345;
  for (int file = 0; file < 50; ++file) {
    std::string bytes = HeaderBytes(4);
    for (int i = 0; i < 300 + file * 7; ++i) {
      state = state * 1103515245u + 12345u;
      bytes += static_cast<char>(state >> 16);
    }
    WriteFile(kPath, bytes);
    CLogReader reader(kPath);
    uint64_t end = 104;
    for (const tLogRecord& record : ReadAll(reader)) end = record.offset + record.Size();
    EXPECT_LE(end, bytes.size());
    if (reader.IsTorn()) {
      EXPECT_EQ(reader.GetTornOffset(), end);
    } else {
      EXPECT_EQ(end, bytes.size());
    }
  }
}

TEST_F(CLogReaderTest, AFileOfManyMegabytesIsWalkedWithoutLoadingIt) {
  std::string bytes = HeaderBytes(4);
  std::string one = Bytes(CGameExit());
  bytes.reserve(104 + one.size() * 700000);
  for (int i = 0; i < 700000; ++i) bytes += one;
  WriteFile(kPath, bytes);
  CLogReader reader(kPath);
  tLogRecord record;
  size_t count = 0;
  while (reader.Next(&record)) ++count;
  EXPECT_EQ(count, 700000u);
  EXPECT_FALSE(reader.IsTorn());
}

TEST_F(CLogReaderTest, AFailingReadStopsTheWalkAsATornRecord) {
  WriteFile(kPath, EveryRecordFile());
  mEnv.FailAfter(vireline::FaultInjectionEnv::kRead, 3, EIO);
  CLogReader reader(kPath);
  std::vector<tLogRecord> records = ReadAll(reader);
  EXPECT_LT(records.size(), 35u);
  EXPECT_TRUE(reader.IsTorn() || reader.GetStatus() == CLogReader::kTooShort);
}

TEST_F(CLogReaderTest, AFailingOpenIsReportedAsCannotOpen) {
  WriteFile(kPath, EveryRecordFile());
  mEnv.FailAfter(vireline::FaultInjectionEnv::kOpen, 0, EACCES);
  CLogReader reader(kPath);
  EXPECT_EQ(reader.GetStatus(), CLogReader::kCannotOpen);
}

TEST_F(CLogReaderTest, TheSampleImageLogsReadWholeAndCutAtEveryByteOfTheirLastRecord) {
  for (int slot = 0; slot < 3; ++slot) {
    std::string sample = ExamplesDir() + "/device-image/QV/Bulk/Data/Uploads/" +
                         std::to_string(slot) + "/profile.log";
    std::ifstream in(sample, std::ios::binary);
    std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    WriteFile(kPath, content);
    CLogReader whole(kPath);
    EXPECT_EQ(whole.GetStatus(), CLogReader::kHeaderValid);
    std::vector<tLogRecord> records = ReadAll(whole);
    ASSERT_GE(records.size(), 3u) << slot;
    EXPECT_FALSE(whole.IsTorn());
    for (const tLogRecord& record : records) EXPECT_TRUE(record.decoded) << record.ClassName();
    uint64_t lastStart = records.back().offset;
    for (uint64_t cut = lastStart + 1; cut < content.size(); ++cut) {
      WriteFile(kPath, content.substr(0, cut));
      CLogReader reader(kPath);
      EXPECT_EQ(ReadAll(reader).size(), records.size() - 1) << "slot " << slot << " cut at " << cut;
      EXPECT_TRUE(reader.IsTorn());
      EXPECT_EQ(reader.GetTornOffset(), lastStart);
    }
  }
}
