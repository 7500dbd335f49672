#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <vireline/CMfgData.h>

#include "tools/SampleImageTest.h"

namespace fs = std::filesystem;

namespace {

bool Contains(const std::string& text, const std::string& what) { return text.find(what) != std::string::npos; }

bool IsValidCopy(const std::string& copy) {
  return copy.size() == 4096 && CMfgData::ValidateCheckSum(reinterpret_cast<const unsigned char*>(copy.data())) == 0;
}

}  // namespace

class MfgCommandTest : public SampleImageTest {
 protected:
  InspectorRun Mfg(const std::string& arguments) const { return Run("mfg " + arguments); }

  void Corrupt(const char* copy) const {
    std::string content = ReadFile(copy);
    content[100] ^= 0x01;
    WriteFile(copy, content);
  }
};

TEST_F(MfgCommandTest, TheSampleImageHoldsTwoValidCopies) {
  EXPECT_TRUE(IsValidCopy(ReadFile("/dev/mtd3")));
  EXPECT_EQ(ReadFile("/dev/mtd3"), ReadFile("/dev/mtd4"));
}

TEST_F(MfgCommandTest, ShowPrintsEveryFieldAndBothCopies) {
  InspectorRun run = Mfg("show");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  for (const char* line : {
           "copy 0 (MfgData0, /dev/mtd3): checksum valid\n",
           "copy 1 (MfgData1, /dev/mtd4): checksum valid\n",
           "loaded from: copy 0\n",
           "serial number (stored)         \"3F2A0000000052C81D04\"\n",
           "serial number (device)         3F2A0000000552C81D04\n",
           "serial number valid            yes\n",
           "barcode                        \"QV3F2A52C81D04-TSL-2026-0001\"\n",
           "locale                         \"en-us\"\n",
           "SKU                            \"TSL-100-US1\"\n",
           "soft board id                  5\n",
           "manufacturing data version     3\n",
           "MAC address                    00:1b:4f:3f:2a:c8\n",
           "IPv6 address                   fe80:0:0:0:21b:4fff:fe3f:2ac8\n",
           "touch-screen calibration       -66 8734 -1946216 5754 -22 -1330780 65536\n",
           "backlight calibration          180\n",
           "ADC calibration                512 3890\n",
           "audio gain                     12\n",
           "touch-screen pressure data     1415161718",
           "accelerometer bias             12 -7 1024\n",
           "second backlight calibration   10 40 90 160 255\n",
           "accelerometer calibration      1023 -4 9 2 1019 -11 6 -3 1031 0\n",
       }) {
    EXPECT_TRUE(Contains(run.out, line)) << line;
  }
}

TEST_F(MfgCommandTest, ShowSaysWhichCopyWasLoaded) {
  Corrupt("/dev/mtd3");
  InspectorRun run = Mfg("show");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_TRUE(Contains(run.out, "copy 0 (MfgData0, /dev/mtd3): checksum invalid\n"));
  EXPECT_TRUE(Contains(run.out, "loaded from: copy 1\n"));
  Corrupt("/dev/mtd4");
  run = Mfg("show");
  EXPECT_TRUE(Contains(run.out, "loaded from: none valid: an all-zero record\n"));
  EXPECT_TRUE(Contains(run.out, "SKU                            \"\"\n"));
}

TEST_F(MfgCommandTest, ShowEscapesUnprintableBytes) {
  std::string copy = ReadFile("/dev/mtd3");
  copy.replace(288, 11, std::string("A\"\\\x01\0B\0\0\0\0\0", 11));
  CMfgData::UpdateCheckSum(reinterpret_cast<unsigned char*>(&copy[0]));
  WriteFile("/dev/mtd3", copy);
  InspectorRun run = Mfg("show");
  EXPECT_TRUE(Contains(run.out, "SKU                            \"A\\\"\\\\\\x01\\x00B\"\n")) << run.out;
}

TEST_F(MfgCommandTest, ShowWithoutPartitionsIsNotFound) {
  fs::remove(Host("/proc/mtd"));
  InspectorRun run = Mfg("show");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "GetNorPartitionFilename filed opening /proc/mtd: No such file or directory\n"
            "CMfgData::Init: GetNorPartitionFilename failed\n"
            "vireline mfg show: cannot load the manufacturing record: partition not found (status 6)\n");
}

