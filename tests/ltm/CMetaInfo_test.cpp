#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include <vireline/CMetaInfo.h>
#include <vireline/COrvoInterface.h>

#include "ltm/DataObjectTest.h"
#include "platform/FaultInjectionEnv.h"

using LTM::CMetaInfo;
using vireline::FaultInjectionEnv;

namespace {

const char kFolder[] = "/QV/Bulk/ProgramFiles/ZooKeeper";
const char kPath[] = "/QV/Bulk/ProgramFiles/ZooKeeper/meta.inf";
const char kOtherFolder[] = "/QV/Bulk/ProgramFiles/MathMountain";
const char kOtherPath[] = "/QV/Bulk/ProgramFiles/MathMountain/meta.inf";

const char kZooKeeper[] =
    "\xEF\xBB\xBF"
    "MetaVersion=1.0\r\nDevice=KastrelVoyant\r\nPackageID=APP-ZOO-0102\r\nProductID=0x00010102\r\n"
    "Name=\"Zoo Keeper\"\r\nShortName=Zoo\r\nPartNumber=592-10102-US\r\nType=Application\r\nVersion=1.2.0\r\n"
    "Publisher=Vireline Learning\r\nDeveloper=Vireline Studio North\r\nIcon=ZooKeeper_icon.png\r\n"
    "Hidden=0x00000000\r\nDepends=\"APP-MATH-0207\",\"3.0.0\"\r\nProfileAccess=0,1\r\nDeviceAccess=0x00000003\r\n"
    "AppSo=libzoo.so\r\nLargeIcon=zoo_large.png\r\nPreviewImage=zoo_preview.png\r\n"
    "PathToUploadContent=Bulk/Data/Uploads/Zoo\r\nCurriculumType=Math\r\nMDLType=0x00000004\r\n";

}  // namespace

class CMetaInfoTest : public DataObjectTest {
 protected:
  void SetUp() override {
    DataObjectTest::SetUp();
    WriteFile(kPath, kZooKeeper);
  }
};

TEST_F(CMetaInfoTest, ForwardsEveryAccessorToTheFile) {
  CMetaInfo meta(kFolder);
  EXPECT_TRUE(meta.IsValid());
  EXPECT_FALSE(meta.IsHidden());
  EXPECT_EQ(meta.GetProductId(), 0x00010102u);
  EXPECT_EQ(meta.GetPackageVersion(), "1.2.0");
  EXPECT_EQ(meta.GetDeviceType(), "KastrelVoyant");
  EXPECT_EQ(meta.GetPackageName(), "Zoo Keeper");
  EXPECT_EQ(meta.GetPackageId(), "APP-ZOO-0102");
  EXPECT_EQ(meta.GetShortName(), "Zoo");
  EXPECT_TRUE(meta.GetPackageType() == "Application");
  EXPECT_EQ(meta.GetPublisher(), "Vireline Learning");
  EXPECT_EQ(meta.GetDeveloper(), "Vireline Studio North");
  EXPECT_EQ(meta.GetPartNumber(), "592-10102-US");
  EXPECT_EQ(meta.GetIcon(), "ZooKeeper_icon.png");
  EXPECT_EQ(meta.GetDeviceAccess(), 3u);
}

TEST_F(CMetaInfoTest, TrailingSlashNamesTheSameFile) {
  EXPECT_EQ(CMetaInfo(std::string(kFolder) + "/").GetPackageId(), "APP-ZOO-0102");
}

TEST_F(CMetaInfoTest, DependenciesAndProfileAccessAreReleasedByTheCaller) {
  CMetaInfo meta(kFolder);
  char** depends = nullptr;
  ASSERT_EQ(meta.GetDependencies(depends), 2u);
  EXPECT_STREQ(depends[0], "APP-MATH-0207");
  EXPECT_STREQ(depends[1], "3.0.0");
  COrvoInterface::Free(depends[0]);
  COrvoInterface::Free(depends[1]);
  COrvoInterface::Free(depends);
  unsigned long* profiles = nullptr;
  ASSERT_EQ(meta.GetProfileAccess(profiles), 2u);
  EXPECT_EQ(profiles[0], 0u);
  EXPECT_EQ(profiles[1], 1u);
  COrvoInterface::Free(profiles);
}

