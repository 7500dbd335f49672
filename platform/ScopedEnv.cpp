#include "platform/ScopedEnv.h"

namespace vireline {

// The default is stored as null, as if nothing had been installed: that is
// what a test or client that never installs an environment expects to see.
ScopedEnv::ScopedEnv(Env* env) : mPrevious(Env::Current() == Env::Default() ? nullptr : Env::Current()) {
  Env::SetCurrent(env);
}

ScopedEnv::~ScopedEnv() { Env::SetCurrent(mPrevious); }

}  // namespace vireline
