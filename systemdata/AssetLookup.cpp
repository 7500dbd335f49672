// Art, audio, video and fonts by bare file name: the most specific folder
// first (the title, the locale's language pack, a country folder), the
// universal language pack last, and a placeholder so a title always has
// something to show or play.
#include <vireline/AssetLookup.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/DebugJoined.h"
#include "platform/Env.h"
#include "systemdata/FolderAccess.h"
#include "systemdata/SystemDataInternal.h"

namespace vireline {
namespace systemdata {
namespace {

// A message of a name between two fixed parts; printed on every lookup, so
// it is put together without a format to parse.
struct NameMessage {
  std::string_view before;  // empty for a kind without the message
  std::string_view after;
};

// What each kind prints and falls back to.
struct AssetRules {
  NameMessage trace;
  NameMessage notFound;
  const char* placeholder;  // null for none; for audio the stem: the asked name's extension is kept
};

const AssetRules& RulesOf(tAssetKind kind) {
  static const AssetRules kArt = {{"CSystemData::FindArt( ", " )\n"}, {"CSystemData::FindArt not found ", "\n"},
                                  "missingAsset.png"};
  static const AssetRules kAudio = {{"CSystemData::FindAudio( ", " )\n"},
                                    {"CSystemData::FindAudio unable to find audio file ", "\n"},
                                    "h_BROM_AudioNotFoundSfx_6"};
  static const AssetRules kVideo = {{"CSystemData::FindVideo( ", " )\n"}, {"CSystemData::FindVideo not found ", "\n"},
                                    nullptr};
  static const AssetRules kFont = {{"CSystemData::FindFont( ", " )\n"}, {"CSystemData::FindFont not found ", "\n"},
                                   "QVCurry.ttf"};
  static const AssetRules kBookAudio = {
      {"CSystemData::FindBookAudio( ",
       " ), WARNING: make sure your title has a dependency on a book pack.\n"},
      {},
      nullptr};
  switch (kind) {
    case tAssetKind::kArt:
      return kArt;
    case tAssetKind::kAudio:
      return kAudio;
    case tAssetKind::kVideo:
      return kVideo;
    case tAssetKind::kFont:
      return kFont;
    default:
      return kBookAudio;
  }
}

// Prints `message` about `name` at `level`, when the kind has the message.
void Print(int level, const NameMessage& message, const CPath& name) {
  if (!message.before.empty()) DebugOutJoined(kDebugModule, level, message.before, name.c_str(), message.after);
}

std::string_view Bytes(const CPath& text) { return text.raw(); }
template <size_t N>
std::string_view Bytes(const char (&literal)[N]) {  // a literal's length is known
  return std::string_view(literal, N - 1);
}
std::string_view Bytes(std::string_view text) { return text; }

// Tries candidates in order and remembers the one the probe accepted. Each
// candidate is built in one buffer that keeps its storage from candidate to
// candidate and lookup to lookup: a lookup tries up to 16 paths and only the
// one taken becomes a path of its own. Without a probe of the caller's, the
// candidate is opened through the platform directly.
class Search {
 public:
  explicit Search(const tAssetProbe* probe) : mProbe(probe), mCandidate(CandidateBuffer()) {}

  // True when the concatenation of `parts` was accepted (the search is then over).
  template <typename... Parts>
  bool Try(const Parts&... parts) {
    // Sized once, then filled: a lookup builds up to 16 paths of five parts or so.
    mCandidate.resize((Bytes(parts).size() + ...));
    char* out = &mCandidate[0];
    ((out = CopyOut(Bytes(parts), out)), ...);
    return mProbe == nullptr ? TryOpening() : TryWithProbe();
  }

  // True when candidates go to a probe of the caller's.
  bool RunsCallersProbe() const { return mProbe != nullptr; }

  // Hands over the accepted path. A candidate opened here is still in the
  // buffer: nothing else ran since.
  CPath TakeFound() {
    if (mProbe == nullptr) return CPath(mCandidate);
    return std::move(mFound);
  }

 private:
  static char* CopyOut(std::string_view part, char* out) {
    std::memcpy(out, part.data(), part.size());
    return out + part.size();
  }

  // This thread's candidate buffer; a probe of the caller's may run a lookup
  // of its own in it, so what such a probe is given is a copy.
  static std::string& CandidateBuffer() {
    thread_local std::string tBuffer;
    return tBuffer;
  }

  bool TryOpening() { return Env::Current()->OpensForReading(mCandidate); }

