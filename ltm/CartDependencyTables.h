// The fixed package ids the dependency check knows: each platform's firmware
// package and language packs, and the widgets that live in folders of their own.
#ifndef VIRELINE_LTM_CARTDEPENDENCYTABLES_H_
#define VIRELINE_LTM_CARTDEPENDENCYTABLES_H_

#include <glibmm/ustring.h>

namespace LTM {

// What one platform type installs.
struct tPlatformPackages {
  const char* firmwareId;              // "" when the platform has no firmware package
  const char* languagePackStem;        // language-pack ids start with it
  const char* defaultLanguageVersion;  // lowest version of the base language pack
};

// The language-pack stem that dependencies name for every platform.
extern const char kSharedLanguagePackStem[];

// Further stems that mark a dependency as a language pack as they stand.
extern const char* const kOwnLanguagePackStems[2];

// The suffix of the base language pack's id after the platform's stem.
extern const char kDefaultLanguagePackSuffix[];

// The packages of platform type `type`; empty texts for types without any.
const tPlatformPackages& PlatformPackages(int type);

// The folder, below the root path, of package `id`: a widget's own folder,
// else "Bulk/ProgramFiles/<id>/".
Glib::ustring PackageFolder(const Glib::ustring& id);

}  // namespace LTM

#endif  // VIRELINE_LTM_CARTDEPENDENCYTABLES_H_
