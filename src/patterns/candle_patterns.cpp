// The candlestick patterns, each a row: the candles that it asks for, bar i first, then back in time,
// and what must hold between their prices. endsAt has the guards that all of them share.
#include "qvlib60/patterns/candle_patterns.h"

#include <initializer_list>

#include "patterns/candle_window.h"

namespace {

using qv::Window;

// The values that a field may have, as a set of bits.
enum Colours : unsigned { kAnyColour = ~0u, kBlack = 1u << QV_CANDLE_BLACK, kWhite = 1u << QV_CANDLE_WHITE };
enum Shapes : unsigned {
  kAnyShape = ~0u,
  kDoji = 1u << QV_BODY_DOJI,
  kSmallBody = 1u << QV_BODY_SMALL,
  kLongBody = 1u << QV_BODY_LONG,
  kNotDoji = ~kDoji,
  kNotLong = ~kLongBody
};
enum Shadows : unsigned {
  kAnyShadow = ~0u,
  kShortShadow = 1u << QV_SHADOW_SHORT,
  kLongShadow = 1u << QV_SHADOW_LONG
};

struct Candle {
  Colours colour = kAnyColour;
  Shapes shape = kAnyShape;
  Shadows topShadow = kAnyShadow;
  Shadows bottomShadow = kAnyShadow;
};

// 1 or 0.
constexpr unsigned contains(unsigned values, std::int8_t value) noexcept {
  return values == ~0u ? 1u : values >> (value & 31) & 1u;
}

// All fields are looked at: what candles come next nobody can predict, and a branch for each would cost more.
constexpr bool matches(const Candle& wanted, const QvCandle& c) noexcept {
  return (contains(wanted.colour, c.colour) & contains(wanted.shape, c.shape) &
          contains(wanted.topShadow, c.topShadow) & contains(wanted.bottomShadow, c.bottomShadow)) != 0;
}

constexpr bool anyPrices(const Window&) noexcept {
  return true;
}

// 1 when the last N bars up to i exist, are such candles and their prices are as asked.
template <int N, typename Prices = decltype(&anyPrices)>
int endsAt(const QvBars* bars, const QvCandles* candles, int i, const Candle (&wanted)[N],
           Prices hold = anyPrices) noexcept {
  if (!bars || !candles || i < N - 1 || i >= qv::recordCount(*candles)) return 0;
  for (const QvArray* a : {&bars->open, &bars->high, &bars->low, &bars->close})
    if (!qv::hasItem(*a, i)) return 0;
  bool all = true;
  for (int k = 0; k < N; ++k) all &= matches(wanted[k], candles->records[i - k]);
  return all && hold(Window(*bars, *candles, i));
}

// ---- Conditions that several patterns share

bool insideBlackBody(const Window& w) noexcept {
  return w.open(0) > w.close(1) && w.open(0) < w.open(1) && w.close(0) > w.close(1) && w.close(0) < w.open(1);
}

bool insideWhiteBody(const Window& w) noexcept {
  return w.open(0) < w.close(1) && w.open(0) > w.open(1) && w.close(0) < w.close(1) && w.close(0) > w.open(1);
}

bool morningPrices(const Window& w) noexcept {
  return w.bodyGapDown(1) && w.open(0) > w.open(1) && w.close(0) > w.midpoint(2);
}

bool eveningPrices(const Window& w) noexcept {
  return w.bodyGapUp(1) && w.close(0) < w.midpoint(2);
}

bool bodiesShrink(const Window& w) noexcept {
  return w.close(2) - w.open(2) > w.close(1) - w.open(1) && w.close(1) - w.open(1) > w.close(0) - w.open(0);
}

}  // namespace

extern "C" {

// ---- One bar ----------------------------------------------------------------------------------

int QVCALL qvBeltHoldLineBull(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kLongBody}},
                [](const Window& w) { return w.open(0) == w.low(0); });
}

int QVCALL qvBeltHoldLineBear(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kBlack, kLongBody}},
                [](const Window& w) { return w.open(0) == w.high(0); });
}

// The colour is all that tells the hammer from the hanging man.
int QVCALL qvHammer(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kBlack, kNotLong, kShortShadow, kLongShadow}});
}

int QVCALL qvHangingman(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kNotLong, kShortShadow, kLongShadow}});
}

int QVCALL qvInvertedHammer(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kNotLong, kLongShadow, kShortShadow}});
}

int QVCALL qvShootingStar(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kSmallBody, kLongShadow, kShortShadow}});
}

int QVCALL qvGravestoneDoji(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kAnyColour, kDoji}},
                [](const Window& w) { return w.low(0) == w.bodyBottom(0); });
}

