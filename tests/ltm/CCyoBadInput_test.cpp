// CYO sets on damaged devices: malformed manifests and progress files, failing
// saves, huge item numbers, and the first model's layout, where no set exists.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include <vireline/CSystemData.h>

#include "ltm/CyoTest.h"
#include "platform/FaultInjectionEnv.h"

using LTM::CCyo;
using vireline::FaultInjectionEnv;

namespace {

const char kOldProgress[] = "{\"ItemList\":[{\"Status\":3}]}\n\n";

}  // namespace

class CyoBadInputTest : public CyoTest {
 protected:
  std::string ManifestPath() const { return std::string(kCyos) + "Spelling/manifest.json"; }
};

TEST_F(CyoBadInputTest, AFailingSaveAnswersTrue) {
  WriteSpellingSet();
  WriteFile(ProgressPath(1), kOldProgress);
  FaultInjectionEnv faults(vireline::Env::Default());  // outlives the object that saves on destruction
  CCyo cyo(LTM::kCyoSpelling);
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kRename, 0, ENOSPC);
  EXPECT_TRUE(cyo.SetStatus(0, 1));
  faults.Reset();
  EXPECT_EQ(ReadFile(ProgressPath(1)), kOldProgress);
  EXPECT_FALSE(cyo.SetStatus(0, 1));
  EXPECT_EQ(ReadFile(ProgressPath(1)), "{\"ItemList\":[{\"Status\":1}]}\n\n");
}

TEST_F(CyoBadInputTest, AHugeIndexIsRefusedWithoutGrowingTheDocument) {
  WriteSpellingSet();
  WriteFile(ProgressPath(1), kOldProgress);
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_TRUE(cyo.SetStatus(0xFFFFFFFFu, 1));
  EXPECT_TRUE(cyo.SetStatus(0x7FFFFFFFu, 1));
  EXPECT_TRUE(cyo.SetStatus(10000, 1));
  EXPECT_EQ(ReadFile(ProgressPath(1)), kOldProgress);
  EXPECT_EQ(cyo.GetStatus(0xFFFFFFFFu), 0u);
}

TEST_F(CyoBadInputTest, TheLastAcceptedIndex) {
  WriteSpellingSet();
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_FALSE(cyo.SetStatus(9999, 6));
  EXPECT_EQ(cyo.GetStatus(9999), 6u);
}

TEST_F(CyoBadInputTest, TheLegacyFlagMakesEveryReaderAnswerItsDefault) {
  WriteSpellingSet();
  WriteFile(ProgressPath(1), kOldProgress);
  CCyo cyo(LTM::kCyoSpelling);
  ASSERT_TRUE(cyo.IsLoaded());
  std::unique_ptr<LTM::CCyoItem> item(cyo.GetItem(0));
  CSystemData::Instance()->SetZantoLegacyFlag(true);
  EXPECT_FALSE(cyo.IsLoaded());
  EXPECT_EQ(cyo.GetID(), "");
  EXPECT_EQ(cyo.GetPath(), "");
  EXPECT_EQ(cyo.size(), 0u);
  EXPECT_EQ(cyo.GetCompletionParameters(), 0u);
  EXPECT_EQ(cyo.GetStatus(0), 2u);
  EXPECT_EQ(cyo.GetValue(0), "");
  EXPECT_EQ(cyo.GetAudio(0), "");
  EXPECT_EQ(cyo.GetItem(0), nullptr);
  EXPECT_FALSE(cyo.SetStatus(0, 1));
  EXPECT_EQ(item->GetStatus(), 2u);
  EXPECT_EQ(item->GetValue(), "");
  EXPECT_EQ(item->GetAudio(), "");
  item->SetStatus(1);
  EXPECT_EQ(ReadFile(ProgressPath(1)), kOldProgress);
  EXPECT_EQ(ReadFile(ManifestPath()), kManifest);
}

TEST_F(CyoBadInputTest, UnderTheLegacyFlagNoSetIsFound) {
  WriteSpellingSet();
  CSystemData::Instance()->SetZantoLegacyFlag(true);
  CCyo cyo(LTM::kCyoSpelling);
  CSystemData::Instance()->SetZantoLegacyFlag(false);
  EXPECT_FALSE(cyo.IsLoaded());
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Local/1"));
}

