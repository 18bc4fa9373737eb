// Candlestick patterns.
#include <algorithm>

#include "rows.h"

namespace qvpeers {

namespace {

constexpr int kCandleFlags = kFixed | kDiffers | kCount | kZeroIsFine;
const char* const kNeeded = "qvCandleConstruct,qvCandleFill,qvCandleFree";

int fillWith(Data& d, QvCandles* candles, const char* pattern) {
  return QV_CALL(qvCandleFill, &d.bars, candles, &d.out[0], pattern, 5, d.n - 1);
}
// The least answer: below 0 when one of them failed.
int fill(Data& d, std::initializer_list<const char*> patterns) {
  int least = 0;
  for (const char* pattern : patterns) least = std::min(least, fillWith(d, d.candles(), pattern));
  return least;
}
int constructAndFill(Data& d, std::initializer_list<const char*> patterns) {
  QvCandles candles{};
  int least = QV_CALL(qvCandleConstruct, &d.bars, &candles);
  for (const char* pattern : patterns) least = std::min(least, fillWith(d, &candles, pattern));
  QV_CALL(qvCandleFree, &candles);
  return least;
}

}  // namespace

#define PATTERNS(fill, ...) [](Data& d, int) { return fill(d, {__VA_ARGS__}); }
#define CANDLES(f, ...) TA_CDL##f(ALL, OPENS, HIGHS, LOWS, CLOSES, ##__VA_ARGS__, SPAN, d.peerInts.data())

std::vector<Row> candleRows() {
  const std::string filled = "fill alone (records built before); other rules";
  return {
      {"candle engulfing", kNeeded, kCandleFlags,
       PATTERNS(fill, "qvEngulfingLineBull", "qvEngulfingLineBear"), TALIB(CANDLES(ENGULFING)), nullptr,
       "two fills for TA-Lib's one call; " + filled},
      {"candle hammer", kNeeded, kCandleFlags, PATTERNS(fill, "qvHammer"), TALIB(CANDLES(HAMMER)), nullptr,
       filled},
      {"candle morning star", kNeeded, kCandleFlags, PATTERNS(fill, "qvMorningStar"),
       TALIB(CANDLES(MORNINGSTAR, 0.3)), nullptr, filled},
      {"candle three white soldiers", kNeeded, kCandleFlags, PATTERNS(fill, "qvThreeWhiteSoldiers"),
       TALIB(CANDLES(3WHITESOLDIERS)), nullptr, filled},
      {"candle construct + the above", kNeeded, kCandleFlags | kAside,
       PATTERNS(constructAndFill, "qvEngulfingLineBull", "qvEngulfingLineBear", "qvHammer", "qvMorningStar",
                "qvThreeWhiteSoldiers"),
       TALIB(CANDLES(ENGULFING) | CANDLES(HAMMER) | CANDLES(MORNINGSTAR, 0.3) | CANDLES(3WHITESOLDIERS)),
       nullptr, "building the records and five fills against four TA-Lib calls; not in the means"},
  };
}

}  // namespace qvpeers
