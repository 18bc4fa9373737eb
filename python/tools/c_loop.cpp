// The C calls beside which benchmark.py puts those of Python. Prints "NAME BARS NANOSECONDS" for single
// calls, or with the argument "batch" the time of five calculations over 500 securities of 5,000 bars, all of
// whose results are kept.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "qvlib60.hpp"

namespace {

constexpr const char* kNames[] = {"sma", "rsi", "atr", "bollinger", "macd"};
constexpr double kNumbers[][3] = {{20}, {14}, {14}, {2, 20}, {12, 26, 9}};

// A random walk, the same everywhere.
struct Walk {
  std::vector<double> columns[7];
  explicit Walk(std::size_t size, unsigned seed) {
    double price = 100;
    const auto next = [&seed] { return (seed = seed * 1664525u + 1013904223u) / 4294967296.0 - 0.5; };
    for (std::size_t i = 0; i < size; ++i) {
      const double open = price;
      price *= 1 + 0.03 * next();
      const double items[] = {40000.0 + static_cast<double>(i),
                              open,
                              std::fmax(open, price) * 1.01,
                              std::fmin(open, price) * 0.99,
                              price,
                              1e6 * (1 + next()),
                              0};
      for (int k = 0; k < 7; ++k) columns[k].push_back(items[k]);
    }
  }
  qv::Bars bars() const {
    return qv::Bars::borrow(
        {columns[0], columns[1], columns[2], columns[3], columns[4], columns[5], columns[6]});
  }
};

// One calculation over the bars; its main output into `to`, the others into spare series.
void call(int which, const qv::Bars& bars, QvArray& to, qv::Series* spare) {
  const QvCatalogueEntry& entry = *qvCatalogueFind(kNames[which]);
  const QvBars* sets[] = {&bars};
  const QvArray* inputs[] = {&bars.close};
  QvArray* outputs[5];
  for (int k = 0; k < entry.outputCount; ++k) outputs[k] = k == entry.mainOutput ? &to : &spare[k];
  qv::check(qvCatalogueCall(&entry, sets, inputs, outputs, kNumbers[which], 0), entry.name);
}

template <typename Work>
double best(int samples, int calls, Work work) {
  double least = 1e300;
  for (int s = 0; s < samples; ++s) {
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < calls; ++i) work();
    const std::chrono::duration<double, std::nano> spent = std::chrono::steady_clock::now() - begin;
    least = std::min(least, spent.count() / calls);
  }
  return least;
}

void singleCalls() {
  for (const int size : {100, 1000, 10000}) {
    const Walk walk(static_cast<std::size_t>(size), 1);
    const qv::Bars bars = walk.bars();
    for (int which = 0; which < 5; ++which) {
      qv::Series to(size);
      qv::Series spare[5];
      std::printf("%s %d %.0f\n", kNames[which], size,
                  best(30, 200000 / size, [&] { call(which, bars, to, spare); }));
    }
  }
}

void batch() {
  constexpr int kSecurities = 500, kBars = 5000;
  std::vector<Walk> walks;
  for (unsigned s = 0; s < kSecurities; ++s) walks.emplace_back(kBars, s);
  std::vector<double> block(static_cast<std::size_t>(kSecurities) * kBars * 5);
  qv::Series spare[5][5];
  std::printf(
      "batch 1 %.0f\n", best(5, 1, [&] {
        for (int s = 0; s < kSecurities; ++s) {
          const qv::Bars bars = walks[static_cast<std::size_t>(s)].bars();
          for (int which = 0; which < 5; ++which) {
            QvArray to = {&block[static_cast<std::size_t>(which * kSecurities + s) * kBars], kBars, kBars, 0};
            call(which, bars, to, spare[which]);
          }
        }
      }));
}

}  // namespace

int main(int count, char**) {
  if (count > 1)
    batch();
  else
    singleCalls();
}
