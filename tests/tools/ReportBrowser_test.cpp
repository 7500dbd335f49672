// The sample image's play report as a person sees it: rendered by headless
// Chromium, the screenshot must show something, and the page's key figures
// must be the JSON report's. Where no Chromium is installed the test is
// skipped, loudly; scripts/install-report-deps.sh installs it.
#include <gtest/gtest.h>

#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <zlib.h>

#include "tools/SampleImageTest.h"

// The emulated 32-bit runs have no browser.
#ifndef VIRELINE_TESTS_UNDER_EMULATOR

namespace {

std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

uint32_t BigEndian32(const std::string& bytes, size_t at) {
  return (uint32_t{static_cast<unsigned char>(bytes[at])} << 24) |
         (uint32_t{static_cast<unsigned char>(bytes[at + 1])} << 16) |
         (uint32_t{static_cast<unsigned char>(bytes[at + 2])} << 8) | static_cast<unsigned char>(bytes[at + 3]);
}

int Paeth(int a, int b, int c) {
  int p = a + b - c, pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
  return pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
}

// A PNG's 8-bit RGB or RGBA image: its size and the pixels that are not near white.
struct PngCount {
  bool ok = false;
  uint32_t width = 0, height = 0;
  uint64_t inked = 0;
};

// Undoes the per-row filters of `data` (rows of `stride` bytes after a filter byte) in place.
bool Unfilter(std::vector<unsigned char>* data, size_t rows, size_t stride, size_t pixelBytes) {
  std::vector<unsigned char> previous(stride, 0);
  for (size_t row = 0; row < rows; ++row) {
    unsigned char* line = data->data() + row * (stride + 1);
    unsigned char filter = line[0];
    unsigned char* x = line + 1;
    for (size_t i = 0; i < stride; ++i) {
      int a = i >= pixelBytes ? x[i - pixelBytes] : 0, b = previous[i], c = i >= pixelBytes ? previous[i - pixelBytes] : 0;
      int add = filter == 0 ? 0 : filter == 1 ? a : filter == 2 ? b : filter == 3 ? (a + b) / 2 : filter == 4 ? Paeth(a, b, c) : -1;
      if (add < 0) return false;
      x[i] = static_cast<unsigned char>(x[i] + add);
    }
    previous.assign(x, x + stride);
  }
  return true;
}

PngCount CountInkedPixels(const std::string& png) {
  PngCount result;
  if (png.size() < 33 || png.compare(0, 8, "\x89PNG\r\n\x1a\n") != 0 || png.compare(12, 4, "IHDR") != 0) return result;
  result.width = BigEndian32(png, 16);
  result.height = BigEndian32(png, 20);
  int depth = png[24], color = png[25];
  if (depth != 8 || (color != 2 && color != 6) || png[28] != 0 || result.width > 10000 || result.height > 20000) {
    return result;
  }
  std::string compressed;
  for (size_t at = 8; at + 8 <= png.size();) {
    uint32_t length = BigEndian32(png, at);
    if (at + 12 + length > png.size()) return result;
    if (png.compare(at + 4, 4, "IDAT") == 0) compressed += png.substr(at + 8, length);
    at += 12 + length;
  }
  size_t pixelBytes = color == 6 ? 4 : 3, stride = result.width * pixelBytes;
  std::vector<unsigned char> data(result.height * (stride + 1));
  uLongf size = data.size();
  if (uncompress(data.data(), &size, reinterpret_cast<const Bytef*>(compressed.data()), compressed.size()) != Z_OK ||
      size != data.size() || !Unfilter(&data, result.height, stride, pixelBytes)) {
    return result;
  }
  for (size_t row = 0; row < result.height; ++row) {
    const unsigned char* x = data.data() + row * (stride + 1) + 1;
    for (size_t i = 0; i < result.width; ++i) {
      const unsigned char* p = x + i * pixelBytes;
      result.inked += p[0] < 235 || p[1] < 235 || p[2] < 235;
    }
  }
  result.ok = true;
  return result;
}

// The text of the element with `id` in `dom`; empty when there is none.
std::string ElementText(const std::string& dom, const std::string& id) {
  size_t at = dom.find("id=\"" + id + "\"");
  if (at == std::string::npos) return std::string();
  size_t start = dom.find('>', at);
  size_t end = dom.find('<', start);
  return start == std::string::npos || end == std::string::npos ? std::string() : dom.substr(start + 1, end - start - 1);
}

// The value of attribute `name` of the element with `id`.
std::string ElementAttribute(const std::string& dom, const std::string& id, const std::string& name) {
  size_t at = dom.find("id=\"" + id + "\"");
  size_t close = dom.find('>', at);
  size_t attribute = dom.find(name + "=\"", at);
  if (at == std::string::npos || attribute == std::string::npos || attribute > close) return std::string();
  size_t start = attribute + name.size() + 2;
  return dom.substr(start, dom.find('"', start) - start);
}

}  // namespace

