// Durable writes cut short by a power loss at every step: once the device
// comes back, the target holds the old content or the new one, whole, and no
// temporary file is left beside it.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <vireline/BaseUtils.h>
#include <vireline/CFileIO.h>
#include <vireline/CJSonFile.h>
#include <vireline/CLogFile.h>
#include <vireline/LogEvents.h>

#include "DeviceRootTest.h"
#include "hardening/PowerLossEnv.h"
#include "hardening/PowerLossMatrix.h"
#include "tests/logging/LogFileTest.h"

namespace {

const char kMetaFolder[] = "/QV/Bulk/ProgramFiles/Game";
const char kMetaPath[] = "/QV/Bulk/ProgramFiles/Game/meta.inf";
const char kMetaOld[] = "PackageID=GAME-1\r\nVersion=1.0\r\n";
const char kMetaNew[] = "PackageID=GAME-1\nVersion=2.0\n";

}  // namespace

class PowerLossTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    CaptureDebugOutput();  // a cut write reports itself; the disk is what counts here
    vireline::Env::SetCurrent(&mLoss);
  }
  void TearDown() override {
    vireline::Env::SetCurrent(nullptr);
    DeviceRootTest::TearDown();
  }

  // CutPowerAtEveryStep with this fixture's power.
  int CutAtEveryStep(const std::function<void()>& reset, const std::function<void()>& attempt,
                     const std::function<void(int cut, int steps)>& check) {
    return CutPowerAtEveryStep(mLoss, reset, attempt, check);
  }

  // The target is alone in its folder and holds one of the two contents; once
  // every step went through, the new one.
  void ExpectOldOrNew(int cut, int steps, const std::string& folder, const std::string& path,
                      const std::string& oldContent, const std::string& newContent) {
    const std::string now = ReadFile(path);
    EXPECT_EQ(List(folder), std::vector<std::string>{path.substr(path.rfind('/') + 1)});
    EXPECT_TRUE(now == oldContent || now == newContent) << now;
    if (cut == steps) {
      EXPECT_EQ(now, newContent);
    }
  }

  PowerLossEnv mLoss{vireline::Env::Default()};
};

TEST_F(PowerLossTest, AKeyValueFileWriteLeavesTheOldFileOrTheNewOneWhole) {
  const int cuts = CutAtEveryStep(
      [&] { WriteFile(kMetaPath, kMetaOld); },
      [&] {
        CFileIO file;
        file.Open(kMetaPath);
        file.SetStr("Version", "2.0");
        file.Write();
      },
      [&](int cut, int steps) { ExpectOldOrNew(cut, steps, kMetaFolder, kMetaPath, kMetaOld, kMetaNew); });
  EXPECT_GE(cuts, 4);  // sync, rename, folder sync, and the clean run
  RecordProperty("power_cuts", cuts);
}

TEST_F(PowerLossTest, AJsonSaveLeavesTheOldDocumentOrTheNewOneWhole) {
  const std::string path = "/QV/Bulk/Data/Milestones.json";
  const std::string oldContent = "{\"keep\":1,\"old\":true}\n";
  std::string newContent;
  const auto attempt = [&] {
    LTM::CJSonFile file(path, 0);
    file.Load();
    file.mRoot["old"] = false;
    file.Save();
  };
  WriteFile(path, oldContent);
  vireline::Env::SetCurrent(nullptr);
  attempt();
  vireline::Env::SetCurrent(&mLoss);
  newContent = ReadFile(path);
  const int cuts = CutAtEveryStep([&] { WriteFile(path, oldContent); }, attempt, [&](int cut, int steps) {
    ExpectOldOrNew(cut, steps, "/QV/Bulk/Data", path, oldContent, newContent);
  });
  EXPECT_GE(cuts, 4);
  RecordProperty("power_cuts", cuts);
}

