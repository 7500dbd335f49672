#include "ltm/CartDependencyTables.h"

namespace LTM {
namespace {

const char kOskavaFirmwareId[] = "MQDX-0x00170029-000000";  // shared with TARVESSA

const tPlatformPackages kNoPackages = {"", "", ""};

// Indexed by platform type 0-5.
const tPlatformPackages kPlatformPackages[6] = {
    kNoPackages,                                                       // unknown
    kNoPackages,                                                       // Zanto
    {"KVR9-0x00170029-000000", "KVR9-0x00170030", "1.0.8"},            // Tamsel
    {kOskavaFirmwareId, "MQDX-0x001E000F", "1.0.0"},                   // Oskava
    {"", "HWOB-0x00170030", "1.0.0"},                                  // MIRA
    {kOskavaFirmwareId, "ZRTE-0x001E000F", "3.0.22.210"},              // TARVESSA
};

struct tWidgetFolder {
  const char* id;
  const char* folder;
};

const tWidgetFolder kWidgetFolders[3] = {
    {"MQDX-0x001E0003-000001", "Bulk/ProgramFiles/KeyboardWidget/"},
    {"MQDX-0x001E0010-000000", "Bulk/ProgramFiles/SneakPeakWidget/"},
    {"MQDX-0x001B0008-000000", "Bulk/ProgramFiles/XMV/"},
};

}  // namespace

const char kSharedLanguagePackStem[] = "KVR9-0x00170030";
const char* const kOwnLanguagePackStems[2] = {"MQDX-0x001E000F", "ZRTE-0x001E000F"};
const char kDefaultLanguagePackSuffix[] = "-000001";

const tPlatformPackages& PlatformPackages(int type) {
  return (type >= 0 && type < 6) ? kPlatformPackages[type] : kNoPackages;
}

Glib::ustring PackageFolder(const Glib::ustring& id) {
  for (const tWidgetFolder& widget : kWidgetFolders) {
    if (id == widget.id) return widget.folder;
  }
  return "Bulk/ProgramFiles/" + id + "/";
}

}  // namespace LTM
