#include "runs/backtest.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace qv::runs {

namespace {

// Prices from 1/1024 up are multiples of it: truncation leaves them alone.
constexpr double kHarmlessTick = 0x1p-62;

bool isLong(const QvPosition& position) noexcept {
  return position.direction == QV_LONG;
}

}  // namespace

Backtest::Backtest(const QvBars& bars, const std::string& name, const BacktestSettings& settings)
    : settings_(settings) {
  const QvArray* needed[] = {&bars.date, &bars.open, &bars.high, &bars.low, &bars.close};
  for (const QvArray* a : needed)
    if (bars.barsize < 1 || !a->data || a->size < bars.barsize || a->firstValid >= bars.barsize)
      throw Error(name, "a backtest needs bars with date, open, high, low and close", QV_INVALID_PARM);
  qv::check(qvOrderSystemInit(&system_, name.c_str(), &bars), name);
  system_.tickSize = system_.tickValue = settings.tick > 0 ? settings.tick : kHarmlessTick;
  system_.commission = settings.fixed;
  system_.gapFills = 1;
}

// ---- The run ------------------------------------------------------------------------------------

void Backtest::place(Rule rule, int action, int direction, int type, double price) {
  const char* name = kRuleNames[rule];
  const int n = settings_.size;
  int status;
  if (action == QV_ENTRY)
    status = (direction == QV_BUY ? qvBuyToOpen : qvSellToOpen)(&system_, name, n, price, type, QV_DAY);
  else
    status = (direction == QV_BUY ? qvBuyToClose : qvSellToClose)(&system_, name, "", n, price, type, QV_DAY);
  qv::check(status, system_.systemName);
  const bool isRenewed = type == QV_STOP && system_.currentBar > stop_.entryBar;
  if (keepsOrders_ && !isRenewed)
    orders_.push_back({rule, action, direction, system_.currentBar, price, OrderRecord::Pending, -1, 0, 0});
}

void Backtest::setStop(const Signals& signals, int offset, const QvPosition& position) {
  const int i = system_.currentBar;
  stop_ = {i, 0, false};
  if (!signals.rules[kStop]) return;
  const double distance = signals.knows(kStop, i + offset) ? signals.rules[kStop]->data[i + offset] : 0.0;
  stop_.isSet = distance > 0 && std::isfinite(distance);
  stop_.price = isLong(position) ? position.entryPrice - distance : position.entryPrice + distance;
  if (!stop_.isSet) ++entriesWithoutStop_;
}

void Backtest::decide(const Signals& signals, int offset) {
  const int i = system_.currentBar + offset;
  const bool stopWillBeKnown = !signals.rules[kStop] || signals.knows(kStop, i + 1);
  const bool isBuy = signals.holds(kLong, i) && !signals.holds(kExit, i) && stopWillBeKnown;
  const bool isSell = signals.holds(kShort, i) && !signals.holds(kCover, i) && stopWillBeKnown;
  const bool entersLong = isBuy && !isSell, entersShort = isSell && !isBuy;

  const QvPosition* position = system_.positionCount > 0 ? &system_.positions[0] : nullptr;
  if (!position) {
    if (entersLong) place(kLong, QV_ENTRY, QV_BUY, QV_MARKET, 0);
    if (entersShort) place(kShort, QV_ENTRY, QV_SELL, QV_MARKET, 0);
    return;
  }
  if (position->entryBar == system_.currentBar) setStop(signals, offset, *position);
  // Beside an order at the market the stop does not wait: exits are tried first within a bar, but the open
  // comes before whatever touches the stop.
  const bool inLong = isLong(*position);
  const int out = inLong ? QV_SELL : QV_BUY;
  const Rule exit = inLong ? kExit : kCover;
  if (inLong ? entersShort : entersLong)
    place(inLong ? kShort : kLong, QV_ENTRY, out, QV_MARKET, 0);
  else if (signals.holds(exit, i))
    place(exit, QV_EXIT, out, QV_MARKET, 0);
  else if (stop_.isSet)
    place(kStop, QV_EXIT, out, QV_STOP, stop_.price);
}

