#include <gtest/gtest.h>

#include "InspectorRunner.h"

namespace {

int Count(const std::string& text, const std::string& what) {
  int count = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
  return count;
}

}  // namespace

TEST(LayoutCommand, PrintsAllSixModels) {
  InspectorRun run = RunInspector("layout");
  EXPECT_EQ(run.exitStatus, 0);
  for (const char* record : {"(gKastrelCfg)", "(gVirelineCfg)", "(gScrivelCfg)", "(gTamselCfg)",
                             "(gPelloraVoyantCfg)", "(gKastrelDuoCfg)"}) {
    EXPECT_EQ(Count(run.out, record), 1) << record;
  }
  EXPECT_EQ(run.err, "");
}

TEST(LayoutCommand, OneModelByNameIgnoringCase) {
  InspectorRun run = RunInspector("layout --model pelloravoyant");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_NE(run.out.find("PelloraVoyant (gPelloraVoyantCfg)"), std::string::npos);
  EXPECT_NE(run.out.find("DiskImage              /QV/fuse"), std::string::npos);
  EXPECT_EQ(Count(run.out, "Cfg)"), 1);
}

TEST(LayoutCommand, ModelByDeviceType) {
  InspectorRun run = RunInspector("layout --model Zanto");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_NE(run.out.find("Avatar                 /Zanto/Data/Avatars"), std::string::npos);
  EXPECT_NE(run.out.find("play log 0             /Zanto/Data/0/profile.log"), std::string::npos);
}

TEST(LayoutCommand, UnknownModelIsNotFound) {
  InspectorRun run = RunInspector("layout --model Nothing");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "vireline layout: no model named 'Nothing'\n");
}

TEST(Inspector, MissingSubcommandIsAUsageError) {
  InspectorRun run = RunInspector("");
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_NE(run.err.find("vireline: "), std::string::npos);
}

TEST(Inspector, UnknownOptionIsAUsageError) {
  InspectorRun run = RunInspector("layout --bogus");
  EXPECT_EQ(run.exitStatus, 2);
}

TEST(Inspector, HelpListsTheSubcommands) {
  InspectorRun run = RunInspector("--help");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_NE(run.out.find("layout"), std::string::npos);
  EXPECT_NE(run.out.find("--root"), std::string::npos);
}

TEST(Inspector, EachSubcommandHasHelp) {
  InspectorRun run = RunInspector("layout --help");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_NE(run.out.find("--model"), std::string::npos);
}
