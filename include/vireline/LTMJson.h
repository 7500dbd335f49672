// The JSON value tree, reader and writers of the data objects. The interface
// is JsonCpp's, with these differences for the devices' applications:
//  - text is Glib::ustring throughout (constructor, asString, operator[],
//    isMember, get, removeMember, Reader::parse);
//  - Value::asMap() hands out an object's members as a map;
//  - a type error (asString on an object, a key on an array, ...) never
//    throws: it raises BaseUtils::Assert with the source
//    "VirelineJSON/Src/json_value" and JsonCpp's own text, and the call then
//    answers an empty or zero value (or changes nothing).
// Object keys are ordered byte by byte, as JsonCpp orders them, whatever the
// process locale. Parsing and writing are JsonCpp's own, so files read and
// written here are byte for byte what JsonCpp reads and writes.
#ifndef VIRELINE_LTMJSON_H_
#define VIRELINE_LTMJSON_H_

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <glibmm/ustring.h>

#include <vireline/Export.h>

namespace LTM {

// The kinds of value, in JsonCpp's order (which is also the order operator< sorts kinds in).
enum ValueType {
  nullValue = 0,
  intValue,
  uintValue,
  realValue,
  stringValue,
  booleanValue,
  arrayValue,
  objectValue
};

typedef int Int;
typedef unsigned int UInt;
typedef int64_t Int64;
typedef uint64_t UInt64;
typedef unsigned int ArrayIndex;

// Containers nested deeper than this are refused by the reader and the
// writers: JsonCpp's reader cannot read a deeper document back, and its
// recursive writers must not run out of stack on the devices.
const unsigned int kMaxJsonDepth = 1000;

class VIRELINE_EXPORT Value {
 public:
  // Orders keys by their bytes (never by the locale's collation).
  struct VIRELINE_EXPORT KeyLess {
    typedef void is_transparent;
    // True when the bytes of `a` sort before those of `b`.
    bool operator()(const Glib::ustring& a, const Glib::ustring& b) const { return a.raw() < b.raw(); }
    // The same, for looking keys up by bytes without building a ustring.
    bool operator()(const Glib::ustring& a, std::string_view b) const { return std::string_view(a.raw()) < b; }
    // The same, with the bytes on the left.
    bool operator()(std::string_view a, const Glib::ustring& b) const { return a < std::string_view(b.raw()); }
  };

  // An object's members by key.
  typedef std::map<Glib::ustring, Value, KeyLess> ObjectValues;

  // An object's keys, in key order.
  typedef std::vector<Glib::ustring> Members;

  // An empty value of `type` (0, "", false, [] or {} for the non-null kinds).
  Value(ValueType type = nullValue);
  // A signed number (kind intValue), kept with its kind as JsonCpp keeps it.
  Value(Int value);
  // An unsigned number (kind uintValue).
  Value(UInt value);
  // A signed 64-bit number (kind intValue).
  Value(Int64 value);
  // An unsigned 64-bit number (kind uintValue).
  Value(UInt64 value);
  // A real number (kind realValue), even when it has no fraction.
  Value(double value);
  // A string; null `value` gives "".
  Value(const char* value);
  // A string holding the bytes of `value`.
  Value(const Glib::ustring& value);
  // true or false (kind booleanValue).
  Value(bool value);

  // A deep copy.
  Value(const Value& other);
  // Takes the tree of `other`, which becomes null.
  Value(Value&& other) noexcept;
  // Replaces this tree by a deep copy of `other`.
  Value& operator=(const Value& other);
  // Replaces this tree by that of `other`, which becomes null.
  Value& operator=(Value&& other) noexcept;
  // Releases the tree, however deeply nested.
  ~Value();

  // Exchanges the trees of two values.
  void swap(Value& other) noexcept;

  // The kind of this value.
  ValueType type() const { return mType; }

