// Play-log records on the device's processor: `long` is 32 bits there, and a
// 4-byte field inside a record usually starts at an address that is not a
// multiple of 4, where a word load raises a bus error. Fields are therefore
// read byte by byte, and the bytes are little-endian on every host.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>

#include <vireline/CLogHeader.h>
#include <vireline/CTimeSync.h>
#include <vireline/LogEvents.h>

#include "tests/logging/LogTest.h"

using LogData::Vireline::CActivityExit;
using LogData::Vireline::CCorrectAnswerTimed;

class LogRecordLayoutTest : public LogTest {};

TEST_F(LogRecordLayoutTest, GetIntFieldReadsAFieldAtAnOddOffset) {
  CCorrectAnswerTimed record(1ul, "ab", "c", 0x89ABCDEFul);
  CLogDataPack* pack = record.GetPack();
  ASSERT_EQ(pack->GetField(4) - pack->GetField(0), 15);  // 6 + 4 + "ab" + "c"
  EXPECT_EQ(Hex(record).substr(15 * 3), "ef cd ab 89");
  EXPECT_EQ(record.GetIntField(4), static_cast<long>(static_cast<int32_t>(0x89ABCDEF)));
}

TEST_F(LogRecordLayoutTest, GetIntFieldSignExtendsTheExtremesWhateverTheWidthOfLong) {
  for (long value : {static_cast<long>(INT32_MIN), static_cast<long>(INT32_MAX), -1l, 0l, 1l}) {
    CActivityExit record(value, 0);
    EXPECT_EQ(record.GetIntField(1), value);
  }
}

TEST_F(LogRecordLayoutTest, TheClockRecordIsElevenBytesWithTheClockAtOffsetSix) {
  CTimeSync sync(0xF1E2D3C4ul, CTimeSync::kClockReset);
  CLogDataPack* pack = sync.GetPack();
  ASSERT_EQ(pack->GetTotalSize(), 11u);
  EXPECT_EQ(pack->GetField(1) - pack->GetField(0), 6);
  EXPECT_EQ(pack->GetField(2) - pack->GetField(0), 10);
  EXPECT_EQ(Hex(sync), "01 02 03 04 01 05 c4 d3 e2 f1 02");
  EXPECT_EQ(sync.GetIntField(1), static_cast<long>(static_cast<int32_t>(0xF1E2D3C4)));
}

TEST_F(LogRecordLayoutTest, TheFileHeaderIsExactly104LittleEndianBytes) {
  CLogHeader header;
  header.SetPlatform(0x0B0A);
  header.SetDeviceClockVal(0xFFFFFFFFul);
  const unsigned char* bytes = header.GetBytes();
  EXPECT_EQ(Hex(bytes + 40, 8), "01 00 38 00 0a 0b 00 00");
  EXPECT_EQ(Hex(bytes + 92, 4), "ff ff ff ff");
  EXPECT_EQ(header.GetDeviceClockVal(), 0xFFFFFFFFul);
}
