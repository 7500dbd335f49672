#include <vireline/ScratchOverlay.h>

#include "platform/ScopedEnv.h"
#include "platform/ScratchOverlayEnv.h"

namespace vireline {

ScratchOverlay::ScratchOverlay()
    : mEnv(new ScratchOverlayEnv(Env::Current(), Env::Host())), mInstalled(new ScopedEnv(mEnv.get())) {}

ScratchOverlay::~ScratchOverlay() = default;

bool ScratchOverlay::IsUsable() const { return mEnv->ok(); }

std::vector<std::string> ScratchOverlay::WrittenFiles() const { return mEnv->WrittenFiles(); }

}  // namespace vireline
