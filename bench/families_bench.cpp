// Trend, volume, bands, breadth and the smaller families, over a million bars at periods 14 and 200.
#include "support.h"

namespace {

using namespace qvbench;

using BarCall = int (*)(const QvBars*, QvArray*, int);
using SeriesCall = int (*)(const QvArray*, QvArray*, int);

void overBars(benchmark::State& state, BarCall call) {
  const int p = static_cast<int>(state.range(0));
  runOnBars(state, kMillion, [=](const QvBars* b, QvArray* o) { return call(b, o, p); });
}
void overSeries(benchmark::State& state, SeriesCall call) {
  const int p = static_cast<int>(state.range(0));
  runOnSeries(state, kMillion, [=](const QvArray* in, QvArray* o) { return call(in, o, p); });
}

// Names with a period run at both; those without one run once.
#define QV_BARS(name, ...)                                                                                   \
  BENCHMARK_CAPTURE(overBars, name, [](const QvBars* b, QvArray* o, int p) { return name(b, __VA_ARGS__); }) \
      ->Arg(14)                                                                                              \
      ->Arg(200)
#define QV_BARS_ONCE(name, ...)                                            \
  BENCHMARK_CAPTURE(overBars, name, [](const QvBars* b, QvArray* o, int) { \
    return name(b, __VA_ARGS__);                                           \
  })->Arg(0)
#define QV_SERIES(name, ...)                                                                    \
  BENCHMARK_CAPTURE(overSeries, name,                                                           \
                    [](const QvArray* in, QvArray* o, int p) { return name(in, __VA_ARGS__); }) \
      ->Arg(14)                                                                                 \
      ->Arg(200)
#define QV_SERIES_ONCE(name, ...)                                              \
  BENCHMARK_CAPTURE(overSeries, name, [](const QvArray* in, QvArray* o, int) { \
    return name(in, __VA_ARGS__);                                              \
  })->Arg(0)

// Trend.
QV_BARS_ONCE(qvTR, o, 0);
QV_BARS(qvATR, o, p, 0);
QV_BARS_ONCE(qvDMIx, o, o + 1, 0);
QV_BARS(qvDI, o, o + 1, p, 0);
QV_BARS(qvDX, o, p, 0);
QV_BARS(qvADX, o, p, p, 0);
QV_BARS(qvADXR, o, p, p, p, 0);
QV_SERIES_ONCE(qvDMI, o, 0);
QV_BARS_ONCE(qvSAR, o, o + 1, 0.02, 0.2, 0);
QV_BARS(qvAroon, o, o + 1, p, 0);
QV_BARS(qvAroonOscillator, o, p, 0);
QV_SERIES(qvVHF, o, p, 0);
QV_BARS(qvRWI, o, o + 1, p, 0);
QV_SERIES_ONCE(qvZigZag, o, 0.05, 0, 0);
QV_BARS_ONCE(qvSwingIndex, o, 3.0, 0);
QV_BARS_ONCE(qvAccumSwingIndex, o, 3.0, 0);
QV_SERIES(qvTrendScore, o, p, 0);

// Volume and money flow.
QV_BARS_ONCE(qvOBV, o, 0);
QV_BARS(qvOBVolMv, o, p, 0);
QV_BARS(qvOBOiMv, o, p, 0);
QV_BARS(qvOBVolExp, o, o + 1, o + 2, p, 0);
QV_BARS_ONCE(qvAccumDist, o, 0);
QV_SERIES_ONCE(qvAccumulate, o, 0);
QV_BARS(qvChaikinMoneyFlow, o, p, 0);
QV_BARS(qvChaikinOscillator, o, 3, p, 0);
QV_BARS(qvChaikinVolatility, o, p, 0);
QV_BARS_ONCE(qvMFI, o, 0);
QV_BARS(qvMoneyFlowIndex, o, p, 0);
QV_BARS_ONCE(qvPVT, o, 0);
QV_BARS_ONCE(qvNVI, o, 0);
QV_BARS_ONCE(qvPVI, o, 0);
QV_BARS(qvForceIndex, o, p, 0);
QV_BARS(qvEMV, o, 2, p, 0);
QV_BARS_ONCE(qvArmsEMV, o, 10000, 0);
QV_BARS_ONCE(qvHerrickPayoffIndex, o, 100.0, 0.1, 0);
QV_SERIES(qvVOSC, o, 5, p, 2, 0);
QV_BARS(qvVR, o, p, 0);

// Bands and channels.
QV_BARS(qvBollinger, o, o + 1, o + 2, 2.0, p, 0);
QV_BARS(qvBollingerWidth, o, 2.0, p, 0);
QV_SERIES_ONCE(qvEnvelopePct, o, o + 1, 0.05, 0);
QV_SERIES(qvMAEnvelope, o, o + 1, 0.05, 2, p, 0);
QV_BARS(qvMAHighLow, o, o + 1, 2, p, 0);
QV_BARS(qvPriceChannels, o, o + 1, p, 0);
QV_BARS(qvProjectionBands, o, o + 1, p, 0);
QV_BARS(qvProjectionBandwidth, o, p, 0);
QV_BARS(qvProjectionOscillator, o, p, 3, 0);
QV_SERIES(qvStdErrBands, o, o + 1, o + 2, 2.0, p, 0);
QV_BARS(qvIchimokuKinkoHyo, o, o + 1, o + 2, o + 3, o + 4, p, 2 * p, 4 * p, p, 0, 0);

// Breadth; volume and open interest serve as totals.
#define QV_BREADTH(name, ...)                                              \
  BENCHMARK_CAPTURE(overBars, name, [](const QvBars* b, QvArray* o, int) { \
    return name(&b->volume, &b->openInterest, __VA_ARGS__);                \
  })->Arg(0)
QV_BREADTH(qvADIssues, o, 0);
QV_BREADTH(qvADLine, o, 0);
QV_BREADTH(qvADLineBreadth, o, 0);
QV_BREADTH(qvADRatio, o, 0);
QV_BREADTH(qvABI, o, 0);
QV_BREADTH(qvBreadthThrust, o, 0);
QV_BREADTH(qvOverBoughtSold, o, 0);
QV_BREADTH(qvSTIX, o, 21, 0);
QV_BREADTH(qvTRIN, &b->high, &b->low, o, 0);
QV_BREADTH(qvBretzTRIN5, &b->high, &b->low, o, 0);
QV_BREADTH(qvOpen10TRIN, &b->high, &b->low, o, 0);
QV_BREADTH(qvBoltonTremblay, &b->close, o, 0);
QV_BREADTH(qvMcClellanOscillator, o, 19, 39, 0);
QV_BREADTH(qvMcClellanSummation, o, 19, 39, 0);
QV_BREADTH(qvMcClellanOscSum, o, o + 1, 19, 39, 0);

// Bar shape, counting, sentiment, range, relative volatility.
QV_BARS(qvBOP, o, 2, p, 0);
QV_BARS(qvQstick, o, p, 0);
QV_BARS(qvIMI, o, p, 0);
QV_BARS(qvMassIndex, o, p, 0);
QV_BARS(qvPVO, o, 5, p, 2, 0);
QV_SERIES(qvForecastOscillator, o, o + 1, p, 3, 0);
QV_SERIES_ONCE(qvDeTrend, o, 0, kMillion);
QV_SERIES(qvPsychologyLine, o, p, 0);
QV_BARS_ONCE(qvWilliamsAD, o, 0);
QV_BARS_ONCE(qvPVrank, o, 0);
QV_SERIES(qvNMO, o, p, 0);
QV_BARS(qvAR, o, p, 0);
QV_BARS(qvBR, o, p, 0);
QV_BARS(qvERAYBull, o, p, 0);
QV_SERIES(qvSONAR, o, p, p, 0);
QV_BARS(qvRangeIndicator, o, p, 3, 0);
QV_SERIES(qvPFE, o, p, 5, 0);
QV_BARS(qvWellesVolatility, o, o + 1, o + 2, o + 3, 3.0, p, 0);
QV_SERIES(qvRVIoriginal, o, p, 0);
QV_BARS(qvRVI, o, p, 0);
QV_BARS(qvInertia, o, p, p, 0);

}  // namespace
