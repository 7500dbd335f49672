// Version order and the version a package's metadata states.
#include <vireline/BaseUtils.h>

#include <gtest/gtest.h>

#include <string>

#include "DeviceRootTest.h"

class BaseUtilsVersionTest : public DeviceRootTest {
 protected:
  int Compare(const std::string& a, const std::string& b) { return BaseUtils::Instance()->CompareVersion(a, b); }
};

TEST_F(BaseUtilsVersionTest, LongerNumbersAreNewerWithoutConversion) {
  EXPECT_GT(Compare("1.10", "1.9"), 0);
  EXPECT_LT(Compare("1.9", "1.10"), 0);
}

TEST_F(BaseUtilsVersionTest, ALengthDifferenceIsReturnedAsIs) {
  EXPECT_EQ(Compare("1.100", "1.9"), 2);
  EXPECT_EQ(Compare("7", "1234"), -3);
}

TEST_F(BaseUtilsVersionTest, ALongerVersionEqualsItsOwnPrefix) {
  EXPECT_EQ(Compare("2.0", "2.0.1"), 0);
  EXPECT_EQ(Compare("2.0.1", "2.0"), 0);
}

TEST_F(BaseUtilsVersionTest, AnEmptyVersionEqualsAnything) {
  EXPECT_EQ(Compare("", "1"), 0);
  EXPECT_EQ(Compare("1", ""), 0);
  EXPECT_EQ(Compare("1.0", "..."), 0);
}

TEST_F(BaseUtilsVersionTest, UnderscoreDotAndHyphenSeparateAlike) {
  EXPECT_EQ(Compare("1_2", "1.2"), 0);
  EXPECT_EQ(Compare("1.0-2_3", "1_0.2-3"), 0);
}

TEST_F(BaseUtilsVersionTest, RunsOfDelimitersAndLeadingDelimitersCountAsOne) {
  EXPECT_EQ(Compare("..1..2", "1.2"), 0);
  EXPECT_EQ(Compare("1.-_3", "1.3"), 0);
}

TEST_F(BaseUtilsVersionTest, ALeadingZeroMakesATokenNewer) { EXPECT_GT(Compare("010", "10"), 0); }

TEST_F(BaseUtilsVersionTest, LettersCompareByteWiseInTokensOfEqualLength) {
  EXPECT_LT(Compare("1.a", "1.b"), 0);
  EXPECT_GT(Compare("1.B", "1.A"), 0);
  EXPECT_GT(Compare("1.a", "1.Z"), 0);
}

TEST_F(BaseUtilsVersionTest, EqualVersionsCompareEqual) { EXPECT_EQ(Compare("1.2.3", "1.2.3"), 0); }

TEST_F(BaseUtilsVersionTest, OnlyTheFirstSixtyThreeCharactersCount) {
  std::string base(62, '1');
  EXPECT_EQ(Compare(base + ".9", base + ".1"), 0);
  EXPECT_NE(Compare(base.substr(1) + ".9", base.substr(1) + ".1"), 0);
}

TEST_F(BaseUtilsVersionTest, TheVersionComesFromThePackagesMetadata) {
  WriteFile("/QV/Bulk/ProgramFiles/Game/meta.inf",
            "Device=KastrelVoyant\nPackageID=APP-1\nVersion=2.3.4\nType=Application\n");
  EXPECT_EQ(BaseUtils::Instance()->ReadVersionFromMeta("/QV/Bulk/ProgramFiles/Game"), "2.3.4");
  EXPECT_EQ(BaseUtils::Instance()->ReadVersionFromMeta("/QV/Bulk/ProgramFiles/Game/"), "2.3.4");
}

TEST_F(BaseUtilsVersionTest, NoMetadataGivesNotAvailable) {
  MakeDirs("/QV/Bulk/ProgramFiles/Game");
  EXPECT_EQ(BaseUtils::Instance()->ReadVersionFromMeta("/QV/Bulk/ProgramFiles/Game"), "Not Available");
  EXPECT_EQ(BaseUtils::Instance()->ReadVersionFromMeta("/QV/Bulk/ProgramFiles/Missing"), "Not Available");
}

TEST_F(BaseUtilsVersionTest, InvalidMetadataGivesNotAvailableEvenWithAVersion) {
  WriteFile("/QV/Bulk/ProgramFiles/Game/meta.inf", "Device=KastrelVoyant\nVersion=2.3.4\nType=Application\n");
  EXPECT_EQ(BaseUtils::Instance()->ReadVersionFromMeta("/QV/Bulk/ProgramFiles/Game"), "Not Available");
}
