// The relative volatility index and the inertia built on it.
#pragma once

#include "core/calculation.h"
#include "indicators/averages.h"
#include "indicators/momentum_rsi.h"
#include "kernels/moments.h"

namespace qv::chain {

// Relative strength of the deviations of ten bars: they count as rises or falls with the last move, and not
// at all where that is none. A series too short for the seed has one value, at its last item.
class RVIoriginal {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit RVIoriginal(int period) noexcept : strength_(period) {}
  int lead() const noexcept { return saturatingSum(deviation_.lead(), strength_.lead()); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    Tile rises, falls;
    const double before = before_.take(x, count);
    deviation_.run(in, count, {rises});
    falls[0] = x[0] < before ? rises[0] : 0.0;
    rises[0] = x[0] > before ? rises[0] : 0.0;
    map(
        count - 1, falls + 1, [](double sd, double now, double then) { return now < then ? sd : 0.0; },
        rises + 1, x + 1, x);
    map(
        count - 1, rises + 1, [](double sd, double now, double then) { return now > then ? sd : 0.0; },
        rises + 1, x + 1, x);
    const int none = begin_.pass(count, out[0]);
    strength_.run(rises + none, falls + none, count - none, out[0] + none);
  }
  void endShort(int items, Outputs<1> last) const noexcept {
    if (items > deviation_.lead()) *last[0] = strength_.soFar();
  }
  auto state() noexcept { return std::tie(deviation_, before_, begin_, strength_); }

 private:
  static constexpr int kDeviationPeriod = 10;

  Sliding<Deviation> deviation_{kDeviationPeriod, {kDeviationPeriod, true}};
  Before before_;
  Lead begin_{kDeviationPeriod - 1};
  Strength strength_;
};

// The mean of the highs' and the lows' index. A series that is too short has the lows' at its last item.
class RVI {
 public:
  static constexpr unsigned kSeries = kHighLow;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit RVI(int period) noexcept : ofHighs_(period), ofLows_(period) {}
  int lead() const noexcept { return ofLows_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile highs, lows;
    ofHighs_.run({in[0]}, count, {highs});
    ofLows_.run({in[1]}, count, {lows});
    map(
        count, out[0], [](double high, double low) { return (high + low) / 2.0; }, highs, lows);
  }
  void endShort(int items, Outputs<1> last) const noexcept { ofLows_.endShort(items, last); }
  auto state() noexcept { return std::tie(ofHighs_, ofLows_); }

 private:
  RVIoriginal ofHighs_, ofLows_;
};

// Where the least-squares line of the index leads.
class Inertia {
 public:
  static constexpr unsigned kSeries = kHighLow;
  static constexpr int kInputs = 2, kOutputs = 1;

  Inertia(int period, int linePeriod) noexcept : index_(period), line_(index_.lead(), linePeriod) {}
  int lead() const noexcept { return line_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile index;
    index_.run(in, count, {index});
    line_.run({index}, count, out);
  }
  auto state() noexcept { return std::tie(index_, line_); }

 private:
  RVI index_;
  After<LstSqrMA> line_;
};

}  // namespace qv::chain
