// The asset lookups against the bare cost of what they must do: the same
// candidate paths opened and closed with open(2)/close(2) at their host paths
// (computed once, outside the timing) plus one write(2) of each line the
// lookup prints (Baseline); and the opens through the platform layer by device
// path (PlatformBaseline), which adds the mapping onto the root. A hit in the
// first candidate, and the full chain of a missing asset that ends in the
// placeholder's last candidate. Both print to /dev/null.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <vireline/CSystemData.h>
#include <vireline/Platform.h>

#include "platform/Env.h"

namespace {

const char kTitle[] = "/QV/Bulk/ProgramFiles/Game/";

// Where the lookups' lines go: /dev/null, one write each, as stderr would take them.
int Sink() {
  static int sink = open("/dev/null", O_WRONLY);
  return sink;
}

// A device root with the locale fr-ca, a running title and the assets the
// benchmarks look up; made once, removed at exit.
class AssetImage {
 public:
  static AssetImage& Get() {
    static AssetImage image;
    image.Activate();
    return image;
  }

  ~AssetImage() { std::filesystem::remove_all(mRoot); }

  // The host paths of device paths, as the baseline opens them.
  std::vector<std::string> Hosts(const std::vector<std::string>& devicePaths) const {
    std::vector<std::string> hosts;
    for (const std::string& path : devicePaths) hosts.push_back(mRoot + path);
    return hosts;
  }

 private:
  AssetImage() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vireline-bench-XXXXXX").string();
    mRoot = mkdtemp(&pattern[0]);
    Write("/QV/Bulk/settings.cfg", "Locale=fr-ca\nCurrProfile=0x00000000\n");
    Write("/QV/Bulk/LanguagePack_fr/Art_fr/hit.png", "png");
    Write("/QV/Bulk/LanguagePack/Art/missingAsset.png", "png");
    Write("/QV/Bulk/ProgramFiles/Game/Audio/hit.wav", "wav");
    Write("/QV/Bulk/LanguagePack/Audio/h_BROM_AudioNotFoundSfx_6.mp3", "mp3");
    Write(std::string(kTitle) + "Fonts/hit.ttf", "ttf");
  }

  void Activate() {
    vireline::SetDeviceRoot(mRoot);
    // The lines of every lookup are formatted and written as on a device, to /dev/null.
    PlatformDebug::SetOutputFunction([](int, int, const char* text) {
      benchmark::DoNotOptimize(write(Sink(), text, std::strlen(text)));
    });
    CSystemData::Instance()->SetLocaleCode("fr-ca");
    CSystemData::Instance()->SetCurrentTitlePath(kTitle);
    std::string font = CSystemData::Instance()->GetBasePath().raw() + "MQDX/Fonts/QVCurry.ttf";
    if (!std::filesystem::exists(mRoot + font)) Write(font, "ttf");
  }

  void Write(const std::string& path, const std::string& content) const {
    std::filesystem::create_directories(std::filesystem::path(mRoot + path).parent_path());
    std::ofstream(mRoot + path) << content;
  }

  std::string mRoot;
};

// What each lookup opens, in order, up to and including the file it returns.
const std::vector<std::string> kArtHit = {"/QV/Bulk/LanguagePack_fr/Art_fr/hit.png"};
const std::vector<std::string> kArtChain = {
    "/QV/Bulk/LanguagePack_fr/Art_fr/gone.png",          "/QV/Bulk/LanguagePack_fr/Art/gone.png",
    "/QV/Bulk/LanguagePack/Art/gone.png",                "/QV/Bulk/LanguagePack_fr/Art_fr/missingAsset.png",
    "/QV/Bulk/LanguagePack_fr/Art/missingAsset.png",     "/QV/Bulk/LanguagePack/Art/missingAsset.png",
};
const std::vector<std::string> kAudioHit = {"/QV/Bulk/ProgramFiles/Game/Audio/hit.wav"};
std::vector<std::string> AudioChain() {
  std::vector<std::string> chain;
  for (const char* stem : {"gone", "h_BROM_AudioNotFoundSfx_6"}) {
    std::string name(stem);
    for (const std::string& folder : {std::string(kTitle) + "Audio/", std::string("/QV/Bulk/LanguagePack_fr/Audio_ca/ca_"),
                                      std::string("/QV/Bulk/LanguagePack_fr/Audio/"),
                                      std::string("/QV/Bulk/LanguagePack/Audio/")}) {
      chain.push_back(folder + name + ".wav");
      chain.push_back(folder + name + ".mp3");
    }
  }
  return chain;
}

