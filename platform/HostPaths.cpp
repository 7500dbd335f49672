#include <vireline/HostPaths.h>

#include "platform/ScopedEnv.h"

namespace vireline {

HostPaths::HostPaths() : mInstalled(new ScopedEnv(Env::Host())) {}

HostPaths::~HostPaths() = default;

}  // namespace vireline
