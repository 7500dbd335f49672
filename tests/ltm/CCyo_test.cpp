// Finding a player's CYO set, reading its manifest and keeping the player's progress.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <vireline/CSystemData.h>

#include "ltm/CyoTest.h"

using LTM::CCyo;

TEST_F(CyoTest, CurriculumTypeNames) {
  EXPECT_EQ(LTM::CyoType[0], "Spelling");
  EXPECT_EQ(LTM::CyoType[1], "LanguageArts");
  EXPECT_EQ(LTM::CyoType[2], "MathFacts");
  EXPECT_EQ(LTM::CyoType[3], "MathPlus");
  EXPECT_EQ(LTM::kCyoTypeCount, 4u);
  EXPECT_EQ(LTM::kCyoByName, 4u);
}

TEST_F(CyoTest, FindsTheSetOfTheCurrentPlayerByType) {
  WriteSpellingSet();
  CCyo cyo(LTM::kCyoSpelling);
  ASSERT_TRUE(cyo.IsLoaded());
  EXPECT_EQ(cyo.GetPath(), "/QV/Bulk/Downloads/Spelling/");
  EXPECT_EQ(cyo.GetID(), "SPELL-WEEK3");
  EXPECT_EQ(cyo.size(), 2u);
  EXPECT_EQ(cyo.GetCompletionParameters(), 3u);
  EXPECT_EQ(cyo.GetValue(0), "cat");
  EXPECT_EQ(cyo.GetValue(1), "dog");
  EXPECT_EQ(cyo.GetAudio(1), "/QV/Bulk/Downloads/Spelling/Audio/dog.wav");
  EXPECT_EQ(cyo.GetStatus(0), 0u);  // a fresh progress document holds no status yet
  EXPECT_EQ(DebugOutput(), NoFile(ProgressPath(1)));
}

TEST_F(CyoTest, FindsTheSetByName) {
  WriteSet("Facts", "MathFacts", "CYO-MATH-0001");
  CCyo cyo(0, Glib::ustring("MathFacts"));
  EXPECT_TRUE(cyo.IsLoaded());
  EXPECT_EQ(cyo.GetPath(), "/QV/Bulk/Downloads/Facts/");
  EXPECT_TRUE(Exists("/QV/Bulk/Data/Local/0/CYO-MATH-0001"));
}

TEST_F(CyoTest, ByNameForTheCurrentPlayer) {
  WriteSet("Mine", "MyOwnWords", "CYO-OWN-0001", "ProfileAccess=1\n");
  CCyo cyo(Glib::ustring("MyOwnWords"));
  EXPECT_TRUE(cyo.IsLoaded());
  EXPECT_EQ(cyo.GetValue(0), "cat");
}

TEST_F(CyoTest, TheCurriculumTypeIsComparedExactly) {
  WriteSet("Lower", "spelling", kSpellingId);
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_FALSE(cyo.IsLoaded());
  EXPECT_EQ(cyo.GetPath(), "");
}

TEST_F(CyoTest, DeprecatedConstructorWarnsThenSearches) {
  WriteSpellingSet();
  CCyo cyo(2, LTM::kCyoSpelling);
  EXPECT_TRUE(cyo.IsLoaded());
  EXPECT_EQ(DebugOutput(), Deprecated("LTM::CCyo::CCyo(tPlayerID, LTM::tCyoCurricType)") + NoFile(ProgressPath(2)));
}

TEST_F(CyoTest, ADoomedFolderEnumeratedFirstMakesEveryLaterSetUnreachable) {
  WriteSet("A_Old", "Spelling", "CYO-OLD-0001");
  WriteFile(std::string(kCyos) + "A_Old/doom", "");
  WriteSpellingSet();
  ListFoldersSorted();
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_FALSE(cyo.IsLoaded());
  EXPECT_EQ(cyo.size(), 0u);
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Local/1"));
}

TEST_F(CyoTest, ADoomedFolderEnumeratedLastIsOnlySkipped) {
  WriteSpellingSet();
  WriteSet("Z_Old", "Spelling", "CYO-OLD-0001");
  WriteFile(std::string(kCyos) + "Z_Old/doom", "");
  ListFoldersSorted();
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_TRUE(cyo.IsLoaded());
  EXPECT_EQ(cyo.GetPath(), "/QV/Bulk/Downloads/Spelling/");
}

TEST_F(CyoTest, AFolderWithoutMetaInfEndsTheSearch) {
  MakeDirs(std::string(kCyos) + "A_Partial");
  WriteSpellingSet();
  ListFoldersSorted();
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_FALSE(cyo.IsLoaded());
}

