// A type error asserts through BaseUtils::Assert with JsonCpp's text and a
// fixed line in "VirelineJSON/Src/json_value", and the call answers an empty
// value instead of throwing.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include <json/json.h>

#include <vireline/LTMJson.h>

#include "DeviceRootTest.h"

using LTM::Value;

namespace {

Value Object() {
  Value object(LTM::objectValue);
  object["member"] = 1;
  return object;
}

Value Array() {
  Value array(LTM::arrayValue);
  array.append(1);
  return array;
}

// JsonCpp's own text for a failing call on one of its values.
std::string JsonCppText(const std::function<void()>& call) {
  try {
    call();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "(no error)";
}

}  // namespace

class ValueTypeErrorTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    CaptureDebugOutput();
  }

  // The debug output an assertion with `text` at `line` produces.
  static std::string Expected(const std::string& text, int line) {
    return text + "\n (line " + std::to_string(line) + " in VirelineJSON/Src/json_value)";
  }

  void ExpectAssert(const std::string& text, int line) {
    EXPECT_NE(DebugOutput().find(Expected(text, line)), std::string::npos) << DebugOutput();
  }
};

TEST_F(ValueTypeErrorTest, AsStringOnAnObjectAssertsAndIsEmpty) {
  EXPECT_EQ(Object().asString(), "");
  ExpectAssert("Value::asString() Type is not convertible to string", 101);
}

TEST_F(ValueTypeErrorTest, AsStringOnAnArrayAsserts) {
  EXPECT_EQ(Array().asString(), "");
  ExpectAssert("Value::asString() Type is not convertible to string", 101);
}

TEST_F(ValueTypeErrorTest, AsCStringOnANumberAssertsAndIsEmpty) {
  EXPECT_STREQ(Value(3).asCString(), "");
  ExpectAssert("Value::asCString() in Json::Value::asCString(): requires stringValue", 102);
}

TEST_F(ValueTypeErrorTest, AsIntOnAStringAssertsAndIsZero) {
  EXPECT_EQ(Value("12").asInt(), 0);
  ExpectAssert("Value::asInt() Value is not convertible to Int.", 103);
}

TEST_F(ValueTypeErrorTest, AsIntOutOfRangeAsserts) {
  EXPECT_EQ(Value(static_cast<LTM::UInt64>(1) << 40).asInt(), 0);
  ExpectAssert("Value::asInt() LargestUInt out of Int range", 103);
}

TEST_F(ValueTypeErrorTest, AsUIntOnANegativeNumberAssertsAndIsZero) {
  EXPECT_EQ(Value(-1).asUInt(), 0u);
  ExpectAssert("Value::asUInt() LargestInt out of UInt range", 104);
}

TEST_F(ValueTypeErrorTest, AsUIntOnANegativeDoubleAsserts) {
  EXPECT_EQ(Value(-2.5).asUInt(), 0u);
  ExpectAssert("Value::asUInt() double out of UInt range", 104);
}

TEST_F(ValueTypeErrorTest, AsInt64OnAnObjectAsserts) {
  EXPECT_EQ(Object().asInt64(), 0);
  ExpectAssert("Value::asInt64() Value is not convertible to Int64.", 105);
}

TEST_F(ValueTypeErrorTest, AsUInt64OnANegativeNumberAsserts) {
  EXPECT_EQ(Value(-5).asUInt64(), 0u);
  ExpectAssert("Value::asUInt64() LargestInt out of UInt64 range", 106);
}

TEST_F(ValueTypeErrorTest, AsFloatOnAStringAsserts) {
  EXPECT_EQ(Value("1.5").asFloat(), 0.0f);
  ExpectAssert("Value::asFloat() Value is not convertible to float.", 107);
}

TEST_F(ValueTypeErrorTest, AsDoubleOnAnArrayAsserts) {
  EXPECT_EQ(Array().asDouble(), 0.0);
  ExpectAssert("Value::asDouble() Value is not convertible to double.", 108);
}

TEST_F(ValueTypeErrorTest, AsBoolOnAStringAssertsAndIsFalse) {
  EXPECT_FALSE(Value("true").asBool());
  ExpectAssert("Value::asBool() Value is not convertible to bool.", 109);
}

TEST_F(ValueTypeErrorTest, AsMapOnAnArrayAssertsAndIsEmpty) {
  EXPECT_TRUE(Array().asMap().empty());
  ExpectAssert("Value::asMap() Type is not convertible to map", 110);
}

TEST_F(ValueTypeErrorTest, IndexOnAnObjectAssertsAndLeavesItAlone) {
  Value object = Object();
  Value& scratch = object[0u];
  EXPECT_TRUE(scratch.isNull());
  scratch = "lost";
  ExpectAssert("in Json::Value::operator[](ArrayIndex): requires arrayValue", 201);
  EXPECT_EQ(object, Object());
}

TEST_F(ValueTypeErrorTest, ConstIndexOnAnObjectAssertsAndIsNull) {
  const Value object = Object();
  EXPECT_TRUE(object[0u].isNull());
  ExpectAssert("in Json::Value::operator[](ArrayIndex)const: requires arrayValue", 202);
}

TEST_F(ValueTypeErrorTest, NegativeIndexAsserts) {
  Value array = Array();
  EXPECT_TRUE(array[-1].isNull());
  ExpectAssert("in Json::Value::operator[](int index): index cannot be negative", 203);
  const Value constArray = Array();
  EXPECT_TRUE(constArray[-1].isNull());
  ExpectAssert("in Json::Value::operator[](int index) const: index cannot be negative", 204);
  EXPECT_EQ(array.size(), 1u);
}