TEST_F(MfgCommandTest, ShowOfAnUnreadableCopy0LoadsCopy1LikeVerify) {
  WriteFile("/dev/mtd3", "short");
  InspectorRun run = Mfg("show");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err,
            "vireline mfg show: copy 0 of the manufacturing record, MfgData0 (/dev/mtd3), cannot be read: shorter "
            "than a record (5 of 4096 bytes); using copy 1\n");
  EXPECT_TRUE(Contains(run.out, "copy 0 (MfgData0, /dev/mtd3): unreadable\n"));
  EXPECT_TRUE(Contains(run.out, "loaded from: copy 1\n"));
  EXPECT_TRUE(Contains(run.out, "SKU                            \"TSL-100-US1\"\n"));
}

TEST_F(MfgCommandTest, ShowOfAMissingCopy0LoadsCopy1) {
  fs::remove(Host("/dev/mtd3"));
  InspectorRun run = Mfg("show");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err,
            "vireline mfg show: copy 0 of the manufacturing record, MfgData0 (/dev/mtd3), cannot be read: no such "
            "file; using copy 1\n");
  EXPECT_TRUE(Contains(run.out, "loaded from: copy 1\n"));
}

TEST_F(MfgCommandTest, ShowWithCopy0UnreadableAndCopy1InvalidNamesTheFileAndReason) {
  WriteFile("/dev/mtd3", "short");
  Corrupt("/dev/mtd4");
  InspectorRun run = Mfg("show");
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "vireline mfg show: cannot load the manufacturing record: MfgData0 (/dev/mtd3) cannot be read: shorter "
            "than a record (5 of 4096 bytes)\n");
}

TEST_F(MfgCommandTest, SetWithAnUnreadableCopy0RefusesToRewriteTheOnlyValidCopyFirst) {
  fs::remove(Host("/dev/mtd3"));
  std::string before = ReadFile("/dev/mtd4");
  InspectorRun run = Mfg("set sku ABC-123 --mfg-mode --trust-image");
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "vireline mfg set: copy 0 of the manufacturing record, MfgData0 (/dev/mtd3), cannot be read: no such "
            "file; using copy 1\n"
            "vireline mfg set: copy 0, MfgData0 (/dev/mtd3), cannot be read (no such file): writing would rewrite "
            "the only valid copy, MfgData1 (/dev/mtd4), first; --force writes anyway\n");
  EXPECT_EQ(ReadFile("/dev/mtd4"), before);
}

TEST_F(MfgCommandTest, SetWithAShortCopy0WritesBothCopiesWhenForced) {
  WriteFile("/dev/mtd3", "short");
  InspectorRun run = Mfg("set sku ABC-123 --mfg-mode --trust-image --force");
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.out, "sku set; both copies written and verified\n");
  for (const char* copy : {"/dev/mtd3", "/dev/mtd4"}) {
    std::string content = ReadFile(copy);
    EXPECT_TRUE(IsValidCopy(content)) << copy;
    EXPECT_EQ(content.substr(288, 11), std::string("ABC-123\0\0\0\0", 11)) << copy;
    EXPECT_EQ(content.substr(104, 8), std::string("en-us\0\0\0", 8)) << copy;
  }
}

TEST_F(MfgCommandTest, SetWithNoValidCopyRefusesAndWritesNothing) {
  Corrupt("/dev/mtd3");
  Corrupt("/dev/mtd4");
  std::string first = ReadFile("/dev/mtd3"), second = ReadFile("/dev/mtd4");
  InspectorRun run = Mfg("set sku TSL-100-UK1 --mfg-mode --trust-image");
  EXPECT_EQ(run.exitStatus, 4);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "vireline mfg set: no valid copy of the manufacturing record in MfgData0 (/dev/mtd3) or MfgData1 "
            "(/dev/mtd4): writing would replace both with a record of zeros; --force writes anyway\n");
  EXPECT_EQ(ReadFile("/dev/mtd3"), first);
  EXPECT_EQ(ReadFile("/dev/mtd4"), second);
}

