// Plain file and folder copies of BaseUtils, and the empty-profiles test.
#include <vireline/BaseUtils.h>

#include <cstdio>

#include <vireline/Platform.h>

#include "baseutils/UpperLayers.h"
#include "platform/AtomicFile.h"
#include "platform/DeviceStream.h"

namespace {

const size_t kCopyStep = 512;

CString NameOf(const CPath& path) {
  CPath::size_type slash = path.rfind('/');
  return slash == CPath::npos ? path : path.substr(slash + 1);
}

// Joins the entry's name straight onto the destination text, without a "/",
// so nested folders come out as older firmware laid them out.
unsigned char CopyEntry(const CPath& path, void* context) {
  BaseUtils* utils = BaseUtils::Instance();
  CPath target = *static_cast<const CPath*>(context) + NameOf(path);
  if (utils->FileIsDir(path)) {
    utils->CreateDirectory(target);
    utils->EnumFolder(path, CopyEntry, BaseUtils::kSelectAll, &target);
  } else {
    utils->CopyPNGFile(path, target);
  }
  return 1;
}

}  // namespace

bool BaseUtils::CopyPNGFile(const CPath& source, const CPath& destination) {
  vireline::DeviceStream in(source.c_str(), "rb");
  vireline::DeviceStream out(destination.c_str(), "wb");
  char buffer[kCopyStep];
  for (;;) {
    // An unreadable source yields no bytes, which counts as a finished copy.
    size_t got = in.ok() ? fread(buffer, 1, sizeof buffer, in.get()) : 0;
    if (got == 0) break;
    if (!out.ok() || fwrite(buffer, 1, got, out.get()) != got) return false;
  }
  return !out.ok() || out.Close().ok();
}

bool BaseUtils::CopyAtomicFile(const CPath& source, const CPath& destination) {
  vireline::DeviceStream in(source.c_str(), "r");
  if (!in.ok()) return false;
  FILE* out = fopenAtomic(destination.c_str(), "w");
  if (out == nullptr) return false;
  char buffer[kCopyStep];
  size_t got;
  while ((got = fread(buffer, 1, sizeof buffer, in.get())) > 0) {
    if (fwrite(buffer, 1, got, out) != got) break;
  }
  // A read error ends the loop as the end of the file would: only a source
  // read to its end, and closed cleanly, may replace the destination.
  const bool sourceWhole = !ferror(in.get()) && !ferror(out);
  if (!in.Close().ok() || !sourceWhole) {
    vireline::AbandonAtomic(out);
    return false;
  }
  return fcloseAtomic(out) == 0;
}

bool BaseUtils::RecursiveCopy(const CPath& source, const CPath& destination) {
  if (!FileExists(destination)) CreateDirectory(destination);
  CPath target = destination;
  EnumFolder(source, CopyEntry, kSelectAll, &target);
  return true;
}

bool BaseUtils::AreAllPlayerProfilesEmpty() {
  for (int slot = 0; slot <= 2; ++slot) {
    if (!vireline::upper::PlayerProfileName(slot).empty()) return false;
  }
  return true;
}
