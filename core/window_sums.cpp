// Sliding sums and means, the kernels that most is built on. Their blocks are walked forwards, in
// stretches that stay in the first-level cache, so that every access to memory is one that the machine
// foresees; the walk of window_blocks.h takes half as long again on a million bars.
#include <algorithm>

#include "core/memory.h"
#include "core/window.h"
#include "core/window_blocks.h"
#include "qvlib60/abi.h"

namespace qv::window {

namespace {

// Sums of x[0 .. i] added to `before`, for every i; four items cost one addition that waits for the last.
double prefixSums(const double* x, int count, double before, double* sums) noexcept {
  double s = before;
  int i = 0;
  for (; i + 4 <= count; i += 4) {
    const double two = x[i] + x[i + 1], three = two + x[i + 2], four = two + (x[i + 2] + x[i + 3]);
    sums[i] = s + x[i];
    sums[i + 1] = s + two;
    sums[i + 2] = s + three;
    sums[i + 3] = s = s + four;
  }
  for (; i < count; ++i) sums[i] = s = s + x[i];
  return s;
}

// Sums of x[i .. count - 1].
void suffixSums(const double* x, int count, double* sums) noexcept {
  double s = 0.0;
  int i = count;
  for (; i >= 4; i -= 4) {
    const double two = x[i - 1] + x[i - 2], three = two + x[i - 3], four = two + (x[i - 3] + x[i - 4]);
    sums[i - 1] = s + x[i - 1];
    sums[i - 2] = s + two;
    sums[i - 3] = s + three;
    sums[i - 4] = s = s + four;
  }
  for (; i > 0; --i) sums[i - 1] = s = s + x[i - 1];
}

constexpr int kStretch = 512, kLong = 128;

// Many short blocks at a time.
template <typename Result>
void shortWindows(const double* in, const Range& r, double* out, Result result) noexcept {
  const int p = r.period, many = kStretch / p * p;
  double prefix[kStretch], suffixes[kLong + kStretch];
  double* const suffix = suffixes + p;  // the block before the stretch lies below
  suffixSums(in + r.first, p, suffixes);
  out[r.first + p - 1] = result(suffixes[0]);
  for (int at = r.first + p; at < r.end; at += many) {
    const int count = std::min(many, r.end - at), whole = count / p * p;
    const double* x = in + at;
    for (int b = 0; b < whole; b += p) {
      double up = 0.0, down = 0.0;
      for (int j = 0; j < p; ++j) {
        prefix[b + j] = up += x[b + j];
        suffix[b + p - 1 - j] = down += x[b + p - 1 - j];
      }
      prefix[b + p - 1] = 0.0;  // the window that ends with its block is the block's longest suffix
    }
    prefixSums(x + whole, count - whole, 0.0, prefix + whole);
    double* y = out + at;
    const double* rest = suffix + 1 - p;
    for (int i = 0; i < count; ++i) y[i] = result(rest[i] + prefix[i]);
    std::copy(suffix + many - p, suffix + many, suffixes);
  }
}

// A long block in many stretches. `suffix` has room for a block, and for another one when the results
// overwrite the input.
template <typename Result>
void longWindows(const double* in, const Range& r, double* suffix, double* out, Result result) noexcept {
  const int p = r.period;
  double prefix[kLong];
  suffixSums(in + r.first, p, suffix);
  out[r.first + p - 1] = result(suffix[0]);
  for (int at = r.first + p; at < r.end; at += p) {
    const int count = std::min(p - 1, r.end - at);  // the last window of a block is its longest suffix
    const bool whole = r.end - at >= p;
    const double* block = in + at;
    if (whole && in == out) block = std::copy(block, block + p, suffix + p) - p;
    double s = 0.0;
    for (int b = 0; b < count; b += kLong) {
      const int some = std::min(kLong, count - b);
      s = prefixSums(block + b, some, s, prefix);
      double* y = out + at + b;
      const double* rest = suffix + 1 + b;
      for (int i = 0; i < some; ++i) y[i] = result(rest[i] + prefix[i]);
    }
    if (!whole) break;
    suffixSums(block, p, suffix);
    out[at + p - 1] = result(suffix[0]);
  }
}

// `result` makes the value of a window out of its sum and the number of its items.
template <typename Result>
int slide(const double* in, const Range& r, double* out, Result result) noexcept {
  const int count = itemsOf(r);
  const auto ofPeriod = [&](double sum) { return result(sum, r.period); };
  if (count >= r.period && r.period >= kLong) {
    const std::size_t blocks = in == out ? 2 : 1;
    memory::Buffer<double> suffix(blocks * static_cast<std::size_t>(r.period));
    if (!suffix.ok()) return QV_MALLOC;
    longWindows(in, r, suffix.data(), out, ofPeriod);
  } else if (count > 0 && count >= r.period) {
    shortWindows(in, r, out, ofPeriod);
  }
  if (!r.cut) return QV_OK;
  double s = 0.0;
  for (int j = 0; j < std::min(r.period - 1, count); ++j) {
    s += in[r.first + j];
    out[r.first + j] = result(s, j + 1);
  }
  return QV_OK;
}

}  // namespace

int sum(const double* in, Range r, double* out) noexcept {
  return slide(in, r, out, [](double sum, int) { return sum; });
}

int mean(const double* in, Range r, double* out) noexcept {
  return slide(in, r, out, [](double sum, int items) { return sum / items; });
}

}  // namespace qv::window
