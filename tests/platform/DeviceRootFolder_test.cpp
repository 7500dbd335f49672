// Lookups open their candidates below a descriptor of the device root folder
// that each thread holds: choosing another root, a root folder made only
// after it was chosen and other threads all see the folder the root names.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <vireline/Platform.h>

#include "DeviceRootTest.h"
#include "EmulatorThreads.h"
#include "platform/Env.h"

namespace fs = std::filesystem;

namespace {

vireline::Env* env() { return vireline::Env::Current(); }

void WriteHostFile(const std::string& path) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream(path) << "asset";
}

}  // namespace

class DeviceRootFolderTest : public DeviceRootTest {
 protected:
  // A second root beside this test's own, removed with it.
  std::string OtherRoot() const { return mRoot + "/../" + fs::path(mRoot).filename().string() + "-other"; }
  void TearDown() override {
    fs::remove_all(OtherRoot());
    DeviceRootTest::TearDown();
  }
};

TEST_F(DeviceRootFolderTest, ChoosingAnotherRootProbesTheOtherFolder) {
  WriteFile("/QV/a.png", "asset");
  EXPECT_TRUE(env()->OpensForReading("/QV/a.png"));
  WriteHostFile(OtherRoot() + "/QV/b.png");
  vireline::SetDeviceRoot(OtherRoot());
  EXPECT_FALSE(env()->OpensForReading("/QV/a.png"));
  EXPECT_TRUE(env()->OpensForReading("/QV/b.png"));
  vireline::SetDeviceRoot(mRoot);
  EXPECT_TRUE(env()->OpensForReading("/QV/a.png"));
  EXPECT_FALSE(env()->OpensForReading("/QV/b.png"));
}

TEST_F(DeviceRootFolderTest, ARootFolderMadeAfterItWasChosenIsProbed) {
  vireline::SetDeviceRoot(OtherRoot());  // not there yet
  EXPECT_FALSE(env()->OpensForReading("/QV/b.png"));
  WriteHostFile(OtherRoot() + "/QV/b.png");
  EXPECT_TRUE(env()->OpensForReading("/QV/b.png"));
  EXPECT_TRUE(env()->OpensForReading("//QV//b.png"));
  EXPECT_TRUE(env()->OpensForReading("/"));
}

TEST_F(DeviceRootFolderTest, AnotherThreadProbesTheSameFolder) {
  SKIP_WITHOUT_THREADS();
  WriteFile("/QV/a.png", "asset");
  bool found = false;
  bool missing = true;
  std::thread other([&] {
    found = env()->OpensForReading("/QV/a.png");
    missing = env()->OpensForReading("/QV/gone.png");
  });
  other.join();
  EXPECT_TRUE(found);
  EXPECT_FALSE(missing);
}

TEST_F(DeviceRootFolderTest, TheRootItselfAndRepeatedSlashesAreProbedBelowIt) {
  WriteFile("/QV/a.png", "asset");
  EXPECT_TRUE(env()->OpensForReading("/"));
  EXPECT_TRUE(env()->OpensForReading("///QV//a.png"));
  EXPECT_FALSE(env()->OpensForReading("/QV/a.png/"));
}
