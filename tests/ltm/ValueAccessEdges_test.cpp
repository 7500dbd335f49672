// Edges of LTM::Value's access: signed indexes, null member names (the empty
// name, as older firmware's JSON library took them), copies appended, and
// removals that find nothing.
#include <gtest/gtest.h>

#include <vireline/LTMJson.h>

using LTM::Value;

TEST(ValueAccessEdgesTest, ANonNegativeSignedIndexReachesTheElement) {
  Value array;
  array[1] = "second";
  EXPECT_EQ(array[1].asString(), "second");
  EXPECT_EQ(array.size(), 2u);
  array[3] = 4;  // grows the array as an unsigned index does
  EXPECT_EQ(array.size(), 4u);
  const Value& constant = array;
  EXPECT_EQ(constant[3].asInt(), 4);
}

TEST(ValueAccessEdgesTest, ANullMemberNameIsTheEmptyName) {
  Value object;
  const char* noName = nullptr;
  object[noName] = 5;
  EXPECT_EQ(object[""].asInt(), 5);
  const Value& constant = object;
  EXPECT_EQ(constant[noName].asInt(), 5);
  EXPECT_EQ(object.get(noName, Value(9)).asInt(), 5);
  EXPECT_TRUE(object.isMember(noName));
  EXPECT_EQ(object.removeMember(noName).asInt(), 5);
  EXPECT_FALSE(object.isMember(""));
}

TEST(ValueAccessEdgesTest, AppendingACopyLeavesTheOriginal) {
  Value array;
  const Value item("kept");
  array.append(item);
  array.append(item);
  EXPECT_EQ(array.size(), 2u);
  EXPECT_EQ(array[1u].asString(), "kept");
  EXPECT_EQ(item.asString(), "kept");
}

TEST(ValueAccessEdgesTest, RemovingAnIndexPastTheEndOrWithoutAKeeperWorks) {
  Value array;
  array.append(1);
  array.append(2);
  Value removed;
  EXPECT_FALSE(array.removeIndex(2, &removed));
  EXPECT_TRUE(removed.isNull());
  EXPECT_TRUE(array.removeIndex(0, nullptr));
  ASSERT_EQ(array.size(), 1u);
  EXPECT_EQ(array[0u].asInt(), 2);
}

TEST(ValueAccessEdgesTest, ClearingANullValueIsQuiet) {
  Value nothing;
  nothing.clear();
  EXPECT_TRUE(nothing.isNull());
}

TEST(ValueAccessEdgesTest, NullsAndUnsignedNumbersCompareAmongThemselves) {
  EXPECT_EQ(Value().compare(Value()), 0);
  EXPECT_FALSE(Value() < Value());
  EXPECT_TRUE(Value(3u) < Value(5u));
  EXPECT_EQ(Value(5u).compare(Value(3u)), 1);
  EXPECT_EQ(Value(4u).compare(Value(4u)), 0);
}
