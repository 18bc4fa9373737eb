// The graph object: numbers of items and sub-windows, formulas, lifetimes, hostile input.
#include <gtest/gtest.h>

#include <climits>

#include "charting/recording_painter.h"
#include "support/expect.h"
#include "support/spx.h"

namespace qvtest {
namespace {

TEST(GraphFormula, GoesWhereItBelongs) {
  const Bars bars(walkBars(120));
  const Graph g(bars);
  g.chart(QV_CHART_CANDLES);
  const auto opens = [&](const char* formula) {
    const int before = g.g->subWindowCount;
    g.formula(formula);
    return g.g->subWindowCount > before;
  };
  for (const char* over :
       {"sma(20)", "bollinger(2, 20)", "close * 1.05", "close - 2 * atr(14)", "(high + low) / 2",
        "highest(high, 20)[1]", "weekly(close)", "if(close > open, high, low)", "rsi(14) < 30",
        "candle(\"Hammer\")", "max(open, close)", "sma(close, 5) crosses above sma(20)"})
    EXPECT_FALSE(opens(over)) << over;
  for (const char* own : {"rsi(14)", "macd(12,26,9)", "close - open", "close / open", "close - close[10]",
                          "volume", "rsi(9)", "atr(14) * 2"})
    EXPECT_TRUE(opens(own)) << own;
  for (const char* beside : {"sma(rsi(14), 9)", "sma(volume, 20)", "macd.signal[1]"})
    EXPECT_FALSE(opens(beside)) << beside;
  Recording r;
  ASSERT_EQ(r.paint(g, 1600, 1400), 0);

  char error[200];
  EXPECT_EQ(qvGraphFormula(g, QV_GRAPH_NEW, "rsii(14)", error, sizeof error), -1);
  EXPECT_STREQ(error, "rsii: unknown, did you mean rsi? at 1");
  EXPECT_EQ(qvGraphFormula(g, QV_GRAPH_NEW, "sma($n)", error, sizeof error), -1);
  EXPECT_EQ(qvGraphFormula(g, 999, "sma(9)", nullptr, 0), -1);
}

TEST(GraphFormula, DrawsAllOutputsOfAPlaceWithTheirLegend) {
  const Bars& bars = spx();
  const Graph g(bars);
  g.chart(QV_CHART_CANDLES);
  ASSERT_EQ(qvGraphRange(g, bars.barsize - 100, bars.barsize - 1), 0);
  const int bands = g.formula("bollinger(2, 20)"), macd = g.formula("macd(12, 26, 9)"),
            rsi = g.formula("rsi(14)");
  Recording r;
  ASSERT_EQ(r.paint(g, 1200, 900), 0);
  Array upper, middle, lower;
  ASSERT_EQ(qvBollinger(&bars, &upper, &middle, &lower, 2, 20, 0), 0);
  const int last = bars.barsize - 1;
  const QvGraphTheme theme = themeOf(QV_THEME_LIGHT);
  const auto lines = r.of(Painted::Line, theme.palette[0]);
  ASSERT_EQ(lines.size(), 3u) << "two edges and the middle";
  EXPECT_NEAR(lines[0].points.back().y, g.at(last, upper[last]).y, 1e-6);
  EXPECT_NEAR(lines[1].points.back().y, g.at(last, lower[last]).y, 1e-6);
  EXPECT_EQ(r.of(Painted::Polygon).size(), 1u) << "the band's filling";
  for (const char* text :
       {"bollinger(2, 20)", "middle", "macd(12, 26, 9)", "signal", "rsi(14)", "17 Apr 2020"})
    EXPECT_TRUE(r.text(text)) << text;
  // The panel of an index from 0 to 100 shows just that, with its levels.
  EXPECT_NEAR(g.at(0, 0, 2).y, g.at(0, 100, 2).y + (g.at(0, 0, 2).y - g.at(0, 50, 2).y) * 2, 1e-6);
  EXPECT_TRUE(r.text("80") || r.text("50") || r.text("100"));

  QvGraphStyle hidden{};
  hidden.hidden = 1;
  EXPECT_EQ(qvGraphStyle(g, macd, 1, &hidden), 0);
  EXPECT_EQ(qvGraphRemove(g, rsi), 0);
  EXPECT_EQ(qvGraphRemove(g, rsi), -1);
  QvGraphStyle style{0xFF010203, 0, 3, QV_DASH_DASHED, 0, "B<b>"};
  EXPECT_EQ(qvGraphStyle(g, bands, 0, &style), 0);
  EXPECT_EQ(qvGraphStyle(g, bands, 2, &style), -1) << "band and middle";
  ASSERT_EQ(r.paint(g, 1200, 900), 0);
  EXPECT_TRUE(!r.text("signal") && !r.text("rsi(14)") && r.text("B<b>") && r.text("no values"));
  EXPECT_EQ(r.of(Painted::Line, 0xFF010203).size(), 2u);
}

TEST(GraphCalculation, DrawsWhatTakesASecondBarSetOrSeriesOfTheCallers) {
  const Bars bars(walkBars(120, 1)), other(walkBars(120, 2));
  const Graph g(bars);
  const double weights[] = {1, 0.5, 0};
  const int spread = qvGraphCalculation(g, QV_GRAPH_NEW, qvCatalogueFind("spread"), &other, nullptr, weights);
  const int bands =
      qvGraphCalculation(g, QV_GRAPH_NEW, qvCatalogueFind("bollinger"), nullptr, nullptr, nullptr);
  const QvArray* series[] = {&bars.high, &other.low};
  const int ratio = qvGraphCalculation(g, QV_GRAPH_NEW, qvCatalogueFind("ratio"), nullptr, series, nullptr);
  EXPECT_TRUE(spread == 0 && bands == 1 && ratio == 2);
  const double wilder[] = {4, 5};
  EXPECT_EQ(qvGraphCalculation(g, QV_GRAPH_NEW, qvCatalogueFind("ma"), nullptr, nullptr, wilder), 3);
  EXPECT_EQ(g.g->subWindowCount, 3) << "the bands stand with the prices";
  Recording r;
  ASSERT_EQ(r.paint(g, 1200, 900), 0);
  EXPECT_TRUE(r.text("spread(1, 0.5)") && r.text("bollinger(2, 20)") && r.text("ratio") &&
              r.text("ma(wilder, 5)"));
  const auto line = r.of(Painted::Line, themeOf(QV_THEME_LIGHT).palette[0]);
  ASSERT_EQ(line.size(), 1u);
  EXPECT_NEAR(line[0].points.back().y, g.at(119, bars.close.data[119] - 0.5 * other.close.data[119], 1).y,
              1e-6);

  const QvCatalogueEntry* entry = qvCatalogueFind("rsic");
  const QvCatalogueEntry copy = *entry;
  for (const int status : {qvGraphCalculation(nullptr, -1, entry, &other, nullptr, nullptr),
                           qvGraphCalculation(g, -1, nullptr, &other, nullptr, nullptr),
                           qvGraphCalculation(g, -1, &copy, &other, nullptr, nullptr),
                           qvGraphCalculation(g, 9, entry, &other, nullptr, nullptr),
                           qvGraphCalculation(g, -1, entry, nullptr, nullptr, nullptr),
                           qvGraphCalculation(g, -1, qvCatalogueFind("qvADLine"), nullptr, nullptr, nullptr)})
    EXPECT_EQ(status, -1);
  EXPECT_EQ(g.g->subWindowCount, 3);
}

TEST(Graph, APointFindsTheItemThatIsDrawnThere) {
  const Bars bars(walkBars(60));
  const Array rising(shaped(Shape::Rising, 60));
  const Graph g(bars);
  for (int k = 0; k < 4; ++k) qvGraphSubWindow(g, QV_GRAPH_NEW, nullptr, 3);
  const int candles = g.chart(QV_CHART_CANDLES), volume = g.chart(QV_CHART_VOLUME, 1),
            area = g.chart(QV_CHART_AREA, 2), columns = g.line(rising, QV_LINE_HISTOGRAM, nullptr, 3),
            zone = qvGraphZone(g, QV_GRAPH_NEW, 4, 10, 20, QV_SIDE_RIGHT),
            level = qvGraphZone(g, QV_GRAPH_NEW, 4, 30, 30, QV_SIDE_RIGHT);
  const QvGraphStyle wide{0, 0, 3, QV_DASH_DASHED, 0, ""};
  EXPECT_EQ(qvGraphStyle(g, level, 0, &wide), 0);
  ASSERT_EQ(qvGraphScale(g, 4, QV_SIDE_RIGHT, QV_SCALE_LINEAR, 0, 40), 0);
  Recording r;
  ASSERT_EQ(r.paint(g, 900, 900), 0);
  const auto itemAt = [&](double price, int subWindow) {
    const QvPoint p = g.at(30, price, subWindow);
    return g.hit(p.x, p.y).item;
  };
  EXPECT_EQ(itemAt((bars.high.data[30] + bars.low.data[30]) / 2, 0), candles);
  EXPECT_EQ(itemAt(bars.volume.data[30] / 2, 1), volume);
  EXPECT_EQ(itemAt(bars.close.data[30], 2), area);
  EXPECT_EQ(itemAt(rising[30] / 2, 3), columns);
  EXPECT_EQ(itemAt(15, 4), zone);
  EXPECT_EQ(itemAt(30, 4), level);
  EXPECT_EQ(itemAt(38, 4), -1);
  QvGraphStyle hidden{};
  hidden.hidden = 1;
  EXPECT_EQ(qvGraphStyle(g, zone, 0, &hidden), 0);
  EXPECT_EQ(itemAt(15, 4), -1) << "hidden";
}

TEST(Graph, RefersToTheCallersRecordsOrCopiesThem) {
  Bars bars(walkBars(50));
  Array a(shaped(Shape::Rising, 50));
  const Graph refers(bars), copies(bars, nullptr, QV_GRAPH_COPY);
  EXPECT_EQ(qvGraphLine(refers, QV_GRAPH_NEW, 0, &a, nullptr, QV_LINE_LINE, 0, "", QV_GRAPH_REFER), 0);
  EXPECT_EQ(qvGraphLine(copies, QV_GRAPH_NEW, 0, &a, nullptr, QV_LINE_LINE, 0, "", QV_GRAPH_COPY), 0);
  a.data[49] = 1000;
  Recording r;
  ASSERT_EQ(r.paint(refers, 900, 600), 0);
  EXPECT_TRUE(r.text("1000.0"));
  a.reset();
  bars.reset();
  ASSERT_EQ(r.paint(copies, 900, 600), 0);
  EXPECT_TRUE(r.text("50.00"));
  ASSERT_EQ(r.paint(refers, 900, 600), 0) << "the records are empty now";
  EXPECT_TRUE(r.text("no bars"));
}

TEST(Graph, HostileDataGivesAPicture) {
  const auto flat = closingAt(Items(9, 5.0));
  std::vector<std::vector<Bar>> sets = {{}, {{1, 2, 0, 1}}, flat, closingAt(Items(5, 0.0)), walkBars(5)};
  for (const double wild : {kNaN, kInf, -kInf, 1e308, -1e308, 1e-308, -5.0, 1e300}) {
    sets.push_back(closingAt(Items(4, wild)));
    sets.push_back(walkBars(20));
    for (int i = 0; i < 20; i += 3) {
      Bar& b = sets.back()[static_cast<std::size_t>(i)];
      (i % 2 ? b.high : b.close) = (i % 4 ? b.low : b.volume) = b.date = wild;
    }
  }
  for (const auto& set : sets) {
    const Bars bars(set);
    const Array shorter(shaped(Shape::Walk, 2)), none, wild({kNaN, 1e308, -1e308, 1e-320, 0, -0.0}, INT_MAX);
    for (const int scale : {QV_SCALE_LINEAR, QV_SCALE_LOG, QV_SCALE_PERCENT}) {
      const Graph g(bars, "\xFF<&\"\x01");
      for (int kind = QV_CHART_CANDLES; kind <= QV_CHART_HEIKIN_ASHI; ++kind) g.chart(kind);
      for (const Array* a : {&shorter, &none, &wild})
        for (int kind = QV_LINE_LINE; kind <= QV_LINE_STEPS; ++kind)
          g.line(*a, kind, kind == QV_LINE_BAND ? &shorter : nullptr);
      for (int kind = QV_SHAPE_TREND_LINE; kind <= QV_SHAPE_REGRESSION; ++kind) {
        QvGraphShape s = {kind, INT_MIN, -1e300, INT_MAX, INT_MIN, 1e300, kNaN, "x"};
        EXPECT_GE(qvGraphShape(g, QV_GRAPH_NEW, 0, &s), 0);
        s.price = kNaN;
        EXPECT_EQ(qvGraphShape(g, QV_GRAPH_NEW, 0, &s) < 0, kind != QV_SHAPE_REGRESSION);
      }
      qvGraphScale(g, 0, QV_SIDE_RIGHT, scale, 0, 0);
      for (const double size : {1.0, 3.0, 77.0, 400.0, 100000.0}) {
        Recording r;
        ASSERT_EQ(r.paint(g, size, size / 2 + 0.5), 0);
        for (const Painted& p : r.all)
          for (const QvPoint& q : p.points) ASSERT_TRUE(std::isfinite(q.x) && std::isfinite(q.y));
        g.hit(size / 2, size / 4);
      }
      Recording r;
      for (const auto& [first, last] :
           {std::pair(-(1 << 30), 1 << 30), {1 << 29, 1 << 29}, {-3, -2}, {0, 0}}) {
        EXPECT_EQ(qvGraphRange(g, first, last), 0);
        EXPECT_EQ(r.paint(g, 300, 200), 0);
      }
    }
  }
}

TEST(Graph, WrongArgumentsAreRefused) {
  const Bars bars(walkBars(5));
  const Graph g(bars);
  Recording r;
  QvGraphHit hit;
  QvPoint point;
  EXPECT_EQ(qvGraphHit(g, 1, 1, &hit), -1) << "not painted yet";
  EXPECT_EQ(qvGraphPosition(g, 0, 0, 1, 1, &point), -1);
  for (const double size : {0.0, -1.0, kNaN, kInf, 1.1e6}) EXPECT_EQ(r.paint(g, size, 100), -1);
  QvPainter broken = r.painter;
  broken.extent = nullptr;
  QvGraphShape shape{};
  shape.kind = 8;
  QvGraphStyle style{};
  const Array a(Items{1, 2});
  for (const int status : {qvGraphPaint(g, &broken, 100, 100),
                           qvGraphPaint(nullptr, &r.painter, 100, 100),
                           qvGraphPaint(g, nullptr, 9, 9),
                           qvGraphSubWindow(g, 1, "", 1),
                           qvGraphSubWindow(g, -1, "", kNaN),
                           qvGraphSubWindow(g, -2, "", 1),
                           qvGraphChart(g, -1, 1, nullptr, 0, 0, 0),
                           qvGraphChart(g, 0, 0, nullptr, 0, 0, 0),
                           qvGraphChart(g, -1, 0, nullptr, 7, 0, 0),
                           qvGraphLine(g, -1, 0, nullptr, nullptr, 0, 0, "", 0),
                           qvGraphLine(g, -1, 0, &a, nullptr, QV_LINE_BAND, 0, "", 0),
                           qvGraphLine(g, -1, 0, &a, &a, QV_LINE_LINE, 0, "", 0),
                           qvGraphLine(g, -1, 0, &a, nullptr, 0, 2, "", 0),
                           qvGraphZone(g, -1, 0, 2, 1, 0),
                           qvGraphZone(g, -1, 0, kNaN, 1, 0),
                           qvGraphShape(g, -1, 0, &shape),
                           qvGraphShape(g, -1, 0, nullptr),
                           qvGraphStyle(g, 0, 0, &style),
                           qvGraphRemove(g, INT_MIN),
                           qvGraphScale(g, 0, 0, QV_SCALE_LOG, -1, 1),
                           qvGraphScale(g, 0, 2, 0, 0, 0),
                           qvGraphRange(g, 2, 1),
                           qvGraphRange(g, INT_MIN, 0),
                           qvGraphRangeDates(g, kNaN, 1),
                           qvGraphCursor(g, -2),
                           qvGraphTheme(2, nullptr),
                           qvGraphSetTheme(g, nullptr),
                           qvGraphFormula(nullptr, -1, "close", nullptr, 0),
                           qvGraphPaintDC(g, nullptr, 9, 9),
                           qvChartAverage(nullptr, 0, 9),
                           qvChartVolume(nullptr, 1),
                           qvChartPaint(nullptr, &r.painter, 9, 9)})
    EXPECT_EQ(status, -1);
  EXPECT_FALSE(qvGraphOpen(nullptr, "", 0) || qvChartOpen(nullptr, "") || qvChartGraph(nullptr));
  qvGraphClose(nullptr);
  qvChartClose(nullptr);
  int made = 1;
  while (qvGraphSubWindow(g, QV_GRAPH_NEW, "", 1) == made) ++made;
  EXPECT_EQ(made, 64);
  EXPECT_EQ(qvGraphFormula(g, QV_GRAPH_NEW, "rsi(5)", nullptr, 0), -1) << "no room for its panel";
  EXPECT_EQ(r.paint(g, 300, 200), 0);
#ifndef _WIN32
  EXPECT_EQ(qvGraphPaintDC(g, &made, 9, 9), -10);
#endif
}

// Everything that allocates, in one go.
int buildAndPaint(const Bars& bars, const Bars& other, const QvPainter& painter) {
  QvGraph* g = qvGraphOpen(&bars, "title", QV_GRAPH_COPY);
  if (!g) return -3;
  const auto build = [&] {
    for (const int kind : {QV_CHART_CANDLES, QV_CHART_AREA, QV_CHART_HEIKIN_ASHI})
      if (const int s = qvGraphChart(g, -1, 0, kind == 1 ? &other : nullptr, kind, 0, QV_GRAPH_COPY); s < 0)
        return s;
    if (const int s = qvGraphLine(g, -1, 0, &bars.high, &bars.low, QV_LINE_BAND, 0, "", QV_GRAPH_COPY); s < 0)
      return s;
    for (const char* formula : {"bollinger(2, 5)", "rsi(5)"})
      if (const int s = qvGraphFormula(g, -1, formula, nullptr, 0); s < 0) return s;
    if (const int s = qvGraphCalculation(g, -1, qvCatalogueFind("spread"), &other, nullptr, nullptr); s < 0)
      return s;
    return qvGraphPaint(g, &painter, 400, 300);
  };
  const int status = build();
  qvGraphClose(g);
  return status;
}

TEST(Graph, ExhaustedMemoryAndFailingCallbacksEndWithTheirCode) {
  const Bars bars(walkBars(30)), other(walkBars(20, 4));
  Recording r;
  ASSERT_EQ(buildAndPaint(bars, other, r.painter), 0);
  const int calls = r.calls;
  for (const int answer : {-7, 4})
    for (int k = 0; k < calls; ++k) {
      r.calls = 0;
      r.failing = k;
      r.answer = answer;
      ASSERT_EQ(buildAndPaint(bars, other, r.painter), answer < 0 ? answer : -5) << k;
      EXPECT_EQ(r.calls, k + 1) << "nothing is asked of a painter that failed";
    }
  r.failing = -1;
  const long before = qv::memory::liveBlocks();
  for (long k = 1;; ++k) {
    qv::memory::failAllocation(k);
    const int status = buildAndPaint(bars, other, r.painter);
    qv::memory::failAllocation(0);
    if (status == 0) break;
    EXPECT_TRUE(status == -3 || status == -1) << k << ": " << status;
    ASSERT_LT(k, 1000);
  }
  EXPECT_EQ(qv::memory::liveBlocks(), before);
}

TEST(Chart, ShowsAveragesAndVolumes) {
  const Bars bars(walkBars(60));
  QvChart* chart = qvChartOpen(&bars, "simple");
  ASSERT_TRUE(chart);
  EXPECT_EQ(qvChartAverage(chart, QV_MA_SIMPLE, 10), 0);
  EXPECT_EQ(qvChartAverage(chart, QV_MA_SIMPLE, 0), -1);
  EXPECT_EQ(qvChartAverage(chart, 8, 10), -1);
  Recording r;
  for (const bool shown : {true, false, true}) {
    EXPECT_EQ(qvChartVolume(chart, shown), 0);
    EXPECT_EQ(qvChartPaint(chart, &r.painter, 800, 500), 0);
    EXPECT_EQ(r.text("Volume") != nullptr, shown);
    EXPECT_TRUE(r.text("SMA(10)") && r.text("simple"));
    r.all.clear();
  }
  EXPECT_EQ(qvGraphCursor(qvChartGraph(chart), 3), 0);
  qvChartClose(chart);
}

}  // namespace
}  // namespace qvtest
