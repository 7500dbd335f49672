// The directory configuration of every known device model. The newer three
// keep everything under "/QV"; the older ones insert their model name below
// the volume root.
#include <vireline/PkgPath.h>

const tPackageType gKastrelPkgTypes[2] = {"System", "Application"};
const char* const gKastrelPkgDirs[2] = {"System", "Apps"};

const tPackageType gVirelinePkgTypes[5] = {"System", "Application", "Avatar", "CYODataset", "MicroDownload"};
const char* const gVirelinePkgDirs[5] = {"Base", "ProgramFiles", "Data/Avatars", "Data/CYO", "Data/MDL"};

const tPackageType gScrivelPkgTypes[6] = {"System", "Application", "FlashCardSet", "Quiz", "Music", "ScrivelROM"};
const char* const gScrivelPkgDirs[6] = {"System", "Apps", "FlashCards", "Quizzes", "Music", "Firmware"};

const tPackageType gTamselPkgTypes[9] = {"System", "Application", "LanguagePack", "Download", "Upload",
                                         "Local", "Consumable", "DiskImage", "DeviceAsset"};
const char* const gTamselPkgDirs[9] = {"Base", "Bulk/ProgramFiles", "Bulk", "Bulk/Downloads", "Bulk/Data/Uploads",
                                       "Bulk/Data/Local", "Bulk/Downloads", "Bulk/Downloads", "Bulk/ProgramFiles"};

const tPackageType gPelloraVoyantPkgTypes[9] = {"System", "Application", "LanguagePack", "Download", "Upload",
                                                "Local", "Consumable", "DiskImage", "DeviceAsset"};
const char* const gPelloraVoyantPkgDirs[9] = {"Base", "Bulk/ProgramFiles", "Bulk", "Bulk/Downloads",
                                              "Bulk/Data/Uploads", "Bulk/Data/Local", "Bulk/Downloads", "fuse",
                                              "Bulk/ProgramFiles"};

const tPackageType gKastrelDuoPkgTypes[9] = {"System", "Application", "LanguagePack", "Download", "Upload",
                                             "Local", "Consumable", "DiskImage", "DeviceAsset"};
const char* const gKastrelDuoPkgDirs[9] = {"Base", "Bulk/ProgramFiles", "Bulk", "Bulk/Downloads",
                                           "Bulk/Data/Uploads", "Bulk/Data/Local", "Bulk/Downloads",
                                           "Bulk/Downloads", "Bulk/ProgramFiles"};

const tUploadDataType gKastrelUploadDataTypes[2] = {"CCLImage", "CartLTM"};
const char* const gKastrelUploadDataDirs[2] = {"Rsrc/CCL", "Rsrc/Cart"};

namespace {

const tVolumeConfig kKastrelVolumes[2] = {{"a:", 0, nullptr}, {"b:", 2, gKastrelPkgTypes}};
const tVolumeConfig kVirelineVolumes[1] = {{"/", 5, gVirelinePkgTypes}};
const tVolumeConfig kScrivelVolumes[1] = {{"/", 6, gScrivelPkgTypes}};
const tVolumeConfig kTamselVolumes[1] = {{"/QV", 9, gTamselPkgTypes}};
const tVolumeConfig kPelloraVoyantVolumes[1] = {{"/QV", 9, gPelloraVoyantPkgTypes}};
const tVolumeConfig kKastrelDuoVolumes[1] = {{"/QV", 9, gKastrelDuoPkgTypes}};

}  // namespace

const tDirConfig gKastrelCfg = {"Kastrel", 3, "Profile", "Profile", 2, gKastrelPkgTypes, 2, gKastrelPkgDirs,
                                2, gKastrelUploadDataTypes, 2, gKastrelUploadDataDirs, 2, kKastrelVolumes};
const tDirConfig gVirelineCfg = {"Zanto", 1, "Data", "Data", 5, gVirelinePkgTypes, 5, gVirelinePkgDirs,
                                 0, nullptr, 0, nullptr, 1, kVirelineVolumes};
const tDirConfig gScrivelCfg = {"Scrivel", 3, "Profile", "Profile", 6, gScrivelPkgTypes, 6, gScrivelPkgDirs,
                                0, nullptr, 0, nullptr, 1, kScrivelVolumes};
const tDirConfig gTamselCfg = {"KastrelVoyant", 0, "Bulk/Data/Local", "Bulk/Data/Uploads", 9, gTamselPkgTypes,
                               9, gTamselPkgDirs, 0, nullptr, 0, nullptr, 1, kTamselVolumes};
const tDirConfig gPelloraVoyantCfg = {"PelloraVoyant", 0, "Bulk/Data/Local", "Bulk/Data/Uploads", 9,
                                      gPelloraVoyantPkgTypes, 9, gPelloraVoyantPkgDirs, 0, nullptr, 0, nullptr,
                                      1, kPelloraVoyantVolumes};
const tDirConfig gKastrelDuoCfg = {"KastrelDuoVoyant", 0, "Bulk/Data/Local", "Bulk/Data/Uploads", 9,
                                   gKastrelDuoPkgTypes, 9, gKastrelDuoPkgDirs, 0, nullptr, 0, nullptr,
                                   1, kKastrelDuoVolumes};
