// The file helpers of the log file manager.
#include <vireline/CLogFile.h>

#include "platform/Env.h"

unsigned long FileSize(FILE* file) {
  if (file == nullptr) return 0;
  fpos_t position;
  if (std::fgetpos(file, &position) != 0) return 0;
  unsigned long size = 0;
  if (fseeko(file, 0, SEEK_END) == 0) {
    off_t end = ftello(file);
    if (end > 0) size = static_cast<unsigned long>(end);
  }
  std::fsetpos(file, &position);
  return size;
}

void FileCreate(char const* path) {
  if (path == nullptr) return;
  FILE* stream = nullptr;
  if (vireline::Env::Current()->OpenStream(path, "w", &stream).ok() && stream != nullptr) {
    vireline::Env::Current()->CloseStream(stream);
  }
}
