// A fixture for the data objects' tests: a fresh device root, and a record of
// each debug message with the module and level it was emitted on.
#ifndef VIRELINE_TESTS_LTM_DATAOBJECTTEST_H_
#define VIRELINE_TESTS_LTM_DATAOBJECTTEST_H_

#include <string>
#include <vector>

#include <vireline/Platform.h>

#include "DeviceRootTest.h"

// One emitted debug message.
struct DebugMessage {
  int module;
  int level;
  std::string text;
};

class DataObjectTest : public DeviceRootTest {
 protected:
  static constexpr const char* kSettingsPath = "/QV/Bulk/settings.cfg";

  // Starts recording debug messages of every level (the master level becomes 9).
  void RecordDebugMessages() {
    Messages().clear();
    PlatformDebug().SetMasterDebugLevel(9);
    PlatformDebug::SetOutputFunction([](int module, int level, const char* text) {
      Messages().push_back(DebugMessage{module, level, text});
    });
  }

  // The messages recorded since RecordDebugMessages.
  static std::vector<DebugMessage>& Messages() {
    static std::vector<DebugMessage> messages;
    return messages;
  }

  // The recorded texts, joined.
  static std::string MessageText() {
    std::string text;
    for (const DebugMessage& message : Messages()) text += message.text;
    return text;
  }
};

#endif  // VIRELINE_TESTS_LTM_DATAOBJECTTEST_H_
