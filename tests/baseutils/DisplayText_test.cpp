// How text with any bytes is shown.
#include <vireline/DisplayText.h>

#include <gtest/gtest.h>

TEST(DisplayTextTest, ValidUtf8StaysAsItIs) { EXPECT_EQ(vireline::DisplayText("Zo\xC3\xAB \xE2\x82\xAC"), "Zo\xC3\xAB \xE2\x82\xAC"); }

TEST(DisplayTextTest, BackslashesAreDoubled) { EXPECT_EQ(vireline::DisplayText("a\\b"), "a\\\\b"); }

TEST(DisplayTextTest, ControlCharactersAndInvalidBytesAreEscaped) {
  EXPECT_EQ(vireline::DisplayText("a\tb\x7F"), "a\\x09b\\x7F");
  EXPECT_EQ(vireline::DisplayText("\xC3("), "\\xC3(");          // a lead byte without its continuation
  EXPECT_EQ(vireline::DisplayText("\xE0\x80\xAF"), "\\xE0\\x80\\xAF");  // an overlong "/"
  EXPECT_EQ(vireline::DisplayText("\xED\xA0\x80"), "\\xED\\xA0\\x80");  // a surrogate
}

TEST(DisplayTextTest, NullIsEmpty) { EXPECT_EQ(vireline::DisplayText(nullptr), ""); }
