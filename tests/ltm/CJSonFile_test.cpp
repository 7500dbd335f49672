// Loading and saving whole JSON documents.
#include <gtest/gtest.h>

#include <string>

#include "ltm/CJSonFileTest.h"

using LTM::CJSonFile;
using LTM::Value;

namespace {

const char kPath[] = "/QV/Bulk/Data/test.json";

}  // namespace

TEST_F(CJSonFileTest, EmptyPathFailsSilently) {
  CJSonFile file("", 1);
  EXPECT_EQ(file.Load(), 1u);
  EXPECT_EQ(file.Save(), kSaveFailed);
  EXPECT_EQ(DebugOutput(), "");
  EXPECT_TRUE(file.mRoot.isNull());
}

TEST_F(CJSonFileTest, DefaultConstructedHasNoFileAndAnEmptyObject) {
  CJSonFile file;
  EXPECT_TRUE(file.mRoot.isObject());
  EXPECT_TRUE(file.mRoot.empty());
  EXPECT_EQ(file.Load(), 1u);
  EXPECT_EQ(file.Save(), kSaveFailed);
  EXPECT_TRUE(file.mRoot.isObject());
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CJSonFileTest, MissingFileWithCreateFlagIsCreatedAsAnEmptyObject) {
  MakeDirs("/QV/Bulk/Data");
  CJSonFile file(kPath, 1);
  EXPECT_EQ(file.Load(), 0u);
  EXPECT_EQ(ReadFile(kPath), "{}\r\n");
  EXPECT_TRUE(file.mRoot.isObject());
  EXPECT_TRUE(file.mRoot.empty());
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CJSonFileTest, MissingFileWithoutCreateFlagFailsAndCreatesNothing) {
  MakeDirs("/QV/Bulk/Data");
  CJSonFile file(kPath, 0);
  EXPECT_EQ(file.Load(), 1u);
  EXPECT_EQ(DebugOutput(), NoFile(kPath));
  EXPECT_FALSE(Exists(kPath));
  EXPECT_TRUE(file.mRoot.isNull());
}

TEST_F(CJSonFileTest, MissingFolderWithCreateFlagFailsSilentlyCreatingThenReportsTheOpen) {
  CJSonFile file("/QV/Missing/test.json", 1);
  EXPECT_EQ(file.Load(), 1u);
  EXPECT_EQ(DebugOutput(), NoFile("/QV/Missing/test.json"));
  EXPECT_FALSE(Exists("/QV/Missing"));
  EXPECT_TRUE(file.mRoot.isNull());
}

TEST_F(CJSonFileTest, FileMessagesAreLevelTwoAndTheParserMessageLevelOne) {
  SetLevel(1);
  WriteFile(kPath, "not json");
  CJSonFile missing("/QV/Bulk/Data/none.json", 0);
  EXPECT_EQ(missing.Load(), 1u);
  EXPECT_EQ(DebugOutput(), "");
  CJSonFile bad(kPath, 0);
  EXPECT_EQ(bad.Load(), 1u);
  EXPECT_EQ(DebugOutput(), ParseError(kPath));
}

TEST_F(CJSonFileTest, EmptyFileIsAParseErrorLeavingAnEmptyObject) {
  WriteFile(kPath, "");
  CJSonFile file(kPath, 0);
  EXPECT_EQ(file.Load(), 1u);
  EXPECT_EQ(DebugOutput(), ParseError(kPath));
  EXPECT_TRUE(file.mRoot.isObject());
  EXPECT_TRUE(file.mRoot.empty());
}

TEST_F(CJSonFileTest, InvalidJsonFailsAndAFollowingSaveWritesAnEmptyObject) {
  WriteFile(kPath, "{\"a\": [1, 2");
  CJSonFile file(kPath, 1);
  EXPECT_EQ(file.Load(), 1u);
  EXPECT_EQ(DebugOutput(), ParseError(kPath));
  EXPECT_EQ(ReadFile(kPath), "{\"a\": [1, 2");  // never repaired by Load
  EXPECT_EQ(file.Save(), 0u);
  EXPECT_EQ(ReadFile(kPath), "{}\n\n");
}

