// Formulas: what opening one costs, and one of ten terms against the sum of its calculations.
#include "support.h"

namespace {

using namespace qvbench;

constexpr const char* kTenTerms =
    "rsi(14) < 70 and close > sma(200) and ema(12) > ema(26) and adx(14, 14) > 20 and macd(12, 26, 9) > 0 "
    "and close < bollinger(2, 20).upper and cci(14) > -100 and atr(14) < 50 and stdev(20) > 1 and "
    "roc(100, 10) > -20";

void BM_FormulaOpen(benchmark::State& state) {
  char error[200];
  for (auto _ : state) {
    QvFormula* f = qvFormulaOpen(kTenTerms, error, sizeof error);
    if (!f) state.SkipWithError(error);
    qvFormulaClose(f);
  }
}
BENCHMARK(BM_FormulaOpen);

void BM_FormulaOpenOneTerm(benchmark::State& state) {
  for (auto _ : state) qvFormulaClose(qvFormulaOpen("rsi(14) < 30", nullptr, 0));
}
BENCHMARK(BM_FormulaOpenOneTerm);

void BM_FormulaTenTerms(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  char error[200];
  QvFormula* f = qvFormulaOpen(kTenTerms, error, sizeof error);
  if (!f) return state.SkipWithError(error);
  runOnBars(state, n, [f](const QvBars* bars, QvArray* out) { return qvFormulaEval(f, bars, out); });
  qvFormulaClose(f);
}
BENCHMARK(BM_FormulaTenTerms)->Arg(5000)->Arg(kMillion);

// Its calculations alone, one after the other.
void BM_FormulaCalculations(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  runOnBars(state, n, [](const QvBars* bars, QvArray* out) {
    QvArray *a = out, *b = out + 1, *c = out + 2;
    const QvArray* close = &bars->close;
    return qvRSI(close, a, 14, 0) | qvSimpleMA(close, a, 200, 0) | qvExpMA(close, a, 12, 0) |
           qvExpMA(close, a, 26, 0) | qvADX(bars, a, 14, 14, 0) |
           qvMACDx(close, a, b, c, out + 3, out + 4, 12, 26, 9, 0) | qvBollinger(bars, a, b, c, 2, 20, 0) |
           qvCCI(bars, a, 14, 0) | qvATR(bars, a, 14, 0) | qvStdDevMv(close, a, 0, 20, 0) |
           qvRateOfChange(close, a, 100, 10, 0);
  });
}
BENCHMARK(BM_FormulaCalculations)->Arg(5000)->Arg(kMillion);

}  // namespace