TEST_F(CMetaInfoTest, MissingMetaInfGivesMissingValues) {
  CMetaInfo meta("/QV/Bulk/ProgramFiles/Nothing");
  EXPECT_FALSE(meta.IsValid());
  EXPECT_TRUE(meta.IsHidden());  // no "Hidden" key counts as hidden
  EXPECT_EQ(meta.GetPackageId(), "");
  EXPECT_EQ(meta.GetPackageVersion(), "");
  EXPECT_EQ(meta.GetProductId(), 0xFFFFFFFFu);
  EXPECT_TRUE(meta.GetPackageType() == "");
  EXPECT_EQ(meta.GetTagInt("MDLType"), 0xFFFFFFFFu);
  EXPECT_EQ(meta.GetMDLType(), 0xFFFFFFFFu);
  EXPECT_EQ(meta.GetTagString("AppSo"), "");
  EXPECT_TRUE(meta.GetTagIntList("ProfileAccess").empty());
  EXPECT_TRUE(meta.GetTagStringList("Depends").empty());
  char** depends = nullptr;
  EXPECT_EQ(meta.GetDependencies(depends), 0u);
  EXPECT_EQ(depends, nullptr);
}

TEST_F(CMetaInfoTest, DestroyingAMissingUnchangedPackageCreatesNothing) {
  { CMetaInfo meta("/QV/Bulk/ProgramFiles/Nothing"); }
  EXPECT_FALSE(Exists("/QV/Bulk/ProgramFiles/Nothing"));
}

TEST_F(CMetaInfoTest, NamedTags) {
  CMetaInfo meta(kFolder);
  EXPECT_EQ(meta.GetAppSo(), "libzoo.so");
  EXPECT_EQ(meta.GetLargeIcon(), "zoo_large.png");
  EXPECT_EQ(meta.GetPreviewImage(), "zoo_preview.png");
  EXPECT_EQ(meta.GetPathToUploadContent(), "Bulk/Data/Uploads/Zoo");
  EXPECT_EQ(meta.GetCurricType(), "Math");
  EXPECT_EQ(meta.GetMDLType(), 4u);
}

TEST_F(CMetaInfoTest, TagsByName) {
  WriteFile(kPath, "Number=0x0000001F\nBad=12a\nText=hello\nNumbers=10,20\nWords=\"a\",\"b\",\"c\"\nEmpty=\n");
  CMetaInfo meta(kFolder);
  EXPECT_EQ(meta.GetTagInt("Number"), 31u);
  EXPECT_EQ(meta.GetTagInt("Bad"), 0xFFFFFFFFu);
  EXPECT_EQ(meta.GetTagInt("Empty"), 0u);
  EXPECT_EQ(meta.GetTagString("Text"), "hello");
  EXPECT_EQ(meta.GetTagIntList("Numbers"), (std::vector<U32>{16, 32}));  // items are read in base 16
  EXPECT_TRUE(meta.GetTagIntList("Empty").empty());
  EXPECT_EQ(meta.GetTagStringList("Words"), (std::vector<Glib::ustring>{"a", "b", "c"}));
  EXPECT_EQ(meta.GetTagStringList("Empty"), (std::vector<Glib::ustring>{""}));
  EXPECT_EQ(meta.GetTagStringList("Text"), (std::vector<Glib::ustring>{"hello"}));
}

TEST_F(CMetaInfoTest, SetTagsAreWrittenByTheDestructor) {
  WriteFile(kPath, "PackageID=APP-1\n");
  {
    CMetaInfo meta(kFolder);
    EXPECT_TRUE(meta.SetTagInt("Number", 31));
    EXPECT_TRUE(meta.SetTagString("Text", "hello"));
    EXPECT_TRUE(meta.SetTagIntList("Numbers", {10, 20}));
    EXPECT_TRUE(meta.SetTagStringList("Words", {"a", "b"}));
    EXPECT_TRUE(meta.SetPreviewImage("p.png"));
    EXPECT_TRUE(meta.SetPathToUploadContent("Bulk/Data/Uploads/X"));
    EXPECT_TRUE(meta.SetMDLType(2));
    EXPECT_EQ(meta.GetTagIntList("Numbers"), (std::vector<U32>{16, 32}));
    EXPECT_EQ(ReadFile(kPath), "PackageID=APP-1\n");  // nothing is written before the end
  }
  EXPECT_EQ(ReadFile(kPath),
            "PackageID=APP-1\nNumber=0x0000001F\nText=hello\nNumbers=10,20\nWords=a,b\nPreviewImage=p.png\n"
            "PathToUploadContent=Bulk/Data/Uploads/X\nMDLType=0x00000002\n");
}

