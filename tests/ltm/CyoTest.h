// A fixture for the CYO set tests: a device root with a current player, sets
// written into the download folder on demand, and the data objects' messages
// captured down to the deprecation warnings (level 5).
#ifndef VIRELINE_TESTS_LTM_CYOTEST_H_
#define VIRELINE_TESTS_LTM_CYOTEST_H_

#include <algorithm>
#include <string>
#include <vector>

#include <vireline/CCyo.h>
#include <vireline/Platform.h>

#include "DeviceRootTest.h"
#include "platform/Env.h"

// Lists folders sorted by name, so a test decides which set the walk meets first.
class SortedListingEnv : public vireline::EnvWrapper {
 public:
  SortedListingEnv() : EnvWrapper(vireline::Env::Default()) {}
  vireline::Result ListDir(const std::string& path, std::vector<std::string>* names) override {
    vireline::Result result = target()->ListDir(path, names);
    std::sort(names->begin(), names->end());
    return result;
  }
};

class CyoTest : public DeviceRootTest {
 protected:
  static constexpr int kModule = 0x281;
  static constexpr const char* kCyos = "/QV/Bulk/Downloads/";
  static constexpr const char* kSpellingId = "CYO-SPELL-0001";
  static constexpr const char* kManifest =
      "{\"ID\":\"SPELL-WEEK3\",\"CompletionParam\":3,\"ItemList\":["
      "{\"Val\":\"cat\",\"Audio\":\"Audio/cat.wav\"},{\"Val\":\"dog\",\"Audio\":\"Audio/dog.wav\"}]}";

  void SetUp() override {
    DeviceRootTest::SetUp();
    WriteFile("/QV/Bulk/settings.cfg", "CurrProfile=0x00000001\n");
    PlatformDebug(kModule).SetDebugLevel(5);
    CaptureDebugOutput();
  }

  void TearDown() override {
    vireline::Env::SetCurrent(nullptr);
    PlatformDebug(kModule).SetDebugLevel(1);
    DeviceRootTest::TearDown();
  }

  // Writes set folder `folder` of curriculum `curriculum` with `access` lines
  // and its manifest "manifest.json" holding `manifest`.
  void WriteSet(const std::string& folder, const std::string& curriculum, const std::string& packageId,
                const std::string& access = "DeviceAccess=1\n", const std::string& manifest = kManifest) const {
    WriteFile(std::string(kCyos) + folder + "/meta.inf",
              "MetaVersion=1.0\nPackageID=" + packageId + "\nName=\"" + folder +
                  "\"\nType=Download\nVersion=1.0\nCurriculumType=" + curriculum +
                  "\nManifestFile=manifest.json\n" + access);
    WriteFile(std::string(kCyos) + folder + "/manifest.json", manifest);
  }

  // The spelling set every player may use, in folder "Spelling".
  void WriteSpellingSet() const { WriteSet("Spelling", "Spelling", kSpellingId); }

  // Where `player`'s progress in set `packageId` is kept.
  static std::string ProgressPath(int player, const std::string& packageId = kSpellingId) {
    return "/QV/Bulk/Data/Local/" + std::to_string(player) + "/" + packageId + "/progress.json";
  }

  // The message of a progress or manifest file that cannot be opened.
  static std::string NoFile(const std::string& path) {
    return "CJSonFile::Load() failed to open (filehandle was NULL) mRsrcPath = " + path + "\n";
  }

  // The deprecation warning naming `signature`.
  static std::string Deprecated(const std::string& signature) {
    return "WARNING:  Use of a deprecated function: " + signature + "\n";
  }

  // Makes the folder walk meet sets in name order.
  void ListFoldersSorted() { vireline::Env::SetCurrent(&mSortedListing); }

  SortedListingEnv mSortedListing;
};

#endif  // VIRELINE_TESTS_LTM_CYOTEST_H_
