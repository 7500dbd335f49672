#include <vireline/DeviceFiles.h>

#include <memory>

#include "platform/AtomicFile.h"
#include "platform/Env.h"

namespace vireline {

tDeviceFileRead ReadDeviceFile(const std::string& path, size_t limit, std::string* bytes) {
  bytes->clear();
  std::unique_ptr<SequentialFile> file;
  if (!Env::Current()->NewSequentialFile(path, &file).ok()) return tDeviceFileRead::kNotOpened;
  return ReadToString(file.get(), limit, bytes).ok() ? tDeviceFileRead::kRead : tDeviceFileRead::kNotRead;
}

bool ReplaceDeviceFile(const std::string& path, const std::string& bytes) {
  std::unique_ptr<WritableFile> out;
  if (!NewAtomicFile(path, false, &out).ok()) return false;
  bool written = out->Append(bytes.data(), bytes.size()).ok();
  return out->Close().ok() && written;
}

}  // namespace vireline
