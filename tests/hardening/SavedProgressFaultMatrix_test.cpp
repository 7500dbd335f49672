// The small documents a device saves as a player goes along - the device
// settings, milestones, CYO progress - with the platform failing each call of
// the save in turn (once, or from then on): the file holds the old content or
// the new one, whole, nothing temporary is left beside it, and a reported
// success means the new content is there.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/CCyo.h>
#include <vireline/CMilestones.h>
#include <vireline/CSettingsCfgFile.h>

#include "hardening/FaultMatrix.h"
#include "hardening/PlayerSaves.h"
#include "ltm/CyoTest.h"

using vireline::FaultInjectionEnv;

namespace {

const char kSettingsFolder[] = "/QV/Bulk";
const char kSettingsPath[] = "/QV/Bulk/settings.cfg";
const char kSettingsOld[] = "CurrProfile=0x00000001\r\nLocale=en-us\r\n";
const char kSettingsNew[] = "CurrProfile=0x00000001\nLocale=fr-fr\n";

const char kMilestonesAfterAdd[] = "{\"a\":true,\"b\":true,\"c\":true}\n\n";

// The file is the old content or the new one, whole.
void ExpectWhole(const std::string& now, const std::string& oldContent, const std::string& newContent) {
  EXPECT_TRUE(now == oldContent || now == newContent) << now;
}

// And as reported: the new content after a success, the old one after a
// failure - unless only the folder sync failed, after the replace was done.
void ExpectAsReported(const FaultMatrixStep& step, bool reported, const std::string& now,
                      const std::string& oldContent, const std::string& newContent) {
  ExpectWhole(now, oldContent, newContent);
  if (reported) {
    EXPECT_EQ(now, newContent);
  } else if (step.op != FaultInjectionEnv::kSyncDir) {
    EXPECT_EQ(now, oldContent);
  }
}

}  // namespace

class SavedProgressFaultMatrixTest : public CyoTest {
 protected:
  void SetUp() override {
    CyoTest::SetUp();
    vireline::Env::SetCurrent(&mFaults);
  }

  FaultInjectionEnv mFaults{vireline::Env::Default()};
};

TEST_F(SavedProgressFaultMatrixTest, ASettingsWriteKeepsTheOldSettingsOrTheNewOnesWhole) {
  // The settings, meta.inf and profile.dsc files share one write: the settings stand for all three.
  const int runs = RunFaultMatrix(
      mFaults, FileOps(), [&] { WriteFile(kSettingsPath, kSettingsOld); },
      [&] {
        CSettingsCfgFile file;
        file.Open(kSettingsPath);
        file.SetLocale("fr-fr");
        return file.Write();
      },
      [&](const FaultMatrixStep& step, bool reported) {
        EXPECT_EQ(List(kSettingsFolder), std::vector<std::string>{"settings.cfg"});
        ExpectAsReported(step, reported, ReadFile(kSettingsPath), kSettingsOld, kSettingsNew);
      });
  EXPECT_GT(runs, 20);
  RecordProperty("injected_failures", runs);
}

TEST_F(SavedProgressFaultMatrixTest, AMilestoneAddedKeepsTheOldMilestonesOrAddsItWhole) {
  const int runs = RunFaultMatrix(
      mFaults, FileOps(), [&] { WriteFile(kMilestonesPath, kMilestonesOld); },
      // A failed save still answers true: only the file tells.
      [&] { return CMilestones::Instance()->Add("c"); },
      [&](const FaultMatrixStep&, bool) {
        EXPECT_EQ(List(kPlayerFolder), std::vector<std::string>{"Milestones.json"});
        ExpectWhole(ReadFile(kMilestonesPath), kMilestonesOld, kMilestonesAfterAdd);
      });
  EXPECT_GT(runs, 10);
  RecordProperty("injected_failures", runs);
}

TEST_F(SavedProgressFaultMatrixTest, AMilestoneRemovedKeepsTheOldMilestonesOrDropsItWhole) {
  const int runs = RunFaultMatrix(
      mFaults, FileOps(), [&] { WriteFile(kMilestonesPath, kMilestonesOld); },
      [&] { return CMilestones::Instance()->Remove("b"); },
      [&](const FaultMatrixStep& step, bool reported) {
        EXPECT_EQ(List(kPlayerFolder), std::vector<std::string>{"Milestones.json"});
        ExpectAsReported(step, reported, ReadFile(kMilestonesPath), kMilestonesOld, kMilestonesAfterRemove);
      });
  EXPECT_GT(runs, 10);
  RecordProperty("injected_failures", runs);
}

TEST_F(SavedProgressFaultMatrixTest, ACyoProgressSaveKeepsTheOldProgressOrTheNewWhole) {
  WriteSpellingSet();
  const std::string folder = std::string(kPlayerFolder) + "/" + kSpellingId;
  const int runs = RunFaultMatrix(
      mFaults, FileOps(), [&] { WriteFile(ProgressPath(1), kProgressOld); },
      [&] {
        // The player is named: the save, not the lookup of the current player, is under test.
        LTM::CCyo cyo(tPlayerID{1}, Glib::ustring("Spelling"));
        // False means saved, and is also the answer when no set was found
        // (a failed folder walk included): only a loaded set's answer counts.
        const bool saved = !cyo.SetStatus(0, 7);
        return cyo.IsLoaded() && saved;  // the destructor saves once more
      },
      [&](const FaultMatrixStep&, bool reported) {
        EXPECT_EQ(List(folder), std::vector<std::string>{"progress.json"});
        // A failed SetStatus may still be followed by a good save on destruction.
        const std::string now = ReadFile(ProgressPath(1));
        ExpectWhole(now, kProgressOld, kProgressNew);
        if (reported) {
          EXPECT_EQ(now, kProgressNew);
        }
      });
  EXPECT_GT(runs, 20);
  RecordProperty("injected_failures", runs);
}
