// Makes one environment the current one for as long as it lives, so that a
// public RAII class can route the library's file operations through it.
#ifndef VIRELINE_PLATFORM_SCOPEDENV_H_
#define VIRELINE_PLATFORM_SCOPEDENV_H_

#include "platform/Env.h"

namespace vireline {

class ScopedEnv {
 public:
  // Installs `env` as the current environment.
  explicit ScopedEnv(Env* env);

  // Puts back the environment that was current before.
  ~ScopedEnv();

  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  Env* mPrevious;  // null: the default environment
};

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_SCOPEDENV_H_
