// The package and upload type names are fixed 16-byte character fields on
// every processor: client applications embed them in their own structures and
// walk the models' type tables, so their size and stride must not depend on
// the ABI. The directory configurations hold pointers and are only ever read
// through their fields, so their size may differ; nothing here fixes it.
#include <gtest/gtest.h>

#include <type_traits>

#include <vireline/PkgPath.h>

TEST(TypeNameLayout, NamesAreSixteenBytesWithByteAlignment) {
  EXPECT_EQ(sizeof(tPackageType), 16u);
  EXPECT_EQ(alignof(tPackageType), 1u);
  EXPECT_EQ(sizeof(tUploadDataType), 16u);
  EXPECT_EQ(alignof(tUploadDataType), 1u);
  EXPECT_TRUE(std::is_trivially_copyable<tPackageType>::value);
}

TEST(TypeNameLayout, TheNameFieldStartsTheObject) {
  tPackageType type("Application");
  EXPECT_EQ(static_cast<const void*>(type.ToString()), static_cast<const void*>(&type));
}

TEST(TypeNameLayout, ModelTablesAreContiguousSixteenByteNames) {
  EXPECT_EQ(sizeof(gTamselPkgTypes), 9u * 16u);
  EXPECT_EQ(sizeof(gKastrelUploadDataTypes), 2u * 16u);
  const char* first = gTamselPkgTypes[0].ToString();
  for (int i = 0; i < 9; ++i) EXPECT_EQ(gTamselPkgTypes[i].ToString(), first + 16 * i) << i;
}
