// Where device paths live on the host: the device root and the mapping onto it.
#ifndef VIRELINE_PLATFORM_DEVICEROOT_H_
#define VIRELINE_PLATFORM_DEVICEROOT_H_

#include <string>

namespace vireline {

// The host path of `devicePath`. Under the real root "/" the path is used
// unchanged, as on a device. Under any other root the path is taken from the
// device's "/" (a relative path too), "." and ".." are resolved without ever
// climbing above the root, repeated slashes are folded, and a trailing slash
// is kept. The empty path stays empty.
std::string MapDevicePath(const std::string& devicePath);

// The device root without a trailing slash; empty for the real "/". The
// string stays valid (and unchanged) until the process ends.
const std::string& CurrentDeviceRoot();

// This thread's descriptor of the folder of `root` (a reference that
// CurrentDeviceRoot() returned, not a copy), opened when the thread first
// asks after the root was chosen; -1 for the real "/" or when the folder did
// not open then. A folder replaced at the same path later is not followed:
// choosing the root again (SetDeviceRoot) opens the new one.
int ThreadRootDescriptor(const std::string& root);

// `devicePath` mapped below `root`, a root that is not the real "/".
std::string MapBelowRoot(const std::string& root, const std::string& devicePath);

// The same mapping into `host`, reusing its storage.
void MapBelowRootInto(const std::string& root, const std::string& devicePath, std::string* host);

// True when `devicePath` is absolute and has no empty, "." or ".." component
// (a trailing slash is allowed): normalizing would return it unchanged.
bool IsNormalizedDevicePath(const std::string& devicePath);

// `devicePath` with "." and ".." resolved below "/" and slashes folded.
std::string NormalizeDevicePath(const std::string& devicePath);

}  // namespace vireline

#endif  // VIRELINE_PLATFORM_DEVICEROOT_H_
