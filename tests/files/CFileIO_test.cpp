#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <vireline/CFileIO.h>
#include <vireline/COrvoInterface.h>

#include "DeviceRootTest.h"
#include "files/KeyValueTest.h"

namespace {

const char kPath[] = "/QV/Base/test.cfg";
const U32 kMissing = 0xFFFFFFFFu;

// Exposes the protected helpers.
class InspectableFileIO : public CFileIO {
 public:
  using CFileIO::AddListQuotes;
  using CFileIO::AddQuotes;
  using CFileIO::CharCount;
  using CFileIO::Split;
  using CFileIO::StripQuotes;
  using CFileIO::StripWhitespace;
  bool IsDirty() const { return mDirty != 0; }
};

// Counts the Write calls that setters make through the virtual slot.
class CountingFileIO : public CFileIO {
 public:
  bool Write() override {
    ++writes;
    return CFileIO::Write();
  }
  int writes = 0;
};

}  // namespace

class CFileIOTest : public DeviceRootTest {
 protected:
  // Reads `content` as the file at kPath.
  void Load(CFileIO& file, const std::string& content) {
    WriteFile(kPath, content);
    ASSERT_TRUE(file.Open(kPath));
  }

  // What `content` becomes after reading it, changing nothing visible, and writing it back.
  std::string RoundTrip(const std::string& content) {
    CFileIO file;
    Load(file, content);
    char** keys = nullptr;
    if (file.Keys(keys) > 0) {
      std::string key = keys[0];
      COrvoInterface::Free(keys);
      std::string value = file.GetStr(key.c_str()) ? file.GetStr(key.c_str()) : "";
      EXPECT_TRUE(file.SetStr(key.c_str(), value.c_str()));  // marks the table changed
    }
    EXPECT_TRUE(file.Write());
    return ReadFile(kPath);
  }
};

// ---- Reading ----

TEST_F(CFileIOTest, ReadsKeysAndValuesInFileOrder) {
  CFileIO file;
  Load(file, "Name=Ann\nID=0x00000002\nLocale=en-us\n");
  EXPECT_EQ(EntriesOf(file),
            (std::vector<Entry>{Plain("Name", "Ann"), Plain("ID", "0x00000002"), Plain("Locale", "en-us")}));
  EXPECT_EQ(KeysOf(file), (std::vector<std::string>{"Name", "ID", "Locale"}));
  EXPECT_STREQ(file.GetStr("Locale"), "en-us");
  EXPECT_STREQ(file.GetPath(), kPath);
}

TEST_F(CFileIOTest, ByteOrderMarkReadsTheSameAsWithout) {
  CFileIO withMark, without;
  WriteFile("/QV/a.cfg", "\xEF\xBB\xBFkey=value\nb=c\n");
  WriteFile("/QV/b.cfg", "key=value\nb=c\n");
  ASSERT_TRUE(withMark.Open("/QV/a.cfg"));
  ASSERT_TRUE(without.Open("/QV/b.cfg"));
  EXPECT_EQ(EntriesOf(withMark), EntriesOf(without));
  EXPECT_STREQ(withMark.GetStr("key"), "value");
}

TEST_F(CFileIOTest, ByteOrderMarkIsNotWrittenBack) {
  CFileIO file;
  Load(file, "\xEF\xBB\xBFkey=value\n");
  ASSERT_TRUE(file.SetStr("other", "1"));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "key=value\nother=1\n");
}

TEST_F(CFileIOTest, WhitespaceAroundKeyAndValueIsStripped) {
  CFileIO file;
  Load(file, "key = value\n\t spaced\tkey\t =  inner  words \t\r\n");
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Plain("key", "value"), Plain("spaced\tkey", "inner  words")}));
}

TEST_F(CFileIOTest, ValueIsEverythingAfterTheFirstEqualsSign) {
  CFileIO file;
  Load(file, "a=b=c\n=only value\nempty=\n");
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Plain("a", "b=c"), Plain("", "only value"), Plain("empty", "")}));
  EXPECT_STREQ(file.GetStr("empty"), "");
}

TEST_F(CFileIOTest, LinesWithoutEqualsSignAreSkipped) {
  CFileIO file;
  Load(file, "# x\njust text\n#commented=kept\n\n\nk=v\n");
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Plain("#commented", "kept"), Plain("k", "v")}));
}

TEST_F(CFileIOTest, AnyLineEndWorks) {
  CFileIO unix, dos, mac, none;
  WriteFile("/QV/unix", "a=1\nb=2\n");
  WriteFile("/QV/dos", "a=1\r\nb=2\r\n");
  WriteFile("/QV/mac", "a=1\rb=2\r");
  WriteFile("/QV/none", "a=1\nb=2");
  ASSERT_TRUE(unix.Open("/QV/unix"));
  ASSERT_TRUE(dos.Open("/QV/dos"));
  ASSERT_TRUE(mac.Open("/QV/mac"));
  ASSERT_TRUE(none.Open("/QV/none"));
  std::vector<Entry> expected{Plain("a", "1"), Plain("b", "2")};
  EXPECT_EQ(EntriesOf(unix), expected);
  EXPECT_EQ(EntriesOf(dos), expected);
  EXPECT_EQ(EntriesOf(mac), expected);
  EXPECT_EQ(EntriesOf(none), expected);
}

