// Loading relocatable datasets: relocation, refusals and bad input.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>
#include <string>

#include "milestones/DatasetTest.h"
#include "platform/FaultInjectionEnv.h"

using vireline::FaultInjectionEnv;

namespace {

// A small linked structure: a header pointing at a name and at a second
// record, which points back at the name.
const uint32_t kNameOffset = 12;
const uint32_t kSecondOffset = 20;

std::string LinkedDataset() {
  return DatasetTest::Words({kNameOffset, kSecondOffset, 0xAABBCCDDu}) + std::string("dino\0\0\0\0", 8) +
         DatasetTest::Words({kNameOffset, 42});
}

}  // namespace

TEST_F(DatasetTest, RelocatedFieldsHoldTheLowBitsOfTheirTargetsAddress) {
  boost::shared_array<char> block = Load(LinkedDataset(), Words({0, 4, kSecondOffset}));
  ASSERT_TRUE(block);
  EXPECT_EQ(FieldAt(block.get(), 0), Address(block.get()) + kNameOffset);
  EXPECT_EQ(FieldAt(block.get(), 4), Address(block.get()) + kSecondOffset);
  EXPECT_EQ(FieldAt(block.get(), kSecondOffset), Address(block.get()) + kNameOffset);
  EXPECT_EQ(FieldAt(block.get(), 8), 0xAABBCCDDu);  // not listed: untouched
  EXPECT_EQ(FieldAt(block.get(), kSecondOffset + 4), 42u);
  EXPECT_EQ(std::string(block.get() + kNameOffset), "dino");
  EXPECT_EQ(MessageText(), "");
}

TEST_F(DatasetTest, RelocatedPointersCanBeFollowed) {
  if (sizeof(void*) != 4) GTEST_SKIP() << "relocated pointers are 32-bit; followed only in a 32-bit address space";
  boost::shared_array<char> block = Load(LinkedDataset(), Words({0, 4, kSecondOffset}));
  ASSERT_TRUE(block);
  const char* name = nullptr;
  std::memcpy(&name, block.get(), sizeof name);
  EXPECT_STREQ(name, "dino");
  const char* second = nullptr;
  std::memcpy(&second, block.get() + 4, sizeof second);
  const char* nameAgain = nullptr;
  std::memcpy(&nameAgain, second, sizeof nameAgain);
  EXPECT_EQ(nameAgain, name);
}

TEST_F(DatasetTest, UnalignedOffsetsAreRelocated) {
  std::string dataset = std::string(1, 'x') + Words({8}) + std::string(2, 'y') + Words({3}) + "tail";
  boost::shared_array<char> block = Load(dataset, Words({1, 7}));
  ASSERT_TRUE(block);
  EXPECT_EQ(FieldAt(block.get(), 1), Address(block.get()) + 8);
  EXPECT_EQ(FieldAt(block.get(), 7), Address(block.get()) + 3);
  EXPECT_EQ(block[0], 'x');
  EXPECT_EQ(std::string(block.get() + 11, 4), "tail");
}

TEST_F(DatasetTest, AFieldEndingExactlyAtTheEndIsRelocated) {
  boost::shared_array<char> block = Load(Words({1, 2, 3}), Words({8}));
  ASSERT_TRUE(block);
  EXPECT_EQ(FieldAt(block.get(), 8), Address(block.get()) + 3);
}

TEST_F(DatasetTest, ARelinkSizeNotAMultipleOfFourIgnoresTheTrailingBytes) {
  boost::shared_array<char> block = Load(Words({4, 0}), Words({0}) + "\xFF\xFF\xFF");
  ASSERT_TRUE(block);
  EXPECT_EQ(FieldAt(block.get(), 0), Address(block.get()) + 4);
  EXPECT_EQ(FieldAt(block.get(), 4), 0u);
}

TEST_F(DatasetTest, ARelinkFileShorterThanOneOffsetRelocatesNothing) {
  boost::shared_array<char> block = Load(Words({4, 0}), "\x01\x02");
  ASSERT_TRUE(block);
  EXPECT_EQ(FieldAt(block.get(), 0), 4u);
}

TEST_F(DatasetTest, ARelinkFileLargerThanTheDatasetIsRefusedAtItsFirstBadOffset) {
  EXPECT_FALSE(Load(Words({0}), Words({0, 0, 0, 4})));
  EXPECT_EQ(MessageText(),
            "LoadDataset: offset 4 (entry 3 of /data/level.relinkBin) leaves no room for a 4-byte field in the "
            "4-byte dataset /data/level.dsetBin\n");
}

