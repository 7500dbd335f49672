// The play-log reader over a fuzzed file, and CLogHeader over fuzzed bytes.
#include <algorithm>
#include <string>
#include <vector>

#include <vireline/CLogHeader.h>
#include <vireline/CLogReader.h>

#include "fuzz/FuzzSupport.h"

namespace vireline {
namespace fuzz {

namespace {

const char kFile[] = "/QV/Bulk/Data/Uploads/0/profile.log";

void ReadHeader(const CLogHeader& header) {
  (void)header.GetPlatform();
  const char* serial = header.GetDeviceSerialNum();
  if (serial) (void)std::string(serial);
  (void)header.GetLogNum();
  (void)header.GetDeviceClockVal();
  (void)header.GetTimeRcvd();
  (void)header.GetFlags();
  (void)header.IsValid();
}

}  // namespace

void FuzzPlayLog(const uint8_t* data, size_t size) {
  std::vector<unsigned char> bytes(data, data + size);
  int length = static_cast<int>(std::min<size_t>(bytes.size(), 1 << 20));
  CLogHeader* header = new CLogHeader(bytes.data(), length);
  ReadHeader(*header);
  delete header;

  WriteDeviceFile(kFile, std::string(reinterpret_cast<const char*>(data), size));
  CLogReader reader(kFile);
  (void)reader.GetStatus();
  ReadHeader(reader.GetHeader());
  (void)reader.GetPlatformCode();
  (void)reader.GetFileSize();
  tLogRecord record;
  while (reader.Next(&record)) {
    (void)record.ClassName();
    (void)record.Size();
    for (const tLogFieldValue& field : record.fields) (void)field.text.size();
  }
  if (reader.IsTorn()) {
    (void)reader.GetTornOffset();
    (void)reader.GetTornBytesPresent();
  }
}

}  // namespace fuzz
}  // namespace vireline
