#include "platform/FaultInjectionFiles.h"

#include <cerrno>

namespace vireline {
namespace {

// Closes `inner` once through the kClose check: the injected failure wins,
// but the file is closed all the same.
template <typename File>
Result CloseChecked(FaultInjectionEnv* env, File* inner, bool* closed) {
  if (*closed) return Result::Error(EBADF);
  *closed = true;
  Result injected = env->Check(FaultInjectionEnv::kClose);
  Result result = inner->Close();
  return injected.ok() ? result : injected;
}

class FaultSequentialFile : public SequentialFile {
 public:
  FaultSequentialFile(FaultInjectionEnv* env, std::unique_ptr<SequentialFile> inner)
      : mEnv(env), mInner(std::move(inner)) {}
  ~FaultSequentialFile() override { Close(); }

  Result Close() override { return CloseChecked(mEnv, mInner.get(), &mClosed); }

  Result Read(size_t n, char* scratch, size_t* got) override {
    *got = 0;
    if (n == 0) return Result::Ok();
    Result result = mEnv->Check(FaultInjectionEnv::kRead);
    return result.ok() ? mInner->Read(1, scratch, got) : result;
  }

 private:
  FaultInjectionEnv* mEnv;
  std::unique_ptr<SequentialFile> mInner;
  bool mClosed = false;
};

class FaultWritableFile : public WritableFile {
 public:
  FaultWritableFile(FaultInjectionEnv* env, std::unique_ptr<WritableFile> inner)
      : mEnv(env), mInner(std::move(inner)) {}
  ~FaultWritableFile() override { Close(); }

  Result Append(const void* data, size_t size) override {
    const char* bytes = static_cast<const char*>(data);
    for (size_t i = 0; i < size; ++i) {
      Result result = mEnv->Check(FaultInjectionEnv::kWrite);
      if (result.ok()) result = mInner->Append(bytes + i, 1);
      if (!result.ok()) return result;
    }
    return Result::Ok();
  }

  Result Flush() override { return mInner->Flush(); }

  Result Sync() override {
    Result result = mEnv->Check(FaultInjectionEnv::kSync);
    return result.ok() ? mInner->Sync() : result;
  }

  Result Close() override { return CloseChecked(mEnv, mInner.get(), &mClosed); }

 private:
  FaultInjectionEnv* mEnv;
  std::unique_ptr<WritableFile> mInner;
  bool mClosed = false;
};

class FaultRandomRWFile : public RandomRWFile {
 public:
  FaultRandomRWFile(FaultInjectionEnv* env, std::unique_ptr<RandomRWFile> inner)
      : mEnv(env), mInner(std::move(inner)) {}
  ~FaultRandomRWFile() override { Close(); }

  Result Size(uint64_t* size) override { return mInner->Size(size); }

  Result Read(uint64_t offset, size_t n, char* scratch, size_t* got) override {
    *got = 0;
    if (n == 0) return Result::Ok();
    Result result = mEnv->Check(FaultInjectionEnv::kRead);
    return result.ok() ? mInner->Read(offset, 1, scratch, got) : result;
  }

  Result Write(uint64_t offset, const void* data, size_t size) override {
    const char* bytes = static_cast<const char*>(data);
    for (size_t i = 0; i < size; ++i) {
      Result result = mEnv->Check(FaultInjectionEnv::kWrite);
      if (result.ok()) result = mInner->Write(offset + i, bytes + i, 1);
      if (!result.ok()) return result;
    }
    return Result::Ok();
  }

  Result AppendAtEnd(const void* data, size_t size) override {
    Result result = mEnv->Check(FaultInjectionEnv::kWrite);
    return result.ok() ? mInner->AppendAtEnd(data, size) : result;
  }

  Result Erase(uint32_t offset, uint32_t length) override {
    Result result = mEnv->Check(FaultInjectionEnv::kErase);
    return result.ok() ? mInner->Erase(offset, length) : result;
  }

  Result Sync() override {
    Result result = mEnv->Check(FaultInjectionEnv::kSync);
    return result.ok() ? mInner->Sync() : result;
  }

  Result Close() override { return CloseChecked(mEnv, mInner.get(), &mClosed); }

 private:
  FaultInjectionEnv* mEnv;
  std::unique_ptr<RandomRWFile> mInner;
  bool mClosed = false;
};

}  // namespace

std::unique_ptr<SequentialFile> NewFaultSequentialFile(FaultInjectionEnv* env, std::unique_ptr<SequentialFile> inner) {
  return std::unique_ptr<SequentialFile>(new FaultSequentialFile(env, std::move(inner)));
}

std::unique_ptr<WritableFile> NewFaultWritableFile(FaultInjectionEnv* env, std::unique_ptr<WritableFile> inner) {
  return std::unique_ptr<WritableFile>(new FaultWritableFile(env, std::move(inner)));
}

std::unique_ptr<RandomRWFile> NewFaultRandomRWFile(FaultInjectionEnv* env, std::unique_ptr<RandomRWFile> inner) {
  return std::unique_ptr<RandomRWFile>(new FaultRandomRWFile(env, std::move(inner)));
}

}  // namespace vireline
