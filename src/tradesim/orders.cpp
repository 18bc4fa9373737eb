// A trading system's record from initialisation to release, and the calls that place and withdraw
// orders.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "core/calculation.h"
#include "core/memory.h"
#include "core/text.h"
#include "qvlib60/tradesim.h"
#include "tradesim/order_prices.h"

namespace {

using namespace qv;
using namespace qv::tradesim;

constexpr bool k64Bit = sizeof(void*) == 8;
static_assert(sizeof(QvOrder) == 80 && offsetof(QvOrder, price) == 52);
static_assert(sizeof(QvPosition) == 52 && offsetof(QvPosition, entryPrice) == 36);
static_assert(sizeof(QvTrade) == 104 && offsetof(QvTrade, exitPrice) == 88);
static_assert(sizeof(QvTradeStats) == 188 && offsetof(QvTradeStats, totalBarsInWinners) == 172);
static_assert(sizeof(QvOptVar) == 36 && offsetof(QvOptVar, value) == 28);
static_assert(sizeof(QvOrderSystem) == (k64Bit ? 1392 : 1320));
static_assert(offsetof(QvOrderSystem, longStatistics) == (k64Bit ? 204 : 200));
static_assert(offsetof(QvOrderSystem, bars) == (k64Bit ? 816 : 800));

constexpr int kFirstRecords = 16;  // of the order and the position table
constexpr int kOrderStep = 4;
constexpr int kLargestTradeTable = INT32_MAX / static_cast<int>(sizeof(QvTrade));

template <typename Record>
Record* newTable(int count) noexcept {
  return static_cast<Record*>(memory::allocateZeroed(static_cast<std::size_t>(count), sizeof(Record)));
}

void releaseTables(QvOrderSystem& sys) noexcept {
  memory::release(sys.orders);
  memory::release(sys.positions);
  memory::release(sys.trades);
  sys.orders = nullptr;
  sys.positions = nullptr;
  sys.trades = nullptr;
}

void clearRun(QvOrderSystem& sys) noexcept {
  sys.orderCount = sys.positionCount = sys.tradeCount = 0;
  sys.longStatistics = sys.shortStatistics = sys.netStatistics = QvTradeStats{};
  sys.currentBar = -1;
  sys.positionDirection = 0;
  sys.longContracts = sys.shortContracts = sys.netContracts = 0;
  sys.averageEntryPrice = sys.lastEntryDate = 0.0;
  sys.barsInLong = sys.barsInShort = sys.barsInPosition = 0;
}

void setDefaults(QvOrderSystem& sys) noexcept {
  sys.tickSize = 0.001;
  sys.tickValue = 0.001;
  sys.marginPercent = 100.0;
  sys.reverseOnEntry = 1;
  sys.longEntriesAllowed = 1;
  sys.shortEntriesAllowed = 1;
}

double orderPrice(const QvOrderSystem& sys, const QvOrder& order) noexcept {
  switch (order.orderType) {
    case QV_MARKET:
      return order.direction == QV_BUY ? kMarketBuyPrice : kMarketSellPrice;
    case QV_CLOSE:
      return qvGetArrayItem(&sys.bars.close, sys.currentBar);
    default:
      return order.price;
  }
}

struct Terms {
  int volume;
  double price;
  int orderType;
  int timeInForce;
};

// The names are copied before the table grows: they may be those of a record in it.
int placeOrder(QvOrderSystem* sys, const char* name, const char* fromEntry, int action, int direction,
               const Terms& terms) noexcept {
  if (!sys || !name || !fromEntry) return QV_INVALID_PARM;
  if (sys->currentBar < 0) return QV_INVALID_PARM;  // no bar to take the date from
  if (action == QV_ENTRY && !(direction == QV_BUY ? sys->longEntriesAllowed : sys->shortEntriesAllowed))
    return QV_OK;

  QvOrder order{};
  copyText(order.name, textUpTo(name, sizeof order.name));
  copyText(order.fromEntry, textUpTo(fromEntry, sizeof order.fromEntry));
  order.volume = terms.volume;
  order.action = action;
  order.direction = direction;
  order.price = terms.price;
  order.orderType = terms.orderType;
  order.timeInForce = terms.timeInForce;
  order.date = qvGetArrayItem(&sys->bars.date, sys->currentBar);
  order.price = orderPrice(*sys, order);

  if (const int status = growTable(sys->orders, sys->orderCount, sys->orderCapacity, kOrderStep))
    return status;
  sys->orders[sys->orderCount++] = order;
  return QV_OK;
}

}  // namespace

