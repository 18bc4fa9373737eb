// A trading system that frees itself, and short ways to drive it.
//
// The doubles of the packed records are not aligned: tests hand them on as values, "+order.price",
// where a reference would be taken.
#pragma once

#include <string>
#include <vector>

#include "support/series.h"

namespace qvtest {

// The arguments of an order call.
struct Ask {
  int action, direction;
  const char* name;
  int volume, type;
  double price;
  int tif;
  const char* from;
};
struct AskFor {
  int action, direction;
  Ask operator()(const char* name, int volume, int type = QV_MARKET, double price = 0, int tif = QV_DAY,
                 const char* from = "") const {
    return {action, direction, name, volume, type, price, tif, from};
  }
};
inline constexpr AskFor buy{QV_ENTRY, QV_BUY}, sellShort{QV_ENTRY, QV_SELL}, sell{QV_EXIT, QV_SELL},
    cover{QV_EXIT, QV_BUY};

struct System : QvOrderSystem {
  explicit System(const QvBars& over) : QvOrderSystem{} { qvOrderSystemInit(this, "Test", &over); }
  System& operator=(System&&) = delete;  // nor is there a copy
  ~System() { qvOrderSystemClose(this); }

  int next() { return qvProcessOrders(this); }
  int place(const Ask& a) {
    if (a.action == QV_ENTRY)
      return (a.direction == QV_BUY ? qvBuyToOpen : qvSellToOpen)(this, a.name, a.volume, a.price, a.type,
                                                                  a.tif);
    return (a.direction == QV_BUY ? qvBuyToClose : qvSellToClose)(this, a.name, a.from, a.volume, a.price,
                                                                  a.type, a.tif);
  }
  void place(const std::vector<Ask>& asks) {
    for (const Ask& a : asks) place(a);
  }
  // Places the orders and moves on to the bar that may fill them.
  int bar(const std::vector<Ask>& asks) {
    place(asks);
    return next();
  }
};

// On bars of its own, with ticks of 1 worth 1: a price difference is worth itself.
struct Backtest : Bars, System {
  explicit Backtest(const std::vector<Bar>& over) : Bars(over), System(static_cast<Bars&>(*this)) {
    tickSize = tickValue = 1;
  }
  // Bars without shadows, dated 36526 (1 January 2000) on.
  explicit Backtest(std::initializer_list<double> prices) : Backtest(closingAt(prices)) {
    for (int i = 0; i < barsize; ++i) date.data[i] = 36526.0 + i;
  }
};

inline std::vector<std::string> orderNames(const QvOrderSystem& sys) {
  std::vector<std::string> names;
  for (int i = 0; i < sys.orderCount; ++i) names.push_back(sys.orders[i].name);
  return names;
}

}  // namespace qvtest
