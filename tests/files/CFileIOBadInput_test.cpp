// Damaged and hostile files: reading never crashes and gives what an
// independent reading of the format gives. (How reading time grows with the
// file's size is measured in bench/KeyValueFile_bench.cpp.)
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include <vireline/CFileIO.h>

#include "DeviceRootTest.h"
#include "files/KeyValueTest.h"
#include "platform/FaultInjectionEnv.h"

using vireline::FaultInjectionEnv;

namespace {

const char kPath[] = "/QV/Base/settings.cfg";

std::string Strip(const std::string& text) {
  size_t begin = 0;
  while (begin < text.size() && (text[begin] == ' ' || text[begin] == '\t')) ++begin;
  size_t end = text.size();
  while (end > begin && std::string(" \t\r\n").find(text[end - 1]) != std::string::npos) --end;
  return text.substr(begin, end - begin);
}

// An independent reading of the key=value format, for comparison.
std::vector<Entry> ReferenceRead(const std::string& bytes) {
  std::vector<Entry> entries;
  std::string line;
  auto finishLine = [&]() {
    std::string text = line.substr(0, line.find('\0'));  // the line's text ends at a NUL byte
    line.clear();
    size_t equals = text.find('=');
    if (equals == std::string::npos) return;
    Entry entry{Strip(text.substr(0, equals)), Strip(text.substr(equals + 1)), false, false};
    if (!entry.value.empty() && entry.value[0] == '"') {
      size_t closing = entry.value.find('"', 1);
      (closing == entry.value.size() - 1 ? entry.quoted : entry.listQuoted) = true;
      std::string unquoted;
      for (char c : entry.value) {
        if (c != '"') unquoted += c;
      }
      entry.value = unquoted;
    }
    entries.push_back(entry);
  };
  size_t at = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
  for (; at < bytes.size(); ++at) {
    char c = bytes[at];
    if (c == '\r' || c == '\n') {
      if (!line.empty()) finishLine();
      continue;
    }
    line += c;
    if (line.size() == 255) finishLine();
  }
  if (!line.empty()) finishLine();
  return entries;
}

// Bytes drawn mostly from the characters that matter to the format.
std::string RandomContent(std::mt19937& random, size_t size) {
  static const char kInteresting[] = {'=', '=', '"', ',', '\r', '\n', '\n', ' ', '\t', '\0', 'a', 'b', 'k',
                                      '0', 'x', 'F', '\xEF', '\xBB', '\xBF', '\xFF', '\xC3', '#'};
  std::string content;
  content.reserve(size);
  for (size_t i = 0; i < size; ++i) {
    unsigned pick = random() % 4;
    content += pick == 0 ? static_cast<char>(random() % 256) : kInteresting[random() % sizeof kInteresting];
  }
  return content;
}

}  // namespace

class CFileIOBadInputTest : public DeviceRootTest {
 protected:
  std::vector<Entry> Read(const std::string& content) {
    WriteFile(kPath, content);
    CFileIO file;
    EXPECT_TRUE(file.Open(kPath));
    return EntriesOf(file);
  }
};

TEST_F(CFileIOBadInputTest, NulBytesEndTheLinesText) {
  EXPECT_EQ(Read(std::string("a\0b=c\nd=e\nk=v\0junk=x\n", 22)),
            (std::vector<Entry>{Plain("d", "e"), Plain("k", "v")}));
}

TEST_F(CFileIOBadInputTest, InvalidUtf8IsKeptByteForByte) {
  std::string content = "\xFF\xFE=\xC3\x28\n\xC0\xAF=\"\xE2\x82\"\n";
  EXPECT_EQ(Read(content), (std::vector<Entry>{Plain("\xFF\xFE", "\xC3\x28"), Quoted("\xC0\xAF", "\xE2\x82")}));
  CFileIO file;
  ASSERT_TRUE(file.Open(kPath));
  ASSERT_TRUE(file.SetStr("\xFF\xFE", "\xC3\x28"));
  ASSERT_TRUE(file.Write());
  EXPECT_EQ(ReadFile(kPath), content);
}

