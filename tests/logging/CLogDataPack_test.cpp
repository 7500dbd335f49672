// The packed field buffer of a record: layout, resizing string fields, copies
// and bad indexes.
#include <vireline/CLogDataPack.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace {

std::string Buffer(const CLogDataPack& pack) {
  return std::string(reinterpret_cast<const char*>(pack.GetBuffer()), pack.GetTotalSize());
}

}  // namespace

TEST(CLogDataPack, FieldsLieBackToBackAndStartZeroFilled) {
  const unsigned long sizes[] = {6, 4, 1};
  CLogDataPack pack(3, sizes);
  EXPECT_EQ(pack.GetFieldCount(), 3u);
  EXPECT_EQ(pack.GetTotalSize(), 11u);
  EXPECT_EQ(pack.GetField(1) - pack.GetField(0), 6);
  EXPECT_EQ(pack.GetField(2) - pack.GetField(0), 10);
  EXPECT_EQ(Buffer(pack), std::string(11, '\0'));
}

TEST(CLogDataPack, NoSizesGiveOneFieldOfOneByte) {
  const unsigned long sizes[] = {6};
  CLogDataPack none(0, sizes);
  CLogDataPack null(4, nullptr);
  for (const CLogDataPack* pack : {&none, &null}) {
    EXPECT_EQ(pack->GetFieldCount(), 1u);
    EXPECT_EQ(pack->GetTotalSize(), 1u);
    EXPECT_EQ(pack->GetFieldSize(0), 1u);
  }
}

TEST(CLogDataPack, ASizeOfZeroCountsAsOne) {
  const unsigned long sizes[] = {0, 2, 0};
  CLogDataPack pack(3, sizes);
  EXPECT_EQ(pack.GetFieldSize(0), 1u);
  EXPECT_EQ(pack.GetFieldSize(2), 1u);
  EXPECT_EQ(pack.GetTotalSize(), 4u);
}

TEST(CLogDataPack, AStringFieldGrowsToItsTextAndNul) {
  const unsigned long sizes[] = {6, 0};
  CLogDataPack pack(2, sizes);
  pack.SetField(1, "abc", 0);
  EXPECT_EQ(pack.GetTotalSize(), 10u);
  EXPECT_EQ(pack.GetTotalSize() - 6, 4u);  // the payload length
  EXPECT_EQ(std::string(reinterpret_cast<char*>(pack.GetField(1))), "abc");
}

TEST(CLogDataPack, ResizingAMiddleFieldMovesTheLaterFields) {
  const unsigned long sizes[] = {2, 0, 3};
  CLogDataPack pack(3, sizes);
  pack.SetField(0, "AB", 2);
  pack.SetField(2, "XYZ", 3);
  pack.SetField(1, "hello", 0);
  EXPECT_EQ(Buffer(pack), std::string("AB") + "hello" + std::string(1, '\0') + "XYZ");
  pack.SetField(1, "", 0);  // shrinks back to the NUL alone
  EXPECT_EQ(Buffer(pack), std::string("AB") + std::string(1, '\0') + "XYZ");
  EXPECT_EQ(pack.GetField(2) - pack.GetField(0), 3);
}

TEST(CLogDataPack, GetFieldPastTheLastFieldIsNull) {
  const unsigned long sizes[] = {6, 4};
  CLogDataPack pack(2, sizes);
  EXPECT_EQ(pack.GetField(2), nullptr);
  EXPECT_EQ(pack.GetField(~0ul), nullptr);
  EXPECT_EQ(pack.GetFieldSize(2), 0u);
}

TEST(CLogDataPack, SetFieldWithNullDataOrABadIndexChangesNothing) {
  const unsigned long sizes[] = {6, 4};
  CLogDataPack pack(2, sizes);
  pack.SetField(1, "\x01\x02\x03\x04", 4);
  std::string before = Buffer(pack);
  pack.SetField(1, nullptr, 4);
  pack.SetField(2, "\x05\x06\x07\x08", 4);
  pack.SetField(2, "longer text", 0);
  EXPECT_EQ(Buffer(pack), before);
  EXPECT_EQ(pack.GetTotalSize(), 10u);
}

TEST(CLogDataPack, AFieldMayBeSetFromTheSameBuffer) {
  const unsigned long sizes[] = {0, 0};
  CLogDataPack pack(2, sizes);
  pack.SetField(0, "first", 0);
  pack.SetField(1, pack.GetField(0), 0);  // the old buffer is freed only after the copy
  EXPECT_EQ(Buffer(pack), std::string("first") + '\0' + "first" + '\0');
}

TEST(CLogDataPack, CopiesAreDeepAndIndependent) {
  const unsigned long sizes[] = {1, 0};
  std::unique_ptr<CLogDataPack> original(new CLogDataPack(2, sizes));
  original->SetField(1, "one", 0);
  CLogDataPack copy(*original);
  CLogDataPack assigned(1, sizes);
  assigned = *original;
  original->SetField(1, "changed", 0);
  original.reset();
  EXPECT_EQ(std::string(reinterpret_cast<char*>(copy.GetField(1))), "one");
  EXPECT_EQ(std::string(reinterpret_cast<char*>(assigned.GetField(1))), "one");
  EXPECT_EQ(assigned.GetTotalSize(), 5u);
}

TEST(CLogDataPack, AssigningAPackToItselfKeepsIt) {
  const unsigned long sizes[] = {0};
  CLogDataPack pack(1, sizes);
  pack.SetField(0, "kept", 0);
  CLogDataPack& same = pack;
  pack = same;
  EXPECT_EQ(Buffer(pack), std::string("kept") + '\0');
}

TEST(CLogDataPack, SizesSummingBeyondThirtyTwoBitsFallBackToOneByte) {
  const unsigned long sizes[] = {6, 0xFFFFFFFFul};
  CLogDataPack pack(2, sizes);
  EXPECT_EQ(pack.GetFieldCount(), 1u);
  EXPECT_EQ(pack.GetTotalSize(), 1u);
}
