// Reading a whole file into a string: a file that tells its size is read into
// room for all of it at once; one that cannot, or that is longer or shorter
// than it said, is still read to its end and never past the limit.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "DeviceRootTest.h"
#include "platform/Env.h"

using vireline::Env;
using vireline::Result;
using vireline::SequentialFile;

namespace {

// Hands out `content` in reads of at most `chunk` bytes, telling `hint` as
// its size (or nothing when `hint` is negative), and counts the reads.
class ScriptedFile : public SequentialFile, public vireline::SizeHinting {
 public:
  ScriptedFile(std::string content, long long hint, size_t chunk = 1 << 20)
      : mContent(std::move(content)), mHint(hint), mChunk(chunk) {}

  Result Read(size_t n, char* scratch, size_t* got) override {
    ++reads;
    largestAsked = n > largestAsked ? n : largestAsked;
    *got = std::min({n, mChunk, mContent.size() - mAt});
    std::memcpy(scratch, mContent.data() + mAt, *got);
    mAt += *got;
    return Result::Ok();
  }
  Result Close() override { return Result::Ok(); }
  bool SizeHint(uint64_t* size) override {
    if (mHint < 0) return false;
    *size = static_cast<uint64_t>(mHint);
    return true;
  }

  int reads = 0;
  size_t largestAsked = 0;

 private:
  std::string mContent;
  long long mHint;
  size_t mChunk;
  size_t mAt = 0;
};

std::string Pattern(size_t size) {
  std::string text(size, ' ');
  for (size_t i = 0; i < size; ++i) text[i] = static_cast<char>('a' + i % 26);
  return text;
}

}  // namespace

class ReadToStringTest : public DeviceRootTest {};

TEST_F(ReadToStringTest, AFileThatTellsItsSizeIsAskedForAllOfItAndOneByteMore) {
  ScriptedFile file(Pattern(100000), 100000);
  std::string bytes;
  EXPECT_TRUE(vireline::ReadToString(&file, 1 << 20, &bytes).ok());
  EXPECT_EQ(bytes, Pattern(100000));
  EXPECT_EQ(file.largestAsked, 100001u);
  EXPECT_EQ(file.reads, 2);  // the content, then its end
}

TEST_F(ReadToStringTest, AFileLongerThanItSaidIsStillReadToItsEnd) {
  ScriptedFile file(Pattern(50000), 10);
  std::string bytes;
  EXPECT_TRUE(vireline::ReadToString(&file, 1 << 20, &bytes).ok());
  EXPECT_EQ(bytes, Pattern(50000));
}

TEST_F(ReadToStringTest, AFileShorterThanItSaidOrSilentAboutItsSizeIsReadWhole) {
  for (long long hint : {-1LL, 0LL, 9000LL}) {
    ScriptedFile file(Pattern(7000), hint, 1000);  // in short reads, too
    std::string bytes;
    EXPECT_TRUE(vireline::ReadToString(&file, 1 << 20, &bytes).ok()) << hint;
    EXPECT_EQ(bytes, Pattern(7000)) << hint;
  }
}

TEST_F(ReadToStringTest, TheLimitHoldsWhateverSizeTheFileTells) {
  for (long long hint : {-1LL, 5LL, 99LL, 100LL, 101LL, 5000LL}) {
    ScriptedFile file(Pattern(5000), hint);
    std::string bytes;
    EXPECT_TRUE(vireline::ReadToString(&file, 100, &bytes).ok()) << hint;
    EXPECT_EQ(bytes, Pattern(100)) << hint;
    EXPECT_LE(file.largestAsked, 100u) << hint;
  }
}

TEST_F(ReadToStringTest, APlainFileTellsItsSizeAndIsReadWhole) {
  WriteFile("/QV/doc.json", Pattern(12345));
  std::unique_ptr<SequentialFile> file;
  ASSERT_TRUE(Env::Current()->NewSequentialFile("/QV/doc.json", &file).ok());
  uint64_t size = 0;
  EXPECT_TRUE(vireline::SizeHintOf(file.get(), &size));
  EXPECT_EQ(size, 12345u);
  std::string bytes;
  EXPECT_TRUE(vireline::ReadToString(file.get(), 1 << 20, &bytes).ok());
  EXPECT_EQ(bytes, Pattern(12345));
}