TEST_F(CFileIOBadInputTest, ByteOrderMarkAlone) {
  EXPECT_EQ(Read("\xEF\xBB\xBF"), std::vector<Entry>{});
  EXPECT_EQ(Read("\xEF\xBB"), std::vector<Entry>{});
  EXPECT_EQ(Read("\xEF\xBBk=v"), (std::vector<Entry>{Plain("\xEF\xBBk", "v")}));
  EXPECT_EQ(Read("\xEF\xBB\xBF\xEF\xBB\xBFk=v"), (std::vector<Entry>{Plain("\xEF\xBB\xBFk", "v")}));
}

TEST_F(CFileIOBadInputTest, EmptyFile) { EXPECT_EQ(Read(""), std::vector<Entry>{}); }

TEST_F(CFileIOBadInputTest, OnlyEqualsSigns) {
  std::vector<Entry> entries = Read(std::string(1000, '='));
  // Lines are cut every 255 bytes; each piece is an empty key and the rest.
  ASSERT_EQ(entries.size(), 4u);
  EXPECT_EQ(entries[0], Plain("", std::string(254, '=')));
  EXPECT_EQ(entries[3], Plain("", std::string(1000 - 3 * 255 - 1, '=')));
  EXPECT_EQ(Read("=\n==\n="), (std::vector<Entry>{Plain("", ""), Plain("", "="), Plain("", "")}));
}

TEST_F(CFileIOBadInputTest, CarriageReturnOnlyLineEnds) {
  EXPECT_EQ(Read("a=1\rb=2\r\r\rc=\"3\"\r"), (std::vector<Entry>{Plain("a", "1"), Plain("b", "2"), Quoted("c", "3")}));
}

TEST_F(CFileIOBadInputTest, OnlyLineEnds) {
  EXPECT_EQ(Read(std::string(10000, '\n') + "\r\r\n"), std::vector<Entry>{});
}

TEST_F(CFileIOBadInputTest, LineOf100000Bytes) {
  std::string line = "k=" + std::string(99998, 'x');
  EXPECT_EQ(Read(line + "\nnext=1\n"), (std::vector<Entry>{Plain("k", std::string(253, 'x')), Plain("next", "1")}));
  std::string repeated;
  while (repeated.size() < 100000) repeated += "a=b";
  EXPECT_EQ(Read(repeated), ReferenceRead(repeated));
}

TEST_F(CFileIOBadInputTest, TenThousandKeys) {
  std::string content;
  for (int i = 0; i < 10000; ++i) content += "Key" + std::to_string(i) + "=" + std::to_string(i * 7) + "\n";
  WriteFile(kPath, content);
  CFileIO file;
  ASSERT_TRUE(file.Open(kPath));
  ASSERT_EQ(file.GetEntryCount(), 10000u);
  EXPECT_EQ(file.GetUInt("Key0"), 0u);
  EXPECT_EQ(file.GetUInt("Key9999"), 69993u);
  ASSERT_TRUE(file.SetStr("Key5000", "changed"));
  ASSERT_TRUE(file.RmKey("Key0"));
  ASSERT_TRUE(file.Write());
  std::string expected = content.substr(content.find('\n') + 1);
  expected.replace(expected.find("Key5000=35000"), 13, "Key5000=changed");
  EXPECT_EQ(ReadFile(kPath), expected);
}

TEST_F(CFileIOBadInputTest, TenThousandKeysAddedOneByOne) {
  CFileIO file;
  file.Open(kPath);
  for (int i = 0; i < 10000; ++i) {
    ASSERT_TRUE(file.SetUInt(("Key" + std::to_string(i)).c_str(), static_cast<U32>(i)));
  }
  ASSERT_TRUE(file.Write());
  CFileIO reread;
  ASSERT_TRUE(reread.Open(kPath));
  EXPECT_EQ(reread.GetEntryCount(), 10000u);
  EXPECT_EQ(reread.GetUInt("Key4321"), 4321u);
}

TEST_F(CFileIOBadInputTest, TenMebibyteFile) {
  std::mt19937 random(10);
  std::string content = RandomContent(random, 10 * 1024 * 1024);
  WriteFile(kPath, content);
  CFileIO file;
  ASSERT_TRUE(file.Open(kPath));
  EXPECT_EQ(EntriesOf(file), ReferenceRead(content));
}

