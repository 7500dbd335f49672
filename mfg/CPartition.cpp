#include <vireline/CMfgData.h>

#include <memory>

#include "platform/Env.h"
#include "platform/StreamCalls.h"

CPartition::CPartition(const char* path) : mSize(kMfgRecordSize), mPath(path != nullptr ? path : "") {}

int CPartition::ReadAll(unsigned char* buffer) {
  if (buffer == nullptr) return kMfgReadFailed;
  std::unique_ptr<vireline::SequentialFile> file;
  if (!vireline::Env::Current()->NewSequentialFile(mPath, &file).ok()) return kMfgReadFailed;
  // A partition file shorter than the record is a failed read, like a short MTD read.
  size_t got = 0;
  bool complete = vireline::ReadFully(file.get(), mSize, reinterpret_cast<char*>(buffer), &got).ok() && got == mSize;
  bool closed = file->Close().ok();
  return complete && closed ? kMfgSuccess : kMfgReadFailed;
}

int CPartition::WriteAll(const unsigned char* buffer) {
  if (buffer == nullptr) return kMfgWriteFailed;
  // Written in place rather than created afresh: on a plain file standing in
  // for a partition, truncating would leave, after a failed erase, a copy too
  // short to read back instead of the old one.
  std::unique_ptr<vireline::RandomRWFile> file;
  if (!vireline::Env::Current()->NewRandomRWFile(mPath, &file).ok()) return kMfgWriteFailed;
  vireline::Result erased = file->Erase(0, mSize);
  if (!erased.ok()) {
    file->Close();
    vireline::PrintError("CPartition::WriteAll erase", erased);
    return kMfgEraseFailed;
  }
  bool complete = file->Write(0, buffer, mSize).ok();
  bool closed = file->Close().ok();
  return complete && closed ? kMfgSuccess : kMfgWriteFailed;
}