TEST_F(CyoBadInputTest, AManifestThatIsNotJsonLoadsAsAnEmptySet) {
  WriteSet("Spelling", "Spelling", kSpellingId, "DeviceAccess=1\n", "{\"ID\":");
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_TRUE(cyo.IsLoaded());
  EXPECT_EQ(cyo.size(), 0u);
  EXPECT_EQ(cyo.GetID(), "");
  EXPECT_EQ(cyo.GetValue(0), "");
  EXPECT_EQ(DebugOutput(), "CJSonFile::Load() failed to open (JSON parser reported an error) mRsrcPath = " +
                               ManifestPath() + "\n" + NoFile(ProgressPath(1)));
  EXPECT_EQ(ReadFile(ManifestPath()), "{\"ID\":");
}

TEST_F(CyoBadInputTest, AMissingManifestLeavesAnEmptySet) {
  WriteSpellingSet();
  std::remove(Host(ManifestPath()).c_str());
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_TRUE(cyo.IsLoaded());
  EXPECT_EQ(cyo.size(), 0u);
  EXPECT_EQ(cyo.GetID(), "");
  EXPECT_EQ(DebugOutput(), NoFile(ManifestPath()) + NoFile(ProgressPath(1)));
}

TEST_F(CyoBadInputTest, AManifestWhoseRootIsNotAnObjectAnswersDefaults) {
  WriteSet("Spelling", "Spelling", kSpellingId, "DeviceAccess=1\n", "[\"cat\",\"dog\"]");
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_EQ(cyo.size(), 0u);
  EXPECT_EQ(cyo.GetID(), "");
  EXPECT_EQ(cyo.GetValue(0), "");
  EXPECT_EQ(cyo.GetCompletionParameters(), 0u);
  EXPECT_EQ(ReadFile(ManifestPath()), "[\"cat\",\"dog\"]");
}

TEST_F(CyoBadInputTest, AnItemListThatIsNotAnArrayHoldsNoItems) {
  WriteSet("Spelling", "Spelling", kSpellingId, "DeviceAccess=1\n", "{\"ItemList\":{\"Val\":\"cat\"}}");
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_EQ(cyo.size(), 1u);  // an object's member count, as the JSON value counts
  EXPECT_EQ(cyo.GetValue(0), "");
  EXPECT_EQ(cyo.GetItem(5), nullptr);
}

TEST_F(CyoBadInputTest, AProgressFileThatIsNotJsonStartsAfresh) {
  WriteSpellingSet();
  WriteFile(ProgressPath(1), "\x01\x02not json");
  {
    CCyo cyo(LTM::kCyoSpelling);
    EXPECT_EQ(cyo.GetStatus(0), 0u);
    EXPECT_FALSE(cyo.SetStatus(1, 2));
  }
  EXPECT_EQ(ReadFile(ProgressPath(1)), "{\"ItemList\":[null,{\"Status\":2}]}\n\n");
}

TEST_F(CyoBadInputTest, AProgressRootThatIsNotAnObjectIsKept) {
  WriteSpellingSet();
  WriteFile(ProgressPath(1), "[5]");
  {
    CCyo cyo(LTM::kCyoSpelling);
    EXPECT_EQ(cyo.GetStatus(0), 0u);
    EXPECT_FALSE(cyo.SetStatus(0, 1));
  }
  EXPECT_EQ(ReadFile(ProgressPath(1)), "[5]\n\n");
}

TEST_F(CyoBadInputTest, AProgressItemListThatIsNotAnArrayIsKept) {
  WriteSpellingSet();
  WriteFile(ProgressPath(1), "{\"ItemList\":\"none\"}");
  {
    CCyo cyo(LTM::kCyoSpelling);
    EXPECT_EQ(cyo.GetStatus(0), 0u);
    cyo.SetStatus(0, 1);
  }
  EXPECT_EQ(ReadFile(ProgressPath(1)), "{\"ItemList\":\"none\"}\n\n");
}

TEST_F(CyoBadInputTest, AProgressFileThatCannotBeReadStartsAfresh) {
  WriteSpellingSet();
  WriteFile(ProgressPath(1), kOldProgress);
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  { CCyo counted(LTM::kCyoSpelling); }
  int reads = faults.Calls(FaultInjectionEnv::kRead);  // the progress file is read last
  ASSERT_GT(reads, 0);
  WriteFile(ProgressPath(1), kOldProgress);
  faults.Reset();
  faults.FailAfter(FaultInjectionEnv::kRead, reads - 1, EIO, true);
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_TRUE(cyo.IsLoaded());
  EXPECT_EQ(cyo.GetValue(0), "cat");
  EXPECT_EQ(cyo.GetStatus(0), 0u);
}
