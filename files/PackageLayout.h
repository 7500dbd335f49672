// The package layout that the key=value file classes compose their paths with.
#ifndef VIRELINE_FILES_PACKAGELAYOUT_H_
#define VIRELINE_FILES_PACKAGELAYOUT_H_

#include <vireline/PkgPath.h>

namespace vireline {

// `paths`, or the default model's layout when null.
inline const CPkgPathBase& LayoutOrDefault(const CPkgPathBase* paths) {
  static const CPkgPathBase* defaultLayout = new CPkgPathBase();  // never destroyed: usable until exit
  return paths != nullptr ? *paths : *defaultLayout;
}

}  // namespace vireline

#endif  // VIRELINE_FILES_PACKAGELAYOUT_H_