TEST_F(CJSonFileTest, RoundTripWritesOneLineAndTwoLineFeeds) {
  MakeDirs("/QV/Bulk/Data");
  CJSonFile file(kPath, 0);
  file.mRoot["a"] = 1;
  EXPECT_EQ(file.Save(), 0u);
  EXPECT_EQ(ReadFile(kPath), "{\"a\":1}\n\n");
  CJSonFile again(kPath, 0);
  EXPECT_EQ(again.Load(), 0u);
  EXPECT_TRUE(again.mRoot == file.mRoot);
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CJSonFileTest, SavedBytesAreJsonCppsCompactText) {
  WriteFile(kPath,
            "{\n  \"Flags\" : [ { \"LocaleCode\" : \"fr-fr\", \"Art\" : \"fr.png\" } ],\n"
            "  \"Name\" : \"Caf\xC3\xA9\",\n  \"Score\" : 2.5,\n  \"Count\" : -3,\n  \"On\" : true,\n"
            "  \"None\" : null\n}\n");
  CJSonFile file(kPath, 0);
  ASSERT_EQ(file.Load(), 0u);
  file.mRoot["Flags"][0u]["Audio"] = "fr.ogg";
  ASSERT_EQ(file.Save(), 0u);
  EXPECT_EQ(ReadFile(kPath),
            "{\"Count\":-3,\"Flags\":[{\"Art\":\"fr.png\",\"Audio\":\"fr.ogg\",\"LocaleCode\":\"fr-fr\"}],"
            "\"Name\":\"Caf\\u00e9\",\"None\":null,\"On\":true,\"Score\":2.5}\n\n");
}

TEST_F(CJSonFileTest, SaveReplacesTheFileAndLeavesNoTemporaryFile) {
  WriteFile(kPath, "{\"old\":true}");
  CJSonFile file(kPath, 0);
  ASSERT_EQ(file.Load(), 0u);
  file.mRoot.removeMember("old");
  file.mRoot["new"] = "yes";
  ASSERT_EQ(file.Save(), 0u);
  EXPECT_EQ(ReadFile(kPath), "{\"new\":\"yes\"}\n\n");
  EXPECT_EQ(List("/QV/Bulk/Data"), std::vector<std::string>{"test.json"});
}

TEST_F(CJSonFileTest, FolderAndNameAreJoinedWithoutASeparator) {
  WriteFile("/a/bc.json", "{\"joined\":1}");
  CJSonFile file("/a/b", "c.json", 0);
  EXPECT_EQ(file.Load(), 0u);
  EXPECT_EQ(file.mRoot["joined"].asInt(), 1);
  CJSonFile withSlash("/a/", "bc.json", 0);
  EXPECT_EQ(withSlash.Load(), 0u);
}

TEST_F(CJSonFileTest, NothingIsWrittenWithoutSave) {
  WriteFile(kPath, "{\"a\":1}");
  {
    CJSonFile file(kPath, 0);
    ASSERT_EQ(file.Load(), 0u);
    file.mRoot["a"] = 2;
  }
  EXPECT_EQ(ReadFile(kPath), "{\"a\":1}");
}

TEST_F(CJSonFileTest, LoadReplacesTheDocument) {
  WriteFile(kPath, "[1,2]");
  CJSonFile file(kPath, 0);
  file.mRoot["stale"] = 1;
  EXPECT_EQ(file.Load(), 0u);
  EXPECT_TRUE(file.mRoot.isArray());
  EXPECT_EQ(file.mRoot.size(), 2u);
}

TEST_F(CJSonFileTest, TextAfterAZeroByteIsIgnored) {
  WriteFile(kPath, std::string("{\"a\":1}\0garbage", 15));
  CJSonFile file(kPath, 0);
  EXPECT_EQ(file.Load(), 0u);
  EXPECT_EQ(file.mRoot["a"].asInt(), 1);
}

TEST_F(CJSonFileTest, CreatedFileWithCarriageReturnLoadsAsEmptyObjectAgain) {
  MakeDirs("/QV/Bulk/Data");
  CJSonFile first(kPath, 1);
  ASSERT_EQ(first.Load(), 0u);
  CJSonFile second(kPath, 0);
  EXPECT_EQ(second.Load(), 0u);
  EXPECT_TRUE(second.mRoot.isObject());
}

TEST_F(CJSonFileTest, SaveIntoAMissingFolderFails) {
  CJSonFile file("/QV/Nowhere/test.json", 0);
  file.mRoot["a"] = 1;
  EXPECT_EQ(file.Save(), kSaveFailed);
  EXPECT_FALSE(Exists("/QV/Nowhere"));
}

TEST_F(CJSonFileTest, SaveOfADocumentTooDeepToReadBackFailsAndKeepsTheFile) {
  WriteFile(kPath, "{}");
  CJSonFile file(kPath, 0);
  LTM::Value* at = &file.mRoot;
  for (unsigned i = 0; i <= LTM::kMaxJsonDepth; ++i) at = &at->append(LTM::Value(LTM::arrayValue));
  EXPECT_EQ(file.Save(), kSaveFailed);
  EXPECT_EQ(ReadFile(kPath), "{}");
}
