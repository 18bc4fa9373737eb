// Streams: what one bar costs in ten calculations of every day, and a screen of many securities.
#include <memory>

#include "support.h"

namespace {

using namespace qvbench;

struct Close {
  void operator()(QvStream* s) const { qvStreamClose(s); }
};
using Stream = std::unique_ptr<QvStream, Close>;

constexpr const char* kNames[] = {"sma", "ema", "rsi",        "qvMACD", "bollinger",
                                  "atr", "adx", "stochastic", "stdev",  "aroon"};

Stream open(const QvCatalogueEntry& entry) {
  QvStream* s = nullptr;
  qvStreamOpen(&entry, nullptr, 0, &s);
  return Stream(s);
}

// The ends of a bar set's series at bar i, with the close as the single series.
struct Ends {
  const double* values[7];

  Ends(const QvBars& b, int i, bool single) {
    const QvArray* all[] = {&b.date, &b.open, &b.high, &b.low, &b.close, &b.volume, &b.openInterest};
    for (int k = 0; k < 7; ++k) values[k] = all[k]->data + i;
    if (single) values[0] = b.close.data + i;
  }
};

void BM_StreamUpdate(benchmark::State& state) {
  const QvCatalogueEntry& entry = *qvCatalogueFind(kNames[state.range(0)]);
  state.SetLabel(entry.name);
  const QvBars& bars = barSets(5000)[0];
  const bool single = entry.barsCount == 0;
  const Stream s = open(entry);
  double values[5];
  double* const out[] = {&values[0], &values[1], &values[2], &values[3], &values[4]};
  if (qvStreamUpdate(s.get(), Ends(bars, 0, single).values, 1000, nullptr) < 0)
    return state.SkipWithError("update");
  int i = 0;
  for (auto _ : state) {
    qvStreamUpdate(s.get(), Ends(bars, i, single).values, 1, out);
    benchmark::DoNotOptimize(values);
    if (++i == bars.barsize) i = 0;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_StreamUpdate)->DenseRange(0, std::size(kNames) - 1);

// A correction of the bar that forms, again and again.
void BM_StreamReplaceLast(benchmark::State& state) {
  const QvCatalogueEntry& entry = *qvCatalogueFind(kNames[state.range(0)]);
  state.SetLabel(entry.name);
  const QvBars& bars = barSets(5000)[0];
  const bool single = entry.barsCount == 0;
  const Stream s = open(entry);
  qvStreamUpdate(s.get(), Ends(bars, 0, single).values, 1000, nullptr);
  int i = 0;
  for (auto _ : state) {
    qvStreamReplaceLast(s.get(), Ends(bars, i, single).values, nullptr);
    if (++i == bars.barsize) i = 0;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_StreamReplaceLast)->DenseRange(0, std::size(kNames) - 1);

// One new bar for each of 2,000 securities with ten calculations each: updates per second.
void BM_StreamScreener(benchmark::State& state) {
  constexpr int kSecurities = 2000;
  const auto& sets = barSets(5000);
  std::vector<Stream> streams;
  std::vector<bool> single;
  for (const char* name : kNames) single.push_back(qvCatalogueFind(name)->barsCount == 0);
  for (int k = 0; k < kSecurities; ++k) {
    const QvBars& bars = sets[static_cast<std::size_t>(k) % sets.size()];
    for (std::size_t c = 0; c < std::size(kNames); ++c) {
      streams.push_back(open(*qvCatalogueFind(kNames[c])));
      qvStreamUpdate(streams.back().get(), Ends(bars, 0, single[c]).values, 300, nullptr);
    }
  }
  double values[5];
  double* const out[] = {&values[0], &values[1], &values[2], &values[3], &values[4]};
  int i = 0;
  for (auto _ : state) {
    for (std::size_t k = 0; k < streams.size(); ++k) {
      const std::size_t c = k % std::size(kNames);
      qvStreamUpdate(streams[k].get(), Ends(sets[k / std::size(kNames) % sets.size()], i, single[c]).values,
                     1, out);
    }
    benchmark::DoNotOptimize(values);
    if (++i == 5000) i = 0;
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(streams.size()));
}
BENCHMARK(BM_StreamScreener)->Unit(benchmark::kMillisecond);

}  // namespace
