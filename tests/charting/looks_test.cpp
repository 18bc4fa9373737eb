// Styles, themes and the legend: own colours and widths, what is hidden, what a narrow picture leaves out.
#include <gtest/gtest.h>

#include <algorithm>

#include "charting/recording_painter.h"

namespace qvtest {
namespace {

constexpr uint32_t kOwn = 0xFF112233, kOwn2 = 0xFF445566;

struct GraphLooks : testing::Test {
  const Bars bars{walkBars(60)};
  const Array ones{Items(60, 100.0)};
  const Array signs = [] {
    Items items;
    for (int i = 0; i < 60; ++i) items.push_back(i % 3 - 1.0);
    return Array(items);
  }();
  const QvGraphTheme theme = themeOf(QV_THEME_LIGHT);

  // What is painted of an item in colours of its own.
  std::vector<Painted> styled(const Graph& g, int item, double width = 0, int dash = QV_DASH_SOLID) const {
    const QvGraphStyle style{kOwn, kOwn2, width, dash, 0, ""};
    EXPECT_EQ(qvGraphStyle(g, item, 0, &style), 0);
    Recording r;
    EXPECT_EQ(r.paint(g, 900, 600), 0);
    std::vector<Painted> found;
    const auto isOwn = [](uint32_t c) {
      return (c & 0xFFFFFF) == (kOwn & 0xFFFFFF) || (c & 0xFFFFFF) == (kOwn2 & 0xFFFFFF);
    };
    for (const Painted& p : r.all)
      if (isOwn(p.colour) && p.clip.right < 899) found.push_back(p);
    return found;
  }
};

TEST_F(GraphLooks, ItemsHaveTheirOwnColoursAndWidths) {
  const auto all = [](const std::vector<Painted>& found, auto test) {
    return !found.empty() && std::all_of(found.begin(), found.end(), test);
  };
  const auto isFirst = [](const Painted& p) { return (p.colour & 0xFFFFFF) == (kOwn & 0xFFFFFF); };
  const Graph g(bars);
  g.chart(QV_CHART_LINE);
  for (const int kind : {QV_CHART_CANDLES, QV_CHART_VOLUME}) {
    const Graph prices(bars);
    const auto found = styled(prices, prices.chart(kind));
    for (const Painted& p : found) {
      const int bar = prices.hit((p.box.left + p.box.right) / 2, p.box.top).bar;
      if (p.kind == Painted::Rectangle) {
        EXPECT_EQ(isFirst(p), bars.close.data[bar] >= bars.open.data[bar]);
      }
    }
    EXPECT_GE(found.size(), 60u);
  }
  const Graph area(bars);
  auto found = styled(area, area.chart(QV_CHART_AREA), 4, QV_DASH_DOTTED);
  ASSERT_GE(found.size(), 2u);
  EXPECT_TRUE(found[0].kind == Painted::Polygon && !isFirst(found[0]));
  EXPECT_TRUE(found[1].kind == Painted::Line && isFirst(found[1]) && found[1].width == 4 &&
              found[1].dash == QV_DASH_DOTTED);
  Bars gaps(walkBars(60));
  gaps.high.data[3] = kNaN;
  const Graph figures(gaps);
  EXPECT_TRUE(all(styled(figures, figures.chart(QV_CHART_PNF), 3),
                  [](const Painted& p) { return p.kind != Painted::Line || p.width == 3; }));

  EXPECT_TRUE(all(styled(g, g.line(ones, QV_LINE_DOTS), 5), [&](const Painted& p) {
    return p.kind != Painted::Polygon || std::fabs(p.box.right - p.box.left - 5) < 1e-9;
  }));
  const Graph columns(bars);
  found = styled(columns, columns.line(signs, QV_LINE_HISTOGRAM));
  const double zero = columns.at(0, 0).y;
  EXPECT_EQ(
      std::count_if(found.begin(), found.end(), [](const auto& p) { return p.kind == Painted::Rectangle; }),
      40);
  for (const Painted& p : found)
    if (p.kind == Painted::Rectangle) {
      EXPECT_EQ(isFirst(p), p.box.top < zero - 1);
    }
  const Graph bands(bars);
  found = styled(bands, bands.line(bars.high, QV_LINE_BAND, &bars.low));
  ASSERT_FALSE(found.empty());
  EXPECT_TRUE(found[0].kind == Painted::Polygon && !isFirst(found[0]));
  const Graph zones(bars);
  zones.chart(QV_CHART_LINE);
  found = styled(zones, qvGraphZone(zones, QV_GRAPH_NEW, 0, 99, 100, QV_SIDE_RIGHT));
  ASSERT_EQ(found.size(), 1u);
  EXPECT_TRUE(found[0].kind == Painted::Rectangle && !isFirst(found[0]));
  const int level = qvGraphZone(zones, QV_GRAPH_NEW, 0, 101, 101, QV_SIDE_RIGHT);
  Recording r;
  ASSERT_EQ(r.paint(zones, 900, 600), 0);
  EXPECT_EQ(r.of(Painted::Line, theme.zone).size(), 1u);
  found = styled(zones, level, 3);
  EXPECT_TRUE(std::any_of(found.begin(), found.end(),
                          [](const auto& p) { return p.kind == Painted::Line && p.width == 3; }));
  QvGraphShape shape = {QV_SHAPE_RECTANGLE, 10, 99, 20, 0, 100, 0, ""};
  found = styled(g, qvGraphShape(g, 0, 0, &shape));
  EXPECT_TRUE(std::any_of(found.begin(), found.end(),
                          [&](const auto& p) { return p.kind == Painted::Rectangle && !isFirst(p); }));
  shape.kind = QV_SHAPE_TRADE;
  found = styled(g, qvGraphShape(g, 0, 0, &shape), 15);
  EXPECT_TRUE(std::any_of(found.begin(), found.end(), [&](const auto& p) {
    return p.kind == Painted::Polygon && isFirst(p) && std::fabs(p.box.bottom - p.box.top - 15) < 1e-9;
  }));
}

// Up below the lows and down above the highs, at the edges where a bar has none; without prices all at the
// foot.
TEST_F(GraphLooks, SignalsStandBesideThePrices) {
  Bars gaps(walkBars(60));
  gaps.low.data[5] = gaps.high.data[3] = kNaN;
  for (const bool withPrices : {true, false}) {
    const Graph g(gaps);
    if (withPrices) g.chart(QV_CHART_BARS);
    qvGraphScale(g, 0, QV_SIDE_RIGHT, QV_SCALE_LINEAR, 80, 120);
    const int item = g.line(signs, QV_LINE_SIGNAL);
    Recording plain;
    ASSERT_EQ(plain.paint(g, 900, 600), 0);
    EXPECT_EQ(plain.of(Painted::Polygon, theme.up).size(), 20u);
    EXPECT_EQ(plain.of(Painted::Polygon, theme.down).size(), 20u);
    const auto marks = styled(g, item, 11);
    int ups = 0;
    for (const Painted& p : marks) {
      if (p.kind != Painted::Polygon) continue;
      EXPECT_NEAR(p.box.bottom - p.box.top, 11, 1e-9);
      const bool up = p.colour == kOwn;
      ups += up;
      const int bar = g.hit((p.box.left + p.box.right) / 2, 300).bar;
      EXPECT_EQ(signs[bar], up ? 1.0 : -1.0);
      const double price = up ? gaps.low.data[bar] : gaps.high.data[bar];
      const double wanted = !withPrices || price != price
                                ? (up || !withPrices ? p.clip.bottom - 15 : p.clip.top + 15)
                                : g.at(bar, price).y + (up ? 4 : -4);
      if (withPrices && price != price) {
        EXPECT_TRUE(p.clip.holds(p.box, 0));
      } else {
        EXPECT_NEAR(p.points[0].y, wanted, 1e-6) << bar;
      }
    }
    EXPECT_EQ(ups, 20);
    EXPECT_EQ(g.hit(g.at(5, 100).x, 590).item, -1);
  }
}

TEST_F(GraphLooks, WhatIsHiddenIsNowhere) {
  const Graph empty(bars), g(bars);
  for (const QvGraph* graph : {empty.g, g.g}) {
    auto* set = const_cast<QvGraph*>(graph);
    qvGraphSubWindow(set, QV_GRAPH_NEW, "below", 1);
    for (const int subWindow : {0, 1}) qvGraphScale(set, subWindow, QV_SIDE_RIGHT, QV_SCALE_LINEAR, 50, 150);
  }
  for (int kind = QV_CHART_CANDLES; kind <= QV_CHART_HEIKIN_ASHI; ++kind) g.chart(kind);
  for (int kind = QV_LINE_LINE; kind <= QV_LINE_STEPS; ++kind)
    g.line(signs, kind, kind == QV_LINE_BAND ? &ones : nullptr);
  EXPECT_GE(qvGraphFormula(g, 1, "rsi(5)", nullptr, 0), 0);
  qvGraphZone(g, QV_GRAPH_NEW, 0, 95, 99, QV_SIDE_RIGHT);
  for (int kind = QV_SHAPE_TREND_LINE; kind <= QV_SHAPE_REGRESSION; ++kind) {
    const QvGraphShape s = {kind, 10, 100, 50, 1, 104, 1.5, "shape"};
    EXPECT_GE(qvGraphShape(g, QV_GRAPH_NEW, 0, &s), 0);
  }
  EXPECT_NE(svgOf(g, 700, 500), svgOf(empty, 700, 500));
  QvGraphStyle hidden{};
  hidden.hidden = 1;
  for (int item = 0; item < g.g->itemCount; ++item) ASSERT_EQ(qvGraphStyle(g, item, 0, &hidden), 0);
  EXPECT_EQ(svgOf(g, 700, 500), svgOf(empty, 700, 500));
}

TEST_F(GraphLooks, ARecordOfZerosIsTheUsualTheme) {
  const Graph usual(bars, "title"), g(bars, "title");
  for (const Graph* each : {&usual, &g}) each->chart(QV_CHART_CANDLES), each->line(ones);
  QvGraphTheme zeros{};
  ASSERT_EQ(qvGraphSetTheme(g, &zeros), 0);
  EXPECT_EQ(svgOf(g, 700, 500), svgOf(usual, 700, 500));
  zeros.fontSize = zeros.lineWidth = kNaN;
  ASSERT_EQ(qvGraphSetTheme(g, &zeros), 0);
  EXPECT_EQ(svgOf(g, 700, 500), svgOf(usual, 700, 500));
  zeros.fontSize = zeros.lineWidth = 1e9;
  ASSERT_EQ(qvGraphSetTheme(g, &zeros), 0);
  EXPECT_TRUE(g.g->theme.fontSize == 200 && g.g->theme.lineWidth == 200);
  QvGraphTheme theme;
  for (const int status : {qvGraphTheme(2, &theme), qvGraphTheme(-1, &theme), qvGraphTheme(0, nullptr),
                           qvGraphSetTheme(nullptr, &zeros)})
    EXPECT_EQ(status, -1);
  // A width that is none is the theme's.
  for (const double width : {kNaN, kInf, -1.0}) {
    const QvGraphStyle style{0, 0, width, 0, 0, ""};
    ASSERT_EQ(qvGraphStyle(g, 1, 0, &style), 0);
    EXPECT_EQ(double{g.g->item(1).parts[0].style.width}, 0.0);  // of a packed record, so by value
  }
}

TEST_F(GraphLooks, TheLegendNamesWhatFits) {
  const Graph g(bars, "\xC3\xA9\xC3\xA9\xC3\xA9 title");
  QvGraphStyle named{};
  std::strcpy(named.name, "own name");
  ASSERT_EQ(qvGraphStyle(g, g.chart(QV_CHART_CANDLES), 0, &named), 0);
  qvGraphLine(g, QV_GRAPH_NEW, 0, &bars.high, nullptr, QV_LINE_LINE, 0,
              "a name that is long enough for no narrow row", 0);
  Recording r;
  ASSERT_EQ(r.paint(g, 900, 400), 0);
  EXPECT_TRUE(r.text("own name") && r.text("a name that is long enough for no narrow row"));
  for (const double width : {12.0, 30.0, 60.0, 120.0}) {
    ASSERT_EQ(r.paint(g, width, 400), 0);
    EXPECT_FALSE(r.text("a name that is long enough for no narrow row"));
    for (const Painted& p : r.of(Painted::Text)) EXPECT_LE(p.box.right, width + 0.01) << p.text;
  }
  // A cursor behind the last bar is no bar: the legend shows the last one, and there is no cross-hair.
  ASSERT_EQ(r.paint(g, 900, 400), 0);
  const std::size_t texts = r.of(Painted::Text).size();
  ASSERT_EQ(qvGraphCursor(g, 75), 0);
  ASSERT_EQ(qvGraphRange(g, 40, 80), 0);
  ASSERT_EQ(r.paint(g, 900, 400), 0);
  EXPECT_TRUE(r.of(Painted::Line, theme.cursor).empty());
  EXPECT_GT(texts, 5u);
  ASSERT_EQ(qvGraphCursor(g, 50), 0);
  ASSERT_EQ(r.paint(g, 60, 400), 0);
  EXPECT_EQ(r.of(Painted::Line, theme.cursor).size(), 1u) << "with no room for its date";
  // On the left scale alone, and on none.
  const Graph left(bars), none(bars);
  qvGraphLine(left, QV_GRAPH_NEW, 0, &ones, nullptr, QV_LINE_LINE, QV_SIDE_LEFT, "left", 0);
  ASSERT_EQ(r.paint(left, 400, 300), 0);
  EXPECT_FALSE(r.text("no values"));
  ASSERT_EQ(r.paint(none, 400, 300), 0);
  EXPECT_TRUE(r.text("no values"));
  ASSERT_EQ(r.paint(none, 40, 300), 0);
  EXPECT_FALSE(r.text("no values")) << "too narrow";
}

TEST_F(GraphLooks, TextsAreLeftOutWhereOthersStand) {
  const Bars many(walkBars(4000));
  const Graph wide(many);
  wide.chart(QV_CHART_LINE);
  for (int i = 0; i < 300; ++i) {
    const QvGraphShape s = {QV_SHAPE_TEXT, 10 + i * 13, many.close.data[10 + i * 13], 0, 0, 0, 0, "x"};
    ASSERT_GE(qvGraphShape(wide, QV_GRAPH_NEW, 0, &s), 0);
  }
  const QvGraphShape empty = {QV_SHAPE_TEXT, 10, 100, 0, 0, 0, 0, ""};
  ASSERT_GE(qvGraphShape(wide, QV_GRAPH_NEW, 0, &empty), 0);
  Recording r;
  ASSERT_EQ(r.paint(wide, 9000, 3000), 0);
  const auto texts = r.of(Painted::Text);
  const auto notes = std::count_if(texts.begin(), texts.end(), [](const auto& p) { return p.text == "x"; });
  EXPECT_TRUE(notes > 200 && notes < 256) << notes;
}

// Without prices of its own a regression is that of the graph's closes.
TEST_F(GraphLooks, ARegressionWithoutAChart) {
  const Graph g(bars);
  qvGraphScale(g, 0, QV_SIDE_RIGHT, QV_SCALE_LINEAR, 80, 120);
  qvGraphSubWindow(g, QV_GRAPH_NEW, "", 1);
  g.chart(QV_CHART_VOLUME);
  g.chart(QV_CHART_CANDLES, 1);
  for (const double deviations : {2.0, 0.0, -1.0, kNaN, kInf}) {
    const QvGraphShape s = {QV_SHAPE_REGRESSION, 10, kNaN, 50, 0, kNaN, deviations, ""};
    const auto lines = styled(g, qvGraphShape(g, g.g->itemCount > 2 ? 2 : QV_GRAPH_NEW, 0, &s));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_NEAR(lines[1].points[0].y - lines[0].points[0].y,
                g.at(10, 100 + 2 * qvStdErr(&bars.close, 10, 50)).y - g.at(10, 100).y, 1e-6);
  }
}

}  // namespace
}  // namespace qvtest