  // Orders as JsonCpp does: by kind first, then by content (containers by size, then member-wise).
  bool operator<(const Value& other) const;
  // True unless `other` sorts before this value.
  bool operator<=(const Value& other) const;
  // True unless this value sorts before `other`.
  bool operator>=(const Value& other) const;
  // True when `other` sorts before this value.
  bool operator>(const Value& other) const;
  // True for the same kind and content (1 and 1u differ, as in JsonCpp).
  bool operator==(const Value& other) const;
  bool operator!=(const Value& other) const;
  // Negative, 0 or positive as this value sorts before, with or after `other`.
  int compare(const Value& other) const;

  // The text of a string, or of null, a bool or a number as JsonCpp spells it; asserts on a container.
  Glib::ustring asString() const;
  // The bytes of a string (valid until the value changes); asserts and gives "" on any other kind.
  const char* asCString() const;
  // The number (a real cut toward zero; true 1, false and null 0); asserts and
  // gives 0 for a string, a container or a number that does not fit Int.
  Int asInt() const;
  // As asInt, for the range of UInt (so a negative number asserts).
  UInt asUInt() const;
  // As asInt, for the range of Int64.
  Int64 asInt64() const;
  // As asInt, for the range of UInt64 (so a negative number asserts).
  UInt64 asUInt64() const;
  // The number (true 1, false and null 0); asserts and gives 0 for a string or a container.
  float asFloat() const;
  // As asFloat, in double precision.
  double asDouble() const;
  // The truth of a bool, number or null; asserts and gives false on strings and containers.
  bool asBool() const;
  // A copy of an object's members; empty for null; asserts and gives an empty map on any other kind.
  ObjectValues asMap() const;

  // Kind tests, with JsonCpp's meaning (isInt: an integral number that fits Int, and so on).
  bool isNull() const;
  // True for true and false only (never for a number).
  bool isBool() const;
  // True for a number without fraction in the range of Int (a real such as 3.0 counts).
  bool isInt() const;
  // True for a number without fraction in the range of Int64.
  bool isInt64() const;
  // True for a number without fraction from 0 to the largest UInt.
  bool isUInt() const;
  // True for a number without fraction from 0 to the largest UInt64.
  bool isUInt64() const;
  // True for a number without fraction in the range of Int64 or of UInt64.
  bool isIntegral() const;
  // True for any number, integral or not (never for a bool or null).
  bool isDouble() const;
  // The same as isDouble.
  bool isNumeric() const;
  // True for a string.
  bool isString() const;
  // True for an array (null is none).
  bool isArray() const;
  // True for an object (null is none).
  bool isObject() const;
  // True when the matching as*() call would not assert (JsonCpp's rule).
  bool isConvertibleTo(ValueType other) const;

  // Elements of an array or members of an object; 0 for any other kind.
  ArrayIndex size() const;
  // True for null and for an empty array or object.
  bool empty() const;
  // True for null.
  bool operator!() const { return isNull(); }

  // Empties an array or object; does nothing on null; asserts on anything else.
  void clear();
  // Makes an array (or null) hold `newSize` elements, adding nulls; asserts on other kinds.
  void resize(ArrayIndex newSize);

  // The element at `index`, making null an array and growing the array as
  // needed; on any other kind asserts and hands out a scratch value.
  Value& operator[](ArrayIndex index);
  // As above; a negative index asserts.
  Value& operator[](int index);
  // The element at `index`, or null when there is none; asserts on a non-array other than null.
  const Value& operator[](ArrayIndex index) const;
  const Value& operator[](int index) const;
  // The element at `index`, or `defaultValue` when there is none.
  Value get(ArrayIndex index, const Value& defaultValue) const;
  // True when `index` is below size().
  bool isValidIndex(ArrayIndex index) const;
  // Adds `value` at the end, making null an array; asserts on other kinds and
  // then hands out a scratch value.
  Value& append(const Value& value);
  // As above, moving `value` in rather than copying it.
  Value& append(Value&& value);

