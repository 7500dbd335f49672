// Whatever a document file holds, Load answers 1 with one of its messages
// and never crashes.
#include <gtest/gtest.h>

#include <string>

#include "ltm/CJSonFileTest.h"

using LTM::CJSonFile;

namespace {

const char kPath[] = "/QV/Bulk/Data/bad.json";

}  // namespace

class CJSonFileBadInputTest : public CJSonFileTest {
 protected:
  // Loads `content` from kPath, expecting a parse failure.
  void ExpectParseFailure(const std::string& content) {
    WriteFile(kPath, content);
    CJSonFile file(kPath, 0);
    EXPECT_EQ(file.Load(), 1u);
    EXPECT_EQ(DebugOutput(), ParseError(kPath));
    EXPECT_TRUE(file.mRoot.isObject());
    EXPECT_TRUE(file.mRoot.empty());
  }
};

TEST_F(CJSonFileBadInputTest, TruncatedDocument) { ExpectParseFailure("{\"Flags\":[{\"LocaleCode\":\"en-"); }

TEST_F(CJSonFileBadInputTest, NotUtf8) { ExpectParseFailure("{\"Name\":\"caf\xE9\"}"); }

TEST_F(CJSonFileBadInputTest, BinaryBytes) { ExpectParseFailure(std::string("\x89PNG\r\n\x1a\n\xff\xfe", 10)); }

TEST_F(CJSonFileBadInputTest, TenMebibytesOfNoise) { ExpectParseFailure(std::string(10 * 1024 * 1024, '~')); }

TEST_F(CJSonFileBadInputTest, NestedHundredThousandLevels) {
  ExpectParseFailure(std::string(100000, '[') + std::string(100000, ']'));
}

TEST_F(CJSonFileBadInputTest, NestedHundredThousandObjectsWithoutClosing) {
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "{\"a\":";
  ExpectParseFailure(text);
}

TEST_F(CJSonFileBadInputTest, TenMebibyteValidDocumentLoads) {
  std::string text = "[";
  while (text.size() < 10 * 1024 * 1024) text += "\"0123456789abcdef0123456789abcdef\",";
  text += "1]";
  WriteFile(kPath, text);
  CJSonFile file(kPath, 0);
  EXPECT_EQ(file.Load(), 0u);
  EXPECT_GT(file.mRoot.size(), 290000u);
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CJSonFileBadInputTest, DirectoryAtThePath) {
  MakeDirs(kPath);
  CJSonFile file(kPath, 1);
  EXPECT_EQ(file.Load(), 1u);
  std::string output = DebugOutput();
  EXPECT_TRUE(output == NoFile(kPath) || output == ParseError(kPath) || output == ShortRead(kPath) ||
              output == NoMemory(kPath))
      << output;
}

TEST_F(CJSonFileBadInputTest, DirectoryAtThePathCannotBeSavedOver) {
  MakeDirs(kPath);
  CJSonFile file(kPath, 0);
  file.mRoot["a"] = 1;
  EXPECT_EQ(file.Save(), kSaveFailed);
  EXPECT_TRUE(List(kPath).empty());
}
