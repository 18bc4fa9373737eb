// The simulator's clock: bars per second, idle and trading, and runs per second of a parameter sweep.
#include "support.h"

namespace {

struct System : QvOrderSystem {
  explicit System(const QvBars& over) : QvOrderSystem{} { qvOrderSystemInit(this, "Bench", &over); }
  System(const System&) = delete;
  System& operator=(const System&) = delete;
  ~System() { qvOrderSystemClose(this); }
};

// Runs strategy(system) at every bar, over and over again from the start.
template <typename Strategy>
void runBars(benchmark::State& state, System& sys, int n, Strategy strategy) {
  for (auto _ : state) {
    qvOrderSystemReset(&sys);
    while (qvProcessOrders(&sys) == 1) strategy(sys);
    benchmark::DoNotOptimize(sys.netStatistics.totalNetProfit);
  }
  qvbench::countBars(state, n);
  state.counters["trades"] = sys.tradeCount;
}

void ProcessIdle(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  System sys(qvbench::barSets(n)[0]);
  runBars(state, sys, n, [](System&) {});
}
BENCHMARK(ProcessIdle)->Arg(5000)->Arg(qvbench::kMillion);

// Every bar closes yesterday's position and opens another: a trade per bar.
void ProcessEntryAndExit(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  System sys(qvbench::barSets(n)[0]);
  sys.pyramiding = 1;
  runBars(state, sys, n, [](System& s) {
    qvBuyToOpen(&s, "in", 1, 0, QV_MARKET, QV_DAY);
    qvSellToClose(&s, "out", "", 1, 0, QV_MARKET, QV_DAY);
  });
}
BENCHMARK(ProcessEntryAndExit)->Arg(5000)->Arg(qvbench::kMillion);

// The same with a stop to enter and a limit to leave, which round to the tick.
void ProcessStopAndLimit(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  System sys(qvbench::barSets(n)[0]);
  runBars(state, sys, n, [](System& s) {
    const double close = s.bars.close.data[s.currentBar];
    qvBuyToOpen(&s, "in", 1, close + 0.25, QV_STOP, QV_DAY);
    qvSellToClose(&s, "out", "", 1, close + 0.5, QV_LIMIT, QV_DAY);
  });
}
BENCHMARK(ProcessStopAndLimit)->Arg(5000)->Arg(qvbench::kMillion);

// A hundred pending orders that never fill, sorted and tried on every bar.
void ProcessManyPending(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  System sys(qvbench::barSets(n)[0]);
  runBars(state, sys, n, [](System& s) {
    if (s.currentBar > 0) return;
    for (int i = 0; i < 100; ++i) qvBuyToOpen(&s, "far", 1, 1.0 + i, QV_LIMIT, QV_GTC);
  });
}
BENCHMARK(ProcessManyPending)->Arg(5000);

// One trade over the whole set. Its drawdown scans all its bars when it closes.
void ProcessHeldThroughout(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  System sys(qvbench::barSets(n)[0]);
  runBars(state, sys, n, [n](System& s) {
    if (s.currentBar == 0) qvBuyToOpen(&s, "in", 1, 0, QV_MARKET, QV_DAY);
    if (s.currentBar == n - 2) qvSellToClose(&s, "out", "", 1, 0, QV_MARKET, QV_DAY);
  });
}
BENCHMARK(ProcessHeldThroughout)->Arg(qvbench::kMillion);

// One combination of a sweep: two averages, then a run that is always in the market on the side of
// the faster one. Items are runs.
void SweepRun(benchmark::State& state) {
  const int n = 5000;
  const QvBars& bars = qvbench::barSets(n)[0];
  System sys(bars);
  QvOptVar vars[2] = {{5, 50, 5, 0, 0}, {60, 200, 10, 0, 0}};
  const int combinations = qvOptVarCount(vars, 2);
  QvArray fast{}, slow{};
  int k = 1;
  for (auto _ : state) {
    qvOptVarValue(vars, 2, k);
    k = k % combinations + 1;
    qvExpMA(&bars.close, &fast, vars[0].value, 0);
    qvExpMA(&bars.close, &slow, vars[1].value, 0);
    qvOrderSystemReset(&sys);
    while (qvProcessOrders(&sys) == 1) {
      const int i = sys.currentBar;
      if (i < vars[1].value) continue;
      const bool above = fast.data[i] > slow.data[i];
      if (above == (fast.data[i - 1] > slow.data[i - 1])) continue;
      if (above)
        qvBuyToOpen(&sys, "up", 1, 0, QV_MARKET, QV_DAY);
      else
        qvSellToOpen(&sys, "down", 1, 0, QV_MARKET, QV_DAY);
    }
    benchmark::DoNotOptimize(sys.netStatistics.totalNetProfit);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
  state.counters["trades"] = sys.tradeCount;
  qvFreeArray(&fast);
  qvFreeArray(&slow);
}
BENCHMARK(SweepRun);

}  // namespace
