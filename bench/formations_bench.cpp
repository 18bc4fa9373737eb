// Formations, crossovers and turns over a whole series.
#include "support.h"

namespace {

using namespace qvbench;

void formation(benchmark::State& state, const char* name) {
  runOnBars(state, kMillion, [name](const QvBars* b, QvArray* out) {
    return qvFormationFill(b, &out[0], name, 0, kMillion - 1);
  });
}
BENCHMARK_CAPTURE(formation, qvCPR, "qvCPR");
BENCHMARK_CAPTURE(formation, qvGap, "qvGap");
BENCHMARK_CAPTURE(formation, qvGapDown, "qvGapDown");
BENCHMARK_CAPTURE(formation, qvGapUp, "qvGapUp");
BENCHMARK_CAPTURE(formation, qvIslandReversal, "qvIslandReversal");
BENCHMARK_CAPTURE(formation, qvInsideBar, "qvInsideBar");
BENCHMARK_CAPTURE(formation, qvKeyReversal, "qvKeyReversal");
BENCHMARK_CAPTURE(formation, qvOutsideBar, "qvOutsideBar");

void crossOverFill(benchmark::State& state) {
  runOnBars(state, kMillion, [](const QvBars* b, QvArray* out) {
    return qvCrossOverFill(&b->open, &b->close, &out[0], 0, kMillion);
  });
}
BENCHMARK(crossOverFill)->Name("qvCrossOverFill");

void turnFill(benchmark::State& state) {
  runOnSeries(state, kMillion,
              [](const QvArray* in, QvArray* out) { return qvTurnFill(in, &out[0], 0, kMillion - 1); });
}
BENCHMARK(turnFill)->Name("qvTurnFill");

}  // namespace
