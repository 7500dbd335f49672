// `vireline report` on the sample image's play logs and on logs whose texts
// hold markup, quotes and bytes that are not UTF-8.
#include <gtest/gtest.h>

#include <string>

#include <vireline/CLogHeader.h>
#include <vireline/CTimeSync.h>
#include <vireline/LogEvents.h>

#include "tools/SampleImageTest.h"

using namespace LogData::Vireline;

namespace {

std::string RecordBytes(const CLogData& record) {
  return std::string(reinterpret_cast<const char*>(record.GetPack()->GetBuffer()), record.GetPack()->GetTotalSize());
}

std::string HeaderBytes(unsigned char slot) {
  CLogHeader header;
  header.SetPlatform(10);
  header.SetDeviceSerialNum("SN\"<b>");
  header.SetLogNum(slot);
  return std::string(reinterpret_cast<const char*>(header.GetBytes()), CLogHeader::kSize);
}

// True when `text` holds a byte that cannot occur in UTF-8.
bool HasInvalidUtf8Byte(const std::string& text) {
  for (unsigned char c : text) {
    if (c == 0xC0 || c == 0xC1 || c >= 0xF5) return true;
  }
  return false;
}

}  // namespace

class ReportCommandTest : public SampleImageTest {
 protected:
  InspectorRun Report(const std::string& arguments) const { return Run("report " + arguments); }

  Json::Value Player(const Json::Value& json, int player) const {
    for (const Json::Value& entry : json["players"]) {
      if (entry["player"].asInt() == player) return entry;
    }
    return Json::Value();
  }

  // The activity `name` of `title` in a player's JSON report.
  static Json::Value Activity(const Json::Value& player, const std::string& title, const std::string& name) {
    for (const Json::Value& activity : player["activities"]) {
      if (activity["title"].asString() == title && activity["name"].asString() == name) return activity;
    }
    return Json::Value();
  }
};

TEST_F(ReportCommandTest, JsonGivesEveryPlayersSessionsTimesAndAnswers) {
  InspectorRun run = Report("--json");
  ASSERT_EQ(run.exitStatus, 0) << run.err;
  Json::Value json = ParseJson(run.out);
  ASSERT_EQ(json["players"].size(), 3u);
  Json::Value player0 = Player(json, 0);
  EXPECT_EQ(player0["header"].asString(), "valid");
  EXPECT_EQ(player0["totals"]["sessions"].asInt(), 4);
  EXPECT_EQ(player0["totals"]["days"].asInt(), 3);
  EXPECT_EQ(player0["sessions"][0]["start"].asString(), "2024-03-04 15:30:01 UTC");
  EXPECT_EQ(player0["sessions"][0]["millis"].asInt(), 37500);
  EXPECT_TRUE(player0["sessions"][3]["openAtEnd"].asBool());
  EXPECT_FALSE(player0["sessions"][2]["loggedOut"].asBool());
  Json::Value climb = Activity(player0, "MathMountain", "Climb");
  EXPECT_EQ(climb["starts"].asInt(), 4);
  EXPECT_EQ(climb["answers"]["correct"].asInt(), 4);
  EXPECT_EQ(climb["answers"]["correctTimed"].asInt(), 4);
  EXPECT_EQ(climb["answers"]["hints"].asInt(), 2);
  EXPECT_EQ(climb["level"].asString(), "Level 3");
  Json::Value answers = player0["totals"]["answers"];
  for (const char* kind : {"correct", "correctTimed", "semiCorrect", "semiCorrectTimed", "wrong", "wrongTimed"}) {
    EXPECT_GT(answers[kind].asInt(), 0) << kind;
  }
  EXPECT_EQ(player0["totals"]["lowBattery"].asInt(), 1);
  EXPECT_EQ(player0["totals"]["timeSyncs"].asInt(), 4);
  EXPECT_EQ(Player(json, 2)["totals"]["criticalErrors"].asInt(), 1);
  EXPECT_EQ(Player(json, 1)["titles"].size(), 2u);
}

TEST_F(ReportCommandTest, WithoutOptionsItPrintsASummaryPerPlayer) {
  InspectorRun run = Report("1");
  EXPECT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.out.rfind("player 1  /QV/Bulk/Data/Uploads/1/profile.log", 0), 0u) << run.out;
  EXPECT_NE(run.out.find("3 sessions on 3 days"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("ZooKeeper"), std::string::npos);
}

