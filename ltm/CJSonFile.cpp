#include <vireline/CJSonFile.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "platform/DeviceStream.h"
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
  vireline::DeviceStream out(path.c_str(), "wt");
  if (out.ok()) std::fputs(kDefaultContent, out.get());
}

// The size of an open file, from its end position; -1 when it cannot be measured.
long MeasureFile(FILE* stream) {
  if (std::fseek(stream, 0, SEEK_END) != 0) return -1;
  long size = std::ftell(stream);
  std::rewind(stream);
  return size;
}

// Sizes `bytes` for a document of `size` bytes (one byte for an unmeasurable
// one); false when it is too large or memory is short.
bool ReserveText(long size, std::string* bytes) {
  if (size > kMaxDocumentSize) return false;
  try {
    bytes->resize(size < 0 ? 1 : static_cast<size_t>(size));
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
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
  std::unique_ptr<vireline::DeviceStream> in(new vireline::DeviceStream(mRsrcPath.c_str(), "rt"));
  // Only a missing file is created: one that is there but does not open (a
  // flash read error, no permission) is kept, and so is it by Save.
  bool missing = !in->ok() && vireline::UnreadableFiles::IsMissing(mRsrcPath.c_str());
  vireline::UnreadableFiles::Mark(this, !in->ok() && !missing);
  if (missing && mCreateIfMissing != 0) {
    CreateDefaultFile(mRsrcPath);
    in.reset(new vireline::DeviceStream(mRsrcPath.c_str(), "rt"));
  }
  if (!in->ok()) {
    PrintLoadFailure(2, "filehandle was NULL", mRsrcPath);
    return kLoadFailed;
  }
  long size = MeasureFile(in->get());
  std::string bytes;
  if (!ReserveText(size, &bytes)) {
    PrintLoadFailure(2, "could not allocate memory", mRsrcPath);
    vireline::UnreadableFiles::Mark(this, true);
    return kLoadFailed;
  }
  // An unmeasurable file reads as a short read: nothing arrives of "all" of it.
  if (size < 0 || std::fread(&bytes[0], 1, static_cast<size_t>(size), in->get()) != static_cast<size_t>(size)) {
    PrintLoadFailure(2, "buffer size does not match reported size", mRsrcPath);
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
  FILE* out = fopenAtomic(mRsrcPath.c_str(), "w");
  if (out == nullptr) return kSaveFailed;
  bool written = std::fprintf(out, "%s\n", text.c_str()) >= 0;
  bool committed = fcloseAtomic(out) == 0;
  return written && committed ? 0 : kSaveFailed;
}

}  // namespace LTM
