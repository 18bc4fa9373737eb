// The equity of every bar out of the tables of trades and positions, and its figures.
//
// At most one entry of each direction fills on a bar, so that direction and entry bar name a position: the
// trades that one position was closed by are found by these.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "core/calculation.h"
#include "core/memory.h"
#include "core/power.h"
#include "qvlib60/tradesim.h"
#include "tradesim/trade_result.h"

namespace {

using namespace qv;
using namespace qv::tradesim;

constexpr double kDaysPerYear = 365.25;

// Bars that have been processed, at most n.
int barsReached(const QvOrderSystem& sys, int n) noexcept {
  return std::min(n, saturatingSum(std::max(sys.currentBar, -1), 1));
}

// ---- Equity -------------------------------------------------------------------------------------

// Until which bar the equity knows a position: its last exit so far, at first its entry.
class Accounted {
 public:
  explicit Accounted(int bars) noexcept
      : bars_(bars), exits_(2 * static_cast<std::size_t>(std::max(bars, 0))) {}
  bool ok() const noexcept { return exits_.ok(); }
  bool knows(const QvPosition& p) const noexcept { return p.entryBar >= 0 && p.entryBar < bars_; }
  // The bar from which the position has been open as it stands; remembers the exit that ends it.
  int since(const QvPosition& p, int exitBar) noexcept {
    const auto place = static_cast<std::size_t>(p.entryBar) * 2 + (p.direction == QV_BUY ? 0 : 1);
    const int before = exits_[place];
    exits_[place] = exitBar;
    return std::max(before, p.entryBar);
  }

 private:
  int bars_;
  memory::Buffer<std::int32_t> exits_;
};

void addOpen(const QvOrderSystem& sys, const QvPosition& position, int from, int to, double costRate,
             QvArray& out) noexcept {
  const double* close = sys.bars.close.data;
  for (int i = from; i < to; ++i)
    out.data[i] += closedResult(sys, position, close[i], position.remaining, costRate);
}

// ---- Figures ------------------------------------------------------------------------------------

double percentGrowth(double first, double last) noexcept {
  return first > 0 ? 100 * (last / first - 1) : 0.0;
}

double annualGrowth(double first, double last, double years) noexcept {
  if (!(first > 0) || !(years > 0)) return 0.0;
  return last > 0 ? 100 * (powerOf(last / first, 1 / years) - 1) : -100.0;
}

double barsPerYearOf(const QvArray& dates, int first, int last) noexcept {
  if (!hasItem(dates, last)) return 0.0;
  const double days = dates.data[last] - dates.data[first];
  return days > 0 ? (last - first) * kDaysPerYear / days : 0.0;
}

// Equities with the returns between them, which end with the first equity that is not above 0.
class Returns {
 public:
  Returns(const double* equity, int count, double riskFree) noexcept : equity_(equity), riskFree_(riskFree) {
    while (count_ + 1 < count && equity[count_] > 0) ++count_;
  }
  int count() const noexcept { return count_; }
  double excess(int i) const noexcept { return equity_[i + 1] / equity_[i] - 1 - riskFree_; }

  double mean() const noexcept {
    double sum = 0;
    for (int i = 0; i < count_; ++i) sum += excess(i);
    return sum / count_;
  }
  double deviation(double mean) const noexcept {
    double sum = 0;
    for (int i = 0; i < count_; ++i) sum += (excess(i) - mean) * (excess(i) - mean);
    return std::sqrt(sum / (count_ - 1));
  }
  double downside() const noexcept {
    double sum = 0;
    for (int i = 0; i < count_; ++i) {
      const double below = std::min(excess(i), 0.0);
      sum += below * below;
    }
    return std::sqrt(sum / count_);
  }
  // The excesses are one number, which their mean may miss by a rounding.
  bool allEqual() const noexcept {
    for (int i = 1; i < count_; ++i)
      if (excess(i) != excess(0)) return false;
    return true;
  }

 private:
  const double* equity_;
  double riskFree_;
  int count_ = 0;
};

void setRatios(QvEquityFigures& f, const double* equity, int count, double rate) noexcept {
  if (f.barsPerYear <= 0) return;
  const Returns returns(equity, count, powerOf(1 + rate, 1 / f.barsPerYear) - 1);
  if (returns.count() < 1) return;
  const double mean = returns.mean(), root = std::sqrt(f.barsPerYear);
  if (returns.count() > 1 && !returns.allEqual()) {
    if (const double deviation = returns.deviation(mean); deviation > 0) f.sharpe = mean / deviation * root;
  }
  if (const double downside = returns.downside(); downside > 0) f.sortino = mean / downside * root;
}

void setDrawdowns(QvEquityFigures& f, const double* equity, int count) noexcept {
  double money = 0, percent = 0;
  int bars = 0, high = 0;
  for (int i = 1; i < count; ++i) {
    if (equity[i] >= equity[high]) {
      if (i - high > 1) bars = std::max(bars, i - high);
      high = i;
      continue;
    }
    const double fall = equity[high] - equity[i];
    money = std::max(money, fall);
    if (equity[high] > 0) percent = std::max(percent, 100 * fall / equity[high]);
  }
  f.greatestDrawdown = money;
  f.greatestDrawdownPercent = percent;
  f.greatestDrawdownBars = std::max(bars, count - 1 - high);
}

// Bars at whose close something was held. -3 when memory runs out.
int barsHeldOf(const QvOrderSystem& sys, int bars) noexcept {
  memory::Buffer<std::int32_t> steps(static_cast<std::size_t>(bars) + 1);
  if (!steps.ok()) return QV_MALLOC;
  const auto hold = [&](int from, int to) {
    from = std::clamp(from, 0, bars);
    to = std::clamp(to, from, bars);
    ++steps[static_cast<std::size_t>(from)];
    --steps[static_cast<std::size_t>(to)];
  };
  for (int k = 0; k < sys.tradeCount; ++k) hold(sys.trades[k].position.entryBar, sys.trades[k].exitBar);
  for (int k = 0; k < sys.positionCount; ++k)
    if (sys.positions[k].remaining > 0) hold(sys.positions[k].entryBar, bars);
  int held = 0, open = 0;
  for (int i = 0; i < bars; ++i) {
    open += steps[static_cast<std::size_t>(i)];
    if (open > 0) ++held;
  }
  return held;
}

}  // namespace