// What the bar has made of the orders: it filled all those at the market, and a stop if that closed a trade.
void Backtest::noteFills() {
  const int i = system_.currentBar;
  const QvTrade* closed = system_.tradeCount > 0 ? &system_.trades[system_.tradeCount - 1] : nullptr;
  if (closed && closed->exitBar != i) closed = nullptr;
  const QvPosition* opened = system_.positionCount > 0 ? &system_.positions[0] : nullptr;
  if (opened && opened->entryBar != i) opened = nullptr;
  const auto fill = [&](OrderRecord& order, double price, double cost) {
    order.state = OrderRecord::Filled;
    order.filled = i;
    order.fill = price;
    order.cost += cost;
  };
  const auto costOfFill = [&](double price) {
    return settings_.costRate() * std::fabs(price) * settings_.size + settings_.fixed;
  };
  for (auto order = orders_.rbegin(); order != orders_.rend() && order->placed >= stop_.entryBar; ++order) {
    if (order->state != OrderRecord::Pending) continue;
    if (closed && std::strcmp(closed->exitName, kRuleNames[order->rule]) == 0)
      fill(*order, closed->exitPrice, costOfFill(closed->exitPrice));
    else if (closed && order->rule == kStop)
      order->state = OrderRecord::Cancelled;
    if (opened && order->action == QV_ENTRY) fill(*order, opened->entryPrice, costOfFill(opened->entryPrice));
  }
}

void Backtest::simulate(const Signals& signals, int offset) {
  qvOrderSystemReset(&system_);
  stop_ = {};
  entriesWithoutStop_ = 0;
  orders_.clear();
  for (;;) {
    // Slippage is per contract: that of the trade which the next bar may close.
    const auto next = static_cast<std::size_t>(system_.tradeCount);
    system_.slippage = next < costs_.size() ? costs_[next] : 0.0;
    if (qv::check(qvProcessOrders(&system_), system_.systemName) == 0) break;
    if (keepsOrders_) noteFills();
    decide(signals, offset);
  }
  system_.slippage = 0;
}

Figures Backtest::figures() {
  Figures f;
  qv::check(qvEquity(&system_, settings_.capital, settings_.costRate(), &equity_), system_.systemName);
  f.equity = figuresOf(equity_);
  qv::check(qvTradeFigures(&system_, settings_.costRate(), &f.trades), system_.systemName);
  return f;
}

Figures Backtest::run(const Signals& signals, int offset) {
  costs_.clear();
  keepsOrders_ = false;
  simulate(signals, offset);
  return figures();
}

// The fills do not depend on the costs: a first run tells the prices, of which the second takes the costs.
Figures Backtest::runInFull(const Signals& signals) {
  run(signals);
  for (int k = 0; k < system_.tradeCount; ++k) {
    const QvTrade& trade = system_.trades[k];
    costs_.push_back(settings_.costRate() *
                     (std::fabs(trade.position.entryPrice) + std::fabs(trade.exitPrice)));
  }
  keepsOrders_ = true;
  simulate(signals, 0);
  return figures();
}

// ---- What came of it ----------------------------------------------------------------------------

double Backtest::costOf(const QvPosition& position, double exitPrice) const noexcept {
  const double traded = std::fabs(position.entryPrice) + std::fabs(exitPrice);
  return settings_.costRate() * traded * position.remaining + 2 * settings_.fixed;
}

std::vector<TradeRecord> Backtest::trades() const {
  std::vector<TradeRecord> rows;
  const auto add = [&](const QvTrade& trade, bool isOpen) {
    const QvPosition& p = trade.position;
    const double gain = isLong(p) ? trade.exitPrice - p.entryPrice : p.entryPrice - trade.exitPrice;
    const double cost = costOf(p, trade.exitPrice);
    rows.push_back({trade, isOpen, cost, gain * p.remaining - cost});
  };
  for (int k = 0; k < system_.tradeCount; ++k) add(system_.trades[k], false);
  for (int k = 0; k < system_.positionCount; ++k) {
    QvTrade trade{};
    const int last = system_.bars.barsize - 1;
    trade.position = system_.positions[k];
    trade.exitBar = last;
    trade.exitDate = system_.bars.date.data[last];
    trade.exitPrice = system_.bars.close.data[last];
    add(trade, true);
  }
  return rows;
}

Series Backtest::holding() const {
  const QvArray& close = system_.bars.close;
  Series held(system_.bars.barsize);
  for (int i = 0; i < held.size; ++i)
    held[i] = close.data[0] > 0 ? settings_.capital * (close.data[i] / close.data[0]) : settings_.capital;
  return held;
}

QvEquityFigures Backtest::figuresOf(const QvArray& equity) const {
  QvEquityFigures f;
  qv::check(qvEquityFigures(&equity, &system_.bars.date, 0, settings_.rate, &f), system_.systemName);
  return f;
}

QvEquityFigures Backtest::holdingFigures() const {
  return figuresOf(holding());
}

}  // namespace qv::runs
