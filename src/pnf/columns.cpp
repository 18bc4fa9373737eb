// Bars into point-and-figure columns, by closing prices or by highs and lows. Both forms walk the
// bars in the same way; they differ in the prices that they look at.
#include <algorithm>
#include <cmath>

#include "core/calculation.h"
#include "qvlib60/pnf.h"

namespace {

constexpr double kRising = 1.0, kFalling = -1.0;

struct ByClose {
  const double* close;

  double upper(int i) const noexcept { return close[i]; }
  double lower(int i) const noexcept { return close[i]; }
  static bool turnsDown(double columnHigh, double rev, double price) noexcept {
    return columnHigh - price >= rev;
  }
  static bool turnsUp(double columnLow, double rev, double price) noexcept {
    return price - columnLow >= rev;
  }
};

// Reversals are compared the other way round: the last bit of a price may decide.
struct ByHighLow {
  const double *high, *low;

  double upper(int i) const noexcept { return high[i]; }
  double lower(int i) const noexcept { return low[i]; }
  static bool turnsDown(double columnHigh, double rev, double price) noexcept {
    return columnHigh - rev >= price;
  }
  static bool turnsUp(double columnLow, double rev, double price) noexcept {
    return columnLow + rev <= price;
  }
};

class Columns {
 public:
  Columns(QvBars& out, double box) noexcept : out_(out), box_(box) {}

  int current() const noexcept { return c_; }
  bool rising() const noexcept { return out_.openInterest.data[c_] > 0; }
  double& high() noexcept { return out_.high.data[c_]; }
  double& low() noexcept { return out_.low.data[c_]; }

  void begin(double date, double highest, double lowest) noexcept {
    out_.date.data[c_] = date;
    high() = highest;
    low() = lowest;
  }
  void widen(double upper, double lower) noexcept {
    high() = std::max(high(), upper);
    low() = std::min(low(), lower);
  }
  void setDirection(double direction) noexcept { out_.openInterest.data[c_] = direction; }

  // Closes the current column and opens one in the other direction, which reaches `price`.
  void reverse(double date, double price) noexcept {
    const bool down = rising();
    const double firstBox = down ? high() - box_ : low() + box_;
    close();
    out_.volume.data[c_] = std::floor((high() - low() + box_) / box_);
    ++c_;
    begin(date, down ? firstBox : price, down ? price : firstBox);
    out_.open.data[c_] = firstBox;
    setDirection(down ? kFalling : kRising);
  }
  void close() noexcept { out_.close.data[c_] = rising() ? high() : low(); }

 private:
  QvBars& out_;
  double box_;
  int c_ = 0;
};

// Items that are never written are 0.0 from the allocation: the column of the bars up to the first
// move of a box, and the box count of the last column.
template <typename Prices>
int convert(const QvBars& bars, int n, Prices prices, QvBars& out, QvArray& columnOf, double box,
            double reversal, int start) noexcept {
  start = std::max(start, 0);
  if (start >= n - 1) return QV_INVALID_PARM;
  const double *date = bars.date.data, from = bars.close.data[start];
  const double rev = box * reversal;

  Columns column(out, box);
  int i = start + 1;
  column.begin(date[i], prices.upper(i), prices.lower(i));
  const auto movesUp = [&] { return prices.upper(i) - from >= box; };
  const auto movesDown = [&] { return from - prices.lower(i) >= box; };
  for (++i; i < n && !movesUp() && !movesDown(); ++i) column.widen(prices.upper(i), prices.lower(i));
  if (i == n) return QV_INVALID_PARM;
  column.setDirection(movesUp() ? kRising : kFalling);

  for (; i < n; ++i) {
    const double upper = prices.upper(i), lower = prices.lower(i);
    if (column.rising()) {
      if (upper > column.high()) column.high() = upper;
      if (Prices::turnsDown(column.high(), rev, lower)) column.reverse(date[i], lower);
    } else {
      if (lower < column.low()) column.low() = lower;
      if (Prices::turnsUp(column.low(), rev, upper)) column.reverse(date[i], upper);
    }
    columnOf.data[i] = column.current();
  }
  column.close();
  return qvReSizeBars(&out, column.current() + 1);
}

// An output that is the input, or a series within a bar set, would be lost by its allocation.
bool areSeparate(const QvBars& bars, const QvBars& out, const QvArray& columnOf) noexcept {
  if (&bars == &out) return false;
  for (int k = 0; k < qv::kSeriesCount; ++k)
    if (&columnOf == &qv::seriesOf(bars, k) || &columnOf == &qv::seriesOf(out, k)) return false;
  return true;
}

// The working count, with both outputs allocated; or an error.
int prepare(const QvBars* bars, unsigned series, QvBars* columns, QvArray* columnOf, double box) noexcept {
  const int n = qv::prepareOutputs({{bars, series}}, {}, {});
  if (n < 1) return n;
  if (!columns || !columnOf || !areSeparate(*bars, *columns, *columnOf) || !(box > 0)) return QV_INVALID_PARM;
  if (const int status = qvAllocBars(columns, n)) return status;
  if (const int status = qvAllocArray(columnOf, n)) {
    qvFreeBars(columns);
    return status;
  }
  return n;
}

}  // namespace

extern "C" {

int QVCALL qvBars2PNF(const QvBars* bars, QvBars* columns, QvArray* columnOf, double box, double reversal,
                      int start) noexcept {
  const int n = prepare(bars, qv::kDate | qv::kClose, columns, columnOf, box);
  if (n < 1) return n;
  return convert(*bars, n, ByClose{bars->close.data}, *columns, *columnOf, box, reversal, start);
}

int QVCALL qvBars2PNFhilo(const QvBars* bars, QvBars* columns, QvArray* columnOf, double box, double reversal,
                          int start) noexcept {
  const int n = prepare(bars, qv::kDate | qv::kHighLowClose, columns, columnOf, box);
  if (n < 1) return n;
  return convert(*bars, n, ByHighLow{bars->high.data, bars->low.data}, *columns, *columnOf, box, reversal,
                 start);
}

}  // extern "C"
