// Projection bands: the extremes of the last bars, carried on to the newest along the regression slope.
//
// The upper band at bar i is the largest high[k] + (i - k) * g over the last p bars k, with g the slope of
// the highs: the point that lies furthest in one direction among the points (k, high[k]). Only corners of
// their convex hull can be it. The hull of a window is that of a suffix of one block of p bars and of a
// prefix of the next; both are kept as stacks of corners that grow (the prefix) or are taken back step by
// step (the suffix), so that a bar costs a few steps to keep the stacks and a binary search in each, not p.
#pragma once

#include "core/calculation.h"
#include "indicators/averages_exponential.h"
#include "kernels/moments.h"

namespace qv {

// The upper hull of points (k, y[k]) that are added at one end, newest on top. `sign` -1 makes it the lower
// one.
class Hull {
 public:
  explicit Hull(double sign) noexcept : sign_(sign) {}
  // For up to `points`.
  bool makeRoom(std::size_t points) noexcept { return corners_.grow(points) && log_.grow(points); }
  void clear() noexcept { size_ = steps_ = 0; }
  void add(const double* y, int k) noexcept;
  void takeBack() noexcept;
  // The projection to bar i along slope g that lies furthest out, not inside `best`.
  double furthest(const double* y, int i, double g, double best) const noexcept;
  template <typename V>
  void fields(V& v, int points) noexcept {
    v.scratch(corners_, points);
    v.scratch(log_, points);
  }

 private:
  struct Step {
    int at, was, size;
  };

  int corner(int at) const noexcept { return corners_[static_cast<std::size_t>(at)]; }
  bool turns(const double* y, int a, int b, int c) const noexcept;

  double sign_;
  memory::Buffer<int> corners_;
  memory::Buffer<Step> log_;
  int size_ = 0, steps_ = 0;
};

// As a stage over a series and its slopes; the upper band, or the lower one where `sign` is -1.
class FurthestProjection {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;

  FurthestProjection(double sign, int period) noexcept : period_(period), suffix_(sign), prefix_(sign) {}
  bool ok() const noexcept { return !failed_; }
  int lead() const noexcept { return period_ - 1; }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    for (int j = 0; j < count; ++j) out[0][j] = failed_ ? 0.0 : next(in[0][j], in[1][j]);
  }
  bool reserve(int count) noexcept {
    return begun_ || (saturatingSum(place_, count) < period_
                          ? y_.grow(static_cast<std::size_t>(place_) + static_cast<std::size_t>(count))
                          : makeRoom());
  }
  template <typename V>
  void fields(V& v) noexcept {
    v.within(place_, 0, period_);
    v(begun_);
    v.buffer(y_,
             begun_ ? std::size_t{2} * static_cast<std::size_t>(period_) : static_cast<std::size_t>(place_));
    suffix_.fields(v, begun_ ? period_ : 0);
    prefix_.fields(v, begun_ ? period_ : 0);
  }
  bool restored() noexcept;  // the hulls of the items

 private:
  bool makeRoom() noexcept;
  double next(double y, double slope) noexcept;
  // Of the newest block, whose items are numbered from 0; those of the one before from -period.
  double* block() noexcept { return y_.data() + period_; }
  double furthest(int i, double slope) noexcept;
  void blockIsFull() noexcept;

  int period_, place_ = 0;
  bool begun_ = false, failed_ = false;
  Hull suffix_, prefix_;
  memory::Buffer<double> y_;  // two blocks; until the first is full it alone
};

namespace chain {

// Highs and lows that begin later than the bars have no slope until a period of them is there.
class ProjectionBands {
 public:
  static constexpr unsigned kSeries = kHighLow;
  static constexpr int kInputs = 2, kOutputs = 2;

  explicit ProjectionBands(int period, int highsAfter = 0, int lowsAfter = 0) noexcept
      : upper_(1.0, period, highsAfter), lower_(-1.0, period, lowsAfter) {}
  int lead() const noexcept { return upper_.extreme.lead(); }
  void run(Inputs<2> in, int count, Outputs<2> out) noexcept {
    upper_.run(in[0], count, out[0]);
    lower_.run(in[1], count, out[1]);
  }
  auto state() noexcept { return std::tie(upper_, lower_); }

 private:
  struct Band {
    After<Sliding<SlopeIntercept>> line;
    After<FurthestProjection> extreme;

    Band(double sign, int period, int after) noexcept
        : line(after, period, SlopeIntercept(period)), extreme(period - 1, sign, period) {}
    void run(const double* y, int count, double* out) noexcept {
      Tile slope, intercept;
      line.run({y}, count, {slope, intercept});
      extreme.run({y, slope}, count, {out});
    }
    auto state() noexcept { return std::tie(line, extreme); }
  };
  Band upper_, lower_;
};

// The width in percent of the middle.
class ProjectionBandwidth {
 public:
  static constexpr unsigned kSeries = kHighLow;
  static constexpr int kInputs = 2, kOutputs = 1;

  explicit ProjectionBandwidth(int period, int highsAfter = 0, int lowsAfter = 0) noexcept
      : bands_(period, highsAfter, lowsAfter), begin_(bands_.lead()) {}
  int lead() const noexcept { return bands_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    const auto widthOf = [](double upper, double lower) { return 200.0 * (upper - lower) / (upper + lower); };
    Tile upper, lower;
    bands_.run(in, count, {upper, lower});
    map(count, out[0], widthOf, upper, lower);
    begin_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(bands_, begin_); }

 private:
  ProjectionBands bands_;
  Lead begin_;
};

// Where the close stands between the bands, in percent, smoothed where that is more than one bar.
class ProjectionOscillator {
 public:
  static constexpr unsigned kSeries = kHighLowClose;
  static constexpr int kInputs = 3, kOutputs = 1;

  explicit ProjectionOscillator(int period, int smoothing, int highsAfter = 0, int lowsAfter = 0) noexcept
      : smoothing_(smoothing),
        bands_(period, highsAfter, lowsAfter),
        begin_(bands_.lead()),
        average_(bands_.lead(), std::max(1, smoothing)) {}
  int lead() const noexcept { return bands_.lead(); }
  void run(Inputs<3> in, int count, Outputs<1> out) noexcept {
    const auto positionOf = [](double close, double upper, double lower) {
      const double position = (close - lower) * 100.0 / (upper - lower);
      return upper != lower ? position : 0.0;
    };
    Tile upper, lower, position;
    bands_.run({in[0], in[1]}, count, {upper, lower});
    map(count, position, positionOf, in[2], upper, lower);
    if (smoothing_ > 1) return average_.run({position}, count, out);
    std::copy_n(position, count, out[0]);
    begin_.pass(count, out[0]);
  }
  auto state() noexcept { return std::tie(bands_, begin_, average_); }

 private:
  int smoothing_;
  ProjectionBands bands_;
  Lead begin_;
  After<ExpMA> average_;
};

}  // namespace chain
}  // namespace qv
