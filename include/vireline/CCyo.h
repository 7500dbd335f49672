// CYO curriculum sets: curricula that a parent or teacher composes, installed
// as download packages whose meta.inf names a JSON manifest of items (words,
// facts, problems), each with a value and an audio clip. A CCyo finds the set
// of a player and a curriculum, reads its manifest, and keeps the player's
// progress on each item in a per-player "progress.json".
//
// The progress file is written by every SetStatus and once more when the
// CCyo is destroyed; the manifest is never written except by the old
// per-item handle CCyoItem.
#ifndef VIRELINE_CCYO_H_
#define VIRELINE_CCYO_H_

#include <cstdint>
#include <memory>

#include <vireline/CJSonFile.h>
#include <vireline/Export.h>
#include <vireline/Types.h>

namespace LTM {

// The curriculum a set teaches; kCyoByName when the set is chosen by its name.
enum tCyoCurricType : uint32_t {
  kCyoSpelling = 0,
  kCyoLanguageArts = 1,
  kCyoMathFacts = 2,
  kCyoMathPlus = 3,
  kCyoByName = 4
};

// A player's progress on one item, stored and returned unchanged; 2 when unknown.
typedef U32 tCyoStatus;

// The number of named curriculum types (the entries of CyoType).
const U32 kCyoTypeCount = 4;

// The "CurriculumType" names of types 0-3: "Spelling", "LanguageArts",
// "MathFacts", "MathPlus". Index it only below kCyoTypeCount.
extern VIRELINE_EXPORT const Glib::ustring CyoType[kCyoTypeCount];

class CCyo;
class CCyoItem;

// What the CYO folder walk carries from folder to folder.
struct VIRELINE_EXPORT tCyoSearch {
  CCyo* cyo;           // the object that receives the set found
  Glib::ustring name;  // the wanted curriculum name; empty for the type searches
};

// Folder-walk callback of the CYO search: stores the set in `folder` in the
// tCyoSearch `context`'s CCyo when it matches and stops (0); 1 to go on. A
// folder without meta.inf, or with a doom marker, also ends the walk.
VIRELINE_EXPORT unsigned char EnumCyoFolder(const CPath& folder, void* context);

class VIRELINE_EXPORT CCyo {
 public:
  // The documents of the set found.
  class VIRELINE_EXPORT CCyoFileContainer {
   public:
    // No documents yet.
    CCyoFileContainer();
    // Releases the manifest unwritten; saves the progress file, then releases it.
    ~CCyoFileContainer();

    CCyoFileContainer(const CCyoFileContainer&) = delete;
    CCyoFileContainer& operator=(const CCyoFileContainer&) = delete;

    std::unique_ptr<CJSonFile> mpManifest;  // read only; null until a set is found
    std::unique_ptr<CJSonFile> mpProgress;  // null until a set is found
  };

  // Deprecated: the set of type `type` that `player` may use.
  CCyo(tPlayerID player, tCyoCurricType type);
  // The set of type `type` that the current player may use.
  CCyo(tCyoCurricType type);
  // The set whose curriculum type is `name` that `player` may use.
  CCyo(tPlayerID player, Glib::ustring name);
  // The set whose curriculum type is `name` that the current player may use.
  CCyo(Glib::ustring name);

  // Saves the player's progress and releases both documents.
  ~CCyo();

  CCyo(const CCyo&) = delete;
  CCyo& operator=(const CCyo&) = delete;

  // True when a set was found and its manifest opened.
  bool IsLoaded() const;
  // The manifest's "ID"; empty when not loaded.
  Glib::ustring GetID() const;
  // The set's folder, ending in "/"; empty when none was found.
  Glib::ustring GetPath() const;
  // The number of items in the manifest; 0 when not loaded.
  U32 size() const;
  // The manifest's "CompletionParam"; 0 when not loaded.
  U32 GetCompletionParameters() const;
  // The player's status of item `index`; 2 without a progress document.
  tCyoStatus GetStatus(U32 index) const;
  // Records `status` for item `index` and saves the progress file. Unlike
  // every other answer of this class, false means saved and true not saved.
  bool SetStatus(U32 index, tCyoStatus status);
  // The value of item `index`; empty when not loaded.
  Glib::ustring GetValue(U32 index) const;
  // The path of item `index`'s audio file; empty when not loaded.
  Glib::ustring GetAudio(U32 index) const;
  // Deprecated: a new handle on item `index` for the caller to delete; null
  // when not loaded or past the last item.
  CCyoItem* GetItem(U32 index);

 private:
  friend unsigned char EnumCyoFolder(const CPath& folder, void* context);

  void Search(const Glib::ustring& name);
  const CJSonFile* Manifest() const;
  const CJSonFile* Progress() const;

  tPlayerID mPlayer;
  tCyoCurricType mCurricType;
  std::unique_ptr<CCyoFileContainer> mpFiles;
  Glib::ustring mPath;
};

// Deprecated: one item of a set, reading and writing its manifest entry. Must
// not outlive the CCyo it came from.
class VIRELINE_EXPORT CCyoItem {
 public:
  // Item `index` of the manifest `file` of `owner`.
  CCyoItem(CCyo* owner, CJSonFile* file, U32 index);

  // Deprecated: the item's "Status" in the manifest; 2 without manifest.
  tCyoStatus GetStatus();
  // Deprecated: writes the item's "Status" into the manifest and saves the manifest.
  void SetStatus(tCyoStatus status);
  // Deprecated: the item's "Val".
  Glib::ustring GetValue();
  // Deprecated: the owner's folder followed by the item's "Audio".
  Glib::ustring GetAudio();

 private:
  const Value& Item() const;

  U32 mIndex;
  CJSonFile* mpFile;
  CCyo* mpOwner;
};

}  // namespace LTM

#endif  // VIRELINE_CCYO_H_
