#include <gtest/gtest.h>

#include "tools/SampleImageTest.h"

class VersionCompareCommandTest : public SampleImageTest {};

TEST_F(VersionCompareCommandTest, ALongerNumberIsNewer) {
  InspectorRun run = Run("version-compare 1.10 1.9");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "1 newer: 1.10 is newer than 1.9\n");
}

TEST_F(VersionCompareCommandTest, OlderIsNegative) {
  EXPECT_EQ(Run("version-compare 1.2.3 1.20").out, "-1 older: 1.2.3 is older than 1.20\n");
}

TEST_F(VersionCompareCommandTest, AVersionEqualsItsOwnPrefix) {
  EXPECT_EQ(Run("version-compare 2.0 2.0.1").out, "0 equal: 2.0 is equal to 2.0.1\n");
}

TEST_F(VersionCompareCommandTest, AnEmptyVersionEqualsAnything) {
  EXPECT_EQ(Run("version-compare '' 1").out, "0 equal:  is equal to 1\n");
}

TEST_F(VersionCompareCommandTest, BothVersionsAreNeeded) { EXPECT_EQ(Run("version-compare 1.0").exitStatus, 2); }
