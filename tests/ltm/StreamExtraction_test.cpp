#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "ltm/StreamExtraction.h"

namespace {

// A read-only stream over `content` (kept alive by the caller).
FILE* StreamOf(std::string& content) { return fmemopen(&content[0], content.size(), "r"); }

std::string WordOf(std::string content, size_t limit) {
  if (content.empty()) content = " ";  // fmemopen needs at least one byte
  FILE* stream = StreamOf(content);
  std::string word = vireline::ExtractWord(stream, limit);
  std::fclose(stream);
  return word;
}

bool NumberOf(std::string content, unsigned long* value) {
  FILE* stream = StreamOf(content);
  bool good = vireline::ExtractUnsigned(stream, value);
  std::fclose(stream);
  return good;
}

}  // namespace

TEST(StreamExtractionTest, WordSkipsLeadingWhiteSpaceAndStopsAtTheNext) {
  EXPECT_EQ(WordOf("\n\t 2.4.1 build 7\n", 255), "2.4.1");
  EXPECT_EQ(WordOf("2.4.1", 255), "2.4.1");
}

TEST(StreamExtractionTest, WordOfOnlyWhiteSpaceIsEmpty) { EXPECT_EQ(WordOf(" \n\n", 255), ""); }

TEST(StreamExtractionTest, WordIsCutAtTheLimit) {
  EXPECT_EQ(WordOf(std::string(1000, '9') + "\n", 255), std::string(255, '9'));
}

TEST(StreamExtractionTest, NumberIsSetOnlyWhenTheStreamStaysGood) {
  unsigned long value = 77;
  EXPECT_FALSE(NumberOf("12", &value));
  EXPECT_EQ(value, 77u);
  EXPECT_FALSE(NumberOf("x", &value));
  EXPECT_EQ(value, 77u);
  EXPECT_TRUE(NumberOf("12\n", &value));
  EXPECT_EQ(value, 12u);
}

TEST(StreamExtractionTest, LargestNumberFitsAndOneMoreOverflows) {
  unsigned long value = 0;
  std::string largest = std::to_string(static_cast<unsigned long>(-1));
  EXPECT_TRUE(NumberOf(largest + "\n", &value));
  EXPECT_EQ(value, static_cast<unsigned long>(-1));
  std::string oneMore = largest;
  oneMore.back() = static_cast<char>(oneMore.back() + 1);  // ...615 -> ...616 (or ...295 -> ...296)
  EXPECT_FALSE(NumberOf(oneMore + "\n", &value));
}
