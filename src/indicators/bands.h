// Bands and envelopes around averages, and price channels.
#pragma once

#include "core/bar_prices.h"
#include "core/calculation.h"
#include "core/stretch.h"
#include "indicators/averages.h"
#include "kernels/bar_extremes.h"
#include "kernels/extremes.h"
#include "kernels/standard_error.h"

namespace qv {

struct BandAbove {
  double k;
  double operator()(double width, double middle) const noexcept { return k * width + middle; }
};
struct BandBelow {
  double k;
  double operator()(double width, double middle) const noexcept { return middle - k * width; }
};

namespace chain {

// Around the mean of the typical price. A series that is too short leaves in the middle one's last item the
// sum of what there is over the whole period.
class Bollinger {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 3;

  Bollinger(double k, int period) noexcept
      : period_(period), window_(period, {k, static_cast<double>(period)}) {}
  int lead() const noexcept { return window_.lead(); }
  void run(Inputs<3> in, int count, Outputs<3> out) noexcept {
    Tile typical;
    map(count, typical, typicalPrice, in[0], in[1], in[2]);
    window_.run({typical}, count, out);
  }
  void endShort(int, Outputs<3> last) const noexcept {
    const auto items = window_.itemsSoFar();
    *last[1] = std::accumulate(items.rbegin(), items.rend(), 0.0) / period_;
  }
  auto state() noexcept { return std::tie(window_); }

 private:
  int period_;
  Sliding<DeviationBands> window_;
};

class BollingerWidth {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  BollingerWidth(double k, int period) noexcept
      : k_(k), window_(period, {static_cast<double>(period), false}), begin_(window_.lead()) {}
  int lead() const noexcept { return window_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    Tile typical;
    map(count, typical, typicalPrice, in[0], in[1], in[2]);
    window_.run({typical}, count, out);
    map(
        count, out[0], [k = k_](double deviation) { return 2.0 * k * deviation; }, out[0]);
    begin_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(window_, begin_); }

 private:
  double k_;
  Sliding<Deviation> window_;
  Lead begin_;
};

// Around the first series, as wide as the second.
class Envelope {
 public:
  static constexpr int kInputs = 2, kOutputs = 2;

  explicit Envelope(double k) noexcept : k_(k) {}
  int lead() const noexcept { return 0; }
  void run(Inputs<2> in, int count, Outputs<2> out) noexcept {
    map(count, out[0], BandAbove{k_}, in[1], in[0]);
    map(count, out[1], BandBelow{k_}, in[1], in[0]);
  }
  static std::tuple<> state() noexcept { return {}; }

 private:
  double k_;
};

// As wide as a share of the series itself.
class EnvelopePct {
 public:
  static constexpr int kInputs = 1, kOutputs = 2;

  explicit EnvelopePct(double k) noexcept : bands_(k) {}
  int lead() const noexcept { return 0; }
  void run(Inputs<1> in, int count, Outputs<2> out) noexcept { bands_.run({in[0], in[0]}, count, out); }
  static std::tuple<> state() noexcept { return {}; }

 private:
  Envelope bands_;
};

class MAEnvelope {
 public:
  static constexpr int kInputs = 1, kOutputs = 2;

  MAEnvelope(double k, int method, int period) noexcept
      : average_(method, period), bands_(average_.lead(), k) {}
  int lead() const noexcept { return bands_.lead(); }
  void run(Inputs<1> in, int count, Outputs<2> out) noexcept {
    Tile average;
    average_.run(in, count, {average});
    bands_.run({average}, count, out);
  }
  auto state() noexcept { return std::tie(average_, bands_); }

 private:
  MovingAverage average_;
  After<EnvelopePct> bands_;
};

// The averages of the highs and of the lows.
class MAHighLow {
 public:
  static constexpr unsigned kSeries = kHighLow;
  static constexpr int kInputs = 2, kOutputs = 2;

  MAHighLow(int method, int period) noexcept : high_(method, period), low_(method, period) {}
  int lead() const noexcept { return high_.lead(); }
  void run(Inputs<2> in, int count, Outputs<2> out) noexcept {
    high_.run({in[0]}, count, {out[0]});
    low_.run({in[1]}, count, {out[1]});
  }
  auto state() noexcept { return std::tie(high_, low_); }

 private:
  MovingAverage high_, low_;
};

// The highest and the lowest price of the bars before.
class PriceChannels {
 public:
  static constexpr unsigned kSeries = kPrices;
  static constexpr int kInputs = 4, kOutputs = 2;

  explicit PriceChannels(int period) noexcept : window_(period) {}
  int lead() const noexcept { return saturatingSum(window_.lead(), 1); }
  void run(Inputs<4> in, int count, Outputs<2> out) noexcept {
    Tile highest, lowest;
    window_.run(in, count, {highest, lowest});
    oneOn(highest, count, highestBefore_, out[0]);
    oneOn(lowest, count, lowestBefore_, out[1]);
  }
  auto state() noexcept { return std::tie(window_, highestBefore_, lowestBefore_); }