TEST_F(CMetaInfoTest, EmptyStringListIsRefusedWhileAnEmptyNumberListStoresNoValue) {
  WriteFile(kPath, "");
  {
    CMetaInfo meta(kFolder);
    EXPECT_FALSE(meta.SetTagStringList("Words", {}));
    EXPECT_TRUE(meta.SetTagIntList("Numbers", {}));
    EXPECT_TRUE(meta.GetTagIntList("Numbers").empty());
  }
  EXPECT_EQ(ReadFile(kPath), "Numbers=\n");
}

TEST_F(CMetaInfoTest, EverySetterIsWrittenByTheDestructor) {
  WriteFile(kPath, "");
  {
    CMetaInfo meta(kFolder);
    const unsigned long profiles[2] = {0, 2};
    EXPECT_TRUE(meta.SetProductId(0x10));
    EXPECT_TRUE(meta.SetPackageVersion("2.0"));
    EXPECT_TRUE(meta.SetDeviceType("KastrelVoyant"));
    EXPECT_TRUE(meta.SetPackageName("Zoo"));
    EXPECT_TRUE(meta.SetPackageId("APP-ZOO"));
    EXPECT_TRUE(meta.SetShortName("Z"));
    EXPECT_TRUE(meta.SetPackageType("Application"));
    EXPECT_TRUE(meta.SetPublisher("P"));
    EXPECT_TRUE(meta.SetDeveloper("D"));
    EXPECT_TRUE(meta.SetPartNumber("592"));
    EXPECT_TRUE(meta.SetIcon("i.png"));
    EXPECT_TRUE(meta.SetHidden(true));
    EXPECT_TRUE(meta.SetProfileAccess(profiles, 2));
  }
  EXPECT_EQ(ReadFile(kPath),
            "ProductID=0x00000010\nVersion=2.0\nDevice=KastrelVoyant\nName=Zoo\nPackageID=APP-ZOO\nShortName=Z\n"
            "Type=Application\nPublisher=P\nDeveloper=D\nPartNumber=592\nIcon=i.png\nHidden=0x00000001\n"
            "ProfileAccess=0,2\n");
}

TEST_F(CMetaInfoTest, RefusedPackageTypeLeavesTheTypeAsItWas) {
  WriteFile(kPath, "Type=Application\n");
  {
    CMetaInfo meta(kFolder);
    CaptureDebugOutput();
    EXPECT_FALSE(meta.SetPackageType("*"));
    EXPECT_EQ(DebugOutput(), "meta.inf files cannot have package types of invalid or all!");
  }
  EXPECT_EQ(ReadFile(kPath), "Type=Application\n");
}

TEST_F(CMetaInfoTest, UnchangedObjectIsNotWrittenBack) {
  { CMetaInfo meta(kFolder); meta.GetPackageName(); }
  EXPECT_EQ(ReadFile(kPath), kZooKeeper);  // byte-order mark and line ends kept
}

TEST_F(CMetaInfoTest, SaveWritesAtOnce) {
  CMetaInfo meta(kFolder);
  EXPECT_TRUE(meta.SetPackageVersion("1.3.0"));
  EXPECT_TRUE(meta.Save());
  EXPECT_EQ(CMetaInfo(kFolder).GetPackageVersion(), "1.3.0");
}

TEST_F(CMetaInfoTest, SaveOfAnUnchangedObjectSucceedsWithoutWriting) {
  CMetaInfo meta(kFolder);
  EXPECT_TRUE(meta.Save());
  EXPECT_EQ(ReadFile(kPath), kZooKeeper);
}

TEST_F(CMetaInfoTest, FailedSaveReportsFalseAndKeepsTheOldFile) {
  {
    CMetaInfo meta(kFolder);
    EXPECT_TRUE(meta.SetPackageVersion("1.3.0"));
    FaultInjectionEnv faults(vireline::Env::Default());
    vireline::Env::SetCurrent(&faults);
    faults.FailAfter(FaultInjectionEnv::kWrite, 3, ENOSPC);
    EXPECT_FALSE(meta.Save());
    vireline::Env::SetCurrent(nullptr);
    EXPECT_EQ(ReadFile(kPath), kZooKeeper);
    EXPECT_TRUE(meta.SetPublisher("Someone"));
  }
  EXPECT_EQ(CMetaInfo(kFolder).GetPackageVersion(), "1.3.0");
  EXPECT_EQ(CMetaInfo(kFolder).GetPublisher(), "Someone");
}

