// The prices that sum up one bar, for loops that have checked their series.
#pragma once

#include "qvlib60/core.h"

namespace qv {

// The first bar has no previous close: its true high and low are its own.
inline double trueHigh(const double* high, const double* close, int i) noexcept {
  return i > 0 && high[i] <= close[i - 1] ? close[i - 1] : high[i];
}

inline double trueLow(const double* low, const double* close, int i) noexcept {
  return i > 0 && low[i] >= close[i - 1] ? close[i - 1] : low[i];
}

inline double trueRange(const double* high, const double* low, const double* close, int i) noexcept {
  return trueHigh(high, close, i) - trueLow(low, close, i);
}

// Formulas, as lambdas: handed to a loop they become part of it.
inline constexpr auto medianPrice = [](double high, double low) noexcept { return (high + low) / 2.0; };
// By a third: a division takes four times as long as all the rest. A bar that stands still has its own price.
inline constexpr auto typicalPrice = [](double high, double low, double close) noexcept {
  const double third = (high + low + close) * (1.0 / 3.0);
  return (high == low) & (low == close) ? close : third;
};
inline constexpr auto weightedClose = [](double high, double low, double close) noexcept {
  return (high + low + 2.0 * close) / 4.0;
};
// An open of exactly 0 stands for a bar set without opens.
inline constexpr auto averagePrice = [](double open, double high, double low, double close) noexcept {
  const double typical = typicalPrice(high, low, close), average = (open + high + low + close) / 4.0;
  return open == 0.0 ? typical : average;
};

}  // namespace qv
