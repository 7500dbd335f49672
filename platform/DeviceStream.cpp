#include "platform/DeviceStream.h"

#include "platform/Env.h"

namespace vireline {

DeviceStream::DeviceStream(const char* path, const char* mode)
    : mStream(nullptr), mOpenResult(Env::Current()->OpenStream(path, mode, &mStream)) {
  if (!mOpenResult.ok()) mStream = nullptr;
}

DeviceStream::~DeviceStream() { Close(); }

Result DeviceStream::Close() {
  if (mStream == nullptr) return Result::Ok();
  FILE* stream = mStream;
  mStream = nullptr;
  return Env::Current()->CloseStream(stream);
}

}  // namespace vireline