int QVCALL qvLongLeggedDoji(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kAnyColour, kDoji, kLongShadow, kLongShadow}});
}

int QVCALL qvHighWave(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kAnyColour, kSmallBody}}, [](const Window& w) {
    return w.topShadow(0) == QV_SHADOW_LONG || w.bottomShadow(0) == QV_SHADOW_LONG;
  });
}

// ---- Two bars ---------------------------------------------------------------------------------

int QVCALL qvEngulfingLineBull(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kLongBody}, {kBlack, kSmallBody}},
                [](const Window& w) { return w.open(0) < w.close(1) && w.close(0) > w.open(1); });
}

int QVCALL qvEngulfingLineBear(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kBlack, kLongBody}, {kWhite, kSmallBody}},
                [](const Window& w) { return w.open(0) > w.close(1) && w.close(0) < w.open(1); });
}

int QVCALL qvHaramiBlack(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kAnyColour, kSmallBody}, {kBlack, kLongBody}}, insideBlackBody);
}

int QVCALL qvHaramiCrossBlack(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kAnyColour, kDoji}, {kBlack, kLongBody}}, insideBlackBody);
}

int QVCALL qvHaramiWhite(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kAnyColour, kSmallBody}, {kWhite, kLongBody}}, insideWhiteBody);
}

int QVCALL qvHaramiCrossWhite(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kAnyColour, kDoji}, {kWhite, kLongBody}}, insideWhiteBody);
}

int QVCALL qvDarkCloudCover(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kBlack}, {kWhite, kLongBody}},
                [](const Window& w) { return w.open(0) > w.high(1) && w.close(0) < w.midpoint(1); });
}

int QVCALL qvPiercingLine(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kNotDoji}, {kBlack, kLongBody}},
                [](const Window& w) { return w.open(0) < w.close(1) && w.close(0) > w.midpoint(1); });
}

int QVCALL qvThrustingLine(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite}, {kBlack}},
                [](const Window& w) { return w.close(0) > w.close(1) && w.close(0) < w.midpoint(1); });
}

int QVCALL qvInNeckLine(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kSmallBody}, {kBlack, kNotDoji}},
                [](const Window& w) { return w.isNear(w.close(0), w.low(1)) && w.close(0) > w.low(1); });
}

int QVCALL qvCounterAttackBull(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kNotDoji}, {kBlack, kNotDoji}}, [](const Window& w) {
    return w.isNear(w.close(0), w.close(1)) && w.open(1) - w.close(1) <= w.close(1) - w.open(0);
  });
}

int QVCALL qvCounterAttackBear(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kBlack, kNotDoji}, {kWhite, kNotDoji}}, [](const Window& w) {
    return w.isNear(w.close(0), w.close(1)) && w.close(1) - w.open(1) <= w.open(0) - w.close(1);
  });
}

int QVCALL qvSeperatingLineBull(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kNotDoji}, {kBlack, kNotDoji}},
                [](const Window& w) { return w.open(0) == w.open(1); });
}

int QVCALL qvSeperatingLineBear(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kBlack, kNotDoji}, {kWhite, kNotDoji}},
                [](const Window& w) { return w.open(0) == w.open(1); });
}

int QVCALL qvStalledPattern(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kSmallBody}, {kWhite, kLongBody}},
                [](const Window& w) { return w.isNear(w.open(0), w.close(1)); });
}

// The gap is before the first of the two white bars, so a third bar is read.
int QVCALL qvSideBySideWhiteGapDn(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kNotDoji}, {kWhite, kNotDoji}, {}}, [](const Window& w) {
    return w.shape(0) == w.shape(1) && w.bodyGapDown(1) && w.isNear(w.close(0), w.close(1));
  });
}

int QVCALL qvSideBySideWhiteGapUp(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kNotDoji}, {kWhite, kNotDoji}, {}}, [](const Window& w) {
    return w.shape(0) == w.shape(1) && w.bodyGapUp(1) && w.isNear(w.close(0), w.close(1));
  });
}

// ---- Three bars -------------------------------------------------------------------------------

int QVCALL qvMorningStar(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kNotDoji}, {kAnyColour, kSmallBody}, {kBlack, kLongBody}},
                morningPrices);
}

int QVCALL qvMorningDojiStar(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite, kNotDoji}, {kAnyColour, kDoji}, {kBlack, kLongBody}},
                morningPrices);
}

// Unlike in the morning stars the last bar's shape and open are free.
int QVCALL qvEveningStar(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kBlack}, {kAnyColour, kSmallBody}, {kWhite, kLongBody}}, eveningPrices);
}

