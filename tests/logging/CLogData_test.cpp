// One record: its header, short and long length forms, field access and copies.
#include <vireline/CLogData.h>

#include <gtest/gtest.h>

#include <string>

#include <vireline/CTimeSync.h>
#include <vireline/LogEvents.h>

#include "tests/logging/LogTest.h"

using LogData::Vireline::CCriticalError;
using LogData::Vireline::CGameStart;
using LogData::Vireline::CTitleStart;

class CLogDataTest : public LogTest {};

TEST_F(CLogDataTest, ANewRecordIsEmpty) {
  CLogData record;
  EXPECT_EQ(record.GetPack(), nullptr);
  EXPECT_EQ(record.GetTimeStamp(), 0u);
  EXPECT_EQ(record.GetType(), 0);
  EXPECT_EQ(record.GetPayloadLength(), 0u);
  EXPECT_EQ(record.GetIntField(0), 0);
  EXPECT_EQ(record.GetStringField(0), nullptr);
}

TEST_F(CLogDataTest, SetHeaderWithoutFieldsKeepsOnlyTheValues) {
  CLogData record;
  record.SetHeader(9, 3);
  EXPECT_EQ(record.GetTimeStamp(), 0x04030201u);
  EXPECT_EQ(record.GetType(), 9);
  EXPECT_EQ(record.GetPayloadLength(), 3u);
  EXPECT_EQ(record.GetPack(), nullptr);
}

TEST_F(CLogDataTest, TheTimeStampIsTheElapsedMillisecondsWhenTheHeaderIsSet) {
  SetElapsedMSecs(1000);
  CGameStart first("a");
  SetElapsedMSecs(0xFFFFFFFE);
  CGameStart second("a");
  EXPECT_EQ(first.GetTimeStamp(), 1000u);
  EXPECT_EQ(Hex(first).substr(0, 11), "e8 03 00 00");
  EXPECT_EQ(Hex(second).substr(0, 11), "fe ff ff ff");
}

TEST_F(CLogDataTest, APayloadOf254BytesKeepsTheShortHeader) {
  CCriticalError record(std::string(253, 'x').c_str());
  EXPECT_EQ(record.GetPack()->GetTotalSize(), 6u + 254u);
  EXPECT_EQ(Hex(record).substr(0, 17), "01 02 03 04 1a fe");
}

TEST_F(CLogDataTest, APayloadOf255BytesGetsTheLongHeader) {
  CCriticalError record(std::string(254, 'x').c_str());
  EXPECT_EQ(record.GetPack()->GetTotalSize(), 10u + 255u);
  EXPECT_EQ(Hex(record).substr(0, 29), "01 02 03 04 1a ff ff 00 00 00");
  EXPECT_EQ(record.GetPayloadLength(), 255u);
  EXPECT_EQ(record.GetStringField(1), std::string(254, 'x'));
}

TEST_F(CLogDataTest, APayloadOf300BytesHasATenByteHeaderWithTheLengthInBytesSixToNine) {
  CCriticalError record(std::string(299, 'y').c_str());
  std::string bytes = Bytes(record);
  ASSERT_EQ(bytes.size(), 310u);
  EXPECT_EQ(Hex(bytes.substr(0, 10)), "01 02 03 04 1a ff 2c 01 00 00");
  EXPECT_EQ(bytes.substr(10), std::string(299, 'y') + '\0');
}

TEST_F(CLogDataTest, GetIntFieldReadsFourLittleEndianBytesAsASignedNumber) {
  CTitleStart record(0xFFFFFFFEul, "t", "v", 7);
  EXPECT_EQ(record.GetIntField(1), -2);
  CTimeSync sync(0x12345678ul, CTimeSync::kClockValid);
  EXPECT_EQ(sync.GetIntField(1), 0x12345678);
}

TEST_F(CLogDataTest, GetIntFieldOfTheLastShortFieldReadsNothingPastTheRecord) {
  CTimeSync sync(1, CTimeSync::kClockReset);
  EXPECT_EQ(sync.GetIntField(2), 2);  // one byte left in the record
  EXPECT_EQ(sync.GetIntField(3), 0);
}

TEST_F(CLogDataTest, GetStringFieldPointsAtTheStoredText) {
  CTitleStart record(1, "Zoo", "1.2", 0);
  EXPECT_STREQ(record.GetStringField(2), "Zoo");
  EXPECT_STREQ(record.GetStringField(3), "1.2");
  EXPECT_EQ(record.GetStringField(5), nullptr);
}

TEST_F(CLogDataTest, CopiesOwnTheirOwnFields) {
  CLogData* original = new CGameStart("abc");
  CLogData copy(*original);
  CLogData assigned;
  assigned = *original;
  std::string bytes = Bytes(*original);
  delete original;
  EXPECT_EQ(Bytes(copy), bytes);
  EXPECT_EQ(Bytes(assigned), bytes);
  EXPECT_EQ(assigned.GetType(), 68);
  CLogData& same = assigned;
  assigned = same;
  EXPECT_EQ(Bytes(assigned), bytes);
}

TEST_F(CLogDataTest, ClearDropsTheFieldsAndZeroesTheHeader) {
  CGameStart record("abc");
  record.Clear();
  EXPECT_EQ(record.GetPack(), nullptr);
  EXPECT_EQ(record.GetTimeStamp(), 0u);
  EXPECT_EQ(record.GetType(), 0);
  EXPECT_EQ(record.GetPayloadLength(), 0u);
}

TEST_F(CLogDataTest, AssigningAnEmptyRecordDropsTheFields) {
  CGameStart event("abc");
  CLogData& record = event;
  CLogData empty;
  record = empty;
  EXPECT_EQ(record.GetPack(), nullptr);
}

TEST_F(CLogDataTest, TheClockRecordIsTypeOneWithAFourByteClockAndAOneByteCode) {
  CTimeSync sync(0x5F5E1000ul, CTimeSync::kClockReset);
  EXPECT_EQ(Hex(sync), "01 02 03 04 01 05 00 10 5e 5f 02");
  EXPECT_EQ(sync.GetPack()->GetFieldCount(), 3u);
}

TEST_F(CLogDataTest, ACopyOfAClearedRecordHasNoFields) {
  CGameStart record("abc");
  record.Clear();
  CLogData copy(record);
  EXPECT_EQ(copy.GetPack(), nullptr);
  EXPECT_EQ(copy.GetType(), 0);
  EXPECT_EQ(copy.GetPayloadLength(), 0u);
}

namespace {

// A record type no catalogue entry describes, built the way event classes are.
class UncataloguedRecord : public CLogData {
 public:
  UncataloguedRecord() { BuildEvent(250, {7ul, "ignored"}); }
  void KeepPack() { AdoptPack(GetPack()); }
};

}  // namespace

TEST_F(CLogDataTest, AnUncataloguedTypeGetsAHeaderAndNoFields) {
  UncataloguedRecord record;
  ASSERT_NE(record.GetPack(), nullptr);
  EXPECT_EQ(record.GetPack()->GetFieldCount(), 1u);
  CLogDataPack* pack = record.GetPack();
  record.KeepPack();  // adopting the pack it holds changes nothing
  EXPECT_EQ(record.GetPack(), pack);
  EXPECT_EQ(record.GetStringField(1), nullptr);
}
