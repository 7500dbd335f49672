#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/CMetaInfFile.h>

#include "DeviceRootTest.h"
#include "files/KeyValueTest.h"

namespace {

const char kDir[] = "/QV/Bulk/ProgramFiles/Zoo";
const char kPath[] = "/QV/Bulk/ProgramFiles/Zoo/meta.inf";
const U32 kMissing = 0xFFFFFFFFu;

}  // namespace

class CMetaInfFileTest : public DeviceRootTest {
 protected:
  void Load(CMetaInfFile& file, const std::string& content) {
    WriteFile(kPath, content);
    ASSERT_TRUE(file.Open(kPath));
  }
};

TEST_F(CMetaInfFileTest, DirectoryConstructorReadsItsMetaInf) {
  WriteFile(kPath, "PackageID=ZOO-1\n");
  CMetaInfFile file(kDir);
  EXPECT_STREQ(file.GetPath(), kPath);
  EXPECT_STREQ(file.GetPackageId(), "ZOO-1");
  CMetaInfFile slash("/QV/Bulk/ProgramFiles/Zoo/");
  EXPECT_STREQ(slash.GetPath(), kPath);
}

TEST_F(CMetaInfFileTest, DirectoryThatDoesNotFitBindsNoUsablePath) {
  CMetaInfFile file(("/QV/" + std::string(260, 'd')).c_str());
  EXPECT_STREQ(file.GetPath(), "");
  EXPECT_EQ(file.GetEntryCount(), 0u);
}

TEST_F(CMetaInfFileTest, OpenForAppReadsTheApplicationsMetaInf) {
  WriteFile(kPath, "Name=Zoo Keeper\n");
  CMetaInfFile file;
  ASSERT_TRUE(file.OpenForApp(0, "Zoo", nullptr));
  EXPECT_STREQ(file.GetPath(), kPath);
  EXPECT_STREQ(file.GetPackageName(), "Zoo Keeper");
}

TEST_F(CMetaInfFileTest, OpenForAppUsesTheGivenLayout) {
  WriteFile("/Zanto/ProgramFiles/Zoo/meta.inf", "Name=Old Zoo\n");
  CPkgPathBase zanto(&gVirelineCfg);
  CMetaInfFile file;
  ASSERT_TRUE(file.OpenForApp(0, "Zoo", &zanto));
  EXPECT_STREQ(file.GetPath(), "/Zanto/ProgramFiles/Zoo/meta.inf");
  EXPECT_STREQ(file.GetPackageName(), "Old Zoo");
}

TEST_F(CMetaInfFileTest, OpenForAppOfAMissingApplicationBindsItsPath) {
  CMetaInfFile file;
  EXPECT_FALSE(file.OpenForApp(0, "Missing", nullptr));
  EXPECT_STREQ(file.GetPath(), "/QV/Bulk/ProgramFiles/Missing/meta.inf");
}

TEST_F(CMetaInfFileTest, OpenForAppWithoutAnAppDirFails) {
  CMetaInfFile file;
  Load(file, "Name=Zoo\n");
  EXPECT_FALSE(file.OpenForApp(0, nullptr, nullptr));
  EXPECT_STREQ(file.GetPackageName(), "Zoo");
}

TEST_F(CMetaInfFileTest, OpenForAppOfAMissingVolumeBindsTheEmptyPath) {
  CMetaInfFile file;
  EXPECT_FALSE(file.OpenForApp(1, "Zoo", nullptr));
  EXPECT_STREQ(file.GetPath(), "");
}

TEST_F(CMetaInfFileTest, OpenForAppCutsTheSubPathAt63Characters) {
  std::string appDir(60, 'a');
  CMetaInfFile file;
  EXPECT_FALSE(file.OpenForApp(0, appDir.c_str(), nullptr));
  EXPECT_EQ(std::string(file.GetPath()), "/QV/Bulk/ProgramFiles/" + appDir + "/me");
}

