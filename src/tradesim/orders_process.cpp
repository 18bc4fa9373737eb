// The step to the next bar: pending orders become fills, entry fills positions, exit fills trades.
//
// What always holds after a bar: orders and positions keep their relative order when others leave
// the table; contracts entered less contracts closed are the contracts held, except for positions
// that a reversal on their own entry bar discards; every stored price has been truncated to the
// tick. The gate that keeps entries out while a position is held sees the position as it was at the
// end of the bar before.
#include <cstdlib>
#include <cstring>
#include <optional>

#include "core/calculation.h"
#include "core/memory.h"
#include "core/numbers.h"
#include "core/text.h"
#include "dates/calendar.h"
#include "qvlib60/tradesim.h"
#include "tradesim/fills.h"
#include "tradesim/order_sort.h"
#include "tradesim/statistics.h"
#include "tradesim/trade_result.h"

namespace {

using namespace qv;
using namespace qv::tradesim;

constexpr int kPositionStep = 4;

// One entry of each direction may fill on a bar.
struct EntriesFilled {
  bool buy = false, sell = false;
  bool& of(int direction) noexcept { return direction == QV_BUY ? buy : sell; }
};

bool hasPrices(const QvBars& bars) noexcept {
  for (const QvArray* a : {&bars.date, &bars.open, &bars.high, &bars.low, &bars.close})
    if (!a->data || a->capacity < bars.barsize) return false;
  return true;
}

// Names in positions and trades have blanks behind their terminator.
template <std::size_t N, std::size_t M>
void copyName(char (&field)[N], const char (&name)[M]) noexcept {
  copyText(field, textOf(name), ' ');
}

// Drops records from a table; each run of those that stay moves as one block.
template <typename Record, typename Leaves>
int compacted(Record* table, int count, Leaves leaves) noexcept {
  int kept = 0;
  for (int i = 0; i < count;) {
    if (leaves(table[i])) {
      ++i;
      continue;
    }
    const int run = i;
    while (i < count && !leaves(table[i])) ++i;
    if (kept != run)
      std::memmove(&table[kept], &table[run], static_cast<std::size_t>(i - run) * sizeof(Record));
    kept += i - run;
  }
  return kept;
}

// ---- Trades -------------------------------------------------------------------------------------

// The statistics keep a trade that finds no place in the table.
void recordTrade(QvOrderSystem& sys, const QvOrder& order, int direction, double price, QvPosition& position,
                 int volume) noexcept {
  QvTrade trade{};
  trade.position = position;
  copyName(trade.exitName, order.name);
  trade.exitDirection = direction;
  trade.exitBar = sys.currentBar;
  // A close order trades at the close of the bar before, on its date.
  trade.exitDate = sys.bars.date.data[order.orderType == QV_CLOSE ? sys.currentBar - 1 : sys.currentBar];
  trade.exitPrice = truncateTick(price, sys.tickSize);
  trade.exitVolume = volume;
  addToStatistics(sys, trade);

  const int halfMore = sys.tradeCapacity > 1 ? sys.tradeCapacity / 2 : 1;
  if (growTable(sys.trades, sys.tradeCount, sys.tradeCapacity, halfMore) == QV_OK)
    sys.trades[sys.tradeCount++] = trade;
  position.remaining = volume < position.remaining ? position.remaining - volume : 0;
}

// A position entered on this very bar is discarded: it leaves no trade.
void closeOtherDirection(QvOrderSystem& sys, const QvOrder& entry, double price) noexcept {
  for (int i = 0; i < sys.positionCount; ++i) {
    QvPosition& position = sys.positions[i];
    if (position.remaining <= 0 || position.direction == entry.direction) continue;
    if (position.entryBar == sys.currentBar) {
      position.remaining = 0;
    } else {
      recordTrade(sys, entry, entry.direction, price, position, position.remaining);
    }
  }
}

void openTrade(QvOrderSystem& sys, const QvOrder& order, double price) noexcept {
  if (growTable(sys.positions, sys.positionCount, sys.positionCapacity, kPositionStep)) return;
  QvPosition& position = sys.positions[sys.positionCount++];
  copyName(position.entryName, order.name);
  position.direction = order.direction;
  position.entryBar = sys.currentBar;
  position.entryDate = sys.bars.date.data[sys.currentBar];
  position.entryPrice = truncateTick(price, sys.tickSize);
  position.volume = position.remaining = order.volume;
  sys.lastEntryDate = position.entryDate;
  if (sys.reverseOnEntry) closeOtherDirection(sys, order, price);
}

// An exit that finds nothing to close is used up all the same.
void closePositions(QvOrderSystem& sys, QvOrder& order, double price) noexcept {
  order.filled = 1;
  int volume = order.volume;
  for (int i = 0; i < sys.positionCount && volume > 0; ++i) {
    QvPosition& position = sys.positions[i];
    if (position.direction == order.direction || position.remaining <= 0) continue;
    if (order.fromEntry[0] && std::strcmp(order.fromEntry, position.entryName) != 0) continue;
    const int closed = volume > position.remaining ? position.remaining : volume;
    recordTrade(sys, order, order.direction, price, position, closed);
    volume -= closed;
  }
}

// ---- Orders -------------------------------------------------------------------------------------

EntriesFilled fillOrders(QvOrderSystem& sys) noexcept {
  const QvBars& bars = sys.bars;
  const int i = sys.currentBar;
  const FillBar bar{bars.open.data[i], bars.high.data[i], bars.low.data[i], bars.close.data[i - 1]};
  const int delayInDays = sys.entryDelaySeconds / dates::kSecondsPerDay;

  EntriesFilled entered;
  for (int k = 0; k < sys.orderCount; ++k) {
    QvOrder& order = sys.orders[k];
    if (order.filled || !(order.date + delayInDays <= bars.date.data[i])) continue;
    const bool isEntry = order.action == QV_ENTRY;
    if (isEntry) {
      const bool held = !sys.pyramiding && sys.positionDirection == order.direction;
      if (held || entered.of(order.direction)) continue;
    }
    const std::optional<double> price = fillPrice(order, bar, sys.tickSize, sys.gapFills != 0);
    if (!price) continue;
    if (isEntry) {
      openTrade(sys, order, *price);
      entered.of(order.direction) = true;
    } else {
      closePositions(sys, order, *price);
    }
  }
  return entered;
}

// A filled entry takes the other pending entries of its direction with it.
void dropOrders(QvOrderSystem& sys, EntriesFilled entered) noexcept {
  sys.orderCount = compacted(sys.orders, sys.orderCount, [&](const QvOrder& order) {
    return order.timeInForce == QV_DAY || order.filled ||
           (order.action == QV_ENTRY && entered.of(order.direction));
  });
}

// ---- Position summary ---------------------------------------------------------------------------

// What is held of one direction.
struct Holding {
  std::int64_t contracts = 0;
  double weightedPrice = 0;
  int bars = 0;  // since the first of them was entered
  double openPL = 0;

