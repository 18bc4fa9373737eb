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
        "candle(\"Hammer\")", "max(open, close)", "sma(close, 5) crosses above sma(20)", "2 * close",
        "volume + close", "crossover(sma(5), sma(9))", "close - atr(5)"})
    EXPECT_FALSE(opens(over)) << over;
  for (const char* own :
       {"rsi(14)", "macd(12,26,9)", "close - open", "close / open", "close - close[10]", "volume", "rsi(9)",
        "atr(14) * 2", "100 / close", "-close", "volume - close", "rsi(14) + atr(9)"})
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
  EXPECT_EQ(qvGraphFormula(g, 999, "sma(9)", error, 0), -1);
  // A named output is a line by itself, an edge of a band, too; and goes where it is told.
  const int signal = g.formula("macd(3, 5, 2).signal"), edge = g.formula("bollinger(2, 20).upper"),
            told = qvGraphFormula(g, 2, "sma(9)", nullptr, 0);
  for (const int item : {signal, edge, told}) EXPECT_EQ(g.g->item(item).partCount, 1);
  EXPECT_EQ(g.g->item(edge).parts[0].form, QV_LINE_LINE);
  EXPECT_EQ(g.g->item(told).subWindow, 2);
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

TEST(GraphCalculation, EveryEntryIsDrawnWithAllItsOutputsOfAPlace) {
  const Bars bars(walkBars(200, 1)), other(walkBars(200, 2));
  const Bars start(walkBars(2, 1));
  const QvArray* inputs[] = {&bars.close, &bars.open, &bars.high, &bars.low};
  for (int i = 0; i < qvCatalogueSize(); ++i) {
    const QvCatalogueEntry& e = *qvCatalogueItem(i);
    SCOPED_TRACE(e.name);
    const Graph g(bars);
    ASSERT_EQ(qvGraphCalculation(g, QV_GRAPH_NEW, &e, &other, inputs, nullptr), 0);
    const QvCatalogueOutput& main = e.outputs[e.mainOutput];
    const qv::charting::Item& item = g.g->item(0);
    EXPECT_EQ(item.subWindow == 0, main.place == QV_PLACE_PRICE || main.style == QV_STYLE_SIGNAL);
    int wanted = 0, drawn = 0;
    for (int k = 0; k < e.outputCount; ++k)
      wanted += e.outputs[k].place == main.place &&
                (e.outputs[k].style == QV_STYLE_SIGNAL) == (main.style == QV_STYLE_SIGNAL);
    for (int k = 0; k < item.partCount; ++k) drawn += 1 + (item.parts[k].other.record != nullptr);
    EXPECT_EQ(drawn, wanted);
    Recording r;
    ASSERT_EQ(r.paint(g, 900, 600), 0);
    const auto texts = r.of(Painted::Text);
    EXPECT_TRUE(std::any_of(texts.begin(), texts.end(),
                            [&](const Painted& p) { return p.text.starts_with(e.shortName); }));
    // Of too few bars it has no values.
    const Graph few(start);
    ASSERT_EQ(qvGraphCalculation(few, QV_GRAPH_NEW, &e, &other, inputs, nullptr), 0);
    EXPECT_EQ(r.paint(few, 900, 600), 0);
  }
}