TEST_F(CFileIOTest, LineOf300CharactersBecomesTwoLines) {
  CFileIO file;
  std::string line = "k=" + std::string(298, 'x');
  Load(file, line + "\nnext=1\n");
  // The first 255 bytes are one line; the remaining 45 hold no "=" and are skipped.
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Plain("k", std::string(253, 'x')), Plain("next", "1")}));
}

TEST_F(CFileIOTest, RemainderOfACutLineIsReadAsALine) {
  CFileIO file;
  Load(file, "k=" + std::string(253, 'v') + "tail=value\n");
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Plain("k", std::string(253, 'v')), Plain("tail", "value")}));
}

TEST_F(CFileIOTest, LineOfExactly255BytesIsOneLine) {
  CFileIO file;
  Load(file, "k=" + std::string(253, 'v') + "\nnext=1\n");
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Plain("k", std::string(253, 'v')), Plain("next", "1")}));
}

TEST_F(CFileIOTest, DuplicateKeysAreKeptAndTheFirstWins) {
  CFileIO file;
  Load(file, "k=first\nother=x\nk=second\n");
  EXPECT_EQ(KeysOf(file), (std::vector<std::string>{"k", "other", "k"}));
  EXPECT_STREQ(file.GetStr("k"), "first");
}

TEST_F(CFileIOTest, LookupIsCaseSensitive) {
  CFileIO file;
  Load(file, "Name=Ann\n");
  EXPECT_TRUE(file.HasKey("Name"));
  EXPECT_FALSE(file.HasKey("name"));
  EXPECT_EQ(file.GetStr("NAME"), nullptr);
  EXPECT_EQ(file.FindKey(nullptr), nullptr);
}

TEST_F(CFileIOTest, QuotedValuesAreStoredWithoutQuotesAndRemembered) {
  CFileIO file;
  Load(file,
       "one=\"x\"\n"
       "list=\"a\",\"b\"\n"
       "single=\"a,b\"\n"
       "plain=a,b\n"
       "unclosed=\"abc\n"
       "lone=\"\n"
       "empty=\"\"\n"
       "inner=a\"b\"\n");
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Quoted("one", "x"), ListQuoted("list", "a,b"),
                                                  Quoted("single", "a,b"), Plain("plain", "a,b"),
                                                  ListQuoted("unclosed", "abc"), ListQuoted("lone", ""),
                                                  Quoted("empty", ""), Plain("inner", "a\"b\"")}));
}

TEST_F(CFileIOTest, QuotedValueWithTrailingTextIsAList) {
  CFileIO file;
  Load(file, "k=\"a\" tail\n");
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{ListQuoted("k", "a tail")}));
}

TEST_F(CFileIOTest, OpenOfAMissingFileBindsThePath) {
  CFileIO file;
  EXPECT_FALSE(file.Open("/QV/Base/missing.cfg"));
  EXPECT_STREQ(file.GetPath(), "/QV/Base/missing.cfg");
  EXPECT_EQ(file.GetEntryCount(), 0u);
  ASSERT_TRUE(file.SetStr("k", "v"));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile("/QV/Base/missing.cfg"), "k=v\n");
}

TEST_F(CFileIOTest, OpenOfNullChangesNothing) {
  CFileIO file;
  Load(file, "k=v\n");
  ASSERT_TRUE(file.SetStr("new", "1"));
  EXPECT_FALSE(file.Open(nullptr));
  EXPECT_STREQ(file.GetPath(), kPath);
  EXPECT_EQ(KeysOf(file), (std::vector<std::string>{"k", "new"}));
}

TEST_F(CFileIOTest, OpenReplacesTheTable) {
  CFileIO file;
  Load(file, "k=v\n");
  WriteFile("/QV/other.cfg", "x=y\n");
  ASSERT_TRUE(file.Open("/QV/other.cfg"));
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Plain("x", "y")}));
}

TEST_F(CFileIOTest, OpenOfItsOwnPathRereadsTheFile) {
  CFileIO file;
  Load(file, "k=v\n");
  ASSERT_TRUE(file.SetStr("unsaved", "1"));
  ASSERT_TRUE(file.Open(file.GetPath()));
  EXPECT_STREQ(file.GetPath(), kPath);
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Plain("k", "v")}));
}

TEST_F(CFileIOTest, CloseForgetsTableAndPath) {
  CFileIO file;
  Load(file, "k=v\n");
  file.Close();
  EXPECT_EQ(file.GetPath(), nullptr);
  EXPECT_EQ(file.GetEntryCount(), 0u);
  EXPECT_TRUE(file.Write());  // nothing changed since
}

TEST_F(CFileIOTest, ClearKeepsThePath) {
  CFileIO file;
  Load(file, "k=v\n");
  file.Clear();
  EXPECT_STREQ(file.GetPath(), kPath);
  EXPECT_EQ(file.GetEntryCount(), 0u);
  EXPECT_FALSE(file.HasKey("k"));
}

