// The candle construction and every pattern's fill.
#include <algorithm>
#include <string>

#include "patterns/candle_names.h"
#include "support.h"

namespace {

// Opens away from the last close, on multiples of a quarter around 100: dojis, gaps and equal prices
// occur, and with them most of the patterns.
QvBars makeCoarseBars(int n, int set) {
  QvBars b{};
  qvAllocBars(&b, n);
  std::mt19937 random(static_cast<unsigned>(44 + set));
  const auto quarters = [&random](int most) {
    return static_cast<int>(random() % (unsigned(most) + 1)) / 4.0;
  };
  double close = 100.0;
  for (int i = 0; i < n; ++i) {
    const double open = close + quarters(8) - 1.0;
    close = open + quarters(24) - 3.0;
    if (close < 50.0 || close > 200.0) close = 100.0;
    b.date.data[i] = 2.0 + i;
    b.open.data[i] = open;
    b.close.data[i] = close;
    b.high.data[i] = std::max(open, close) + quarters(8);
    b.low.data[i] = std::min(open, close) - quarters(8);
  }
  return b;
}

struct Set {
  QvBars bars;
  QvCandles candles;
};

const std::vector<Set>& sets(int n) {
  return qvbench::madeOnce<Set>(n, [](int count, int number) {
    Set set{makeCoarseBars(count, number), QvCandles{}};
    qvCandleConstruct(&set.bars, &set.candles);
    return set;
  });
}

// With the allocation of the records and their release.
void CandleConstruct(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  qvbench::runOn(state, n, sets(n), [](const Set* set, QvArray*) {
    QvCandles candles{};
    const int status = qvCandleConstruct(&set->bars, &candles);
    qvCandleFree(&candles);
    return status;
  });
}
BENCHMARK(CandleConstruct)->Arg(5000)->Arg(qvbench::kMillion);

void CandleFill(benchmark::State& state, const char* name) {
  const int n = static_cast<int>(state.range(0));
  int found = 0;
  qvbench::runOn(state, n, sets(n), [&](const Set* set, QvArray* out) {
    return found = qvCandleFill(&set->bars, &set->candles, out, name, 0, n);
  });
  state.counters["found"] = found;
}

const bool registered = [] {
  for (const auto& pattern : qv::candlePatterns)
    benchmark::RegisterBenchmark((std::string("CandleFill/") + pattern.name).c_str(), CandleFill,
                                 pattern.name)
        ->Arg(qvbench::kMillion);
  return true;
}();

}  // namespace
