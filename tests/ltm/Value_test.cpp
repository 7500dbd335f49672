// LTM::Value keeps JsonCpp's value semantics: deep copies, references that
// change the tree in place, JsonCpp's conversions, ordering and equality.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include <vireline/LTMJson.h>

using LTM::Value;

TEST(ValueTest, DefaultIsNullAndEachConstructorKeepsItsKind) {
  EXPECT_EQ(Value().type(), LTM::nullValue);
  EXPECT_EQ(Value(-3).type(), LTM::intValue);
  EXPECT_EQ(Value(3u).type(), LTM::uintValue);
  EXPECT_EQ(Value(static_cast<LTM::Int64>(-1099511627776)).type(), LTM::intValue);
  EXPECT_EQ(Value(static_cast<LTM::UInt64>(1) << 63).type(), LTM::uintValue);
  EXPECT_EQ(Value(1.5).type(), LTM::realValue);
  EXPECT_EQ(Value("text").type(), LTM::stringValue);
  EXPECT_EQ(Value(Glib::ustring("t\xC3\xA9xt")).type(), LTM::stringValue);
  EXPECT_EQ(Value(true).type(), LTM::booleanValue);
  EXPECT_EQ(Value(LTM::arrayValue).type(), LTM::arrayValue);
  EXPECT_EQ(Value(LTM::objectValue).type(), LTM::objectValue);
  EXPECT_EQ(Value(static_cast<const char*>(nullptr)).asString(), "");
}

TEST(ValueTest, CopyIsDeep) {
  Value original;
  original["Flags"][0u]["LocaleCode"] = "en-us";
  Value copy = original;
  copy["Flags"][0u]["LocaleCode"] = "fr-fr";
  copy["Flags"].append("extra");
  EXPECT_EQ(original["Flags"][0u]["LocaleCode"].asString(), "en-us");
  EXPECT_EQ(original["Flags"].size(), 1u);
  EXPECT_EQ(copy["Flags"][0u]["LocaleCode"].asString(), "fr-fr");
  EXPECT_EQ(copy["Flags"].size(), 2u);
}

TEST(ValueTest, NonConstSubscriptChangesTheTreeInPlace) {
  Value root;
  Value& flags = root["Flags"];
  flags.append(Value(LTM::objectValue));
  flags[0u]["Art"] = "flag.png";
  EXPECT_TRUE(root.isObject());
  EXPECT_EQ(root["Flags"][0u]["Art"].asString(), "flag.png");
}

TEST(ValueTest, ReferencesToElementsSurviveGrowingTheArray) {
  Value list(LTM::arrayValue);
  Value& first = list.append(1);
  for (int i = 0; i < 100; ++i) list.append(i);
  first = "still here";
  EXPECT_EQ(list[0u].asString(), "still here");
}

TEST(ValueTest, NullBecomesObjectOrArrayOnFirstUse) {
  Value byKey;
  byKey["a"];
  EXPECT_TRUE(byKey.isObject());
  EXPECT_TRUE(byKey.isMember("a"));
  EXPECT_TRUE(byKey["a"].isNull());
  Value byIndex;
  byIndex[2u] = 7;
  EXPECT_TRUE(byIndex.isArray());
  EXPECT_EQ(byIndex.size(), 3u);
  EXPECT_TRUE(byIndex[0u].isNull());
  Value byAppend;
  byAppend.append(true);
  EXPECT_TRUE(byAppend.isArray());
}

TEST(ValueTest, ConstSubscriptOfMissingKeyOrIndexIsNullAndAddsNothing) {
  Value root(LTM::objectValue);
  root["present"] = 1;
  const Value& view = root;
  EXPECT_TRUE(view["missing"].isNull());
  EXPECT_TRUE(view[Glib::ustring("missing")].isNull());
  EXPECT_FALSE(root.isMember("missing"));
  const Value list(LTM::arrayValue);
  EXPECT_TRUE(list[5u].isNull());
  EXPECT_EQ(list.size(), 0u);
  const Value null;
  EXPECT_TRUE(null["x"].isNull());
  EXPECT_TRUE(null[0].isNull());
}

