// Bands and envelopes around averages, and price channels.
#pragma once

#include "core/bar_prices.h"
#include "core/calculation.h"
#include "indicators/averages.h"
#include "kernels/bar_extremes.h"
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
      : k_(k),
        period_(period),
        window_(period, {static_cast<double>(period), false}),
        begin_(window_.lead()) {}
  bool ok() const noexcept { return window_.ok(); }
  int lead() const noexcept { return window_.lead(); }
  void run(Inputs<3> in, int count, Outputs<3> out) noexcept {
    Tile typical, width;
    map(count, typical, typicalPrice, in[0], in[1], in[2]);
    window_.run({typical}, count, {width, out[1]});
    map(count, out[0], BandAbove{k_}, width, out[1]);
    map(count, out[2], BandBelow{k_}, width, out[1]);
    begin_.pass(count, out[0], out[2]);
  }
  void endShort(int, Outputs<3> last) const noexcept {
    const auto items = window_.itemsSoFar();
    *last[1] = std::accumulate(items.rbegin(), items.rend(), 0.0) / period_;
  }

 private:
  double k_;
  int period_;
  Sliding<Deviation<true>> window_;
  Lead begin_;
};

class BollingerWidth {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  BollingerWidth(double k, int period) noexcept
      : k_(k), window_(period, {static_cast<double>(period), false}), begin_(window_.lead()) {}
  bool ok() const noexcept { return window_.ok(); }
  int lead() const noexcept { return window_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    Tile typical;
    map(count, typical, typicalPrice, in[0], in[1], in[2]);
    window_.run({typical}, count, out);
    map(
        count, out[0], [k = k_](double deviation) { return 2.0 * k * deviation; }, out[0]);
    begin_.pass(count, out[0]);
  }

 private:
  double k_;
  Sliding<Deviation<false>> window_;
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

 private:
  Envelope bands_;
};

class MAEnvelope {
 public:
  static constexpr int kInputs = 1, kOutputs = 2;

  MAEnvelope(double k, int method, int period) noexcept
      : average_(method, period), bands_(average_.lead(), k) {}
  bool ok() const noexcept { return average_.ok(); }
  int lead() const noexcept { return bands_.lead(); }
  void run(Inputs<1> in, int count, Outputs<2> out) noexcept {
    Tile average;
    average_.run(in, count, {average});
    bands_.run({average}, count, out);
  }

 private:
  MovingAverage average_;
  After<EnvelopePct> bands_;
};

// The highest and the lowest price of the bars before.
class PriceChannels {
 public:
  static constexpr unsigned kSeries = kPrices;
  static constexpr int kInputs = 4, kOutputs = 2;

  explicit PriceChannels(int period) noexcept : window_(period) {}
  bool ok() const noexcept { return window_.ok(); }
  int lead() const noexcept { return saturatingSum(window_.lead(), 1); }
  void run(Inputs<4> in, int count, Outputs<2> out) noexcept {
    Tile highest, lowest;
    window_.run(in, count, {highest, lowest});
    oneOn(highest, count, highestBefore_, out[0]);
    oneOn(lowest, count, lowestBefore_, out[1]);
  }

 private:
  static void oneOn(const double* x, int count, Before& before, double* out) noexcept {
    out[0] = before.take(x, count);
    std::copy_n(x, count - 1, out + 1);
  }

  SlidingBars<HighestLowestOf<BarExtremes>> window_;
  Before highestBefore_{0.0}, lowestBefore_{0.0};
};

// Around the forecast of the least-squares line. The bands may begin later than the line: `after` items.
class StdErrBands {
 public:
  static constexpr int kInputs = 1, kOutputs = 3;

  StdErrBands(double k, int period, int after = 0) noexcept
      : k_(k), line_(period), error_(after, period), begin_(error_.lead()) {}
  bool ok() const noexcept { return line_.ok() && error_.ok(); }
  int lead(int output) const noexcept { return output == 1 ? line_.lead() : error_.lead(); }
  void run(Inputs<1> in, int count, Outputs<3> out) noexcept {
    Tile error;
    line_.run(in, count, {out[1]});
    error_.run(in, count, {error});
    map(count, out[0], BandAbove{k_}, error, out[1]);
    map(count, out[2], BandBelow{k_}, error, out[1]);
    begin_.pass(count, out[0], out[2]);
  }

 private:
  double k_;
  LstSqrMA line_;
  After<StandardError> error_;
  Lead begin_;
};

}  // namespace chain
}  // namespace qv
