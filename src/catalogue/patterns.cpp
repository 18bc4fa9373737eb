// Signals: formations, crossovers, turns and candlestick patterns.
#include "catalogue/entry.h"
#include "catalogue/sources.h"
#include "patterns/candle_names.h"

namespace qv::catalogue {
namespace {

constexpr std::array kFormations = {"qvCPR",         "qvGap",       "qvGapDown",
                                    "qvGapUp",       "qvInsideBar", "qvIslandReversal",
                                    "qvKeyReversal", "qvOutsideBar"};

// A count of signals is no status.
int statusOf(int count) noexcept {
  return count > 0 ? QV_OK : count;
}

int QVCALL formation(const QvBars* bars, QvArray* out, int which, int start) noexcept {
  const bool known = which >= 0 && which < int{kFormations.size()};
  return known ? statusOf(qvFormationFill(bars, out, kFormations[static_cast<std::size_t>(which)], start,
                                          INT32_MAX))
               : QV_INVALID_PARM;
}

int QVCALL crossOver(const QvArray* a, const QvArray* b, QvArray* out, int start) noexcept {
  return statusOf(qvCrossOverFill(a, b, out, start, INT32_MAX));
}

int QVCALL turn(const QvArray* in, QvArray* out, int start) noexcept {
  return statusOf(qvTurnFill(in, out, start, INT32_MAX));
}

int QVCALL candle(const QvBars* bars, QvArray* out, int which, int start) noexcept {
  if (which < 0 || which >= int{candlePatterns.size()}) return QV_INVALID_PARM;
  QvCandles candles{};
  if (const int status = qvCandleConstruct(bars, &candles)) return status;
  const char* name = candlePatterns[static_cast<std::size_t>(which)].name;
  const int count = qvCandleFill(bars, &candles, out, name, start, INT32_MAX);
  qvCandleFree(&candles);
  return statusOf(count);
}

// The choices are the names of the functions without their prefix.
constexpr auto kFormationNames = [] {
  std::array<const char*, kFormations.size()> names{};
  for (std::size_t i = 0; i < names.size(); ++i) names[i] = kFormations[i] + 2;
  return names;
}();
constexpr auto kCandleNames = [] {
  std::array<const char*, candlePatterns.size()> names{};
  for (std::size_t i = 0; i < names.size(); ++i) names[i] = candlePatterns[i].name + 2;
  return names;
}();

// clang-format off
constexpr Row kRows[] = {
    ADAPTED(qvFormationFill, formation, "formation", "Formation", "A named formation of a bar against the bar before: 1 bullish, -1 bearish.")
        .params(choice("name", kFormationNames, 0)).gives(signal()).beginsLater(1).reads(kHighLowClose)
        .source("Robert D. Edwards and John Magee, Technical Analysis of Stock Trends, 1948")
        .note("All comparisons are strict: equal prices make no formation."),
    ADAPTED(qvCrossOverFill, crossOver, "crossover", "Crossover", "One series comes from below another to it or above it (1), or the reverse (-1).")
        .takes({{{"a", QV_SERIES_CLOSE, 0}, {"b", 0, 0}}}).params().gives(signal()).beginsLater(1)
        .note("Meeting counts as crossing; charts that want the lines to change sides show the crossing a bar later or not at all."),
    ADAPTED(qvTurnFill, turn, "turn", "Turn", "The item before was a trough (1) or a peak (-1).").params().gives(signal()).beginsLater(2),
    ADAPTED(qvCandleFill, candle, "candle", "Candlestick Pattern", "A named candlestick pattern ends at the bar (1).")
        .params(choice("name", kCandleNames, 14)).gives(signal().seesAhead()).reads(kPrices).setsNoFirstValid().neverSettles()
        .source("Steve Nison, Japanese Candlestick Charting Techniques, 1991; the exact conditions are this library's own")
        .note("Bodies are measured against the mean body of the whole set, so a later bar may change an earlier pattern, and a textbook example of two or three bars often shows none."),
};
// clang-format on

constexpr auto kItems = items<kRows>("Patterns and signals");

}  // namespace

constinit const Family patterns{kItems.data(), int{kItems.size()}};

}  // namespace qv::catalogue
