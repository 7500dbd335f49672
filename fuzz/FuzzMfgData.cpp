// The manufacturing record: Init over a fuzzed "/proc/mtd" and two fuzzed
// partitions, then every read of the record it loaded.
#include <string>
#include <vector>

#include <vireline/CMfgData.h>

#include "fuzz/FuzzSupport.h"

namespace vireline {
namespace fuzz {

namespace {

void ReadFields(CMfgData& mfg) {
  int values[10] = {};
  int a = 0, b = 0, c = 0, d = 0, e = 0;
  bool valid = false;
  char text[40] = {};
  unsigned char bytes[20] = {};
  unsigned short groups[8] = {};
  long longs[10] = {};
  ts_pressure_data pressure;
  (void)mfg.GetTSCalData(values);
  (void)mfg.GetBLCalData(a);
  (void)mfg.GetADCCalData(a, b);
  (void)mfg.GetAudioGain(a);
  (void)mfg.GetSerialNumberRaw(text);
  (void)mfg.GetSNValidFlag(valid);
  (void)mfg.GetSirasBarcode(text);
  (void)mfg.GetLocale(text);
  (void)mfg.GetTSPressure(&pressure);
  (void)mfg.GetSoftBoardId(a);
  (void)mfg.GetAclBias(values);
  (void)mfg.GetMfgVersion(a);
  (void)mfg.GetBL2CalData(a, b, c, d, e);
  (void)mfg.GetMacAddress(bytes);
  (void)mfg.GetIPv6Address(groups);
  (void)mfg.GetSku(text);
  (void)mfg.GetAccelerometerCalData(longs);
  (void)mfg.GetSerialNumber(text);
}

void ReadPartitions(CMfgData& mfg) {
  std::vector<unsigned char> sector(kMfgRecordSize);
  for (int index = 0; index < 2; ++index) {
    (void)mfg.GetNORMfgSectorData(index, sector.data());
    (void)mfg.ValidateNORMfgSector(index);
  }
  int first = 0, second = 0;
  (void)mfg.GetNorChecksumResults(first, second);
  (void)mfg.ValidateCheckSum();
  std::vector<unsigned char> record(kMfgRecordSize + 16);
  (void)mfg.Read(record.data(), 0, kMfgRecordSize);
  (void)mfg.Read(record.data(), kMfgRecordSize - 8, 16);
}

}  // namespace

void FuzzMfgData(const uint8_t* data, size_t size) {
  std::vector<std::string> files = SplitInput(data, size, 3);
  ClearDeviceRoot();
  WriteDeviceFile("/proc/mtd", files[0]);
  // The partitions go where the fuzzed table says they are; a 10-byte buffer
  // is what callers of GetNorPartitionFilename provide.
  for (int index = 0; index < 2; ++index) {
    char name[10];
    if (CMfgData::GetNorPartitionFilename(name, index) == 0) WriteDeviceFile(name, files[1 + index]);
  }
  CMfgData mfg;
  if (mfg.Init() == 0) {
    ReadFields(mfg);
    ReadPartitions(mfg);
  }
  mfg.Exit();
}

}  // namespace fuzz
}  // namespace vireline
