// Conversions and kind tests of LTM::Value. They ask JsonCpp itself, through a
// probe of the same kind and scalar, so every conversion succeeds, truncates
// and fails exactly as JsonCpp's does and a failure carries JsonCpp's text.
#include <vireline/LTMJson.h>

#include <exception>

#include "ltm/JsonTree.h"
#include "ltm/JsonTypeError.h"
#include "ltm/ValueAccess.h"

namespace LTM {
namespace {

// `convert` applied to the probe of `value`; on JsonCpp's refusal asserts
// (naming `operation` at `line`) and gives the type's empty value.
template <typename Result, typename Convert>
Result ConvertOrAssert(const Value& value, int line, const char* operation, Convert convert) {
  try {
    return convert(ConversionProbe(value));
  } catch (const std::exception& error) {
    ReportTypeError(line, operation, error.what());
  }
  return Result();
}

// `test` applied to the probe of `value`; false if JsonCpp throws.
template <typename Test>
bool Ask(const Value& value, Test test) {
  try {
    return test(ConversionProbe(value));
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace

Glib::ustring Value::asString() const {
  if (mType == stringValue) return Glib::ustring(mString);
  return ConvertOrAssert<Glib::ustring>(*this, kLineAsString, "Value::asString()",
                                        [](const Json::Value& probe) { return Glib::ustring(probe.asString()); });
}

const char* Value::asCString() const {
  if (mType == stringValue) return mString.c_str();
  ConvertOrAssert<bool>(*this, kLineAsCString, "Value::asCString()",
                        [](const Json::Value& probe) { return probe.asCString() != nullptr; });
  return "";
}

Int Value::asInt() const {
  return ConvertOrAssert<Int>(*this, kLineAsInt, "Value::asInt()", [](const Json::Value& probe) { return probe.asInt(); });
}

UInt Value::asUInt() const {
  return ConvertOrAssert<UInt>(*this, kLineAsUInt, "Value::asUInt()",
                               [](const Json::Value& probe) { return probe.asUInt(); });
}

Int64 Value::asInt64() const {
  return ConvertOrAssert<Int64>(*this, kLineAsInt64, "Value::asInt64()",
                                [](const Json::Value& probe) { return static_cast<Int64>(probe.asInt64()); });
}

UInt64 Value::asUInt64() const {
  return ConvertOrAssert<UInt64>(*this, kLineAsUInt64, "Value::asUInt64()",
                                 [](const Json::Value& probe) { return static_cast<UInt64>(probe.asUInt64()); });
}

float Value::asFloat() const {
  return ConvertOrAssert<float>(*this, kLineAsFloat, "Value::asFloat()",
                                [](const Json::Value& probe) { return probe.asFloat(); });
}

double Value::asDouble() const {
  return ConvertOrAssert<double>(*this, kLineAsDouble, "Value::asDouble()",
                                 [](const Json::Value& probe) { return probe.asDouble(); });
}

bool Value::asBool() const {
  return ConvertOrAssert<bool>(*this, kLineAsBool, "Value::asBool()",
                               [](const Json::Value& probe) { return probe.asBool(); });
}

bool Value::isNull() const { return mType == nullValue; }
bool Value::isBool() const { return mType == booleanValue; }
bool Value::isString() const { return mType == stringValue; }
bool Value::isArray() const { return mType == arrayValue; }
bool Value::isObject() const { return mType == objectValue; }
bool Value::isInt() const { return Ask(*this, [](const Json::Value& probe) { return probe.isInt(); }); }
bool Value::isInt64() const { return Ask(*this, [](const Json::Value& probe) { return probe.isInt64(); }); }
bool Value::isUInt() const { return Ask(*this, [](const Json::Value& probe) { return probe.isUInt(); }); }
bool Value::isUInt64() const { return Ask(*this, [](const Json::Value& probe) { return probe.isUInt64(); }); }
bool Value::isIntegral() const { return Ask(*this, [](const Json::Value& probe) { return probe.isIntegral(); }); }
bool Value::isDouble() const { return Ask(*this, [](const Json::Value& probe) { return probe.isDouble(); }); }
bool Value::isNumeric() const { return Ask(*this, [](const Json::Value& probe) { return probe.isNumeric(); }); }

bool Value::isConvertibleTo(ValueType other) const {
  return Ask(*this, [other](const Json::Value& probe) {
    return probe.isConvertibleTo(static_cast<Json::ValueType>(other));
  });
}

}  // namespace LTM
