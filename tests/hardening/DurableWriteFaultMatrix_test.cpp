// Every durable write, with the platform failing each of its calls in turn
// (once, or from then on): the target holds the old content or the new one,
// whole, nothing temporary is left beside it, and a reported success means
// the new content is there. Only a failed sync of the folder, after the new
// file is in place, may report failure over the new content: the replace is
// done but not known to be durable.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/BaseUtils.h>
#include <vireline/CFileIO.h>
#include <vireline/CJSonFile.h>
#include <vireline/CLogFile.h>
#include <vireline/LogEvents.h>

#include "DeviceRootTest.h"
#include "hardening/FaultMatrix.h"
#include "tests/logging/LogFileTest.h"

using vireline::FaultInjectionEnv;

namespace {

const char kMetaFolder[] = "/QV/Bulk/ProgramFiles/Game";
const char kMetaPath[] = "/QV/Bulk/ProgramFiles/Game/meta.inf";
const char kMetaOld[] = "PackageID=GAME-1\r\nVersion=1.0\r\nName=\"Old Game\"\r\n";
const char kMetaNew[] = "PackageID=GAME-1\nVersion=2.0\nName=\"Old Game\"\nHidden=0x00000001\n";

const char kJsonFolder[] = "/QV/Bulk/Data";
const char kJsonPath[] = "/QV/Bulk/Data/Milestones.json";
const char kJsonOld[] = "{\"keep\":1,\"old\":true}\n";



}  // namespace

class DurableWriteFaultMatrixTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    vireline::Env::SetCurrent(&mFaults);
  }
  void TearDown() override {
    vireline::Env::SetCurrent(nullptr);
    DeviceRootTest::TearDown();
  }

  // The outcome rule above, for `path` alone in `folder`.
  void ExpectOldOrNew(const FaultMatrixStep& step, bool reported, const std::string& folder,
                      const std::string& path, const std::string& oldContent, const std::string& newContent) {
    const std::string now = ReadFile(path);
    const std::string name = path.substr(path.rfind('/') + 1);
    EXPECT_EQ(List(folder), std::vector<std::string>{name});
    if (reported) {
      EXPECT_EQ(now, newContent);
    } else if (step.op == FaultInjectionEnv::kSyncDir) {
      EXPECT_TRUE(now == oldContent || now == newContent) << now;
    } else {
      EXPECT_EQ(now, oldContent);
    }
  }

  FaultInjectionEnv mFaults{vireline::Env::Default()};
};

TEST_F(DurableWriteFaultMatrixTest, AtomicCopyKeepsTheOldDestinationOrTheWholeSource) {
  const std::string source(100, 'n');
  const int runs = RunFaultMatrix(
      mFaults, FileOps(),
      [&] {
        WriteFile("/s/in", source);
        WriteFile("/d/out", "old destination");
      },
      [&] { return BaseUtils::Instance()->CopyAtomicFile("/s/in", "/d/out"); },
      [&](const FaultMatrixStep& step, bool reported) {
        ExpectOldOrNew(step, reported, "/d", "/d/out", "old destination", source);
        EXPECT_EQ(ReadFile("/s/in"), source);
      });
  EXPECT_GT(runs, 10);
  RecordProperty("injected_failures", runs);
}


TEST_F(DurableWriteFaultMatrixTest, JsonDocumentLoadedChangedAndSavedKeepsOldOrNewWhole) {
  std::string newContent;
  const auto attempt = [&] {
    LTM::CJSonFile file(kJsonPath, 0);
    file.Load();
    file.mRoot["old"] = false;
    file.mRoot["new"] = "a value";
    return file.Save() == 0;
  };
  WriteFile(kJsonPath, kJsonOld);
  ASSERT_TRUE(attempt());
  newContent = ReadFile(kJsonPath);
  const int runs = RunFaultMatrix(
      mFaults, FileOps(), [&] { WriteFile(kJsonPath, kJsonOld); }, attempt,
      [&](const FaultMatrixStep& step, bool reported) {
        ExpectOldOrNew(step, reported, kJsonFolder, kJsonPath, kJsonOld, newContent);
      });
  EXPECT_GT(runs, 10);
  RecordProperty("injected_failures", runs);
}


TEST_F(DurableWriteFaultMatrixTest, KeyValueFileReadChangedAndWrittenKeepsOldOrNewWhole) {
  const int runs = RunFaultMatrix(
      mFaults, FileOps(), [&] { WriteFile(kMetaPath, kMetaOld); },
      [&] {
        CFileIO file;
        file.Open(kMetaPath);
        file.SetStr("Version", "2.0");
        file.SetUInt("Hidden", 1);
        return file.Write();
      },
      [&](const FaultMatrixStep& step, bool reported) {
        ExpectOldOrNew(step, reported, kMetaFolder, kMetaPath, kMetaOld, kMetaNew);
      });
  EXPECT_GT(runs, 20);
  RecordProperty("injected_failures", runs);
}

class PlayLogFaultMatrixTest : public LogFileTest {
 protected:
  void SetUp() override {
    LogFileTest::SetUp();
    WritePlatform("Tamsel");
  }
};

TEST_F(PlayLogFaultMatrixTest, AnAppendLeavesTheEarlierRecordsAndAddsTheRecordWholeOrNotAtAll) {
  LogData::Vireline::CGameStart earlier("abc");
  LogData::Vireline::CGameExit record;
  const std::string old = HeaderBytes(10, 1) + Bytes(earlier);
  const int runs = RunFaultMatrix(
      mEnv, FileOps(),
      [&] {
        CLogFile::Destroy();
        for (int slot = 0; slot < 3; ++slot) WriteFile(SlotPath(slot), HeaderBytes(10, slot));
        WriteFile(SlotPath(1), old);
      },
      [&] {
        Log()->SetCurrentProfile(1);
        Log()->Append(record);
        return true;  // an append reports through the debug output only
      },
      [&](const FaultMatrixStep&, bool) {
        const std::string now = ReadFile(SlotPath(1));
        EXPECT_TRUE(now == old || now == old + Bytes(record)) << Hex(now);
        EXPECT_EQ(ReadFile(SlotPath(0)), HeaderBytes(10, 0));
      });
  EXPECT_GT(runs, 4);
  RecordProperty("injected_failures", runs);
}