TEST_F(CFileIOTest, KeysOfAnEmptyTableLeavesTheArgument) {
  CFileIO file;
  char* sentinel[1];
  char** keys = sentinel;
  EXPECT_EQ(file.Keys(keys), 0u);
  EXPECT_EQ(keys, sentinel);
}

TEST_F(CFileIOTest, KeysPointAtTheTablesOwnStrings) {
  CFileIO file;
  Load(file, "a=1\nb=2\n");
  char** keys = nullptr;
  ASSERT_EQ(file.Keys(keys), 2u);
  EXPECT_EQ(keys[0], file.FindKey("a")->key);
  EXPECT_EQ(keys[1], file.FindKey("b")->key);
  COrvoInterface::Free(keys);
}

// ---- Numbers ----

TEST_F(CFileIOTest, GetUIntReadsHexAndDecimal) {
  CFileIO file;
  Load(file,
       "hex=0x0000001F\nlowhex=0x1f\ndec=31\nupperX=0X1F\nbare=0x\nmixed=12a\nnegative=-1\n"
       "empty=\nmax=0xFFFFFFFF\nmaxdec=4294967295\nbighex=0x100000000\nbigdec=4294967296\n"
       "badhex=0x1g\nzero=0\nplus=+5\nlong=0x0000000000000001\n");
  EXPECT_EQ(file.GetUInt("hex"), 31u);
  EXPECT_EQ(file.GetUInt("lowhex"), 31u);
  EXPECT_EQ(file.GetUInt("dec"), 31u);
  EXPECT_EQ(file.GetUInt("upperX"), kMissing);
  EXPECT_EQ(file.GetUInt("bare"), kMissing);
  EXPECT_EQ(file.GetUInt("mixed"), kMissing);
  EXPECT_EQ(file.GetUInt("negative"), kMissing);
  EXPECT_EQ(file.GetUInt("empty"), 0u);
  EXPECT_EQ(file.GetUInt("max"), 0xFFFFFFFFu);
  EXPECT_EQ(file.GetUInt("maxdec"), 0xFFFFFFFFu);
  EXPECT_EQ(file.GetUInt("bighex"), kMissing);
  EXPECT_EQ(file.GetUInt("bigdec"), kMissing);
  EXPECT_EQ(file.GetUInt("badhex"), kMissing);
  EXPECT_EQ(file.GetUInt("zero"), 0u);
  EXPECT_EQ(file.GetUInt("plus"), kMissing);
  EXPECT_EQ(file.GetUInt("long"), 1u);
  EXPECT_EQ(file.GetUInt("absent"), kMissing);
}

TEST_F(CFileIOTest, SetUIntWritesEightUpperCaseHexDigits) {
  CFileIO file;
  file.Open(kPath);
  ASSERT_TRUE(file.SetUInt("k", 31));
  ASSERT_TRUE(file.SetUInt("max", 0xFFFFFFFFu));
  ASSERT_TRUE(file.SetUInt("zero", 0));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "k=0x0000001F\nmax=0xFFFFFFFF\nzero=0x00000000\n");
  EXPECT_EQ(file.GetUInt("k"), 31u);
}

TEST_F(CFileIOTest, UIntListIsWrittenInDecimalAndReadInHex) {
  CFileIO file;
  file.Open(kPath);
  const U32 values[] = {10, 20};
  ASSERT_TRUE(file.SetUIntList("k", values, 2));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "k=10,20\n");
  U32* list = nullptr;
  U32 count = file.GetUIntList("k", list);
  EXPECT_EQ(TakeUIntList(list, count), (std::vector<U32>{16, 32}));
}

TEST_F(CFileIOTest, UIntListItemsAreSignedDecimalInElevenBytes) {
  CFileIO file;
  file.Open(kPath);
  const U32 values[] = {0xFFFFFFFFu, 0x7FFFFFFFu, 0x80000000u, 0};
  ASSERT_TRUE(file.SetUIntList("k", values, 4));
  // "-2147483648" needs twelve bytes and is cut to its first ten characters.
  EXPECT_STREQ(file.GetStr("k"), "-1,2147483647,-214748364,0");
}

TEST_F(CFileIOTest, GetUIntListReadsEachItemInBaseSixteen) {
  CFileIO file;
  Load(file, "a=0x10,10\nspaced=1, 3\nbad=a,zz,5\ntrailing=1,\nneg=-1,-10\nbig=123456789\nlone=,\n");
  U32* list = nullptr;
  U32 count = file.GetUIntList("a", list);
  EXPECT_EQ(TakeUIntList(list, count), (std::vector<U32>{16, 16}));
  count = file.GetUIntList("spaced", list);
  EXPECT_EQ(TakeUIntList(list, count), (std::vector<U32>{1, 3}));
  count = file.GetUIntList("bad", list);
  EXPECT_EQ(TakeUIntList(list, count), (std::vector<U32>{10, 0, 5}));
  count = file.GetUIntList("trailing", list);
  EXPECT_EQ(TakeUIntList(list, count), (std::vector<U32>{1, 0}));
  count = file.GetUIntList("neg", list);
  EXPECT_EQ(TakeUIntList(list, count), (std::vector<U32>{0xFFFFFFFFu, 0xFFFFFFF0u}));
  count = file.GetUIntList("big", list);
  EXPECT_EQ(TakeUIntList(list, count), (std::vector<U32>{0xFFFFFFFFu}));
  count = file.GetUIntList("lone", list);
  EXPECT_EQ(TakeUIntList(list, count), (std::vector<U32>{0, 0}));
}

