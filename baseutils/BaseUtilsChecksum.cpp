// CRC-32 fingerprints of files and folder trees, and the 4-byte ".crc" files
// that keep them.
#include <vireline/BaseUtils.h>

#include <zlib.h>

#include <memory>
#include <string>
#include <vector>

#include <vireline/Platform.h>


#include "baseutils/DebugModules.h"
#include "platform/AtomicFile.h"
#include "platform/Env.h"
#include "platform/LittleEndian.h"

namespace {

// zlib's CRC runs at less than half speed when fed small blocks, so each file
// is read in large batches, one read each, and the CRC updated per batch.
const size_t kBatchSize = 64 * 1024;
const size_t kChecksumFileSize = 4;
const char kChecksumSuffix[] = ".crc";
const int kUnreadableFileLevel = 3;

// One walk: the running CRC-32 in zlib's form (the register complemented, so
// that a walk that reads nothing gives 0) and the batch every file is read
// into, allocated once per walk rather than per file.
struct ChecksumWalk {
  uLong crc = crc32(0L, Z_NULL, 0);
  std::vector<char> batch = std::vector<char>(kBatchSize);
};

// The text from the last "." of the whole path is ".crc": checksum files
// never count, nor does anything else whose path ends so.
bool IsChecksumFile(const CPath& path) {
  const std::string& bytes = path.raw();
  std::string::size_type dot = bytes.rfind('.');
  return dot != std::string::npos && bytes.compare(dot, std::string::npos, kChecksumSuffix) == 0;
}

void FeedFile(const CPath& path, ChecksumWalk* walk) {
  std::unique_ptr<vireline::SequentialFile> file;
  if (!vireline::Env::Current()->NewSequentialFile(path.c_str(), &file).ok()) {
    PlatformDebug(vireline::kDataObjectsDebugModule)
        .DebugOut(kUnreadableFileLevel, "CalculateChecksumHelper unable to open file %s\n", path.c_str());
    return;
  }
  // A failed read ends the file like its end does: what was read counts.
  for (;;) {
    size_t count = 0;
    vireline::ReadFully(file.get(), kBatchSize, walk->batch.data(), &count);
    walk->crc = crc32(walk->crc, reinterpret_cast<const Bytef*>(walk->batch.data()), static_cast<uInt>(count));
    if (count < kBatchSize) return;
  }
}

void FeedEntry(const CPath& path, vireline::FileType type, ChecksumWalk* walk);

// Every entry of a folder in listing order, as EnumFolder with kSelectAll
// hands them out, but typed by the listing itself: a tree of small files
// then costs little more than opening them.
void FeedFolder(const CPath& folder, ChecksumWalk* walk) {
  CPath prefix = folder;
  if (prefix.empty() || prefix[prefix.size() - 1] != '/') prefix += "/";
  std::vector<vireline::DirEntry> entries;
  if (!vireline::Env::Current()->ListDirEntries(prefix.raw(), &entries).ok()) return;
  for (const vireline::DirEntry& entry : entries) FeedEntry(prefix + entry.name, entry.type, walk);
}

// Real folders are entered, depth first. A link is followed to a file but
// never into a folder, since a link back up the tree would make the walk
// endless; what cannot be looked at (a link to nothing, an entry removed
// meanwhile) is passed over, as EnumFolder does.
void FeedEntry(const CPath& path, vireline::FileType type, ChecksumWalk* walk) {
  if (type == vireline::FileType::kDirectory) return FeedFolder(path, walk);
  if (type != vireline::FileType::kRegular) {
    vireline::FileInfo target;
    if (!vireline::Env::Current()->Stat(path.raw(), &target).ok() || target.type == vireline::FileType::kDirectory) {
      return;
    }
  }
  if (!IsChecksumFile(path)) FeedFile(path, walk);
}

// The callback of the top level, which EnumFolder filters (following links).
unsigned char ChecksumEntry(const CPath& path, void* context) {
  vireline::FileInfo info;
  vireline::FileType type = vireline::Env::Current()->LinkStat(path.raw(), &info).ok() ? info.type : vireline::FileType::kOther;
  FeedEntry(path, type, static_cast<ChecksumWalk*>(context));
  return 1;
}

}  // namespace

U32 BaseUtils::CalculateChecksum(const CPath& path, tFileSelect select) {
  ChecksumWalk walk;
  if (FileIsDir(path)) {
    EnumFolder(path, ChecksumEntry, select, &walk);
  } else if (!IsChecksumFile(path)) {
    FeedFile(path, &walk);
  }
  return static_cast<U32>(walk.crc);
}

bool BaseUtils::WriteChecksum(const CPath& file, U32 value) {
  std::unique_ptr<vireline::WritableFile> out;
  if (!vireline::NewAtomicFile(file.c_str(), false, &out).ok()) {
    Trace("BaseUtils::WriteChecksum unable to open file %s\n", file.c_str());
    return false;
  }
  unsigned char bytes[kChecksumFileSize];
  vireline::EncodeFixed32(bytes, value);
  bool written = out->Append(bytes, sizeof bytes).ok();
  return out->Close().ok() && written;
}

U32 BaseUtils::ReadChecksum(const CPath& file) {
  std::unique_ptr<vireline::SequentialFile> in;
  if (!vireline::Env::Current()->NewSequentialFile(file.c_str(), &in).ok()) {
    Trace("BaseUtils::ReadChecksum unable to open file %s\n", file.c_str());
    return 0;
  }
  unsigned char bytes[kChecksumFileSize] = {0};
  // A shorter file leaves the bytes it lacks zero.
  size_t count = 0;
  vireline::ReadFully(in.get(), sizeof bytes, reinterpret_cast<char*>(bytes), &count);
  return count == 0 ? 0 : vireline::DecodeFixed32(bytes);
}
