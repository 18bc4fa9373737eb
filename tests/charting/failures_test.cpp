// Memory that runs out and painters that fail: the answer says so, nothing leaks, and the graph is as it was.
#include <gtest/gtest.h>

#include <utility>

#include "charting/recording_painter.h"
#include "support/expect.h"

namespace qvtest {
namespace {

using Step = std::function<int(QvGraph*)>;

// Steps that take memory, each in its own way.
std::vector<Step> stepsOf(const Bars& bars, const Bars& other, const Array& jagged) {
  const auto chart = [](const QvBars* set, int kind, int item) {
    return [=](QvGraph* g) { return qvGraphChart(g, item, 0, set, kind, 0, QV_GRAPH_COPY); };
  };
  const auto formula = [](const char* text, int subWindow) {
    return [=](QvGraph* g) { return qvGraphFormula(g, subWindow, text, nullptr, 0); };
  };
  const auto calculation = [&other](const char* name, int subWindow) {
    return [&other, name, subWindow](QvGraph* g) {
      return qvGraphCalculation(g, subWindow, qvCatalogueFind(name), &other, nullptr, nullptr);
    };
  };
  return {chart(&other, QV_CHART_CANDLES, QV_GRAPH_NEW),
          chart(&bars, QV_CHART_HEIKIN_ASHI, QV_GRAPH_NEW),
          chart(&other, QV_CHART_AREA, 0),
          chart(&bars, QV_CHART_LINE, QV_GRAPH_NEW),
          [&](QvGraph* g) {
            return qvGraphLine(g, QV_GRAPH_NEW, 0, &jagged, &bars.low, QV_LINE_BAND, 0, "", QV_GRAPH_COPY);
          },
          formula("bollinger(2, 5)", QV_GRAPH_NEW),
          formula("weekly(macd(3, 5, 2).signal) + highest(high, 40)", 0),
          formula("macd(3, 5, 2)", QV_GRAPH_NEW),
          formula("macd(3, 5, 2).signal", 1),
          calculation("spread", QV_GRAPH_NEW),
          calculation("rsi", 1),
          chart(&bars, QV_CHART_AREA, QV_GRAPH_NEW),
          [](QvGraph* g) {
            while (g->subWindowCount < 4) qvGraphSubWindow(g, QV_GRAPH_NEW, "", 0);
            return qvGraphSubWindow(g, QV_GRAPH_NEW, "fifth", 1);
          },
          [](QvGraph* g) { return qvGraphTextSVG(g, 400, 300, nullptr, 0); },
          [](QvGraph* g) { return qvGraphWriteSVG(g, "/dev/null", 400, 300); }};
}

struct GraphFailures : testing::Test {
  const Bars bars{walkBars(300)}, other{walkBars(200, 4)};
  const Array jagged = [] {
    Items items;
    for (int i = 0; i < 300; ++i) items.push_back(i % 2 ? 70.0 : 130.0);
    return Array(items);
  }();
};

TEST_F(GraphFailures, ExhaustedMemoryLeavesTheGraphAsItWas) {
  const Graph g(bars);
  ASSERT_EQ(qvGraphScale(g, 0, QV_SIDE_RIGHT, QV_SCALE_LINEAR, 98, 102), 0);
  for (int number = 0; const Step& step : stepsOf(bars, other, jagged)) {
    SCOPED_TRACE(number++);
    const std::string before = svgOf(g, 400, 300);
    expectAnswersExhaustedMemory("step", [&] {
      const int status = step(g);
      const int left = static_cast<int>(qv::memory::failAllocation(0));
      EXPECT_TRUE(status >= 0 || svgOf(g, 400, 300) == before);
      qv::memory::failAllocation(left);
      return status;
    });
  }
}

// From opening to painting at once, so that each table grows at some time or other.
TEST_F(GraphFailures, ExhaustedMemoryLeavesNothingBehind) {
  const std::vector<Step> steps = stepsOf(bars, other, jagged);
  expectAnswersExhaustedMemory("graph", [&] {
    const Graph g(bars, "title", QV_GRAPH_COPY);
    int status = g.g ? 0 : -3;
    for (std::size_t i = 0; i < steps.size() && status >= 0; ++i) status = steps[i](g);
    if (g.g && status < 0) {
      QvGraphHit hit;
      EXPECT_EQ(qvGraphHit(g, 9, 9, &hit), -1) << "not painted";
    }
    return status;
  });
  expectAnswersExhaustedMemory("chart", [&] {
    QvChart* chart = qvChartOpen(&bars, "chart");
    int status = chart ? qvChartAverage(chart, QV_MA_TRIANGULAR, 9) : -3;
    if (status == 0) status = qvChartVolume(chart, 1);
    if (status == 0) status = qvChartWriteSVG(chart, "/dev/null", 300, 200);
    qvChartClose(chart);
    return status;
  });
}

TEST_F(GraphFailures, APainterThatFailsIsAskedNothingMore) {
  const Graph g(bars, "title");
  const Array dots(shaped(Shape::Walk, 300));
  for (const Step& step : stepsOf(bars, other, jagged)) ASSERT_GE(step(g), 0);
  g.chart(QV_CHART_PNF);
  for (const int kind : {QV_LINE_HISTOGRAM, QV_LINE_DOTS, QV_LINE_STEPS}) g.line(dots, kind, nullptr, 1);
  const QvGraphShape shape = {QV_SHAPE_ARROW, 280, 100, 290, 0, 101, 0, "arrow"};
  ASSERT_GE(qvGraphShape(g, QV_GRAPH_NEW, 0, &shape), 0);
  ASSERT_EQ(qvGraphRange(g, 270, 299), 0);
  ASSERT_EQ(qvGraphCursor(g, 280), 0);
  Recording r;
  ASSERT_EQ(r.paint(g, 400, 500), 0);
  const int calls = r.calls;
  for (const auto& [answer, starves] : {std::pair(-7, false), {4, false}, {-7, true}})
    for (int k = 0; k < calls; ++k) {
      r.failing = k;
      r.answer = answer;
      r.starves = starves;
      ASSERT_EQ(r.paint(g, 400, 500), answer < 0 ? answer : -5) << k;
      qv::memory::failAllocation(0);
      EXPECT_EQ(r.calls, k + 1) << "nothing is asked of a painter that failed";
    }
  r.failing = -1;
  EXPECT_EQ(r.paint(g, 400, 500), 0);
  EXPECT_EQ(r.calls, calls);
}

// What it says of a text's width and its own scale is taken with care.
TEST_F(GraphFailures, APainterMayAnswerNonsense) {
  const Graph g(bars, "title");
  g.chart(QV_CHART_CANDLES);
  Recording usual;
  ASSERT_EQ(usual.paint(g, 400, 300), 0);
  for (const double scale : {kNaN, kInf, 0.0, -2.0}) {
    Recording r(scale);
    ASSERT_EQ(r.paint(g, 400, 300), 0);
    EXPECT_EQ(r.calls, usual.calls) << scale;
  }
  static double answered;
  for (const double width : {kNaN, kInf, -5.0, 0.0, 1e9}) {
    Recording r;
    answered = width;
    r.painter.extent = [](void*, const char*, const char*, double, int, double* out) {
      return *out = answered, 0;
    };
    ASSERT_EQ(r.paint(g, 400, 300), 0);
    for (const Painted& p : r.all)
      for (const QvPoint& q : p.points) ASSERT_TRUE(std::isfinite(q.x) && std::isfinite(q.y)) << width;
  }
}

}  // namespace
}  // namespace qvtest
