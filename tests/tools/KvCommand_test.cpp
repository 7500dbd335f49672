#include <gtest/gtest.h>

#include <string>

#include "tools/SampleImageTest.h"

class KvCommandTest : public SampleImageTest {
 protected:
  InspectorRun Kv(const std::string& arguments) const { return Run("kv " + arguments); }
};

TEST_F(KvCommandTest, PrintsEntriesAsTheLibraryReadsThem) {
  InspectorRun run = Kv("/QV/Bulk/ProgramFiles/MathMountain/meta.inf");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.err, "");
  // The byte-order mark and the CR LF line ends are gone; quotes are removed and remembered.
  EXPECT_EQ(run.out,
            "MetaVersion=1.0\nDevice=KastrelVoyant\nPackageID=APP-MATH-0207\nProductID=0x00010207\n"
            "Name=Math Mountain  [quoted]\nShortName=Math\nType=Application\nVersion=3.0.2\n"
            "Publisher=Vireline Learning\nHidden=0\nProfileAccess=0,1\n"
            "PathToUploadContent=Bulk/Data/Uploads/MathMountain\nOptionalUpload=0x00000001\n");
}

TEST_F(KvCommandTest, ListsAndDuplicatesAreMarked) {
  WriteFile("/QV/Base/odd.cfg", "Depends=\"a\",\"b\"\nk = first\nk=second\n");
  InspectorRun run = Kv("/QV/Base/odd.cfg");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out,
            "Depends=a,b  [quoted list]\nk=first\nk=second  [duplicate: lookups find an earlier entry]\n");
}

TEST_F(KvCommandTest, UnprintableBytesAreEscaped) {
  WriteFile("/QV/Base/odd.cfg", std::string("\xFF\x01k=caf\xC3\xA9 \\ \xC3\x28\n", 16));
  InspectorRun run = Kv("/QV/Base/odd.cfg");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "\\xFF\\x01k=caf\xC3\xA9 \\\\ \\xC3(\n");
}

TEST_F(KvCommandTest, OneKey) {
  InspectorRun run = Kv("/QV/Bulk/settings.cfg Locale");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "en-us\n");
}

TEST_F(KvCommandTest, OneKeyAsJson) {
  InspectorRun run = Kv("/QV/Bulk/settings.cfg Contrast --json");
  EXPECT_EQ(run.exitStatus, 0);
  Json::Value json = ParseJson(run.out);
  EXPECT_EQ(json["file"].asString(), "/QV/Bulk/settings.cfg");
  EXPECT_EQ(json["key"].asString(), "Contrast");
  EXPECT_EQ(json["value"].asString(), "0x00000032");
  EXPECT_EQ(json["number"].asUInt(), 0x32u);
  EXPECT_FALSE(json["quoted"].asBool());
  EXPECT_FALSE(json["quotedList"].asBool());
  Json::Value list = ParseJson(Kv("/QV/Bulk/settings.cfg DateAndTime --json").out);
  EXPECT_EQ(list["value"].asString(), "1763700000,-18000");
  EXPECT_EQ(list["number"].asUInt(), 0xFFFFFFFFu);  // not a number
}

TEST_F(KvCommandTest, AllEntriesAsJson) {
  InspectorRun run = Kv("--json /QV/Bulk/ProgramFiles/ZooKeeper/meta.inf");
  EXPECT_EQ(run.exitStatus, 0);
  Json::Value json = ParseJson(run.out);
  EXPECT_EQ(json["file"].asString(), "/QV/Bulk/ProgramFiles/ZooKeeper/meta.inf");
  ASSERT_EQ(json["entries"].size(), 18u);
  const Json::Value& name = json["entries"][4];
  EXPECT_EQ(name["key"].asString(), "Name");
  EXPECT_EQ(name["value"].asString(), "Zoo Keeper");
  EXPECT_TRUE(name["quoted"].asBool());
  const Json::Value& depends = json["entries"][14];
  EXPECT_EQ(depends["key"].asString(), "Depends");
  EXPECT_EQ(depends["value"].asString(), "SYS-TSL-0001,LANG-EN-US");
  EXPECT_TRUE(depends["quotedList"].asBool());
  EXPECT_FALSE(depends["duplicate"].asBool());
}

TEST_F(KvCommandTest, EmptyFilePrintsNothing) {
  WriteFile("/QV/Base/empty.cfg", "\xEF\xBB\xBF");
  InspectorRun run = Kv("/QV/Base/empty.cfg");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "");
  Json::Value json = ParseJson(Kv("/QV/Base/empty.cfg --json").out);
  EXPECT_TRUE(json["entries"].isArray());
  EXPECT_EQ(json["entries"].size(), 0u);
}

TEST_F(KvCommandTest, MissingKeyIsNotFound) {
  InspectorRun run = Kv("/QV/Bulk/settings.cfg Serial");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "vireline kv: /QV/Bulk/settings.cfg: no key 'Serial'\n");
}

TEST_F(KvCommandTest, MissingFileIsNotFound) {
  InspectorRun run = Kv("/QV/Base/none.cfg");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.err, "vireline kv: /QV/Base/none.cfg: no such file\n");
}

TEST_F(KvCommandTest, FolderIsAnIoError) {
  InspectorRun run = Kv("/QV/Base");
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.err, "vireline kv: /QV/Base: not a regular file\n");
}

TEST_F(KvCommandTest, FileIsRequired) {
  InspectorRun run = Kv("");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_NE(run.err.find("FILE is required"), std::string::npos) << run.err;
}
