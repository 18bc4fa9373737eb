// Sliding weighted sums and extremes.
#include "core/window.h"

#include "core/window_blocks.h"
#include "core/window_extremes.h"

namespace qv::window {

namespace {

template <typename Order>
struct Values {
  const double* x;
  bool skipZeros;

  double start(int i) const noexcept { return x[i]; }
  double counted(int i) const noexcept {
    const double v = x[i];
    return v != v || (skipZeros && v == 0.0) ? Order::kNone : v;
  }
};

// The earliest of equal items: going towards the start an equal item replaces, going towards the end
// only a better one does. The position of a window's first item is kept when that is not-a-number.
template <typename Order>
int slidingPosition(const double* in, const Range& r, int* out) noexcept {
  const auto better = [](double x, double than) { return Order::reaches(x, than) && x != than; };
  struct Extreme {
    double value;
    int position;
  };
  memory::Buffer<Extreme> scratch(static_cast<std::size_t>(std::min(r.period, itemsOf(r))));
  if (!scratch.ok()) return QV_MALLOC;
  Extreme* suffix = scratch.data();
  forEachBlock(
      r,
      [&](int left, int results) {
        Extreme extreme{Order::kNone, left};
        for (int j = r.period - 1; j >= 0; --j) {
          const double x = in[left + j];
          if (Order::reaches(x, extreme.value)) extreme = {x, left + j};
          suffix[j] = x == x ? extreme : Extreme{x, left + j};
        }
        const int end = left + r.period - 1;
        out[end] = suffix[0].position;
        extreme = {Order::kNone, end};
        for (int j = 1; j < results; ++j) {
          const double x = in[end + j];
          if (better(x, extreme.value)) extreme = {x, end + j};
          out[end + j] = better(extreme.value, suffix[j].value) ? extreme.position : suffix[j].position;
        }
      },
      [&](int results) {
        Extreme extreme{in[r.first], r.first};
        for (int i = r.first; i < r.first + results; ++i) {
          if (better(in[i], extreme.value)) extreme = {in[i], i};
          out[i] = extreme.position;
        }
      });
  return QV_OK;
}

}  // namespace

int weightedSum(const double* in, Range r, double* out) noexcept {
  memory::Buffer<double> scratch = scratchFor(r);
  if (!scratch.ok()) return QV_MALLOC;
  double* suffix = scratch.data();
  forEachBlock(
      r,
      [&](int left, int results) {
        // One item more towards the start raises every weight by one: the plain sum is added.
        double plain = 0.0, weighted = 0.0;
        for (int j = r.period - 1; j >= 0; --j) suffix[j] = weighted += plain += in[left + j];
        const int end = left + r.period - 1;
        out[end] = suffix[0];
        // The next block's items weigh 1, 2, ... and all of them period - j more.
        plain = weighted = 0.0;
        for (int j = 1; j < results; ++j) {
          const double x = in[end + j];
          plain += x;
          weighted += j * x;
          out[end + j] = suffix[j] + (weighted + (r.period - j) * plain);
        }
      },
      [&](int results) {
        double weighted = 0.0;
        for (int j = 0; j < results; ++j) {
          weighted += (j + 1) * in[r.first + j];
          out[r.first + j] = weighted;
        }
      });
  return QV_OK;
}

int maximum(const double* in, Range r, double* out) noexcept {
  return slidingExtreme<Highest>(Values<Highest>{in, false}, r, out);
}

int minimum(const double* in, Range r, double* out, bool skipZeros) noexcept {
  return slidingExtreme<Lowest>(Values<Lowest>{in, skipZeros}, r, out);
}

int maximumPosition(const double* in, Range r, int* out) noexcept {
  return slidingPosition<Highest>(in, r, out);
}

int minimumPosition(const double* in, Range r, int* out) noexcept {
  return slidingPosition<Lowest>(in, r, out);
}

}  // namespace qv::window
