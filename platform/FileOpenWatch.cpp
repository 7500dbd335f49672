#include <vireline/FileOpenWatch.h>

#include <utility>

#include "platform/Env.h"
#include "platform/ScopedEnv.h"

namespace vireline {

// Announces every stream opened, then opens it as the environment below would.
class WatchingEnv : public EnvWrapper {
 public:
  WatchingEnv(Env* target, std::function<void()> onOpen) : EnvWrapper(target), mOnOpen(std::move(onOpen)) {}

  Result OpenStream(const std::string& path, const char* mode, FILE** stream) override {
    mOnOpen();
    return EnvWrapper::OpenStream(path, mode, stream);
  }

 private:
  std::function<void()> mOnOpen;
};

FileOpenWatch::FileOpenWatch(std::function<void()> onOpen)
    : mEnv(new WatchingEnv(Env::Current(), std::move(onOpen))), mInstalled(new ScopedEnv(mEnv.get())) {}

FileOpenWatch::~FileOpenWatch() = default;

}  // namespace vireline
