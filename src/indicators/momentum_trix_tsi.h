// Oscillators of smoothed changes: the rate of change of a triple average, and the true strength index.
#pragma once

#include <cmath>

#include "indicators/averages_exponential.h"
#include "indicators/momentum_rates.h"

namespace qv::chain {

// The change of the triple average is the triple average of the changes, as exact as these are; in percent of
// the new average, and zero is not guarded.
class TRIX {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit TRIX(int period) noexcept : origin_(shareOf(period)), average_(shareOf(period), {0.0, 0.0, 1.0}) {}
  int lead() const noexcept { return 1; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    origin_.over(
        in[0], count, [&](int at, int items) { relative(in[0] + at, items, out[0] + at); }, average_,
        before_);
    if (!begun_) out[0][0] = 0.0;
    begun_ = true;
  }
  auto state() noexcept { return std::tie(origin_, average_, before_, begun_); }

 private:
  // The distance of the bar before, which goes with its origin.
  struct Level {
    double value = 0.0;
    void shift(double more) noexcept { value += more; }
    auto state() noexcept { return std::tie(value); }
  };

  void relative(const double* x, int count, double* out) noexcept {
    const double from = origin_.value();
    const auto rateOf = [from](double now, double before) { return (now - before) * 100.0 / (from + now); };
    Tile e;
    average_.run(x, count, e, from, 0.0);
    out[0] = rateOf(e[0], before_.value);
    map(count - 1, out + 1, rateOf, e + 1, e);
    before_.value = e[count - 1];
  }

  Origin origin_;
  DistancesInTurn<3> average_;
  Level before_;
  bool begun_ = false;
};

// The moves smoothed twice, over their sizes smoothed alike.
class TSI {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  TSI(int r, int s)
  noexcept : moves_(1, shareOf(r)), moves2_(1, shareOf(s)), sizes_(1, shareOf(r)), sizes2_(1, shareOf(s)) {}
  int lead() const noexcept { return moves2_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    Tile moves, sizes;
    moves[0] = changeOf(x[0], before_.take(x, count));
    map(count - 1, moves + 1, changeOf, x + 1, x);
    map(
        count, sizes, [](double move) { return std::fabs(move); }, moves);
    moves_.run({moves}, count, {moves});
    moves2_.run({moves}, count, {moves});
    sizes_.run({sizes}, count, {sizes});
    sizes2_.run({sizes}, count, {sizes});
    map(count, out[0], ratioOf, moves, sizes);
  }
  auto state() noexcept { return std::tie(before_, moves_, moves2_, sizes_, sizes2_); }

 private:
  Before before_;
  After<ExponentialAboutZero> moves_, moves2_, sizes_, sizes2_;
};

}  // namespace qv::chain
