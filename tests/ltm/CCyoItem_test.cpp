// The per-item handle older applications use: each operation warns that it is
// deprecated, and a status set through it lands in the set's manifest.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "ltm/CyoTest.h"

using LTM::CCyo;
using LTM::CCyoItem;

class CyoItemTest : public CyoTest {
 protected:
  void SetUp() override {
    CyoTest::SetUp();
    WriteSpellingSet();
  }
};

TEST_F(CyoItemTest, ReadsTheManifestEntryAndWarnsEachTime) {
  CCyo cyo(LTM::kCyoSpelling);
  std::unique_ptr<CCyoItem> item(cyo.GetItem(1));
  ASSERT_NE(item, nullptr);
  CaptureDebugOutput();
  EXPECT_EQ(item->GetValue(), "dog");
  EXPECT_EQ(item->GetAudio(), "/QV/Bulk/Downloads/Spelling/Audio/dog.wav");
  EXPECT_EQ(item->GetStatus(), 0u);
  EXPECT_EQ(DebugOutput(), Deprecated("Quorvane::Orvo::CString LTM::CCyoItem::GetValue()") +
                               Deprecated("Quorvane::Orvo::CPath LTM::CCyoItem::GetAudio()") +
                               Deprecated("LTM::tCyoStatus LTM::CCyoItem::GetStatus()"));
}

TEST_F(CyoItemTest, GetItemWarnsWithItsOwnWording) {
  CCyo cyo(LTM::kCyoSpelling);
  CaptureDebugOutput();
  std::unique_ptr<CCyoItem> item(cyo.GetItem(0));
  EXPECT_NE(item, nullptr);
  EXPECT_EQ(DebugOutput(), "WARNING:  Use of deprecated function:  CCyo::GetItem(...)\n");
}

TEST_F(CyoItemTest, SetStatusWritesTheManifestAndSavesIt) {
  {
    CCyo cyo(LTM::kCyoSpelling);
    std::unique_ptr<CCyoItem> item(cyo.GetItem(0));
    CaptureDebugOutput();
    item->SetStatus(4);
    EXPECT_EQ(DebugOutput(), Deprecated("void LTM::CCyoItem::SetStatus(LTM::tCyoStatus)"));
    EXPECT_EQ(item->GetStatus(), 4u);
    EXPECT_EQ(cyo.GetStatus(0), 0u);  // the player's progress is another document
  }
  EXPECT_EQ(ReadFile(std::string(kCyos) + "Spelling/manifest.json"),
            "{\"CompletionParam\":3,\"ID\":\"SPELL-WEEK3\",\"ItemList\":[{\"Audio\":\"Audio/cat.wav\",\"Status\":4,"
            "\"Val\":\"cat\"},{\"Audio\":\"Audio/dog.wav\",\"Val\":\"dog\"}]}\n\n");
  EXPECT_EQ(ReadFile(ProgressPath(1)), "{}\n\n");
}

TEST_F(CyoItemTest, GetStatusWarnsAfterTheRead) {
  WriteFile(std::string(kCyos) + "Spelling/manifest.json", "{\"ItemList\":[{\"Status\":\"done\"}]}");
  CCyo cyo(LTM::kCyoSpelling);
  std::unique_ptr<CCyoItem> item(cyo.GetItem(0));
  CaptureDebugOutput();
  EXPECT_EQ(item->GetStatus(), 0u);  // not a number: the type error comes first
  std::string output = DebugOutput();
  std::string warning = Deprecated("LTM::tCyoStatus LTM::CCyoItem::GetStatus()");
  ASSERT_GT(output.size(), warning.size());
  EXPECT_EQ(output.substr(output.size() - warning.size()), warning);
}

TEST_F(CyoItemTest, WithoutAManifestTheItemAnswersDefaults) {
  CCyo cyo(LTM::kCyoMathPlus);
  CCyoItem item(&cyo, nullptr, 0);
  EXPECT_EQ(item.GetStatus(), 2u);
  EXPECT_EQ(item.GetValue(), "");
  EXPECT_EQ(item.GetAudio(), "");
  item.SetStatus(1);
  EXPECT_EQ(DebugOutput(), Deprecated("LTM::tCyoStatus LTM::CCyoItem::GetStatus()") +
                               Deprecated("Quorvane::Orvo::CString LTM::CCyoItem::GetValue()") +
                               Deprecated("Quorvane::Orvo::CPath LTM::CCyoItem::GetAudio()") +
                               Deprecated("void LTM::CCyoItem::SetStatus(LTM::tCyoStatus)"));
}

TEST_F(CyoItemTest, AHugeIndexIsNotWrittenIntoTheManifest) {
  const std::string manifest = ReadFile(std::string(kCyos) + "Spelling/manifest.json");
  {
    CCyo cyo(LTM::kCyoSpelling);
    CCyoItem item(&cyo, nullptr, 0);
    LTM::CJSonFile file(std::string(kCyos) + "Spelling/manifest.json", 0);
    ASSERT_EQ(file.Load(), 0u);
    CCyoItem huge(&cyo, &file, 0xFFFFFFFFu);
    huge.SetStatus(1);
    EXPECT_EQ(huge.GetStatus(), 0u);
  }
  EXPECT_EQ(ReadFile(std::string(kCyos) + "Spelling/manifest.json"), manifest);
}
