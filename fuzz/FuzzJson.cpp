// CJSonFile::Load and every accessor of the value tree it builds.
#include <string>

#include <vireline/CJSonFile.h>

#include "fuzz/FuzzSupport.h"

namespace vireline {
namespace fuzz {

namespace {

const char kFile[] = "/QV/Bulk/Data/Fuzz.json";

// Every conversion the value allows. A refused one raises an assertion,
// which is slow (it is reported and logged), so those run once per document.
void ReadScalar(const LTM::Value& value) {
  if (value.isConvertibleTo(LTM::stringValue)) (void)value.asString();
  if (value.isString()) (void)value.asCString();
  if (value.isConvertibleTo(LTM::intValue)) {
    (void)value.asInt();
    (void)value.asInt64();
  }
  if (value.isConvertibleTo(LTM::uintValue)) {
    (void)value.asUInt();
    (void)value.asUInt64();
  }
  if (value.isConvertibleTo(LTM::realValue)) {
    (void)value.asFloat();
    (void)value.asDouble();
  }
  if (value.isConvertibleTo(LTM::booleanValue)) (void)value.asBool();
}

// The conversions and lookups a value of the wrong kind refuses.
void ReadRefused(const LTM::Value& value) {
  (void)value.asString();
  (void)value.asCString();
  (void)value.asInt();
  (void)value.asUInt();
  (void)value.asInt64();
  (void)value.asUInt64();
  (void)value.asFloat();
  (void)value.asDouble();
  (void)value.asBool();
  (void)value.asMap();
  if (!value.isObject()) (void)value.getMemberNames();
  if (!value.isArray()) (void)value[0u];
  if (!value.isObject()) (void)value["key"];
}

void ReadKinds(const LTM::Value& value) {
  (void)value.isNull();
  (void)value.isBool();
  (void)value.isInt();
  (void)value.isInt64();
  (void)value.isUInt();
  (void)value.isUInt64();
  (void)value.isIntegral();
  (void)value.isDouble();
  (void)value.isNumeric();
  (void)value.isString();
  (void)value.isArray();
  (void)value.isObject();
  for (int kind = LTM::nullValue; kind <= LTM::objectValue; ++kind) {
    (void)value.isConvertibleTo(static_cast<LTM::ValueType>(kind));
  }
  (void)value.size();
  (void)value.empty();
  (void)!value;
}

// Visits every value; containers also answer the lookups of a missing
// member or element and of the wrong kind of key.
void Walk(const LTM::Value& value) {
  ReadKinds(value);
  if (value.isArray()) {
    for (LTM::ArrayIndex i = 0; i < value.size(); ++i) Walk(value[i]);
    (void)value.get(value.size(), LTM::Value("missing"));
    (void)value.isValidIndex(value.size());
    return;
  }
  if (value.isObject()) {
    for (const Glib::ustring& name : value.getMemberNames()) {
      (void)value.isMember(name);
      (void)value.get(name, LTM::Value());
      Walk(value[name]);
    }
    (void)value.asMap();
    (void)value.isMember("no such member");
    return;
  }
  ReadScalar(value);
}

}  // namespace

void FuzzJson(const uint8_t* data, size_t size) {
  WriteDeviceFile(kFile, std::string(reinterpret_cast<const char*>(data), size));
  LTM::CJSonFile file(kFile, 0);
  if (file.Load() != 0) return;
  const LTM::Value& root = file.mRoot;
  Walk(root);
  ReadRefused(root);
  LTM::Value copy(root);
  (void)(copy == root);
  (void)copy.compare(root);
  (void)(copy < root);
  (void)root.toStyledString();
  (void)LTM::FastWriter().write(root);
  LTM::Value removed;
  if (copy.isObject() && copy.size() > 0) copy.removeMember(copy.getMemberNames().front(), &removed);
  if (copy.isArray() && copy.size() > 0) copy.removeIndex(0, &removed);
}

}  // namespace fuzz
}  // namespace vireline
