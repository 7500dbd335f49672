#include <vireline/Dataset.h>

#include "platform/FileDescriptor.h"

EFdWrapper::EFdWrapper(int fd) : mFd(fd) {}

EFdWrapper::~EFdWrapper() { Close(); }

void EFdWrapper::Close() {
  if (mFd == -1) return;
  vireline::CloseDescriptor(mFd);
  mFd = -1;
}
