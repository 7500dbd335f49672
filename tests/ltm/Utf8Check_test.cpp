// The quick UTF-8 check of documents gives g_utf8_validate's verdict on every
// input: long ASCII runs are skipped 8 bytes at a time, and whatever follows
// the first other byte is still judged byte by byte.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <glib.h>

#include <vireline/LTMJson.h>

#include "ltm/Utf8Check.h"

namespace {

// g_utf8_validate's verdict on all of `bytes`, embedded zeros included.
bool GlibVerdict(const std::string& bytes) {
  return g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), nullptr) != FALSE;
}

bool QuickVerdict(const std::string& bytes) { return LTM::IsValidUtf8(bytes.data(), bytes.size()); }

// What may follow an ASCII run: valid characters of every length, and
// invalid, cut short and overlong sequences.
const std::vector<std::string> kTails = {
    "\xC3\xA9",          "\xE2\x82\xAC",     "\xF0\x9F\x98\x80", "\xC3",      "\xE2\x82",   "\xF0\x9F\x98",
    "\x80",              "\xBF",             "\xFF",             "\xFE",      "\xC0\xAF",   "\xED\xA0\x80",
    "\xF4\x90\x80\x80",  "\xC3\xA9z\x80",    "\xC3\xA9 tail",    std::string(1, '\0'), "\x7F",
};

}  // namespace

TEST(Utf8CheckTest, TheEmptyTextAndPlainAsciiOfEveryLengthAreValid) {
  EXPECT_TRUE(QuickVerdict(""));
  std::string text;
  for (int length = 0; length < 40; ++length, text += static_cast<char>('!' + length)) {
    EXPECT_TRUE(QuickVerdict(text)) << length;
  }
}

TEST(Utf8CheckTest, EveryTailAtEveryOffsetOfAnAsciiRunGetsGlibsVerdict) {
  for (const std::string& tail : kTails) {
    for (size_t offset = 0; offset < 40; ++offset) {
      std::string text = std::string(offset, 'a') + tail + std::string(offset % 11, 'b');
      EXPECT_EQ(QuickVerdict(text), GlibVerdict(text)) << "offset " << offset << ", tail of " << tail.size();
    }
  }
}

TEST(Utf8CheckTest, AnInvalidByteAfterALongAsciiRunIsFound) {
  for (size_t run : {4096u, 4097u, 4103u, 65536u}) {
    std::string text(run, 'x');
    EXPECT_TRUE(QuickVerdict(text));
    EXPECT_FALSE(QuickVerdict(text + "\xC3")) << run;
    EXPECT_FALSE(QuickVerdict(text + "\xFF" + std::string(30, 'y'))) << run;
    EXPECT_TRUE(QuickVerdict(text + "\xC3\xA9" + std::string(30, 'y'))) << run;
  }
}

TEST(Utf8CheckTest, AZeroByteAnywhereMakesTheTextInvalidAsForGlib) {
  for (size_t offset = 0; offset < 24; ++offset) {
    std::string text(24, 'q');
    text[offset] = '\0';
    EXPECT_FALSE(QuickVerdict(text)) << offset;
    EXPECT_EQ(QuickVerdict(text), GlibVerdict(text));
    text += "\xC3\xA9";  // a later non-ASCII character does not hide it
    EXPECT_FALSE(QuickVerdict(text)) << offset;
  }
}

TEST(Utf8CheckTest, EveryByteAfterEveryByteGetsGlibsVerdict) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      std::string text = std::string(9, 'p') + static_cast<char>(first) + static_cast<char>(second);
      ASSERT_EQ(QuickVerdict(text), GlibVerdict(text)) << first << " " << second;
    }
  }
}

TEST(Utf8CheckTest, TheReaderRefusesInvalidBytesAfterALongAsciiRun) {
  LTM::Reader reader;
  LTM::Value root;
  Glib::ustring text(std::string("{\"k\": \"") + std::string(5000, 'v') + "\xE2\x82\"}");
  EXPECT_FALSE(reader.parse(text, root));
  EXPECT_EQ(reader.getFormattedErrorMessages(), "The document is not valid UTF-8.\n");
  EXPECT_TRUE(root.isNull());
  EXPECT_TRUE(reader.parse(Glib::ustring(std::string("{\"k\": \"") + std::string(5000, 'v') + "\xE2\x82\xAC\"}"), root));
  EXPECT_EQ(root["k"].asString().raw(), std::string(5000, 'v') + "\xE2\x82\xAC");
}