TEST(ValueTest, GetAnswersTheDefaultForMissingMembersAndElements) {
  Value root;
  root["a"] = 1;
  EXPECT_EQ(root.get("a", 5).asInt(), 1);
  EXPECT_EQ(root.get("b", 5).asInt(), 5);
  EXPECT_EQ(root.get(Glib::ustring("b"), "dflt").asString(), "dflt");
  Value list;
  list.append("x");
  EXPECT_EQ(list.get(0u, "d").asString(), "x");
  EXPECT_EQ(list.get(1u, "d").asString(), "d");
}

TEST(ValueTest, KeysAreOrderedByTheirBytes) {
  Value root;
  root["b"] = 1;
  root["B"] = 2;
  root["\xC3\xA9"] = 3;  // e-acute sorts after every ASCII key
  root["a"] = 4;
  Value::Members names = root.getMemberNames();
  ASSERT_EQ(names.size(), 4u);
  EXPECT_EQ(names[0], "B");
  EXPECT_EQ(names[1], "a");
  EXPECT_EQ(names[2], "b");
  EXPECT_EQ(names[3], "\xC3\xA9");
}

TEST(ValueTest, AsMapHandsOutACopyOfTheMembers) {
  Value root;
  root["one"] = 1;
  root["two"]["inner"] = "x";
  Value::ObjectValues members = root.asMap();
  ASSERT_EQ(members.size(), 2u);
  EXPECT_EQ(members["one"].asInt(), 1);
  EXPECT_EQ(members["two"]["inner"].asString(), "x");
  members["one"] = 9;
  EXPECT_EQ(root["one"].asInt(), 1);
  EXPECT_TRUE(Value().asMap().empty());
}

TEST(ValueTest, RemoveMemberReturnsTheRemovedValue) {
  Value root;
  root["a"] = "gone";
  root["b"] = 2;
  EXPECT_EQ(root.removeMember("a").asString(), "gone");
  EXPECT_FALSE(root.isMember("a"));
  EXPECT_TRUE(root.removeMember("a").isNull());
  Value removed;
  EXPECT_TRUE(root.removeMember(Glib::ustring("b"), &removed));
  EXPECT_EQ(removed.asInt(), 2);
  EXPECT_FALSE(root.removeMember(Glib::ustring("b"), &removed));
  EXPECT_TRUE(root.empty());
}

TEST(ValueTest, RemoveIndexMovesLaterElementsDown) {
  Value list;
  for (int i = 0; i < 4; ++i) list.append(i);
  Value removed;
  EXPECT_TRUE(list.removeIndex(1, &removed));
  EXPECT_EQ(removed.asInt(), 1);
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list[1u].asInt(), 2);
  EXPECT_EQ(list[2u].asInt(), 3);
  EXPECT_FALSE(list.removeIndex(3, nullptr));
}

TEST(ValueTest, SizeEmptyClearResizeAndValidIndex) {
  Value list;
  list.resize(3);
  EXPECT_EQ(list.size(), 3u);
  EXPECT_TRUE(list.isValidIndex(2));
  EXPECT_FALSE(list.isValidIndex(3));
  list.resize(1);
  EXPECT_EQ(list.size(), 1u);
  list.clear();
  EXPECT_TRUE(list.isArray());
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(Value("text").size(), 0u);
  EXPECT_FALSE(Value("").empty());
  EXPECT_TRUE(Value().empty());
  EXPECT_TRUE(!Value());
  Value null;
  null.clear();
  EXPECT_TRUE(null.isNull());
}

TEST(ValueTest, ConversionsFollowJsonCpp) {
  EXPECT_EQ(Value().asString(), "");
  EXPECT_EQ(Value(true).asString(), "true");
  EXPECT_EQ(Value(-5).asString(), "-5");
  EXPECT_EQ(Value(1.5).asString(), "1.5");
  EXPECT_EQ(Value(Glib::ustring("caf\xC3\xA9")).asString(), Glib::ustring("caf\xC3\xA9"));
  EXPECT_STREQ(Value("abc").asCString(), "abc");
  EXPECT_EQ(Value(2.9).asInt(), 2);
  EXPECT_EQ(Value(true).asInt(), 1);
  EXPECT_EQ(Value().asUInt(), 0u);
  EXPECT_EQ(Value(4000000000u).asUInt64(), 4000000000u);
  EXPECT_EQ(Value(-7).asInt64(), -7);
  EXPECT_DOUBLE_EQ(Value(3).asDouble(), 3.0);
  EXPECT_FLOAT_EQ(Value(0.25).asFloat(), 0.25f);
  EXPECT_TRUE(Value(2).asBool());
  EXPECT_FALSE(Value(0.0).asBool());
  EXPECT_FALSE(Value().asBool());
}

