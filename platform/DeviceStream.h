// A stream on a device file opened through the platform layer, closed when it
// goes out of scope unless the owner closed it first to learn the result.
#ifndef VIRELINE_PLATFORM_DEVICESTREAM_H_
#define VIRELINE_PLATFORM_DEVICESTREAM_H_

#include <cstdio>

#include "platform/Result.h"

namespace vireline {

class DeviceStream {
 public:
  // Opens `path` with fopen mode `mode`; check ok() or result().
  DeviceStream(const char* path, const char* mode);

  // Closes the stream if it is still open, ignoring the result.
  ~DeviceStream();

  DeviceStream(const DeviceStream&) = delete;
  DeviceStream& operator=(const DeviceStream&) = delete;

  // True when the stream is open.
  bool ok() const { return mStream != nullptr; }

  // The outcome of the open.
  const Result& result() const { return mOpenResult; }

  // The open stream; null when the open failed or after Close.
  FILE* get() const { return mStream; }

  // Closes the stream now; the close's outcome (success when already closed).
  Result Close();

 private:
  FILE* mStream;
  Result mOpenResult;
};

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_DEVICESTREAM_H_
