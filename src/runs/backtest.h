// Backtests by rules: formulas decide at a bar's close, the library's simulator fills their orders at the
// next open.
//
//   flat          long: buy to open at the next open; short: sell to open
//   long          short: turn at the next open; exit: close at the next open; else the stop waits in the
//   market short         the mirror, with cover
//
// An entry is no signal where its own exit holds at the same bar, nor where the other side's entry is one,
// too. A rule counts from its first valid bar on. A stop's distance is taken at the close of the bar of the
// entry and stays; it waits from the bar after on and fills at its price, or at the open of a bar that opens
// beyond it. An entry whose stop would not be known at that bar is not taken; a distance that is not above 0
// is no stop. Every entry is for the same number of contracts, one position at a time.
#pragma once

#include <string>
#include <vector>

#include "qvlib60.hpp"
#include "runs/rules.h"

namespace qv::runs {

struct BacktestSettings {
  double cost = 0, slip = 0;  // fractions of the value traded by each fill
  double fixed = 0;           // money for each fill
  double capital = 10000;
  int size = 1;     // contracts of an entry
  double rate = 0;  // yearly return that costs no risk, for Sharpe and Sortino ratio
  double tick = 0;  // prices are truncated to multiples of it; 0: to none that could change them

  double costRate() const noexcept { return cost + slip; }
};

struct Figures {
  QvEquityFigures equity;
  QvTradeFigures trades;
};

// An order and what became of it.
struct OrderRecord {
  enum State { Filled, Cancelled, Pending };
  Rule rule;      // that placed it
  int action;     // QV_ENTRY, QV_EXIT
  int direction;  // QV_BUY, QV_SELL
  int placed;     // bar
  double price;   // of a stop; 0 at the market
  State state;
  int filled;   // bar
  double fill;  // price
  double cost;  // of the contracts that it opened and closed
};

struct TradeRecord {
  QvTrade trade;  // exitBar: the last bar for a position that is still open
  bool isOpen;
  double cost;
  double result;  // after costs
};

// Runs over one bar set, which must outlive it, one after the other.
class Backtest {
 public:
  // Throws where the bars lack dates, open, high, low or close, or there are none.
  Backtest(const QvBars& bars, const std::string& name, const BacktestSettings& settings);
  Backtest(const Backtest&) = delete;
  Backtest& operator=(const Backtest&) = delete;
  ~Backtest() { qvOrderSystemClose(&system_); }

  // One run. The rules' item `offset` belongs to the first bar.
  Figures run(const Signals& signals, int offset = 0);

  // The same once more, for reports: keeps the orders, and has the costs by value in the statistics, too.
  Figures runInFull(const Signals& signals);

  // Of the last run. The record's own statistics know the costs by value after `runInFull` only.
  const QvOrderSystem& system() const noexcept { return system_; }
  const Series& equity() const noexcept { return equity_; }
  int entriesWithoutStop() const noexcept { return entriesWithoutStop_; }
  const std::vector<OrderRecord>& orders() const noexcept { return orders_; }
  std::vector<TradeRecord> trades() const;

  // The capital put into the market at the first close and left there, without costs.
  Series holding() const;
  QvEquityFigures holdingFigures() const;

 private:
  struct Stop {
    int entryBar = -1;
    double price = 0;
    bool isSet = false;
  };
  void simulate(const Signals& signals, int offset);
  void decide(const Signals& signals, int offset);
  void setStop(const Signals& signals, int offset, const QvPosition& position);
  void place(Rule rule, int action, int direction, int type, double price);
  void noteFills();
  Figures figures();
  double costOf(const QvPosition& position, double exitPrice) const noexcept;
  QvEquityFigures figuresOf(const QvArray& equity) const;

  BacktestSettings settings_;
  QvOrderSystem system_{};
  Series equity_;
  Stop stop_;
  int entriesWithoutStop_ = 0;
  bool keepsOrders_ = false;
  std::vector<OrderRecord> orders_;
  std::vector<double> costs_;  // by value, of the trades in their order; empty unless they shall be counted
};

}  // namespace qv::runs
