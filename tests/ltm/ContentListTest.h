// A fixture for the content lists: a fresh device root with a running title,
// package folders written on demand, and the debug messages recorded.
#ifndef VIRELINE_TESTS_LTM_CONTENTLISTTEST_H_
#define VIRELINE_TESTS_LTM_CONTENTLISTTEST_H_

#include <algorithm>
#include <string>
#include <vector>

#include <vireline/CSystemData.h>

#include "ltm/DataObjectTest.h"

class ContentListTest : public DataObjectTest {
 protected:
  typedef std::vector<std::string> Strings;

  static constexpr const char* kDownloads = "/QV/Bulk/Downloads/";
  static constexpr const char* kAvatars = "/QV/Base/ZantoAvatars/";
  static constexpr const char* kTitle = "/QV/Bulk/ProgramFiles/Game42/";
  static constexpr unsigned kGameProduct = 0x00170042;
  static constexpr unsigned kOtherProduct = 0x00170043;

  void SetUp() override {
    DataObjectTest::SetUp();
    RecordDebugMessages();
  }

  // Makes the title "Game42" of product kGameProduct the running one.
  void RunTitle() {
    WriteFile(std::string(kTitle) + "meta.inf", "PackageID=GAME-42\nVersion=1.0\nType=Application\nProductID=" +
                                                    Hex(kGameProduct) + "\n");
    CSystemData::Instance()->SetCurrentTitlePath(kTitle);
  }

  // A valid package of `type` for `product` in `folder`, plus `extra` lines.
  void Package(const std::string& folder, const std::string& type, unsigned product, const std::string& extra,
               const std::string& id = "") const {
    std::string packageId = id.empty() ? folder.substr(folder.rfind('/') + 1) : id;
    WriteFile(folder + "/meta.inf", "PackageID=" + packageId + "\nVersion=1.0\nType=" + type +
                                        "\nProductID=" + Hex(product) + "\n" + extra);
  }

  // Makes `player` the current one in the device settings.
  void SetCurrentPlayer(int player) const { WriteFile(kSettingsPath, "CurrProfile=" + Hex(player) + "\n"); }

  static std::string Hex(unsigned value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", value);
    return text;
  }

  // `paths` as plain strings, sorted: folder walks follow listing order.
  static Strings Sorted(const std::vector<Glib::ustring>& paths) {
    Strings sorted(paths.begin(), paths.end());
    std::sort(sorted.begin(), sorted.end());
    return sorted;
  }

  // The recorded messages of the content lists' channel (module 0) and `level`, sorted.
  static Strings ListMessages(int level) {
    Strings texts;
    for (const DebugMessage& message : Messages()) {
      if (message.module == 0 && message.level == level) texts.push_back(message.text);
    }
    std::sort(texts.begin(), texts.end());
    return texts;
  }
};

#endif  // VIRELINE_TESTS_LTM_CONTENTLISTTEST_H_
