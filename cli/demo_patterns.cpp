// Candlestick patterns and a point-and-figure chart.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "cli/demo.h"
#include "cli/records.h"
#include "cli/table.h"
#include "runs/temporary_file.h"

namespace qvcli {

namespace {

constexpr const char* kPatterns[] = {
    "qvBeltHoldLineBull",     "qvBeltHoldLineBear",   "qvHammer",
    "qvHangingman",           "qvInvertedHammer",     "qvShootingStar",
    "qvGravestoneDoji",       "qvLongLeggedDoji",     "qvHighWave",
    "qvEngulfingLineBull",    "qvEngulfingLineBear",  "qvHaramiBlack",
    "qvHaramiCrossBlack",     "qvHaramiWhite",        "qvHaramiCrossWhite",
    "qvDarkCloudCover",       "qvPiercingLine",       "qvInNeckLine",
    "qvThrustingLine",        "qvSeperatingLineBull", "qvSeperatingLineBear",
    "qvCounterAttackBull",    "qvCounterAttackBear",  "qvMorningStar",
    "qvMorningDojiStar",      "qvEveningStar",        "qvEveningDojiStar",
    "qvAbandonedBabyBottom",  "qvAbandonedBabyTop",   "qvUpsideGap2Crows",
    "qvThreeWhiteSoldiers",   "qvAdvanceBlock",       "qvStalledPattern",
    "qvTasukiUpsideGap",      "qvTasukiDownsideGap",  "qvSideBySideWhiteGapUp",
    "qvSideBySideWhiteGapDn", "qvRising3Method",      "qvFalling3Method",
    "qvMatHoldPattern",       "qvThreeGapsUp",        "qvThreeGapsDown"};

// Candles that free themselves.
struct Candles : QvCandles {
  Candles() : QvCandles{} {}
  ~Candles() { qvCandleFree(this); }
  Candles(const Candles&) = delete;
  Candles& operator=(const Candles&) = delete;
};

}  // namespace

void showCandles(const DemoData& demo) {
  const QvBars& bars = *demo.bars;
  Candles candles;
  check(qvCandleConstruct(&bars, &candles), "candles");
  const double since = bars.barsize > 0 ? bars.date.data[bars.barsize - 1] - 2 * 365 : 0.0;
  const int first = qvFindDate(&bars, since);

  heading("Candlestick patterns of the last two years");
  std::printf("%-24s %9s %9s  latest\n", "pattern", "two years", "in all");
  for (const char* name : kPatterns) {
    qv::Series all;
    const int found = qvCandleFill(&bars, &candles, &all, name, 0, bars.barsize - 1);
    check(found < 0 ? found : 0, name);
    const auto recent = std::count(all.data + first, all.data + all.size, 1.0);
    if (recent == 0) continue;
    std::printf("%-24s %9d %9d ", name + 2, static_cast<int>(recent), found);
    int shown = 0;
    for (int i = bars.barsize - 1; i >= first && shown < 3; --i) {
      if (all.data[i] == 0.0) continue;
      std::printf(" %s", dateText(bars.date.data[i]).c_str());
      ++shown;
    }
    std::printf("\n");
  }
}

void showPointAndFigure(const DemoData& demo) {
  const QvBars& bars = *demo.bars;
  constexpr int kYears = 4, kReversal = 3, kWidth = 78, kRows = 40, kLabel = 10;
  const double since = bars.barsize > 0 ? bars.date.data[bars.barsize - 1] - kYears * 365 : 0.0;
  const int start = qvFindDate(&bars, since);
  // A box that fits the range into the rows of a terminal, in steps of ten points.
  double low = 0.0, high = 0.0;
  check(qvArrayStats(&bars.low, &low, nullptr, nullptr, nullptr, start, bars.barsize - 1, 0), "range");
  check(qvArrayStats(&bars.high, nullptr, &high, nullptr, nullptr, start, bars.barsize - 1, 0), "range");
  const double box = std::max(10.0, std::ceil((high - low) / kRows / 10.0) * 10.0);

  qv::Bars columns;
  qv::Series columnOf;
  check(qvBars2PNFhilo(&bars, &columns, &columnOf, box, kReversal, start), "point and figure");
  heading("Point and figure, the last " + std::to_string(kYears) + " years, box " +
          std::to_string(static_cast<int>(box)) + ", reversal " + std::to_string(kReversal));
  const qv::runs::TemporaryFile file;
  check(qvPNFchart(&columns, box, file.path.string().c_str(), 0), "point-and-figure chart");
  std::ifstream chart(file.path);
  // The newest columns, as many as fit beside the price.
  const int skipped = std::max(0, columns.barsize - (kWidth - kLabel));
  for (std::string row; std::getline(chart, row);) {
    if (row.size() <= kLabel) continue;
    row.erase(kLabel, static_cast<std::size_t>(skipped));
    std::printf("%s\n", row.c_str());
  }
}

}  // namespace qvcli
