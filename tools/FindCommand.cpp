// `vireline find art|audio|video|font|bookaudio NAME`: the file a title gets
// for an asset name, and with --explain every path the library tries, in the
// order it tries them, with its messages. The explanation runs the library's
// own lookup, so it shows exactly what a title's lookup would do.
#include <cstdio>
#include <map>
#include <string>

#include <vireline/vireline.h>

#include "tools/Commands.h"
#include "tools/SystemDataMessages.h"

namespace vireline {
namespace tools {
namespace {

const std::map<std::string, tAssetKind> kKinds = {
    {"art", tAssetKind::kArt},   {"audio", tAssetKind::kAudio},         {"video", tAssetKind::kVideo},
    {"font", tAssetKind::kFont}, {"bookaudio", tAssetKind::kBookAudio},
};

// Reports each candidate as the lookup tries it.
bool ExplainCandidate(const CPath& path) {
  bool found = OpensForReading(path);
  std::printf("  %-8s %s\n", found ? "found" : "missing", path.c_str());
  return found;
}

int RunFind(const std::string& kind, const std::string& name, const std::string& title, bool explain) {
  if (name.empty()) {  // the lookup would try the asset folders themselves
    std::fprintf(stderr, "vireline find: the asset name is empty\n");
    return kUsage;
  }
  RouteSystemDataMessages(explain);
  CSystemData* data = CSystemData::Instance();
  if (!title.empty()) data->SetCurrentTitlePath(title.back() == '/' ? title : title + "/");
  if (explain) {
    std::printf("locale %s, title %s\n", data->GetLocaleCode().c_str(),
                data->GetCurrentTitlePath().empty() ? "(none)" : data->GetCurrentTitlePath().c_str());
  }
  tAssetProbe probe = explain ? ExplainCandidate : OpensForReading;
  CPath found = LookUpAsset(data, kKinds.at(kind), name, probe);
  if (explain) {
    std::printf("result: %s\n", found.empty() ? "(none)" : found.c_str());
  } else if (!found.empty()) {
    std::printf("%s\n", found.c_str());
  }
  if (found.empty()) {
    if (!explain) std::fprintf(stderr, "vireline find: %s %s: not found\n", kind.c_str(), name.c_str());
    return kNotFound;
  }
  return kSuccess;
}

}  // namespace

void RegisterFindCommand(CLI::App& program, Action* action) {
  auto* find = program.add_subcommand("find", "Look up an art, audio, video, font or book audio file as a title would");
  static std::string kind, name, title;  // must outlive the parse and the action
  static bool explain = false;
  find->add_option("KIND", kind, "art, audio, video, font or bookaudio")
      ->required()
      ->check(CLI::IsMember({"art", "audio", "video", "font", "bookaudio"}));
  find->add_option("NAME", name, "The asset's file name, without a folder")->required();
  find->add_option("--title", title, "The running title's package folder (a device path)");
  find->add_flag("--explain", explain, "Print every path tried, in order, with the lookup's messages");
  find->callback([action] { *action = [] { return RunFind(kind, name, title, explain); }; });
}

}  // namespace tools
}  // namespace vireline
