// What a price move is worth: the one formula behind the statistics, the reports and the equity.
#pragma once

#include <cmath>

#include "qvlib60/tradesim/records.h"

namespace qv::tradesim {

inline double priceGain(int positionDirection, double entryPrice, double exitPrice) noexcept {
  return positionDirection == QV_BUY ? exitPrice - entryPrice : entryPrice - exitPrice;
}

inline double moneyPerContract(const QvOrderSystem& sys, double gain) noexcept {
  return gain * sys.tickValue / sys.tickSize;
}

// Slippage is taken per contract, commission once per side of the trade.
inline double tradeResult(const QvOrderSystem& sys, double gain, int contracts,
                          double furtherSlippage = 0) noexcept {
  return (1.0 - sys.deductionRate) *
         ((moneyPerContract(sys, gain) - (sys.slippage + furtherSlippage)) * contracts - sys.commission * 2);
}

// Of contracts that are closed, or valued, at a price. The cost of a fraction of the value traded on both
// sides counts as slippage.
inline double closedResult(const QvOrderSystem& sys, const QvPosition& position, double exitPrice,
                           int contracts, double costRate) noexcept {
  const double traded = std::fabs(position.entryPrice) + std::fabs(exitPrice);
  const double cost = costRate != 0 ? costRate * moneyPerContract(sys, traded) : 0.0;
  return tradeResult(sys, priceGain(position.direction, position.entryPrice, exitPrice), contracts, cost);
}

inline double tradeResult(const QvOrderSystem& sys, const QvTrade& trade, double costRate = 0) noexcept {
  return closedResult(sys, trade.position, trade.exitPrice, trade.exitVolume, costRate);
}

}  // namespace qv::tradesim
