// Removing a player: checked file by file against a device image built here.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include <vireline/CLogHeader.h>
#include <vireline/CPlayerProfile.h>
#include <vireline/LogEvents.h>

#include "baseutils/UpperLayers.h"
#include "ltm/PlayerProfileTest.h"
#include "platform/FaultInjectionEnv.h"

using LTM::CPlayerProfile;
using vireline::FaultInjectionEnv;

namespace {

const char kDownloads[] = "/QV/Bulk/Downloads/";
const char kProgramFiles[] = "/QV/Bulk/ProgramFiles/";

// A valid package's metadata with `access` lines appended.
std::string Meta(const std::string& id, const std::string& access) {
  return "PackageID=" + id + "\nType=MicroDownload\nVersion=1.0\n" + access;
}

}  // namespace

class CPlayerProfileRemoveTest : public PlayerProfileTest {
 protected:
  // Player 1 with everything a player leaves behind, player 0 beside it, and
  // packages in both package folders.
  void SetUp() override {
    PlayerProfileTest::SetUp();
    WriteFile(SharedPath(1), "Name=Bo\nID=0x00000004\nGrade=0x00000002\nPoints=0x00000010\n");
    WriteFile(PrivatePath(1), "Theme=Jungle\nBadges=0x00000003\n");
    for (const char* name : {"petapp.emrs", "slot00.emrs", "slot01.emrs", "slot02.emrs", "Milestones.json",
                             "notes.txt", "CYO-SPELL-0003/progress.json", "Game/Deep/save.bin"}) {
      WriteFile(LocalFolder(1) + name, "x");
    }
    WriteFile(UploadFolder(1) + "KVR9-0x0017000C-999999/meta.inf", "Type=ManageInventory\n");
    WriteFile(UploadFolder(1) + "trailerlog.csv", "a,b\n");
    WriteFile(UploadFolder(1) + "report.txt", "x");
    WriteFile(LogPath(1), std::string(300, 'r'));
    WriteFile(SharedPath(0), "Name=Ann\n");
    WriteFile(LocalFolder(0) + "Milestones.json", "{}");
    WriteFile(UploadFolder(0) + "trailerlog.csv", "a\n");
    WritePackages();
  }

  void WritePackages() const {
    WriteFile(Package(kDownloads, "Solo"), Meta("MDL-SOLO", "ProfileAccess=1\n"));
    WriteFile(Package(kDownloads, "Shared"), Meta("MDL-SHARED", "ProfileAccess=0,1\n"));
    WriteFile(Package(kDownloads, "Open"), Meta("MDL-OPEN", "ProfileAccess=1\nDeviceAccess=1\n"));
    WriteFile(Package(kDownloads, "Others"), Meta("MDL-OTHERS", "ProfileAccess=0,2\n"));
    WriteFile(Package(kDownloads, "Five"), Meta("MDL-FIVE", "ProfileAccess=0,1,2,3,4\n"));
    WriteFile(Package(kDownloads, "FourOthers"), Meta("MDL-FOUR", "ProfileAccess=0,2,3,4,1\n"));
    WriteFile(Package(kDownloads, "Everyone"), Meta("MDL-ALL", ""));
    WriteFile(Package(kProgramFiles, "App"), Meta("APP-ONE", "ProfileAccess=1\n"));
    WriteFile(Package(kProgramFiles, "Invalid"), "PackageID=APP-BAD\nProfileAccess=1\n");
    WriteFile(std::string(kProgramFiles) + "loose.txt", "ProfileAccess=1\n");
  }

  static std::string Package(const std::string& folder, const std::string& name) {
    return folder + name + "/meta.inf";
  }

  static std::string HeaderOf(int slot) {
    CLogHeader header;
    header.SetPlatform(10);
    header.SetDeviceSerialNum("00000000000000000000");
    header.SetLogNum(static_cast<unsigned char>(slot));
    return std::string(reinterpret_cast<const char*>(header.GetBytes()), CLogHeader::kSize);
  }
};

