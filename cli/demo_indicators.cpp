// Momentum, trend and formations; bands, money flow and breadth.
#include <cstdio>
#include <string>

#include "cli/demo.h"
#include "cli/records.h"
#include "cli/table.h"

namespace qvcli {

namespace {

// Prints the last `count` bars on which the crossover series signals.
void listCrossings(const QvBars& bars, const QvArray& crossings, int count) {
  std::printf("\nLatest crossings of MACD and its signal line:");
  for (int i = crossings.size - 1; i > crossings.firstValid && count > 0; --i) {
    if (crossings.data[i] == 0.0) continue;
    std::printf("  %s %s", dateText(bars.date.data[i]).c_str(), crossings.data[i] > 0.0 ? "up" : "down");
    --count;
  }
  std::printf("\n");
}

void listFormations(const QvBars& bars, int lastBars) {
  const char* names[] = {"qvCPR",       "qvGapUp",       "qvGapDown",   "qvIslandReversal",
                         "qvInsideBar", "qvKeyReversal", "qvOutsideBar"};
  const int first = bars.barsize > lastBars ? bars.barsize - lastBars : 0;
  std::printf("\nFormations in the last %d bars:\n", bars.barsize - first);
  for (const char* name : names) {
    qv::Series signals;
    const int found = qvFormationFill(&bars, &signals, name, first, bars.barsize - 1);
    check(found < 0 ? found : 0, name);
    std::printf("  %-17s %3d", name, found);
    int shown = 0;
    for (int i = bars.barsize - 1; i >= first && shown < 4; --i) {
      if (signals.data[i] == 0.0) continue;
      std::printf("  %s %+.0f", dateText(bars.date.data[i]).c_str(), signals.data[i]);
      ++shown;
    }
    std::printf("%s\n", found > shown ? "  ..." : "");
  }
}

}  // namespace

void showMomentum(const DemoData& demo) {
  QvBars& bars = *demo.bars;
  qv::Series rsi, fast, slow, macd, signal, crossings, k, d, adx, sar, direction, up, down;
  check(qvRSI(&bars.close, &rsi, 14, 0), "RSI");
  check(qvMACDx(&bars.close, &fast, &slow, &macd, &signal, &crossings, 12, 26, 9, 0), "MACD");
  check(qvStochasticOscillator(&bars, &k, &d, QV_MA_SIMPLE, 14, 3, 3, 0), "stochastic");
  check(qvADX(&bars, &adx, 14, 14, 0), "ADX");
  check(qvSAR(&bars, &sar, &direction, 0.02, 0.2, 0), "parabolic SAR");
  check(qvAroon(&bars, &up, &down, 25, 0), "Aroon");

  heading("Momentum and trend, the last ten bars");
  printColumns(bars.date, bars.barsize - 10, bars.barsize - 1,
               {{"close", &bars.close},
                {"RSI 14", &rsi},
                {"MACD", &macd},
                {"signal", &signal},
                {"%K 14,3", &k},
                {"%D 3", &d}});
  std::printf("\n");
  printColumns(bars.date, bars.barsize - 10, bars.barsize - 1,
               {{"close", &bars.close},
                {"ADX 14", &adx},
                {"SAR", &sar},
                {"direction", &direction, 0},
                {"Aroon up", &up},
                {"Aroon down", &down}});
  listCrossings(bars, crossings, 4);
  listFormations(bars, 100);
}

void showBands(const DemoData& demo) {
  QvBars& bars = *demo.bars;
  qv::Series upper, middle, lower, flow, balance;
  check(qvBollinger(&bars, &upper, &middle, &lower, 2.0, 20, 0), "Bollinger bands");
  check(qvMoneyFlowIndex(&bars, &flow, 14, 0), "money flow index");
  check(qvOBV(&bars, &balance, 0), "on-balance volume");
  constexpr double kBillion = 1e9;
  qv::Series balanceInBillions;
  check(qvMultAddArray(&balance, &balanceInBillions, 1.0 / kBillion, 0.0, 0), "on-balance volume");

  qv::Series conversion, base, spanA, spanB, lagging;
  constexpr int kBase = 26;
  for (qv::Series* ahead : {&spanA, &spanB})  // the leading spans run ahead of the last bar
    check(qvAllocArray(ahead, bars.barsize + kBase - 1), "Ichimoku");
  check(qvIchimokuKinkoHyo(&bars, &conversion, &base, &spanA, &spanB, &lagging, 9, kBase, 52, kBase, 0, 0),
        "Ichimoku");

  // The bundled data has no advancing and declining issues. As a stand-in each week counts its days that
  // closed higher and lower.
  qv::Series rises, falls, advancing, declining, oscillator, summation;
  check(qvAllocArray(&rises, bars.barsize), "breadth");
  check(qvAllocArray(&falls, bars.barsize), "breadth");
  for (int i = 1; i < bars.barsize; ++i) {
    rises.data[i] = bars.close.data[i] > bars.close.data[i - 1] ? 1.0 : 0.0;
    falls.data[i] = bars.close.data[i] < bars.close.data[i - 1] ? 1.0 : 0.0;
  }
  qv::Bars weeks;
  check(qvGroupBarsDate(&bars, &weeks, QV_FREQ_WEEKLY, 0.0, 0.0), "weekly bars");
  check(qvGroupArray(&bars, &rises, &advancing, QV_FREQ_WEEKLY), "breadth");
  check(qvGroupArray(&bars, &falls, &declining, QV_FREQ_WEEKLY), "breadth");
  check(qvMcClellanOscSum(&advancing, &declining, &oscillator, &summation, 19, 39, 0),
        "McClellan oscillator");

  heading("Bands and money flow, the last ten bars");
  const int last = bars.barsize - 1;
  printColumns(bars.date, last - 9, last,
               {{"close", &bars.close},
                {"lower band", &lower},
                {"middle", &middle},
                {"upper band", &upper},
                {"MFI 14", &flow},
                {"OBV (10^9)", &balanceInBillions}});
  heading("Ichimoku, the last ten bars");
  printColumns(bars.date, last - 9, last,
               {{"close", &bars.close},
                {"conversion", &conversion},
                {"base", &base},
                {"span A", &spanA},
                {"span B", &spanB}});
  std::printf("%d bars ahead: span A %.2f, span B %.2f\n", kBase - 1, spanA.data[last + kBase - 1],
              spanB.data[last + kBase - 1]);
  heading("McClellan oscillator of a stand-in: each week's rising and falling days as its issues");
  printColumns(weeks.date, weeks.barsize - 6, weeks.barsize - 1,
               {{"rising", &advancing, 0},
                {"falling", &declining, 0},
                {"oscillator", &oscillator},
                {"summation", &summation}});
}

}  // namespace qvcli