  bool TryWithProbe() {
    CPath path(mCandidate);
    if (!(*mProbe)(path)) return false;
    mFound = std::move(path);
    return true;
  }

  const tAssetProbe* mProbe;
  std::string& mCandidate;
  CPath mFound;  // accepted by the caller's probe
};

// The locale's language and country as the lookups use them.
struct LookupLocale {
  CString code;
  CPath root;
  CString language;
  CString country;
  CString audioCountry;  // the country after the English country rule
  CPath languagePack;    // root + "Bulk/LanguagePack_" + language + "/"
};

// English audio is recorded for three countries; every other English-speaking
// country hears the British recording.
CString AudioCountryOf(const CString& language, const CString& country) {
  const std::string& bytes = country.raw();
  if (language.raw() == "en" && bytes != "us" && bytes != "ca" && bytes != "gb") return "gb";
  return country;
}

// What the lookups use of locale `code` below `root`.
std::shared_ptr<const LookupLocale> NewLocale(const CString& code, const CPath& root) {
  auto locale = std::make_shared<LookupLocale>();
  locale->language = LanguageOf(code);
  locale->country = CountryOf(code);
  locale->audioCountry = AudioCountryOf(locale->language, locale->country);
  locale->languagePack = LanguagePackFolder(root, code);
  locale->code = code;
  locale->root = root;
  return locale;
}

// The locale is read anew for every lookup; what follows from it is worked
// out again only when it (or the root) has changed since this thread's last
// lookup. A lookup whose probe is the caller's holds its own reference, as
// the probe may run a lookup that replaces it; any other lookup runs nothing
// in between and borrows it, without touching the reference count.
std::shared_ptr<const LookupLocale> LocaleOf(CSystemData* data, const Search& search) {
  thread_local std::shared_ptr<const LookupLocale> tLast;
  CString scratch;
  const CString& code = FolderAccess::LocaleCode(data, &scratch);
  const CPath& root = FolderAccess::RootPath(data);
  if (!tLast || tLast->code.raw() != code.raw() || tLast->root.raw() != root.raw()) tLast = NewLocale(code, root);
  if (search.RunsCallersProbe()) return tLast;
  return std::shared_ptr<const LookupLocale>(std::shared_ptr<const LookupLocale>(), tLast.get());
}

// An audio name split at its last ".": ext keeps the dot; without one, ext is
// empty. Views of the asked name's bytes: every lookup splits it, and copies
// would cost more than the split.
struct AudioName {
  std::string_view name;
  std::string_view stem;
  std::string_view ext;
};

AudioName SplitAudioName(const CPath& name) {
  std::string_view bytes = name.raw();
  size_t dot = bytes.rfind('.');
  if (dot == std::string_view::npos) return {bytes, bytes, std::string_view()};
  return {bytes, bytes.substr(0, dot), bytes.substr(dot)};
}

bool SearchArt(CSystemData* data, const CPath& name, Search* search) {
  std::shared_ptr<const LookupLocale> locale = LocaleOf(data, *search);
  const CPath& pack = locale->languagePack;
  return search->Try(pack, "Art_", locale->language, "/", name) || search->Try(pack, "Art/", name) ||
         search->Try(FolderAccess::UniversalLanguagePack(data), "Art/", name);
}

// Video paths carry a second "/" before the name: players and their playlists
// were matched against paths of this form.
bool SearchVideo(CSystemData* data, const CPath& name, Search* search) {
  std::shared_ptr<const LookupLocale> locale = LocaleOf(data, *search);
  const CPath& pack = locale->languagePack;
  return search->Try(pack, "Video_", locale->language, "/", "/", name) || search->Try(pack, "Video/", "/", name) ||
         search->Try(FolderAccess::UniversalLanguagePack(data), "Video/", "/", name);
}

bool SearchFont(CSystemData* data, const CPath& name, Search* search) {
  CString scratch;
  FolderAccess::LocaleCode(data, &scratch);  // fonts do not depend on it, but reading it keeps the locale current
  const CPath& base = FolderAccess::BasePath(data);
  return search->Try(FolderAccess::CurrentTitlePath(data), "Fonts/", name) ||
         search->Try(FolderAccess::UniversalLanguagePack(data), "Fonts/", name) || search->Try(base, "Fonts/", name) ||
         search->Try(base, "MQDX/Fonts/", name);
}

// In each folder (the concatenation of `folder`) a WAV recording wins over
// the same name in another format.
template <typename... Folder>
bool SearchAudioIn(const AudioName& audio, Search* search, const Folder&... folder) {
  if (audio.ext != ".wav" && search->Try(folder..., audio.stem, ".wav")) return true;
  return search->Try(folder..., audio.name);
}

bool SearchAudio(CSystemData* data, const AudioName& audio, Search* search) {
  std::shared_ptr<const LookupLocale> locale = LocaleOf(data, *search);
  const CPath& pack = locale->languagePack;
  const CString& country = locale->audioCountry;
  // A country's own recordings are in "Audio_gb/" with names starting "gb_".
  return SearchAudioIn(audio, search, FolderAccess::CurrentTitlePath(data), "Audio/") ||
         SearchAudioIn(audio, search, pack, "Audio_", country, "/", country, "_") ||
         SearchAudioIn(audio, search, pack, "Audio/") ||
         SearchAudioIn(audio, search, FolderAccess::UniversalLanguagePack(data), "Audio/");
}

bool SearchBookAudio(CSystemData* data, const CPath& name, Search* search) {
  std::shared_ptr<const LookupLocale> locale = LocaleOf(data, *search);
  const CPath& pack = locale->languagePack;
  const CString& country = locale->audioCountry;
  const CPath& root = locale->root;
  const CString& language = locale->language;
  return search->Try(root, "Bulk/BookPack_", language, "/", "Audio_", country, "/", country, "_", name) ||
         search->Try(root, "Bulk/BookPack_", language, "/Audio/", name) ||
         search->Try(pack, "Audio_", country, "/", country, "_", name) || search->Try(pack, "Audio/", name) ||
         search->Try(FolderAccess::UniversalLanguagePack(data), "Audio/", name);
}

// The placeholder to look up after `name` was not found; empty when the kind
// has none or `name` already is the placeholder.
CPath PlaceholderFor(tAssetKind kind, const CPath& name) {
  const char* placeholder = RulesOf(kind).placeholder;
  if (placeholder == nullptr) return CPath();
  if (kind != tAssetKind::kAudio) return name.raw() == placeholder ? CPath() : CPath(placeholder);
  AudioName audio = SplitAudioName(name);
  if (audio.stem == placeholder) return CPath();
  std::string path(placeholder);
  path.append(audio.ext);
  return CPath(std::move(path));
}

bool SearchCandidates(CSystemData* data, tAssetKind kind, const CPath& name, Search* search) {
  switch (kind) {
    case tAssetKind::kArt:
      return SearchArt(data, name, search);
    case tAssetKind::kAudio:
      return SearchAudio(data, SplitAudioName(name), search);
    case tAssetKind::kVideo:
      return SearchVideo(data, name, search);
    case tAssetKind::kFont:
      return SearchFont(data, name, search);
    default:
      return SearchBookAudio(data, name, search);
  }
}

}  // namespace
}  // namespace systemdata

bool OpensForReading(const CPath& path) { return Env::Current()->OpensForReading(path.raw()); }

namespace systemdata {
namespace {

// The lookup of `name`; `probe` null opens each candidate, as Find* does.
CPath LookUp(CSystemData* data, tAssetKind kind, const CPath& name, const tAssetProbe* probe) {
  const AssetRules& rules = RulesOf(kind);
  Print(5, rules.trace, name);
  {
    Search search(probe);
    if (SearchCandidates(data, kind, name, &search)) return search.TakeFound();
  }
  Print(1, rules.notFound, name);
  CPath placeholder = PlaceholderFor(kind, name);
  return placeholder.empty() ? CPath() : LookUp(data, kind, placeholder, probe);
}

}  // namespace
}  // namespace systemdata

CPath LookUpAsset(CSystemData* data, tAssetKind kind, const CPath& name, const tAssetProbe& probe) {
  return systemdata::LookUp(data, kind, name, &probe);
}

}  // namespace vireline

using vireline::tAssetKind;
using vireline::systemdata::LookUp;

CPath CSystemData::FindArt(const CPath& name) { return LookUp(this, tAssetKind::kArt, name, nullptr); }
CPath CSystemData::FindAudio(const CPath& name) { return LookUp(this, tAssetKind::kAudio, name, nullptr); }
CPath CSystemData::FindVideo(const CPath& name) { return LookUp(this, tAssetKind::kVideo, name, nullptr); }
CPath CSystemData::FindFont(const CPath& name) { return LookUp(this, tAssetKind::kFont, name, nullptr); }
CPath CSystemData::FindBookAudio(const CPath& name) { return LookUp(this, tAssetKind::kBookAudio, name, nullptr); }
