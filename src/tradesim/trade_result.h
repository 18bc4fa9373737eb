// What a price move is worth: the one formula behind the statistics and the reports.
#pragma once

#include "qvlib60/tradesim/records.h"

namespace qv::tradesim {

inline double priceGain(int positionDirection, double entryPrice, double exitPrice) noexcept {
  return positionDirection == QV_BUY ? exitPrice - entryPrice : entryPrice - exitPrice;
}

inline double moneyPerContract(const QvOrderSystem& sys, double gain) noexcept {
  return gain * sys.tickValue / sys.tickSize;
}

// Slippage is taken per contract, commission once per side of the trade.
inline double tradeResult(const QvOrderSystem& sys, double gain, int contracts) noexcept {
  return (1.0 - sys.deductionRate) *
         ((moneyPerContract(sys, gain) - sys.slippage) * contracts - sys.commission * 2);
}

inline double tradeResult(const QvOrderSystem& sys, const QvTrade& trade) noexcept {
  const double gain = priceGain(trade.position.direction, trade.position.entryPrice, trade.exitPrice);
  return tradeResult(sys, gain, trade.exitVolume);
}

}  // namespace qv::tradesim