TEST_F(CPlayerProfileRemoveTest, TheSharedFileStaysAsAnEmptySlot) {
  CPlayerProfile profile(1);
  EXPECT_TRUE(profile.RemoveProfile());
  EXPECT_EQ(ReadFile(SharedPath(1)), "Name=\nID=0x00000004\nGrade=0x000000FF\nPoints=0x00000010\n");
  EXPECT_EQ(profile.GetName(), "");
  EXPECT_EQ(profile.GetGrade(), 255u);
  EXPECT_EQ(profile.GetBadges(), 0u);
}

TEST_F(CPlayerProfileRemoveTest, ThePrivateFileIsGone) {
  { CPlayerProfile(1).RemoveProfile(); }  // destruction writes nothing back
  EXPECT_FALSE(Exists(PrivatePath(1)));
  EXPECT_TRUE(Exists(SharedPath(1)));
}

TEST_F(CPlayerProfileRemoveTest, ThePlayersFoldersAndListedFilesGoOtherLooseFilesStay) {
  CPlayerProfile(1).RemoveProfile();
  EXPECT_EQ(List(LocalFolder(1)), (std::vector<std::string>{"notes.txt", "profile.dsc"}));
  EXPECT_EQ(List(LocalFolder(0)), (std::vector<std::string>{"Milestones.json", "profile.dsc"}));
}

TEST_F(CPlayerProfileRemoveTest, UploadsAreClearedAndTheLogStartsWithOnlyAFreshHeader) {
  CPlayerProfile(1).RemoveProfile();
  EXPECT_EQ(List(UploadFolder(1)), (std::vector<std::string>{"profile.log", "report.txt"}));
  EXPECT_EQ(ReadFile(LogPath(1)), HeaderOf(1));
  CLogReader reader(LogPath(1));
  EXPECT_EQ(reader.GetStatus(), CLogReader::kHeaderValid);
  tLogRecord record;
  EXPECT_FALSE(reader.Next(&record));
  EXPECT_EQ(ReadFile(UploadFolder(0) + "trailerlog.csv"), "a\n");
}

TEST_F(CPlayerProfileRemoveTest, EventsAreAppendedAfterTheFreshHeader) {
  CPlayerProfile profile(1);
  profile.RemoveProfile();
  CLogFile::Instance()->SetCurrentProfile(tPlayerID{1});
  profile.AddBadge(6);
  std::vector<tLogRecord> events = LogRecords(1, "CAchievementEarned");
  ASSERT_EQ(events.size(), 1u);
  EXPECT_EQ(events[0].offset, uint64_t{CLogHeader::kSize});
  EXPECT_EQ(events[0].fields[0].number, 6);
}

TEST_F(CPlayerProfileRemoveTest, APackageForTheSlotAloneGetsAnEmptyList) {
  CPlayerProfile(1).RemoveProfile();
  EXPECT_EQ(ReadFile(Package(kDownloads, "Solo")), Meta("MDL-SOLO", "ProfileAccess=\n"));
  EXPECT_EQ(ReadFile(Package(kProgramFiles, "App")), Meta("APP-ONE", "ProfileAccess=\n"));
}

TEST_F(CPlayerProfileRemoveTest, APackageOpenToTheWholeDeviceIsLeftAlone) {
  CPlayerProfile(1).RemoveProfile();
  EXPECT_EQ(ReadFile(Package(kDownloads, "Open")), Meta("MDL-OPEN", "ProfileAccess=1\nDeviceAccess=1\n"));
}

TEST_F(CPlayerProfileRemoveTest, OtherPlayersKeepTheirAccess) {
  CPlayerProfile(1).RemoveProfile();
  EXPECT_EQ(ReadFile(Package(kDownloads, "Shared")), Meta("MDL-SHARED", "ProfileAccess=0\n"));
  EXPECT_EQ(ReadFile(Package(kDownloads, "Others")), Meta("MDL-OTHERS", "ProfileAccess=0,2\n"));
  EXPECT_EQ(ReadFile(Package(kDownloads, "Everyone")), Meta("MDL-ALL", ""));
  EXPECT_EQ(ReadFile(Package(kProgramFiles, "Invalid")), "PackageID=APP-BAD\nProfileAccess=1\n");
  EXPECT_EQ(ReadFile(std::string(kProgramFiles) + "loose.txt"), "ProfileAccess=1\n");
}

