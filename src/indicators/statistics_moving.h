// The moving forms of the statistics: one value for every window of p items.
#pragma once

#include "kernels/logarithm.h"
#include "kernels/moments.h"
#include "kernels/standard_error.h"

namespace qv {

inline constexpr auto squareOf = [](double x) { return x * x; };
// The size of a change as a ratio.
inline constexpr auto sizeOfLogChange = [](double now, double before) {
  return std::fabs(logarithmOf(now / before));
};

namespace chain {

class StdDevMv : public Sliding<Deviation> {
 public:
  StdDevMv(bool sample, int period) noexcept : Sliding(period, {static_cast<double>(period), sample}) {}
};

class StdErrMv : public StandardError {
 public:
  using StandardError::StandardError;
};

class CovarianceMv : public Sliding<Covariance> {
 public:
  explicit CovarianceMv(int period) noexcept : Sliding(period, Covariance(period)) {}
};

class CorCoefMv : public Sliding<Correlation> {
 public:
  CorCoefMv(bool sample, int period) noexcept : Sliding(period, Correlation(period, sample)) {}
};

class RSquaredCoef {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;

  RSquaredCoef(bool sample, int period) noexcept : correlation_(sample, period) {}
  int lead() const noexcept { return correlation_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    correlation_.run(in, count, out);
    map(count, out[0], squareOf, out[0]);
  }
  auto state() noexcept { return std::tie(correlation_); }

 private:
  CorCoefMv correlation_;
};

// Of the series and its own index.
class RSquared {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit RSquared(int period) noexcept : fit_(true, period) {}
  int lead() const noexcept { return fit_.lead(); }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    Tile index;
    for (int j = 0; j < count; ++j) index[j] = passed_ + j;
    passed_ += count;
    fit_.run({index, in[0]}, count, out);
  }
  auto state() noexcept { return std::tie(fit_, passed_); }

 private:
  RSquaredCoef fit_;
  double passed_ = 0.0;
};

// Of the logarithms there are one fewer than items; of a single item 0 / 0.
class DispersionMv {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit DispersionMv(int period) noexcept : period_(period), sums_(1, std::max(1, period - 1)) {}
  int lead() const noexcept { return period_ - 1; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = in[0];
    if (period_ == 1) return std::fill_n(out[0], count, std::numeric_limits<double>::quiet_NaN()), void();
    Tile changes;
    changes[0] = sizeOfLogChange(x[0], before_.take(x, count));
    map(count - 1, changes + 1, sizeOfLogChange, x + 1, x);
    sums_.run({changes}, count, out);
    const double perRatio = 1.0 / (period_ - 1.0);
    map(
        count, out[0], [perRatio](double sum) { return root(sum * perRatio); }, out[0]);
  }
  auto state() noexcept { return std::tie(before_, sums_); }

 private:
  int period_;
  Before before_;
  After<Sliding<Sums<1>>> sums_;
};

// The correlation over the first series' dispersion. The items on which it is taken begin where the
// dispersion does: `after` items from the first of both series on.
class BetaCoefMv {
 public:
  static constexpr int kInputs = 2, kOutputs = 1;

  BetaCoefMv(bool sample, int period, int after) noexcept
      : dispersion_(period), correlation_(after, sample, period) {}
  BetaCoefMv(bool sample, int period) noexcept : BetaCoefMv(sample, period, period - 1) {}
  int lead() const noexcept { return correlation_.lead(); }
  void run(Inputs<2> in, int count, Outputs<1> out) noexcept {
    Tile dispersion;
    dispersion_.run({in[0]}, count, {dispersion});
    correlation_.run(in, count, out);
    const auto quotientOf = [](double correlation, double by) {
      const double quotient = correlation / by;
      return (by < 0.0) | (by > 0.0) ? quotient : 0.0;
    };
    map(count, out[0], quotientOf, out[0], dispersion);
  }
  auto state() noexcept { return std::tie(dispersion_, correlation_); }

 private:
  DispersionMv dispersion_;
  After<CorCoefMv> correlation_;
};

class RegressionLineMv : public Sliding<SlopeIntercept> {
 public:
  explicit RegressionLineMv(int period) noexcept : Sliding(period, SlopeIntercept(period)) {}
};

}  // namespace chain
}  // namespace qv
