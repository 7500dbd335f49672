// The log file manager's start-up work: file headers and the records that
// open every start of the device.
#include <vireline/CLogFile.h>

#include <ctime>
#include <string>

#include <vireline/BaseUtils.h>
#include <vireline/CLogHeader.h>
#include <vireline/CMetaInfo.h>
#include <vireline/CSystemData.h>
#include <vireline/CTimeSync.h>
#include <vireline/LogEvents.h>

#include "logging/LogDebug.h"
#include "logging/LogFilePreparation.h"
#include "platform/Env.h"
#include "platform/StreamCalls.h"

namespace {

// The platform code the header carries for each platform type; 0 (which no
// reader accepts) for a device of unknown type.
unsigned short PlatformCode(BaseUtils::tPlatformType type) {
  switch (type) {
    case BaseUtils::kPlatformZanto:
      return 4;
    case BaseUtils::kPlatformTamsel:
    case BaseUtils::kPlatformMira:
      return 10;
    case BaseUtils::kPlatformOskava:
    case BaseUtils::kPlatformTarvessa:
      return 11;
    case BaseUtils::kPlatformUnknown:
      break;
  }
  return 0;
}

// The folder below the base path that holds the device firmware's metadata.
const char* FirmwareFolder(BaseUtils::tPlatformType type) {
  switch (type) {
    case BaseUtils::kPlatformZanto:
      return "YNU/";
    case BaseUtils::kPlatformTamsel:
      return "K9V/";
    case BaseUtils::kPlatformOskava:
    case BaseUtils::kPlatformTarvessa:
      return "MQDX/";
    case BaseUtils::kPlatformMira:
      return "MIRA/";
    case BaseUtils::kPlatformUnknown:
      break;
  }
  return "";
}

// Reset code 2 when the local time is within three minutes of the clock's
// power-on default, 1 January 2008 01:00, so the clock value cannot be trusted.
CTimeSync::tResetCode ResetCode(int64_t now) {
  std::time_t seconds = static_cast<std::time_t>(now);
  std::tm local{};
  if (localtime_r(&seconds, &local) == nullptr) return CTimeSync::kClockValid;
  bool powerOnDefault = local.tm_year == 108 && local.tm_yday == 0 && local.tm_hour == 1 && local.tm_min <= 2;
  return powerOnDefault ? CTimeSync::kClockReset : CTimeSync::kClockValid;
}

// The firmware identity record, or null when the firmware's metadata is missing or invalid.
CLogData* FirmwareDebugInfo() {
  BaseUtils::tPlatformType type = BaseUtils::Instance()->GetPlatformType();
  LTM::CMetaInfo meta(CSystemData::Instance()->GetBasePath() + FirmwareFolder(type));
  if (!meta.IsValid()) return nullptr;
  CString text = "Product Id = " + std::to_string(meta.GetProductId()) + "; Part Number = " +
                 meta.GetPartNumber() + "; Pkg Version = " + meta.GetPackageVersion();
  return new LogData::Vireline::CDebugInfo(0, text.c_str());
}

}  // namespace

void CLogFile::InitLogFile(FILE* file, tPlayerID slot) {
  if (file != nullptr) vireline::PrepareLogFile(vireline::NewStreamFile(file).get(), slot);
}

namespace {

// The size of `file`; 0 when it cannot be measured.
unsigned long SizeOf(vireline::RandomRWFile* file) {
  uint64_t size = 0;
  return file->Size(&size).ok() ? static_cast<unsigned long>(size) : 0;
}

}  // namespace

unsigned long vireline::PrepareLogFile(RandomRWFile* file, tPlayerID slot) {
  if (file == nullptr) return 0;
  unsigned long size = SizeOf(file);
  bool headerWritten = size < static_cast<unsigned long>(CLogHeader::kSize);
  if (headerWritten) {
    BaseUtils* base = BaseUtils::Instance();
    BaseUtils::tPlatformType type = base->GetPlatformType();
    CString serial = type == BaseUtils::kPlatformZanto ? base->GetZantoSerialNumber() : base->GetSerialNumber();
    CLogHeader header;
    header.SetPlatform(PlatformCode(type));
    header.SetDeviceSerialNum(serial.c_str());
    header.SetLogNum(static_cast<unsigned char>(slot));
    file->Write(0, header.GetBytes(), CLogHeader::kSize);
  }
  unsigned char bytes[CLogHeader::kSize];
  size_t read = 0;
  vireline::ReadFullyAt(file, 0, sizeof bytes, reinterpret_cast<char*>(bytes), &read);
  if (!CLogHeader(bytes, static_cast<int>(read)).IsValid()) {
    vireline::LogDebug("Fatal Logging Error. Log file header is invalid. Logging will halt.\n");
  }
  // Only a written header can have changed the size measured above.
  return headerWritten ? SizeOf(file) : size;
}

void CLogFile::LogInitialLogData() {
  int64_t now = vireline::Env::Current()->WallClockSeconds();
  CTimeSync sync(static_cast<unsigned long>(now), ResetCode(now));
  CLogData* debugInfo = FirmwareDebugInfo();
  for (tPlayerID slot = 0; slot < kSlotCount; ++slot) {
    SetCurrentProfile(slot);
    Append(sync);
    if (debugInfo != nullptr) Append(*debugInfo);
  }
  delete debugInfo;
  mCurrentProfile = kLoggingProfileNotSet;
}
