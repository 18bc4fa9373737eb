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

// Each iteration takes the next of several equal copies of the data and of the outputs. A million
// bars thus come from memory, as they do for a program that screens many securities, and not from a
// cache that happens to hold the one series of the benchmark; 5,000 bars stay in the cache.
inline int copiesOf(int n) {
  return n >= 100'000 ? 8 : 1;
}

template <typename T, typename Make>
const std::vector<T>& madeOnce(int n, Make make) {
  static std::vector<std::pair<int, std::vector<T>>> made;
  for (const auto& [length, copies] : made)
    if (length == n) return copies;
  std::vector<T> copies;
  for (int k = 0; k < copiesOf(n); ++k) copies.push_back(make(n));
  return made.emplace_back(n, std::move(copies)).second;
}

inline QvArray makeWalk(int n) {
  QvArray a{};
  qvAllocArray(&a, n);
  std::mt19937 random(42);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  double x = 1000.0;
  for (int i = 0; i < n; ++i) a.data[i] = x = x > 100.0 ? x + unit(random) : 1000.0;
  return a;
}

inline QvBars makeBars(int n) {
  QvBars b{};
  qvAllocBars(&b, n);
  std::mt19937 random(43);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  double c = 1000.0;
  for (int i = 0; i < n; ++i) {
    const double o = c;
    c = c > 100.0 ? c + 2 * unit(random) - 1 : 1000.0;
    b.date.data[i] = 2.0 + i;
    b.open.data[i] = o;
    b.close.data[i] = c;
    b.high.data[i] = (o > c ? o : c) + unit(random);
    b.low.data[i] = (o < c ? o : c) - unit(random);
    b.volume.data[i] = 1000.0 + 9000.0 * unit(random);
    b.openInterest.data[i] = 500.0 + 1000.0 * unit(random);
  }
  return b;
}

inline const std::vector<QvArray>& walks(int n) {
  return madeOnce<QvArray>(n, makeWalk);
}
inline const std::vector<QvBars>& barSets(int n) {
  return madeOnce<QvBars>(n, makeBars);
}

inline void countBars(benchmark::State& state, int n) {
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * n);
}

// Output series, five for each copy of the data, reused from call to call.
class Outputs {
 public:
  explicit Outputs(std::size_t copies) : sets_(copies) {}
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
  runOn(state, n, walks(n), call);
}
template <typename Call>
void runOnBars(benchmark::State& state, int n, Call call) {
  runOn(state, n, barSets(n), call);
}

}  // namespace qvbench
