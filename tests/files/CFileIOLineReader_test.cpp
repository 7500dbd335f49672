// The line reader subclasses use: lines of a stream they open themselves,
// read byte by byte as the firmware's own parsers read them.
#include <gtest/gtest.h>

#include <string>

#include <vireline/CFileIO.h>
#include <vireline/COrvoInterface.h>

#include "DeviceRootTest.h"
#include "files/KeyValueTest.h"

namespace {

const char kPath[] = "/QV/Base/lines.cfg";

// A subclass that reads its own stream with the protected line reader.
class LineReadingFileIO : public CFileIO {
 public:
  bool OpenStream(const char* path) {
    mpFile = COrvoInterface::FOpen(path, "r");
    return mpFile != nullptr;
  }
  bool StreamOpen() const { return mpFile != nullptr; }

  // The next line, or "<end>" with the length -1.
  std::string Line(U32 size = kLineSize) {
    char buffer[kLineSize];
    int length = GetLine(buffer, size);
    if (length < 0) return "<end>";
    EXPECT_EQ(static_cast<size_t>(length), std::string(buffer).size());
    return buffer;
  }

  using CFileIO::GetLine;
  using CFileIO::NextLine;
  using CFileIO::Parse;
};

}  // namespace

class CFileIOLineReaderTest : public DeviceRootTest {
 protected:
  LineReadingFileIO file;
};

TEST_F(CFileIOLineReaderTest, EmptyLinesAreSkippedAndEitherBreakEndsALine) {
  WriteFile(kPath, "\r\n\nfirst\rsecond\n\r\nthird");
  ASSERT_TRUE(file.OpenStream(kPath));
  EXPECT_EQ(file.Line(), "first");
  EXPECT_EQ(file.Line(), "second");
  EXPECT_EQ(file.Line(), "third");
  EXPECT_EQ(file.Line(), "<end>");
}

TEST_F(CFileIOLineReaderTest, ALongLineIsCutAndItsRestIsTheNextLine) {
  WriteFile(kPath, std::string(300, 'a') + "\nb\n");
  ASSERT_TRUE(file.OpenStream(kPath));
  EXPECT_EQ(file.Line(), std::string(255, 'a'));
  EXPECT_EQ(file.Line(), std::string(45, 'a'));
  EXPECT_EQ(file.Line(4), "b");
}

TEST_F(CFileIOLineReaderTest, WithoutAStreamOrABufferThereIsNoLine) {
  char buffer[8] = "x";
  EXPECT_EQ(file.GetLine(buffer, sizeof buffer), -1);
  EXPECT_EQ(buffer[0], '\0');
  EXPECT_EQ(file.GetLine(nullptr, sizeof buffer), -1);
  EXPECT_EQ(file.GetLine(buffer, 0), -1);
}

TEST_F(CFileIOLineReaderTest, NextLineSplitsAtTheFirstEqualsSignAndSkipsOtherLines) {
  WriteFile(kPath, "# no pair here\n\tKey = Value \r\nA=b=c\n");
  ASSERT_TRUE(file.OpenStream(kPath));
  char buffer[64];
  char* key = nullptr;
  char* value = nullptr;
  ASSERT_TRUE(file.NextLine(buffer, sizeof buffer, key, value));
  EXPECT_STREQ(key, "Key");
  EXPECT_STREQ(value, "Value");
  ASSERT_TRUE(file.NextLine(buffer, sizeof buffer, key, value));
  EXPECT_STREQ(key, "A");
  EXPECT_STREQ(value, "b=c");
  EXPECT_FALSE(file.NextLine(buffer, sizeof buffer, key, value));
}

TEST_F(CFileIOLineReaderTest, CloseReleasesAStreamASubclassLeftOpen) {
  WriteFile(kPath, "A=1\n");
  ASSERT_TRUE(file.OpenStream(kPath));
  file.Close();
  EXPECT_FALSE(file.StreamOpen());
}

TEST_F(CFileIOLineReaderTest, WriteClosesAStreamASubclassLeftOpenFirst) {
  WriteFile(kPath, "A=1\n");
  ASSERT_TRUE(file.Open(kPath));
  ASSERT_TRUE(file.OpenStream(kPath));
  ASSERT_TRUE(file.SetStr("A", "2"));
  ASSERT_TRUE(file.Write());
  EXPECT_FALSE(file.StreamOpen());
  EXPECT_EQ(ReadFile(kPath), "A=2\n");
}

TEST_F(CFileIOLineReaderTest, ParseReadsTheSubclasssStreamAsOpenReadsTheFile) {
  std::string content = "\xEF\xBB\xBF" "a=1\r\nb = \"two\"\n";
  for (int i = 0; i < 300; ++i) content += "k" + std::to_string(i) + "=" + std::string(i % 50, 'v') + "\n";
  content += std::string(300, 'x') + "=cut\nlast=no line end";
  WriteFile(kPath, content);
  CFileIO reference;
  ASSERT_TRUE(reference.Open(kPath));
  ASSERT_TRUE(file.OpenStream(kPath));
  file.Parse();
  EXPECT_EQ(EntriesOf(file), EntriesOf(reference));
  EXPECT_EQ(file.GetEntryCount(), 304u);
  EXPECT_STREQ(file.GetStr("a"), "1");
  EXPECT_STREQ(file.GetStr("b"), "two");
  EXPECT_STREQ(file.GetStr("k299"), std::string(49, 'v').c_str());
  EXPECT_STREQ(file.GetStr("last"), "no line end");
}
