#include "ltm/JsonTree.h"

#include <string>
#include <utility>

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

bool FromJson(const Json::Value& json, Value* value, unsigned depth) {
  switch (json.type()) {
    case Json::nullValue: *value = Value(); return true;
    case Json::intValue: *value = Value(static_cast<Int64>(json.asLargestInt())); return true;
    case Json::uintValue: *value = Value(static_cast<UInt64>(json.asLargestUInt())); return true;
    case Json::realValue: *value = Value(json.asDouble()); return true;
    case Json::stringValue: *value = ValueAccess::StringValue(json.asString()); return true;
    case Json::booleanValue: *value = Value(json.asBool()); return true;
    case Json::arrayValue: *value = Value(arrayValue); break;
    case Json::objectValue: *value = Value(objectValue); break;
  }
  if (depth >= kMaxJsonDepth) return false;
  if (json.type() == Json::arrayValue) {
    for (Json::ArrayIndex i = 0; i < json.size(); ++i) {
      if (!FromJson(json[i], &value->append(Value()), depth + 1)) return false;
    }
    return true;
  }
  for (auto member = json.begin(); member != json.end(); ++member) {
    if (!FromJson(*member, &ValueAccess::Member(*value, member.name()), depth + 1)) return false;
  }
  return true;
}

}  // namespace

bool ToJsonTree(const Value& value, Json::Value* json) { return ToJson(value, json, 0); }

bool FromJsonTree(const Json::Value& json, Value* value) { return FromJson(json, value, 0); }

Json::Value ConversionProbe(const Value& value) {
  Json::Value probe = ScalarToJson(value);
  if (value.type() == arrayValue && !value.empty()) probe.append(Json::Value());
  if (value.type() == objectValue && !value.empty()) probe["member"] = Json::Value();
  return probe;
}

}  // namespace LTM