TEST_F(ValueTypeErrorTest, KeyOnAnArrayAssertsAndLeavesItAlone) {
  Value array = Array();
  array["key"]["deeper"] = 5;  // reaches only the scratch value
  ExpectAssert("in Json::Value::resolveReference(key, end): requires objectValue", 205);
  EXPECT_EQ(array, Array());
}

TEST_F(ValueTypeErrorTest, KeyOnAStringAsserts) {
  Value text("abc");
  EXPECT_TRUE(text[Glib::ustring("key")].isNull());
  ExpectAssert("in Json::Value::resolveReference(key, end): requires objectValue", 205);
  EXPECT_EQ(text.asString(), "abc");
}

TEST_F(ValueTypeErrorTest, ConstKeyGetAndIsMemberOnAnArrayAssert) {
  const Value array = Array();
  EXPECT_TRUE(array["key"].isNull());
  ExpectAssert("in Json::Value::find(begin, end): requires objectValue or nullValue", 206);
  CaptureDebugOutput();
  EXPECT_EQ(array.get("key", 7).asInt(), 7);
  ExpectAssert("in Json::Value::find(begin, end): requires objectValue or nullValue", 206);
  CaptureDebugOutput();
  EXPECT_FALSE(array.isMember("key"));
  ExpectAssert("in Json::Value::find(begin, end): requires objectValue or nullValue", 206);
}

TEST_F(ValueTypeErrorTest, AppendOnAStringAssertsAndLeavesItAlone) {
  Value text("abc");
  text.append(1);
  ExpectAssert("in Json::Value::append: requires arrayValue", 207);
  EXPECT_EQ(text.asString(), "abc");
}

TEST_F(ValueTypeErrorTest, ResizeOnAnObjectAsserts) {
  Value object = Object();
  object.resize(4);
  ExpectAssert("in Json::Value::resize(): requires arrayValue", 208);
  EXPECT_EQ(object.size(), 1u);
}

TEST_F(ValueTypeErrorTest, ClearOnANumberAsserts) {
  Value number(5);
  number.clear();
  ExpectAssert("in Json::Value::clear(): requires complex value", 209);
  EXPECT_EQ(number.asInt(), 5);
}

TEST_F(ValueTypeErrorTest, RemoveMemberOnAnArrayAssertsAndIsNull) {
  Value array = Array();
  EXPECT_TRUE(array.removeMember("x").isNull());
  ExpectAssert("in Json::Value::removeMember(): requires objectValue", 210);
}

TEST_F(ValueTypeErrorTest, MemberNamesOfAStringAssertAndAreEmpty) {
  EXPECT_TRUE(Value("abc").getMemberNames().empty());
  ExpectAssert("in Json::Value::getMemberNames(), value must be objectValue", 211);
}

TEST_F(ValueTypeErrorTest, RightKindsAndNullNeverAssert) {
  Value null;
  const Value& constNull = null;
  EXPECT_TRUE(constNull["a"].isNull());
  EXPECT_TRUE(constNull[0u].isNull());
  EXPECT_FALSE(null.isMember("a"));
  EXPECT_TRUE(null.getMemberNames().empty());
  EXPECT_TRUE(null.removeMember("a").isNull());
  EXPECT_EQ(Object()["member"].asInt(), 1);
  EXPECT_EQ(Array()[0u].asUInt(), 1u);
  EXPECT_EQ(DebugOutput(), "");
}

// The texts above are JsonCpp's own, for the same call on a JsonCpp value of the same kind.
TEST_F(ValueTypeErrorTest, TextsAreThoseOfTheInstalledJsonCpp) {
  Json::Value object(Json::objectValue), array(Json::arrayValue), text("abc");
  const Json::Value& constObject = object;
  const Json::Value& constArray = array;
  EXPECT_EQ(JsonCppText([&] { object[0u]; }), "in Json::Value::operator[](ArrayIndex): requires arrayValue");
  EXPECT_EQ(JsonCppText([&] { constObject[0u]; }), "in Json::Value::operator[](ArrayIndex)const: requires arrayValue");
  EXPECT_EQ(JsonCppText([&] { array[-1]; }), "in Json::Value::operator[](int index): index cannot be negative");
  EXPECT_EQ(JsonCppText([&] { constArray[-1]; }),
            "in Json::Value::operator[](int index) const: index cannot be negative");
  EXPECT_EQ(JsonCppText([&] { array["k"]; }), "in Json::Value::resolveReference(key, end): requires objectValue");
  EXPECT_EQ(JsonCppText([&] { constArray["k"]; }),
            "in Json::Value::find(begin, end): requires objectValue or nullValue");
  EXPECT_EQ(JsonCppText([&] { array.isMember("k"); }),
            "in Json::Value::find(begin, end): requires objectValue or nullValue");
  EXPECT_EQ(JsonCppText([&] { text.append(1); }), "in Json::Value::append: requires arrayValue");
  EXPECT_EQ(JsonCppText([&] { object.resize(1); }), "in Json::Value::resize(): requires arrayValue");
  EXPECT_EQ(JsonCppText([&] { text.clear(); }), "in Json::Value::clear(): requires complex value");
  EXPECT_EQ(JsonCppText([&] { array.removeMember("k"); }), "in Json::Value::removeMember(): requires objectValue");
  EXPECT_EQ(JsonCppText([&] { text.getMemberNames(); }), "in Json::Value::getMemberNames(), value must be objectValue");
  EXPECT_EQ(JsonCppText([&] { object.asString(); }), "Type is not convertible to string");
}
