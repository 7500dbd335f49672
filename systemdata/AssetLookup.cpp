// Art, audio, video and fonts by bare file name: the most specific folder
// first (the title, the locale's language pack, a country folder), the
// universal language pack last, and a placeholder so a title always has
// something to show or play.
#include <vireline/AssetLookup.h>

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Env.h"
#include "systemdata/SystemDataInternal.h"

namespace vireline {
namespace systemdata {
namespace {

// What each kind prints and falls back to; null for none.
struct AssetRules {
  const char* trace;
  const char* notFound;
  const char* placeholder;  // for audio, the stem: the asked name's extension is kept
};

const AssetRules& RulesOf(tAssetKind kind) {
  static const AssetRules kArt = {"CSystemData::FindArt( %s )\n", "CSystemData::FindArt not found %s\n",
                                  "missingAsset.png"};
  static const AssetRules kAudio = {"CSystemData::FindAudio( %s )\n",
                                    "CSystemData::FindAudio unable to find audio file %s\n",
                                    "h_BROM_AudioNotFoundSfx_6"};
  static const AssetRules kVideo = {"CSystemData::FindVideo( %s )\n", "CSystemData::FindVideo not found %s\n",
                                    nullptr};
  static const AssetRules kFont = {"CSystemData::FindFont( %s )\n", "CSystemData::FindFont not found %s\n",
                                   "QVCurry.ttf"};
  static const AssetRules kBookAudio = {
      "CSystemData::FindBookAudio( %s ), WARNING: make sure your title has a dependency on a book pack.\n",
      nullptr, nullptr};
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

std::string_view Bytes(const CPath& text) { return text.raw(); }
std::string_view Bytes(const char* text) { return text; }
std::string_view Bytes(std::string_view text) { return text; }

// Concatenates `parts` with a single allocation: a lookup builds up to 16 paths.
template <typename... Parts>
CPath Joined(const Parts&... parts) {
  std::string path;
  path.reserve((Bytes(parts).size() + ...));
  (path.append(Bytes(parts)), ...);
  return CPath(std::move(path));
}

// Tries candidates in order and remembers the one the probe accepted.
class Search {
 public:
  explicit Search(const tAssetProbe& probe) : mProbe(probe) {}

  // True when `path` was accepted (the search is then over).
  bool Try(CPath path) {
    if (!mProbe(path)) return false;
    mFound = std::move(path);
    return true;
  }

  // Hands over the accepted path.
  CPath TakeFound() { return std::move(mFound); }

 private:
  const tAssetProbe& mProbe;
  CPath mFound;
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

// The locale is read anew for every lookup; what follows from it is worked
// out again only when it (or the root) has changed since this thread's last
// lookup. A lookup keeps its own reference, so a nested one may replace it.
std::shared_ptr<const LookupLocale> LocaleOf(CSystemData* data) {
  thread_local std::shared_ptr<const LookupLocale> tLast;
  CString code = data->GetLocaleCode();
  CPath root = data->GetRootPath();
  if (tLast && tLast->code.raw() == code.raw() && tLast->root.raw() == root.raw()) return tLast;
  auto locale = std::make_shared<LookupLocale>();
  locale->language = LanguageOf(code);
  locale->country = CountryOf(code);
  locale->audioCountry = AudioCountryOf(locale->language, locale->country);
  locale->languagePack = LanguagePackFolder(root, code);
  locale->code = std::move(code);
  locale->root = std::move(root);
  tLast = locale;
  return tLast;
}

// A folder and file-name prefix for a country's own recordings ("Audio_gb/gb_").
CPath CountryAudio(const CPath& folder, const CString& country) {
  return Joined(folder, "Audio_", country, "/", country, "_");
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
  std::shared_ptr<const LookupLocale> locale = LocaleOf(data);
  const CPath& pack = locale->languagePack;
  return search->Try(Joined(pack, "Art_", locale->language, "/", name)) || search->Try(Joined(pack, "Art/", name)) ||
         search->Try(Joined(data->GetLanguagePackPath(false), "Art/", name));
}

// Video paths carry a second "/" before the name: players and their playlists
// were matched against paths of this form.
bool SearchVideo(CSystemData* data, const CPath& name, Search* search) {
  std::shared_ptr<const LookupLocale> locale = LocaleOf(data);
  const CPath& pack = locale->languagePack;
  return search->Try(Joined(pack, "Video_", locale->language, "/", "/", name)) ||
         search->Try(Joined(pack, "Video/", "/", name)) ||
         search->Try(Joined(data->GetLanguagePackPath(false), "Video/", "/", name));
}

bool SearchFont(CSystemData* data, const CPath& name, Search* search) {
  data->GetLocaleCode();  // fonts do not depend on it, but reading it keeps the locale current
  CPath base = data->GetBasePath();
  return search->Try(Joined(data->GetCurrentTitlePath(), "Fonts/", name)) ||
         search->Try(Joined(data->GetLanguagePackPath(false), "Fonts/", name)) ||
         search->Try(Joined(base, "Fonts/", name)) || search->Try(Joined(base, "MQDX/Fonts/", name));
}

// In each folder a WAV recording wins over the same name in another format.
bool SearchAudioIn(const CPath& folder, const AudioName& audio, Search* search) {
  if (audio.ext != ".wav" && search->Try(Joined(folder, audio.stem, ".wav"))) return true;
  return search->Try(Joined(folder, audio.name));
}

bool SearchAudio(CSystemData* data, const AudioName& audio, Search* search) {
  std::shared_ptr<const LookupLocale> locale = LocaleOf(data);
  const CPath& pack = locale->languagePack;
  return SearchAudioIn(Joined(data->GetCurrentTitlePath(), "Audio/"), audio, search) ||
         SearchAudioIn(CountryAudio(pack, locale->audioCountry), audio, search) ||
         SearchAudioIn(Joined(pack, "Audio/"), audio, search) ||
         SearchAudioIn(Joined(data->GetLanguagePackPath(false), "Audio/"), audio, search);
}

bool SearchBookAudio(CSystemData* data, const CPath& name, Search* search) {
  std::shared_ptr<const LookupLocale> locale = LocaleOf(data);
  const CPath& pack = locale->languagePack;
  CPath bookPack = Joined(locale->root, "Bulk/BookPack_", locale->language);
  return search->Try(Joined(CountryAudio(Joined(bookPack, "/"), locale->audioCountry), name)) ||
         search->Try(Joined(bookPack, "/Audio/", name)) ||
         search->Try(Joined(CountryAudio(pack, locale->audioCountry), name)) || search->Try(Joined(pack, "Audio/", name)) ||
         search->Try(Joined(data->GetLanguagePackPath(false), "Audio/", name));
}

// The placeholder to look up after `name` was not found; empty when the kind
// has none or `name` already is the placeholder.
CPath PlaceholderFor(tAssetKind kind, const CPath& name) {
  const char* placeholder = RulesOf(kind).placeholder;
  if (placeholder == nullptr) return CPath();
  if (kind != tAssetKind::kAudio) return name.raw() == placeholder ? CPath() : CPath(placeholder);
  AudioName audio = SplitAudioName(name);
  return audio.stem == placeholder ? CPath() : Joined(placeholder, audio.ext);
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

CPath LookUpAsset(CSystemData* data, tAssetKind kind, const CPath& name, const tAssetProbe& probe) {
  const systemdata::AssetRules& rules = systemdata::RulesOf(kind);
  systemdata::DebugOut(5, rules.trace, name.c_str());
  systemdata::Search search(probe);
  if (systemdata::SearchCandidates(data, kind, name, &search)) return search.TakeFound();
  if (rules.notFound != nullptr) systemdata::DebugOut(1, rules.notFound, name.c_str());
  CPath placeholder = systemdata::PlaceholderFor(kind, name);
  return placeholder.empty() ? CPath() : LookUpAsset(data, kind, placeholder, probe);
}

}  // namespace vireline

using vireline::LookUpAsset;
using vireline::OpensForReading;
using vireline::tAssetKind;

CPath CSystemData::FindArt(const CPath& name) { return LookUpAsset(this, tAssetKind::kArt, name, OpensForReading); }

CPath CSystemData::FindAudio(const CPath& name) {
  return LookUpAsset(this, tAssetKind::kAudio, name, OpensForReading);
}

CPath CSystemData::FindVideo(const CPath& name) {
  return LookUpAsset(this, tAssetKind::kVideo, name, OpensForReading);
}

CPath CSystemData::FindFont(const CPath& name) {
  return LookUpAsset(this, tAssetKind::kFont, name, OpensForReading);
}

CPath CSystemData::FindBookAudio(const CPath& name) {
  return LookUpAsset(this, tAssetKind::kBookAudio, name, OpensForReading);
}
