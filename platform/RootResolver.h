// Resolves device paths below a device root as if the root were "/", so that
// neither ".." nor a symbolic link inside a device image leads out of it. The
// result is a host path the operation then uses: an image whose links change
// between the two steps (another process at work on it) is not guarded
// against, a copied or hostile image as it lies is.
#ifndef VIRELINE_PLATFORM_ROOTRESOLVER_H_
#define VIRELINE_PLATFORM_ROOTRESOLVER_H_

#include <memory>
#include <string>

#include "platform/Env.h"
#include "platform/Result.h"

namespace vireline {

// What an operation does with the last component of its path.
enum class LastComponent {
  kFollowExisting,  // follows a link there and needs what it names (reads, stat, listing)
  kFollowOrCreate,  // follows a link there; what it names may be created (writes)
  kKeep,            // acts on the component itself, link or not (lstat, remove, rename, make folder)
};

// Sets *host to the host path of `devicePath` below `root`, a root that is not
// the real "/": every ".." and every symbolic link met on the way is resolved
// as the kernel would if `root` were "/" (absolute link targets start at the
// root, ".." never climbs above it; ELOOP after 40 links). The link at the
// last component is followed unless `last` is kKeep. Fails as the operation
// itself would when a folder on the way is missing or not a folder, or when
// `last` is kFollowExisting and nothing is there. The root folder itself is
// taken as it is.
Result ResolveBelowRoot(const std::string& root, const std::string& devicePath, LastComponent last,
                        std::string* host);

// Sets *hostFrom and *hostTo to the host paths of a rename's two device
// paths, each resolved as for kKeep. When both name entries of one folder (an
// atomic replace) the kernel checks that folder once for both.
Result ResolveRenameBelowRoot(const std::string& root, const std::string& from, const std::string& to,
                              std::string* hostFrom, std::string* hostTo);

// Whether `devicePath` below `root` opens for reading, answered by one open
// and close of its plain mapping when the kernel can vouch that no link is on
// the way: true with *opens set; false when only ResolveBelowRoot can tell.
// Lookups probe many candidates, so a probe costs what it costs on a device.
bool ProbeBelowRoot(const std::string& root, const std::string& devicePath, bool* opens);

// Appends `size` bytes to the existing file `devicePath` below `root` through
// one open of its plain mapping, as on a device (open, seek, write, close),
// when the kernel can vouch that no link is on the way: true with *outcome
// set to the open's outcome; false when only ResolveBelowRoot can tell.
// Play logs append a record at every event, so the check costs no call.
bool AppendBelowRoot(const std::string& root, const std::string& devicePath, const void* data, size_t size,
                     Result* outcome);

// Opens the existing file `devicePath` below `root` for reading through one
// open of its plain mapping, as on a device, when the kernel can vouch that
// no link is on the way: true with *outcome set (and *file when it opened);
// false when only ResolveBelowRoot can tell. A FIFO, socket or device node is
// refused with ENXIO, told apart by its open descriptor instead of a look at
// the path first; key=value files are read at every start, so the check
// costs no call of its own.
bool ReadBelowRoot(const std::string& root, const std::string& devicePath, std::unique_ptr<SequentialFile>* file,
                   Result* outcome);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_ROOTRESOLVER_H_
