#include "ltm/JsonTree.h"

#include <string>
#include <utility>

#include "ltm/Utf8Check.h"
#include "ltm/ValueAccess.h"

namespace LTM {
namespace {

// Json::Value of a scalar; null for containers.
Json::Value ScalarToJson(const Value& value) {
  switch (value.type()) {
    case intValue: return Json::Value(static_cast<Json::Int64>(ValueAccess::IntOf(value)));
    case uintValue: return Json::Value(static_cast<Json::UInt64>(ValueAccess::UIntOf(value)));
    case realValue: return Json::Value(ValueAccess::RealOf(value));
    case stringValue: return Json::Value(ValueAccess::StringOf(value));
    case booleanValue: return Json::Value(ValueAccess::BoolOf(value));
    case arrayValue: return Json::Value(Json::arrayValue);
    case objectValue: return Json::Value(Json::objectValue);
    case nullValue: break;
  }
  return Json::Value();
}

bool ToJson(const Value& value, Json::Value* json, unsigned depth) {
  *json = ScalarToJson(value);
  if (value.type() != arrayValue && value.type() != objectValue) return true;
  if (depth >= kMaxJsonDepth) return false;
  if (value.type() == arrayValue) {
    for (const auto& element : ValueAccess::ArrayOf(value)) {
      Json::Value child;
      if (!ToJson(*element, &child, depth + 1)) return false;
      json->append(std::move(child));
    }
    return true;
  }
  for (const auto& member : ValueAccess::ObjectOf(value)) {
    const std::string& key = member.first.raw();
    Json::Value& child = (*json)[key];
    if (!ToJson(member.second, &child, depth + 1)) return false;
  }
  return true;
}

bool FromJson(const Json::Value& json, Value* value, unsigned depth);

// The elements of JsonCpp array `json` into `array`, room made for all at once.
bool ElementsFromJson(const Json::Value& json, Value* array, unsigned depth) {
  ValueAccess::ReserveElements(*array, json.size());
  for (const Json::Value& element : json) {
    if (!FromJson(element, &ValueAccess::NewElement(*array), depth + 1)) return false;
  }
  return true;
}

// The members of JsonCpp object `json` into `object`. JsonCpp keeps members in
// the byte order of their keys, as Value does, so each is added at the end
// without searching, and its key is copied once.
bool MembersFromJson(const Json::Value& json, Value* object, unsigned depth) {
  for (auto member = json.begin(), end = json.end(); member != end; ++member) {
    const char* keyEnd = nullptr;
    const char* key = member.memberName(&keyEnd);
    if (!FromJson(*member, &ValueAccess::NewMember(*object, key, keyEnd), depth + 1)) return false;
  }
  return true;
}

// `json` into `value`, a null value (every value is new as the tree is built).
bool FromJson(const Json::Value& json, Value* value, unsigned depth) {
  const char* begin = nullptr;
  const char* end = nullptr;
  Json::ValueType type = json.type();
  switch (type) {
    case Json::nullValue: return true;
    case Json::intValue: ValueAccess::SetInt(*value, json.asLargestInt()); return true;
    case Json::uintValue: ValueAccess::SetUInt(*value, json.asLargestUInt()); return true;
    case Json::realValue: ValueAccess::SetReal(*value, json.asDouble()); return true;
    case Json::stringValue:
      if (!json.getString(&begin, &end)) begin = end = "";
      ValueAccess::SetString(*value, begin, end);
      return true;
    case Json::booleanValue: ValueAccess::SetBool(*value, json.asBool()); return true;
    case Json::arrayValue: ValueAccess::SetContainer(*value, arrayValue); break;
    case Json::objectValue: ValueAccess::SetContainer(*value, objectValue); break;
  }
  if (depth >= kMaxJsonDepth) return false;
  if (type == Json::arrayValue) return ElementsFromJson(json, value, depth);
  return MembersFromJson(json, value, depth);
}

}  // namespace

bool ToJsonTree(const Value& value, Json::Value* json) { return ToJson(value, json, 0); }

bool ParseJsonText(const char* begin, const char* end, Value* root, std::string* errors) {
  errors->clear();
  *root = Value();
  // Documents are UTF-8; a string of any other bytes would reach clients as
  // a Glib::ustring that Glib's character functions cannot walk.
  if (!IsValidUtf8(begin, static_cast<size_t>(end - begin))) {
    *errors = "The document is not valid UTF-8.\n";
    return false;
  }
  Json::Value json;
  try {
    Json::Reader reader;
    if (!reader.parse(begin, end, json, false)) {
      *errors = reader.getFormattedErrorMessages();
      return false;
    }
  } catch (const std::exception& error) {  // JsonCpp throws past its nesting limit
    *errors = std::string(error.what()) + "\n";
    return false;
  }
  if (!FromJson(json, root, 0)) {
    *root = Value();  // no half-converted document
    *errors = "The document is nested too deeply.\n";
    return false;
  }
  return true;
}

Json::Value ConversionProbe(const Value& value) {
  Json::Value probe = ScalarToJson(value);
  if (value.type() == arrayValue && !value.empty()) probe.append(Json::Value());
  if (value.type() == objectValue && !value.empty()) probe["member"] = Json::Value();
  return probe;
}

}  // namespace LTM
