// Bar compression. The rolling form must cost the same per bar whatever the period.
#include "support.h"

namespace {

using namespace qvbench;

// Times call(in, out), with an output set of its own for each copy of the data.
template <typename Compress>
void compress(benchmark::State& state, Compress call) {
  const std::vector<QvBars>& sets = barSets(kMillion);
  std::vector<QvBars> out(sets.size());
  std::size_t k = 0;
  const auto next = [&] {
    QvBars in = sets[k];
    if (call(&in, &out[k]) < 0) state.SkipWithError("the compression failed");
    k = k + 1 < sets.size() ? k + 1 : 0;
  };
  for (std::size_t touched = 0; touched < out.size(); ++touched) next();  // first touch of the pages
  for (auto _ : state) next();
  countBars(state, kMillion);
  for (QvBars& b : out) qvFreeBars(&b);
}

void groupBarsDate(benchmark::State& state) {
  const int frequency = static_cast<int>(state.range(0));
  compress(state, [=](QvBars* in, QvBars* out) { return qvGroupBarsDate(in, out, frequency, 0, 0); });
}
BENCHMARK(groupBarsDate)->Name("qvGroupBarsDate/frequency")->DenseRange(2, 6);

void groupBarsTime(benchmark::State& state) {
  compress(state, [](QvBars* in, QvBars* out) { return qvGroupBarsTime(in, out, 300, 0, 0); });
}
BENCHMARK(groupBarsTime)->Name("qvGroupBarsTime");

void groupArray(benchmark::State& state) {
  runOnBars(state, kMillion,
            [](const QvBars* b, QvArray* out) { return qvGroupArray(b, &b->volume, &out[0], 4); });
}
BENCHMARK(groupArray)->Name("qvGroupArray");

void groupBarsPeriods(benchmark::State& state) {
  const int period = static_cast<int>(state.range(0));
  compress(state, [=](QvBars* in, QvBars* out) { return qvGroupBarsPeriods(in, out, period, 0); });
}
BENCHMARK(groupBarsPeriods)->Name("qvGroupBarsPeriods/p")->Arg(14)->Arg(200)->Arg(2000);

}  // namespace