// The lines a lookup prints: its trace, and after a miss the not-found
// message and the trace of the placeholder's lookup.
std::vector<std::string> Lines(const char* trace, const char* notFound, const char* name, const char* placeholder) {
  std::vector<std::string> lines;
  char line[256];
  std::snprintf(line, sizeof line, trace, name);
  lines.push_back(line);
  if (placeholder == nullptr) return lines;
  std::snprintf(line, sizeof line, notFound, name);
  lines.push_back(line);
  std::snprintf(line, sizeof line, trace, placeholder);
  lines.push_back(line);
  return lines;
}

const char kArtTrace[] = "CSystemData::FindArt( %s )\n";
const char kArtMissing[] = "CSystemData::FindArt not found %s\n";
const char kAudioTrace[] = "CSystemData::FindAudio( %s )\n";
const char kAudioMissing[] = "CSystemData::FindAudio unable to find audio file %s\n";
const char kFontTrace[] = "CSystemData::FindFont( %s )\n";
const char kFontMissing[] = "CSystemData::FindFont not found %s\n";

std::vector<std::string> FontHit() { return {std::string(kTitle) + "Fonts/hit.ttf"}; }
std::vector<std::string> FontChain() {
  AssetImage::Get();
  std::string base = CSystemData::Instance()->GetBasePath().raw();
  std::vector<std::string> chain;
  for (const char* name : {"gone.ttf", "QVCurry.ttf"}) {
    for (const std::string& folder : {std::string(kTitle) + "Fonts/", std::string("/QV/Bulk/LanguagePack/Fonts/"),
                                      base + "Fonts/", base + "MQDX/Fonts/"}) {
      chain.push_back(folder + name);
    }
  }
  return chain;
}

void RunLookup(benchmark::State& state, CPath (CSystemData::*find)(const CPath&), const char* name,
               const std::vector<std::string>& expectedOpens) {
  AssetImage::Get();
  CSystemData* data = CSystemData::Instance();
  if ((data->*find)(name).raw() != expectedOpens.back()) state.SkipWithError("unexpected lookup result");
  for (auto _ : state) benchmark::DoNotOptimize((data->*find)(name));
  state.counters["opens"] = static_cast<double>(expectedOpens.size());
}

void RunBaseline(benchmark::State& state, const std::vector<std::string>& devicePaths,
                 const std::vector<std::string>& lines) {
  std::vector<std::string> hosts = AssetImage::Get().Hosts(devicePaths);
  int sink = Sink();
  for (auto _ : state) {
    benchmark::DoNotOptimize(write(sink, lines[0].data(), lines[0].size()));
    size_t line = 1;
    for (size_t i = 0; i < hosts.size(); ++i) {
      int fd = open(hosts[i].c_str(), O_RDONLY);
      if (fd >= 0) close(fd);
      benchmark::DoNotOptimize(fd);
      // A chain prints its not-found message and the placeholder's trace halfway.
      if (lines.size() == 3 && i + 1 == hosts.size() / 2) {
        for (; line < 3; ++line) benchmark::DoNotOptimize(write(sink, lines[line].data(), lines[line].size()));
      }
    }
  }
  state.counters["opens"] = static_cast<double>(hosts.size());
}

// The same opens through the platform layer, by device path: what the
// platform's own path mapping adds, apart from the lookup.
void RunPlatformBaseline(benchmark::State& state, const std::vector<std::string>& devicePaths) {
  AssetImage::Get();
  vireline::Env* env = vireline::Env::Current();
  for (auto _ : state) {
    for (const std::string& path : devicePaths) {
      FILE* stream = nullptr;
      if (env->OpenStream(path, "r", &stream).ok()) env->CloseStream(stream);
      benchmark::DoNotOptimize(stream);
    }
  }
  state.counters["opens"] = static_cast<double>(devicePaths.size());
}

void BM_FindArt_FirstCandidate(benchmark::State& state) { RunLookup(state, &CSystemData::FindArt, "hit.png", kArtHit); }
BENCHMARK(BM_FindArt_FirstCandidate);

