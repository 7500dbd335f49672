// The calls of the lower layers into the layers above them give the answers
// of the areas they forward to.
#include "baseutils/UpperLayers.h"

#include <gtest/gtest.h>

#include <vector>

#include "DeviceRootTest.h"

class UpperLayersTest : public DeviceRootTest {};

TEST_F(UpperLayersTest, ATextListHoldsTheTextEntriesOfItsMemberInOrder) {
  WriteFile("/QV/list.json", R"({"FolderList": ["/a", 3, "/b", null]})");
  std::vector<CString> texts;
  EXPECT_TRUE(vireline::upper::ReadTextList("/QV/list.json", "FolderList", &texts));
  EXPECT_EQ(texts, (std::vector<CString>{"/a", "/b"}));
}

TEST_F(UpperLayersTest, ATextListNeedsTheDocumentAndItsMember) {
  WriteFile("/QV/other.json", R"({"Other": ["/a"]})");
  WriteFile("/QV/scalar.json", R"({"FolderList": "/a"})");
  std::vector<CString> texts;
  EXPECT_FALSE(vireline::upper::ReadTextList("/QV/missing.json", "FolderList", &texts));
  EXPECT_FALSE(vireline::upper::ReadTextList("/QV/other.json", "FolderList", &texts));
  // A member that is not a list names nothing, but the document was read.
  EXPECT_TRUE(vireline::upper::ReadTextList("/QV/scalar.json", "FolderList", &texts));
  EXPECT_TRUE(texts.empty());
}

TEST_F(UpperLayersTest, APackageWithoutMetadataHasTheFallbackVersion) {
  MakeDirs("/QV/Bulk/Pack");
  EXPECT_EQ(vireline::upper::ValidPackageVersion("/QV/Bulk/Pack", "none"), "none");
}