extern "C" {

int QVCALL qvOrderSystemInit(QvOrderSystem* sys, const char* name, const QvBars* bars) noexcept {
  if (!sys || !name || !bars) return QV_INVALID_PARM;
  const QvBars given = *bars;  // copies, for both may be the record's own
  char givenName[sizeof sys->systemName];
  copyText(givenName, textUpTo(name, sizeof givenName));

  std::memset(sys, 0, sizeof *sys);
  const int tradeCapacity = std::clamp(given.barsize / 4, 0, kLargestTradeTable);
  sys->orders = newTable<QvOrder>(kFirstRecords);
  sys->positions = newTable<QvPosition>(kFirstRecords);
  sys->trades = newTable<QvTrade>(tradeCapacity);
  if (!sys->orders || !sys->positions || !sys->trades) {
    releaseTables(*sys);
    return QV_MALLOC;
  }
  sys->orderCapacity = sys->positionCapacity = kFirstRecords;
  sys->tradeCapacity = tradeCapacity;
  clearRun(*sys);
  sys->bars = given;
  std::memcpy(sys->systemName, givenName, sizeof givenName);
  setDefaults(*sys);
  return QV_OK;
}

void QVCALL qvOrderSystemReset(QvOrderSystem* sys) noexcept {
  if (sys) clearRun(*sys);
}

int QVCALL qvOrderSystemClose(QvOrderSystem* sys) noexcept {
  if (!sys) return QV_INVALID_PARM;
  releaseTables(*sys);
  sys->orderCapacity = sys->positionCapacity = sys->tradeCapacity = 0;
  sys->orderCount = sys->positionCount = sys->tradeCount = 0;
  return QV_OK;
}

int QVCALL qvBuyToOpen(QvOrderSystem* sys, const char* name, int volume, double price, int orderType,
                       int timeInForce) noexcept {
  return placeOrder(sys, name, "", QV_ENTRY, QV_BUY, {volume, price, orderType, timeInForce});
}

int QVCALL qvSellToOpen(QvOrderSystem* sys, const char* name, int volume, double price, int orderType,
                        int timeInForce) noexcept {
  return placeOrder(sys, name, "", QV_ENTRY, QV_SELL, {volume, price, orderType, timeInForce});
}

int QVCALL qvSellToClose(QvOrderSystem* sys, const char* name, const char* fromEntry, int volume,
                         double price, int orderType, int timeInForce) noexcept {
  return placeOrder(sys, name, fromEntry, QV_EXIT, QV_SELL, {volume, price, orderType, timeInForce});
}

int QVCALL qvBuyToClose(QvOrderSystem* sys, const char* name, const char* fromEntry, int volume, double price,
                        int orderType, int timeInForce) noexcept {
  return placeOrder(sys, name, fromEntry, QV_EXIT, QV_BUY, {volume, price, orderType, timeInForce});
}

int QVCALL qvCancelOrder(QvOrderSystem* sys, const char* name) noexcept {
  if (!sys || !name) return QV_INVALID_PARM;
  const bool all = *name == '\0';
  int marked = 0;
  // Up to and including the place behind the last order, where the table reaches that far.
  for (int i = 0; i <= sys->orderCount; ++i) {
    const bool inTable = i < sys->orderCapacity;
    if (!all && !(inTable && std::strcmp(sys->orders[i].name, name) == 0)) continue;
    if (inTable) sys->orders[i].filled = 1;
    ++marked;
  }
  return marked;
}

}  // extern "C"
