// The file helpers of the log file manager.
#include <vireline/CLogFile.h>

#include <memory>

#include "platform/Env.h"
#include "platform/StreamCalls.h"

unsigned long FileSize(FILE* file) {
  if (file == nullptr) return 0;
  uint64_t size = 0;
  return vireline::NewStreamFile(file)->Size(&size).ok() ? static_cast<unsigned long>(size) : 0;
}

void FileCreate(char const* path) {
  if (path == nullptr) return;
  std::unique_ptr<vireline::WritableFile> file;
  if (vireline::Env::Current()->NewWritableFile(path, &file).ok()) file->Close();
}
