// CRC-32 fingerprints of files and folder trees, and the 4-byte ".crc" files
// that keep them.
#include <vireline/BaseUtils.h>

#include <zlib.h>

#include <cstdio>

#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"
#include "platform/DeviceStream.h"
#include "platform/Env.h"
#include "platform/LittleEndian.h"

namespace {

const size_t kReadBlockSize = 1024;
const size_t kChecksumFileSize = 4;
const char kChecksumSuffix[] = ".crc";
const int kUnreadableFileLevel = 3;

// The running CRC-32 of a walk, in zlib's form (the register complemented),
// so that an untouched walk gives 0.
struct ChecksumWalk {
  uLong crc = crc32(0L, Z_NULL, 0);
};

// Only real folders are entered: a link to a folder is left out, since a
// link back up the tree would make the walk endless.
bool IsFolderToEnter(const CPath& path) {
  vireline::FileInfo info;
  return vireline::Env::Current()->LinkStat(path.raw(), &info).ok() && info.type == vireline::FileType::kDirectory;
}

bool IsLinkedFolder(const CPath& path) {
  return vireline::IsSymbolicLink(path.raw()) && PlatformKernel::IsDirectory(path);
}

// The text from the last "." of the whole path is ".crc": checksum files
// never count, nor does anything else whose path ends so.
bool IsChecksumFile(const CPath& path) {
  const std::string& bytes = path.raw();
  std::string::size_type dot = bytes.rfind('.');
  return dot != std::string::npos && bytes.compare(dot, std::string::npos, kChecksumSuffix) == 0;
}

void FeedFile(const CPath& path, ChecksumWalk* walk) {
  vireline::DeviceStream file(path.c_str(), "rb");
  if (!file.ok()) {
    PlatformDebug(vireline::kDataObjectsDebugModule)
        .DebugOut(kUnreadableFileLevel, "CalculateChecksumHelper unable to open file %s\n", path.c_str());
    return;
  }
  unsigned char block[kReadBlockSize];
  size_t count;
  while ((count = std::fread(block, 1, sizeof block, file.get())) > 0) {
    walk->crc = crc32(walk->crc, block, static_cast<uInt>(count));
  }
}

// Every file of a tree feeds one register, depth first, in listing order.
unsigned char ChecksumEntry(const CPath& path, void* context) {
  ChecksumWalk* walk = static_cast<ChecksumWalk*>(context);
  if (IsFolderToEnter(path)) {
    BaseUtils::Instance()->EnumFolder(path, ChecksumEntry, BaseUtils::kSelectAll, walk);
    return 1;
  }
  if (IsLinkedFolder(path) || IsChecksumFile(path)) return 1;
  FeedFile(path, walk);
  return 1;
}

}  // namespace

U32 BaseUtils::CalculateChecksum(const CPath& path, tFileSelect select) {
  ChecksumWalk walk;
  if (FileIsDir(path)) {
    EnumFolder(path, ChecksumEntry, select, &walk);
  } else {
    ChecksumEntry(path, &walk);
  }
  return static_cast<U32>(walk.crc);
}

bool BaseUtils::WriteChecksum(const CPath& file, U32 value) {
  FILE* out = fopenAtomic(file.c_str(), "wb");
  if (out == nullptr) {
    Trace("BaseUtils::WriteChecksum unable to open file %s\n", file.c_str());
    return false;
  }
  unsigned char bytes[kChecksumFileSize];
  vireline::EncodeFixed32(bytes, value);
  bool written = std::fwrite(bytes, 1, sizeof bytes, out) == sizeof bytes;
  return fcloseAtomic(out) == 0 && written;
}

U32 BaseUtils::ReadChecksum(const CPath& file) {
  vireline::DeviceStream in(file.c_str(), "rb");
  if (!in.ok()) {
    Trace("BaseUtils::ReadChecksum unable to open file %s\n", file.c_str());
    return 0;
  }
  unsigned char bytes[kChecksumFileSize] = {0};
  // A shorter file leaves the bytes it lacks zero.
  size_t count = std::fread(bytes, 1, sizeof bytes, in.get());
  return count == 0 ? 0 : vireline::DecodeFixed32(bytes);
}
