// The package dependency check. The platform type is read once per process
// from the device image's identity file, so each test names its platform
// before the first check (CTest runs every test in a process of its own).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <vireline/CMetaInfo.h>
#include <vireline/CSystemData.h>

#include "RequestFiles.h"
#include "ltm/DataObjectTest.h"

using LTM::CMetaInfo;

namespace {

const char kApp[] = "/QV/Bulk/ProgramFiles/App";

const U32 kApplication = CMetaInfo::kRequestedApplication;
const U32 kLanguagePack = CMetaInfo::kRequestedLanguagePack;

}  // namespace

class CartDependenciesTest : public DataObjectTest {
 protected:
  void SetUp() override {
    DataObjectTest::SetUp();
    RecordDebugMessages();
  }

  void SetPlatform(const std::string& name) { WriteFile("/etc/vireline/platform.cfg", "Name=" + name + "\n"); }

  // A package folder with a meta.inf naming `id` and `version`.
  void Install(const std::string& folder, const std::string& id, const std::string& version) {
    WriteFile(folder + "/meta.inf", "PackageID=" + id + "\nVersion=" + version + "\nType=Application\n");
  }

  // The base language pack of the Tamsel platform, at `version`.
  void InstallTamselLanguagePack(const std::string& version = "1.0.8") {
    Install("/QV/Bulk/LanguagePack_en", "KVR9-0x00170030-000001", version);
  }

  // Checks an application of device type `device` whose "Depends" line is `depends`.
  U32 Check(const std::string& depends, const std::string& device = "KastrelVoyant") {
    WriteFile(std::string(kApp) + "/meta.inf",
              "PackageID=APP-1\nVersion=1.0\nType=Application\nDevice=" + device + "\nDepends=" + depends + "\n");
    return CMetaInfo(kApp).CheckCartDependencies();
  }

  // The packages requested so far: the request files left for the desktop
  // connect application, as "id version", in name order.
  static std::vector<std::string> Requests() {
    return PackageRequestsIn(CSystemData::Instance()->GetManageInventoryPath());
  }

  typedef std::vector<std::string> Strings;
};

TEST_F(CartDependenciesTest, ZantoPackageRequestsNothing) {
  SetPlatform("Tamsel");
  EXPECT_EQ(Check("\"APP-MISSING\",\"1.0\",\"KVR9-0x00170030-000002\",\"1.0\"", "Zanto"), 0u);
  EXPECT_EQ(Requests(), Strings{});
}

TEST_F(CartDependenciesTest, NothingMissingRequestsNothing) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  Install("/QV/Bulk/ProgramFiles/APP-2", "APP-2", "2.0");
  EXPECT_EQ(Check("APP-2,2.0"), 0u);
  EXPECT_EQ(Requests(), Strings{});
}

TEST_F(CartDependenciesTest, EveryApplicationImpliesThePlatformsBaseLanguagePack) {
  SetPlatform("Tamsel");
  EXPECT_EQ(Check(""), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00170030-000001 1.0.8"});
}

TEST_F(CartDependenciesTest, BaseLanguagePackOfEachPlatform) {
  SetPlatform("TARVESSA");
  EXPECT_EQ(Check("APP-2,1.0"), kApplication | kLanguagePack);
  EXPECT_EQ(Requests(), (Strings{"APP-2 1.0", "ZRTE-0x001E000F-000001 3.0.22.210"}));
}

TEST_F(CartDependenciesTest, BaseLanguagePackOfOskava) {
  SetPlatform("Oskava");
  Install("/QV/Bulk/LanguagePack_en", "MQDX-0x001E000F-000001", "1.0.0");
  EXPECT_EQ(Check(""), 0u);
  EXPECT_EQ(Requests(), Strings{});
}

TEST_F(CartDependenciesTest, BaseLanguagePackOfMira) {
  SetPlatform("MIRA");
  EXPECT_EQ(Check(""), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"HWOB-0x00170030-000001 1.0.0"});
}

TEST_F(CartDependenciesTest, UnknownPlatformAsksForAPackWithoutStemOrVersion) {
  EXPECT_EQ(Check(""), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"-000001 "});
}

TEST_F(CartDependenciesTest, OlderBaseLanguagePackIsRequested) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack("1.0.7");
  EXPECT_EQ(Check(""), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00170030-000001 1.0.8"});
}

TEST_F(CartDependenciesTest, NewerBaseLanguagePackSuffices) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack("1.0.10");
  EXPECT_EQ(Check(""), 0u);
}

TEST_F(CartDependenciesTest, BookPackFoldersCountAsLanguagePacks) {
  SetPlatform("Tamsel");
  Install("/QV/Bulk/BookPack_en", "KVR9-0x00170030-000001", "1.0.8");
  EXPECT_EQ(Check(""), 0u);
}

