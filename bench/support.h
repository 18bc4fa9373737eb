// Data and counters shared by the benchmarks. Rates are bars per second; compare ratios to the
// copy yardstick within one run, for machines are noisy.
#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <random>
#include <utility>
#include <vector>

#include "qvlib60.h"

namespace qvbench {

inline constexpr int kMillion = 1'000'000;

// The shape of the prices, set by --shape: a random walk, rising or falling throughout, or flat.
enum class Shape { walk, rising, falling, flat };
inline Shape shape = Shape::walk;

// Each iteration takes the next of several sets of data and of outputs. A million bars thus come from
// memory, as they do for a program that screens many securities, and not from a cache that happens to
// hold the one series of the benchmark. Of 5,000 bars all sets stay in the cache, and there are so many
// that the branch predictor does not know the bars by heart when they come again.
inline int setsOf(int n) {
  return n >= 100'000 ? 8 : 16;
}

// make(n, set)
template <typename T, typename Make>
const std::vector<T>& madeOnce(int n, Make make) {
  static std::vector<std::pair<int, std::vector<T>>> made;
  for (const auto& [length, sets] : made)
    if (length == n) return sets;
  std::vector<T> sets;
  for (int k = 0; k < setsOf(n); ++k) sets.push_back(make(n, k));
  return made.emplace_back(n, std::move(sets)).second;
}

// The next close: a step of at most 1 on the random walk, kept above 100, else a small one of one direction
// (down so small that a million of them stay above zero) or none.
inline double nextClose(double close, std::mt19937& random) {
  if (shape != Shape::walk)
    return close + (shape == Shape::rising ? 1e-3 : shape == Shape::falling ? -1e-5 : 0);
  std::uniform_real_distribution<double> step(-1.0, 1.0);
  return close > 100.0 ? close + step(random) : 1000.0;
}

inline QvArray makeSeries(int n, int set) {
  QvArray a{};
  qvAllocArray(&a, n);
  std::mt19937 random(static_cast<unsigned>(42 + set));
  double x = 1000.0;
  for (int i = 0; i < n; ++i) a.data[i] = x = nextClose(x, random);
  return a;
}

inline QvBars makeBars(int n, int set) {
  QvBars b{};
  qvAllocBars(&b, n);
  std::mt19937 random(static_cast<unsigned>(43 + 100 * set));
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const double reach = shape == Shape::flat ? 0.0 : 1.0;
  double c = 1000.0;
  for (int i = 0; i < n; ++i) {
    const double o = c;
    c = nextClose(c, random);
    b.date.data[i] = 2.0 + i;
    b.open.data[i] = o;
    b.close.data[i] = c;
    b.high.data[i] = (o > c ? o : c) + reach * unit(random);
    b.low.data[i] = (o < c ? o : c) - reach * unit(random);
    b.volume.data[i] = 1000.0 + 9000.0 * unit(random);
    b.openInterest.data[i] = 500.0 + 1000.0 * unit(random);
  }
  return b;
}

inline const std::vector<QvArray>& seriesSets(int n) {
  return madeOnce<QvArray>(n, makeSeries);
}
inline const std::vector<QvBars>& barSets(int n) {
  return madeOnce<QvBars>(n, makeBars);
}

inline void countBars(benchmark::State& state, int n) {
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * n);
}

// Output series, five for each set of data, reused from call to call.
class Outputs {
 public:
  explicit Outputs(std::size_t count) : sets_(count) {}
  ~Outputs() {
    for (auto& set : sets_)
      for (QvArray& a : set) qvFreeArray(&a);
  }
  QvArray* operator[](std::size_t k) { return sets_[k].data(); }

 private:
  std::vector<std::array<QvArray, 5>> sets_;
};

// Times call(input, outputs) with `input` one of `inputs`.
template <typename T, typename Call>
void runOn(benchmark::State& state, int n, const std::vector<T>& inputs, Call call) {
  Outputs outputs(inputs.size());
  for (std::size_t k = 0; k < inputs.size(); ++k)  // first touch of the pages
    if (call(&inputs[k], outputs[k]) < 0) state.SkipWithError("the calculation failed");
  std::size_t k = 0;
  for (auto _ : state) {
    call(&inputs[k], outputs[k]);
    benchmark::ClobberMemory();
    k = k + 1 < inputs.size() ? k + 1 : 0;
  }
  countBars(state, n);
}

// call(const QvArray* in, QvArray* out) and call(const QvBars* bars, QvArray* out); `out` points to
// five output series.
template <typename Call>
void runOnSeries(benchmark::State& state, int n, Call call) {
  runOn(state, n, seriesSets(n), call);
}
template <typename Call>
void runOnBars(benchmark::State& state, int n, Call call) {
  runOn(state, n, barSets(n), call);
}

}  // namespace qvbench
