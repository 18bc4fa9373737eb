// The candle set: the average body, of the whole set or of the bars before each bar, then one pass that
// classifies every bar against it. Then the reading of single fields, the comparisons of neighbouring
// bars, and the signal series of one pattern.
#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "core/calculation.h"
#include "core/memory.h"
#include "core/text.h"
#include "kernels/whole.h"
#include "patterns/candle_names.h"
#include "patterns/candle_signals.h"
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
    const double body = std::fabs(open[i] - close[i]);
    sum += open[i] != close[i] ? body : 0.0;
    count += open[i] != close[i];
  }
  return sum / count;
}

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// No average lies below all that it is of: equal bodies must not be long by a rounding.
double averageBodyOf(double sum, double count, double shortest) noexcept {
  const double mean = sum / count;
  return mean < shortest ? shortest : mean;
}

// averages[i] is that of the `period` bars before bar i, or of those that there are; not a number where
// none of them has a body. -3 when memory runs out.
int trailingAverages(const double* open, const double* close, int n, int period,
                     qv::memory::Buffer<double>& averages) noexcept {
  if (n < 1) return QV_OK;
  const auto items = static_cast<std::size_t>(n);
  qv::memory::Buffer<double> counts(items), shortest(items);
  if (!counts.ok() || !shortest.ok()) return QV_MALLOC;
  // One item later, for a bar takes no part in its own average.
  double* bodies = averages.data() + 1;
  for (int i = 0; i < n - 1; ++i) {
    bodies[i] = std::fabs(open[i] - close[i]);
    const bool flat = open[i] == close[i];
    counts[static_cast<std::size_t>(i)] = flat ? 0.0 : 1.0;
    shortest[static_cast<std::size_t>(i)] = flat ? std::numeric_limits<double>::infinity() : bodies[i];
  }
  const qv::Windows windows{0, n - 1, std::min(period, n), true};
  if (int status = qv::sumOfWindows(bodies, windows, bodies)) return status;
  if (int status = qv::sumOfWindows(counts.data(), windows, counts.data())) return status;
  if (int status = qv::lowestOfWindows(shortest.data(), windows, shortest.data())) return status;
  averages[0] = kNone;
  for (std::size_t i = 1; i < items; ++i) {
    averages[i] = averageBodyOf(averages[i], counts[i - 1], shortest[i - 1]);
  }
  return QV_OK;
}

constexpr double kLongShadow = 2.0, kShortShadow = 0.75, kDoji = 0.005;

struct Factors {
  double longShadow, shortShadow, doji;
};

double shadowClass(double shadow, double longer, double shorter) noexcept {
  const double notLong = shorter <= shadow ? 2.0 : 1.0;
  return shadow > longer ? 3.0 : notLong;
}

constexpr int kRun = 256;

// Classifies up to kRun bars. Short loops over doubles become vector code; in one loop the compiler
// makes a branch of every comparison, and every other bar misses one. The fields of a bar are added up
// to a number whose bytes they are, the first field lowest. A body above its bar's average is long.
void classifyRun(const double* open, const double* high, const double* low, const double* close, int count,
                 const double* average, const Factors& f, std::int32_t* records) noexcept {
  double top[kRun], bottom[kRun], body[kRun], reference[kRun], fields[kRun];
  for (int i = 0; i < count; ++i) top[i] = open[i] < close[i] ? close[i] : open[i];
  for (int i = 0; i < count; ++i) {
    bottom[i] = open[i] < close[i] ? open[i] : close[i];
    body[i] = top[i] - bottom[i];
  }

  for (int i = 0; i < count; ++i) {
    fields[i] = open[i] > close[i] ? 1.0 : 0.0;
    reference[i] = top[i] * f.doji;
  }
  for (int i = 0; i < count; ++i) {
    const double white = open[i] < close[i] ? 2.0 : 0.0;
    const double notLong = bottom[i] * f.doji >= body[i] ? 0.0 : 1.0;
    fields[i] += white + 0x100 * (body[i] > average[i] ? 3.0 : notLong);
  }
  for (int i = 0; i < count; ++i) {
    const double unit = open[i] == close[i] ? reference[i] : body[i];
    const double longer = unit * f.longShadow, shorter = unit * f.shortShadow;
    const double shadows = 0x10000 * shadowClass(high[i] - top[i], longer, shorter) +
                           0x1000000 * shadowClass(bottom[i] - low[i], longer, shorter);
    records[i] = static_cast<std::int32_t>(fields[i] + shadows);
  }
}

// averageOf(i) points to the averages of bar i and those after it in its run.
template <typename AverageOf>
void classify(const QvBars& bars, int n, AverageOf averageOf, const Factors& factors,
              QvCandle* records) noexcept {
  static_assert(std::endian::native == std::endian::little);
  std::int32_t run[kRun];
  for (int i = 0; i < n; i += kRun) {
    const int count = std::min(kRun, n - i);
    classifyRun(bars.open.data + i, bars.high.data + i, bars.low.data + i, bars.close.data + i, count,
                averageOf(i), factors, run);
    std::memcpy(records + i, run, static_cast<std::size_t>(count) * sizeof(QvCandle));
  }
}

bool hasPrices(const QvBars& bars, int n) noexcept {
  for (const QvArray* a : {&bars.open, &bars.high, &bars.low, &bars.close})
    if (n > 0 && (!a->data || a->capacity < n)) return false;
  return true;
}

