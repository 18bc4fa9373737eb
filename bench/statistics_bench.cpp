// Every moving statistic: a million bars with a short, a long and a very long period, and the 5,000
// bars of twenty years of daily prices. Pairs are the closes and volumes of a bar set.
#include "support.h"

namespace {

using OfSeries = int (*)(const QvArray* in, QvArray* out, int period);
using OfPair = int (*)(const QvArray* a, const QvArray* b, QvArray* out, int period);

void runSeries(benchmark::State& state, OfSeries moving) {
  const int n = static_cast<int>(state.range(0)), period = static_cast<int>(state.range(1));
  qvbench::runOnSeries(state, n, [=](const QvArray* in, QvArray* out) { return moving(in, out, period); });
}

void runPair(benchmark::State& state, OfPair moving) {
  const int n = static_cast<int>(state.range(0)), period = static_cast<int>(state.range(1));
  qvbench::runOnBars(state, n, [=](const QvBars* bars, QvArray* out) {
    return moving(&bars->close, &bars->volume, out, period);
  });
}

void sizes(benchmark::internal::Benchmark* b) {
  b->ArgNames({"n", "period"});
  for (int period : {14, 200, 2000}) b->Args({qvbench::kMillion, period});
  b->Args({5000, 14});
}

#define QV_SERIES(name, call)                                                        \
  BENCHMARK_CAPTURE(                                                                 \
      runSeries, name, +[](const QvArray* in, QvArray* out, int p) { return call; }) \
      ->Apply(sizes)
#define QV_PAIR(name, call)                                                                         \
  BENCHMARK_CAPTURE(                                                                                \
      runPair, name, +[](const QvArray* a, const QvArray* b, QvArray* out, int p) { return call; }) \
      ->Apply(sizes)

QV_SERIES(qvStdDevMv, qvStdDevMv(in, out, 0, p, 0));
QV_SERIES(qvStdErrMv, qvStdErrMv(in, out, p, 0));
QV_SERIES(qvDispersionMv, qvDispersionMv(in, out, p, 0));
QV_SERIES(qvRSquared, qvRSquared(in, out, p, 0));
QV_SERIES(qvRegressionLineMv, qvRegressionLineMv(in, &out[0], &out[1], p, 0, in->size));
QV_PAIR(qvCovarianceMv, qvCovarianceMv(a, b, out, p, 0));
QV_PAIR(qvCorCoefMv, qvCorCoefMv(a, b, out, 1, p, 0));
QV_PAIR(qvRSquaredCoef, qvRSquaredCoef(a, b, out, 1, p, 0));
QV_PAIR(qvBetaCoefMv, qvBetaCoefMv(a, b, out, 1, p, 0));

}  // namespace
