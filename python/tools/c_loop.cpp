// The C calls beside which benchmark.py puts those of Python. Prints "NAME BARS NANOSECONDS" for single
// calls, or with the argument "batch" the time of five calculations over 500 securities of 5,000 bars, all of
// whose results are kept.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <memory>
#include <span>
#include <vector>

#include "qvlib60.hpp"

namespace {

constexpr const char* kNames[] = {"sma", "rsi", "atr", "bollinger", "macd"};
constexpr double kNumbers[][3] = {{20}, {14}, {14}, {2, 20}, {12, 26, 9}};

// Memory that begins at a multiple of 64 bytes, as that of benchmark.py: calls on other memory can take twice
// as long.
class Aligned {
 public:
  explicit Aligned(std::size_t size) : whole_(size + 8), size_(size) {}
  std::span<double> items() {
    void* begin = whole_.data();
    std::size_t room = whole_.size() * sizeof(double);
    return {static_cast<double*>(std::align(64, size_ * sizeof(double), begin, room)), size_};
  }

 private:
  std::vector<double> whole_;
  std::size_t size_;
};

// A random walk, the same everywhere.
struct Walk {
  std::vector<Aligned> columns;
  explicit Walk(std::size_t size, unsigned seed) : columns(7, Aligned(size)) {
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
      for (std::size_t k = 0; k < 7; ++k) columns[k].items()[i] = items[k];
    }
  }
  qv::Bars bars() {
    const auto of = [&](std::size_t k) { return columns[k].items(); };
    return qv::Bars::borrow({of(0), of(1), of(2), of(3), of(4), of(5), of(6)});
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
    const auto count = static_cast<std::size_t>(size);
    Walk walk(count, 1);
    const qv::Bars bars = walk.bars();
    for (int which = 0; which < 5; ++which) {
      Aligned main(count), others[5] = {main, main, main, main, main};
      qv::Series to = qv::Series::borrow(main.items()), spare[5];
      for (int k = 0; k < 5; ++k) spare[k] = qv::Series::borrow(others[k].items());
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
