// How a fuzz input that feeds several files is cut into them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fuzz/FuzzSupport.h"

namespace {

std::vector<std::string> Split(const std::string& input, size_t count) {
  return vireline::fuzz::SplitInput(reinterpret_cast<const uint8_t*>(input.data()), input.size(), count);
}

const std::string kSeparator = vireline::fuzz::kFileSeparator;

TEST(FuzzSplitInput, CutsAtEachSeparator) {
  EXPECT_EQ(Split("a" + kSeparator + "b" + kSeparator + "c", 3), (std::vector<std::string>{"a", "b", "c"}));
}

TEST(FuzzSplitInput, MissingPiecesAreEmpty) {
  EXPECT_EQ(Split("only", 3), (std::vector<std::string>{"only", "", ""}));
  EXPECT_EQ(Split("", 2), (std::vector<std::string>{"", ""}));
}

TEST(FuzzSplitInput, TheLastPieceKeepsFurtherSeparators) {
  EXPECT_EQ(Split("a" + kSeparator + "b" + kSeparator + "c", 2),
            (std::vector<std::string>{"a", "b" + kSeparator + "c"}));
}

TEST(FuzzSplitInput, AnInputEndingInASeparatorEndsInAnEmptyPiece) {
  EXPECT_EQ(Split("a" + kSeparator, 2), (std::vector<std::string>{"a", ""}));
}

}  // namespace