TEST_F(CFileIOTest, GetUIntListOfMissingAndEmptyValues) {
  CFileIO file;
  Load(file, "empty=\n");
  U32 sentinel[1];
  U32* list = sentinel;
  EXPECT_EQ(file.GetUIntList("absent", list), 0u);
  EXPECT_EQ(list, sentinel);
  EXPECT_EQ(file.GetUIntList("empty", list), 0u);
  EXPECT_EQ(list, nullptr);
}

TEST_F(CFileIOTest, SetUIntListRefusesNullValuesWithACount) {
  CFileIO file;
  Load(file, "k=1\n");
  EXPECT_FALSE(file.SetUIntList("k", nullptr, 2));
  EXPECT_STREQ(file.GetStr("k"), "1");
  EXPECT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "k=1\n");  // nothing changed, nothing written
}

TEST_F(CFileIOTest, SetUIntListOfNothingStoresNoValue) {
  CFileIO file;
  Load(file, "k=1\n");
  ASSERT_TRUE(file.SetUIntList("k", nullptr, 0));
  EXPECT_TRUE(file.HasKey("k"));
  EXPECT_EQ(file.GetStr("k"), nullptr);
  EXPECT_EQ(file.GetUInt("k"), 0u);
  U32* list = reinterpret_cast<U32*>(&file);
  EXPECT_EQ(file.GetUIntList("k", list), 0u);
  EXPECT_EQ(list, nullptr);
  char** strings = reinterpret_cast<char**>(&file);
  EXPECT_EQ(file.GetStrList("k", strings), 0u);
  EXPECT_EQ(strings, nullptr);
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "k=\n");
}

// ---- String lists ----

TEST_F(CFileIOTest, GetStrListSplitsAtCommas) {
  CFileIO file;
  Load(file, "list=a,b,c\nempty=\ngaps=a,,b,\nquoted=\"x\",\"y\"\n");
  char** list = nullptr;
  U32 count = file.GetStrList("list", list);
  EXPECT_EQ(TakeStrList(list, count), (std::vector<std::string>{"a", "b", "c"}));
  count = file.GetStrList("empty", list);
  EXPECT_EQ(TakeStrList(list, count), (std::vector<std::string>{""}));
  count = file.GetStrList("gaps", list);
  EXPECT_EQ(TakeStrList(list, count), (std::vector<std::string>{"a", "", "b", ""}));
  count = file.GetStrList("quoted", list);
  EXPECT_EQ(TakeStrList(list, count), (std::vector<std::string>{"x", "y"}));
  char* sentinel[1];
  list = sentinel;
  EXPECT_EQ(file.GetStrList("absent", list), 0u);
  EXPECT_EQ(list, sentinel);
}

TEST_F(CFileIOTest, GetStrListCopiesEveryItem) {
  CFileIO file;
  Load(file, "list=a,b\n");
  char** list = nullptr;
  ASSERT_EQ(file.GetStrList("list", list), 2u);
  list[0][0] = 'z';
  EXPECT_STREQ(file.GetStr("list"), "a,b");
  TakeStrList(list, 2);
}

TEST_F(CFileIOTest, SetStrListJoinsWithCommas) {
  CFileIO file;
  file.Open(kPath);
  const char* items[] = {"a", "b", nullptr, "c"};
  ASSERT_TRUE(file.SetStrList("k", items, 4));
  EXPECT_STREQ(file.GetStr("k"), "a,b,,c");
  const char* one[] = {"only"};
  ASSERT_TRUE(file.SetStrList("single", one, 1));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "k=a,b,,c\nsingle=only\n");
}

TEST_F(CFileIOTest, SetStrListRefusesNothing) {
  CFileIO file;
  Load(file, "k=1\n");
  const char* items[] = {"a"};
  EXPECT_FALSE(file.SetStrList("k", nullptr, 1));
  EXPECT_FALSE(file.SetStrList("k", items, 0));
  EXPECT_STREQ(file.GetStr("k"), "1");
}

TEST_F(CFileIOTest, SetStrListKeepsTheEntrysQuoting) {
  CFileIO file;
  Load(file, "q=\"x\"\nl=\"a\",\"b\"\np=x\n");
  const char* items[] = {"c", "d"};
  ASSERT_TRUE(file.SetStrList("q", items, 2));
  ASSERT_TRUE(file.SetStrList("l", items, 2));
  ASSERT_TRUE(file.SetStrList("p", items, 2));
  ASSERT_TRUE(file.SetStrList("new", items, 2));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "q=\"c,d\"\nl=\"c\",\"d\"\np=c,d\nnew=c,d\n");
}

