// The sliding-window kernels that every moving calculation stands on.
//
// One call computes a whole output range. The cost per bar depends neither on the period nor on the
// shape of the data: the series is cut into blocks of one period, every window is a suffix of one
// block plus a prefix of the next, and the running results of both are combined. Nothing is ever
// subtracted from history, so the error is bounded by the window itself, and a huge or not-a-number
// item is forgotten once the window has passed it. Blocks are aligned to `first`.
//
// Every kernel returns 0, or -3 when its scratch memory (a few running results for each item of two
// blocks, or of some 512 items where blocks are shorter) can't be had; then nothing is written. `out` may
// be the input itself.
#pragma once

namespace qv::window {

// The windows of `period` items that end at first + period - 1 .. end - 1; result i belongs to the
// window that ends at i. With `cut`, results begin at `first`, over the items that exist: the
// windows that would begin before `first` begin there. Other items of the output are not touched.
struct Range {
  int first;   // index of the first item that takes part, >= 0
  int end;     // one past the last item
  int period;  // >= 1
  bool cut = false;
};

// A mean is the sum divided by the number of items.
int sum(const double* in, Range r, double* out) noexcept;
int mean(const double* in, Range r, double* out) noexcept;

// Weights 1 (oldest) .. period (newest).
int weightedSum(const double* in, Range r, double* out) noexcept;

// Exact extremes as the stretch statistics find them: they start at the window's first item, a later
// item replaces the extreme when it is at least as extreme (the last of equal items is kept), and a
// not-a-number compares false (it stays when it is the first item, and is passed over elsewhere).
// With skipZeros zeros other than the window's first item are passed over by the minimum.
int maximum(const double* in, Range r, double* out) noexcept;
int minimum(const double* in, Range r, double* out, bool skipZeros = false) noexcept;

// Positions of the extremes; the earliest of equal items.
int maximumPosition(const double* in, Range r, int* out) noexcept;
int minimumPosition(const double* in, Range r, int* out) noexcept;

// Square root of the mean squared distance from the window's mean; divided by period - 1 when
// `sample`. Exactly 0 for a window of equal items.
int deviation(const double* in, Range r, bool sample, double* out) noexcept;

// Sum of products of the distances from the means, divided by period - 1.
int covariance(const double* a, const double* b, Range r, double* out) noexcept;

// Covariance divided by the product of both deviations (which follow `sample`, unlike the
// covariance); 0.0 where that product is zero or not a number.
int correlation(const double* a, const double* b, Range r, bool sample, double* out) noexcept;

// Least-squares line through (1, oldest) .. (period, newest). Either output may be null.
int regressionLine(const double* in, Range r, double* slope, double* intercept) noexcept;

// Standard error of estimate of that line, 0.0 where its variance is not above zero.
int standardError(const double* in, Range r, double* out) noexcept;

}  // namespace qv::window