TEST_F(PowerLossTest, AnAtomicCopyLeavesTheOldDestinationOrTheWholeSource) {
  const std::string source(3000, 's');
  const int cuts = CutAtEveryStep(
      [&] {
        WriteFile("/s/in", source);
        WriteFile("/d/out", "old destination");
      },
      [&] { BaseUtils::Instance()->CopyAtomicFile("/s/in", "/d/out"); },
      [&](int cut, int steps) {
        ExpectOldOrNew(cut, steps, "/d", "/d/out", "old destination", source);
        EXPECT_EQ(ReadFile("/s/in"), source);
      });
  EXPECT_GE(cuts, 4);
  RecordProperty("power_cuts", cuts);
}

TEST_F(PowerLossTest, WithThePowerOnEveryStepReachesTheDisk) {
  WriteFile(kMetaPath, kMetaOld);
  CFileIO file;
  file.Open(kMetaPath);
  file.SetStr("Version", "2.0");
  ASSERT_TRUE(file.Write());
  mLoss.DropUnsyncedData();
  EXPECT_EQ(ReadFile(kMetaPath), kMetaNew);
}

TEST_F(PowerLossTest, AFileWrittenButNeverSyncedLosesWhatWasWritten) {
  WriteFile("/d/log", "kept");
  std::unique_ptr<vireline::RandomRWFile> file;
  ASSERT_TRUE(vireline::Env::Current()->NewRandomRWFile("/d/log", &file).ok());
  ASSERT_TRUE(file->AppendAtEnd("lost", 4).ok());
  file->Close();
  EXPECT_EQ(ReadFile("/d/log"), "keptlost");
  mLoss.DropUnsyncedData();
  EXPECT_EQ(ReadFile("/d/log"), "kept");
}

TEST_F(PowerLossTest, ARenameNotFollowedByAFolderSyncIsUndone) {
  WriteFile("/d/new", "new");
  WriteFile("/d/target", "old");
  ASSERT_TRUE(vireline::Env::Current()->Rename("/d/new", "/d/target").ok());
  mLoss.DropUnsyncedData();
  EXPECT_EQ(ReadFile("/d/target"), "old");
  EXPECT_EQ(ReadFile("/d/new"), "new");
}

TEST_F(PowerLossTest, AFileRenamedWithoutASyncOfItsDataIsEmptyAfterTheCut) {
  // What a writer that skipped the sync would leave: the name is safe, the data is not.
  vireline::Env* env = vireline::Env::Current();
  WriteFile("/d/target", "old");
  std::unique_ptr<vireline::WritableFile> file;
  ASSERT_TRUE(env->NewWritableFile("/d/new", &file).ok());
  ASSERT_TRUE(file->Append("new", 3).ok());
  file->Close();
  ASSERT_TRUE(env->Rename("/d/new", "/d/target").ok());
  ASSERT_TRUE(env->SyncDir("/d").ok());
  mLoss.DropUnsyncedData();
  EXPECT_EQ(List("/d"), std::vector<std::string>{"target"});
  EXPECT_EQ(ReadFile("/d/target"), "");
}

class PlayLogPowerLossTest : public LogFileTest {
 protected:
  void SetUp() override {
    LogFileTest::SetUp();
    WritePlatform("Tamsel");
    vireline::Env::SetCurrent(&mLoss);
  }
  PowerLossEnv mLoss{&mEnv};
};

TEST_F(PlayLogPowerLossTest, ACutAfterAppendsKeepsEveryRecordAlreadyOnDiskWhole) {
  LogData::Vireline::CGameStart earlier("abc");
  LogData::Vireline::CGameExit record;
  const std::string old = HeaderBytes(10, 1) + Bytes(earlier);
  for (int slot = 0; slot < 3; ++slot) WriteFile(SlotPath(slot), slot == 1 ? old : HeaderBytes(10, slot));
  Log()->SetCurrentProfile(1);
  Log()->Append(record);
  Log()->Append(record);
  EXPECT_EQ(ReadFile(SlotPath(1)), old + Bytes(record) + Bytes(record));
  mLoss.DropUnsyncedData();
  // Appends are not synced one by one: a cut may take them, never what came before.
  const std::string now = ReadFile(SlotPath(1));
  EXPECT_EQ(now.substr(0, old.size()), old);
  EXPECT_TRUE(now == old || now == old + Bytes(record) || now == old + Bytes(record) + Bytes(record)) << Hex(now);
}
