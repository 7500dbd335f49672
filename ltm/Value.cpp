// The value tree: construction, deep copy, release, and access by index and
// key. Copy walks the tree with an explicit work list instead of recursing,
// and release recurses only a few levels before it falls back to one, so a
// tree nested arbitrarily deep (built by a client in a loop) cannot exhaust
// the stack.
#include <vireline/LTMJson.h>

#include <cstring>
#include <utility>

#include "ltm/JsonTypeError.h"
#include "ltm/ValueAccess.h"

namespace LTM {
namespace {

// Documents and most hand-built trees are far shallower than this, and are
// released by plain recursion; 64 frames of it are little stack on a device.
const unsigned kRecursiveReleaseDepth = 64;

// What const access answers for a missing element or member; never destroyed,
// so references to it stay valid until exit.
const Value& NullValue() {
  static const Value* null = new Value();
  return *null;
}

// What non-const access on the wrong kind hands out after asserting: writes
// to it reach no document. Emptied each time it is handed out.
Value& ScratchValue() {
  static Value* scratch = new Value();
  *scratch = Value();
  return *scratch;
}

// `found`, or `defaultValue` when the lookup found nothing.
Value ValueOr(const Value& found, const Value& defaultValue) {
  return &found == &NullValue() ? defaultValue : found;
}

}  // namespace

Value::Value(ValueType type) : mType(nullValue), mScalar() {
  if (type != nullValue) MakeType(type);  // a null value is made by the initialisers alone
}

Value::Value(Int value) : Value(static_cast<Int64>(value)) {}

Value::Value(UInt value) : Value(static_cast<UInt64>(value)) {}

Value::Value(Int64 value) : mType(intValue), mScalar() { mScalar.intValue = value; }

Value::Value(UInt64 value) : mType(uintValue), mScalar() { mScalar.uintValue = value; }

Value::Value(double value) : mType(realValue), mScalar() { mScalar.realValue = value; }

Value::Value(const char* value) : mType(stringValue), mScalar(), mString(value == nullptr ? "" : value) {}

Value::Value(const Glib::ustring& value) : mType(stringValue), mScalar(), mString(value.raw()) {}

Value::Value(bool value) : mType(booleanValue), mScalar() { mScalar.boolValue = value; }

Value::Value(const Value& other) : mType(nullValue), mScalar() {
  CopyShallowFrom(other);
  CopyChildrenFrom(other);
}

Value::Value(Value&& other) noexcept : mType(nullValue), mScalar() { MoveFrom(other); }

Value& Value::operator=(const Value& other) {
  // Copy first: `other` may live inside this tree.
  Value copy(other);
  swap(copy);
  return *this;
}

Value& Value::operator=(Value&& other) noexcept {
  if (this != &other) {
    Value old(std::move(*this));  // `other` may live inside the old tree: keep it until the move
    MoveFrom(other);
  }
  return *this;
}

Value::~Value() {
  if (!ValueAccess::HasChildren(*this)) return;
  std::vector<Value> deeper;  // allocates only for a tree deeper than the recursion goes
  ValueAccess::ReleaseChildren(*this, 0, &deeper);
  while (!deeper.empty()) {
    Value next(std::move(deeper.back()));
    deeper.pop_back();
    ValueAccess::ReleaseChildren(next, 0, &deeper);
  }
}

void Value::swap(Value& other) noexcept {
  std::swap(mType, other.mType);
  std::swap(mScalar, other.mScalar);
  mString.swap(other.mString);
  mArray.swap(other.mArray);
  mObject.swap(other.mObject);
}

bool Value::HasChildren() const { return ValueAccess::HasChildren(*this); }

// Moves the children out so that destroying this value does not descend.
void Value::DetachChildrenInto(std::vector<Value>* pending) {
  for (auto& element : mArray) {
    if (ValueAccess::HasChildren(*element)) pending->push_back(std::move(*element));
  }
  mArray.clear();
  if (mObject) {
    for (auto& member : *mObject) {
      if (ValueAccess::HasChildren(member.second)) pending->push_back(std::move(member.second));
    }
    mObject->clear();
  }
}

void ValueAccess::ReleaseChildren(Value& value, unsigned depth, std::vector<Value>* deeper) {
  if (depth >= kRecursiveReleaseDepth) {
    value.DetachChildrenInto(deeper);
    return;
  }
  for (auto& element : value.mArray) {
    if (HasChildren(*element)) ReleaseChildren(*element, depth + 1, deeper);
  }
  value.mArray.clear();  // each element is childless by now: its destructor does not descend
  if (value.mObject) {
    for (auto& member : *value.mObject) {
      if (HasChildren(member.second)) ReleaseChildren(member.second, depth + 1, deeper);
    }
    value.mObject->clear();
  }
}

// Kind, scalar and string of `other`; containers start empty.
void Value::CopyShallowFrom(const Value& other) {
  MakeType(other.mType);
  mScalar = other.mScalar;
  mString = other.mString;
}

// Fills the (empty) containers of this copy from `other`, level by level.
void Value::CopyChildrenFrom(const Value& other) {
  std::vector<std::pair<const Value*, Value*>> pending;
  pending.emplace_back(&other, this);
  while (!pending.empty()) {
    const Value* from = pending.back().first;
    Value* to = pending.back().second;
    pending.pop_back();
    if (from->mType == arrayValue) {
      to->mArray.reserve(from->mArray.size());
      for (const auto& element : from->mArray) {
        to->mArray.push_back(std::make_unique<Value>());
        to->mArray.back()->CopyShallowFrom(*element);
        if (element->HasChildren()) pending.emplace_back(element.get(), to->mArray.back().get());
      }
    } else if (from->mType == objectValue) {
      for (const auto& member : *from->mObject) {
        auto added = to->mObject->emplace_hint(to->mObject->end(), member.first, Value());
        added->second.CopyShallowFrom(member.second);
        if (member.second.HasChildren()) pending.emplace_back(&member.second, &added->second);
      }
    }
  }
}

// Becomes an empty value of `type`; only called on values without children.
void Value::MakeType(ValueType type) {
  mType = type;
  mScalar = Scalar();
  mString.clear();
  mArray.clear();
  if (type == objectValue) {
    mObject = std::make_unique<ObjectValues>();
  } else {
    mObject.reset();
  }
}

void Value::MoveFrom(Value& other) noexcept {
  mType = other.mType;
  mScalar = other.mScalar;
  mString = std::move(other.mString);
  mArray = std::move(other.mArray);
  mObject = std::move(other.mObject);
  other.mType = nullValue;
  other.mScalar = Scalar();
  other.mString.clear();
  other.mArray.clear();
  other.mObject.reset();
}

ArrayIndex Value::size() const {
  if (mType == arrayValue) return static_cast<ArrayIndex>(mArray.size());
  if (mType == objectValue) return static_cast<ArrayIndex>(mObject->size());
  return 0;
}

bool Value::empty() const {
  if (mType == nullValue || mType == arrayValue || mType == objectValue) return size() == 0;
  return false;
}

void Value::clear() {
  if (mType == arrayValue || mType == objectValue) {
    Value old(std::move(*this));
    MakeType(old.mType);
  } else if (mType != nullValue) {
    ReportTypeError(kLineClear, nullptr, kTextClear);
  }
}

void Value::resize(ArrayIndex newSize) {
  if (mType == nullValue) MakeType(arrayValue);
  if (mType != arrayValue) {
    ReportTypeError(kLineResize, nullptr, kTextResize);
    return;
  }
  if (newSize < mArray.size()) {
    std::vector<Value> dropped;
    for (size_t i = newSize; i < mArray.size(); ++i) dropped.push_back(std::move(*mArray[i]));
    mArray.resize(newSize);
    return;  // `dropped` is released element by element, each without recursion
  }
  mArray.reserve(newSize);
  while (mArray.size() < newSize) mArray.push_back(std::make_unique<Value>());
}

Value& Value::ElementReference(ArrayIndex index) {
  if (mType == nullValue) MakeType(arrayValue);
  if (mType != arrayValue) {
    ReportTypeError(kLineIndex, nullptr, kTextIndex);
    return ScratchValue();
  }
  if (index >= mArray.size()) resize(index + 1);
  return *mArray[index];
}

const Value& Value::ConstElement(ArrayIndex index) const {
  if (mType == nullValue) return NullValue();
  if (mType != arrayValue) {
    ReportTypeError(kLineIndexConst, nullptr, kTextIndexConst);
    return NullValue();
  }
  return index < mArray.size() ? *mArray[index] : NullValue();
}

Value& Value::operator[](ArrayIndex index) { return ElementReference(index); }

Value& Value::operator[](int index) {
  if (index < 0) {
    ReportTypeError(kLineNegativeIndex, nullptr, kTextNegativeIndex);
    return ScratchValue();
  }
  return ElementReference(static_cast<ArrayIndex>(index));
}

const Value& Value::operator[](ArrayIndex index) const { return ConstElement(index); }

const Value& Value::operator[](int index) const {
  if (index < 0) {
    ReportTypeError(kLineNegativeIndexConst, nullptr, kTextNegativeIndexConst);
    return NullValue();
  }
  return ConstElement(static_cast<ArrayIndex>(index));
}

Value Value::get(ArrayIndex index, const Value& defaultValue) const {
  return ValueOr(ConstElement(index), defaultValue);
}

bool Value::isValidIndex(ArrayIndex index) const { return index < size(); }

Value& Value::append(const Value& value) { return append(Value(value)); }

Value& Value::append(Value&& value) {
  if (mType == nullValue) MakeType(arrayValue);
  if (mType != arrayValue) {
    ReportTypeError(kLineAppend, nullptr, kTextAppend);
    return ScratchValue();
  }
  mArray.push_back(std::make_unique<Value>(std::move(value)));
  return *mArray.back();
}

Value* Value::FindMember(std::string_view key) {
  auto found = mObject->find(key);
  return found == mObject->end() ? nullptr : &found->second;
}

const Value* Value::FindMember(std::string_view key) const {
  auto found = mObject->find(key);
  return found == mObject->end() ? nullptr : &found->second;
}

Value& Value::MemberReference(std::string_view key) {
  if (mType == nullValue) MakeType(objectValue);
  if (mType != objectValue) {
    ReportTypeError(kLineKey, nullptr, kTextKey);
    return ScratchValue();
  }
  Value* member = FindMember(key);
  if (member != nullptr) return *member;
  return mObject->emplace(Glib::ustring(std::string(key)), Value()).first->second;
}

const Value& Value::ConstMember(std::string_view key) const {
  if (mType == nullValue) return NullValue();
  if (mType != objectValue) {
    ReportTypeError(kLineFind, nullptr, kTextFind);
    return NullValue();
  }
  const Value* member = FindMember(key);
  return member == nullptr ? NullValue() : *member;
}

Value& Value::operator[](const char* key) { return MemberReference(key == nullptr ? "" : key); }

Value& Value::operator[](const Glib::ustring& key) { return MemberReference(key.raw()); }

const Value& Value::operator[](const char* key) const { return ConstMember(key == nullptr ? "" : key); }

const Value& Value::operator[](const Glib::ustring& key) const { return ConstMember(key.raw()); }

Value Value::get(const char* key, const Value& defaultValue) const {
  return ValueOr(ConstMember(key == nullptr ? "" : key), defaultValue);
}

Value Value::get(const Glib::ustring& key, const Value& defaultValue) const {
  return ValueOr(ConstMember(key.raw()), defaultValue);
}

bool Value::isMember(const char* key) const { return &ConstMember(key == nullptr ? "" : key) != &NullValue(); }

bool Value::isMember(const Glib::ustring& key) const { return &ConstMember(key.raw()) != &NullValue(); }

bool Value::RemoveMember(std::string_view key, Value* removed) {
  if (mType != objectValue) return false;
  auto found = mObject->find(key);
  if (found == mObject->end()) return false;
  Value taken(std::move(found->second));
  mObject->erase(found);
  if (removed != nullptr) *removed = std::move(taken);
  return true;
}

Value Value::removeMember(const char* key) { return removeMember(Glib::ustring(key == nullptr ? "" : key)); }

Value Value::removeMember(const Glib::ustring& key) {
  Value removed;
  if (mType != nullValue && mType != objectValue) {
    ReportTypeError(kLineRemoveMember, nullptr, kTextRemoveMember);
    return removed;
  }
  RemoveMember(key.raw(), &removed);
  return removed;
}

bool Value::removeMember(const Glib::ustring& key, Value* removed) { return RemoveMember(key.raw(), removed); }

bool Value::removeIndex(ArrayIndex index, Value* removed) {
  if (mType != arrayValue || index >= mArray.size()) return false;
  Value taken(std::move(*mArray[index]));
  // Later elements move down one place, as JsonCpp's do.
  for (size_t i = index; i + 1 < mArray.size(); ++i) *mArray[i] = std::move(*mArray[i + 1]);
  mArray.pop_back();
  if (removed != nullptr) *removed = std::move(taken);
  return true;
}

Value::Members Value::getMemberNames() const {
  Members names;
  if (mType == nullValue) return names;
  if (mType != objectValue) {
    ReportTypeError(kLineMemberNames, nullptr, kTextMemberNames);
    return names;
  }
  names.reserve(mObject->size());
  for (const auto& member : *mObject) names.push_back(member.first);
  return names;
}

Value::ObjectValues Value::asMap() const {
  if (mType == objectValue) {
    Value copy(*this);  // copies without recursion, then hands over the members
    return std::move(*copy.mObject);
  }
  if (mType != nullValue) ReportTypeError(kLineAsMap, "Value::asMap()", kTextAsMap);
  return ObjectValues();
}

}  // namespace LTM
