#include <vireline/LTMJson.h>

#include "ltm/JsonTree.h"

namespace LTM {

Glib::ustring StyledWriter::write(const Value& root) {
  return RenderJson(root, [](const Json::Value& json) { return Json::StyledWriter().write(json); });
}

// Lives with the styled writer: the other way JsonCpp indents a document.
Glib::ustring Value::toStyledString() const {
  return RenderJson(*this, [](const Json::Value& json) { return json.toStyledString(); });
}

}  // namespace LTM