TEST_F(DatasetTest, AnOffsetPastTheEndRefusesTheWholeDataset) {
  EXPECT_FALSE(Load(Words({0, 0, 0}), Words({0, 100})));
  EXPECT_EQ(MessageText(),
            "LoadDataset: offset 100 (entry 1 of /data/level.relinkBin) leaves no room for a 4-byte field in the "
            "12-byte dataset /data/level.dsetBin\n");
  ASSERT_EQ(Messages().size(), 1u);
  EXPECT_EQ(Messages()[0].module, 0x281);
  EXPECT_EQ(Messages()[0].level, 2);
}

TEST_F(DatasetTest, AnOffsetThreeBytesBeforeTheEndIsRefused) {
  EXPECT_FALSE(Load(Words({0, 0, 0}), Words({9})));
  EXPECT_NE(MessageText().find("offset 9 (entry 0 of"), std::string::npos);
}

TEST_F(DatasetTest, AnOffsetNearFourGigabytesDoesNotWrapAround) {
  EXPECT_FALSE(Load(Words({0, 0, 0}), Words({0xFFFFFFFDu})));
  EXPECT_NE(MessageText().find("offset 4294967293 (entry 0 of"), std::string::npos);
}

TEST_F(DatasetTest, ADatasetNamedBinIsRefusedAndNothingRead) {
  WriteFile("/data/level.bin", Words({0}));
  WriteFile(kRelink, Words({0}));
  FaultInjectionEnv counting(vireline::Env::Default());
  vireline::Env::SetCurrent(&counting);
  boost::shared_array<char> block = LoadDataset("/data/level.bin", kRelink);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_FALSE(block);
  EXPECT_EQ(counting.Calls(FaultInjectionEnv::kOpen), 0);
  EXPECT_EQ(MessageText(), "");
}

TEST_F(DatasetTest, ExtensionsMustMatchExactly) {
  WriteFile("/data/a.DSETBIN", Words({0}));
  WriteFile("/data/a.dsetBin", Words({0}));
  WriteFile("/data/a.relinkbin", Words({0}));
  WriteFile("/data/a.dsetBin.relinkBin", Words({0}));
  WriteFile("/data/noextension", Words({0}));
  EXPECT_FALSE(LoadDataset("/data/a.DSETBIN", "/data/a.dsetBin.relinkBin"));
  EXPECT_FALSE(LoadDataset("/data/a.dsetBin", "/data/a.relinkbin"));
  EXPECT_FALSE(LoadDataset("/data/a.dsetBin", "/data/noextension"));
  EXPECT_FALSE(LoadDataset("/data/a.dsetBin.relinkBin", "/data/a.dsetBin.relinkBin"));
  EXPECT_TRUE(LoadDataset("/data/a.dsetBin", "/data/a.dsetBin.relinkBin"));
}

TEST_F(DatasetTest, AnEmptyRelinkFileGivesAnEmptyResult) { EXPECT_FALSE(Load(Words({0}), "")); }

TEST_F(DatasetTest, AnEmptyDatasetGivesAnEmptyResult) { EXPECT_FALSE(Load("", Words({0}))); }

TEST_F(DatasetTest, MissingFilesAndEmptyPathsGiveAnEmptyResult) {
  EXPECT_FALSE(LoadDataset(kDataset, kRelink));
  WriteFile(kDataset, Words({0}));
  EXPECT_FALSE(LoadDataset(kDataset, kRelink));
  EXPECT_FALSE(LoadDataset("", kRelink));
  EXPECT_FALSE(LoadDataset(kDataset, ""));
  EXPECT_EQ(MessageText(), "");
}

TEST_F(DatasetTest, AFolderNamedLikeADatasetIsRefused) {
  MakeDirs("/data/folder.dsetBin");
  WriteFile(kRelink, Words({0}));
  EXPECT_FALSE(LoadDataset("/data/folder.dsetBin", kRelink));
}

TEST_F(DatasetTest, AFailingDatasetReadIsRefusedAndReported) {
  WriteFile(kDataset, Words({0, 1}));
  WriteFile(kRelink, Words({0}));
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kRead, 0);
  boost::shared_array<char> block = LoadDataset(kDataset, kRelink);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_FALSE(block);
  EXPECT_EQ(MessageText(), "LoadDataset: read 0 of the 8 bytes of /data/level.dsetBin\n");
}