TEST_F(CMetaInfoTest, DestructorWhoseWriteFailsKeepsTheOldFile) {
  FaultInjectionEnv faults(vireline::Env::Default());
  {
    CMetaInfo meta(kFolder);
    EXPECT_TRUE(meta.SetPackageVersion("1.3.0"));
    vireline::Env::SetCurrent(&faults);
    faults.FailAfter(FaultInjectionEnv::kRename, 0);
  }
  vireline::Env::SetCurrent(nullptr);
  EXPECT_EQ(ReadFile(kPath), kZooKeeper);
}

TEST_F(CMetaInfoTest, CopyReadsTheFileNotTheOthersChanges) {
  CMetaInfo original(kFolder);
  EXPECT_TRUE(original.SetPackageVersion("9.9"));
  CMetaInfo copy(original);
  EXPECT_EQ(original.GetPackageVersion(), "9.9");
  EXPECT_EQ(copy.GetPackageVersion(), "1.2.0");
}

TEST_F(CMetaInfoTest, CopyOfAChangedObjectWritesItsOwnChanges) {
  {
    CMetaInfo original(kFolder);
    EXPECT_TRUE(original.SetPackageVersion("9.9"));
    CMetaInfo copy(original);
    EXPECT_TRUE(copy.SetPublisher("Copy"));
    EXPECT_TRUE(original.Save());
  }
  CMetaInfo reread(kFolder);
  EXPECT_EQ(reread.GetPackageVersion(), "1.2.0");  // the copy, written last, never had 9.9
  EXPECT_EQ(reread.GetPublisher(), "Copy");
}

TEST_F(CMetaInfoTest, AssignmentDropsTheTargetsUnsavedChanges) {
  WriteFile(kOtherPath, "PackageID=APP-MATH-0207\nVersion=3.0.2\n");
  {
    CMetaInfo target(kFolder);
    EXPECT_TRUE(target.SetPackageVersion("9.9"));
    CMetaInfo source(kOtherFolder);
    target = source;
    EXPECT_EQ(target.GetPackageId(), "APP-MATH-0207");
  }
  EXPECT_EQ(ReadFile(kPath), kZooKeeper);
  EXPECT_EQ(ReadFile(kOtherPath), "PackageID=APP-MATH-0207\nVersion=3.0.2\n");
}

TEST_F(CMetaInfoTest, AssignmentTakesTheSourcesFileButNotItsChanges) {
  WriteFile(kOtherPath, "PackageID=APP-MATH-0207\nVersion=3.0.2\n");
  CMetaInfo source(kOtherFolder);
  EXPECT_TRUE(source.SetPackageVersion("4.0"));
  CMetaInfo target(kFolder);
  target = source;
  EXPECT_EQ(target.GetPackageVersion(), "3.0.2");
}

TEST_F(CMetaInfoTest, SelfAssignmentKeepsUnsavedChanges) {
  {
    CMetaInfo meta(kFolder);
    EXPECT_TRUE(meta.SetPackageVersion("9.9"));
    CMetaInfo& same = meta;
    meta = same;
    EXPECT_EQ(meta.GetPackageVersion(), "9.9");
  }
  EXPECT_EQ(CMetaInfo(kFolder).GetPackageVersion(), "9.9");
}

TEST_F(CMetaInfoTest, UnreadableMetaInfReadsAsMissing) {
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kOpen, 0, EACCES);
  CMetaInfo meta(kFolder);
  EXPECT_FALSE(meta.IsValid());
  EXPECT_EQ(meta.GetPackageId(), "");
}

TEST_F(CMetaInfoTest, BinaryMetaInfReadsAsMissingKeys) {
  WriteFile(kPath, std::string("\x00\x01\x02\xFF\xFE\nkey=value\n", 16));
  CMetaInfo meta(kFolder);
  EXPECT_FALSE(meta.IsValid());
  EXPECT_EQ(meta.GetTagString("key"), "value");
}
