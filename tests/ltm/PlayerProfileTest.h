// A fixture for the player profile tests: a fresh device root of a known
// platform, the profile files of each slot, the play log read back, and the
// process-wide flags and log manager reset after each test.
#ifndef VIRELINE_TESTS_LTM_PLAYERPROFILETEST_H_
#define VIRELINE_TESTS_LTM_PLAYERPROFILETEST_H_

#include <string>
#include <vector>

#include <vireline/CLogFile.h>
#include <vireline/CLogReader.h>
#include <vireline/CSystemData.h>

#include "ltm/DataObjectTest.h"

class PlayerProfileTest : public DataObjectTest {
 protected:
  void SetUp() override {
    DataObjectTest::SetUp();
    WriteFile("/etc/vireline/platform.cfg", "Name=Tamsel\n");
  }

  void TearDown() override {
    CSystemData::Instance()->SetZantoLegacyFlag(false);
    CSystemData::Instance()->SetEarlyPreKBlackListed(false);
    CLogFile::Destroy();
    DataObjectTest::TearDown();
  }

  // The local data folder of `slot`.
  static std::string LocalFolder(int slot) { return "/QV/Bulk/Data/Local/" + std::to_string(slot) + "/"; }

  // The shared descriptor of `slot`.
  static std::string SharedPath(int slot) { return LocalFolder(slot) + "profile.dsc"; }

  // The private settings of `slot`.
  static std::string PrivatePath(int slot) { return LocalFolder(slot) + "profile_private.dsc"; }

  // The upload folder of `slot`.
  static std::string UploadFolder(int slot) { return "/QV/Bulk/Data/Uploads/" + std::to_string(slot) + "/"; }

  // The play log of `slot`.
  static std::string LogPath(int slot) { return UploadFolder(slot) + "profile.log"; }

  // The records of `slot`'s play log with the class name `className`.
  static std::vector<tLogRecord> LogRecords(int slot, const std::string& className) {
    std::vector<tLogRecord> found;
    CLogReader reader(LogPath(slot));
    tLogRecord record;
    while (reader.Next(&record)) {
      if (record.ClassName() != nullptr && className == record.ClassName()) found.push_back(record);
    }
    return found;
  }

  // The texts recorded on the data objects' channel at `level`, joined.
  static std::string MessagesAt(int level) {
    std::string text;
    for (const DebugMessage& message : Messages()) {
      if (message.module == 0x281 && message.level == level) text += message.text;
    }
    return text;
  }
};

#endif  // VIRELINE_TESTS_LTM_PLAYERPROFILETEST_H_
