// Every average and smoothing sum: a million bars with a short, a long and a very long period, and
// the 5,000 bars of twenty years of daily prices.
#include "support.h"

namespace {

using Average = int (*)(const QvArray*, QvArray*, int period);

void run(benchmark::State& state, Average average) {
  const int n = static_cast<int>(state.range(0)), period = static_cast<int>(state.range(1));
  qvbench::runOnSeries(state, n, [=](const QvArray* in, QvArray* out) { return average(in, out, period); });
}

void sizes(benchmark::internal::Benchmark* b) {
  b->ArgNames({"n", "period"});
  for (int period : {14, 200, 2000}) b->Args({qvbench::kMillion, period});
  b->Args({5000, 14});
}

#define QV_METHOD(name, code)                                                                       \
  BENCHMARK_CAPTURE(                                                                                \
      run, name,                                                                                    \
      +[](const QvArray* in, QvArray* out, int p) { return qvMovingAverage(in, out, code, p, 0); }) \
      ->Apply(sizes)
#define QV_MEMBER(name, call)                                                  \
  BENCHMARK_CAPTURE(                                                           \
      run, name, +[](const QvArray* in, QvArray* out, int p) { return call; }) \
      ->Apply(sizes)

QV_METHOD(qvExpMA, 0);
QV_METHOD(qvLstSqrMA, 1);
QV_METHOD(qvSimpleMA, 2);
QV_METHOD(qvWeightedMA, 3);
QV_METHOD(qvWellesMA, 4);
QV_METHOD(qvTriangularMA, 5);
QV_METHOD(qvVariableMA, 6);
QV_METHOD(qvZeroLagExpMA, 7);
QV_MEMBER(qvMovingSum, qvMovingSum(in, out, p, 0));
QV_MEMBER(qvWellesSum, qvWellesSum(in, out, p, 0));
QV_MEMBER(qvDEMA, qvDEMA(in, out, p, 0));
QV_MEMBER(qvTEMA, qvTEMA(in, out, p, 0));
QV_MEMBER(qvT3, qvT3(in, out, p, 0.7, 3, 0));
QV_MEMBER(qvVIDYA, qvVIDYA(in, out, p, 14, 0));  // the period that could cost is the oscillator's
QV_MEMBER(qvCMO, qvCMO(in, out, p, 0));
// The series' own values serve as volumes: the arithmetic is the same.
QV_MEMBER(qvVolAdjustedMA, qvVolAdjustedMA(in, in, out, p, 0));

}  // namespace
