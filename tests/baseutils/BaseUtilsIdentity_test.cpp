// Device identity through BaseUtils: serial number, touch screen, platform.
#include <vireline/BaseUtils.h>
#include <vireline/CMfgData.h>
#include <vireline/Platform.h>

#include <gtest/gtest.h>

#include <string>

#include "mfg/MfgDataTest.h"

namespace {

const char kPlatformFile[] = "/etc/vireline/platform.cfg";

}  // namespace

class BaseUtilsIdentityTest : public MfgDataTest {
 protected:
  // The serial number as the manufacturing record composes it.
  std::string RecordSerial() {
    CMfgData data;
    char out[24] = {0};
    EXPECT_EQ(data.Init(), 0);
    EXPECT_EQ(data.GetSerialNumber(out), 0);
    data.Exit();
    return out;
  }

  void SetPlatform(const std::string& name, int id, int touch) {
    WriteFile(kPlatformFile, "Name=" + name + "\nID=" + std::to_string(id) + "\nTouchScreen=" + std::to_string(touch) + "\n");
  }
};

TEST_F(BaseUtilsIdentityTest, SerialNumberComesFromTheManufacturingRecord) {
  WriteCopy(0, mfgtest::SampleRecord());
  WriteFile("/sys/devices/platform/qvx300-gpio/board_id", "1F\n");
  EXPECT_EQ(BaseUtils::Instance()->GetSerialNumber(), RecordSerial());
  EXPECT_EQ(BaseUtils::Instance()->GetSerialNumber().substr(0, 4), "1A2B");
  EXPECT_EQ(BaseUtils::Instance()->GetZantoSerialNumber(), BaseUtils::Instance()->GetSerialNumber());
}

TEST_F(BaseUtilsIdentityTest, SerialNumberIsTwentyZerosWithoutAManufacturingRecord) {
  EXPECT_EQ(BaseUtils::Instance()->GetSerialNumber(), "00000000000000000000");
  EXPECT_EQ(BaseUtils::Instance()->GetZantoSerialNumber(), "00000000000000000000");
}

TEST_F(BaseUtilsIdentityTest, SerialNumberIsTwentyZerosWhenThePartitionsCannotBeRead) {
  WriteFile("/proc/mtd", "dev:    size   erasesize  name\n");
  EXPECT_EQ(BaseUtils::Instance()->GetSerialNumber(), "00000000000000000000");
}

TEST_F(BaseUtilsIdentityTest, TouchScreenIsAskedOfThePlatformAndLogged) {
  SetPlatform("Tamsel", 2, 1);
  CaptureDebugOutput();
  PlatformDebug().SetMasterDebugLevel(3);
  EXPECT_TRUE(BaseUtils::Instance()->HasTouchScreen());
  EXPECT_EQ(DebugOutput(), "HasTouchScreen: 1\n");
}

TEST_F(BaseUtilsIdentityTest, NoTouchScreenWhenThePlatformHasNone) {
  SetPlatform("Zanto", 1, 0);
  EXPECT_FALSE(BaseUtils::Instance()->HasTouchScreen());
}

TEST_F(BaseUtilsIdentityTest, PlatformIdIsLoggedOnceAndCached) {
  SetPlatform("Oskava", 3, 1);
  CaptureDebugOutput();
  PlatformDebug().SetMasterDebugLevel(3);
  EXPECT_EQ(BaseUtils::Instance()->GetPlatformID(), 3);
  SetPlatform("MIRA", 4, 1);
  EXPECT_EQ(BaseUtils::Instance()->GetPlatformID(), 3);
  EXPECT_EQ(DebugOutput(), "GetPlatformID: 3\n");
}

TEST_F(BaseUtilsIdentityTest, PlatformNameComesStraightFromThePlatform) {
  SetPlatform("TARVESSA", 5, 1);
  EXPECT_EQ(BaseUtils::Instance()->GetPlatformName(), "TARVESSA");
}

struct KnownPlatform {
  const char* name;
  BaseUtils::tPlatformType type;
};

// One test per name: the type is cached for the process, and each test runs in its own.
class BaseUtilsPlatformTypeTest : public BaseUtilsIdentityTest,
                                  public ::testing::WithParamInterface<KnownPlatform> {};

TEST_P(BaseUtilsPlatformTypeTest, EachKnownNameGivesItsType) {
  SetPlatform(GetParam().name, 9, 0);
  EXPECT_EQ(BaseUtils::Instance()->GetPlatformType(), GetParam().type);
  EXPECT_TRUE(BaseUtils::Instance()->IsPlatformType(GetParam().type));
}

INSTANTIATE_TEST_SUITE_P(Names, BaseUtilsPlatformTypeTest,
                         ::testing::Values(KnownPlatform{"Zanto", BaseUtils::kPlatformZanto},
                                           KnownPlatform{"Tamsel", BaseUtils::kPlatformTamsel},
                                           KnownPlatform{"Oskava", BaseUtils::kPlatformOskava},
                                           KnownPlatform{"MIRA", BaseUtils::kPlatformMira},
                                           KnownPlatform{"TARVESSA", BaseUtils::kPlatformTarvessa}),
                         [](const ::testing::TestParamInfo<KnownPlatform>& info) { return std::string(info.param.name); });

TEST_F(BaseUtilsIdentityTest, AKnownTypeIsCachedForTheProcess) {
  SetPlatform("MIRA", 4, 1);
  EXPECT_EQ(BaseUtils::Instance()->GetPlatformType(), BaseUtils::kPlatformMira);
  SetPlatform("Zanto", 1, 1);
  EXPECT_EQ(BaseUtils::Instance()->GetPlatformType(), BaseUtils::kPlatformMira);
}

TEST_F(BaseUtilsIdentityTest, NamesMatchOnlyWithTheirExactCase) {
  SetPlatform("mira", 4, 1);
  EXPECT_EQ(BaseUtils::Instance()->GetPlatformType(), BaseUtils::kPlatformUnknown);
}

TEST_F(BaseUtilsIdentityTest, AnUnknownNameGivesZeroEveryTimeAndIsLookedAtAgain) {
  SetPlatform("Prototype", 77, 0);
  EXPECT_EQ(BaseUtils::Instance()->GetPlatformType(), BaseUtils::kPlatformUnknown);
  EXPECT_EQ(BaseUtils::Instance()->GetPlatformType(), BaseUtils::kPlatformUnknown);
  EXPECT_FALSE(BaseUtils::Instance()->IsPlatformType(BaseUtils::kPlatformTamsel));
  SetPlatform("Tamsel", 2, 1);
  EXPECT_EQ(BaseUtils::Instance()->GetPlatformType(), BaseUtils::kPlatformTamsel);
}