TEST(GraphCalculation, TooFewBarsAndLongCalls) {
  const Bars bars(walkBars(5));
  const Graph g(bars);
  g.chart(QV_CHART_CANDLES);
  EXPECT_EQ(qvGraphCalculation(g, 0, qvCatalogueFind("rsi"), nullptr, nullptr, nullptr), 1);
  Recording r;
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_TRUE(r.text("rsi(14)") && r.text("no values"));
  const double odd[] = {-1.234567e-100, -1.234567e-100, -1.234567e-100, -1.234567e-100, 1};
  EXPECT_EQ(qvGraphCalculation(g, 0, qvCatalogueFind("scale"), nullptr, nullptr, odd), 2);
  EXPECT_EQ(std::strlen(g.g->item(2).name), sizeof g.g->item(2).name - 1) << "cut";
  // No date in common.
  Bars others(walkBars(5));
  for (int i = 0; i < 5; ++i) others.date.data[i] += 0.5;
  EXPECT_EQ(qvGraphCalculation(g, 0, qvCatalogueFind("compstrength"), &others, nullptr, nullptr), -9);
  const QvArray* some[] = {nullptr, &bars.open};
  EXPECT_EQ(qvGraphCalculation(g, 0, qvCatalogueFind("ratio"), nullptr, some, nullptr), 3);
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

// A line is met between its points, too, a band at both its edges; beside a shape there is none.
TEST(Graph, APointFindsLinesBetweenTheirBars) {
  const Bars bars(walkBars(20));
  Items items;
  for (int i = 0; i < 20; ++i) items.push_back(i % 2 ? 90.0 : 110.0);
  const Array zigzag(items), low(Items(20, 80.0));
  const Graph g(bars);
  qvGraphScale(g, 0, QV_SIDE_RIGHT, QV_SCALE_LINEAR, 60, 120);
  const int line = g.line(zigzag), band = g.line(zigzag, QV_LINE_BAND, &low);
  const QvGraphShape box = {QV_SHAPE_RECTANGLE, 5, 62, 8, 0, 70, 0, ""},
                     same = {QV_SHAPE_RAY, 12, 65, 12, 0, 65, 0, ""};
  const int rectangle = qvGraphShape(g, QV_GRAPH_NEW, 0, &box), ray = qvGraphShape(g, QV_GRAPH_NEW, 0, &same);
  Recording r;
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  const auto itemAt = [&](double bar, double price) {
    const QvPoint a = g.at(0, price), b = g.at(1, price);
    return g.hit(a.x + bar * (b.x - a.x), a.y).item;
  };
  EXPECT_EQ(qvGraphRemove(g, band), 0);
  for (const double part : {0.0, 0.3, 0.5, 0.7, 1.0})
    EXPECT_EQ(itemAt(8 + part, 110 - 20 * part), line) << part;
  EXPECT_EQ(itemAt(8.5, 110), -1);
  ASSERT_EQ(qvGraphLine(g, line, 0, &zigzag, &low, QV_LINE_BAND, QV_SIDE_RIGHT, "", 0), line);
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_EQ(itemAt(7.2, 80), line) << "the other edge";
  EXPECT_TRUE(itemAt(6.5, 66) == rectangle && itemAt(3, 66) == -1 && itemAt(11, 66) == -1);
  EXPECT_TRUE(itemAt(12, 65) == ray && itemAt(14, 65) == -1) << "of no length";
  // Beside the picture's plot.
  const Box plot = r.of(Painted::Line, themeOf(QV_THEME_LIGHT).palette[0])[0].clip;
  for (const auto& [x, y] : {std::pair(plot.left - 1, 300.0),
                             {plot.right + 1, 300.0},
                             {400.0, plot.top - 1},
                             {400.0, plot.bottom + 1}})
    EXPECT_EQ(g.hit(x, y).subWindow, -1);
  EXPECT_EQ(g.hit(plot.right + 1, 300).bar, -1);
  QvGraphHit hit;
  for (const int status : {qvGraphHit(nullptr, 1, 1, &hit), qvGraphHit(g, 1, 1, nullptr),
                           qvGraphHit(g, kNaN, 1, &hit), qvGraphHit(g, 1, kInf, &hit)})
    EXPECT_EQ(status, -1);
}

// What is added, replaced or removed between two paintings is met as far as it is known.
TEST(Graph, PointsBetweenTwoPaintings) {
  const Bars bars(walkBars(20));
  const Graph g(bars);
  const int item = g.chart(QV_CHART_CANDLES);
  Recording r;
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  const QvPoint p = g.at(7, bars.close.data[7]);
  EXPECT_EQ(g.hit(p.x, p.y).item, item);
  ASSERT_EQ(qvGraphChart(g, item, 0, nullptr, QV_CHART_HEIKIN_ASHI, 0, 0), item);
  EXPECT_EQ(g.hit(p.x, p.y).item, item) << "not smoothed yet";
  ASSERT_EQ(qvGraphRemove(g, item), 0);
  EXPECT_EQ(g.hit(p.x, p.y).item, -1);
  ASSERT_EQ(qvGraphSubWindow(g, QV_GRAPH_NEW, "", 1), 1);
  const QvPoint unknown = g.at(7, 100, 1);
  EXPECT_TRUE(unknown.x == p.x && unknown.y != unknown.y);
  g.line(bars.close);
  ASSERT_EQ(qvGraphRange(g, -(1 << 30), 1 << 30), 0);
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_EQ(g.hit(600, 300).item, -1) << "a million bars under it, none with a value";
}

TEST(Graph, LaysOrCopiesOtherBarsByTheirDates) {
  const Bars bars(walkBars(30)), same(walkBars(30)), later(walkBars(31, 2));
  std::vector<Bar> moved = walkBars(30, 2);
  moved[29].date += 1;
  const Bars nearly(moved), shorter(std::vector<Bar>(moved.begin(), moved.begin() + 9));
  const Graph g(bars);
  const Array none;
  EXPECT_EQ(qvGraphLine(g, QV_GRAPH_NEW, 0, &none, nullptr, QV_LINE_LINE, 0, "", QV_GRAPH_COPY), 0);
  QvBars shared = later;
  shared.date = bars.date;
  for (const QvBars* set : {static_cast<const QvBars*>(&same), static_cast<const QvBars*>(&shared),
                            static_cast<const QvBars*>(&nearly), static_cast<const QvBars*>(&shorter)}) {
    ASSERT_EQ(qvGraphChart(g, 0, 0, set, QV_CHART_LINE, kInf, QV_GRAPH_REFER), 0);
    const bool refers = set == &same || set == &shared;
    EXPECT_EQ(g.g->item(0).bars.own, !refers);
    const QvArray& close = g.g->item(0).bars.record->close;
    EXPECT_EQ(close.data[8], set->close.data[8]);
    EXPECT_EQ(close.data[29] == close.data[29], refers) << "no bar of the last date";
  }
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
  QvGraphShape shape{};
  shape.kind = 8;
  QvGraphStyle style{};
  QvGraphStyle dashed[2] = {};
  dashed[0].dash = -1, dashed[1].dash = 3;
  const QvGraphShape trend = {QV_SHAPE_TREND_LINE, 0, 1, 1, 0, 1, 0, ""},
                     half = {QV_SHAPE_TREND_LINE, 0, 1, 1, 0, kNaN, 0, ""},
                     negative = {-1, 0, 1, 1, 0, 1, 0, ""};
  const Array a(Items{1, 2});
  const Graph styled(bars);
  styled.chart(QV_CHART_LINE);
  ASSERT_EQ(r.paint(styled, 100, 100), 0);
  for (const auto callback : {0, 1, 2, 3, 4, 5, 6}) {
    QvPainter without = r.painter;
    if (callback == 0) without.line = nullptr;
    if (callback == 1) without.polyline = nullptr;
    if (callback == 2) without.rectangle = nullptr;
    if (callback == 3) without.polygon = nullptr;
    if (callback == 4) without.text = nullptr;
    if (callback == 5) without.extent = nullptr;
    if (callback == 6) without.clip = nullptr;
    EXPECT_EQ(qvGraphPaint(g, &without, 100, 100), -1);
  }
  EXPECT_EQ(qvGraphPaint(g, &r.painter, 100, 2e6), -1);
  for (const int status : {qvGraphPaint(nullptr, &r.painter, 100, 100),
                           qvGraphPaint(g, nullptr, 9, 9),
                           qvGraphSubWindow(g, 1, "", 1),
                           qvGraphSubWindow(g, -1, "", kNaN),
                           qvGraphSubWindow(g, -2, "", 1),
                           qvGraphSubWindow(g, -1, "", kInf),
                           qvGraphSubWindow(nullptr, -1, "", 1),
                           qvGraphChart(g, -1, 1, nullptr, 0, 0, 0),
                           qvGraphChart(g, 0, 0, nullptr, 0, 0, 0),
                           qvGraphChart(g, -1, 0, nullptr, 7, 0, 0),
                           qvGraphChart(g, -1, 0, nullptr, -1, 0, 0),
                           qvGraphChart(nullptr, -1, 0, nullptr, 0, 0, 0),
                           qvGraphLine(g, -1, 0, nullptr, nullptr, 0, 0, "", 0),
                           qvGraphLine(g, -1, 0, &a, nullptr, QV_LINE_BAND, 0, "", 0),
                           qvGraphLine(g, -1, 0, &a, &a, QV_LINE_LINE, 0, "", 0),
                           qvGraphLine(g, -1, 0, &a, nullptr, 0, 2, "", 0),
                           qvGraphLine(g, -1, 0, &a, nullptr, -1, 0, "", 0),
                           qvGraphLine(g, -1, 0, &a, nullptr, 8, 0, "", 0),
                           qvGraphLine(g, -1, 1, &a, nullptr, 0, 0, "", 0),
                           qvGraphLine(g, -1, 0, &a, nullptr, 7, 0, "", 0),
                           qvGraphLine(g, -1, 0, &a, nullptr, 0, -1, "", 0),
                           qvGraphZone(g, -1, 0, 2, 1, 0),
                           qvGraphZone(g, -1, 0, kNaN, 1, 0),
                           qvGraphZone(g, -1, 0, 1, kInf, 0),
                           qvGraphZone(g, -1, 0, 1, 2, -1),
                           qvGraphZone(g, 7, 0, 1, 2, 0),
                           qvGraphShape(g, -1, 1, &trend),
                           qvGraphShape(g, -1, 0, &half),
                           qvGraphShape(g, -1, 0, &negative),
                           qvGraphShape(g, -1, 0, &shape),
                           qvGraphShape(g, -1, 0, nullptr),
                           qvGraphStyle(g, 0, 0, &style),
                           qvGraphStyle(nullptr, 0, 0, &style),
                           qvGraphStyle(styled, 0, 0, nullptr),
                           qvGraphStyle(styled, 0, -1, &style),
                           qvGraphStyle(styled, 0, 1, &style),
                           qvGraphStyle(styled, 0, 0, &dashed[0]),
                           qvGraphStyle(styled, 0, 0, &dashed[1]),
                           qvGraphRemove(nullptr, 0),
                           qvGraphRemove(g, INT_MIN),
                           qvGraphScale(g, 0, 0, QV_SCALE_LOG, -1, 1),
                           qvGraphScale(g, 0, 2, 0, 0, 0),
                           qvGraphScale(g, 0, -1, 0, 0, 0),
                           qvGraphScale(g, 1, 0, 0, 0, 0),
                           qvGraphScale(g, 0, 0, -1, 0, 0),
                           qvGraphScale(g, 0, 0, 3, 0, 0),
                           qvGraphRange(g, 2, 1),
                           qvGraphRange(g, INT_MIN, 0),
                           qvGraphRange(g, 0, INT_MAX),
                           qvGraphRange(nullptr, 0, 1),
                           qvGraphRangeDates(nullptr, 0, 1),
                           qvGraphRangeDates(g, kNaN, 1),
                           qvGraphCursor(g, -2),
                           qvGraphCursor(nullptr, 0),
                           qvGraphPosition(styled, 1, 0, 0, 1, &point),
                           qvGraphPosition(styled, 0, -1, 0, 1, &point),
                           qvGraphPosition(styled, 0, 2, 0, 1, &point),
                           qvGraphPosition(styled, 0, 0, 0, 1, nullptr),
                           qvGraphTheme(2, nullptr),
                           qvGraphSetTheme(g, nullptr),
                           qvGraphFormula(nullptr, -1, "close", nullptr, 0),
                           qvGraphPaintDC(g, nullptr, 9, 9),
                           qvGraphPaintDC(nullptr, &point, 9, 9),
                           qvGraphCalculation(g, -1, qvCatalogueFind("rsi"), nullptr, nullptr, &kNaN),
                           qvChartAverage(nullptr, 0, 9),
                           qvChartVolume(nullptr, 1),
                           qvChartWriteSVG(nullptr, "x", 9, 9),
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

TEST(Chart, ShowsAveragesAndVolumes) {
  const Bars bars(walkBars(60));
  QvChart* chart = qvChartOpen(&bars, "simple");
  ASSERT_TRUE(chart);
  EXPECT_EQ(qvChartAverage(chart, QV_MA_SIMPLE, 10), 0);
  EXPECT_EQ(qvChartAverage(chart, QV_MA_SIMPLE, 0), -1);
  EXPECT_EQ(qvChartAverage(chart, 8, 10), -1);
  EXPECT_EQ(qvChartAverage(chart, -1, 10), -1);
  Recording r;
  for (const bool shown : {false, true, false, true}) {
    EXPECT_EQ(qvChartVolume(chart, shown), 0);
    EXPECT_EQ(qvChartPaint(chart, &r.painter, 800, 500), 0);
    EXPECT_EQ(r.text("Volume") != nullptr, shown);
    EXPECT_TRUE(r.text("SMA(10)") && r.text("simple"));
    r.all.clear();
  }
  EXPECT_EQ(qvGraphCursor(qvChartGraph(chart), 3), 0);
  qvChartClose(chart);
  chart = qvChartOpen(&bars, nullptr);
  while (qvGraphSubWindow(qvChartGraph(chart), QV_GRAPH_NEW, "", 1) > 0) continue;
  EXPECT_EQ(qvChartVolume(chart, 1), -1) << "no room";
  qvChartClose(chart);
}

}  // namespace
}  // namespace qvtest
