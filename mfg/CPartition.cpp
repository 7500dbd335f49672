#include <vireline/CMfgData.h>

#include <cerrno>
#include <cstdio>

#include "platform/DeviceStream.h"
#include "platform/Env.h"

CPartition::CPartition(const char* path) : mSize(kMfgRecordSize), mPath(path != nullptr ? path : "") {}

int CPartition::ReadAll(unsigned char* buffer) {
  if (buffer == nullptr) return kMfgReadFailed;
  vireline::DeviceStream stream(mPath.c_str(), "rb");
  if (!stream.ok()) return kMfgReadFailed;
  // A partition file shorter than the record is a failed read, like a short MTD read.
  bool complete = std::fread(buffer, 1, mSize, stream.get()) == mSize;
  bool closed = stream.Close().ok();
  return complete && closed ? kMfgSuccess : kMfgReadFailed;
}

int CPartition::WriteAll(const unsigned char* buffer) {
  if (buffer == nullptr) return kMfgWriteFailed;
  // Read-write rather than write-only: on a plain file standing in for a
  // partition, "w" would truncate it, and a failed erase would then leave a
  // copy too short to read back instead of the old one.
  vireline::DeviceStream stream(mPath.c_str(), "r+b");
  if (!stream.ok()) return kMfgWriteFailed;
  vireline::Result erased = vireline::Env::Current()->EraseFlash(stream.get(), 0, mSize);
  if (!erased.ok()) {
    stream.Close();
    errno = erased.error();
    std::perror("CPartition::WriteAll erase");
    return kMfgEraseFailed;
  }
  // An unbuffered stream can report a failed write only through its error flag.
  bool complete = std::fwrite(buffer, 1, mSize, stream.get()) == mSize && !std::ferror(stream.get());
  bool closed = stream.Close().ok();
  return complete && closed ? kMfgSuccess : kMfgWriteFailed;
}
