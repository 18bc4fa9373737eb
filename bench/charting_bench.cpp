// Painting: 5,000 bars with six lines, and a million bars, at 1,600 by 900 units; into nothing, and as SVG.
#include "support.h"

namespace {

int QVCALL line(void*, double, double, double, double, uint32_t, double, int) {
  return 0;
}
int QVCALL polyline(void*, const QvPoint*, int, uint32_t, double, int) {
  return 0;
}
int QVCALL rectangle(void*, double, double, double, double, uint32_t) {
  return 0;
}
int QVCALL polygon(void*, const QvPoint*, int, uint32_t) {
  return 0;
}
int QVCALL text(void*, double, double, const char*, const char*, double, int, uint32_t) {
  return 0;
}
int QVCALL extent(void*, const char*, const char*, double size, int, double* width) {
  *width = 4 * size;
  return 0;
}
int QVCALL clip(void*, double, double, double, double) {
  return 0;
}

constexpr double kWidth = 1600, kHeight = 900;

void paint(benchmark::State& state, int bars, int lines, int kind, bool svg) {
  const QvPainter nothing = {nullptr, 1, line, polyline, rectangle, polygon, text, extent, clip};
  QvGraph* g = qvGraphOpen(&qvbench::barSets(bars)[0], "title", QV_GRAPH_REFER);
  qvGraphChart(g, QV_GRAPH_NEW, 0, nullptr, kind, 0, QV_GRAPH_REFER);
  for (int i = 0; i < lines; ++i)
    qvGraphLine(g, QV_GRAPH_NEW, 0, &qvbench::seriesSets(bars)[static_cast<std::size_t>(i)], nullptr,
                QV_LINE_LINE, QV_SIDE_RIGHT, "line", QV_GRAPH_REFER);
  std::vector<char> room(svg ? 1 << 24 : 0);
  for (auto _ : state) {
    const int status = svg ? qvGraphTextSVG(g, kWidth, kHeight, room.data(), static_cast<int>(room.size()))
                           : qvGraphPaint(g, &nothing, kWidth, kHeight);
    if (status < 0) state.SkipWithError("the painting failed");
  }
  qvGraphClose(g);
}

void Paint5000BarsAndSixLines(benchmark::State& state) {
  paint(state, 5000, 6, QV_CHART_CANDLES, state.range(0) != 0);
}
void PaintMillionBars(benchmark::State& state) {
  paint(state, qvbench::kMillion, 0, static_cast<int>(state.range(0)), state.range(1) != 0);
}

BENCHMARK(Paint5000BarsAndSixLines)->ArgName("svg")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintMillionBars)
    ->ArgNames({"kind", "svg"})
    ->ArgsProduct({{QV_CHART_CANDLES, QV_CHART_LINE, QV_CHART_AREA, QV_CHART_VOLUME, QV_CHART_HEIKIN_ASHI},
                   {0}})
    ->Args({QV_CHART_CANDLES, 1})
    ->Unit(benchmark::kMillisecond);

}  // namespace
