// The asset lookups against the bare cost of their file tests: the same
// candidate paths opened and closed with the C library at their host paths
// under the same device root (Baseline), and through the platform layer by
// device path, which adds the mapping onto the root (PlatformBaseline). A hit
// in the first candidate, and the full chain of a missing asset that ends in
// the placeholder's last candidate.
#include <benchmark/benchmark.h>

#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <vireline/CSystemData.h>
#include <vireline/Platform.h>

#include "platform/Env.h"

namespace {

const char kTitle[] = "/QV/Bulk/ProgramFiles/Game/";

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
  }

  void Activate() {
    vireline::SetDeviceRoot(mRoot);
    // The traces of every lookup are formatted as on a device, but not printed.
    PlatformDebug::SetOutputFunction([](int, int, const char*) {});
    CSystemData::Instance()->SetLocaleCode("fr-ca");
    CSystemData::Instance()->SetCurrentTitlePath(kTitle);
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

void RunLookup(benchmark::State& state, CPath (CSystemData::*find)(const CPath&), const char* name,
               const std::vector<std::string>& expectedOpens) {
  AssetImage::Get();
  CSystemData* data = CSystemData::Instance();
  if ((data->*find)(name).raw() != expectedOpens.back()) state.SkipWithError("unexpected lookup result");
  for (auto _ : state) benchmark::DoNotOptimize((data->*find)(name));
  state.counters["opens"] = static_cast<double>(expectedOpens.size());
}

void RunBaseline(benchmark::State& state, const std::vector<std::string>& devicePaths) {
  std::vector<std::string> hosts = AssetImage::Get().Hosts(devicePaths);
  for (auto _ : state) {
    for (const std::string& host : hosts) {
      FILE* stream = std::fopen(host.c_str(), "r");
      if (stream != nullptr) std::fclose(stream);
      benchmark::DoNotOptimize(stream);
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

void BM_FindArt_FirstCandidate(benchmark::State& state) {
  RunLookup(state, &CSystemData::FindArt, "hit.png", kArtHit);
}
BENCHMARK(BM_FindArt_FirstCandidate);

void BM_FindArt_FirstCandidateBaseline(benchmark::State& state) { RunBaseline(state, kArtHit); }
BENCHMARK(BM_FindArt_FirstCandidateBaseline);

void BM_FindArt_FirstCandidatePlatformBaseline(benchmark::State& state) { RunPlatformBaseline(state, kArtHit); }
BENCHMARK(BM_FindArt_FirstCandidatePlatformBaseline);

void BM_FindArt_FallbackChain(benchmark::State& state) {
  RunLookup(state, &CSystemData::FindArt, "gone.png", kArtChain);
}
BENCHMARK(BM_FindArt_FallbackChain);

void BM_FindArt_FallbackChainBaseline(benchmark::State& state) { RunBaseline(state, kArtChain); }
BENCHMARK(BM_FindArt_FallbackChainBaseline);

void BM_FindArt_FallbackChainPlatformBaseline(benchmark::State& state) { RunPlatformBaseline(state, kArtChain); }
BENCHMARK(BM_FindArt_FallbackChainPlatformBaseline);

void BM_FindAudio_FirstCandidate(benchmark::State& state) {
  RunLookup(state, &CSystemData::FindAudio, "hit.wav", kAudioHit);
}
BENCHMARK(BM_FindAudio_FirstCandidate);

void BM_FindAudio_FirstCandidateBaseline(benchmark::State& state) { RunBaseline(state, kAudioHit); }
BENCHMARK(BM_FindAudio_FirstCandidateBaseline);

void BM_FindAudio_FirstCandidatePlatformBaseline(benchmark::State& state) { RunPlatformBaseline(state, kAudioHit); }
BENCHMARK(BM_FindAudio_FirstCandidatePlatformBaseline);

void BM_FindAudio_FallbackChain(benchmark::State& state) {
  RunLookup(state, &CSystemData::FindAudio, "gone.mp3", AudioChain());
}
BENCHMARK(BM_FindAudio_FallbackChain);

void BM_FindAudio_FallbackChainBaseline(benchmark::State& state) { RunBaseline(state, AudioChain()); }
BENCHMARK(BM_FindAudio_FallbackChainBaseline);

void BM_FindAudio_FallbackChainPlatformBaseline(benchmark::State& state) { RunPlatformBaseline(state, AudioChain()); }
BENCHMARK(BM_FindAudio_FallbackChainPlatformBaseline);

}  // namespace
