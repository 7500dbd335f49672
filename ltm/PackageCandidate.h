// One package folder met by a content-list walk, and the tests that decide
// whether the list shows it: not withdrawn, readable metadata, the wanted
// type, the running game's product, and access for the player. Every list
// applies the same tests, in the same order, through this class.
#ifndef VIRELINE_LTM_PACKAGECANDIDATE_H_
#define VIRELINE_LTM_PACKAGECANDIDATE_H_

#include <memory>

#include <vireline/CMetaInfo.h>
#include <vireline/Types.h>

namespace LTM {

class CPackageCandidate {
 public:
  // The package in `folder` (a path without a trailing "/").
  explicit CPackageCandidate(const Glib::ustring& folder);
  ~CPackageCandidate();

  CPackageCandidate(const CPackageCandidate&) = delete;
  CPackageCandidate& operator=(const CPackageCandidate&) = delete;

  // The doom and meta tests: no "doom" marker, and a "meta.inf" that exists
  // and is valid. The other tests need this one to have passed.
  bool IsUsable();

  // The "Type" tag is exactly `word`: older firmware wrote these tags by
  // hand, and only the exact spelling marks the package as of that kind.
  bool HasType(const char* word) const;

  // The product id is the running title's.
  bool IsForRunningGame() const;

  // Device access 1 admits everyone; otherwise the profile access list must
  // name `player` (an empty or missing list admits nobody).
  bool Admits(tPlayerID player) const;

  // The package id; empty when the metadata names none.
  Glib::ustring PackageId() const;

 private:
  Glib::ustring mFolder;
  std::unique_ptr<CMetaInfo> mpMeta;  // set by IsUsable
};

}  // namespace LTM

#endif  // VIRELINE_LTM_PACKAGECANDIDATE_H_