// ---- Setting and writing ----

TEST_F(CFileIOTest, SetStrReplacesInPlaceAndAppendsNewKeys) {
  CFileIO file;
  Load(file, "a=1\nb=2\nc=3\n");
  ASSERT_TRUE(file.SetStr("b", "two"));
  ASSERT_TRUE(file.SetStr("d", "4"));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "a=1\nb=two\nc=3\nd=4\n");
}

TEST_F(CFileIOTest, SetStrKeepsTheEntrysQuoting) {
  CFileIO file;
  Load(file, "q=\"x\"\n");
  ASSERT_TRUE(file.SetStr("q", "y"));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "q=\"y\"\n");
}

TEST_F(CFileIOTest, SetStrOfItsOwnValueIsSafe) {
  CFileIO file;
  Load(file, "k=value\n");
  ASSERT_TRUE(file.SetStr("k", file.GetStr("k")));
  EXPECT_STREQ(file.GetStr("k"), "value");
}

TEST_F(CFileIOTest, SetStrOfNullKeyIsRefused) {
  CFileIO file;
  EXPECT_FALSE(file.SetStr(nullptr, "v"));
  EXPECT_FALSE(file.SetUInt(nullptr, 1));
  EXPECT_EQ(file.GetEntryCount(), 0u);
}

TEST_F(CFileIOTest, SetStrOfNullValueStoresNoValue) {
  CFileIO file;
  file.Open(kPath);
  ASSERT_TRUE(file.SetStr("k", nullptr));
  EXPECT_TRUE(file.HasKey("k"));
  EXPECT_EQ(file.GetStr("k"), nullptr);
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "k=\n");
}

TEST_F(CFileIOTest, QuotingRoundTrips) {
  EXPECT_EQ(RoundTrip("q=\"x\"\n"), "q=\"x\"\n");
  EXPECT_EQ(RoundTrip("l=\"a\",\"b\"\n"), "l=\"a\",\"b\"\n");
  EXPECT_EQ(RoundTrip("p=a,b\n"), "p=a,b\n");
  EXPECT_EQ(RoundTrip("s=\"a,b\"\n"), "s=\"a,b\"\n");
  EXPECT_EQ(RoundTrip("e=\"\"\n"), "e=\"\"\n");
  EXPECT_EQ(RoundTrip("g=\"a\",\"\",\"b\"\n"), "g=\"a\",\"\",\"b\"\n");
}

TEST_F(CFileIOTest, WritingNormalisesWhatReadingForgets) {
  EXPECT_EQ(RoundTrip("\xEF\xBB\xBF  a = 1 \r\n\r\n# note\nb=\"x\" tail\r"), "a=1\nb=\"x tail\"\n");
  EXPECT_EQ(RoundTrip("u=\"abc\n"), "u=\"abc\"\n");
}

TEST_F(CFileIOTest, WriteOfAnUnchangedTableDoesNotTouchTheFile) {
  CFileIO file;
  EXPECT_FALSE(file.Open(kPath));
  EXPECT_TRUE(file.Write());
  EXPECT_FALSE(Exists(kPath));
  WriteFile(kPath, "k =  v\n");
  ASSERT_TRUE(file.Open(kPath));
  EXPECT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "k =  v\n");
}

TEST_F(CFileIOTest, WriteCreatesMissingFolders) {
  CFileIO file;
  EXPECT_FALSE(file.Open("/QV/Bulk/Data/Local/0/profile.dsc"));
  ASSERT_TRUE(file.SetStr("Name", "Ann"));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile("/QV/Bulk/Data/Local/0/profile.dsc"), "Name=Ann\n");
  EXPECT_EQ(List("/QV/Bulk/Data/Local/0"), std::vector<std::string>{"profile.dsc"});
}

TEST_F(CFileIOTest, WriteWithoutAPathFails) {
  CaptureDebugOutput();
  CFileIO file;
  ASSERT_TRUE(file.SetStr("k", "v"));
  EXPECT_FALSE(file.Write());
  EXPECT_EQ(DebugOutput(), "CFileIO::Write() - failed opening (null) for writing.");
}

TEST_F(CFileIOTest, WriteOfAnEmptyTableMakesAnEmptyFile) {
  CFileIO file;
  Load(file, "k=v\n");
  ASSERT_TRUE(file.RmKey("k"));
  ASSERT_TRUE(file.Write());
  EXPECT_TRUE(Exists(kPath));
  EXPECT_EQ(ReadFile(kPath), "");
}

TEST_F(CFileIOTest, WriteClearsTheChangedState) {
  CFileIO file;
  file.Open(kPath);
  ASSERT_TRUE(file.SetStr("k", "v"));
  ASSERT_TRUE(file.Write());
  WriteFile(kPath, "changed=elsewhere\n");
  EXPECT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "changed=elsewhere\n");
}

