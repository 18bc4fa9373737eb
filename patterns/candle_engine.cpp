// The candle set: one pass finds the average body, a second classifies every bar against it. Then
// the reading of single fields, the comparisons of neighbouring bars, and the signal series of one
// pattern.
#include <algorithm>
#include <cmath>

#include "core/calculation.h"
#include "core/memory.h"
#include "patterns/candle_names.h"
#include "patterns/candle_window.h"

namespace {

using qv::hasItem;
using qv::Window;

static_assert(sizeof(QvCandle) == 4);
static_assert(sizeof(QvCandles) == (sizeof(void*) == 8 ? 32 : 28));

// Room for `count` records, with their number before the first (see recordCount).
QvCandle* allocateRecords(int count) noexcept {
  void* block = qv::memory::allocateZeroed(static_cast<std::size_t>(count) + 1, sizeof(QvCandle));
  if (!block) return nullptr;
  const std::int32_t stored = count;
  std::memcpy(block, &stored, sizeof stored);
  return static_cast<QvCandle*>(block) + 1;
}

void setDefault(double& factor, double value) noexcept {
  if (factor == 0.0) factor = value;
}

// Over the bars whose open differs from their close; not a number when there is none.
double averageBody(const double* open, const double* close, int n) noexcept {
  double sum = 0.0;
  int count = 0;
  for (int i = 0; i < n; ++i) {
    sum += std::fabs(open[i] - close[i]);
    count += open[i] != close[i];
  }
  return sum / count;
}

// Comparisons instead of branches: neighbouring bars are as good as random to a branch predictor.
std::int8_t shadowClass(double shadow, double longer, double shorter) noexcept {
  const bool isLong = shadow > longer, notShort = shorter <= shadow;
  return static_cast<std::int8_t>(isLong ? 3 : notShort ? 2 : 1);
}

struct Classifier {
  double average, longShadow, shortShadow, doji;

  QvCandle operator()(double open, double high, double low, double close) const noexcept {
    const bool white = open<close, black = open> close;
    const double bottom = white ? open : close, top = white ? close : open;
    const double body = top - bottom;
    const bool isLong = body > average, isDoji = bottom * doji >= body;
    const double reference = open == close ? top * doji : body;
    const double longer = reference * longShadow, shorter = reference * shortShadow;
    return {static_cast<std::int8_t>(white   ? 2
                                     : black ? 1
                                             : 0),
            static_cast<std::int8_t>(isLong   ? 3
                                     : isDoji ? 0
                                              : 1),
            shadowClass(high - top, longer, shorter), shadowClass(bottom - low, longer, shorter)};
  }
};

// The field of record i; -1 for a null set, 0 outside the set.
int fieldOf(const QvCandles* candles, int i, std::int8_t QvCandle::*field) noexcept {
  if (!candles) return QV_INVALID_PARM;
  return i >= 0 && i < qv::recordCount(*candles) ? candles->records[i].*field : 0;
}

// A comparison of bar i with the bar before it; it reads the two series named.
int compared(const QvBars* bars, int i, QvArray QvBars::*first, QvArray QvBars::*second,
             bool (Window::*comparison)(int) const noexcept) noexcept {
  if (!bars) return QV_INVALID_PARM;
  if (i < 1 || !hasItem(bars->*first, i) || !hasItem(bars->*second, i)) return 0;
  return (Window(*bars, i).*comparison)(0);
}

}  // namespace

extern "C" {

int QVCALL qvCandleConstruct(const QvBars* bars, QvCandles* candles) noexcept {
  if (!bars || !candles) return QV_INVALID_PARM;
  const int n = std::max(bars->barsize, 0);
  for (const QvArray* a : {&bars->open, &bars->high, &bars->low, &bars->close})
    if (n > 0 && !hasItem(*a, n - 1)) return QV_INVALID_PARM;

  candles->records = allocateRecords(n);
  if (!candles->records) return QV_MALLOC;
  setDefault(candles->longShadowFactor, 2.0);
  setDefault(candles->shortShadowFactor, 0.75);
  setDefault(candles->dojiFactor, 0.005);

  const double *open = bars->open.data, *high = bars->high.data, *low = bars->low.data,
               *close = bars->close.data;
  const Classifier classified = {averageBody(open, close, n), candles->longShadowFactor,
                                 candles->shortShadowFactor, candles->dojiFactor};
  QvCandle* records = candles->records;
  for (int i = 0; i < n; ++i) records[i] = classified(open[i], high[i], low[i], close[i]);
  return QV_OK;
}

int QVCALL qvCandleFree(QvCandles* candles) noexcept {
  if (!candles) return QV_INVALID_PARM;
  if (candles->records) qv::memory::release(candles->records - 1);
  candles->records = nullptr;
  return QV_OK;
}

int QVCALL qvCandleColor(const QvCandles* candles, int i) noexcept {
  return fieldOf(candles, i, &QvCandle::colour);
}

int QVCALL qvCandleShape(const QvCandles* candles, int i) noexcept {
  return fieldOf(candles, i, &QvCandle::shape);
}

int QVCALL qvCandleTopShadow(const QvCandles* candles, int i) noexcept {
  return fieldOf(candles, i, &QvCandle::topShadow);
}

int QVCALL qvCandleBotShadow(const QvCandles* candles, int i) noexcept {
  return fieldOf(candles, i, &QvCandle::bottomShadow);
}

double QVCALL qvBodyMidpoint(const QvBars* bars, int i) noexcept {
  if (!bars || !hasItem(bars->open, i) || !hasItem(bars->close, i)) return 0.0;
  return Window(*bars, i).midpoint(0);
}

int QVCALL qvBodyGapUp(const QvBars* bars, int i) noexcept {
  return compared(bars, i, &QvBars::open, &QvBars::close, &Window::bodyGapUp);
}

int QVCALL qvBodyGapDn(const QvBars* bars, int i) noexcept {
  return compared(bars, i, &QvBars::open, &QvBars::close, &Window::bodyGapDown);
}

int QVCALL qvWesternGapUp(const QvBars* bars, int i) noexcept {
  return compared(bars, i, &QvBars::high, &QvBars::low, &Window::rangeGapUp);
}

int QVCALL qvWesternGapDn(const QvBars* bars, int i) noexcept {
  return compared(bars, i, &QvBars::high, &QvBars::low, &Window::rangeGapDown);
}

int QVCALL qvApproxEqual(double a, double b, double tolerance) noexcept {
  return qv::approxEqual(a, b, tolerance);
}

int QVCALL qvCandleFill(const QvBars* bars, const QvCandles* candles, QvArray* out, const char* name,
                        int first, int last) noexcept {
  const qv::NamedCandlePattern* pattern = name ? qv::findCandlePattern(name) : nullptr;
  if (!pattern || !candles || !candles->records) return QV_INVALID_PARM;
  const int n = qv::prepareOutputs({{bars, qv::kPrices}}, {}, {out});
  if (n < 1) return n;

  int found = 0;
  last = std::min(last, n - 1);
  for (int i = std::max(first, 0); i <= last; ++i) {
    const int ends = pattern->endsAt(bars, candles, i);
    out->data[i] = ends;
    found += ends;
  }
  return found;
}

}  // extern "C"
