// What the reader, the writers and the comparison see of LTM::Value's inside.
#ifndef VIRELINE_LTM_VALUEACCESS_H_
#define VIRELINE_LTM_VALUEACCESS_H_

#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <vireline/LTMJson.h>

namespace LTM {

class ValueAccess {
 public:
  typedef Value::ArrayValues ArrayValues;

  static Int64 IntOf(const Value& value) { return value.mScalar.intValue; }
  static UInt64 UIntOf(const Value& value) { return value.mScalar.uintValue; }
  static double RealOf(const Value& value) { return value.mScalar.realValue; }
  static bool BoolOf(const Value& value) { return value.mScalar.boolValue; }
  static const std::string& StringOf(const Value& value) { return value.mString; }
  static const ArrayValues& ArrayOf(const Value& value) { return value.mArray; }
  // Only for an object.
  static const Value::ObjectValues& ObjectOf(const Value& value) { return *value.mObject; }

  // True when `value` holds elements or members; inline, as releasing a tree
  // asks it of every value.
  static bool HasChildren(const Value& value) {
    return !value.mArray.empty() || (value.mObject && !value.mObject->empty());
  }

  // A string value taking over `bytes`.
  static Value StringValue(std::string&& bytes) {
    Value value(stringValue);
    value.mString = std::move(bytes);
    return value;
  }

  // The setters below turn a null value (and only a null one) into another
  // kind in place, with no temporary value to move and destroy: the JSON
  // reader fills every new value of a document this way.
  static void SetInt(Value& null, Int64 number) {
    null.mType = intValue;
    null.mScalar.intValue = number;
  }
  static void SetUInt(Value& null, UInt64 number) {
    null.mType = uintValue;
    null.mScalar.uintValue = number;
  }
  static void SetReal(Value& null, double number) {
    null.mType = realValue;
    null.mScalar.realValue = number;
  }
  static void SetBool(Value& null, bool truth) {
    null.mType = booleanValue;
    null.mScalar.boolValue = truth;
  }
  // A copy of the bytes [begin, end), made in one step (the string is empty).
  static void SetString(Value& null, const char* begin, const char* end) {
    null.mType = stringValue;
    null.mString = std::string(begin, end);
  }
  // An empty array or object: a null value has no scalar, string or elements to clear.
  static void SetContainer(Value& null, ValueType type) {
    null.mType = type;
    if (type == objectValue) null.mObject = std::make_unique<Value::ObjectValues>();
  }

  // Makes room for `count` elements in an array.
  static void ReserveElements(Value& array, size_t count) { array.mArray.reserve(count); }

  // A new null element at the end of an array.
  static Value& NewElement(Value& array) {
    array.mArray.push_back(std::make_unique<Value>());
    return *array.mArray.back();
  }

  // A new null member `key` of an object that has no such member yet; keys
  // that come in key order are added at once, others are still placed right.
  static Value& NewMember(Value& object, const char* begin, const char* end) {
    Value::ObjectValues& members = *object.mObject;
    return members
        .emplace_hint(members.end(), std::piecewise_construct, std::forward_as_tuple(begin, end),
                      std::forward_as_tuple())
        ->second;
  }

  // Empties the containers of `value`, `depth` levels below the value being
  // released: by recursion while that stays shallow, and below that by moving
  // the children that have children of their own into *deeper.
  static void ReleaseChildren(Value& value, unsigned depth, std::vector<Value>* deeper);

  // The member `key` of an object (or null), added when missing.
  static Value& Member(Value& value, std::string_view key) { return value.MemberReference(key); }
};

}  // namespace LTM

#endif  // VIRELINE_LTM_VALUEACCESS_H_
