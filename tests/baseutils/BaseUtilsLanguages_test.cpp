// The language-pack list of BaseUtils.
#include <vireline/BaseUtils.h>
#include <vireline/Platform.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DeviceRootTest.h"
#include "baseutils/UpperLayers.h"

namespace {

std::string SelectLanguage(const std::string& locale, const std::string& text) {
  return "{\"LanguageSelectionText\":\"" + text +
         "\",\"LanguageSelectionAudio\":[\"a1.ogg\",\"a2.ogg\"],"
         "\"LanguageSettingText\":\"set " + text + "\",\"LanguageSettingAudio\":[\"s1.ogg\"],"
         "\"SaveText\":\"save " + text + "\",\"Flags\":[{\"LocaleCode\":\"" + locale +
         "\",\"Art\":\"flag.png\",\"Audio\":\"flag.ogg\"}]}";
}

std::vector<std::string> Texts(const std::vector<LanguageInfo>& list) {
  std::vector<std::string> texts;
  for (const LanguageInfo& info : list) texts.push_back(info.selectionText.raw());
  return texts;
}

}  // namespace

class BaseUtilsLanguagesTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    mBase = vireline::upper::BasePath().raw();
    mLanguage = vireline::upper::LocaleCode().raw().substr(0, 2);
  }

  void AddPack(const std::string& folder, const std::string& document) {
    WriteFile(mBase + folder + "/Data/SelectLanguage.json", document);
  }

  // Pack folders in the order the file system lists them.
  std::vector<std::string> ListingOrder() {
    std::vector<std::string> names;
    for (const CPath& path : PlatformKernel::GetFilesInDirectory(mBase)) {
      std::string name = path.raw().substr(path.raw().rfind('/') + 1);
      if (PlatformKernel::IsDirectory(path)) names.push_back(name);
    }
    return names;
  }

  std::string mBase;
  std::string mLanguage;
};

TEST_F(BaseUtilsLanguagesTest, EveryFieldIsReadFromTheDocument) {
  AddPack("LanguagePackXX", SelectLanguage("xx-yy", "Xx"));
  std::vector<LanguageInfo> list = BaseUtils::Instance()->GetLanguages();
  ASSERT_EQ(list.size(), 1u);
  const LanguageInfo& info = list[0];
  EXPECT_EQ(info.selectionText, "Xx");
  EXPECT_EQ(info.selectionAudio, (std::vector<CString>{"a1.ogg", "a2.ogg"}));
  EXPECT_EQ(info.settingText, "set Xx");
  EXPECT_EQ(info.settingAudio, std::vector<CString>{"s1.ogg"});
  EXPECT_EQ(info.saveText, "save Xx");
  ASSERT_EQ(info.flags.size(), 1u);
  EXPECT_EQ(info.flags[0].localeCode, "xx-yy");
  EXPECT_EQ(info.flags[0].art, "flag.png");
  EXPECT_EQ(info.flags[0].audio, "flag.ogg");
}

TEST_F(BaseUtilsLanguagesTest, MissingMembersReadAsEmpty) {
  AddPack("LanguagePackXX", "{}");
  std::vector<LanguageInfo> list = BaseUtils::Instance()->GetLanguages();
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list[0].selectionText, "");
  EXPECT_TRUE(list[0].selectionAudio.empty());
  EXPECT_TRUE(list[0].flags.empty());
}

TEST_F(BaseUtilsLanguagesTest, TheDeviceLocalesPackComesFirstAndTheDisplacedPackMovesToTheEnd) {
  AddPack("PackA", SelectLanguage("xa-aa", "A"));
  AddPack("PackB", SelectLanguage("xb-bb", "B"));
  AddPack("PackC", SelectLanguage(mLanguage + "-zz", "C"));
  AddPack("PackD", SelectLanguage("xd-dd", "D"));
  std::vector<std::string> expected;
  for (const std::string& name : ListingOrder()) {
    std::string text = name.substr(4);
    if (text == "C" && !expected.empty()) {
      expected.push_back(expected.front());
      expected.front() = "C";
    } else {
      expected.push_back(text);
    }
  }
  EXPECT_EQ(Texts(BaseUtils::Instance()->GetLanguages()), expected);
  EXPECT_TRUE(gFoundFirstLanguage);
  EXPECT_EQ(gFirstLanguage, mLanguage);
}

TEST_F(BaseUtilsLanguagesTest, OnlyTheFirstMatchingPackIsMovedToTheFront) {
  AddPack("Pack1", SelectLanguage(mLanguage + "-aa", "1"));
  AddPack("Pack2", SelectLanguage(mLanguage + "-bb", "2"));
  std::vector<std::string> texts = Texts(BaseUtils::Instance()->GetLanguages());
  std::vector<std::string> order = ListingOrder();
  EXPECT_EQ(texts, (std::vector<std::string>{order[0].substr(4), order[1].substr(4)}));
}

TEST_F(BaseUtilsLanguagesTest, APackWithoutFlagsNeverMatchesTheLocale) {
  AddPack("PackNoFlags", "{\"LanguageSelectionText\":\"none\",\"Flags\":[]}");
  std::vector<LanguageInfo> list = BaseUtils::Instance()->GetLanguages();
  ASSERT_EQ(list.size(), 1u);
  EXPECT_FALSE(gFoundFirstLanguage);
}

TEST_F(BaseUtilsLanguagesTest, DoomedPacksAndPacksWithoutADocumentAreSkipped) {
  AddPack("PackDoomed", SelectLanguage("xx-xx", "doomed"));
  WriteFile(mBase + "PackDoomed/doom", "");
  MakeDirs(mBase + "PackEmpty/Data");
  AddPack("PackGood", SelectLanguage("xy-xy", "good"));
  EXPECT_EQ(Texts(BaseUtils::Instance()->GetLanguages()), std::vector<std::string>{"good"});
}

TEST_F(BaseUtilsLanguagesTest, APackWhoseDocumentDoesNotLoadIsSkipped) {
  AddPack("PackBroken", "{\"LanguageSelectionText\":");
  AddPack("PackBinary", std::string("\x00\xff\xfe", 3));
  EXPECT_TRUE(BaseUtils::Instance()->GetLanguages().empty());
}

TEST_F(BaseUtilsLanguagesTest, NoBaseFolderGivesAnEmptyList) {
  EXPECT_TRUE(BaseUtils::Instance()->GetLanguages().empty());
}
