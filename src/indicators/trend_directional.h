// Wilder's ranges and directional system: true range, directional movement, +DI and -DI, DX, ADX.
#pragma once

#include <cmath>
#include <limits>

#include "core/calculation.h"
#include "indicators/averages_exponential.h"

namespace qv {

// A bar without one before it has not-a-number for its close: its range is its height.
inline constexpr auto trueRangeOf = [](double high, double low, double closeBefore) {
  const auto larger = [](double a, double b) { return a < b ? b : a; };
  return larger(larger(std::fabs(high - low), std::fabs(high - closeBefore)), std::fabs(low - closeBefore));
};
// Movement counts on the side that went further; none where both shrank or went equally far.
inline constexpr auto plusMovementOf = [](double high, double low, double highBefore, double lowBefore) {
  const double up = high - highBefore, down = lowBefore - low;
  return ((up < 0.0) & (down < 0.0)) | (up == down) | (up < down) ? 0.0 : up;
};
inline constexpr auto minusMovementOf = [](double high, double low, double highBefore, double lowBefore) {
  const double up = high - highBefore, down = lowBefore - low;
  return ((up < 0.0) & (down < 0.0)) | !(up < down) ? 0.0 : down;
};
inline constexpr auto shareOfRange = [](double movement, double range) {
  const double share = 100.0 * movement / range;
  return range != 0.0 ? share : 0.0;
};
// The range divides both indicators and cancels, but where it is zero.
inline constexpr auto dxOf = [](double plus, double minus, double range) {
  const double value = std::fabs(plus - minus) * 100.0 / (plus + minus);
  return (plus == minus) | (range == 0.0) ? 0.0 : value;
};

class TrueRange {
 public:
  void run(const double* high, const double* low, const double* close, int count, double* out) noexcept {
    out[0] = trueRangeOf(high[0], low[0], close_.take(close, count));
    map(count - 1, out + 1, trueRangeOf, high + 1, low + 1, close);
  }
  auto state() noexcept { return std::tie(close_); }

 private:
  Before close_{std::numeric_limits<double>::quiet_NaN()};
};

// None for the first bar.
class DirectionalMovement {
 public:
  void run(const double* high, const double* low, int count, double* plus, double* minus) noexcept {
    const double highBefore = high_.take(high, count), lowBefore = low_.take(low, count);
    plus[0] = plusMovementOf(high[0], low[0], highBefore, lowBefore);
    minus[0] = minusMovementOf(high[0], low[0], highBefore, lowBefore);
    map(count - 1, plus + 1, plusMovementOf, high + 1, low + 1, high, low);
    map(count - 1, minus + 1, minusMovementOf, high + 1, low + 1, high, low);
  }
  auto state() noexcept { return std::tie(high_, low_); }

 private:
  Before high_, low_;
};

// Wilder's sums of the true ranges and of both movements, which begin one bar later.
class DirectionalSums {
 public:
  explicit DirectionalSums(int period) noexcept : ranges_(period), plus_(1, period), minus_(1, period) {}
  int lead() const noexcept { return plus_.lead(); }
  // high, low, close in; plus, minus and range out.
  void run(const Inputs<3>& in, int count, double* plus, double* minus, double* range) noexcept {
    range_.run(in[0], in[1], in[2], count, range);
    movement_.run(in[0], in[1], count, plus, minus);
    ranges_.run({range}, count, {range});
    plus_.run({plus}, count, {plus});
    minus_.run({minus}, count, {minus});
  }
  // The sums of the movements of a series that is too short.
  double plusSoFar() const noexcept { return plus_.stage().sumSoFar(); }
  double minusSoFar() const noexcept { return minus_.stage().sumSoFar(); }
  auto state() noexcept { return std::tie(range_, movement_, ranges_, plus_, minus_); }

 private:
  TrueRange range_;
  DirectionalMovement movement_;
  WilderSum ranges_;
  After<WilderSum> plus_, minus_;
};

namespace chain {

class TR {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  int lead() const noexcept { return 0; }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    range_.run(in[0], in[1], in[2], count, out[0]);
  }
  auto state() noexcept { return std::tie(range_); }

 private:
  TrueRange range_;
};

class ATR {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  explicit ATR(int period) noexcept : average_(period) {}
  int lead() const noexcept { return average_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    Tile range;
    range_.run(in, count, {range});
    average_.run({range}, count, out);
  }
  void endShort(int items, Outputs<1> last) const noexcept { average_.endShort(items, last); }
  auto state() noexcept { return std::tie(range_, average_); }

 private:
  TR range_;
  WellesMA average_;
};

class DMIx {
 public:
  static constexpr unsigned kSeries = kHighLow;
  static constexpr int kInputs = 2, kOutputs = 2;

  int lead() const noexcept { return 1; }
  void run(Inputs<2> in, int count, Outputs<2> out) noexcept {
    movement_.run(in[0], in[1], count, out[0], out[1]);
    begin_.pass(count, out[0], out[1]);
  }
  auto state() noexcept { return std::tie(movement_, begin_); }

 private:
  DirectionalMovement movement_;
  Lead begin_{1};
};

// A series that is too short leaves the movements' sums in its last items, not divided by any range.
class DI {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 2;

  explicit DI(int period) noexcept : sums_(period), begin_(sums_.lead()) {}
  int lead() const noexcept { return sums_.lead(); }
  void run(Inputs<3> in, int count, Outputs<2> out) noexcept {
    Tile range;
    sums_.run(in, count, out[0], out[1], range);
    map(count, out[0], shareOfRange, out[0], range);
    map(count, out[1], shareOfRange, out[1], range);
    begin_.pass(count, out[0], out[1]);  // the range begins a bar before
  }
  void endShort(int items, Outputs<2> last) const noexcept {
    if (items < 2) return;
    *last[0] = sums_.plusSoFar();
    *last[1] = sums_.minusSoFar();
  }
  auto state() noexcept { return std::tie(sums_, begin_); }

 private:
  DirectionalSums sums_;
  Lead begin_;
};

class DX {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  explicit DX(int period) noexcept : sums_(period) {}
  int lead() const noexcept { return sums_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    Tile plus, minus, range;
    sums_.run(in, count, plus, minus, range);
    map(count, out[0], dxOf, plus, minus, range);
  }
  auto state() noexcept { return std::tie(sums_); }

 private:
  DirectionalSums sums_;
};

class ADX {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  ADX(int dxPeriod, int adxPeriod) noexcept : dx_(dxPeriod), average_(dx_.lead(), adxPeriod) {}
  int lead() const noexcept { return average_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    Tile dx;
    dx_.run(in, count, {dx});
    average_.run({dx}, count, out);
  }
  void endShort(int items, Outputs<1> last) const noexcept { average_.endShort(items, last); }
  auto state() noexcept { return std::tie(dx_, average_); }

 private:
  DX dx_;
  After<WellesMA> average_;
};

// The mean of the ADX and of that `lag` bars before.
class ADXR {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  ADXR(int dxPeriod, int adxPeriod, int lag)
  noexcept : adx_(dxPeriod, adxPeriod), lag_(lag), first_(saturatingSum(adx_.lead(), lag)), begin_(first_) {}
  int lead() const noexcept { return first_; }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    Tile adx;
    adx_.run(in, count, {adx});
    lag_.over(adx, count, [&](int at, int items, const double* before) {
      map(
          items, out[0] + at, [](double now, double then) { return (now + then) / 2.0; }, adx + at, before);
    });
    begin_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(adx_, lag_, begin_); }

 private:
  ADX adx_;
  Delay lag_;
  int first_;
  Lead begin_;
};

}  // namespace chain
}  // namespace qv
