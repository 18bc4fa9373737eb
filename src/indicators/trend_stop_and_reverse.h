// Parabolic stop-and-reverse.
#pragma once

#include "core/calculation.h"
#include "kernels/tiles.h"

namespace qv::chain {

// Begins with the third bar: the first two tell the side. The stop and the side (1 long, -1 short).
class SAR {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 2;

  SAR(double step, double maximum) noexcept : step_(step), maximum_(maximum) {}
  int lead() const noexcept { return 2; }
  void run(Inputs<3> in, int count, Outputs<2> out) noexcept {
    int i = 0;
    for (; i < count && passed_ < 2; ++i, ++passed_) {
      out[0][i] = out[1][i] = 0.0;
      if (passed_ == 1) begin(in, i);
      keep(in, i);
    }
    if (i == count) return;
    Side side = side_;  // in registers
    bool isLong = isLong_;
    while (i < count) {
      i = isLong ? hold<true>(side, in, i, count, out) : hold<false>(side, in, i, count, out);
      if (i == count) break;
      isLong = !isLong;
      isLong ? turn<true>(side, in, i, out) : turn<false>(side, in, i, out);
      ++i;
    }
    side_ = side;
    isLong_ = isLong;
    keep(in, count - 1);
  }
  template <typename V>
  void fields(V& v) noexcept {
    v.within(passed_, 0, 2);
    v(isLong_, side_, high_, low_, close_);
  }

 private:
  struct Side {
    double stop, extreme, acceleration;
    auto state() noexcept { return std::tie(stop, extreme, acceleration); }
  };

  // A long position follows the highs with a stop below the lows. A short one follows the lows with a stop
  // above the highs: the same with the comparisons turned round.
  template <bool kLong>
  static QV_INLINE double nearer(double a, double b) noexcept {
    return kLong ? smallerOne(b, a) : largerOne(b, a);
  }
  // `further` where the bar goes beyond the extreme, else `as`.
  template <bool kLong>
  static QV_INLINE double ifBeyond(double ahead, double extreme, double further, double as) noexcept {
    return kLong ? whereAbove(ahead, extreme, further, as) : whereAbove(extreme, ahead, further, as);
  }
  // The stop may not stand inside the range of this bar or the one before.
  template <bool kLong>
  QV_INLINE double limited(double stop, const Inputs<3>& in, int i) const noexcept {
    const double* behind = in[kLong ? 1 : 0];
    const double before = i > 0 ? behind[i - 1] : kLong ? low_ : high_;
    return nearer<kLong>(nearer<kLong>(stop, behind[i]), before);
  }
  template <bool kLong>
  QV_INLINE void advance(Side& side, const Inputs<3>& in, int i) const noexcept {
    side.stop = limited<kLong>(side.stop + side.acceleration * (side.extreme - side.stop), in, i);
  }

  // A flat or falling second close starts short.
  void begin(const Inputs<3>& in, int i) noexcept {
    isLong_ = !(in[2][i] <= close_);
    const double stop = isLong_ ? nearer<true>(low_, in[1][i]) : nearer<false>(high_, in[0][i]);
    side_ = {stop, stop, step_};
  }
  // The bars from i on until the one that turns the position.
  template <bool kLong>
  QV_INLINE int hold(Side& side, const Inputs<3>& in, int i, int count,
                     const Outputs<2>& out) const noexcept {
    const double *ahead = in[kLong ? 0 : 1], *close = in[2];
    for (; i < count && !(kLong ? close[i] <= side.stop : close[i] >= side.stop); ++i) {
      out[0][i] = side.stop;
      out[1][i] = kLong ? 1.0 : -1.0;
      const double faster = smallerOne(side.acceleration + step_, maximum_);
      side.acceleration = ifBeyond<kLong>(ahead[i], side.extreme, faster, side.acceleration);
      side.extreme = ifBeyond<kLong>(ahead[i], side.extreme, ahead[i], side.extreme);
      advance<kLong>(side, in, i);
    }
    return i;
  }
  // The extreme becomes the reversal bar's near end, not its far one, so that the next bar that goes further
  // always counts as a new extreme and raises the acceleration.
  template <bool kLong>
  QV_INLINE void turn(Side& side, const Inputs<3>& in, int i, const Outputs<2>& out) const noexcept {
    out[0][i] = limited<kLong>(side.extreme, in, i);
    out[1][i] = kLong ? 1.0 : -1.0;
    side = {out[0][i], in[kLong ? 1 : 0][i], step_};
    advance<kLong>(side, in, i);
  }
  void keep(const Inputs<3>& in, int i) noexcept {
    high_ = in[0][i];
    low_ = in[1][i];
    close_ = in[2][i];
  }

  double step_, maximum_;
  int passed_ = 0;  // bars of the beginning, up to two
  bool isLong_ = false;
  Side side_{};
  double high_ = 0.0, low_ = 0.0, close_ = 0.0;  // of the bar before the piece
};

}  // namespace qv::chain