int QVCALL qvEveningDojiStar(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kBlack}, {kAnyColour, kDoji}, {kWhite, kLongBody}}, eveningPrices);
}

int QVCALL qvAbandonedBabyBottom(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite}, {kAnyColour, kDoji}, {kBlack, kLongBody}}, [](const Window& w) {
    return w.rangeGapDown(1) && w.rangeGapUp(0) && w.close(0) > w.midpoint(2);
  });
}

int QVCALL qvAbandonedBabyTop(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kBlack}, {kAnyColour, kDoji}, {kWhite, kLongBody}}, [](const Window& w) {
    return w.rangeGapUp(1) && w.rangeGapDown(0) && w.close(0) < w.midpoint(2);
  });
}

int QVCALL qvAdvanceBlock(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite}, {kWhite}, {kWhite}}, [](const Window& w) {
    return w.close(0) > w.close(1) && w.close(1) > w.close(2) &&
           (bodiesShrink(w) || (w.topShadow(2) != QV_SHADOW_LONG && w.topShadow(1) == QV_SHADOW_LONG &&
                                w.topShadow(0) == QV_SHADOW_LONG));
  });
}

int QVCALL qvThreeWhiteSoldiers(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i,
                {{kWhite, kAnyShape, kShortShadow},
                 {kWhite, kAnyShape, kShortShadow},
                 {kWhite, kAnyShape, kShortShadow}},
                [](const Window& w) {
                  return w.high(0) > w.high(1) && w.high(1) > w.high(2) && w.isNear(w.high(0), w.close(0)) &&
                         w.isNear(w.high(1), w.close(1)) && w.isNear(w.high(2), w.close(2));
                });
}

int QVCALL qvUpsideGap2Crows(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kBlack}, {kBlack}, {kWhite, kLongBody}}, [](const Window& w) {
    return w.bodyGapUp(1) && w.close(0) < w.close(1) && w.open(0) > w.open(1);
  });
}

int QVCALL qvTasukiUpsideGap(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kBlack}, {kWhite}, {kWhite}}, [](const Window& w) {
    return w.shape(0) == w.shape(1) && w.open(0) < w.close(1) && w.close(0) < w.open(1) &&
           w.close(0) > w.close(2);
  });
}

int QVCALL qvTasukiDownsideGap(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{kWhite}, {kBlack}, {kBlack}}, [](const Window& w) {
    return w.shape(0) == w.shape(1) && w.open(0) > w.close(1) && w.close(0) > w.open(1) &&
           w.close(0) < w.close(2);
  });
}

// Three gaps need four bars.
int QVCALL qvThreeGapsUp(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{}, {}, {}, {}},
                [](const Window& w) { return w.bodyGapUp(0) && w.bodyGapUp(1) && w.bodyGapUp(2); });
}

int QVCALL qvThreeGapsDown(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i, {{}, {}, {}, {}},
                [](const Window& w) { return w.bodyGapDown(0) && w.bodyGapDown(1) && w.bodyGapDown(2); });
}

// ---- Five bars --------------------------------------------------------------------------------

int QVCALL qvFalling3Method(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i,
                {{kBlack, kLongBody},
                 {kWhite, kSmallBody},
                 {kWhite, kSmallBody},
                 {kWhite, kSmallBody},
                 {kBlack, kLongBody}},
                [](const Window& w) {
                  return w.close(0) < w.close(4) && w.close(4) < w.open(3) && w.close(3) < w.close(2) &&
                         w.close(2) < w.close(1) && (w.close(1) <= w.open(4) || w.close(1) <= w.open(0));
                });
}

int QVCALL qvRising3Method(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i,
                {{kWhite, kLongBody},
                 {kBlack, kSmallBody},
                 {kBlack, kSmallBody},
                 {kBlack, kSmallBody},
                 {kWhite, kLongBody}},
                [](const Window& w) {
                  return w.close(0) > w.close(4) && w.close(4) > w.open(3) && w.close(3) > w.close(2) &&
                         w.close(2) > w.close(1) && (w.close(1) >= w.open(4) || w.close(1) >= w.open(0));
                });
}

int QVCALL qvMatHoldPattern(const QvBars* bars, const QvCandles* candles, int i) noexcept {
  return endsAt(bars, candles, i,
                {{kWhite, kNotDoji},
                 {kBlack, kSmallBody},
                 {kBlack, kSmallBody},
                 {kBlack, kSmallBody},
                 {kWhite, kLongBody}},
                [](const Window& w) {
                  return w.bodyGapUp(3) && w.bodyGapUp(0) && w.open(3) > w.open(2) && w.open(2) > w.open(1);
                });
}

}  // extern "C"
