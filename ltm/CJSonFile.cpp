#include <vireline/CJSonFile.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "platform/AtomicFile.h"
#include "platform/Env.h"
#include "platform/FormattedWrite.h"
#include "files/UnreadableFiles.h"
#include "ltm/JsonTree.h"

namespace LTM {
namespace {

const U32 kLoadFailed = 1;
const U32 kSaveFailed = 0x10001005;

// A file this large is no settings-sized document; refusing it up front keeps
// a device from committing its memory (and a bad size from overflowing).
const long kMaxDocumentSize = 256L * 1024 * 1024;

// What a newly created document file holds: an empty object, CR, LF.
const char kDefaultContent[] = "{}\r\n";

// Every Load failure prints the same sentence with its own reason.
void PrintLoadFailure(int level, const char* reason, const Glib::ustring& path) {
  PlatformDebug(vireline::kDataObjectsDebugModule)
      .DebugOut(level, "CJSonFile::Load() failed to open (%s) mRsrcPath = %s\n", reason, path.c_str());
}

// A silent attempt: a failure shows when the file is opened again for reading.
void CreateDefaultFile(const Glib::ustring& path) {
  std::unique_ptr<vireline::WritableFile> out;
  if (vireline::Env::Current()->NewWritableFile(path.c_str(), &out).ok()) {
    out->Append(kDefaultContent, std::strlen(kDefaultContent));
  }
}

// Documents this small (nearly every one) are read into the caller's stack
// and parsed there: a heap block of this size on every load has the C
// library's allocator merge all its small free blocks each time, which makes
// each allocation of the conversion that follows dearer too.
const size_t kStackDocumentSize = 4096;

// The reasons ReadDocument gives.
const char kTooLarge[] = "could not allocate memory";
const char kReadFailed[] = "buffer size does not match reported size";

// Reads the rest of the document into *large, after the `got` bytes of
// `start` read already: its failure reason, or null.
const char* ReadRestOfDocument(vireline::SequentialFile* in, const char* start, size_t got, std::string* large) {
  try {
    // One byte more than a document may hold tells a document too large.
    size_t limit = static_cast<size_t>(kMaxDocumentSize) + 1 - got;
    vireline::Result read = vireline::ReadToString(in, limit, large);
    large->insert(0, start, got);
    if (large->size() > static_cast<size_t>(kMaxDocumentSize)) return kTooLarge;
    if (!read.ok()) return kReadFailed;
  } catch (const std::bad_alloc&) {
    return kTooLarge;
  }
  return nullptr;
}

// Reads the whole document: into `small` (kStackDocumentSize bytes) when it
// fits there, else into *large. *text shows the bytes read; the result is the
// failure reason, or null.
const char* ReadDocument(vireline::SequentialFile* in, char* small, std::string* large, std::string_view* text) {
  size_t got = 0;
  if (!vireline::ReadFully(in, kStackDocumentSize, small, &got).ok()) return kReadFailed;
  *text = std::string_view(small, got);
  if (got < kStackDocumentSize) return nullptr;
  const char* failure = ReadRestOfDocument(in, small, got, large);
  *text = *large;
  return failure;
}

// `text` up to its first zero byte, where a document has always ended.
std::string_view UpToZero(std::string_view text) {
  const void* zero = std::memchr(text.data(), '\0', text.size());
  return zero == nullptr ? text : text.substr(0, static_cast<const char*>(zero) - text.data());
}

}  // namespace

CJSonFile::CJSonFile() : mCreateIfMissing(0), mRoot(objectValue) {}

CJSonFile::CJSonFile(const Glib::ustring& path, unsigned char createIfMissing)
    : mRsrcPath(path), mCreateIfMissing(createIfMissing) {}

CJSonFile::CJSonFile(const Glib::ustring& folder, const Glib::ustring& name, unsigned char createIfMissing)
    : mRsrcPath(folder + name), mCreateIfMissing(createIfMissing) {}

CJSonFile::~CJSonFile() { vireline::UnreadableFiles::Mark(this, false); }

U32 CJSonFile::Load() {
  if (mRsrcPath.empty()) return kLoadFailed;
  vireline::Env* env = vireline::Env::Current();
  std::unique_ptr<vireline::SequentialFile> in;
  bool opened = env->NewSequentialFile(mRsrcPath.c_str(), &in).ok();
  // Only a missing file is created: one that is there but does not open (a
  // flash read error, no permission) is kept, and so is it by Save.
  bool missing = !opened && vireline::UnreadableFiles::IsMissing(mRsrcPath.c_str());
  vireline::UnreadableFiles::Mark(this, !opened && !missing);
  if (missing && mCreateIfMissing != 0) {
    CreateDefaultFile(mRsrcPath);
    opened = env->NewSequentialFile(mRsrcPath.c_str(), &in).ok();
  }
  if (!opened) {
    PrintLoadFailure(2, "filehandle was NULL", mRsrcPath);
    return kLoadFailed;
  }
  char small[kStackDocumentSize];
  std::string large;
  std::string_view text;
  const char* failure = ReadDocument(in.get(), small, &large, &text);
  if (failure != nullptr) {
    PrintLoadFailure(2, failure, mRsrcPath);
    vireline::UnreadableFiles::Mark(this, true);
    return kLoadFailed;
  }
  in.reset();
  text = UpToZero(text);
  std::string errors;
  if (!ParseJsonText(text.data(), text.data() + text.size(), &mRoot, &errors)) {
    PrintLoadFailure(1, "JSON parser reported an error", mRsrcPath);
    mRoot = Value(objectValue);
    return kLoadFailed;
  }
  return 0;
}

U32 CJSonFile::Save() {
  if (mRsrcPath.empty() || vireline::UnreadableFiles::IsMarked(this)) return kSaveFailed;
  // Rendered before the file is opened: a document too deep to write must not
  // leave a half-made replacement behind.
  Glib::ustring text = FastWriter().write(mRoot);
  if (text.empty()) return kSaveFailed;
  std::unique_ptr<vireline::WritableFile> out;
  if (!vireline::NewAtomicFile(mRsrcPath.c_str(), false, &out).ok()) return kSaveFailed;
  bool written = vireline::AppendFormatted(out.get(), "%s\n", text.c_str()).ok();
  bool committed = out->Close().ok();
  return written && committed ? 0 : kSaveFailed;
}

}  // namespace LTM
