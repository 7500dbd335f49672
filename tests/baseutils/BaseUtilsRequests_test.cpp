// Package requests and their removal, as request files in the current
// player's inventory folder.
#include <vireline/BaseUtils.h>
#include <vireline/CSystemData.h>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "DeviceRootTest.h"
#include "platform/FaultInjectionEnv.h"

class BaseUtilsRequestsTest : public DeviceRootTest {
 protected:
  static std::string Inventory() { return CSystemData::Instance()->GetManageInventoryPath(); }

  // The host inode of a device file: a rewrite through the atomic replace changes it.
  ino64_t Inode(const std::string& path) const {
    struct stat64 st;
    return ::stat64(Host(path).c_str(), &st) == 0 ? st.st_ino : 0;
  }

  BaseUtils* utils = BaseUtils::Instance();
};

TEST_F(BaseUtilsRequestsTest, NewRequestAsksToAddThePackageAtItsVersion) {
  utils->RequestPackageQVC("APP-1", "2.0");
  EXPECT_EQ(ReadFile(Inventory() + "APP-1.txt"), "Command=AddToDevice\nVersion=2.0\n");
}

TEST_F(BaseUtilsRequestsTest, RequestGoesToTheCurrentPlayersInventory) {
  WriteFile("/QV/Bulk/settings.cfg", "CurrProfile=2\n");
  utils->RequestPackageQVC("APP-1", "2.0");
  EXPECT_NE(Inventory().find("/Uploads/2/"), std::string::npos) << Inventory();
  EXPECT_TRUE(Exists(Inventory() + "APP-1.txt"));
}

TEST_F(BaseUtilsRequestsTest, NewerVersionReplacesOnlyTheVersion) {
  WriteFile(Inventory() + "APP-1.txt", "Command=KeepMe\nVersion=1.9\nNote=x\n");
  utils->RequestPackageQVC("APP-1", "1.10");
  EXPECT_EQ(ReadFile(Inventory() + "APP-1.txt"), "Command=KeepMe\nVersion=1.10\nNote=x\n");
}

TEST_F(BaseUtilsRequestsTest, OlderVersionLeavesTheFileUntouched) {
  const std::string stored = "Command=AddToDevice\nVersion=3.0\n";
  WriteFile(Inventory() + "APP-1.txt", stored);
  ino64_t before = Inode(Inventory() + "APP-1.txt");
  utils->RequestPackageQVC("APP-1", "2.9");
  EXPECT_EQ(ReadFile(Inventory() + "APP-1.txt"), stored);
  EXPECT_EQ(Inode(Inventory() + "APP-1.txt"), before);
}

TEST_F(BaseUtilsRequestsTest, EqualVersionLeavesTheFileUntouched) {
  WriteFile(Inventory() + "APP-1.txt", "Command=AddToDevice\nVersion=3.0\n");
  ino64_t before = Inode(Inventory() + "APP-1.txt");
  utils->RequestPackageQVC("APP-1", "3.0.1");  // a version equals its own prefix
  EXPECT_EQ(Inode(Inventory() + "APP-1.txt"), before);
}

TEST_F(BaseUtilsRequestsTest, StoredRequestWithoutVersionIsLeftAlone) {
  WriteFile(Inventory() + "APP-1.txt", "Command=AddToDevice\n");
  utils->RequestPackageQVC("APP-1", "5.0");
  EXPECT_EQ(ReadFile(Inventory() + "APP-1.txt"), "Command=AddToDevice\n");
}

TEST_F(BaseUtilsRequestsTest, BinaryStoredRequestDoesNotCrash) {
  WriteFile(Inventory() + "APP-1.txt", std::string("\0\xff\xfe=\n\x01Version", 13));
  utils->RequestPackageQVC("APP-1", "5.0");
  EXPECT_TRUE(Exists(Inventory() + "APP-1.txt"));
}

TEST_F(BaseUtilsRequestsTest, EmptyPackageIdIsRequestedAsDotTxt) {
  utils->RequestPackageQVC("", "1.0");
  EXPECT_EQ(ReadFile(Inventory() + ".txt"), "Command=AddToDevice\nVersion=1.0\n");
}

TEST_F(BaseUtilsRequestsTest, RequestThatCannotBeWrittenLeavesNothing) {
  std::string inventory = Inventory();
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  env.FailAfter(vireline::FaultInjectionEnv::kRename, 0);
  vireline::Env::SetCurrent(&env);
  utils->RequestPackageQVC("APP-1", "1.0");
  vireline::Env::SetCurrent(nullptr);
  EXPECT_FALSE(Exists(inventory + "APP-1.txt"));
}

TEST_F(BaseUtilsRequestsTest, RemovalDeletesTheRequestFile) {
  utils->RequestPackageQVC("APP-1", "1.0");
  utils->RequestPackageQVC("APP-2", "1.0");
  utils->RequestPackageQVCRemoval("APP-1");
  EXPECT_FALSE(Exists(Inventory() + "APP-1.txt"));
  EXPECT_TRUE(Exists(Inventory() + "APP-2.txt"));
  utils->RequestPackageQVCRemoval("APP-1");  // nothing left to remove
  EXPECT_TRUE(Exists(Inventory() + "meta.inf"));
}
