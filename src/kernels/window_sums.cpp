// Sliding sums and means, the kernels that most is built on. Their blocks are walked forwards, in
// stretches that stay in the first-level cache, so that every access to memory is one that the machine
// foresees; the walk of window_blocks.h takes half as long again on a million bars.
#include <algorithm>

#include "core/memory.h"
#include "kernels/running_sums.h"
#include "kernels/window.h"
#include "kernels/window_blocks.h"
#include "qvlib60/abi.h"

namespace qv::window {

namespace {

constexpr int kStretch = 256, kLong = 64;

int partsOf(int period) noexcept {
  return (period - 1) / kLong + 1;
}

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

// Sums of the parts of kLong items of a block: their own, then, put in place of these, those of all
// parts that follow.
void sumsOfWhatFollows(double* parts, int count) noexcept {
  double s = 0.0;
  for (int k = count - 1; k >= 0; --k) {
    const double own = parts[k];
    parts[k] = s;
    s += own;
  }
}

// Long blocks part by part. A window's suffix of the block before is made of the rest of a part and of
// what follows that part, so that only parts are ever kept: `parts`, and where the results overwrite the
// input also the block before, `kept`.
template <typename Result>
void longWindows(const double* in, const Range& r, double* parts, double* kept, double* out,
                 Result result) noexcept {
  const int p = r.period, count = partsOf(p);
  double prefix[kLong], suffix[kLong + 1];
  double whole = 0.0;
  for (int k = 0; k < count; ++k) {
    const int items = std::min(kLong, p - k * kLong);
    whole += parts[k] = prefixSums(in + r.first + k * kLong, items, 0.0, prefix);
  }
  sumsOfWhatFollows(parts, count);
  if (kept) std::copy_n(in + r.first, p, kept);
  out[r.first + p - 1] = result(whole);
  for (int at = r.first + p; at < r.end; at += p) {
    double before = 0.0;  // the sum of the parts of this block that have been dealt with
    for (int k = 0, b = 0; k < count && at + b < r.end; ++k, b += kLong) {
      const int items = std::min(kLong, p - b), here = std::min(items, r.end - at - b);
      double* left = kept ? kept + b : nullptr;
      suffixSums(kept ? left : in + at - p + b, items, suffix);
      suffix[items] = 0.0;
      const double own = prefixSums(in + at + b, here, 0.0, prefix), after = parts[k];
      if (kept) std::copy_n(in + at + b, here, left);
      double* y = out + at + b;
      for (int i = 0; i < here; ++i) y[i] = result((suffix[i + 1] + after) + (before + prefix[i]));
      parts[k] = own;
      before += own;
    }
    if (r.end - at <= p) break;
    sumsOfWhatFollows(parts, count);
  }
}

// `result` makes the value of a window out of its sum and the number of its items.
template <typename Result>
int slide(const double* in, const Range& r, double* out, Result result) noexcept {
  const int count = itemsOf(r);
  const auto ofPeriod = [&](double sum) { return result(sum, r.period); };
  if (count >= r.period && r.period >= kLong) {
    const int parts = partsOf(r.period);
    memory::Buffer<double> scratch(static_cast<std::size_t>(parts) +
                                   static_cast<std::size_t>(in == out ? r.period : 0));
    if (!scratch.ok()) return QV_MALLOC;
    longWindows(in, r, scratch.data(), in == out ? scratch.data() + parts : nullptr, out, ofPeriod);
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
