// What the reader, the writers and the comparison see of LTM::Value's inside.
#ifndef VIRELINE_LTM_VALUEACCESS_H_
#define VIRELINE_LTM_VALUEACCESS_H_

#include <string>
#include <string_view>

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

  // A string value taking over `bytes`.
  static Value StringValue(std::string&& bytes) {
    Value value(stringValue);
    value.mString = std::move(bytes);
    return value;
  }

  // The member `key` of an object (or null), added when missing.
  static Value& Member(Value& value, std::string_view key) { return value.MemberReference(key); }
};

}  // namespace LTM

#endif  // VIRELINE_LTM_VALUEACCESS_H_