TEST_F(CartDependenciesTest, PackOutsideALanguageOrBookPackFolderIsNotSeen) {
  SetPlatform("Tamsel");
  Install("/QV/Bulk/English", "KVR9-0x00170030-000001", "1.0.8");
  EXPECT_EQ(Check(""), kLanguagePack);
}

TEST_F(CartDependenciesTest, DoomedLanguagePackIsRequestedAgain) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  WriteFile("/QV/Bulk/LanguagePack_en/doom", "");
  EXPECT_EQ(Check(""), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00170030-000001 1.0.8"});
}

TEST_F(CartDependenciesTest, IdWithoutVersionOnlyWarnsThenChecksTheBaseLanguagePack) {
  SetPlatform("Tamsel");
  EXPECT_EQ(Check("APP-LONELY"), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00170030-000001 1.0.8"});
  ASSERT_FALSE(Messages().empty());
  EXPECT_EQ(Messages()[0].module, 0x281);
  EXPECT_EQ(Messages()[0].level, 2);
  EXPECT_EQ(Messages()[0].text, "Missing Version for Depends APP-LONELY\n");
}

TEST_F(CartDependenciesTest, OddListChecksThePairsBeforeTheLoneId) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  EXPECT_EQ(Check("APP-2,1.0,APP-3"), kApplication);
  EXPECT_EQ(Requests(), Strings{"APP-2 1.0"});
  EXPECT_NE(MessageText().find("Missing Version for Depends APP-3\n"), std::string::npos);
}

TEST_F(CartDependenciesTest, SharedLanguagePackStemIsLookedForAsThePlatformsOwn) {
  SetPlatform("TARVESSA");
  EXPECT_EQ(Check("KVR9-0x00170030-000002,1.0"), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"ZRTE-0x001E000F-000002 1.0"});  // and no base pack: a pack was named
}

TEST_F(CartDependenciesTest, SharedLanguagePackStemFindsThePlatformsOwnPack) {
  SetPlatform("TARVESSA");
  Install("/QV/Bulk/LanguagePack_fr", "ZRTE-0x001E000F-000002", "1.0");
  EXPECT_EQ(Check("KVR9-0x00170030-000002,1.0"), 0u);
  EXPECT_EQ(Requests(), Strings{});
}

TEST_F(CartDependenciesTest, PackUnderTheSharedStemDoesNotSatisfyAnotherPlatform) {
  SetPlatform("TARVESSA");
  Install("/QV/Bulk/LanguagePack_fr", "KVR9-0x00170030-000002", "1.0");
  EXPECT_EQ(Check("KVR9-0x00170030-000002,1.0"), kLanguagePack);
}

TEST_F(CartDependenciesTest, SharedLanguagePackStemOnOskava) {
  SetPlatform("Oskava");
  EXPECT_EQ(Check("KVR9-0x00170030-000002,1.0"), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"MQDX-0x001E000F-000002 1.0"});
}

TEST_F(CartDependenciesTest, SharedLanguagePackStemOnMira) {
  SetPlatform("MIRA");
  EXPECT_EQ(Check("KVR9-0x00170030-000002,1.0"), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"HWOB-0x00170030-000002 1.0"});
}

TEST_F(CartDependenciesTest, SharedLanguagePackStemStaysOnTamsel) {
  SetPlatform("Tamsel");
  EXPECT_EQ(Check("KVR9-0x00170030-000002,1.0"), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00170030-000002 1.0"});
}

TEST_F(CartDependenciesTest, SharedLanguagePackStemStaysOnAnUnknownPlatform) {
  EXPECT_EQ(Check("KVR9-0x00170030-000002,1.0"), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00170030-000002 1.0"});
}

TEST_F(CartDependenciesTest, OwnLanguagePackStemsAreKeptAsTheyAre) {
  SetPlatform("Tamsel");
  EXPECT_EQ(Check("MQDX-0x001E000F-000003,1.0,ZRTE-0x001E000F-000004,2.0"), kLanguagePack);
  EXPECT_EQ(Requests(), (Strings{"MQDX-0x001E000F-000003 1.0", "ZRTE-0x001E000F-000004 2.0"}));
}

TEST_F(CartDependenciesTest, OlderLanguagePackWithTheWantedIdIsRequested) {
  SetPlatform("Tamsel");
  Install("/QV/Bulk/LanguagePack_de", "KVR9-0x00170030-000002", "1.9");
  EXPECT_EQ(Check("KVR9-0x00170030-000002,1.10"), kLanguagePack);
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00170030-000002 1.10"});
}

TEST_F(CartDependenciesTest, MissingApplicationIsRequested) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  EXPECT_EQ(Check("APP-2,2.0"), kApplication);
  EXPECT_EQ(Requests(), Strings{"APP-2 2.0"});
}

TEST_F(CartDependenciesTest, OlderApplicationIsRequestedAndNewerIsNot) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  Install("/QV/Bulk/ProgramFiles/APP-OLD", "APP-OLD", "1.9");
  Install("/QV/Bulk/ProgramFiles/APP-NEW", "APP-NEW", "1.10");
  EXPECT_EQ(Check("APP-OLD,1.10,APP-NEW,1.9"), kApplication);
  EXPECT_EQ(Requests(), Strings{"APP-OLD 1.10"});
}

