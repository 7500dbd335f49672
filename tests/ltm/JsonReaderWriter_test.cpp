// The reader and writers are JsonCpp's: same accepted text, same bytes out.
#include <gtest/gtest.h>

#include <string>

#include <json/json.h>

#include <vireline/LTMJson.h>

using LTM::Value;

namespace {

const char kSample[] =
    "{\"Flags\":[{\"Art\":\"flag_fr.png\",\"LocaleCode\":\"fr-fr\"}],\"big\":18446744073709551615,"
    "\"e\":\"caf\xC3\xA9 \\u0001\\\"\\\\/\\t\",\"n\":-5,\"nested\":{\"a\":[1,2.5,true,null,{}]},"
    "\"real\":0.1,\"whole\":1.0,\"huge\":1e300}";

std::string JsonCppCompact(const std::string& text) {
  Json::Value json;
  Json::Reader().parse(text, json, false);
  return Json::FastWriter().write(json);
}

std::string Nested(int depth) { return std::string(depth, '[') + std::string(depth, ']'); }

}  // namespace

TEST(JsonReaderWriterTest, ParsesAndWritesTheBytesJsonCppWrites) {
  Value root;
  LTM::Reader reader;
  ASSERT_TRUE(reader.parse(kSample, root));
  EXPECT_EQ(LTM::FastWriter().write(root).raw(), JsonCppCompact(kSample));
  EXPECT_EQ(root["Flags"][0u]["LocaleCode"].asString(), "fr-fr");
  EXPECT_EQ(root["big"].asUInt64(), 18446744073709551615u);
  EXPECT_EQ(root["e"].asString(), Glib::ustring("caf\xC3\xA9 \x01\"\\/\t"));
}

TEST(JsonReaderWriterTest, CompactTextIsOneLineEndingInALineFeed) {
  Value root;
  root["a"] = 1;
  EXPECT_EQ(LTM::FastWriter().write(root), "{\"a\":1}\n");
  EXPECT_EQ(LTM::FastWriter().write(Value()), "null\n");
  EXPECT_EQ(LTM::FastWriter().write(Value(0.1)), "0.10000000000000001\n");
  EXPECT_EQ(LTM::FastWriter().write(Value(Glib::ustring("\xC3\xA9"))), "\"\\u00e9\"\n");
}

TEST(JsonReaderWriterTest, StyledTextIsJsonCpps) {
  Value root;
  ASSERT_TRUE(LTM::Reader().parse(kSample, root));
  Json::Value json;
  ASSERT_TRUE(Json::Reader().parse(kSample, json, false));
  EXPECT_EQ(LTM::StyledWriter().write(root).raw(), Json::StyledWriter().write(json));
  EXPECT_EQ(root.toStyledString().raw(), json.toStyledString());
}

TEST(JsonReaderWriterTest, CommentsAreAcceptedAndNotKept) {
  Value root;
  ASSERT_TRUE(LTM::Reader().parse("// settings\n{ \"a\" : /* one */ 1 }\n", root));
  EXPECT_EQ(LTM::FastWriter().write(root), "{\"a\":1}\n");
}

TEST(JsonReaderWriterTest, MalformedTextFailsWithJsonCppsMessageAndNullRoot) {
  Value root("old");
  LTM::Reader reader;
  EXPECT_FALSE(reader.parse("{\"a\":", root));
  EXPECT_TRUE(root.isNull());
  EXPECT_NE(reader.getFormattedErrorMessages().raw().find("Line 1"), std::string::npos);
  EXPECT_FALSE(reader.parse("", root));
  EXPECT_FALSE(reader.parse("[1,2", root));
}

TEST(JsonReaderWriterTest, TextThatIsNotUtf8Fails) {
  Value root;
  LTM::Reader reader;
  EXPECT_FALSE(reader.parse(Glib::ustring("{\"a\":\"caf\xE9\"}"), root));
  EXPECT_EQ(reader.getFormattedErrorMessages(), "The document is not valid UTF-8.\n");
}

TEST(JsonReaderWriterTest, ThousandLevelsReadAndWriteBack) {
  Value root;
  ASSERT_TRUE(LTM::Reader().parse(Nested(1000), root));
  EXPECT_EQ(LTM::FastWriter().write(root), Nested(1000) + "\n");
}

TEST(JsonReaderWriterTest, HundredThousandLevelsFailWithoutOverflowingTheStack) {
  Value root;
  LTM::Reader reader;
  EXPECT_FALSE(reader.parse(Nested(100000), root));
  EXPECT_TRUE(root.isNull());
  EXPECT_FALSE(reader.parse(Nested(1001), root));
}

TEST(JsonReaderWriterTest, WritersRefuseTreesDeeperThanTheReaderAccepts) {
  Value root;
  Value* at = &root;
  for (unsigned i = 0; i < LTM::kMaxJsonDepth; ++i) at = &at->append(Value(LTM::arrayValue));
  EXPECT_TRUE(LTM::FastWriter().write(root).empty());
  EXPECT_TRUE(LTM::StyledWriter().write(root).empty());
  Value shallower = root[0u];
  EXPECT_EQ(LTM::FastWriter().write(shallower), Nested(1000) + "\n");
}
