#include <gtest/gtest.h>

#include <algorithm>

#include <cstring>
#include <string>

#include "ltm/StreamExtraction.h"

namespace {

// A file holding `content`, handed out a few bytes at a time.
class StringFile : public vireline::SequentialFile {
 public:
  explicit StringFile(const std::string& content) : mContent(content) {}
  vireline::Result Read(size_t n, char* scratch, size_t* got) override {
    *got = std::min<size_t>({n, 3, mContent.size() - mAt});
    std::memcpy(scratch, mContent.data() + mAt, *got);
    mAt += *got;
    return vireline::Result::Ok();
  }
  vireline::Result Close() override { return vireline::Result::Ok(); }

 private:
  std::string mContent;
  size_t mAt = 0;
};

std::string WordOf(const std::string& content, size_t limit) {
  StringFile file(content);
  vireline::BufferedReader reader(&file);
  return vireline::ExtractWord(&reader, limit);
}

bool NumberOf(const std::string& content, unsigned long* value) {
  StringFile file(content);
  vireline::BufferedReader reader(&file);
  return vireline::ExtractUnsigned(&reader, value);
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
