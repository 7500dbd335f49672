#include <vireline/CJSonFile.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "platform/AtomicFile.h"
#include "platform/Env.h"
#include "platform/FormattedWrite.h"
#include "files/UnreadableFiles.h"

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

// Reads the whole document into *bytes: its failure reason, or null.
const char* ReadDocument(vireline::SequentialFile* in, std::string* bytes) {
  try {
    // One byte more than a document may hold tells a document too large.
    vireline::Result read = vireline::ReadToString(in, static_cast<size_t>(kMaxDocumentSize) + 1, bytes);
    if (bytes->size() > static_cast<size_t>(kMaxDocumentSize)) return "could not allocate memory";
    if (!read.ok()) return "buffer size does not match reported size";
  } catch (const std::bad_alloc&) {
    return "could not allocate memory";
  }
  return nullptr;
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
  std::string bytes;
  const char* failure = ReadDocument(in.get(), &bytes);
  if (failure != nullptr) {
    PrintLoadFailure(2, failure, mRsrcPath);
    vireline::UnreadableFiles::Mark(this, true);
    return kLoadFailed;
  }
  in.reset();
  // The text ends at the first zero byte, as it always has.
  bytes.resize(std::strlen(bytes.c_str()));
  Glib::ustring text(std::move(bytes));
  Reader reader;
  if (!reader.parse(text, mRoot)) {
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