TEST_F(CFileIOTest, LongLinesAreCutTo255BytesWhenWritten) {
  CFileIO file;
  file.Open(kPath);
  ASSERT_TRUE(file.SetStr("k", std::string(300, 'v').c_str()));
  ASSERT_TRUE(file.SetStr("next", "1"));
  ASSERT_TRUE(file.Write());
  // The cut line loses its line end, so the next entry follows on the same line.
  EXPECT_EQ(ReadFile(kPath), "k=" + std::string(253, 'v') + "next=1\n");
}

TEST_F(CFileIOTest, ALineOf255BytesKeepsItsLineEndOnlyWhenItFits) {
  CFileIO file;
  file.Open(kPath);
  ASSERT_TRUE(file.SetStr("k", std::string(252, 'v').c_str()));  // 2 + 252 + "\n" = 255
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "k=" + std::string(252, 'v') + "\n");
}

TEST_F(CFileIOTest, DestructionDoesNotWrite) {
  {
    CFileIO file;
    Load(file, "k=v\n");
    ASSERT_TRUE(file.SetStr("k", "changed"));
  }
  EXPECT_EQ(ReadFile(kPath), "k=v\n");
}

// ---- Removing ----

TEST_F(CFileIOTest, RmKeyOfAMissingKeyFails) {
  CFileIO file;
  Load(file, "k=v\n");
  EXPECT_FALSE(file.RmKey("absent"));
  EXPECT_FALSE(file.RmKey(nullptr));
  EXPECT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "k=v\n");
}

TEST_F(CFileIOTest, RmKeyOfTheLastKeyKeepsTheOthers) {
  CFileIO file;
  Load(file, "a=1\nb=\"2\"\nc=3\n");
  ASSERT_TRUE(file.RmKey("c"));
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Plain("a", "1"), Quoted("b", "2")}));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "a=1\nb=\"2\"\n");
}

TEST_F(CFileIOTest, RmKeyOfTheOnlyKeyEmptiesTheTable) {
  CFileIO file;
  Load(file, "k=v\n");
  ASSERT_TRUE(file.RmKey("k"));
  EXPECT_EQ(file.GetEntryCount(), 0u);
  char* sentinel[1];
  char** keys = sentinel;
  EXPECT_EQ(file.Keys(keys), 0u);
  ASSERT_TRUE(file.SetStr("again", "1"));
  EXPECT_EQ(KeysOf(file), std::vector<std::string>{"again"});
}

TEST_F(CFileIOTest, RmKeyOfAnEarlierKeyClosesTheGapInOrder) {
  CFileIO file;
  Load(file, "a=1\nb=2\nc=\"3\"\nd=4\n");
  ASSERT_TRUE(file.RmKey("b"));
  EXPECT_EQ(file.GetEntryCount(), 3u);
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Plain("a", "1"), Quoted("c", "3"), Plain("d", "4")}));
  ASSERT_TRUE(file.RmKey("a"));
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Quoted("c", "3"), Plain("d", "4")}));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "c=\"3\"\nd=4\n");
}

TEST_F(CFileIOTest, RmKeyRemovesOnlyTheFirstOfDuplicates) {
  CFileIO file;
  Load(file, "k=1\nx=2\nk=3\n");
  ASSERT_TRUE(file.RmKey("k"));
  EXPECT_EQ(EntriesOf(file), (std::vector<Entry>{Plain("x", "2"), Plain("k", "3")}));
  EXPECT_STREQ(file.GetStr("k"), "3");
}

TEST_F(CFileIOTest, ManySetsAndRemovalsMatchAModel) {
  std::mt19937 random(1234);
  CFileIO file;
  file.Open(kPath);
  std::vector<std::pair<std::string, std::string>> model;
  for (int step = 0; step < 3000; ++step) {
    std::string key = "k" + std::to_string(random() % 60);
    auto found = std::find_if(model.begin(), model.end(), [&](const auto& e) { return e.first == key; });
    if (random() % 3 == 0) {
      EXPECT_EQ(file.RmKey(key.c_str()), found != model.end());
      if (found != model.end()) model.erase(found);
    } else {
      std::string value = std::to_string(step);
      ASSERT_TRUE(file.SetStr(key.c_str(), value.c_str()));
      if (found != model.end()) {
        found->second = value;
      } else {
        model.emplace_back(key, value);
      }
    }
    ASSERT_EQ(file.GetEntryCount(), model.size());
  }
  std::vector<Entry> expected;
  std::string content;
  for (const auto& e : model) {
    expected.push_back(Plain(e.first, e.second));
    content += e.first + "=" + e.second + "\n";
  }
  EXPECT_EQ(EntriesOf(file), expected);
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), content);
}

// ---- Immediate synchronisation ----