TEST_F(CyoTest, AnotherCurriculumOrAnInvalidPackageIsPassedOver) {
  WriteSet("A_Math", "MathFacts", "CYO-MATH-0001");
  WriteFile(std::string(kCyos) + "B_Broken/meta.inf", "CurriculumType=Spelling\nDeviceAccess=1\n");
  WriteSpellingSet();
  ListFoldersSorted();
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_EQ(cyo.GetPath(), "/QV/Bulk/Downloads/Spelling/");
}

TEST_F(CyoTest, APlayerNotInTheAccessListGetsNothing) {
  WriteSet("Spelling", "Spelling", kSpellingId, "ProfileAccess=0,2\n");
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_FALSE(cyo.IsLoaded());
  EXPECT_EQ(cyo.GetStatus(0), 2u);
  EXPECT_EQ(cyo.size(), 0u);
  EXPECT_EQ(cyo.GetID(), "");
  EXPECT_EQ(cyo.GetValue(0), "");
  EXPECT_EQ(cyo.GetAudio(0), "");
  EXPECT_EQ(cyo.GetCompletionParameters(), 0u);
  EXPECT_FALSE(Exists("/QV/Bulk/Data/Local/1"));
}

TEST_F(CyoTest, APlayerInTheAccessListGetsTheSet) {
  WriteSet("Spelling", "Spelling", kSpellingId, "ProfileAccess=0,2\n");
  CCyo cyo(2, Glib::ustring("Spelling"));
  EXPECT_TRUE(cyo.IsLoaded());
}

TEST_F(CyoTest, AnEmptyAccessListAdmitsNobody) {
  WriteSet("Spelling", "Spelling", kSpellingId, "DeviceAccess=0\n");
  for (int player = 0; player < 4; ++player) {
    CCyo cyo(player, Glib::ustring("Spelling"));
    EXPECT_FALSE(cyo.IsLoaded()) << player;
  }
}

TEST_F(CyoTest, DeviceAccessAdmitsEveryPlayer) {
  WriteSpellingSet();
  CCyo cyo(3, Glib::ustring("Spelling"));
  EXPECT_TRUE(cyo.IsLoaded());
}

TEST_F(CyoTest, NoCyoFolderFindsNothing) {
  CCyo cyo(LTM::kCyoMathPlus);
  EXPECT_FALSE(cyo.IsLoaded());
  EXPECT_EQ(cyo.GetPath(), "");
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CyoTest, ATypeWithoutANameFindsNothing) {
  WriteSet("Unnamed", "", kSpellingId);
  CCyo cyo(static_cast<LTM::tCyoCurricType>(9));
  EXPECT_FALSE(cyo.IsLoaded());
}

TEST_F(CyoTest, TheProgressFolderIsCreatedWhenTheSetIsFound) {
  WriteSpellingSet();
  {
    CCyo cyo(LTM::kCyoSpelling);
    EXPECT_TRUE(Exists("/QV/Bulk/Data/Local/1/CYO-SPELL-0001"));
    EXPECT_FALSE(Exists(ProgressPath(1)));
  }
  EXPECT_EQ(ReadFile(ProgressPath(1)), "{}\n\n");
}

TEST_F(CyoTest, SetStatusFiveOnAFreshDocumentCreatesSixEntries) {
  WriteSpellingSet();
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_FALSE(cyo.SetStatus(5, 1));  // false: saved
  EXPECT_EQ(ReadFile(ProgressPath(1)), "{\"ItemList\":[null,null,null,null,null,{\"Status\":1}]}\n\n");
  EXPECT_EQ(cyo.GetStatus(5), 1u);
  EXPECT_EQ(cyo.GetStatus(4), 0u);
}

TEST_F(CyoTest, SetStatusKeepsTheItemsOtherMembersAndIsSavedAgainOnDestruction) {
  WriteSpellingSet();
  WriteFile(ProgressPath(1), "{\"ItemList\":[{\"Status\":2,\"Tries\":4}],\"Extra\":\"kept\"}");
  {
    CCyo cyo(LTM::kCyoSpelling);
    EXPECT_EQ(cyo.GetStatus(0), 2u);
    EXPECT_FALSE(cyo.SetStatus(0, 7));
    EXPECT_EQ(ReadFile(ProgressPath(1)), "{\"Extra\":\"kept\",\"ItemList\":[{\"Status\":7,\"Tries\":4}]}\n\n");
    WriteFile(ProgressPath(1), "changed behind its back");
  }
  EXPECT_EQ(ReadFile(ProgressPath(1)), "{\"Extra\":\"kept\",\"ItemList\":[{\"Status\":7,\"Tries\":4}]}\n\n");
}