TEST_F(CPlayerProfileRemoveTest, LongAccessListsKeepEveryOtherPlayer) {
  CPlayerProfile(1).RemoveProfile();
  EXPECT_EQ(ReadFile(Package(kDownloads, "Five")), Meta("MDL-FIVE", "ProfileAccess=0,2,3,4\n"));
  EXPECT_EQ(ReadFile(Package(kDownloads, "FourOthers")), Meta("MDL-FOUR", "ProfileAccess=0,2,3,4\n"));
}

TEST_F(CPlayerProfileRemoveTest, RemoveProfileAccessGoesOnForEveryEntry) {
  int slot = 1;
  EXPECT_EQ(CPlayerProfile::RemoveProfileAccess("/QV/Bulk/Downloads/Five", &slot), 1);
  EXPECT_EQ(CPlayerProfile::RemoveProfileAccess("/QV/Bulk/Downloads/Missing", &slot), 1);
  EXPECT_EQ(CPlayerProfile::RemoveProfileAccess("/QV/Bulk/Downloads/Open", &slot), 1);
  EXPECT_EQ(ReadFile(Package(kDownloads, "Five")), Meta("MDL-FIVE", "ProfileAccess=0,2,3,4\n"));
  EXPECT_FALSE(Exists("/QV/Bulk/Downloads/Missing/meta.inf"));
}

TEST_F(CPlayerProfileRemoveTest, AnEmptySlotWithoutAFolderIsRecreatedEmpty) {
  CPlayerProfile(2).RemoveProfile();
  EXPECT_EQ(ReadFile(SharedPath(2)), "Name=\nGrade=0x000000FF\n");
  EXPECT_EQ(List(LocalFolder(2)), std::vector<std::string>{"profile.dsc"});
  EXPECT_EQ(ReadFile(LogPath(2)), HeaderOf(2));
  EXPECT_EQ(ReadFile(Package(kDownloads, "Others")), Meta("MDL-OTHERS", "ProfileAccess=0\n"));
  EXPECT_EQ(ReadFile(Package(kDownloads, "Five")), Meta("MDL-FIVE", "ProfileAccess=0,1,3,4\n"));
}

TEST_F(CPlayerProfileRemoveTest, FailingDeletionsAreIgnoredAndTheRestStillRuns) {
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kRemove, 0, EACCES);
  EXPECT_TRUE(CPlayerProfile(1).RemoveProfile());
  vireline::Env::SetCurrent(nullptr);
  EXPECT_TRUE(Exists(PrivatePath(1)));
  EXPECT_TRUE(Exists(UploadFolder(1) + "trailerlog.csv"));
  EXPECT_EQ(ReadFile(SharedPath(1)), "Name=\nID=0x00000004\nGrade=0x000000FF\nPoints=0x00000010\n");
  EXPECT_EQ(ReadFile(LogPath(1)), HeaderOf(1));  // re-created by truncation all the same
  EXPECT_EQ(ReadFile(Package(kDownloads, "Solo")), Meta("MDL-SOLO", "ProfileAccess=\n"));
}

TEST_F(CPlayerProfileRemoveTest, AFailingWriteOfTheEmptySlotStillRemovesTheRest) {
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  CPlayerProfile profile(1);
  faults.FailAfter(FaultInjectionEnv::kRename, 0, ENOSPC, true);
  EXPECT_TRUE(profile.RemoveProfile());
  vireline::Env::SetCurrent(nullptr);
  EXPECT_FALSE(Exists(PrivatePath(1)));
  EXPECT_EQ(ReadFile(LogPath(1)), HeaderOf(1));
  EXPECT_EQ(ReadFile(Package(kDownloads, "Solo")), Meta("MDL-SOLO", "ProfileAccess=\n"));
}

TEST_F(CPlayerProfileRemoveTest, ReadingTheDataPathInternallyPrintsNoWarning) {
  RecordDebugMessages();
  CPlayerProfile(1).RemoveProfile();
  EXPECT_EQ(vireline::upper::DataPath(), "/QV/Bulk/Data/");
  EXPECT_EQ(MessageText().find("deprecated"), std::string::npos) << MessageText();
}
