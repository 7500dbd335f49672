// What the base utilities read through the data objects, reached only
// through the seam (baseutils/UpperLayers.h): a package's stated version and
// a text list of a JSON document.
#ifndef VIRELINE_LTM_LOWERLAYERREADS_H_
#define VIRELINE_LTM_LOWERLAYERREADS_H_

#include <vector>

#include <vireline/Types.h>

namespace vireline {
namespace ltm {

// The version in the metadata of package folder `folder`; `missing` when the metadata is not valid.
CString ValidPackageVersion(const CPath& folder, const char* missing);

// Loads the JSON document `path`; false unless it loads and its root is an
// object with member `member`. Then `texts` receives the member's text
// entries in order; an entry that is not text, or a member that is not an
// array, contributes nothing.
bool ReadTextList(const CPath& path, const char* member, std::vector<CString>* texts);

}  // namespace ltm
}  // namespace vireline

#endif  // VIRELINE_LTM_LOWERLAYERREADS_H_