TEST_F(CyoTest, StatusNumbersAreStoredUnchanged) {
  WriteSpellingSet();
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_FALSE(cyo.SetStatus(0, 0xFFFFFFFFu));
  EXPECT_EQ(cyo.GetStatus(0), 0xFFFFFFFFu);
  EXPECT_EQ(ReadFile(ProgressPath(1)), "{\"ItemList\":[{\"Status\":4294967295}]}\n\n");
}

TEST_F(CyoTest, ReadersAddNothingThatTheDestructorWouldSave) {
  WriteSpellingSet();
  const std::string progress = "{\"ItemList\":[{\"Status\":3}]}\n\n";
  WriteFile(ProgressPath(1), progress);
  {
    CCyo cyo(LTM::kCyoSpelling);
    EXPECT_EQ(cyo.GetStatus(9), 0u);
    EXPECT_EQ(cyo.GetValue(9), "");
    EXPECT_EQ(cyo.GetAudio(9), "/QV/Bulk/Downloads/Spelling/");
    EXPECT_EQ(cyo.size(), 2u);
  }
  EXPECT_EQ(ReadFile(ProgressPath(1)), progress);
  EXPECT_EQ(ReadFile(std::string(kCyos) + "Spelling/manifest.json"), kManifest);
}

TEST_F(CyoTest, TheManifestIsNeverWritten) {
  WriteSpellingSet();
  {
    CCyo cyo(LTM::kCyoSpelling);
    cyo.SetStatus(1, 1);
  }
  EXPECT_EQ(ReadFile(std::string(kCyos) + "Spelling/manifest.json"), kManifest);
}

TEST_F(CyoTest, EachPlayerKeepsTheirOwnProgress) {
  WriteSpellingSet();
  {
    CCyo first(0, Glib::ustring("Spelling"));
    first.SetStatus(0, 1);
  }
  {
    CCyo second(2, Glib::ustring("Spelling"));
    EXPECT_EQ(second.GetStatus(0), 0u);
  }
  EXPECT_EQ(ReadFile(ProgressPath(0)), "{\"ItemList\":[{\"Status\":1}]}\n\n");
  EXPECT_EQ(ReadFile(ProgressPath(2)), "{}\n\n");
}

TEST_F(CyoTest, SetStatusWithoutASetChangesNothing) {
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_FALSE(cyo.SetStatus(0, 1));
  EXPECT_FALSE(Exists("/QV/Bulk/Data"));
}

TEST_F(CyoTest, GetItemPastTheLastItemIsNullAndStillWarns) {
  WriteSpellingSet();
  CCyo cyo(LTM::kCyoSpelling);
  CaptureDebugOutput();
  EXPECT_EQ(cyo.GetItem(cyo.size()), nullptr);
  EXPECT_EQ(DebugOutput(), "WARNING:  Use of deprecated function:  CCyo::GetItem(...)\n");
}

TEST_F(CyoTest, GetItemWithoutASetIsNullAndWarns) {
  CCyo cyo(LTM::kCyoSpelling);
  EXPECT_EQ(cyo.GetItem(0), nullptr);
  EXPECT_EQ(DebugOutput(), "WARNING:  Use of deprecated function:  CCyo::GetItem(...)\n");
}

TEST_F(CyoTest, TheSearchContextWithoutAnObjectGoesOn) {
  WriteSpellingSet();
  LTM::tCyoSearch search{nullptr, "Spelling"};
  EXPECT_EQ(LTM::EnumCyoFolder("/QV/Bulk/Downloads/Spelling", &search), 1);
  EXPECT_EQ(LTM::EnumCyoFolder("/QV/Bulk/Downloads/Spelling", nullptr), 1);
  EXPECT_EQ(LTM::EnumCyoFolder("/QV/Bulk/Downloads/Missing", &search), 0);
}

TEST_F(CyoTest, AFolderPathWithItsSlashKeepsOneSlash) {
  WriteSpellingSet();
  CCyo cyo(0, Glib::ustring("Nothing"));
  LTM::tCyoSearch search{&cyo, "Spelling"};
  EXPECT_EQ(LTM::EnumCyoFolder("/QV/Bulk/Downloads/Spelling/", &search), 0);
  EXPECT_EQ(cyo.GetPath(), "/QV/Bulk/Downloads/Spelling/");
  EXPECT_TRUE(cyo.IsLoaded());
}
