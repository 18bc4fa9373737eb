// A trading system that frees itself, and short ways to drive it.
//
// The doubles of the packed records are not aligned: tests hand them on as values, "+order.price",
// where a reference would be taken.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "support/series.h"

namespace qvtest {

struct System : QvOrderSystem {
  explicit System(const QvBars& over, const char* name = "Test") : QvOrderSystem{} {
    qvOrderSystemInit(this, name, &over);
  }
  System(const System&) = delete;
  System& operator=(const System&) = delete;
  ~System() { qvOrderSystemClose(this); }

  // Ticks of `tick`, each worth `tick` money: a price difference is worth itself.
  System& onTicks(double tick) {
    tickSize = tickValue = tick;
    return *this;
  }
  int next() { return qvProcessOrders(this); }
  void run(int count) {
    for (int i = 0; i < count; ++i) next();
  }

  int buy(const char* orderName, int volume, int type = QV_MARKET, double price = 0, int tif = QV_DAY) {
    return qvBuyToOpen(this, orderName, volume, price, type, tif);
  }
  int sellShort(const char* orderName, int volume, int type = QV_MARKET, double price = 0, int tif = QV_DAY) {
    return qvSellToOpen(this, orderName, volume, price, type, tif);
  }
  int sell(const char* orderName, int volume, int type = QV_MARKET, double price = 0, int tif = QV_DAY,
           const char* from = "") {
    return qvSellToClose(this, orderName, from, volume, price, type, tif);
  }
  int cover(const char* orderName, int volume, int type = QV_MARKET, double price = 0, int tif = QV_DAY,
            const char* from = "") {
    return qvBuyToClose(this, orderName, from, volume, price, type, tif);
  }

  std::vector<std::string> orderNames() const {
    std::vector<std::string> names;
    for (int i = 0; i < orderCount; ++i) names.push_back(orders[i].name);
    return names;
  }
};

// Bars without shadows at the given prices, dated 36526 (1 January 2000) on.
inline std::vector<Bar> flatBars(const std::vector<double>& prices) {
  std::vector<Bar> bars;
  for (double p : prices) bars.push_back({p, p, p, p, 0, 0, 36526.0 + static_cast<double>(bars.size())});
  return bars;
}

}  // namespace qvtest
