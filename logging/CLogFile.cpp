// The log file manager: the instance, the current profile and appending.
#include <vireline/CLogFile.h>

#include <vireline/BaseUtils.h>
#include <vireline/CSystemData.h>
#include <vireline/Platform.h>

#include "files/UnreadableFiles.h"
#include "logging/LogDebug.h"
#include "logging/LogFilePreparation.h"
#include <memory>

#include "platform/Env.h"

using vireline::Env;

CLogFile* CLogFile::mpInstance = nullptr;

namespace {

const char kLogFileName[] = "profile.log";

}  // namespace

CLogFile* CLogFile::Instance() {
  if (mpInstance == nullptr) {
    // The instance is published before the files are opened: an assertion
    // raised while opening them logs through this same, not yet set up, instance
    // instead of building another one.
    mpInstance = new CLogFile();
    mpInstance->OpenFiles();
  }
  return mpInstance;
}

void CLogFile::Destroy() {
  delete mpInstance;
  mpInstance = nullptr;
}

CPath CLogFile::GetLogFilePath(tPlayerID slot) {
  return CSystemData::Instance()->GetDataProfileLogPath(slot) + kLogFileName;
}

CLogFile::CLogFile() : mByteCount(0), mCurrentProfile(kLoggingProfileNotSet), mFileName(kLogFileName) {
  for (int slot = 0; slot < kSlotCount; ++slot) {
    mFiles[slot] = nullptr;
    mFolders[slot] = CSystemData::Instance()->GetDataProfileLogPath(slot);
    mPaths[slot] = (mFolders[slot] + mFileName).raw();
  }
}

CLogFile::~CLogFile() { CloseFiles(); }

void CLogFile::OpenFiles() {
  for (int slot = 0; slot < kSlotCount; ++slot) {
    // Creating truncates: a log that is there but cannot be looked at (a
    // flash read error) must keep its records, so only a missing one is made.
    BaseUtils* base = BaseUtils::Instance();
    if (!base->FileExists(mPaths[slot]) && vireline::UnreadableFiles::IsMissing(mPaths[slot].c_str())) {
      base->CreateFile(mPaths[slot]);
    }
  }
  // The files are open only here; mFiles stays null for the layout older
  // applications were built against.
  std::unique_ptr<vireline::RandomRWFile> files[kSlotCount];
  for (int slot = 0; slot < kSlotCount; ++slot) {
    if (!Env::Current()->NewRandomRWFile(mPaths[slot], &files[slot]).ok()) {
      vireline::LogDebug("Fatal Logging Error; logging will halt. Error finding the log resource %d: %s\n", slot,
                         mPaths[slot].c_str());
    }
  }
  // Each file's size is measured while it is prepared, not a second time.
  mByteCount = 0;
  for (int slot = 0; slot < kSlotCount; ++slot) {
    mByteCount += static_cast<uint32_t>(vireline::PrepareLogFile(files[slot].get(), slot));
  }
  mCurrentProfile = kLoggingProfileNotSet;
  for (auto& file : files) {
    if (file != nullptr) file->Close();
  }
}

void CLogFile::CloseFiles() {
  for (FILE*& file : mFiles) file = nullptr;  // never open outside OpenFiles
}

void CLogFile::SetCurrentProfile(tLoggingProfile profile) {
  if (profile > kLoggingProfile2) {
    vireline::LogDebug("Fatal Logging Error, current profile set to out of range value.  Logging will halt.\n");
    return;
  }
  mCurrentProfile = profile;
}

void CLogFile::SetCurrentProfile(tPlayerID player) {
  if (player >= 0 && player <= 2) {
    mCurrentProfile = static_cast<tLoggingProfile>(player);
  } else {
    mCurrentProfile = player == 3 ? kLoggingProfilePlayer3 : kLoggingProfileNotSet;
  }
}

void CLogFile::Append(CLogData& record) {
  const CLogDataPack* pack = record.GetPack();
  if (pack == nullptr || pack->GetBuffer() == nullptr || pack->GetTotalSize() == 0) return;
  if (mCurrentProfile == kLoggingProfilePlayer3 || mCurrentProfile == kLoggingProfileNotSet) return;
  // Every offered record counts, also one that is dropped, and the count never
  // goes down (nor wraps): once the cap is reached nothing more is logged.
  uint64_t count = uint64_t{mByteCount} + pack->GetTotalSize();
  mByteCount = count > 0xFFFFFFFFu ? 0xFFFFFFFFu : static_cast<uint32_t>(count);
  if (mByteCount >= kSizeCap) return;
  if (mCurrentProfile < kLoggingProfile0 || mCurrentProfile > kLoggingProfile2) {
    vireline::LogDebug("Fatal Logging Error. CurrentProfile is invalid.");
    return;
  }
  // A file that does not open, or a failed write, loses the record.
  Env::Current()->AppendToFile(mPaths[mCurrentProfile], pack->GetBuffer(), pack->GetTotalSize());
}

CLogFile& CLogFile::operator<<(CLogData& record) {
  Append(record);
  return *this;
}