TEST_F(CMetaInfFileTest, StringKeysReadAndWrite) {
  CMetaInfFile file;
  file.Open(kPath);
  ASSERT_TRUE(file.SetMetaVersion("2"));
  ASSERT_TRUE(file.SetDeviceType("KastrelVoyant"));
  ASSERT_TRUE(file.SetPackageId("ZOO-1"));
  ASSERT_TRUE(file.SetPackageName("Zoo Keeper"));
  ASSERT_TRUE(file.SetShortName("Zoo"));
  ASSERT_TRUE(file.SetBinFile("zoo.bin"));
  ASSERT_TRUE(file.SetPartNumber("PN-1"));
  ASSERT_TRUE(file.SetPackageType("Application"));
  ASSERT_TRUE(file.SetPackageVersion("1.2.3"));
  ASSERT_TRUE(file.SetPublisher("Pub"));
  ASSERT_TRUE(file.SetDeveloper("Dev"));
  ASSERT_TRUE(file.SetIcon("icon.png"));
  ASSERT_TRUE(file.SetPathToUploadContent("Uploads/Zoo"));
  ASSERT_TRUE(file.SetPathToUploadContentList("Uploads/Zoo/list.txt"));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath),
            "MetaVersion=2\nDevice=KastrelVoyant\nPackageID=ZOO-1\nName=Zoo Keeper\nShortName=Zoo\n"
            "BinFile=zoo.bin\nPartNumber=PN-1\nType=Application\nVersion=1.2.3\nPublisher=Pub\n"
            "Developer=Dev\nIcon=icon.png\nPathToUploadContent=Uploads/Zoo\n"
            "PathToUploadContentList=Uploads/Zoo/list.txt\n");
  CMetaInfFile reread(kDir);
  EXPECT_STREQ(reread.GetMetaVersion(), "2");
  EXPECT_STREQ(reread.GetDeviceType(), "KastrelVoyant");
  EXPECT_STREQ(reread.GetPackageId(), "ZOO-1");
  EXPECT_STREQ(reread.GetPackageName(), "Zoo Keeper");
  EXPECT_STREQ(reread.GetShortName(), "Zoo");
  EXPECT_STREQ(reread.GetBinFile(), "zoo.bin");
  EXPECT_STREQ(reread.GetPartNumber(), "PN-1");
  EXPECT_STREQ(reread.GetPackageType().ToString(), "Application");
  EXPECT_STREQ(reread.GetPackageVersion(), "1.2.3");
  EXPECT_STREQ(reread.GetPublisher(), "Pub");
  EXPECT_STREQ(reread.GetDeveloper(), "Dev");
  EXPECT_STREQ(reread.GetIcon(), "icon.png");
  EXPECT_STREQ(reread.GetPathToUploadContent(), "Uploads/Zoo");
  EXPECT_STREQ(reread.GetPathToUploadContentList(), "Uploads/Zoo/list.txt");
}

TEST_F(CMetaInfFileTest, MissingStringKeysAreNull) {
  CMetaInfFile file;
  Load(file, "Other=1\n");
  EXPECT_EQ(file.GetMetaVersion(), nullptr);
  EXPECT_EQ(file.GetPackageId(), nullptr);
  EXPECT_EQ(file.GetPackageName(), nullptr);
  EXPECT_EQ(file.GetIcon(), nullptr);
  EXPECT_EQ(file.GetPackageType(), tPackageType());
}

TEST_F(CMetaInfFileTest, NumberKeysReadAndWrite) {
  CMetaInfFile file;
  file.Open(kPath);
  ASSERT_TRUE(file.SetProductId(0x1234));
  ASSERT_TRUE(file.SetSize(4096));
  ASSERT_TRUE(file.SetDeviceAccess(3));
  ASSERT_TRUE(file.SetOptionalUpload(1));
  ASSERT_TRUE(file.SetHidden(true));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath),
            "ProductID=0x00001234\nSize=0x00001000\nDeviceAccess=0x00000003\nOptionalUpload=0x00000001\n"
            "Hidden=0x00000001\n");
  EXPECT_EQ(file.GetProductId(), 0x1234u);
  EXPECT_EQ(file.GetSize(), 4096u);
  EXPECT_EQ(file.GetDeviceAccess(), 3u);
  EXPECT_EQ(file.GetOptionalUpload(), 1u);
  EXPECT_TRUE(file.IsHidden());
  ASSERT_TRUE(file.SetHidden(false));
  EXPECT_STREQ(file.GetStr("Hidden"), "0x00000000");
  EXPECT_FALSE(file.IsHidden());
}