TEST_F(CFileIOTest, ImmediateSynchWritesAfterEverySetAndRemoval) {
  CountingFileIO file;
  WriteFile(kPath, "a=1\n");
  ASSERT_TRUE(file.Open(kPath));
  file.SetImmediateSynch(true);
  ASSERT_TRUE(file.SetStr("b", "2"));
  EXPECT_EQ(ReadFile(kPath), "a=1\nb=2\n");
  ASSERT_TRUE(file.SetUInt("c", 3));
  EXPECT_EQ(ReadFile(kPath), "a=1\nb=2\nc=0x00000003\n");
  const U32 values[] = {1, 2};
  ASSERT_TRUE(file.SetUIntList("d", values, 2));
  const char* strings[] = {"x", "y"};
  ASSERT_TRUE(file.SetStrList("e", strings, 2));
  ASSERT_TRUE(file.RmKey("a"));
  EXPECT_EQ(ReadFile(kPath), "b=2\nc=0x00000003\nd=1,2\ne=x,y\n");
  EXPECT_EQ(file.writes, 5);
  EXPECT_FALSE(file.RmKey("absent"));
  EXPECT_FALSE(file.SetUIntList("d", nullptr, 1));
  EXPECT_EQ(file.writes, 5);  // failed changes do not write
}

TEST_F(CFileIOTest, ImmediateSynchReturnsTheWritesResult) {
  CFileIO file;
  MakeDirs("/QV/Base/test.cfg/in-the-way");  // a folder where the file should be
  file.Open(kPath);
  file.SetImmediateSynch(true);
  EXPECT_FALSE(file.SetStr("k", "v"));
  EXPECT_TRUE(file.HasKey("k"));  // the table changed all the same
}

TEST_F(CFileIOTest, WithoutImmediateSynchNothingIsWrittenUntilWrite) {
  CountingFileIO file;
  file.Open(kPath);
  ASSERT_TRUE(file.SetStr("k", "v"));
  file.SetImmediateSynch(true);
  file.SetImmediateSynch(false);
  ASSERT_TRUE(file.SetStr("l", "w"));
  EXPECT_EQ(file.writes, 0);
  EXPECT_FALSE(Exists(kPath));
}

// ---- Copies ----

TEST_F(CFileIOTest, CopyReadsWhatIsOnDiskNotUnsavedChanges) {
  CFileIO original;
  Load(original, "k=disk\n");
  ASSERT_TRUE(original.SetStr("k", "unsaved"));
  CFileIO copy(original);
  EXPECT_STREQ(copy.GetPath(), kPath);
  EXPECT_STREQ(copy.GetStr("k"), "disk");
  EXPECT_STREQ(original.GetStr("k"), "unsaved");
}

TEST_F(CFileIOTest, CopyTakesTheImmediateSynchFlag) {
  CFileIO original;
  Load(original, "k=disk\n");
  original.SetImmediateSynch(true);
  CFileIO copy(original);
  ASSERT_TRUE(copy.SetStr("k", "copy"));
  EXPECT_EQ(ReadFile(kPath), "k=copy\n");
}

TEST_F(CFileIOTest, CopyOfAnUnboundObjectIsEmpty) {
  CFileIO original;
  ASSERT_TRUE(original.SetStr("k", "v"));
  CFileIO copy(original);
  EXPECT_EQ(copy.GetPath(), nullptr);
  EXPECT_EQ(copy.GetEntryCount(), 0u);
}

TEST_F(CFileIOTest, AssignmentReadsTheOtherFile) {
  WriteFile("/QV/one.cfg", "one=1\n");
  WriteFile("/QV/two.cfg", "two=2\n");
  CFileIO a, b;
  ASSERT_TRUE(a.Open("/QV/one.cfg"));
  ASSERT_TRUE(b.Open("/QV/two.cfg"));
  ASSERT_TRUE(b.SetStr("unsaved", "x"));
  b.SetImmediateSynch(true);
  a = b;
  EXPECT_STREQ(a.GetPath(), "/QV/two.cfg");
  EXPECT_EQ(EntriesOf(a), (std::vector<Entry>{Plain("two", "2")}));
  ASSERT_TRUE(a.SetStr("three", "3"));  // the flag came along
  EXPECT_EQ(ReadFile("/QV/two.cfg"), "two=2\nthree=3\n");
}

TEST_F(CFileIOTest, AssignmentToItselfKeepsEverything) {
  CFileIO file;
  Load(file, "k=disk\n");
  ASSERT_TRUE(file.SetStr("k", "unsaved"));
  CFileIO& same = file;
  file = same;
  EXPECT_STREQ(file.GetStr("k"), "unsaved");
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), "k=unsaved\n");
}

TEST_F(CFileIOTest, AssignmentFromAnUnboundObjectKeepsTheTable) {
  CFileIO file, unbound;
  Load(file, "k=v\n");
  file = unbound;
  EXPECT_STREQ(file.GetPath(), kPath);
  EXPECT_STREQ(file.GetStr("k"), "v");
}

// ---- Helpers ----

TEST_F(CFileIOTest, QuoteHelpers) {
  char* quoted = InspectableFileIO::AddQuotes("a,b");
  EXPECT_STREQ(quoted, "\"a,b\"");
  COrvoInterface::Free(quoted);
  char* list = InspectableFileIO::AddListQuotes("a,b");
  EXPECT_STREQ(list, "\"a\",\"b\"");
  COrvoInterface::Free(list);
  list = InspectableFileIO::AddListQuotes("a,,b");
  EXPECT_STREQ(list, "\"a\",\"\",\"b\"");
  COrvoInterface::Free(list);
  list = InspectableFileIO::AddListQuotes("");
  EXPECT_STREQ(list, "\"\"");
  COrvoInterface::Free(list);
  EXPECT_EQ(InspectableFileIO::AddQuotes(nullptr), nullptr);
  char text[] = "\"a\",\"b\"";
  InspectableFileIO::StripQuotes(text);
  EXPECT_STREQ(text, "a,b");
}

