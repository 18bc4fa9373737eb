// Momentum oscillators and stochastics at two periods: the cost per bar must not follow the period.
// Judge qvMomentum and qvRateOfChange against the copy yardstick.
#include <random>

#include "support.h"

namespace {

using namespace qvbench;

// call(in, out, period)
template <typename Call>
void onSeries(benchmark::State& state, Call call) {
  const int p = static_cast<int>(state.range(0));
  runOnSeries(state, kMillion, [&](const QvArray* in, QvArray* out) { return call(in, out, p); });
}

// call(a, b, out) on two series.
template <typename Call>
void onPairs(benchmark::State& state, Call call) {
  const std::vector<QvArray>& series = seriesSets(kMillion);
  const auto next = [&](const QvArray* a) { return a == &series.back() ? &series.front() : a + 1; };
  runOnSeries(state, kMillion, [&](const QvArray* a, QvArray* out) { return call(a, next(a), out); });
}

// call(bars, out, period)
template <typename Call>
void onBars(benchmark::State& state, Call call) {
  const int p = static_cast<int>(state.range(0));
  runOnBars(state, kMillion, [&](const QvBars* b, QvArray* out) { return call(b, out, p); });
}

#define ON_SERIES(name, call)                                                                    \
  BENCHMARK_CAPTURE(onSeries, name, [](const QvArray* in, QvArray* out, int p) { return call; }) \
      ->Name(#name "/p")                                                                         \
      ->Arg(14)                                                                                  \
      ->Arg(200)
#define ON_PAIRS(name, call)                                                              \
  BENCHMARK_CAPTURE(onPairs, name, [](const QvArray* a, const QvArray* b, QvArray* out) { \
    return call;                                                                          \
  })->Name(#name)
#define ON_BARS(name, call)                                                                  \
  BENCHMARK_CAPTURE(onBars, name, [](const QvBars* b, QvArray* out, int p) { return call; }) \
      ->Name(#name "/p")                                                                     \
      ->Arg(14)                                                                              \
      ->Arg(200)

ON_SERIES(qvRSI, qvRSI(in, out, p, 0));
ON_SERIES(qvRMI, qvRMI(in, out, p, p, 0));
ON_SERIES(qvUpAverage, qvUpAverage(in, out, p, 0));
ON_SERIES(qvDownAverage, qvDownAverage(in, out, p, 0));
ON_SERIES(qvStochRSI, qvStochRSI(in, out, p, 0));
ON_SERIES(qvCMO, qvCMO(in, out, p, 0));
ON_SERIES(qvMomentum, qvMomentum(in, out, p, 0));
ON_SERIES(qvRateOfChange, qvRateOfChange(in, out, 100.0, p, 0));
ON_SERIES(qvMACD, qvMACD(in, &out[0], &out[1], p, 0));
ON_SERIES(qvMACDx, qvMACDx(in, &out[0], &out[1], &out[2], &out[3], &out[4], p, 2 * p, p, 0));
ON_SERIES(qvPriceOscillator, qvPriceOscillator(in, out, p, 2 * p, 2, 0));
ON_SERIES(qvPriceOscillatorPct, qvPriceOscillatorPct(in, out, p, 2 * p, 2, 0));
ON_SERIES(qvDPO, qvDPO(in, out, p, 0));
ON_SERIES(qvTRIX, qvTRIX(in, out, p, 0));
ON_SERIES(qvTSI, qvTSI(in, out, p, p, 0));
ON_PAIRS(qvOscillator, qvOscillator(a, b, out, 0));
ON_PAIRS(qvOscillatorPct, qvOscillatorPct(a, b, out, 0));
ON_PAIRS(qvRatio, qvRatio(a, b, out, 0));
ON_BARS(qvUltimateOsc, qvUltimateOsc(b, out, p, 2 * p, 4 * p, 0));
ON_BARS(qvRSIC, qvRSIC(b, b, out, p, 0.0));

ON_SERIES(qvStochastic, qvStochastic(in, out, p, 0));
ON_BARS(qvRawK, qvRawK(b, out, p, 0));
ON_BARS(qvFastD, qvFastD(b, out, p, 3, 0));
ON_BARS(qvSlowD, qvSlowD(b, out, p, 3, 3, 0));
ON_BARS(qvStochasticFast, qvStochasticFast(b, &out[0], &out[1], 2, p, 3, 0));
ON_BARS(qvStochasticOscillator, qvStochasticOscillator(b, &out[0], &out[1], 2, p, 3, 3, 0));
ON_BARS(qvSMI, qvSMI(b, &out[0], &out[1], p, 5, 3, 3, 0));
ON_BARS(qvWilliamsR, qvWilliamsR(b, out, p, 0));
ON_BARS(qvCCI, qvCCI(b, out, p, 0));

// One call per bar.
void rocOfEachBar(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  runOnSeries(state, kMillion, [p](const QvArray* in, QvArray*) {
    double sum = 0.0;
    for (int i = 0; i < in->size; ++i) sum += qvROC(in, i, p, 100.0);
    benchmark::DoNotOptimize(sum);
    return 0;
  });
}
BENCHMARK(rocOfEachBar)->Name("qvROC/p")->Arg(14)->Arg(200);

// Prices that crowd around their mean, which single spikes move to and fro: the worst case of the
// channel index, whose cost grows with the logarithm of the period there.
void channelIndexOfSpikes(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const auto spikes = [](int n) {
    QvBars b = makeBars(n, 0);
    std::mt19937 random(3);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int i = 0; i < n; ++i) {
      const double spike = unit(random) < 0.1 ? (i % 2 ? 1000.0 : -1000.0) : 0.0;
      b.high.data[i] = b.low.data[i] = b.close.data[i] = 2000.0 + 0.1 * unit(random) + spike;
    }
    return b;
  };
  static const std::vector<QvBars> sets = {spikes(kMillion)};
  runOn(state, kMillion, sets, [p](const QvBars* b, QvArray* out) { return qvCCI(b, out, p, 0); });
}
BENCHMARK(channelIndexOfSpikes)->Name("qvCCI/spikes")->Arg(14)->Arg(200)->Arg(5000)->Arg(100'000);

}  // namespace
