// The SVG that is written: well-formed whatever the texts, inside the caller's room, and the same in a file.
#include <gtest/gtest.h>

#include <string>

#include "charting/recording_painter.h"
#include "support/files.h"
#include "support/spx.h"

namespace qvtest {
namespace {

// Elements nest, attributes are quoted, references are known, and all bytes are characters of UTF-8.
void expectWellFormed(const std::string& xml) {
  std::vector<std::string> open;
  for (std::size_t i = 0; i < xml.size();) {
    const unsigned char c = static_cast<unsigned char>(xml[i]);
    ASSERT_TRUE(c >= 0x20 || c == '\n') << "control character at " << i;
    if (c >= 0x80) {
      const std::size_t more = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : 1;
      ASSERT_TRUE(c >= 0xC2 && c <= 0xF4 && i + more < xml.size());
      for (std::size_t k = 1; k <= more; ++k) ASSERT_EQ(static_cast<unsigned char>(xml[i + k]) & 0xC0, 0x80);
      i += more + 1;
    } else if (c == '&') {
      const std::string name = xml.substr(i, xml.find(';', i) - i + 1);
      ASSERT_TRUE(name == "&lt;" || name == "&gt;" || name == "&amp;" || name == "&quot;") << name;
      i += name.size();
    } else if (c == '<') {
      const std::size_t end = xml.find('>', i);
      ASSERT_NE(end, std::string::npos);
      const std::string tag = xml.substr(i + 1, end - i - 1),
                        name = tag.substr(0, tag.find_first_of(" /", 1));
      ASSERT_EQ(std::count(tag.begin(), tag.end(), '"') % 2, 0) << tag;
      if (tag[0] == '/') {
        ASSERT_FALSE(open.empty());
        ASSERT_EQ("/" + open.back(), tag);
        open.pop_back();
      } else if (tag.back() != '/') {
        open.push_back(name);
      }
      i = end + 1;
    } else {
      ++i;
    }
  }
  EXPECT_TRUE(open.empty());
}

TEST(GraphSVG, IsWellFormedWithAnyText) {
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    std::string title = "<&\">'";
    for (int i = 0; i < 40; ++i) title += static_cast<char>(1 + random() % 255);
    if (round == 0)
      title =
          "\xF0\x8F\x80\x80\xF1\x80\x80\x80\xF4\x8F\xBF\xBF\xED\xA0\x80\xF4\x90\x80\x80\xC0\xAF\xE2\x82\xAC"
          "\xF0\x9F\x93\x88" +
          std::string(200, '\xE2');
    const Bars bars(walkBars(30));
    const Graph g(bars, title.c_str());
    g.chart(QV_CHART_CANDLES);
    qvGraphLine(g, -1, 0, &bars.high, &bars.low, QV_LINE_BAND, 0, title.c_str(), 0);
    QvGraphTheme theme = themeOf(QV_THEME_DARK);
    theme.font[0] = '"';
    std::fill(std::begin(theme.font), std::end(theme.font), '\xC3');
    ASSERT_EQ(qvGraphSetTheme(g, &theme), 0);
    expectWellFormed(svgOf(g, 600, 400));
    if (HasFatalFailure()) return;
  }
}

// Neighbours share a path only where they look alike.
TEST(GraphSVG, LinesKeepTheirLook) {
  const Bars bars(walkBars(9));
  const Graph g(bars);
  qvGraphScale(g, 0, QV_SIDE_RIGHT, QV_SCALE_LINEAR, 0, 10);
  const auto add = [&](int kind, double width, int dash, double to) {
    const QvGraphShape s = {kind, 1, 2, 7, 0, to, 0, ""};
    const QvGraphStyle style{0xFF010203, 0xFF010203, width, dash, 0, ""};
    EXPECT_EQ(qvGraphStyle(g, qvGraphShape(g, QV_GRAPH_NEW, 0, &s), 0, &style), 0);
  };
  const auto paths = [&] {
    const std::string svg = svgOf(g, 300, 200);
    int count = 0;
    for (std::size_t at = 0; (at = svg.find("#010203", at)) != std::string::npos; ++at) ++count;
    return count;
  };
  add(QV_SHAPE_TREND_LINE, 2, QV_DASH_SOLID, 8);
  add(QV_SHAPE_TREND_LINE, 2, QV_DASH_SOLID, 2);
  EXPECT_EQ(paths(), 1);
  add(QV_SHAPE_TREND_LINE, 3, QV_DASH_SOLID, 3);
  add(QV_SHAPE_TREND_LINE, 3, QV_DASH_DASHED, 4);
  add(QV_SHAPE_TREND_LINE, 3, QV_DASH_DOTTED, 5);
  EXPECT_EQ(paths(), 4);
  const std::string svg = svgOf(g, 300, 200);
  EXPECT_TRUE(svg.find("stroke-dasharray=\"5 4\"") < svg.find("stroke-dasharray=\"1.5 3\""));
  add(QV_SHAPE_TRADE, 9, QV_DASH_SOLID, 0);
  EXPECT_EQ(paths(), 5) << "a filled one";
  expectWellFormed(svgOf(g, 300, 200));
}

TEST(GraphSVG, FillsTheCallersRoomAndTheFile) {
  const Bars& bars = spx();
  QvChart* chart = qvChartOpen(&bars, "S&P 500");
  qvChartAverage(chart, QV_MA_EXPONENTIAL, 50);
  QvGraph* g = qvChartGraph(chart);
  const std::string whole = svgOf(g, 800, 500);
  EXPECT_LT(whole.size(), 300000u);
  char some[100];
  EXPECT_EQ(qvGraphTextSVG(g, 800, 500, some, 0), static_cast<int>(whole.size()));
  EXPECT_EQ(qvGraphTextSVG(g, 800, 500, some, 100), static_cast<int>(whole.size()));
  EXPECT_EQ(some, whole.substr(0, 99));
  EXPECT_EQ(qvGraphTextSVG(g, 800, 500, some, -1), -1);
  EXPECT_EQ(qvGraphTextSVG(g, 800, 500, nullptr, 1), -1);
  for (const auto& [width, height] : {std::pair(kNaN, 9.0), {9.0, 0.5}, {1.1e6, 9.0}, {9.0, 1.1e6}})
    EXPECT_EQ(qvGraphTextSVG(g, width, height, some, 100), -1);
  EXPECT_EQ(qvGraphTextSVG(nullptr, 800, 500, some, 100), -1);
  EXPECT_EQ(qvGraphTextSVG(g, 0, 500, some, 100), -1);
  const ScratchDir directory;
  EXPECT_EQ(qvGraphWriteSVG(g, (directory / "chart.svg").c_str(), 800, 500), 0);
  EXPECT_EQ(directory.read("chart.svg"), whole);
  EXPECT_EQ(qvChartWriteSVG(chart, (directory / "no/such/chart.svg").c_str(), 800, 500), -2);
  EXPECT_EQ(qvGraphWriteSVG(g, nullptr, 800, 500), -1);
  EXPECT_EQ(qvGraphWriteSVG(nullptr, "x", 800, 500), -1);
#ifdef __linux__
  EXPECT_EQ(qvGraphWriteSVG(g, "/dev/full", 800, 500), -5);
#endif
  qvChartClose(chart);
}

}  // namespace
}  // namespace qvtest