TEST_F(CartDependenciesTest, ApplicationFolderWithoutMetaInfIsAcceptedForAnyVersion) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  MakeDirs("/QV/Bulk/ProgramFiles/APP-2");
  EXPECT_EQ(Check("APP-2,9.0"), 0u);  // no installed version: the comparison finds nothing newer
}

TEST_F(CartDependenciesTest, FileInsteadOfAnApplicationFolderIsRequested) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  WriteFile("/QV/Bulk/ProgramFiles/APP-2", "");
  EXPECT_EQ(Check("APP-2,1.0"), kApplication);
}

TEST_F(CartDependenciesTest, DoomedWidgetFolderIsRequestedAgain) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  Install("/QV/Bulk/ProgramFiles/KeyboardWidget", "MQDX-0x001E0003-000001", "5.0");
  WriteFile("/QV/Bulk/ProgramFiles/KeyboardWidget/doom", "");
  EXPECT_EQ(Check("MQDX-0x001E0003-000001,1.0"), kApplication);
  EXPECT_EQ(Requests(), Strings{"MQDX-0x001E0003-000001 1.0"});
}

TEST_F(CartDependenciesTest, WidgetsLiveInFoldersOfTheirOwn) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  Install("/QV/Bulk/ProgramFiles/KeyboardWidget", "MQDX-0x001E0003-000001", "1.0");
  Install("/QV/Bulk/ProgramFiles/SneakPeakWidget", "MQDX-0x001E0010-000000", "1.0");
  Install("/QV/Bulk/ProgramFiles/MQDX-0x001B0008-000000", "MQDX-0x001B0008-000000", "1.0");
  EXPECT_EQ(Check("MQDX-0x001E0003-000001,1.0,MQDX-0x001E0010-000000,1.0,MQDX-0x001B0008-000000,1.0"),
            kApplication);
  EXPECT_EQ(Requests(), Strings{"MQDX-0x001B0008-000000 1.0"});  // XMV is looked for in "XMV"
}

TEST_F(CartDependenciesTest, XmvWidgetFolder) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  Install("/QV/Bulk/ProgramFiles/XMV", "MQDX-0x001B0008-000000", "1.0");
  EXPECT_EQ(Check("MQDX-0x001B0008-000000,1.0"), 0u);
}

TEST_F(CartDependenciesTest, OlderFirmwareIsRequested) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  WriteFile("/etc/version", "1.9.0 built 2024-01-01\n");
  EXPECT_EQ(Check("KVR9-0x00170029-000000,1.10.0"), kApplication);
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00170029-000000 1.10.0"});
}

TEST_F(CartDependenciesTest, SameOrNewerFirmwareIsNotRequested) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  WriteFile("/etc/version", "  2.0.1\n");
  EXPECT_EQ(Check("KVR9-0x00170029-000000,2.0.1"), 0u);
  WriteFile("/etc/version", "2.0.2");
  EXPECT_EQ(Check("KVR9-0x00170029-000000,2.0.1"), 0u);
  EXPECT_EQ(Requests(), Strings{});
}

TEST_F(CartDependenciesTest, AnUnreadableFirmwareVersionRequestsTheFirmware) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  EXPECT_EQ(Check("KVR9-0x00170029-000000,2.0"), kApplication);
  EXPECT_EQ(Requests(), Strings{"KVR9-0x00170029-000000 2.0"});
}

TEST_F(CartDependenciesTest, AFirmwareVersionFileWithoutAWordRequestsTheFirmware) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  WriteFile("/etc/version", "\n\n");
  EXPECT_EQ(Check("KVR9-0x00170029-000000,2.0"), kApplication);
}

TEST_F(CartDependenciesTest, OverlongFirmwareVersionIsReadBounded) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  WriteFile("/etc/version", "1." + std::string(100000, '0') + "\n");
  EXPECT_EQ(Check("KVR9-0x00170029-000000,2.0"), kApplication);
}