TEST_F(ReportCommandTest, PlayerPicksOneLog) {
  Json::Value json = ParseJson(Report("--player 2 --json").out);
  ASSERT_EQ(json["players"].size(), 1u);
  EXPECT_EQ(json["players"][0]["player"].asInt(), 2);
  Json::Value byFile = ParseJson(Report("/QV/Bulk/Data/Uploads/2/profile.log --json").out);
  EXPECT_EQ(byFile["players"][0]["totals"], json["players"][0]["totals"]);
  EXPECT_EQ(Report("0 --player 2").exitStatus, 1);
}

TEST_F(ReportCommandTest, MissingAndForeignFilesAreReported) {
  InspectorRun missing = Report("/QV/none.log");
  EXPECT_EQ(missing.exitStatus, 1);
  EXPECT_EQ(missing.err, "vireline report: /QV/none.log: cannot be opened\n");
  WriteFile("/QV/notes.txt", std::string(200, 'n'));
  EXPECT_EQ(Report("/QV/notes.txt").exitStatus, 4);
  EXPECT_EQ(Report("--html x.html --json").exitStatus, 2);
}

TEST_F(ReportCommandTest, TheHtmlPageIsSelfContained) {
  InspectorRun run = Report("--html -");
  ASSERT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.out.rfind("<!DOCTYPE html>", 0), 0u);
  EXPECT_NE(run.out.find("<svg"), std::string::npos);
  for (const char* external : {"<script", "<link", "src=", "href=", "url(", "@import", "@font-face"}) {
    EXPECT_EQ(run.out.find(external), std::string::npos) << external;
  }
  for (const char* heading : {"Sessions by day", "Time per title", "Time per activity", "Answers per activity",
                              "Levels and achievements", "Device records and irregularities"}) {
    EXPECT_NE(run.out.find(heading), std::string::npos) << heading;
  }
  EXPECT_NE(run.out.find("id=\"p0-sessions\">4<"), std::string::npos);
  EXPECT_NE(run.out.find("criticalError"), std::string::npos);
  EXPECT_NE(run.out.find("lowBattery"), std::string::npos);
}

TEST_F(ReportCommandTest, HtmlGoesToAHostFile) {
  InspectorRun run = Report("--html " + Host("/report.html"));
  ASSERT_EQ(run.exitStatus, 0) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(ReadFile("/report.html"), Report("--html -").out);
  EXPECT_EQ(Report("--html " + Host("/no/such/folder/report.html")).exitStatus, 3);
}

TEST_F(ReportCommandTest, LogTextsAreShownAsTextNotMarkup) {
  std::string log = HeaderBytes(1) + RecordBytes(CTimeSync(1709566200, CTimeSync::kClockValid));
  log += RecordBytes(CUserLogIn());
  log += RecordBytes(CTitleStart(1, "<script>alert(\"x\")</script>", "1'0", 0));
  log += RecordBytes(CActivityStart("<script>alert(\"x\")</script>", "Tom's \"quiz\" \xFF\xFE end", "<i>"));
  log += RecordBytes(CCorrectAnswer(1, "q", "&amp;"));
  log += RecordBytes(CGameStart("<img src=x onerror=alert(1)>"));
  log += RecordBytes(CLevelUp("</td></tr></table><h1>big"));
  log += RecordBytes(CCriticalError("bad \xC3\x28 byte <b>bold</b>"));
  WriteFile("/QV/odd.log", log);
  InspectorRun run = Report("/QV/odd.log --html -");
  ASSERT_EQ(run.exitStatus, 0) << run.err;
  const std::string& page = run.out;
  for (const char* markup : {"<script", "<img", "<i>", "<h1>big", "<b>bold", "</table><h1>"}) {
    EXPECT_EQ(page.find(markup), std::string::npos) << markup;
  }
  EXPECT_NE(page.find("&lt;script&gt;alert(&quot;x&quot;)&lt;/script&gt;"), std::string::npos);
  EXPECT_NE(page.find("Tom&#39;s &quot;quiz&quot; \\xFF\\xFE end"), std::string::npos);
  EXPECT_NE(page.find("&lt;img src=x onerror=alert(1)&gt;"), std::string::npos);
  EXPECT_NE(page.find("bad \\xC3( byte &lt;b&gt;bold&lt;/b&gt;"), std::string::npos);
  EXPECT_NE(page.find("SN&quot;&lt;b&gt;"), std::string::npos);
  EXPECT_FALSE(HasInvalidUtf8Byte(page));
  Json::Value json = ParseJson(Report("/QV/odd.log --json").out);
  EXPECT_EQ(json["players"][0]["player"].asInt(), 1);
  EXPECT_EQ(json["players"][0]["activities"][0]["name"].asString(), "Tom's \"quiz\" \\xFF\\xFE end");
}
