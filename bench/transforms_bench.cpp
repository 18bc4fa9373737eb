// Price transforms, simple changes and comparisons by date. Judge the transforms against the copy
// yardstick times the number of series that they read.
#include "support.h"

namespace {

using namespace qvbench;

template <auto transform>
void transformOf(benchmark::State& state) {
  runOnBars(state, kMillion, [](const QvBars* b, QvArray* out) { return transform(b, &out[0], 0); });
}
BENCHMARK(transformOf<qvAvgPrices>)->Name("qvAvgPrices/series:4");
BENCHMARK(transformOf<qvMedianPrices>)->Name("qvMedianPrices/series:2");
BENCHMARK(transformOf<qvTypicalPrices>)->Name("qvTypicalPrices/series:3");
BENCHMARK(transformOf<qvWeightedCloses>)->Name("qvWeightedCloses/series:3");

void performancePct(benchmark::State& state) {
  runOnSeries(state, kMillion,
              [](const QvArray* in, QvArray* out) { return qvPerformancePct(in, &out[0], 0); });
}
BENCHMARK(performancePct)->Name("qvPerformancePct");

void diffValue(benchmark::State& state) {
  const int period = static_cast<int>(state.range(0));
  runOnSeries(state, kMillion,
              [period](const QvArray* in, QvArray* out) { return qvDiffValue(in, &out[0], period, 0); });
}
BENCHMARK(diffValue)->Name("qvDiffValue/p")->Arg(14)->Arg(200);

// Two sets of which each lacks every tenth date of the other.
template <typename Compare>
void compareBars(benchmark::State& state, Compare compare) {
  static const std::vector<QvBars>& others = *[] {
    auto* made = new std::vector<QvBars>;
    for (int k = 0; k < setsOf(kMillion); ++k) {
      QvBars b = makeBars(kMillion, k);
      for (int i = 0; i < b.barsize; ++i) b.date.data[i] = 2.0 + i + i / 10;
      made->push_back(b);
    }
    return made;
  }();
  const std::vector<QvBars>& sets = barSets(kMillion);
  runOnBars(state, kMillion, [&](const QvBars* b, QvArray* out) {
    return compare(b, &others[static_cast<std::size_t>(b - sets.data())], &out[0]);
  });
}
BENCHMARK_CAPTURE(compareBars, qvCompStrength, [](const QvBars* a, const QvBars* b, QvArray* out) {
  return qvCompStrength(a, b, out, 0.0);
})->Name("qvCompStrength");
BENCHMARK_CAPTURE(compareBars, qvCompPerformance, [](const QvBars* a, const QvBars* b, QvArray* out) {
  return qvCompPerformance(a, b, out, 0.0);
})->Name("qvCompPerformance");
BENCHMARK_CAPTURE(compareBars, qvSpread, [](const QvBars* a, const QvBars* b, QvArray* out) {
  return qvSpread(a, b, out, 1.0, 2.0, 0.0);
})->Name("qvSpread");

}  // namespace
