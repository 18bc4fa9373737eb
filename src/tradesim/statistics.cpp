#include "tradesim/statistics.h"

#include <cmath>

#include "core/numbers.h"
#include "core/stretch.h"
#include "tradesim/trade_result.h"

namespace qv::tradesim {

namespace {

// By value: fields of a packed record cannot be referred to.
template <typename T>
constexpr T larger(T a, T b) noexcept {
  return a < b ? b : a;
}
template <typename T>
constexpr T smaller(T a, T b) noexcept {
  return b < a ? b : a;
}

// A trade without result counts as a trade, but ends no run.
void countTrade(QvTradeStats& s, double result, int bars) noexcept {
  s.totalNumberOfTrades = saturatingSum(s.totalNumberOfTrades, 1);
  if (result > 0) {
    s.numberOfWinningTrades = saturatingSum(s.numberOfWinningTrades, 1);
    s.currentRunOfWinners = saturatingSum(s.currentRunOfWinners, 1);
    s.currentRunOfLosers = 0;
    s.grossProfit += result;
    s.largestWinningTrade = larger(s.largestWinningTrade, result);
    s.maximumConsecutiveWinners = larger(s.maximumConsecutiveWinners, s.currentRunOfWinners);
    s.totalBarsInWinners = saturatingSum(s.totalBarsInWinners, bars);
  } else if (result < 0) {
    s.numberOfLosingTrades = saturatingSum(s.numberOfLosingTrades, 1);
    s.currentRunOfLosers = saturatingSum(s.currentRunOfLosers, 1);
    s.currentRunOfWinners = 0;
    s.grossLoss += result;
    s.largestLosingTrade = smaller(s.largestLosingTrade, result);
    s.maximumConsecutiveLosers = larger(s.maximumConsecutiveLosers, s.currentRunOfLosers);
    s.totalBarsInLosers = saturatingSum(s.totalBarsInLosers, bars);
  }
  s.totalNetProfit = s.grossProfit + s.grossLoss;
  if (s.grossLoss != 0) s.profitFactor = std::fabs(s.grossProfit / s.grossLoss);
}

// Long and short trades alike: the whole range of closes over the trade's bars, zero or negative.
double tradeDrawdown(const QvOrderSystem& sys, const QvTrade& trade) noexcept {
  const QvArray& close = sys.bars.close;
  const StretchStats closes =
      statsOf(close.data, stretchOf(trade.position.entryBar, trade.exitBar, {&close}), false);
  return (closes.minimum - closes.maximum) * trade.exitVolume * sys.tickValue / sys.tickSize;
}

void refreshAccount(QvTradeStats& s, double marginPercent) noexcept {
  if (marginPercent != 0)
    s.accountSizeRequired = std::fabs(s.maximumIntradayDrawdown / (marginPercent / 100));
  if (s.accountSizeRequired != 0) s.returnOnAccount = s.totalNetProfit * 100 / s.accountSizeRequired;
}

constexpr int wholeAverage(int bars, int trades) noexcept {
  return bars / trades;
}

void refreshAverages(QvTradeStats& s, int barsInWinners, int barsInLosers) noexcept {
  if (s.numberOfWinningTrades != 0) {
    s.averageWinningTrade = s.grossProfit / s.numberOfWinningTrades;
    s.averageBarsInWinners = wholeAverage(barsInWinners, s.numberOfWinningTrades);
  }
  if (s.numberOfLosingTrades != 0) {
    s.averageLosingTrade = s.grossLoss / s.numberOfLosingTrades;
    s.averageBarsInLosers = wholeAverage(barsInLosers, s.numberOfLosingTrades);
  }
  if (s.totalNumberOfTrades != 0) {
    s.percentProfitable = static_cast<double>(s.numberOfWinningTrades) / s.totalNumberOfTrades * 100;
    s.averageTrade = s.totalNetProfit / s.totalNumberOfTrades;
  }
  if (s.averageLosingTrade != 0)
    s.ratioAverageWinAverageLoss = std::fabs(s.averageWinningTrade / s.averageLosingTrade);
}

// The profit factor with one standard error fewer winners and more losers.
void refreshPessimisticReturn(QvTradeStats& s) noexcept {
  const double trades = s.totalNumberOfTrades;
  const double winners = s.numberOfWinningTrades, losers = s.numberOfLosingTrades;
  const double wins =
      winners != 0 ? ((winners - std::sqrt(winners)) / trades) * s.grossProfit / winners : 0.0;
  const double losses = losers != 0 ? (-s.grossLoss * ((std::sqrt(losers) + losers) / trades)) / losers : 0.0;
  s.prr = losses != 0 ? wins / losses : wins;
}

void refreshNet(QvTradeStats& net, const QvTradeStats& l, const QvTradeStats& s,
                double marginPercent) noexcept {
  net.totalNetProfit = l.totalNetProfit + s.totalNetProfit;
  net.grossProfit = l.grossProfit + s.grossProfit;
  net.grossLoss = l.grossLoss + s.grossLoss;
  net.totalNumberOfTrades = saturatingSum(l.totalNumberOfTrades, s.totalNumberOfTrades);
  net.numberOfWinningTrades = saturatingSum(l.numberOfWinningTrades, s.numberOfWinningTrades);
  net.numberOfLosingTrades = saturatingSum(l.numberOfLosingTrades, s.numberOfLosingTrades);
  net.largestWinningTrade = larger(l.largestWinningTrade, s.largestWinningTrade);
  net.largestLosingTrade = smaller(l.largestLosingTrade, s.largestLosingTrade);
  net.maximumConsecutiveWinners = larger(l.maximumConsecutiveWinners, s.maximumConsecutiveWinners);
  net.maximumConsecutiveLosers = larger(l.maximumConsecutiveLosers, s.maximumConsecutiveLosers);
  net.maximumContractsHeld = larger(l.maximumContractsHeld, s.maximumContractsHeld);
  net.maximumIntradayDrawdown = smaller(l.maximumIntradayDrawdown, s.maximumIntradayDrawdown);
  net.profitFactor = l.profitFactor + s.profitFactor;  // the sum, not the factor of all trades
  refreshAccount(net, marginPercent);
  refreshAverages(net, saturatingSum(l.totalBarsInWinners, s.totalBarsInWinners),
                  saturatingSum(l.totalBarsInLosers, s.totalBarsInLosers));
  refreshPessimisticReturn(net);
}

}  // namespace

void addToStatistics(QvOrderSystem& sys, const QvTrade& trade) noexcept {
  QvTradeStats& s = trade.position.direction == QV_BUY ? sys.longStatistics : sys.shortStatistics;
  countTrade(s, tradeResult(sys, trade), saturatingSum(trade.exitBar, -trade.position.entryBar, 1));
  s.maximumIntradayDrawdown = smaller(s.maximumIntradayDrawdown, tradeDrawdown(sys, trade));
  refreshAccount(s, sys.marginPercent);
  refreshAverages(s, s.totalBarsInWinners, s.totalBarsInLosers);
  refreshPessimisticReturn(s);
  refreshNet(sys.netStatistics, sys.longStatistics, sys.shortStatistics, sys.marginPercent);
}

}  // namespace qv::tradesim