TEST_F(CMetaInfFileTest, MissingNumbersAreAllOnesExceptOptionalUpload) {
  CMetaInfFile file;
  Load(file, "OptionalUpload=yes\n");
  EXPECT_EQ(file.GetProductId(), kMissing);
  EXPECT_EQ(file.GetSize(), kMissing);
  EXPECT_EQ(file.GetDeviceAccess(), kMissing);
  EXPECT_EQ(file.GetOptionalUpload(), 0u);
  Load(file, "Size=12\n");
  EXPECT_EQ(file.GetOptionalUpload(), 0u);
  EXPECT_EQ(file.GetSize(), 12u);
}

TEST_F(CMetaInfFileTest, AlternativePackageIdComesFirst) {
  CMetaInfFile file;
  Load(file, "PackageID=PLAIN\nDeviceAltPkgID=ALT\n");
  EXPECT_STREQ(file.GetPackageId(), "ALT");
  ASSERT_TRUE(file.SetPackageId("NEW"));
  EXPECT_STREQ(file.GetPackageId(), "ALT");
  EXPECT_STREQ(file.GetStr("PackageID"), "NEW");
  EXPECT_STREQ(file.GetStr("DeviceAltPkgID"), "ALT");
  Load(file, "DeviceAltPkgID=\nPackageID=PLAIN\n");
  EXPECT_STREQ(file.GetPackageId(), "");
}

TEST_F(CMetaInfFileTest, TypeAllOrEmptyIsRefused) {
  CaptureDebugOutput();
  CMetaInfFile file;
  Load(file, "Type=Application\n");
  EXPECT_FALSE(file.SetPackageType("*"));
  EXPECT_EQ(DebugOutput(), "meta.inf files cannot have package types of invalid or all!");
  EXPECT_FALSE(file.SetPackageType(tPackageType()));
  EXPECT_STREQ(file.GetStr("Type"), "Application");
  EXPECT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "Type=Application\n");
}

TEST_F(CMetaInfFileTest, TypeIsCutTo15Characters) {
  CMetaInfFile file;
  Load(file, "Type=ApplicationWithALongName\n");
  EXPECT_STREQ(file.GetPackageType().ToString(), "ApplicationWith");
}

TEST_F(CMetaInfFileTest, HiddenUnlessHiddenIsZero) {
  CMetaInfFile file;
  Load(file, "Hidden=0\n");
  EXPECT_FALSE(file.IsHidden());
  Load(file, "Name=x\n");
  EXPECT_TRUE(file.IsHidden());
  Load(file, "Hidden=0x00000001\n");
  EXPECT_TRUE(file.IsHidden());
  Load(file, "Hidden=no\n");
  EXPECT_TRUE(file.IsHidden());
  Load(file, "Hidden=\n");
  EXPECT_FALSE(file.IsHidden());
}

TEST_F(CMetaInfFileTest, ProfileAccess) {
  CMetaInfFile file;
  Load(file, "ProfileAccess=1,3\n");
  EXPECT_TRUE(file.ProfileHasAccess(3));
  EXPECT_TRUE(file.ProfileHasAccess(1));
  EXPECT_FALSE(file.ProfileHasAccess(2));
  Load(file, "ProfileAccess=10\n");
  EXPECT_FALSE(file.ProfileHasAccess(10));
  EXPECT_TRUE(file.ProfileHasAccess(16));
  Load(file, "ProfileAccess=0x102\n");  // only the low 8 bits count
  EXPECT_TRUE(file.ProfileHasAccess(2));
  Load(file, "ProfileAccess=\n");
  EXPECT_TRUE(file.ProfileHasAccess(7));
  Load(file, "Name=x\n");
  EXPECT_TRUE(file.ProfileHasAccess(7));
}

