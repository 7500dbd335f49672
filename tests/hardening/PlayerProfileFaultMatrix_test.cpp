// A player created in a slot, or removed from it, with the platform failing
// each call in turn (once, or from then on): every file the change touches
// holds its old content or its new one, whole, nothing temporary is left
// beside it, and a reported success means every file is the new one.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <vireline/CPlayerProfile.h>

#include "hardening/FaultMatrix.h"
#include "ltm/PlayerProfileTest.h"

using LTM::CPlayerProfile;
using vireline::FaultInjectionEnv;

namespace {

const char kSharedOld[] = "Name=Old\nID=0x00000002\nTotalPoints=0x00000050\nGrade=0x00000001\n";
const char kPrivateOld[] = "Theme=Jungle\nBadges=0x00000004\n";
const char kPackage[] = "/QV/Bulk/Downloads/Shared/meta.inf";
const char kPackageOld[] = "PackageID=MDL-SHARED\nType=MicroDownload\nVersion=1.0\nProfileAccess=0,1\n";

// Absent files read as this, to tell them from empty ones.
const char kMissing[] = "(missing)";

}  // namespace

class PlayerProfileFaultMatrixTest : public PlayerProfileTest {
 protected:
  void SetUp() override {
    PlayerProfileTest::SetUp();
    CaptureDebugOutput();  // failed writes trace themselves; the files are what counts here
    vireline::Env::SetCurrent(&mFaults);
  }
  void TearDown() override {
    vireline::Env::SetCurrent(nullptr);
    PlayerProfileTest::TearDown();
  }

  // Slot 1 with a player, and a package the player shares with slot 0.
  void Reset() {
    CLogFile::Destroy();
    WriteFile(SharedPath(1), kSharedOld);
    WriteFile(PrivatePath(1), kPrivateOld);
    WriteFile(LocalFolder(1) + "Milestones.json", "{}");
    WriteFile(kPackage, kPackageOld);
  }

  // The content of every file the change may touch.
  std::map<std::string, std::string> Files() const {
    std::map<std::string, std::string> files;
    for (const std::string& path :
         {SharedPath(1), PrivatePath(1), LocalFolder(1) + "Milestones.json", std::string(kPackage)}) {
      files[path] = Exists(path) ? ReadFile(path) : kMissing;
    }
    return files;
  }

  // Runs `attempt` once without faults and returns the files it leaves.
  std::map<std::string, std::string> FilesAfter(const std::function<bool()>& attempt) {
    Reset();
    EXPECT_TRUE(attempt());
    return Files();
  }

  // Each file is old or new (or `between`, where given); all new after a
  // reported success; nothing temporary beside the profile files or the package's.
  void Check(bool reported, const std::map<std::string, std::string>& before,
             const std::map<std::string, std::string>& after,
             const std::map<std::string, std::string>& between = {}) {
    for (const auto& [path, now] : Files()) {
      SCOPED_TRACE(path);
      const bool allowed = between.count(path) != 0 && now == between.at(path);
      EXPECT_TRUE(now == before.at(path) || now == after.at(path) || allowed) << now;
      if (reported) {
        EXPECT_EQ(now, after.at(path));
      }
    }
    for (const std::string& name : List(LocalFolder(1))) {
      EXPECT_TRUE(name == "profile.dsc" || name == "profile_private.dsc" || name == "Milestones.json") << name;
    }
    EXPECT_EQ(List("/QV/Bulk/Downloads/Shared"), std::vector<std::string>{"meta.inf"});
  }

  FaultInjectionEnv mFaults{vireline::Env::Default()};
};

TEST_F(PlayerProfileFaultMatrixTest, ANewPlayerKeepsEachProfileFileOldOrNewWhole) {
  const auto attempt = [&] {
    CPlayerProfile profile(1);
    return profile.NewProfile("Ann");
  };
  Reset();
  const std::map<std::string, std::string> before = Files();
  const std::map<std::string, std::string> after = FilesAfter(attempt);
  ASSERT_EQ(after.at(SharedPath(1)), "ID=0x00000003\nName=Ann\nPoints=0x00000000\n");
  const int runs = RunFaultMatrix(
      mFaults, FileOps(), [&] { Reset(); }, attempt,
      [&](const FaultMatrixStep&, bool reported) { Check(reported, before, after); });
  EXPECT_GT(runs, 20);
  RecordProperty("injected_failures", runs);
}

TEST_F(PlayerProfileFaultMatrixTest, ARemovedPlayerKeepsEachFileOldOrNewWhole) {
  const auto attempt = [&] {
    CPlayerProfile profile(1);
    return profile.RemoveProfile();
  };
  Reset();
  const std::map<std::string, std::string> before = Files();
  const std::map<std::string, std::string> after = FilesAfter(attempt);
  ASSERT_EQ(after.at(PrivatePath(1)), kMissing);
  const std::map<std::string, std::string> between = {{PrivatePath(1), "Theme=Jungle\nBadges=0x00000000\n"}};
  ASSERT_EQ(after.at(kPackage), "PackageID=MDL-SHARED\nType=MicroDownload\nVersion=1.0\nProfileAccess=0\n");
  const int runs = RunFaultMatrix(
      mFaults, FileOps(), [&] { Reset(); }, attempt,
      // A removal goes on past failures and reports none: only the files tell.
      // The private file is saved with the badges cleared before it is removed.
      [&](const FaultMatrixStep&, bool) { Check(false, before, after, between); });
  EXPECT_GT(runs, 20);
  RecordProperty("injected_failures", runs);
}