TEST_F(MfgCommandTest, SetWithNoValidCopyWritesWhenForced) {
  Corrupt("/dev/mtd3");
  Corrupt("/dev/mtd4");
  InspectorRun run = Mfg("set sku TSL-100-UK1 --mfg-mode --trust-image --force");
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  for (const char* copy : {"/dev/mtd3", "/dev/mtd4"}) {
    std::string content = ReadFile(copy);
    EXPECT_TRUE(IsValidCopy(content)) << copy;
    EXPECT_EQ(content.substr(288, 11), "TSL-100-UK1") << copy;
  }
}

TEST_F(MfgCommandTest, SetRefusesAPartitionTableNamingOneDeviceForBothCopies) {
  WriteFile("/proc/mtd", "dev:    size   erasesize  name\nmtd3: 00001000 00001000 \"MfgData0\"\n"
                         "mtd3: 00001000 00001000 \"MfgData1\"\n");
  std::string before = ReadFile("/dev/mtd3");
  InspectorRun run = Mfg("set sku ABC-123 --mfg-mode --trust-image");
  EXPECT_EQ(run.exitStatus, 4);
  EXPECT_EQ(run.err,
            "vireline mfg set: /proc/mtd names one device, /dev/mtd3, for both MfgData0 and MfgData1; writing it "
            "twice would leave a single copy\n");
  EXPECT_EQ(ReadFile("/dev/mtd3"), before);
}

TEST_F(MfgCommandTest, SetSerialRejectsTextThatIsNotHexadecimal) {
  std::string before = ReadFile("/dev/mtd3");
  InspectorRun run = Mfg("set serial 12G4 --mfg-mode --trust-image");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.err, "vireline mfg set: serial takes hexadecimal digits only (0-9, a-f, A-F)\n");
  EXPECT_EQ(ReadFile("/dev/mtd3"), before);
}

TEST_F(MfgCommandTest, SetOnAnImageNeedsTrustBeforeRunningItsModeScript) {
  WriteFile("/usr/bin/mfgmode.sh", "#!/bin/sh\ntouch \"$0.ran\"\n");
  fs::permissions(Host("/usr/bin/mfgmode.sh"), fs::perms::owner_all);
  std::string before = ReadFile("/dev/mtd3");
  InspectorRun run = Mfg("set sku ABC-123 --mfg-mode");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.err,
            "vireline mfg set: --mfg-mode runs the image's own /usr/bin/mfgmode.sh as you; add --trust-image only "
            "for an image from a source you trust\n");
  EXPECT_FALSE(Exists("/usr/bin/mfgmode.sh.ran"));
  EXPECT_EQ(ReadFile("/dev/mtd3"), before);
}

TEST_F(MfgCommandTest, HelpSaysWhyTheImageMustBeTrusted) {
  InspectorRun run = Mfg("set --help");
  EXPECT_TRUE(Contains(run.out, "--trust-image")) << run.out;
  EXPECT_TRUE(Contains(run.out, "an image from elsewhere could run anything")) << run.out;
}

TEST_F(MfgCommandTest, VerifySucceedsWhileOneCopyIsValid) {
  Corrupt("/dev/mtd3");
  InspectorRun run = Mfg("verify");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out,
            "copy 0 (MfgData0, /dev/mtd3): checksum invalid\n"
            "copy 1 (MfgData1, /dev/mtd4): checksum valid\n");
}

TEST_F(MfgCommandTest, VerifyChecksCopy1EvenWhenCopy0IsUnreadable) {
  WriteFile("/dev/mtd3", "short");
  InspectorRun run = Mfg("verify");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out,
            "copy 0 (MfgData0, /dev/mtd3): unreadable\n"
            "copy 1 (MfgData1, /dev/mtd4): checksum valid\n");
}

TEST_F(MfgCommandTest, VerifyFailsWhenNoCopyIsValid) {
  Corrupt("/dev/mtd3");
  Corrupt("/dev/mtd4");
  InspectorRun run = Mfg("verify");
  EXPECT_EQ(run.exitStatus, 4);
  EXPECT_EQ(run.err, "vireline mfg verify: no copy of the manufacturing record is valid\n");
}

