// The block reader behind CFileIO::Open: the same lines, keys and values
// however the file's bytes arrive (one at a time, in odd pieces, in blocks
// barely larger than a line) and whatever the block size.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "files/KeyValueReader.h"

using vireline::KeyValueReader;
using vireline::KeyValueText;
using vireline::Result;

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

// A file of `content` read at most `piece` bytes at a time; the read after
// `goodReads` successful ones fails with EIO (never when negative).
class PieceFile : public vireline::SequentialFile {
 public:
  PieceFile(std::string content, size_t piece, int goodReads = -1)
      : mContent(std::move(content)), mPiece(piece), mGoodReads(goodReads) {}

  Result Read(size_t n, char* scratch, size_t* got) override {
    *got = 0;
    if (mGoodReads == 0) return Result::Error(EIO);
    if (mGoodReads > 0) --mGoodReads;
    size_t count = std::min({n, mPiece, mContent.size() - mAt});
    std::memcpy(scratch, mContent.data() + mAt, count);
    mAt += count;
    *got = count;
    return Result::Ok();
  }
  Result Close() override { return Result::Ok(); }

 private:
  std::string mContent;
  size_t mPiece;
  int mGoodReads;
  size_t mAt = 0;
};

std::string Trimmed(const std::string& text) {
  size_t start = text.find_first_not_of(" \t");
  if (start == std::string::npos) return "";
  return text.substr(start, text.find_last_not_of(" \t") - start + 1);
}

// The pairs a byte-by-byte reading of the format gives, for comparison.
Pairs ByteByByte(const std::string& bytes, bool skipBom) {
  Pairs pairs;
  std::string line;
  auto finish = [&] {
    std::string text = line.substr(0, line.find('\0'));
    line.clear();
    size_t equals = text.find('=');
    if (equals != std::string::npos) pairs.emplace_back(Trimmed(text.substr(0, equals)), Trimmed(text.substr(equals + 1)));
  };
  size_t at = skipBom && bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
  for (; at < bytes.size(); ++at) {
    if (bytes[at] == '\r' || bytes[at] == '\n') {
      if (!line.empty()) finish();
      continue;
    }
    line += bytes[at];
    if (line.size() == KeyValueReader::kMaxLine) finish();
  }
  if (!line.empty()) finish();
  return pairs;
}

// Every pair the reader hands out for `file`; *failed tells whether a read failed.
Pairs ReadAll(vireline::SequentialFile* file, size_t blockSize, bool skipBom = true, bool* failed = nullptr) {
  std::vector<char> block(blockSize);
  KeyValueReader reader(file, block.data(), block.size(), skipBom);
  Pairs pairs;
  KeyValueText text;
  while (reader.Next(&text)) pairs.emplace_back(std::string(text.key, text.keyLength),
                                                std::string(text.value, text.valueLength));
  if (failed != nullptr) *failed = !reader.status().ok();
  return pairs;
}

Pairs Read(const std::string& content, size_t piece = 4096, size_t blockSize = 4096, bool skipBom = true) {
  PieceFile file(content, piece);
  return ReadAll(&file, blockSize, skipBom);
}

}  // namespace

TEST(KeyValueReaderTest, EitherLineEndEndsALineAndEmptyLinesAreSkipped) {
  EXPECT_EQ(Read("\r\n\na=1\rb=2\r\n\r\nc=3\n"), (Pairs{{"a", "1"}, {"b", "2"}, {"c", "3"}}));
}

TEST(KeyValueReaderTest, ALastLineWithoutALineEndIsRead) {
  EXPECT_EQ(Read("a=1\nb=2"), (Pairs{{"a", "1"}, {"b", "2"}}));
  EXPECT_EQ(Read("a=1\nb=2", 1), (Pairs{{"a", "1"}, {"b", "2"}}));
}

TEST(KeyValueReaderTest, KeysAndValuesAreTrimmedOfSpacesAndTabsOnly) {
  EXPECT_EQ(Read(" \tkey \t= \tone two\t \n"), (Pairs{{"key", "one two"}}));
  EXPECT_EQ(Read("k=\n=v\n = \n"), (Pairs{{"k", ""}, {"", "v"}, {"", ""}}));
  EXPECT_EQ(Read("k=\x0Bv\x0C\n"), (Pairs{{"k", "\x0Bv\x0C"}}));
}

TEST(KeyValueReaderTest, TheFirstEqualsSignSplitsAndLinesWithoutOneAreSkipped) {
  EXPECT_EQ(Read("# comment\na=b=c\n[section]\nd==\n"), (Pairs{{"a", "b=c"}, {"d", "="}}));
}

