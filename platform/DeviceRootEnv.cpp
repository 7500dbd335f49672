#include "platform/DeviceRootEnv.h"

#include "platform/DeviceRoot.h"

namespace vireline {

std::string MapDeviceCommand(const std::string& command) {
  if (command.empty() || command[0] != '/') return command;
  size_t end = command.find_first_of(" \t");
  if (end == std::string::npos) end = command.size();
  std::string program = MapDevicePath(command.substr(0, end));
  if (program == command.substr(0, end)) return command;
  std::string quoted = "'";
  for (char c : program) quoted += (c == '\'') ? std::string("'\\''") : std::string(1, c);
  return quoted + "'" + command.substr(end);
}

Result DeviceRootEnv::OpenStream(const std::string& path, const char* mode, FILE** stream) {
  return target()->OpenStream(MapDevicePath(path), mode, stream);
}
Result DeviceRootEnv::Stat(const std::string& path, FileInfo* info) {
  return target()->Stat(MapDevicePath(path), info);
}
Result DeviceRootEnv::LinkStat(const std::string& path, FileInfo* info) {
  return target()->LinkStat(MapDevicePath(path), info);
}
Result DeviceRootEnv::MakeDir(const std::string& path, uint32_t mode) {
  return target()->MakeDir(MapDevicePath(path), mode);
}
Result DeviceRootEnv::RemoveDir(const std::string& path) { return target()->RemoveDir(MapDevicePath(path)); }
Result DeviceRootEnv::RemoveFile(const std::string& path) { return target()->RemoveFile(MapDevicePath(path)); }
Result DeviceRootEnv::Rename(const std::string& from, const std::string& to) {
  return target()->Rename(MapDevicePath(from), MapDevicePath(to));
}
Result DeviceRootEnv::ChangeMode(const std::string& path, uint32_t mode) {
  return target()->ChangeMode(MapDevicePath(path), mode);
}
Result DeviceRootEnv::ListDir(const std::string& path, std::vector<std::string>* names) {
  return target()->ListDir(MapDevicePath(path), names);
}

Result DeviceRootEnv::ListDirEntries(const std::string& path, std::vector<DirEntry>* entries) {
  return target()->ListDirEntries(MapDevicePath(path), entries);
}
Result DeviceRootEnv::SyncDir(const std::string& path) { return target()->SyncDir(MapDevicePath(path)); }
Result DeviceRootEnv::StatFs(const std::string& path, FsInfo* info) {
  return target()->StatFs(MapDevicePath(path), info);
}
Result DeviceRootEnv::RunCommand(const std::string& command, int* exitStatus) {
  return target()->RunCommand(MapDeviceCommand(command), exitStatus);
}
Result DeviceRootEnv::ConnectLocalSocket(int socket, const std::string& path) {
  return target()->ConnectLocalSocket(socket, MapDevicePath(path));
}

}  // namespace vireline