TEST(ValueTest, KindTestsFollowJsonCpp) {
  EXPECT_TRUE(Value(5u).isInt());
  EXPECT_FALSE(Value(-1).isUInt());
  EXPECT_TRUE(Value(2.0).isIntegral());
  EXPECT_FALSE(Value(2.5).isIntegral());
  EXPECT_TRUE(Value(2.5).isDouble());
  EXPECT_TRUE(Value(1).isNumeric());
  EXPECT_FALSE(Value("1").isNumeric());
  EXPECT_TRUE(Value(static_cast<LTM::UInt64>(1) << 40).isInt64());
  EXPECT_FALSE(Value(static_cast<LTM::UInt64>(1) << 40).isInt());
  EXPECT_TRUE(Value(static_cast<LTM::UInt64>(1) << 40).isUInt64());
  EXPECT_TRUE(Value(false).isBool());
  EXPECT_TRUE(Value("").isConvertibleTo(LTM::nullValue));
  EXPECT_FALSE(Value("x").isConvertibleTo(LTM::nullValue));
  EXPECT_TRUE(Value(-1).isConvertibleTo(LTM::intValue));
  EXPECT_FALSE(Value(-1).isConvertibleTo(LTM::uintValue));
  EXPECT_FALSE(Value("1").isConvertibleTo(LTM::intValue));
  Value list;
  list.append(1);
  EXPECT_FALSE(list.isConvertibleTo(LTM::nullValue));
  EXPECT_TRUE(Value(LTM::arrayValue).isConvertibleTo(LTM::nullValue));
}

TEST(ValueTest, OrderAndEqualityFollowJsonCpp) {
  EXPECT_FALSE(Value(1) == Value(1u));  // different kinds
  EXPECT_TRUE(Value(1) < Value(1u));
  EXPECT_TRUE(Value() < Value(0));
  EXPECT_TRUE(Value("ab") < Value("b"));
  EXPECT_TRUE(Value("a") < Value("ab"));
  Value small, large;
  small.append(9);
  large.append(1);
  large.append(1);
  EXPECT_TRUE(small < large);  // size first
  Value x, y;
  x["a"] = 1;
  y["b"] = 0;
  EXPECT_TRUE(x < y);  // then keys
  y = x;
  EXPECT_TRUE(x == y);
  EXPECT_EQ(x.compare(y), 0);
  y["a"] = 2;
  EXPECT_TRUE(x != y);
  EXPECT_EQ(x.compare(y), -1);
  EXPECT_EQ(y.compare(x), 1);
  EXPECT_TRUE(x <= y);
  EXPECT_TRUE(y >= x);
  EXPECT_TRUE(y > x);
  double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(Value(nan) == Value(nan));
  EXPECT_FALSE(Value(nan) < Value(nan));
}

TEST(ValueTest, SelfAndDescendantAssignmentsAreSafe) {
  Value root;
  root["a"]["b"] = "deep";
  root = root["a"];
  EXPECT_EQ(root["b"].asString(), "deep");
  root = std::move(root["b"]);
  EXPECT_EQ(root.asString(), "deep");
  Value& self = root;
  root = self;
  EXPECT_EQ(root.asString(), "deep");
}

TEST(ValueTest, MoveLeavesNull) {
  Value from;
  from["k"] = 1;
  Value to(std::move(from));
  EXPECT_TRUE(from.isNull());  // NOLINT(bugprone-use-after-move): the moved-from state is part of the contract
  EXPECT_EQ(to["k"].asInt(), 1);
}

// A client can build a tree far deeper than any document; copying, comparing
// and releasing it must not recurse once per level.
TEST(ValueTest, HundredThousandLevelsCopyCompareAndReleaseWithoutRecursion) {
  Value root;
  Value* at = &root;
  for (int i = 0; i < 100000; ++i) at = &(*at)[i % 2 == 0 ? "k" : "l"][0u];
  *at = "bottom";
  Value copy = root;
  EXPECT_TRUE(copy == root);
  EXPECT_FALSE(copy < root);
  *at = "changed";
  EXPECT_TRUE(copy != root);
  EXPECT_TRUE(LTM::FastWriter().write(root).empty());
  EXPECT_TRUE(root.toStyledString().empty());
}
