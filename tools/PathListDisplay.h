// How the content-list subcommands print what a list returned: one path a
// line, or a JSON object with the list and its count.
#ifndef VIRELINE_TOOLS_PATHLISTDISPLAY_H_
#define VIRELINE_TOOLS_PATHLISTDISPLAY_H_

#include <cstdio>
#include <string>
#include <vector>

#include <json/json.h>

#include <vireline/CSystemData.h>
#include <vireline/Types.h>

#include "tools/KeyValueDisplay.h"

namespace vireline {
namespace tools {

// Prints `paths` in listing order; `context` (such as the player) joins the JSON object.
inline int PrintPathList(const std::vector<Glib::ustring>& paths, bool json, const Json::Value& context) {
  if (!json) {
    for (const Glib::ustring& path : paths) std::printf("%s\n", DisplayText(path.c_str()).c_str());
    return kSuccess;
  }
  Json::Value out = context.isObject() ? context : Json::Value(Json::objectValue);
  out["count"] = static_cast<Json::UInt>(paths.size());
  out["paths"] = Json::Value(Json::arrayValue);
  for (const Glib::ustring& path : paths) out["paths"].append(DisplayText(path.c_str()));
  PrintJson(out);
  return kSuccess;
}

// Makes `title` (a package folder) the running title when one is given.
inline void RunTitle(const std::string& title) {
  if (!title.empty()) CSystemData::Instance()->SetCurrentTitlePath(title.back() == '/' ? title : title + "/");
}

}  // namespace tools
}  // namespace vireline

#endif  // VIRELINE_TOOLS_PATHLISTDISPLAY_H_
