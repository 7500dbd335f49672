// Conversion between LTM::Value and JsonCpp's Json::Value, which parses and
// writes for us. Both directions stop at kMaxJsonDepth, so their recursion
// (and JsonCpp's recursive writers and destructor after them) stays shallow.
#ifndef VIRELINE_LTM_JSONTREE_H_
#define VIRELINE_LTM_JSONTREE_H_

#include <exception>
#include <string>

#include <json/json.h>

#include <vireline/LTMJson.h>

namespace LTM {

// JsonCpp's copy of `value`; false when containers nest deeper than kMaxJsonDepth.
bool ToJsonTree(const Value& value, Json::Value* json);

// Parses the document [begin, end) into *root as Reader::parse does: true on
// success; on failure *root is null and *errors says why.
bool ParseJsonText(const char* begin, const char* end, Value* root, std::string* errors);

// A JsonCpp value that converts, and fails to convert, as `value` does:
// the same scalar, or an empty (or one-element) container of the same kind.
Json::Value ConversionProbe(const Value& value);

// `render` (one of JsonCpp's writers) applied to JsonCpp's copy of `value`;
// empty when the value nests too deeply or JsonCpp fails, since JsonCpp's
// exceptions never reach a client.
template <typename Render>
Glib::ustring RenderJson(const Value& value, Render render) {
  try {
    Json::Value json;
    if (!ToJsonTree(value, &json)) return Glib::ustring();
    return Glib::ustring(render(json));
  } catch (const std::exception&) {
    return Glib::ustring();
  }
}

}  // namespace LTM

#endif  // VIRELINE_LTM_JSONTREE_H_