 private:
  static void oneOn(const double* x, int count, Before& before, double* out) noexcept {
    out[0] = before.take(x, count);
    std::copy_n(x, count - 1, out + 1);
  }

  SlidingBars<HighestLowestOf<BarExtremes>> window_;
  Before highestBefore_{0.0}, lowestBefore_{0.0};
};

// The middle of the highest high and the lowest low; where there is one bar less, of these.
class RangeMiddle {
 public:
  explicit RangeMiddle(int period) noexcept : window_(period), partial_(period - 1) {}
  void run(const double* high, const double* low, int count, double* out) noexcept {
    Tile lowest;
    const int first = partial_.pass(count);
    window_.run({high, low}, first, {out, lowest});
    if (first > 0 && partial_.left() == 0 && window_.ok()) {
      const auto highs = window_.itemsSoFar(0), lows = window_.itemsSoFar(1);
      const Stretch all{0, static_cast<int>(highs.size()) - 1};
      out[first - 1] = statsOf(highs.data(), all, false).maximum;
      lowest[first - 1] = statsOf(lows.data(), all, false).minimum;
    }
    window_.run({high + first, low + first}, count - first, {out + first, lowest + first});
    map(
        count, out, [](double most, double least) { return (most + least) / 2.0; }, out, lowest);
  }
  auto state() noexcept { return std::tie(window_, partial_); }

 private:
  Sliding<HighestLowest> window_;
  Lead partial_;
};

// Conversion and base line, and the two leading spans, which are as many bars later as the base looks back.
// All begin with the first bar; `start` is where values are wanted. The lagging line is the close of a later
// bar: it stays 0.0 here.
class IchimokuKinkoHyo {
 public:
  static constexpr unsigned kSeries = kHighLow;
  static constexpr int kInputs = 2, kOutputs = 5, kLooksAhead = 4;

  IchimokuKinkoHyo(int p1, int p2, int p3, int start) noexcept
      : first_(firstValidFrom(p1, p2, p3, start)),
        middles_{RangeMiddle(p1), RangeMiddle(p2), RangeMiddle(p3)},
        begins_{Lead(first_[0]), Lead(std::max(0, saturatingSum(start, p2, -2))),
                Lead(spanAFrom(p1, p2, start)), Lead(spanBFrom(p3, start))},
        later_{Delay(p2 - 1), Delay(p2 - 1)} {}
  static std::array<int, 5> firstValidFrom(int p1, int p2, int p3, int start) noexcept {
    return {saturatingSum(start, p1, -1), saturatingSum(start, p2, -1),
            saturatingSum(start, std::max(p1, p2), p2, -2), saturatingSum(start, p3, p2, -2), start};
  }
  // Where the spans' values come from first.
  static int spanAFrom(int p1, int p2, int start) noexcept {
    return std::max(0, saturatingSum(start, std::max(p1, p2), -2));
  }
  static int spanBFrom(int p3, int start) noexcept { return std::max(0, saturatingSum(start, p3, -2)); }
  int lead(int output) const noexcept { return first_[static_cast<std::size_t>(output)]; }
  void run(Inputs<2> in, int count, Outputs<5> out) noexcept {
    const auto [conversion, base, spanA, spanB, lagging] = out;
    Tile middle, longest;
    middles_[0].run(in[0], in[1], count, conversion);
    middles_[1].run(in[0], in[1], count, base);
    middles_[2].run(in[0], in[1], count, longest);
    begins_[0].pass(count, conversion);
    begins_[1].pass(count, base);
    map(
        count, middle, [](double a, double b) { return (a + b) / 2.0; }, conversion, base);
    begins_[2].pass(count, middle);
    begins_[3].pass(count, longest);
    later_[0].run({middle}, count, {spanA});
    later_[1].run({longest}, count, {spanB});
    std::fill_n(lagging, count, 0.0);
  }
  auto state() noexcept { return std::tie(middles_, begins_, later_); }

 private:
  std::array<int, 5> first_;
  std::array<RangeMiddle, 3> middles_;
  std::array<Lead, 4> begins_;
  std::array<Delay, 2> later_;
};

// Around the forecast of the least-squares line. The bands may begin later than the line: `after` items.
class StdErrBands {
 public:
  static constexpr int kInputs = 1, kOutputs = 3;

  StdErrBands(double k, int period, int after = 0) noexcept
      : k_(k), line_(period), error_(after, period), begin_(error_.lead()) {}
  int lead(int output) const noexcept { return output == 1 ? line_.lead() : error_.lead(); }
  void run(Inputs<1> in, int count, Outputs<3> out) noexcept {
    Tile error;
    line_.run(in, count, {out[1]});
    error_.run(in, count, {error});
    map(count, out[0], BandAbove{k_}, error, out[1]);
    map(count, out[2], BandBelow{k_}, error, out[1]);
    begin_.pass(count, out[0], out[2]);
  }
  auto state() noexcept { return std::tie(line_, error_, begin_); }

 private:
  double k_;
  LstSqrMA line_;
  After<StandardError> error_;
  Lead begin_;
};

}  // namespace chain
}  // namespace qv
