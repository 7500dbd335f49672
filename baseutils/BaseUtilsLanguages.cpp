// The list of installed language packs: read with the system paths, which
// own the language packs' folders.
#include <vireline/BaseUtils.h>

#include "baseutils/UpperLayers.h"

std::vector<LanguageInfo> BaseUtils::GetLanguages() { return vireline::upper::InstalledLanguages(); }