extern "C" {

int QVCALL qvEquity(const QvOrderSystem* sys, double capital, double costRate, QvArray* out) noexcept {
  if (!sys || !out || sys->currentBar < 0) return QV_INVALID_PARM;
  const int bars = barsReached(*sys, std::min(sys->bars.barsize, sys->bars.close.size));
  if (bars < 1) return QV_INVALID_PARM;
  Accounted accounted(bars);
  if (!accounted.ok()) return QV_MALLOC;
  const int n = prepareOutputs({{&sys->bars, kClose}}, {}, {out});
  if (n < 1) return n;
  const int reached = std::min(bars, n);
  out->size = reached;
  out->firstValid = 0;

  const auto counts = [&](const QvTrade& t) {
    return accounted.knows(t.position) && t.exitBar >= t.position.entryBar && t.exitBar < reached;
  };
  for (int k = 0; k < sys->tradeCount; ++k) {
    const QvTrade& trade = sys->trades[k];
    if (counts(trade)) out->data[trade.exitBar] += tradeResult(*sys, trade, costRate);
  }
  double closed = capital;
  for (int i = 0; i < reached; ++i) out->data[i] = closed += out->data[i];

  for (int k = 0; k < sys->tradeCount; ++k) {
    const QvTrade& trade = sys->trades[k];
    if (!counts(trade)) continue;
    addOpen(*sys, trade.position, accounted.since(trade.position, trade.exitBar), trade.exitBar, costRate,
            *out);
  }
  for (int k = 0; k < sys->positionCount; ++k) {
    const QvPosition& position = sys->positions[k];
    if (position.remaining > 0 && accounted.knows(position))
      addOpen(*sys, position, accounted.since(position, reached), reached, costRate, *out);
  }
  return QV_OK;
}

int QVCALL qvEquityFigures(const QvArray* equity, const QvArray* dates, double barsPerYear, double rate,
                           QvEquityFigures* figures) noexcept {
  if (!equity || !figures || !(rate > -1)) return QV_INVALID_PARM;
  if (!(barsPerYear > 0) && !dates) return QV_INVALID_PARM;
  const int from = std::max(equity->firstValid, 0), to = saturatingSum(equity->size, -1);
  if (!hasItem(*equity, from)) return QV_INVALID_PARM;

  QvEquityFigures f{};
  const double* items = equity->data + from;
  f.bars = to - from + 1;
  f.first = items[0];
  f.last = items[f.bars - 1];
  f.barsPerYear = barsPerYear > 0 ? barsPerYear : barsPerYearOf(*dates, from, to);
  f.totalGrowth = percentGrowth(f.first, f.last);
  if (f.barsPerYear > 0) f.annualGrowth = annualGrowth(f.first, f.last, (f.bars - 1) / f.barsPerYear);
  setRatios(f, items, f.bars, rate);
  setDrawdowns(f, items, f.bars);
  *figures = f;
  return QV_OK;
}

int QVCALL qvTradeFigures(const QvOrderSystem* sys, double costRate, QvTradeFigures* figures) noexcept {
  if (!sys || !figures) return QV_INVALID_PARM;
  QvTradeFigures f{};
  const int bars = std::max(barsReached(*sys, sys->bars.barsize), 0);
  const int held = barsHeldOf(*sys, bars);
  if (held < 0) return held;
  for (int k = 0; k < sys->tradeCount; ++k) {
    const double result = tradeResult(*sys, sys->trades[k], costRate);
    if (result > 0) f.grossProfit += result;
    if (result < 0) f.grossLoss += result;
  }
  f.trades = sys->tradeCount;
  if (f.grossLoss < 0) {
    f.profitFactor = f.grossProfit / -f.grossLoss;
  } else if (f.grossProfit > 0) {
    f.profitFactor = std::numeric_limits<double>::infinity();
  }
  if (f.trades > 0) f.expectancy = (f.grossProfit + f.grossLoss) / f.trades;
  f.barsHeld = held;
  if (bars > 0) f.exposure = 100.0 * held / bars;
  *figures = f;
  return QV_OK;
}

}  // extern "C"