TEST_F(CFileIOTest, TextHelpers) {
  EXPECT_EQ(InspectableFileIO::CharCount("a,b,,c", ','), 3u);
  EXPECT_EQ(InspectableFileIO::CharCount("", ','), 0u);
  char text[] = " \t key \t\r\n";
  EXPECT_STREQ(InspectableFileIO::StripWhitespace(text), "key");
  char** pieces = nullptr;
  U32 count = InspectableFileIO::Split("a::b::", "::", pieces);
  EXPECT_EQ(TakeStrList(pieces, count), (std::vector<std::string>{"a", "b", ""}));
  count = InspectableFileIO::Split("abc", "", pieces);
  EXPECT_EQ(TakeStrList(pieces, count), (std::vector<std::string>{"abc"}));
}

TEST_F(CFileIOTest, SetsMarkTheTableChanged) {
  InspectableFileIO file;
  WriteFile(kPath, "k=v\n");
  ASSERT_TRUE(file.Open(kPath));
  EXPECT_FALSE(file.IsDirty());
  ASSERT_TRUE(file.SetStr("k", "v"));
  EXPECT_TRUE(file.IsDirty());
  ASSERT_TRUE(file.Write());
  EXPECT_FALSE(file.IsDirty());
  ASSERT_TRUE(file.RmKey("k"));
  EXPECT_TRUE(file.IsDirty());
}

TEST_F(CFileIOTest, GetUIntListTakesSignsUpperCaseDigitsAndTabsAsTheDeviceDid) {
  CFileIO file;
  Load(file, "a=+1f,0X10,AB,0xg,\t7\nh=0xAB\n");
  U32* list = nullptr;
  U32 count = file.GetUIntList("a", list);
  EXPECT_EQ(TakeUIntList(list, count), (std::vector<U32>{31, 16, 171, 0, 7}));
  EXPECT_EQ(file.GetUInt("h"), 171u);
}

TEST_F(CFileIOTest, HelpersGivenNoTextGiveNothing) {
  EXPECT_EQ(InspectableFileIO::AddQuotes(nullptr), nullptr);
  EXPECT_EQ(InspectableFileIO::AddListQuotes(nullptr), nullptr);
  InspectableFileIO::StripQuotes(nullptr);
  EXPECT_EQ(InspectableFileIO::CharCount(nullptr, ','), 0u);
  char** pieces = reinterpret_cast<char**>(1);
  EXPECT_EQ(InspectableFileIO::Split(nullptr, ",", pieces), 0u);
  EXPECT_EQ(pieces, nullptr);
}

TEST_F(CFileIOTest, SplitWithoutASeparatorGivesTheWholeText) {
  char** pieces = nullptr;
  ASSERT_EQ(InspectableFileIO::Split("a,b", nullptr, pieces), 1u);
  EXPECT_STREQ(pieces[0], "a,b");
  COrvoInterface::Free(pieces[0]);
  COrvoInterface::Free(pieces);
}

TEST_F(CFileIOTest, ListSettersRefuseMissingKeysAndItems) {
  CFileIO file;
  file.Open(kPath);
  const U32 values[] = {1};
  const char* strings[] = {"x", nullptr};
  EXPECT_FALSE(file.SetUIntList(nullptr, values, 1));
  EXPECT_FALSE(file.SetUIntList("k", nullptr, 1));
  EXPECT_FALSE(file.SetStrList(nullptr, strings, 1));
  EXPECT_FALSE(file.SetStrList("k", nullptr, 1));
  EXPECT_FALSE(file.SetStrList("k", strings, 0));
  EXPECT_FALSE(file.SetStr(nullptr, "v"));
  EXPECT_FALSE(file.HasKey("k"));
  EXPECT_TRUE(file.SetStrList("k", strings, 2));  // a null item is an empty one
  EXPECT_STREQ(file.GetStr("k"), "x,");
}

TEST_F(CFileIOTest, KeysOfAnEmptyFileAreNone) {
  CFileIO file;
  char** keys = reinterpret_cast<char**>(1);
  EXPECT_EQ(file.Keys(keys), 0u);
}

TEST_F(CFileIOTest, KeysAddedAfterALookupOfAManyKeyFileAreFound) {
  std::string content;
  for (int i = 0; i < 200; ++i) content += "key" + std::to_string(i) + "=" + std::to_string(i) + "\n";
  CFileIO file;
  Load(file, content);
  EXPECT_STREQ(file.GetStr("key150"), "150");
  ASSERT_TRUE(file.SetStr("late", "yes"));
  EXPECT_STREQ(file.GetStr("late"), "yes");
  EXPECT_EQ(file.GetStr("never"), nullptr);
  EXPECT_STREQ(file.GetStr("key7"), "7");
}