TEST_F(CartDependenciesTest, FirmwareOfOskavaAndTarvessaIsShared) {
  SetPlatform("Oskava");
  Install("/QV/Bulk/LanguagePack_en", "MQDX-0x001E000F-000001", "1.0.0");
  WriteFile("/etc/version", "3.0\n");
  EXPECT_EQ(Check("MQDX-0x00170029-000000,3.1"), kApplication);
  EXPECT_EQ(Check("MQDX-0x00170029-000000,3.0"), 0u);
  EXPECT_EQ(Requests(), Strings{"MQDX-0x00170029-000000 3.1"});
}

TEST_F(CartDependenciesTest, TarvessaFirmware) {
  SetPlatform("TARVESSA");
  Install("/QV/Bulk/LanguagePack_en", "ZRTE-0x001E000F-000001", "3.0.22.210");
  WriteFile("/etc/version", "3.0\n");
  EXPECT_EQ(Check("MQDX-0x00170029-000000,3.0"), 0u);
  EXPECT_EQ(Requests(), Strings{});
}

TEST_F(CartDependenciesTest, MiraHasNoFirmwarePackage) {
  SetPlatform("MIRA");
  Install("/QV/Bulk/LanguagePack_en", "HWOB-0x00170030-000001", "1.0.0");
  WriteFile("/etc/version", "9.0\n");
  // Looked for as an application folder, which is missing.
  EXPECT_EQ(Check("MQDX-0x00170029-000000,1.0"), kApplication);
  EXPECT_EQ(Requests(), Strings{"MQDX-0x00170029-000000 1.0"});
}

TEST_F(CartDependenciesTest, AnotherPlatformsFirmwareIdIsAnApplication) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  WriteFile("/etc/version", "9.0\n");
  EXPECT_EQ(Check("MQDX-0x00170029-000000,1.0"), kApplication);
}

TEST_F(CartDependenciesTest, UnreadableOwnMetaInfChecksOnlyTheBaseLanguagePack) {
  SetPlatform("Tamsel");
  InstallTamselLanguagePack();
  EXPECT_EQ(CMetaInfo("/QV/Bulk/ProgramFiles/Missing").CheckCartDependencies(), 0u);
  EXPECT_EQ(Requests(), Strings{});
}

TEST_F(CartDependenciesTest, NoBulkFolderRequestsTheBaseLanguagePack) {
  SetPlatform("Tamsel");
  EXPECT_EQ(CMetaInfo("/QV/Bulk/ProgramFiles/Missing").CheckCartDependencies(), kLanguagePack);
}

class CheckLanguagePacksTest : public CartDependenciesTest {
 protected:
  unsigned char Visit(const std::string& folder, LTM::tLanguagePackInfo* want) {
    return LTM::CheckLanguagePacks(folder, want);
  }
};

TEST_F(CheckLanguagePacksTest, MatchingPackEndsTheWalkWhetherOrNotItsVersionSuffices) {
  Install("/QV/Bulk/LanguagePack_de", "KVR9-0x00170030-000002", "1.9");
  LTM::tLanguagePackInfo want{"KVR9-0x00170030-000002", "2.0", false};
  EXPECT_EQ(Visit("/QV/Bulk/LanguagePack_de", &want), 0);
  EXPECT_FALSE(want.found);
  want.version = "1.9";
  EXPECT_EQ(Visit("/QV/Bulk/LanguagePack_de", &want), 0);
  EXPECT_TRUE(want.found);
}

TEST_F(CheckLanguagePacksTest, OtherPacksAndFoldersContinueTheWalk) {
  Install("/QV/Bulk/LanguagePack_de", "KVR9-0x00170030-000003", "1.0");
  Install("/QV/Bulk/Games", "KVR9-0x00170030-000002", "1.0");
  LTM::tLanguagePackInfo want{"KVR9-0x00170030-000002", "1.0", false};
  EXPECT_EQ(Visit("/QV/Bulk/LanguagePack_de", &want), 1);
  EXPECT_EQ(Visit("/QV/Bulk/Games", &want), 1);
  EXPECT_EQ(Visit("/QV/Bulk/LanguagePack_missing", &want), 1);
  EXPECT_FALSE(want.found);
}

TEST_F(CheckLanguagePacksTest, DoomedPackContinuesTheWalk) {
  Install("/QV/Bulk/BookPack_1", "KVR9-0x00170030-000002", "1.0");
  WriteFile("/QV/Bulk/BookPack_1/doom", "");
  LTM::tLanguagePackInfo want{"KVR9-0x00170030-000002", "1.0", false};
  EXPECT_EQ(Visit("/QV/Bulk/BookPack_1", &want), 1);
  EXPECT_FALSE(want.found);
}