class ReportBrowserTest : public SampleImageTest {
 protected:
  void SetUp() override {
    SampleImageTest::SetUp();
    const char* chosen = getenv("VIRELINE_CHROMIUM");
    mChromium = chosen != nullptr && *chosen != '\0' ? chosen : "/usr/bin/chromium";
  }

  // Runs headless Chromium on `page` with `what` (--screenshot=FILE, --dump-dom) and a profile
  // folder of its own; its standard output goes to `out`. True when it ended well.
  bool Chromium(const std::string& what, const std::string& page, const std::string& out) {
    std::string profile = Host("/chromium-profile-" + std::to_string(mRuns++));
    std::filesystem::create_directories(profile);
    std::string command = "cd " + Host("/") + " && timeout 50 " + mChromium +
                          " --headless --no-sandbox --disable-gpu --no-first-run --disable-background-networking"
                          " --disable-component-update --disable-sync --disable-quic --hide-scrollbars"
                          " --window-size=1000,1400 --user-data-dir=" + profile + " " + what + " file://" + page +
                          " >" + out + " 2>" + Host("/chromium.err");
    return std::system(command.c_str()) == 0;
  }

  std::string mChromium;
  int mRuns = 0;
};

TEST_F(ReportBrowserTest, TheSampleReportRendersWithTheJsonReportsFigures) {
  if (access(mChromium.c_str(), X_OK) != 0) {
    GTEST_SKIP() << "\n########################################################################\n"
                 << "## SKIPPED: no Chromium at " << mChromium << ": the report was NOT checked in a browser.\n"
                 << "## Install it with scripts/install-report-deps.sh (Debian package chromium).\n"
                 << "########################################################################";
  }
  InspectorRun json = Run("report --json");
  ASSERT_EQ(json.exitStatus, 0) << json.err;
  Json::Value player0 = ParseJson(json.out)["players"][0];
  std::string page = Host("/report.html");
  ASSERT_EQ(Run("report --html " + page).exitStatus, 0);

  std::string shot = Host("/report.png");
  ASSERT_TRUE(Chromium("--screenshot=" + shot, page, Host("/chromium.out"))) << ReadFile("/chromium.err");
  PngCount png = CountInkedPixels(Slurp(shot));
  ASSERT_TRUE(png.ok) << "the screenshot is no 8-bit RGB(A) PNG";
  EXPECT_EQ(png.width, 1000u);
  EXPECT_GT(png.inked, uint64_t{png.width} * png.height / 50) << "the screenshot is (nearly) blank";

  std::string dom = Host("/report.dom");
  ASSERT_TRUE(Chromium("--dump-dom", page, dom)) << ReadFile("/chromium.err");
  std::string text = Slurp(dom);
  ASSERT_NE(text.find("Play report"), std::string::npos) << text.substr(0, 400);
  EXPECT_EQ(ElementText(text, "p0-sessions"), std::to_string(player0["totals"]["sessions"].asInt()));
  EXPECT_EQ(ElementText(text, "p0-play-time"), player0["totals"]["playTime"].asString());
  EXPECT_EQ(ElementAttribute(text, "p0-play-time", "data-ms"), std::to_string(player0["totals"]["playMillis"].asUInt64()));
  Json::Value activities = player0["activities"];
  for (Json::ArrayIndex i = 0; i < activities.size(); ++i) {
    if (activities[i]["name"].asString() != "Climb") continue;
    Json::Value answers = activities[i]["answers"];
    EXPECT_EQ(ElementText(text, "p0-activity-" + std::to_string(i) + "-correct"),
              std::to_string(answers["correct"].asInt() + answers["correctTimed"].asInt()));
    EXPECT_EQ(ElementText(text, "p0-activity-" + std::to_string(i) + "-hints"), std::to_string(answers["hints"].asInt()));
  }
  EXPECT_NE(text.find("id=\"p0-activity-"), std::string::npos);
}

#endif  // VIRELINE_TESTS_UNDER_EMULATOR