  // The member `key`, added as null when missing and making null an object;
  // on any other kind asserts and hands out a scratch value.
  Value& operator[](const char* key);
  Value& operator[](const Glib::ustring& key);
  // The member `key`, or null when missing; asserts on a non-object other than null.
  const Value& operator[](const char* key) const;
  const Value& operator[](const Glib::ustring& key) const;
  // The member `key`, or `defaultValue` when missing.
  Value get(const char* key, const Value& defaultValue) const;
  // As above, for a Glib::ustring key.
  Value get(const Glib::ustring& key, const Value& defaultValue) const;
  // True when the object has member `key`; asserts on a non-object other than null.
  bool isMember(const char* key) const;
  // As above, for a Glib::ustring key.
  bool isMember(const Glib::ustring& key) const;
  // Removes member `key` and returns it (null when missing); asserts on a non-object other than null.
  Value removeMember(const char* key);
  // As above, for a Glib::ustring key.
  Value removeMember(const Glib::ustring& key);
  // Removes member `key` into *removed (when not null); false when there was none or this is no object.
  bool removeMember(const Glib::ustring& key, Value* removed);
  // Removes element `index`, moving the later ones down; false when there is none.
  bool removeIndex(ArrayIndex index, Value* removed);
  // The keys of an object in key order; empty for null; asserts on other kinds.
  Members getMemberNames() const;

  // The document indented for people (JsonCpp's toStyledString); empty when nested deeper than kMaxJsonDepth.
  Glib::ustring toStyledString() const;

 private:
  friend class ValueAccess;

  typedef std::vector<std::unique_ptr<Value>> ArrayValues;  // elements never move in memory

  bool HasChildren() const;
  void DetachChildrenInto(std::vector<Value>* pending);
  void CopyShallowFrom(const Value& other);
  void CopyChildrenFrom(const Value& other);
  void MakeType(ValueType type);
  void MoveFrom(Value& other) noexcept;
  Value* FindMember(std::string_view key);
  const Value* FindMember(std::string_view key) const;
  Value& MemberReference(std::string_view key);
  const Value& ConstMember(std::string_view key) const;
  Value& ElementReference(ArrayIndex index);
  const Value& ConstElement(ArrayIndex index) const;
  bool RemoveMember(std::string_view key, Value* removed);

  ValueType mType;
  union Scalar {
    Int64 intValue;
    UInt64 uintValue;
    double realValue;
    bool boolValue;
  } mScalar;
  std::string mString;                    // stringValue: the bytes
  ArrayValues mArray;                     // arrayValue: the elements
  std::unique_ptr<ObjectValues> mObject;  // objectValue: the members
};

// Parses JSON text with JsonCpp's reader (comments allowed, not kept).
class VIRELINE_EXPORT Reader {
 public:
  // A reader with no errors.
  Reader();

  // Parses `text` into `root`: true on success. On failure `root` is null and
  // getFormattedErrorMessages() says why. Text that is not UTF-8, or nested
  // deeper than kMaxJsonDepth, is a failure.
  bool parse(const Glib::ustring& text, Value& root);

  // The errors of the last parse, as JsonCpp words them.
  Glib::ustring getFormattedErrorMessages() const;

 private:
  std::string mErrors;
};

// Writes a value as JsonCpp's compact writer does: one line, ending in "\n".
class VIRELINE_EXPORT FastWriter {
 public:
  // The text of `root`; empty when it is nested deeper than kMaxJsonDepth.
  Glib::ustring write(const Value& root);
};

// Writes a value as JsonCpp's StyledWriter does: indented, ending in "\n".
class VIRELINE_EXPORT StyledWriter {
 public:
  // The text of `root`; empty when it is nested deeper than kMaxJsonDepth.
  Glib::ustring write(const Value& root);
};

}  // namespace LTM

#endif  // VIRELINE_LTMJSON_H_
