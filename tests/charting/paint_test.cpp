// What a graph paints: bars, lines, shapes and signals where they belong, nothing beside its clip.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "charting/recording_painter.h"
#include "support/spx.h"

namespace qvtest {
namespace {

constexpr double kPixel = 1.001;

// The rectangle of a colour whose middle stands over a bar.
std::vector<Painted> over(const Recording& r, const Graph& g, int bar, uint32_t colour) {
  std::vector<Painted> found;
  const double x = g.at(bar, 1).x;
  for (const Painted& p : r.of(Painted::Rectangle, colour))
    if (std::fabs((p.box.left + p.box.right) / 2 - x) < 1.0 && p.clip.right - p.clip.left < 899)
      found.push_back(p);
  return found;
}

TEST(GraphPaint, CandlesSpanOpenToCloseAndHighToLow) {
  const Bars bars(walkBars(60));
  const QvGraphTheme theme = themeOf(QV_THEME_LIGHT);
  for (const double scale : {1.0, 2.0})
    for (const int kind : {QV_SCALE_LINEAR, QV_SCALE_LOG, QV_SCALE_PERCENT}) {
      const Graph g(bars);
      g.chart(QV_CHART_CANDLES);
      ASSERT_EQ(qvGraphScale(g, 0, QV_SIDE_RIGHT, kind, 0, 0), 0);
      Recording r(scale);
      ASSERT_EQ(r.paint(g, 900, 600), 0);
      for (int i = 0; i < bars.barsize; ++i) {
        const double open = bars.open.data[i], close = bars.close.data[i];
        const auto found = over(r, g, i, close < open ? theme.down : theme.up);
        ASSERT_EQ(found.size(), 2u) << i << " " << kind;
        const Painted &wick = found[0], &body = found[1];
        EXPECT_NEAR(wick.box.top, g.at(i, bars.high.data[i]).y, kPixel / scale);
        EXPECT_NEAR(wick.box.bottom, g.at(i, bars.low.data[i]).y, kPixel / scale);
        EXPECT_NEAR(body.box.top, g.at(i, std::max(open, close)).y, kPixel / scale);
        EXPECT_NEAR(body.box.bottom, g.at(i, std::min(open, close)).y, kPixel / scale);
        EXPECT_NEAR(body.box.left + body.box.right, wick.box.left + wick.box.right, 1e-9)
            << "the wick is in the middle";
        for (const double edge : {wick.box.left, wick.box.top, body.box.left, body.box.bottom})
          EXPECT_NEAR(edge * scale, std::round(edge * scale), 1e-9) << "on whole pixels";
      }
    }
}

TEST(GraphPaint, DenseColumnsShowTheirExtremes) {
  Bars bars(walkBars(20000));
  bars.high.data[7777] = 5000;
  bars.low.data[15555] = -3000;
  Array line(shaped(Shape::Walk, 20000));
  line.data[4321] = 9000;
  const Graph g(bars);
  g.chart(QV_CHART_CANDLES);
  g.line(line);
  Recording r;
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  Box all{1e9, 1e9, -1e9, -1e9};
  const QvGraphTheme theme = themeOf(QV_THEME_LIGHT);
  for (const uint32_t colour : {theme.up, theme.down})
    for (const Painted& p : r.of(Painted::Rectangle, colour)) {
      if (p.clip.right > 890) continue;
      all.top = std::min(all.top, p.box.top);
      all.bottom = std::max(all.bottom, p.box.bottom);
    }
  EXPECT_NEAR(all.top, g.at(0, 5000).y, kPixel);
  EXPECT_NEAR(all.bottom, g.at(0, -3000).y, kPixel);
  double top = 1e9;
  for (const Painted& p : r.of(Painted::Line, theme.palette[0])) top = std::min(top, p.box.top);
  EXPECT_NEAR(top, g.at(0, 9000).y, 1e-6);
  EXPECT_LT(r.all.size(), 4000u);
}

// All kinds of items at once.
void fillGraph(const Graph& g, const Bars& bars, const Array& a, const Array& b) {
  for (int kind = QV_CHART_CANDLES; kind <= QV_CHART_HEIKIN_ASHI; ++kind)
    g.chart(kind, kind == QV_CHART_VOLUME);
  for (int kind = QV_LINE_LINE; kind <= QV_LINE_STEPS; ++kind)
    g.line(a, kind, kind == QV_LINE_BAND ? &b : nullptr, kind % 2);
  qvGraphZone(g, QV_GRAPH_NEW, 0, 95, 99, QV_SIDE_RIGHT);
  qvGraphLine(g, QV_GRAPH_NEW, 1, &b, nullptr, QV_LINE_LINE, QV_SIDE_LEFT, "left", QV_GRAPH_COPY);
  const int n = bars.barsize;
  for (int kind = QV_SHAPE_TREND_LINE; kind <= QV_SHAPE_REGRESSION; ++kind)
    for (const int bar : {n / 2, -1000, n + 1000}) {
      QvGraphShape s = {kind, bar, 100, n - 3, kind % 3 - 1, 104, 1.5, "shape"};
      EXPECT_GE(qvGraphShape(g, QV_GRAPH_NEW, 0, &s), 0);
    }
}

TEST(GraphPaint, NothingLiesBesideItsClipAndNoLabelsOverlap) {
  const QvGraphTheme dark = themeOf(QV_THEME_DARK);
  for (const int n : {1, 2, 40, 700, 5000}) {
    const Bars bars(walkBars(n));
    const Array a(shaped(Shape::Walk, n)), b(shaped(Shape::Walk, n, 5));
    for (const Box& size :
         {Box{0, 0, 300, 200}, Box{0, 0, 900, 600}, Box{0, 0, 4000, 2000}, Box{0, 0, 40, 30}})
      for (const int scale : {QV_SCALE_LINEAR, QV_SCALE_LOG, QV_SCALE_PERCENT}) {
        SCOPED_TRACE(testing::Message() << n << " bars, " << size.right << " wide, scale " << scale);
        const Graph g(bars, "A title that is rather long for the smallest one of these pictures, is it not?");
        qvGraphSetTheme(g, &dark);
        qvGraphSubWindow(g, QV_GRAPH_NEW, "below", 1);
        fillGraph(g, bars, a, b);
        qvGraphScale(g, 0, QV_SIDE_RIGHT, scale, 0, 0);
        qvGraphCursor(g, n / 3);
        Recording r;
        ASSERT_EQ(r.paint(g, size.right, size.bottom), 0);
        for (const Painted& p : r.all) {
          EXPECT_TRUE(p.clip.holds(p.box, p.kind == Painted::Text ? 1.0 : 1e-6)) << p.kind << " " << p.text;
          EXPECT_TRUE(size.holds(p.box, 0.01)) << p.text;
        }
        const auto texts = r.of(Painted::Text);
        for (std::size_t i = 0; i < texts.size(); ++i)
          for (std::size_t k = i + 1; k < texts.size(); ++k)
            EXPECT_FALSE(texts[i].box.overlaps(texts[k].box)) << texts[i].text << " over " << texts[k].text;
      }
  }
}

TEST(GraphPaint, ShapesStandAtTheirBarsAndPrices) {
  const Bars bars(walkBars(100));
  const Graph g(bars);
  g.chart(QV_CHART_CANDLES);
  const uint32_t red = 0xFF112233;
  QvGraphStyle style{};
  style.colour = red;
  const auto painted = [&](QvGraphShape shape) {
    const int item = qvGraphShape(g, QV_GRAPH_NEW, 0, &shape);
    EXPECT_EQ(qvGraphStyle(g, item, 0, &style), 0);
    Recording r;
    EXPECT_EQ(r.paint(g, 900, 600), 0);
    EXPECT_EQ(g.hit(g.at(shape.bar, shape.price).x, g.at(shape.bar, shape.price).y).item,
              shape.kind == QV_SHAPE_REGRESSION ? 0 : item);
    EXPECT_EQ(qvGraphRemove(g, item), 0);
    std::vector<Painted> found;
    for (const Painted& p : r.all)
      if (p.colour == red) found.push_back(p);
    return found;
  };
  const double price = bars.close.data[30];
  for (const int direction : {1, -1}) {
    const auto mark = painted({QV_SHAPE_TRADE, 30, price, 0, direction, 0, 0, "in"});
    ASSERT_EQ(mark.size(), 2u) << "triangle and text";
    EXPECT_NEAR(mark[0].points[0].x, g.at(30, price).x, 1e-9);
    EXPECT_NEAR(mark[0].points[0].y, g.at(30, price).y, 1e-9);
    EXPECT_EQ(mark[0].points[1].y > mark[0].points[0].y, direction > 0) << "it points up at what was bought";
  }
  const auto line = painted({QV_SHAPE_TREND_LINE, 10, 100, 60, 0, 101, 0, ""});
  EXPECT_NEAR(line[0].points[1].x, g.at(60, 101).x, 1e-9);
  EXPECT_NEAR(line[0].points[1].y, g.at(60, 101).y, 1e-9);
  const auto ray = painted({QV_SHAPE_RAY, 10, 100, 20, 0, 100, 0, ""});
  EXPECT_NEAR(ray[0].box.right, ray[0].clip.right, 1e-9) << "it goes on to the edge";
  const auto fibonacci = painted({QV_SHAPE_FIBONACCI, 10, 98, 60, 0, 102, 0, ""});
  int half = 0;
  for (const Painted& p : fibonacci)
    half += p.kind == Painted::Line && p.box.top == p.box.bottom &&
            std::fabs(p.box.top - g.at(0, 100).y) < kPixel;
  EXPECT_EQ(half, 1);
  const auto channel = painted({QV_SHAPE_REGRESSION, 10, bars.close.data[10], 50, 0, 0, 2, ""});
  ASSERT_EQ(channel.size(), 3u);
  double slope = 0, intercept = 0;
  qvRegressionLine(&bars.close, &slope, &intercept, 10, 50);
  EXPECT_NEAR(channel[0].points[0].y, g.at(0, intercept + slope).y, 1e-6);
  const double width = 2 * qvStdErr(&bars.close, 10, 50);
  EXPECT_NEAR(channel[1].points[1].y, g.at(0, intercept + 41 * slope + width).y, 1e-6);
}

TEST(GraphPaint, LinesBreakAtGapsAndStepsAreSteps) {
  const Bars bars(walkBars(8));
  const Array a({1, 2, kNaN, 4, 5, kInf, 1e301, 8}, 1);
  const Graph g(bars);
  const int item = g.line(a);
  Recording r;
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  const uint32_t colour = themeOf(QV_THEME_LIGHT).palette[0];
  auto lines = r.of(Painted::Line, colour);
  ASSERT_EQ(lines.size(), 1u) << "single values between gaps are no line";
  EXPECT_NEAR(lines[0].points[0].y, g.at(3, 4).y, 1e-9);
  EXPECT_NEAR(lines[0].points[1].x, g.at(4, 5).x, 1e-9);
  // Replaced under its number; below the first valid index there is nothing.
  ASSERT_EQ(qvGraphLine(g, item, 0, &a, nullptr, QV_LINE_STEPS, QV_SIDE_RIGHT, "", QV_GRAPH_COPY), item);
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  lines = r.of(Painted::Line, colour);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_NEAR(lines[0].box.left, (g.at(0, 1).x + g.at(1, 1).x) / 2, 1e-9);
  EXPECT_EQ(lines[0].box.top, lines[0].box.bottom);
}

TEST(GraphPaint, HeikinAshiAndPointAndFigure) {
  const Bars bars{{10, 14, 8, 12}, {12, 16, 11, 15}};
  const Graph g(bars);
  g.chart(QV_CHART_HEIKIN_ASHI);
  Recording r;
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  EXPECT_TRUE(r.text("C 13.500")) << "(12 + 16 + 11 + 15) / 4";
  EXPECT_TRUE(r.text("O 11.000")) << "the middle of (10 + 12) / 2 and (10 + 14 + 8 + 12) / 4";
  const Graph before(bars);
  before.chart(QV_CHART_HEIKIN_ASHI);
  EXPECT_EQ(qvGraphRange(before, -3, -2), 0);
  EXPECT_EQ(r.paint(before, 900, 600), 0) << "none of the bars is seen";

  QvBars columns{};
  QvArray columnOf{};
  const QvBars& index = spx();
  ASSERT_EQ(qvBars2PNF(&index, &columns, &columnOf, 100, 300, 0), 0);
  {
    const Graph pnf(columns);
    ASSERT_GE(qvGraphChart(pnf, QV_GRAPH_NEW, 0, nullptr, QV_CHART_PNF, 100, QV_GRAPH_REFER), 0);
    ASSERT_EQ(r.paint(pnf, 900, 600), 0);
    // A cross is two lines, a ring one: as many as qvPNFchart has levels.
    const QvGraphTheme theme = themeOf(QV_THEME_LIGHT);
    double highest = 0;
    for (int i = 0; i < columns.barsize; ++i) highest = std::max(highest, columns.high.data[i]);
    std::size_t crosses = 0, rings = 0;
    for (int i = 0; i < columns.barsize; ++i)
      for (double level = highest; level > 0; level -= 100)
        if (level <= columns.high.data[i] + 10 && level >= columns.low.data[i] - 10)
          ++(columns.openInterest.data[i] < 0 ? rings : crosses);
    EXPECT_EQ(r.of(Painted::Line, theme.up).size(), 2 * crosses);
    EXPECT_EQ(r.of(Painted::Line, theme.down).size(), rings);
  }
  qvFreeBars(&columns);
  qvFreeArray(&columnOf);
}

TEST(GraphPaint, OtherBarsAreLaidOnTheAxisByTheirDates) {
  const Bars bars(walkBars(30));
  std::vector<Bar> others = walkBars(30, 9);
  others.erase(others.begin() + 4, others.begin() + 7);
  const Bars other(others);
  const Graph g(bars);
  const int item = qvGraphChart(g, QV_GRAPH_NEW, 0, &other, QV_CHART_CANDLES, 0, QV_GRAPH_REFER);
  Recording r;
  ASSERT_EQ(r.paint(g, 900, 600), 0);
  const QvPoint p = g.at(20, other.close.data[17]);
  EXPECT_EQ(g.hit(p.x, p.y).item, item);
  EXPECT_EQ(g.hit(g.at(5, 100).x, p.y).item, -1) << "a gap";
}

}  // namespace
}  // namespace qvtest