TEST_F(DatasetTest, AFailingRelinkReadLeavesNoGarbageOffsets) {
  WriteFile(kDataset, Words({0, 1}));
  WriteFile(kRelink, Words({0, 4}));
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  // The test double reads byte by byte: the dataset's 8 bytes, then 5 of the relink file's.
  faults.FailAfter(FaultInjectionEnv::kRead, 8 + 5);
  boost::shared_array<char> block = LoadDataset(kDataset, kRelink);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_FALSE(block);
  EXPECT_EQ(MessageText(), "LoadDataset: read 5 of the 8 bytes of /data/level.relinkBin\n");
}

TEST_F(DatasetTest, AFailingOpenIsRefused) {
  WriteFile(kDataset, Words({0, 1}));
  WriteFile(kRelink, Words({0}));
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kOpen, 0);
  boost::shared_array<char> block = LoadDataset(kDataset, kRelink);
  vireline::Env::SetCurrent(nullptr);
  EXPECT_FALSE(block);
  EXPECT_EQ(MessageText(), "LoadDataset: read 0 of the 8 bytes of /data/level.dsetBin\n");
}

TEST_F(DatasetTest, BinaryRelinkContentIsRefusedNotFollowed) {
  EXPECT_FALSE(Load(Words({0, 0}), std::string("\xDE\xAD\xBE\xEF\x00\x00\x00\x00", 8)));
  EXPECT_NE(MessageText().find("offset 4022250974 (entry 0 of"), std::string::npos);
}

TEST_F(DatasetTest, TheResultIsSharedAndOutlivesItsFirstHolder) {
  boost::shared_array<char> copy;
  {
    boost::shared_array<char> block = Load(Words({4, 7}), Words({0}));
    ASSERT_TRUE(block);
    copy = block;
    EXPECT_EQ(copy.use_count(), 2);
  }
  EXPECT_EQ(copy.use_count(), 1);
  EXPECT_EQ(FieldAt(copy.get(), 4), 7u);
}

// A sanitizer reserves a huge shadow address space, so the address-space
// limit below cannot be used under one.
#if !defined(__SANITIZE_ADDRESS__)
TEST_F(DatasetTest, ADatasetTooLargeForMemoryIsACleanFailure) {
  const uint32_t kHuge = 0xFFFFFFF0u;
  WriteFile(kDataset, "");
  std::filesystem::resize_file(Host(kDataset), kHuge);  // sparse: takes no disk space
  WriteFile(kRelink, Words({0}));
  // A 32-bit process cannot hold 4 GiB anyway; a 64-bit one is held to 2 GiB.
  rlimit old;
  ASSERT_EQ(getrlimit(RLIMIT_AS, &old), 0);
  if (sizeof(void*) > 4) {
    rlimit limited = old;
    limited.rlim_cur = 2048ul << 20;
    ASSERT_EQ(setrlimit(RLIMIT_AS, &limited), 0);
  }
  boost::shared_array<char> block = LoadDataset(kDataset, kRelink);
  ASSERT_EQ(setrlimit(RLIMIT_AS, &old), 0);
  EXPECT_FALSE(block);
  EXPECT_EQ(MessageText(), "LoadDataset: no memory for the 4294967280 bytes of /data/level.dsetBin\n");
}

TEST_F(DatasetTest, ARelinkFileTooLargeForMemoryIsACleanFailure) {
  // On 32 bits this many offsets exceed what a vector can hold at all: the
  // same clean failure.
  const uint32_t kHuge = 0xFFFFFFF0u;
  WriteFile(kDataset, Words({4, 7}));
  WriteFile(kRelink, "");
  std::filesystem::resize_file(Host(kRelink), kHuge);  // sparse: takes no disk space
  rlimit old;
  ASSERT_EQ(getrlimit(RLIMIT_AS, &old), 0);
  if (sizeof(void*) > 4) {
    rlimit limited = old;
    limited.rlim_cur = 2048ul << 20;
    ASSERT_EQ(setrlimit(RLIMIT_AS, &limited), 0);
  }
  boost::shared_array<char> block = LoadDataset(kDataset, kRelink);
  ASSERT_EQ(setrlimit(RLIMIT_AS, &old), 0);
  EXPECT_FALSE(block);
  EXPECT_EQ(MessageText(), "LoadDataset: no memory for the 1073741820 offsets of /data/level.relinkBin\n");
}
#endif