void BM_FindArt_FirstCandidateBaseline(benchmark::State& state) {
  RunBaseline(state, kArtHit, Lines(kArtTrace, kArtMissing, "hit.png", nullptr));
}
BENCHMARK(BM_FindArt_FirstCandidateBaseline);

void BM_FindArt_FirstCandidatePlatformBaseline(benchmark::State& state) { RunPlatformBaseline(state, kArtHit); }
BENCHMARK(BM_FindArt_FirstCandidatePlatformBaseline);

void BM_FindArt_FallbackChain(benchmark::State& state) { RunLookup(state, &CSystemData::FindArt, "gone.png", kArtChain); }
BENCHMARK(BM_FindArt_FallbackChain);

void BM_FindArt_FallbackChainBaseline(benchmark::State& state) {
  RunBaseline(state, kArtChain, Lines(kArtTrace, kArtMissing, "gone.png", "missingAsset.png"));
}
BENCHMARK(BM_FindArt_FallbackChainBaseline);

void BM_FindArt_FallbackChainPlatformBaseline(benchmark::State& state) { RunPlatformBaseline(state, kArtChain); }
BENCHMARK(BM_FindArt_FallbackChainPlatformBaseline);

void BM_FindAudio_FirstCandidate(benchmark::State& state) { RunLookup(state, &CSystemData::FindAudio, "hit.wav", kAudioHit); }
BENCHMARK(BM_FindAudio_FirstCandidate);

void BM_FindAudio_FirstCandidateBaseline(benchmark::State& state) {
  RunBaseline(state, kAudioHit, Lines(kAudioTrace, kAudioMissing, "hit.wav", nullptr));
}
BENCHMARK(BM_FindAudio_FirstCandidateBaseline);

void BM_FindAudio_FirstCandidatePlatformBaseline(benchmark::State& state) { RunPlatformBaseline(state, kAudioHit); }
BENCHMARK(BM_FindAudio_FirstCandidatePlatformBaseline);

void BM_FindAudio_FallbackChain(benchmark::State& state) { RunLookup(state, &CSystemData::FindAudio, "gone.mp3", AudioChain()); }
BENCHMARK(BM_FindAudio_FallbackChain);

void BM_FindAudio_FallbackChainBaseline(benchmark::State& state) {
  RunBaseline(state, AudioChain(), Lines(kAudioTrace, kAudioMissing, "gone.mp3", "h_BROM_AudioNotFoundSfx_6.mp3"));
}
BENCHMARK(BM_FindAudio_FallbackChainBaseline);

void BM_FindAudio_FallbackChainPlatformBaseline(benchmark::State& state) { RunPlatformBaseline(state, AudioChain()); }
BENCHMARK(BM_FindAudio_FallbackChainPlatformBaseline);

void BM_FindFont_FirstCandidate(benchmark::State& state) { RunLookup(state, &CSystemData::FindFont, "hit.ttf", FontHit()); }
BENCHMARK(BM_FindFont_FirstCandidate);

void BM_FindFont_FirstCandidateBaseline(benchmark::State& state) {
  RunBaseline(state, FontHit(), Lines(kFontTrace, kFontMissing, "hit.ttf", nullptr));
}
BENCHMARK(BM_FindFont_FirstCandidateBaseline);

void BM_FindFont_FirstCandidatePlatformBaseline(benchmark::State& state) { RunPlatformBaseline(state, FontHit()); }
BENCHMARK(BM_FindFont_FirstCandidatePlatformBaseline);

void BM_FindFont_FallbackChain(benchmark::State& state) { RunLookup(state, &CSystemData::FindFont, "gone.ttf", FontChain()); }
BENCHMARK(BM_FindFont_FallbackChain);

void BM_FindFont_FallbackChainBaseline(benchmark::State& state) {
  RunBaseline(state, FontChain(), Lines(kFontTrace, kFontMissing, "gone.ttf", "QVCurry.ttf"));
}
BENCHMARK(BM_FindFont_FallbackChainBaseline);

void BM_FindFont_FallbackChainPlatformBaseline(benchmark::State& state) { RunPlatformBaseline(state, FontChain()); }
BENCHMARK(BM_FindFont_FallbackChainPlatformBaseline);

}  // namespace