TEST(KeyValueReaderTest, QuotesAreLeftAsTheyAre) {
  EXPECT_EQ(Read("a=\"x\",\"y\"\n"), (Pairs{{"a", "\"x\",\"y\""}}));
}

TEST(KeyValueReaderTest, ANulByteEndsTheLinesText) {
  EXPECT_EQ(Read(std::string("a=b\0c=d\ne\0=f\ng=h", 16)), (Pairs{{"a", "b"}, {"g", "h"}}));
}

TEST(KeyValueReaderTest, ALongLineGoesOnAsTheNextLine) {
  std::string value(300, 'v');
  EXPECT_EQ(Read("k=" + value + "\n"), (Pairs{{"k", value.substr(0, 253)}}));
  EXPECT_EQ(Read(std::string(254, 'a') + "k=v\n"), (Pairs{{"", "v"}}));
  EXPECT_EQ(Read("k=" + std::string(253, 'v') + "\nx=1\n"), (Pairs{{"k", std::string(253, 'v')}, {"x", "1"}}));
}

TEST(KeyValueReaderTest, LinesRunAcrossBlocksAndReads) {
  std::string content;
  for (int i = 0; i < 200; ++i) {
    content += "Key" + std::to_string(i) + " = " + std::string(static_cast<size_t>(i * 7 % 600), 'x') +
               (i % 3 == 0 ? "\r\n" : "\n");
  }
  content += "last=no line end";
  Pairs expected = ByteByByte(content, true);
  ASSERT_EQ(expected.size(), 201u);
  for (size_t blockSize : {KeyValueReader::kMaxLine + 1, size_t{300}, size_t{4096}}) {
    for (size_t piece : {size_t{1}, size_t{7}, size_t{255}, size_t{256}, size_t{5000}}) {
      EXPECT_EQ(Read(content, piece, blockSize), expected) << blockSize << " " << piece;
    }
  }
}

TEST(KeyValueReaderTest, RandomBytesReadAsByteByByte) {
  static const char kBytes[] = {'=', '=', ' ', '\t', '\r', '\n', '\n', '\0', 'a', 'k', '"', '\xEF', '\xBB', '\xBF'};
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    std::string content;
    size_t size = random() % 2000;
    bool runs = round % 2 == 0;  // long runs without a line end
    for (size_t i = 0; i < size; ++i) {
      content += runs && random() % 4 != 0 ? 'a' : kBytes[random() % sizeof kBytes];
    }
    size_t piece = 1 + random() % 600;
    size_t blockSize = KeyValueReader::kMaxLine + 1 + random() % 400;
    bool skipBom = random() % 2 == 0;
    EXPECT_EQ(Read(content, piece, blockSize, skipBom), ByteByByte(content, skipBom)) << round;
  }
}

TEST(KeyValueReaderTest, AByteOrderMarkIsSkippedOnlyAtTheStartAndWhenAsked) {
  EXPECT_EQ(Read("\xEF\xBB\xBF" "a=1\n\xEF\xBB\xBF" "b=2\n"), (Pairs{{"a", "1"}, {"\xEF\xBB\xBF" "b", "2"}}));
  EXPECT_EQ(Read("\xEF\xBB\xBF" "a=1\n", 1), (Pairs{{"a", "1"}}));
  EXPECT_EQ(Read("\xEF\xBB" "a=1\n", 1), (Pairs{{"\xEF\xBB" "a", "1"}}));
  EXPECT_EQ(Read("\xEF\xBB\xBF" "a=1\n", 4096, 4096, false), (Pairs{{"\xEF\xBB\xBF" "a", "1"}}));
  EXPECT_EQ(Read("\xEF\xBB\xBF"), Pairs{});
}

TEST(KeyValueReaderTest, AFailedReadEndsTheFileAfterWhatCameBefore) {
  const std::string content = "alpha=1\nbeta=22\n";
  for (int goodReads = 0; goodReads <= static_cast<int>(content.size()); ++goodReads) {
    PieceFile file(content, 1, goodReads);
    bool failed = false;
    Pairs pairs = ReadAll(&file, 4096, true, &failed);
    EXPECT_TRUE(failed) << goodReads;
    Pairs expected = ByteByByte(content.substr(0, static_cast<size_t>(goodReads)), true);
    EXPECT_EQ(pairs, expected) << goodReads;
  }
  PieceFile whole(content, 1);
  bool failed = true;
  EXPECT_EQ(ReadAll(&whole, 4096, true, &failed), (Pairs{{"alpha", "1"}, {"beta", "22"}}));
  EXPECT_FALSE(failed);
}