  void add(const QvOrderSystem& sys, const QvPosition& position) noexcept {
    const double close = sys.bars.close.data[sys.currentBar];
    const double gain = priceGain(position.direction, position.entryPrice, close);
    contracts += position.remaining;
    weightedPrice += position.remaining * position.entryPrice;
    if (bars == 0) bars = saturatingSum(sys.currentBar, -position.entryBar, 1);
    openPL += moneyPerContract(sys, gain) * position.remaining;
  }
};

void raiseContractsHeld(QvTradeStats& s, int contracts) noexcept {
  if (s.maximumContractsHeld < contracts) s.maximumContractsHeld = contracts;
}

void updatePositionSummary(QvOrderSystem& sys) noexcept {
  sys.longStatistics.openPositionPL = sys.shortStatistics.openPositionPL = sys.netStatistics.openPositionPL =
      0;
  if (sys.positionCount == 0) return;

  Holding longs, shorts;
  for (int i = 0; i < sys.positionCount; ++i) {
    const QvPosition& position = sys.positions[i];
    if (position.remaining > 0) (position.direction == QV_BUY ? longs : shorts).add(sys, position);
  }
  sys.longStatistics.openPositionPL = longs.openPL;
  sys.shortStatistics.openPositionPL = shorts.openPL;
  sys.netStatistics.openPositionPL = longs.openPL + shorts.openPL;
  sys.longContracts = saturate(longs.contracts);
  sys.shortContracts = saturate(shorts.contracts);
  sys.barsInLong = longs.bars;
  sys.barsInShort = shorts.bars;

  sys.netContracts = saturate(std::llabs(longs.contracts - shorts.contracts));
  sys.positionDirection = 0;
  sys.averageEntryPrice = 0;
  sys.barsInPosition = 0;
  if (longs.contracts != shorts.contracts) {
    const bool isLong = longs.contracts > shorts.contracts;
    const Holding& prevailing = isLong ? longs : shorts;
    sys.positionDirection = isLong ? QV_BUY : QV_SELL;
    sys.averageEntryPrice = prevailing.weightedPrice / static_cast<double>(prevailing.contracts);
    sys.barsInPosition = prevailing.bars;
  }
  raiseContractsHeld(sys.longStatistics, sys.longContracts);
  raiseContractsHeld(sys.shortStatistics, sys.shortContracts);
}

}  // namespace

extern "C" {

int QVCALL qvProcessOrders(QvOrderSystem* sys) noexcept {
  if (!sys) return QV_INVALID_PARM;
  sys->currentBar = saturatingSum(sys->currentBar, 1);
  if (sys->currentBar <= 0) return 1;  // nothing is pending yet
  if (sys->currentBar >= sys->bars.barsize) return 0;
  if (!hasPrices(sys->bars)) return QV_INVALID_PARM;

  sortOrders(sys->orders, sys->orderCount);
  const EntriesFilled entered = fillOrders(*sys);
  updatePositionSummary(*sys);
  dropOrders(*sys, entered);
  sys->positionCount =
      compacted(sys->positions, sys->positionCount, [](const QvPosition& p) { return p.remaining == 0; });
  return 1;
}

}  // extern "C"