// New records of n bars and the defaults of factors that are 0; null when memory runs out.
QvCandle* prepareCandles(QvCandles& candles, int n) noexcept {
  candles.records = allocateRecords(n);
  if (!candles.records) return nullptr;
  setDefault(candles.longShadowFactor, kLongShadow);
  setDefault(candles.shortShadowFactor, kShortShadow);
  setDefault(candles.dojiFactor, kDoji);
  return candles.records;
}

Factors factorsOf(const QvCandles& candles) noexcept {
  return {candles.longShadowFactor, candles.shortShadowFactor, candles.dojiFactor};
}

// The field of record i; -1 for a null set, 0 outside the set.
int fieldOf(const QvCandles* candles, int i, std::int8_t QvCandle::*field) noexcept {
  if (!candles) return QV_INVALID_PARM;
  return i >= 0 && i < qv::recordCount(*candles) ? candles->records[i].*field : 0;
}

// Without regard to case; null for an unknown name.
const qv::NamedCandlePattern* findPattern(const char* name) noexcept {
  for (const qv::NamedCandlePattern& pattern : qv::candlePatterns)
    if (qv::compareNoCase(name, pattern.name) == 0) return &pattern;
  return nullptr;
}

// A comparison of bar i with the bar before it; it reads the two series named.
int compared(const QvBars* bars, int i, QvArray QvBars::*first, QvArray QvBars::*second,
             bool (Window::*comparison)(int) const noexcept) noexcept {
  if (!bars) return QV_INVALID_PARM;
  if (i < 1 || !hasItem(bars->*first, i) || !hasItem(bars->*second, i)) return 0;
  return (Window(*bars, i).*comparison)(0);
}

}  // namespace

namespace qv::chain {

CandleSignals::CandleSignals(int pattern, int period) noexcept
    : pattern_(pattern),
      lead_(saturatingSum(period, candlePatterns[static_cast<std::size_t>(pattern)].bars, -1)),
      sums_{Sliding<Sums<1>>(period), Sliding<Sums<1>>(period)},
      shortest_(period) {}

void CandleSignals::run(Inputs<4> in, int count, Outputs<1> out) noexcept {
  const auto [open, high, low, close] = in;
  Tile bodies, counts, shortest, averages, highest;
  for (int i = 0; i < count; ++i) {
    bodies[i] = std::fabs(open[i] - close[i]);
    const bool flat = open[i] == close[i];
    counts[i] = flat ? 0.0 : 1.0;
    highest[i] = flat ? kInfinity : bodies[i];
  }
  Tile sums, numbers;
  sums_[0].run({bodies}, count, {sums});
  sums_[1].run({counts}, count, {numbers});
  shortest_.run({highest, highest}, count, {averages, shortest});
  for (int i = 0; i < count; ++i) {
    averages[i] = average_;
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): the windows set all of them
    average_ = averageBodyOf(sums[i], numbers[i], shortest[i]);
  }
  std::int32_t records[kRun];
  static_assert(kRun >= kTile);
  classifyRun(open, high, low, close, count, averages, {kLongShadow, kShortShadow, kDoji}, records);

  // The last bars as a set of their own.
  struct {
    std::int32_t count = kMostBars;
    QvCandle records[kMostBars];
  } last;
  const QvCandles candles{last.records, kLongShadow, kShortShadow, kDoji};
  QvBars bars{};
  for (int k = 0; k < 4; ++k) seriesOf(bars, 1 + k) = {prices_[k], kMostBars, kMostBars, 0};
  bars.barsize = bars.datasize = kMostBars;
  for (int i = 0; i < count; ++i) {
    for (int k = 0; k < 4; ++k) {
      std::copy(prices_[k] + 1, prices_[k] + kMostBars, prices_[k]);
      prices_[k][kMostBars - 1] = in[static_cast<std::size_t>(k)][i];
    }
    std::copy(candles_ + 1, candles_ + kMostBars, candles_);
    candles_[kMostBars - 1] = records[i];
    for (int k = 0; k < kMostBars; ++k) {
      const std::int32_t record = truncatedInt(candles_[k]);
      std::memcpy(last.records + k, &record, sizeof record);
    }
    out[0][i] = candlePatterns[static_cast<std::size_t>(pattern_)].endsAt(&bars, &candles, kMostBars - 1);
  }
}

}  // namespace qv::chain

extern "C" {

int QVCALL qvCandleConstruct(const QvBars* bars, QvCandles* candles) noexcept {
  if (!bars || !candles) return QV_INVALID_PARM;
  const int n = std::max(bars->barsize, 0);
  if (!hasPrices(*bars, n)) return QV_INVALID_PARM;
  if (!prepareCandles(*candles, n)) return QV_MALLOC;

  double average[kRun];
  std::fill_n(average, kRun, averageBody(bars->open.data, bars->close.data, n));
  classify(
      *bars, n, [&](int) { return average; }, factorsOf(*candles), candles->records);
  return QV_OK;
}

int QVCALL qvCandleConstructTrailing(const QvBars* bars, QvCandles* candles, int period) noexcept {
  if (!bars || !candles || period < 1) return QV_INVALID_PARM;
  const int n = std::max(bars->barsize, 0);
  if (!hasPrices(*bars, n)) return QV_INVALID_PARM;
  candles->records = nullptr;
  qv::memory::Buffer<double> averages(static_cast<std::size_t>(n));
  if (!averages.ok()) return QV_MALLOC;
  if (const int status = trailingAverages(bars->open.data, bars->close.data, n, period, averages))
    return status;
  if (!prepareCandles(*candles, n)) return QV_MALLOC;
  classify(
      *bars, n, [&](int i) { return averages.data() + i; }, factorsOf(*candles), candles->records);
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
  const qv::NamedCandlePattern* pattern = name ? findPattern(name) : nullptr;
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
