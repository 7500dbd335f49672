#include <vireline/LTMJson.h>

#include "ltm/JsonTree.h"

namespace LTM {

Glib::ustring FastWriter::write(const Value& root) {
  return RenderJson(root, [](const Json::Value& json) { return Json::FastWriter().write(json); });
}

}  // namespace LTM