TEST_F(CFileIOBadInputTest, RandomContentReadsAsTheFormatSays) {
  std::mt19937 random(42);
  for (int round = 0; round < 300; ++round) {
    std::string content = RandomContent(random, random() % 2000);
    if (round % 10 == 0) content = "\xEF\xBB\xBF" + content;
    ASSERT_EQ(Read(content), ReferenceRead(content)) << "round " << round;
  }
}

TEST_F(CFileIOBadInputTest, RandomTablesRoundTrip) {
  std::mt19937 random(7);
  const std::string alphabet = "abcXYZ019_-.:/ ,,\xC3\xA9";
  for (int round = 0; round < 100; ++round) {
    CFileIO file;
    file.Open(kPath);
    file.Clear();
    std::vector<Entry> expected;
    int keys = 1 + random() % 20;
    for (int i = 0; i < keys; ++i) {
      std::string key = "k" + std::to_string(i);
      std::string value;
      for (unsigned n = random() % 30; n > 0; --n) value += alphabet[random() % alphabet.size()];
      value = Strip(value);
      ASSERT_TRUE(file.SetStr(key.c_str(), value.c_str()));
      unsigned style = random() % 3;
      file.FindKey(key.c_str())->quoted = style == 1;
      file.FindKey(key.c_str())->listQuoted = style == 2;
      Entry entry{key, value, style == 1, style == 2};
      // A one-item list reads back as a quoted string, "a","b" as a list.
      if (style == 2 && value.find(',') == std::string::npos) entry = Quoted(key, value);
      expected.push_back(entry);
    }
    ASSERT_TRUE(file.Write());
    CFileIO reread;
    ASSERT_TRUE(reread.Open(kPath));
    ASSERT_EQ(EntriesOf(reread), expected) << "round " << round << ":\n" << ReadFile(kPath);
  }
}

TEST_F(CFileIOBadInputTest, FolderWhereTheFileShouldBe) {
  MakeDirs(std::string(kPath) + "/inside");
  CFileIO file;
  file.Open(kPath);  // the C library opens a folder for reading; nothing can be read from it
  EXPECT_EQ(file.GetEntryCount(), 0u);
  EXPECT_STREQ(file.GetPath(), kPath);
  ASSERT_TRUE(file.SetStr("k", "v"));
  EXPECT_FALSE(file.Write());
  EXPECT_EQ(List(kPath), std::vector<std::string>{"inside"});
  EXPECT_EQ(List("/QV/Base"), std::vector<std::string>{"settings.cfg"});
}

TEST_F(CFileIOBadInputTest, FileThatCannotBeOpened) {
  WriteFile(kPath, "k=v\n");
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  faults.FailAfter(FaultInjectionEnv::kOpen, 0, EACCES);
  CFileIO file;
  EXPECT_FALSE(file.Open(kPath));
  EXPECT_EQ(file.GetEntryCount(), 0u);
  EXPECT_STREQ(file.GetPath(), kPath);
  vireline::Env::SetCurrent(nullptr);
}

TEST_F(CFileIOBadInputTest, ReadFailingPartWayGivesWhatWasRead) {
  const std::string content = "alpha=1\nbeta=\"two\"\ngamma=3\n";
  const std::vector<Entry> whole = ReferenceRead(content);
  WriteFile(kPath, content);
  FaultInjectionEnv faults(vireline::Env::Default());
  vireline::Env::SetCurrent(&faults);
  for (size_t reads = 0; reads <= content.size() + 2; ++reads) {
    faults.Reset();
    faults.FailAfter(FaultInjectionEnv::kRead, static_cast<int>(reads));
    CFileIO file;
    EXPECT_TRUE(file.Open(kPath));
    std::vector<Entry> entries = EntriesOf(file);
    ASSERT_LE(entries.size(), whole.size()) << reads;
    // Every entry read is the file's entry, or the beginning of the last one read.
    for (size_t i = 0; i < entries.size(); ++i) {
      EXPECT_EQ(entries[i].key, whole[i].key) << reads;
      EXPECT_EQ(whole[i].value.compare(0, entries[i].value.size(), entries[i].value), 0) << reads;
    }
  }
  faults.Reset();
  CFileIO file;
  EXPECT_TRUE(file.Open(kPath));
  EXPECT_EQ(EntriesOf(file), whole);
  vireline::Env::SetCurrent(nullptr);
}
