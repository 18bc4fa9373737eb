// Sliding weighted sums and extremes.
#include "kernels/window.h"

#include "kernels/window_blocks.h"
#include "kernels/window_extremes.h"

namespace qv::window {

namespace {

template <typename Order>
struct Numbers {
  static constexpr bool kSeveralSteps = false;
  const double* x;

  double start(int i) const noexcept { return x[i]; }
  double counted(int i) const noexcept { return Order::numberOf(x[i]); }
};

struct NonZeroNumbers : Numbers<Lowest> {
  static constexpr bool kSeveralSteps = true;
  double counted(int i) const noexcept { return Lowest::numberOf(x[i] == 0.0 ? Lowest::kNone : x[i]); }
};

// The earliest of equal items: going towards the start an equal item replaces, going towards the end
// only a better one does. The position of a window's first item is kept when that is not-a-number.
template <typename Order>
struct Position {
  static constexpr int kSuffixRows = 2, kPrefixRows = 2;  // values and positions
  static constexpr double kNone = Order::kNone;
  const double* x;
  int* out;

  static bool better(double a, double than) noexcept { return Order::reaches(a, than) && a != than; }
  void load(int, int, Rows) const noexcept {}
  void anchorAt(int) const noexcept {}
  void suffixes(int i, int n, Rows rows) const noexcept {
    double* __restrict values = rows[0], * __restrict positions = rows[1];
    double extreme = kNone;
    int position = i;
    for (int j = n - 1; j >= 0; --j) {
      const double v = x[i + j];
      position = Order::reaches(v, extreme) ? i + j : position;
      extreme = Order::of(extreme, Order::numberOf(v));
      values[j] = v == v ? extreme : v;
      positions[j] = v == v ? position : i + j;
    }
  }
  void prefixes(int i, int n, Rows rows) const noexcept {
    double* __restrict values = rows[0], * __restrict positions = rows[1];
    double extreme = kNone;
    int position = i;
    for (int j = 0; j < n; ++j) {
      const double v = x[i + j];
      position = better(v, extreme) ? i + j : position;
      extreme = Order::of(extreme, Order::numberOf(v));
      values[j] = extreme;
      positions[j] = position;
    }
  }
  void finish(int i, int n, Rows suffix, Rows prefix) const noexcept {
    const double* __restrict s = suffix[0], * __restrict t = prefix[0];
    const double* __restrict ofSuffix = suffix[1], * __restrict ofPrefix = prefix[1];
    for (int j = 0; j < n; ++j) out[i + j] = static_cast<int>(better(t[j], s[j]) ? ofPrefix[j] : ofSuffix[j]);
  }
  void finishCut(int i, int n, Rows prefix) const noexcept {
    for (int j = 0; j < n; ++j) out[i + j] = better(prefix[0][j], x[i]) ? static_cast<int>(prefix[1][j]) : i;
  }
};

struct WeightedSum {
  static constexpr int kSuffixRows = 1, kPrefixRows = 1;
  static constexpr double kNone = 0.0;
  const double* x;
  int period;
  double* out;

  void load(int, int, Rows) const noexcept {}
  void anchorAt(int) const noexcept {}
  // One item more towards the start raises every weight by one: the plain sum is added.
  void suffixes(int i, int n, Rows rows) const noexcept {
    double* __restrict suffix = rows[0];
    double plain = 0.0, weighted = 0.0;
    for (int j = n - 1; j >= 0; --j) suffix[j] = weighted += plain += x[i + j];
  }
  // The next block's items weigh 1, 2, ... and all of them more by the number of items before them.
  void prefixes(int i, int n, Rows rows) const noexcept {
    double* __restrict prefix = rows[0];
    double plain = 0.0, weighted = 0.0;
    for (int j = 0; j < n; ++j) {
      plain += x[i + j];
      weighted += (j + 1) * x[i + j];
      prefix[j] = weighted + (period - 1 - j) * plain;
    }
  }
  void finish(int i, int n, Rows suffix, Rows prefix) const noexcept {
    const double* __restrict s = suffix[0], * __restrict t = prefix[0];
    for (int j = 0; j < n; ++j) out[i + j] = s[j] + t[j];
  }
  void finishCut(int i, int n, Rows) const noexcept {
    double weighted = 0.0;
    for (int j = 0; j < n; ++j) out[i + j] = weighted += (j + 1) * x[i + j];
  }
};

}  // namespace

int weightedSum(const double* in, Range r, double* out) noexcept {
  return slide(WeightedSum{in, r.period, out}, r);
}

int maximum(const double* in, Range r, double* out) noexcept {
  return slidingExtreme<Highest>(Numbers<Highest>{in}, r, out);
}

int minimum(const double* in, Range r, double* out, bool skipZeros) noexcept {
  return skipZeros ? slidingExtreme<Lowest>(NonZeroNumbers{{in}}, r, out)
                   : slidingExtreme<Lowest>(Numbers<Lowest>{in}, r, out);
}

int maximumPosition(const double* in, Range r, int* out) noexcept {
  return slide(Position<Highest>{in, out}, r);
}

int minimumPosition(const double* in, Range r, int* out) noexcept {
  return slide(Position<Lowest>{in, out}, r);
}

}  // namespace qv::window
