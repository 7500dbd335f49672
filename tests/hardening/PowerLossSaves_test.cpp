// A player's saves cut short by a power loss at every durability step: once
// the device comes back, each file holds its old content or its new one,
// whole, with nothing temporary beside it, and a save that got through every
// step left the new content.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/CCyo.h>
#include <vireline/CMilestones.h>
#include <vireline/CPlayerProfile.h>

#include "hardening/PlayerSaves.h"
#include "hardening/PowerLossMatrix.h"
#include "ltm/CyoTest.h"
#include "ltm/PlayerProfileTest.h"

namespace {

const char kSharedOld[] = "Name=Old\nID=0x00000002\nGrade=0x00000001\n";
const char kSharedNew[] = "ID=0x00000003\nName=Ann\nPoints=0x00000000\n";
const char kPrivateOld[] = "Theme=Jungle\n";
const char kPrivateNew[] = "ID=0x00000000\nName=Ann\nPoints=0x00000000\n";

// One of the two contents; the new one once every step went through.
void ExpectOldOrNew(int cut, int steps, const std::string& now, const std::string& oldContent,
                    const std::string& newContent) {
  EXPECT_TRUE(now == oldContent || now == newContent) << now;
  if (cut == steps) {
    EXPECT_EQ(now, newContent);
  }
}

}  // namespace

class ProgressPowerLossTest : public CyoTest {
 protected:
  void SetUp() override {
    CyoTest::SetUp();
    vireline::Env::SetCurrent(&mLoss);
  }
  PowerLossEnv mLoss{vireline::Env::Default()};
};

TEST_F(ProgressPowerLossTest, AMilestoneSaveLeavesTheOldMilestonesOrTheNewOnesWhole) {
  const int cuts = CutPowerAtEveryStep(
      mLoss, [&] { WriteFile(kMilestonesPath, kMilestonesOld); }, [&] { CMilestones::Instance()->Remove("b"); },
      [&](int cut, int steps) {
        EXPECT_EQ(List(kPlayerFolder), std::vector<std::string>{"Milestones.json"});
        ExpectOldOrNew(cut, steps, ReadFile(kMilestonesPath), kMilestonesOld, kMilestonesAfterRemove);
      });
  EXPECT_GE(cuts, 4);  // sync, rename, folder sync, and the clean run
  RecordProperty("power_cuts", cuts);
}

TEST_F(ProgressPowerLossTest, ACyoProgressSaveLeavesTheOldProgressOrTheNewWhole) {
  WriteSpellingSet();
  const int cuts = CutPowerAtEveryStep(
      mLoss, [&] { WriteFile(ProgressPath(1), kProgressOld); },
      [&] {
        LTM::CCyo cyo(LTM::kCyoSpelling);
        cyo.SetStatus(0, 7);
      },
      [&](int cut, int steps) {
        EXPECT_EQ(List(std::string(kPlayerFolder) + "/" + kSpellingId), std::vector<std::string>{"progress.json"});
        ExpectOldOrNew(cut, steps, ReadFile(ProgressPath(1)), kProgressOld, kProgressNew);
      });
  EXPECT_GE(cuts, 7);  // two saves: SetStatus's and the destructor's
  RecordProperty("power_cuts", cuts);
}

class PlayerProfilePowerLossTest : public PlayerProfileTest {
 protected:
  void SetUp() override {
    PlayerProfileTest::SetUp();
    CaptureDebugOutput();
    vireline::Env::SetCurrent(&mLoss);
  }
  void TearDown() override {
    vireline::Env::SetCurrent(nullptr);
    PlayerProfileTest::TearDown();
  }
  PowerLossEnv mLoss{vireline::Env::Default()};
};

TEST_F(PlayerProfilePowerLossTest, ANewPlayerLeavesEachProfileFileOldOrNewWhole) {
  const int cuts = CutPowerAtEveryStep(
      mLoss,
      [&] {
        CLogFile::Destroy();
        WriteFile(SharedPath(1), kSharedOld);
        WriteFile(PrivatePath(1), kPrivateOld);
      },
      [&] { LTM::CPlayerProfile(1).NewProfile("Ann"); },
      [&](int cut, int steps) {
        EXPECT_EQ(List(LocalFolder(1)), (std::vector<std::string>{"profile.dsc", "profile_private.dsc"}));
        ExpectOldOrNew(cut, steps, ReadFile(SharedPath(1)), kSharedOld, kSharedNew);
        ExpectOldOrNew(cut, steps, ReadFile(PrivatePath(1)), kPrivateOld, kPrivateNew);
      });
  EXPECT_GE(cuts, 7);  // two files, each synced, renamed and its folder synced
  RecordProperty("power_cuts", cuts);
}
