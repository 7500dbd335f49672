// Plain file and folder copies of BaseUtils, and the empty-profiles test.
#include <vireline/BaseUtils.h>

#include <memory>

#include <vireline/Platform.h>

#include "baseutils/UpperLayers.h"
#include "platform/AtomicFile.h"
#include "platform/Env.h"

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
  vireline::Env* env = vireline::Env::Current();
  std::unique_ptr<vireline::SequentialFile> in;
  std::unique_ptr<vireline::WritableFile> out;
  env->NewSequentialFile(source.c_str(), &in);
  env->NewWritableFile(destination.c_str(), &out);
  char buffer[kCopyStep];
  for (;;) {
    // An unreadable source yields no bytes, which counts as a finished copy.
    size_t got = 0;
    if (in != nullptr) vireline::ReadFully(in.get(), sizeof buffer, buffer, &got);
    if (got == 0) break;
    if (out == nullptr || !out->Append(buffer, got).ok()) return false;
  }
  return out == nullptr || out->Close().ok();
}

bool BaseUtils::CopyAtomicFile(const CPath& source, const CPath& destination) {
  std::unique_ptr<vireline::SequentialFile> in;
  if (!vireline::Env::Current()->NewSequentialFile(source.c_str(), &in).ok()) return false;
  std::unique_ptr<vireline::WritableFile> out;
  if (!vireline::NewAtomicFile(destination.c_str(), false, &out).ok()) return false;
  char buffer[kCopyStep];
  for (;;) {
    size_t got = 0;
    // Only a source read to its end, and written whole, may replace the
    // destination; otherwise letting go of `out` abandons the replace.
    if (!vireline::ReadFully(in.get(), sizeof buffer, buffer, &got).ok()) return false;
    if (got == 0) break;
    if (!out->Append(buffer, got).ok()) return false;
  }
  // A source that does not close cleanly may not have been read whole either.
  if (!in->Close().ok()) return false;
  return out->Close().ok();
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