TEST_F(CMetaInfFileTest, ProfileAccessListIsWrittenInDecimal) {
  CMetaInfFile file;
  file.Open(kPath);
  const U32 profiles[] = {0, 2, 12};
  ASSERT_TRUE(file.SetProfileAccess(profiles, 3));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "ProfileAccess=0,2,12\n");
  U32* read = nullptr;
  U32 count = file.GetProfileAccess(read);
  EXPECT_EQ(TakeUIntList(read, count), (std::vector<U32>{0, 2, 0x12}));
  EXPECT_FALSE(file.ProfileHasAccess(12));
  EXPECT_TRUE(file.ProfileHasAccess(18));
}

TEST_F(CMetaInfFileTest, StringLists) {
  CMetaInfFile file;
  Load(file, "Depends=\"Base\",\"Audio\"\nPersistentData=saves,scores\n");
  char** list = nullptr;
  U32 count = file.GetDependencies(list);
  EXPECT_EQ(TakeStrList(list, count), (std::vector<std::string>{"Base", "Audio"}));
  count = file.GetPersistentData(list);
  EXPECT_EQ(TakeStrList(list, count), (std::vector<std::string>{"saves", "scores"}));
  const char* depends[] = {"Base", "Fonts", "Audio"};
  ASSERT_TRUE(file.SetDependencies(depends, 3));
  const char* data[] = {"a"};
  ASSERT_TRUE(file.SetPersistentData(data, 1));
  EXPECT_FALSE(file.SetPersistentData(data, 0));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "Depends=\"Base\",\"Fonts\",\"Audio\"\nPersistentData=a\n");
}

TEST_F(CMetaInfFileTest, Validity) {
  CMetaInfFile file;
  Load(file, "Type=Application\nPackageID=ZOO\nVersion=1\n");
  EXPECT_TRUE(file.IsValid());
  Load(file, "Type=application\nPackageID=ZOO\nVersion=1\n");
  EXPECT_TRUE(file.IsValid());
  Load(file, "Type=Application\nDeviceAltPkgID=ZOO\nVersion=1\n");
  EXPECT_TRUE(file.IsValid());
  Load(file, "Type=*\nPackageID=ZOO\nVersion=1\n");
  EXPECT_FALSE(file.IsValid());
  Load(file, "PackageID=ZOO\nVersion=1\n");
  EXPECT_FALSE(file.IsValid());
  Load(file, "Type=\nPackageID=ZOO\nVersion=1\n");
  EXPECT_FALSE(file.IsValid());
  Load(file, "Type=Application\nVersion=1\n");
  EXPECT_FALSE(file.IsValid());
  Load(file, "Type=Application\nPackageID=ZOO\n");
  EXPECT_FALSE(file.IsValid());
  Load(file, "Type=Unknown\nPackageID=ZOO\nVersion=\n");
  EXPECT_TRUE(file.IsValid());  // any named type, any present id and version
}

TEST_F(CMetaInfFileTest, DumpDebugTracesEveryEntry) {
  CMetaInfFile file;
  Load(file, "Name=\"Zoo\"\nDepends=\"a\",\"b\"\nVersion=1\n");
  ASSERT_TRUE(file.SetUIntList("Empty", nullptr, 0));
  CaptureDebugOutput();
  file.DumpDebug();
  EXPECT_EQ(DebugOutput(), "*** MetaInfFile ***Name=\"Zoo\"Depends=a,bVersion=1Empty=");
}

TEST_F(CMetaInfFileTest, CopyReadsTheFileOnDisk) {
  CMetaInfFile original;
  Load(original, "Name=Disk\n");
  ASSERT_TRUE(original.SetPackageName("Unsaved"));
  CMetaInfFile copy(original);
  EXPECT_STREQ(copy.GetPackageName(), "Disk");
  CMetaInfFile assigned;
  assigned = original;
  EXPECT_STREQ(assigned.GetPackageName(), "Disk");
  EXPECT_STREQ(assigned.GetPath(), kPath);
}

TEST_F(CMetaInfFileTest, WriteThroughTheBaseClassSlot) {
  CMetaInfFile file;
  Load(file, "Version=1\n");
  CFileIO& base = file;
  ASSERT_TRUE(file.SetPackageVersion("2"));
  ASSERT_TRUE(base.Write());
  EXPECT_EQ(ReadFile(kPath), "Version=2\n");
}
