#include <vireline/FileOpenWatch.h>

#include <utility>

#include "platform/Env.h"
#include "platform/ScopedEnv.h"

namespace vireline {

// Announces every file opened, then opens it as the environment below would.
class WatchingEnv : public EnvWrapper {
 public:
  WatchingEnv(Env* target, std::function<void()> onOpen) : EnvWrapper(target), mOnOpen(std::move(onOpen)) {}

  Result NewSequentialFile(const std::string& path, std::unique_ptr<SequentialFile>* file) override {
    mOnOpen();
    return EnvWrapper::NewSequentialFile(path, file);
  }
  Result NewWritableFile(const std::string& path, std::unique_ptr<WritableFile>* file) override {
    mOnOpen();
    return EnvWrapper::NewWritableFile(path, file);
  }
  Result NewExclusiveFile(const std::string& path, std::unique_ptr<WritableFile>* file) override {
    mOnOpen();
    return EnvWrapper::NewExclusiveFile(path, file);
  }
  Result NewRandomRWFile(const std::string& path, std::unique_ptr<RandomRWFile>* file) override {
    mOnOpen();
    return EnvWrapper::NewRandomRWFile(path, file);
  }
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