TEST_F(MfgCommandTest, VerifyWithoutPartitionsIsNotFound) {
  WriteFile("/proc/mtd", "dev:    size   erasesize  name\n");
  InspectorRun run = Mfg("verify");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_TRUE(Contains(run.err, "GetNorPartitionFilename: Could not find MfgData0 in /proc/mtd\n"));
}

TEST_F(MfgCommandTest, SetWritesBothCopies) {
  std::string before = ReadFile("/dev/mtd3");
  InspectorRun run = Mfg("set sku ABC-123 --mfg-mode --trust-image");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "sku set; both copies written and verified\n");
  for (const char* copy : {"/dev/mtd3", "/dev/mtd4"}) {
    std::string content = ReadFile(copy);
    EXPECT_TRUE(IsValidCopy(content)) << copy;
    EXPECT_EQ(content.substr(288, 11), std::string("ABC-123\0\0\0\0", 11)) << copy;
    EXPECT_EQ(content.substr(299, 4092 - 299), before.substr(299, 4092 - 299)) << copy;
  }
}

TEST_F(MfgCommandTest, SetSerialAndLocale) {
  EXPECT_EQ(Mfg("set serial 1234abcd5678 --mfg-mode --trust-image").exitStatus, 0);
  EXPECT_EQ(Mfg("set locale fr-fr --mfg-mode --trust-image").exitStatus, 0);
  std::string content = ReadFile("/dev/mtd4");
  EXPECT_EQ(content.substr(44, 28), std::string("1234abcd5678        \0\0\0\0\0\0\0\0", 28));  // not yet valid
  EXPECT_EQ(content.substr(104, 8), std::string("fr-fr\0\0\0", 8));
  EXPECT_TRUE(Contains(Mfg("show").out, "serial number (device)         12340000000500000000\n"));
}

TEST_F(MfgCommandTest, SetNeedsManufacturingMode) {
  std::string before = ReadFile("/dev/mtd3");
  InspectorRun run = Mfg("set sku ABC-123");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.err, "vireline mfg set: writing the manufacturing record needs --mfg-mode\n");
  EXPECT_EQ(ReadFile("/dev/mtd3"), before);
}

TEST_F(MfgCommandTest, SetRejectsUnknownFieldsAndLongValues) {
  InspectorRun run = Mfg("set colour red --mfg-mode --trust-image");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.err, "vireline mfg set: no settable field 'colour' (serial, locale, sku)\n");
  run = Mfg("set locale en-us-extra --mfg-mode --trust-image");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.err, "vireline mfg set: locale holds at most 8 characters\n");
  EXPECT_EQ(Mfg("set serial 012345678901234567890 --mfg-mode --trust-image").exitStatus, 2);
  EXPECT_EQ(Mfg("set sku").exitStatus, 2);
}

TEST_F(MfgCommandTest, SetFailsWhenManufacturingModeCannotBeEntered) {
  WriteFile("/usr/bin/mfgmode.sh", "#!/bin/sh\nexit 1\n");
  fs::permissions(Host("/usr/bin/mfgmode.sh"), fs::perms::owner_all);
  std::string before = ReadFile("/dev/mtd3");
  InspectorRun run = Mfg("set sku ABC-123 --mfg-mode --trust-image");
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_TRUE(Contains(run.err, "can't exec /usr/bin/mfgmode.sh: "));
  EXPECT_TRUE(Contains(run.err, "vireline mfg set: cannot enter manufacturing mode: manufacturing mode could not be "
                                "entered (status 15)\n"));
  EXPECT_EQ(ReadFile("/dev/mtd3"), before);
}

TEST_F(MfgCommandTest, SetReportsAFailedWrite) {
  fs::remove(Host("/dev/mtd4"));
  MakeDirs("/dev/mtd4");  // cannot be opened for writing, even by root
  std::string before = ReadFile("/dev/mtd3");
  InspectorRun run = Mfg("set sku ABC-123 --mfg-mode --trust-image");
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.err, "vireline mfg set: cannot write the manufacturing record: write failed on partition 1 (status 12)\n");
  EXPECT_EQ(ReadFile("/dev/mtd3"), before);  // the loaded copy is written only after the other
}
