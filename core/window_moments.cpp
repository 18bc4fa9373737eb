// Sliding deviations, covariances and least-squares lines.
//
// The sums run over distances from an anchor, an item that every window of the block contains: the last
// one. So nothing large is ever squared and cancelled, and a window of equal items has zero sums.
#include <array>
#include <cmath>

#include "core/numbers.h"
#include "core/window_blocks.h"

namespace qv::window {

namespace {

// The results of a kernel out of its kTerms sums over each window. kernel.anchorAt(i) is told the anchor,
// kernel.terms(i, k) gives the terms of item i, which stands k items after the anchor, and
// kernel.finish(i, sums, n, k) writes the result of the window of n items that ends at i and begins k
// items after the anchor.
template <typename Kernel>
int fromSums(Kernel kernel, const Range& r) noexcept {
  constexpr int kTerms = Kernel::kTerms;
  using Sums = std::array<double, kTerms>;
  memory::Buffer<double> scratch = scratchFor(r, kTerms);
  if (!scratch.ok()) return QV_MALLOC;
  double* of[kTerms];
  for (int t = 0; t < kTerms; ++t) of[t] = scratch.data() + static_cast<std::ptrdiff_t>(t) * r.period;
  const auto load = [&of](int j) {
    Sums sums;
    for (int t = 0; t < kTerms; ++t) sums[t] = of[t][j];
    return sums;
  };
  forEachBlock(
      r,
      [&](int left, int results) {
        const int anchor = left + r.period - 1;
        kernel.anchorAt(anchor);
        Sums sums{};
        for (int j = r.period - 1; j >= 0; --j) {
          const Sums terms = kernel.terms(left + j, j - (r.period - 1));
          for (int t = 0; t < kTerms; ++t) of[t][j] = sums[t] += terms[t];
        }
        sums = {};
        for (int j = 1; j < results; ++j) {
          const Sums terms = kernel.terms(anchor + j, j);
          for (int t = 0; t < kTerms; ++t) of[t][j] += sums[t] += terms[t];
        }
        for (int j = 0; j < results; ++j) kernel.finish(anchor + j, load(j), r.period, j - (r.period - 1));
      },
      [&](int results) {
        kernel.anchorAt(r.first);
        Sums sums{};
        for (int j = 0; j < results; ++j) {
          const Sums terms = kernel.terms(r.first + j, j);
          for (int t = 0; t < kTerms; ++t) sums[t] += terms[t];
          kernel.finish(r.first + j, sums, j + 1.0, 0);
        }
      });
  return QV_OK;
}

// Sum of squares about the mean; rounding must not push it below zero.
double aboutMean(double sum, double squares, double n) noexcept {
  const double about = squares - sum * sum / n;
  return 0.0 > about ? 0.0 : about;
}

struct Deviation {
  static constexpr int kTerms = 2;
  const double* x;
  double lost;  // degrees of freedom
  double* out;
  double anchor = 0.0;

  void anchorAt(int i) noexcept { anchor = x[i]; }
  std::array<double, kTerms> terms(int i, int) const noexcept {
    const double d = x[i] - anchor;
    return {d, d * d};
  }
  void finish(int i, const std::array<double, kTerms>& sum, double n, int) const noexcept {
    out[i] = std::sqrt(aboutMean(sum[0], sum[1], n) / (n - lost));
  }
};

struct Covariance {
  static constexpr int kTerms = 3;
  const double *a, *b;
  double* out;
  double anchorA = 0.0, anchorB = 0.0;

  void anchorAt(int i) noexcept {
    anchorA = a[i];
    anchorB = b[i];
  }
  std::array<double, kTerms> terms(int i, int) const noexcept {
    const double da = a[i] - anchorA, db = b[i] - anchorB;
    return {da, db, da * db};
  }
  void finish(int i, const std::array<double, kTerms>& sum, double n, int) const noexcept {
    out[i] = (sum[2] - sum[0] * sum[1] / n) / (n - 1.0);
  }
};

struct Correlation {
  static constexpr int kTerms = 5;
  const double *a, *b;
  double lost;
  double* out;
  double anchorA = 0.0, anchorB = 0.0;

  void anchorAt(int i) noexcept {
    anchorA = a[i];
    anchorB = b[i];
  }
  std::array<double, kTerms> terms(int i, int) const noexcept {
    const double da = a[i] - anchorA, db = b[i] - anchorB;
    return {da, db, da * da, db * db, da * db};
  }
  void finish(int i, const std::array<double, kTerms>& sum, double n, int) const noexcept {
    const double deviations = std::sqrt(aboutMean(sum[0], sum[2], n) / (n - lost)) *
                              std::sqrt(aboutMean(sum[1], sum[3], n) / (n - lost));
    const double covariance = (sum[4] - sum[0] * sum[1] / n) / (n - 1.0);
    out[i] = isNonZero(deviations) ? covariance / deviations : 0.0;
  }
};

struct Line {
  static constexpr int kTerms = 2;
  const double* y;
  double *slope, *intercept;
  double anchor = 0.0;

  void anchorAt(int i) noexcept { anchor = y[i]; }
  std::array<double, kTerms> terms(int i, int k) const noexcept {
    const double d = y[i] - anchor;
    return {d, k * d};
  }
  void finish(int i, const std::array<double, kTerms>& sum, double n, int oldest) const noexcept {
    const double centre = oldest + (n - 1.0) / 2.0;
    // One item has no slope: 0, not 0 / 0.
    const double rise = (sum[1] - centre * sum[0]) / (n > 1.0 ? n * (n * n - 1.0) / 12.0 : 1.0);
    if (slope) slope[i] = rise;
    if (intercept) intercept[i] = anchor + (sum[0] / n - rise * ((n + 1.0) / 2.0));
  }
};

}  // namespace

int deviation(const double* in, Range r, bool sample, double* out) noexcept {
  return fromSums(Deviation{in, sample ? 1.0 : 0.0, out}, r);
}

int covariance(const double* a, const double* b, Range r, double* out) noexcept {
  return fromSums(Covariance{a, b, out}, r);
}

int correlation(const double* a, const double* b, Range r, bool sample, double* out) noexcept {
  return fromSums(Correlation{a, b, sample ? 1.0 : 0.0, out}, r);
}

int regressionLine(const double* in, Range r, double* slope, double* intercept) noexcept {
  return fromSums(Line{in, slope, intercept}, r);
}

}  // namespace qv::window
