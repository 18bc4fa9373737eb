// Sums and averages over a window.
#pragma once

#include "kernels/past.h"
#include "kernels/sliding.h"

namespace qv {

// Statistics that add up their terms. What windows of fours take beside (short_windows.h): kAnchorCounts,
// whether the anchor itself has terms; moved(rows, from, to, k), the rows of four items about `from`, the
// last of them, that stands at k, as they are about `to`, that stands at 0.
struct Adding {
  static constexpr double kNone = 0.0;
  static constexpr bool kCountsOnce = true;
  static constexpr int kShortWindow = 8;

  template <typename Rows>
  static QV_INLINE Rows join(const Rows& a, const Rows& b) noexcept {
    Rows sum;
    for (std::size_t r = 0; r < a.size(); ++r) sum[r] = a[r] + b[r];
    return sum;
  }
  template <typename Rows>
  static QV_INLINE Rows combine(const Rows& suffix, const Rows& prefix) noexcept {
    return join(suffix, prefix);
  }
  template <typename Rows>
  static QV_INLINE const Rows& numbers(const Rows& terms) noexcept {
    return terms;
  }
  template <typename Rows>
  static QV_INLINE const Rows& begunWith(const Rows&, const Rows& rows) noexcept {
    return rows;
  }
};

// The same with the rounding errors summed beside, a second row for each. Where the anchor stands apart from
// the rest of its window, the squares about the mean are a p-th of those about the anchor, and the errors of
// p plain additions would show p times over. Sums that overflow stay as they are: their error is no number.
template <typename Statistic>
struct CorrectedSums : Adding {
  static constexpr int kTerms = Statistic::kRows;
  static constexpr int kInputs = Statistic::kInputs, kRows = 2 * kTerms, kOutputs = Statistic::kOutputs;
  Statistic plain;

  explicit CorrectedSums(const Statistic& statistic) noexcept : plain(statistic) {}
  template <typename Items, typename Number>
  QV_INLINE Group<Number, kRows> terms(const Items& x, const Items& anchors, Number k) const noexcept {
    Group<Number, kRows> rows{};
    const auto terms = plain.terms(x, anchors, k);
    for (int t = 0; t < kTerms; ++t) rows[t] = terms[t];
    return rows;
  }
  template <typename Rows>
  static QV_INLINE Rows join(const Rows& a, const Rows& b) noexcept {
    Rows rows;
    for (int t = 0; t < kTerms; ++t) {
      const auto sum = a[t] + b[t], taken = sum - a[t];
      rows[t] = sum;
      rows[kTerms + t] = (a[kTerms + t] + b[kTerms + t]) + ((a[t] - (sum - taken)) + (b[t] - taken));
    }
    return rows;
  }
  template <typename Rows>
  static QV_INLINE Rows combine(const Rows& suffix, const Rows& prefix) noexcept {
    return join(suffix, prefix);
  }
  template <typename Number, typename Items>
  QV_INLINE auto finish(const Group<Number, kRows>& rows, const Items& anchors, Number k,
                        const Items& x) const noexcept {
    Group<Number, kTerms> sums;
    for (int t = 0; t < kTerms; ++t) {
      const Number error = rows[kTerms + t];
      sums[t] = magnitude(error) < all<Number>(kInfinity) ? rows[t] + error : rows[t];
    }
    return plain.finish(sums, anchors, k, x);
  }
};

// Statistics that add up the items as they are.
template <int kSeries>
struct AddingItems : Adding {
  static constexpr int kShortWindow = 32;
  static constexpr bool kAnchorCounts = true;
  static constexpr int kInputs = kSeries, kRows = kSeries;

  template <typename Items, typename Number>
  static QV_INLINE Items terms(const Items& x, const Items&, Number) noexcept {
    return x;
  }
  template <typename Rows, typename Items, typename Number>
  static QV_INLINE const Rows& moved(const Rows& rows, const Items&, const Items&, Number) noexcept {
    return rows;
  }
};

// The sums of one or several series.
template <int kSeries>
struct Sums : AddingItems<kSeries> {
  using Corrected = CorrectedSums<Sums>;
  static constexpr int kOutputs = kSeries;

  template <typename Rows, typename Items, typename Number>
  QV_INLINE Rows finish(const Rows& sums, const Items&, Number, const Items&) const noexcept {
    return sums;
  }
};

// Their means. Of equal items exactly these: the sums are of distances from the anchor.
template <int kSeries>
struct Means : Adding {
  using Corrected = CorrectedSums<Means>;
  static constexpr int kShortWindow = 20;
  static constexpr bool kAnchorCounts = false;
  static constexpr int kInputs = kSeries, kRows = kSeries, kOutputs = kSeries;
  double perItem;

  explicit Means(int period) noexcept : perItem(1.0 / period) {}
  template <typename Items, typename Number>
  QV_INLINE Items terms(const Items& x, const Items& anchors, Number) const noexcept {
    Items distances;
    for (std::size_t s = 0; s < x.size(); ++s) distances[s] = x[s] - anchors[s];
    return distances;
  }
  template <typename Rows, typename Items, typename Number>
  static QV_INLINE Rows moved(const Rows& rows, const Items& from, const Items& to, Number) noexcept {
    Rows sums;
    for (std::size_t s = 0; s < rows.size(); ++s) sums[s] = rows[s] + (from[s] - to[s]) * 4.0;
    return sums;
  }
  template <typename Rows, typename Items, typename Number>
  QV_INLINE Rows finish(const Rows& sums, const Items& anchors, Number, const Items&) const noexcept {
    Rows means;
    for (std::size_t s = 0; s < sums.size(); ++s) means[s] = anchors[s] + sums[s] * perItem;
    return means;
  }
};

// Of distances from the anchor, plain and times the number of items that the anchor is away.
struct Distances : Adding {
  static constexpr int kShortWindow = 20;
  static constexpr bool kAnchorCounts = false;
  static constexpr int kInputs = 1, kRows = 2;

  template <typename Items, typename Number>
  QV_INLINE Group<Number, 2> terms(const Items& x, const Items& anchors, Number k) const noexcept {
    const Number distance = x[0] - anchors[0];
    return {distance, distance * k};
  }
  template <typename Items, typename Number>
  QV_INLINE Group<Number, 2> moved(const Group<Number, 2>& rows, const Items& from, const Items& to,
                                   Number k) const noexcept {
    const Number way = from[0] - to[0], sum = rows[0] + way * 4.0;
    return {sum, rows[1] - way * 6.0 + sum * k};
  }
};

// Weights 1 (oldest) .. p (newest): in the window that ends at k the item at j weighs j - k + p.
struct WeightedMean : Distances {
  using Corrected = CorrectedSums<WeightedMean>;
  static constexpr int kOutputs = 1;
  double items, perWeight;

  explicit WeightedMean(double period) noexcept : items(period), perWeight(2.0 / (period * (period + 1.0))) {}
  template <typename Number, typename Items>
  QV_INLINE Group<Number, 1> finish(const Group<Number, 2>& sums, const Items& anchors, Number k,
                                    const Items&) const noexcept {
    return {anchors[0] + (sums[1] - (k - items) * sums[0]) * perWeight};
  }
};

// The mean of the first series weighed by the second; 0.0 where the weights add up to nothing.
struct MeanByWeight : Adding {
  static constexpr int kShortWindow = 20;
  static constexpr bool kAnchorCounts = true;
  static constexpr int kInputs = 2, kRows = 2, kOutputs = 1;

  template <typename Items, typename Number>
  QV_INLINE Group<Number, 2> terms(const Items& x, const Items& anchors, Number) const noexcept {
    return {(x[0] - anchors[0]) * x[1], x[1]};
  }
  template <typename Rows, typename Items, typename Number>
  static QV_INLINE Rows moved(const Rows& rows, const Items& from, const Items& to, Number) noexcept {
    return {rows[0] + (from[0] - to[0]) * rows[1], rows[1]};
  }
  template <typename Number, typename Items>
  QV_INLINE Group<Number, 1> finish(const Group<Number, 2>& sums, const Items& anchors, Number,
                                    const Items&) const noexcept {
    const Number mean = anchors[0] + sums[0] / sums[1], none = all<Number>(0.0);
    return {sums[1] == none ? none : mean};
  }
};

// The sum of the first series over that of the second, times `scale`; 0.0 where the second adds up to
// nothing.
struct RatioOfSums : AddingItems<2> {
  static constexpr int kOutputs = 1;
  double scale;

  RatioOfSums(double times = 1.0) noexcept : scale(times) {}
  template <typename Number, typename Items>
  QV_INLINE Group<Number, 1> finish(const Group<Number, 2>& sums, const Items&, Number,
                                    const Items&) const noexcept {
    const Number ratio = sums[0] * scale / sums[1], none = all<Number>(0.0);
    return {sums[1] == none ? none : ratio};
  }
};

// The sums (kMeans: means) of windows twice as long as those that it takes, out of what stands now and a
// window before, in pieces of up to a tile. `skip` items come before the first window.
template <bool kMeans>
class OfHalves {
 public:
  static constexpr int kInputs = 1, kOutputs = 1;

  explicit OfHalves(int half, int skip = 0) noexcept
      : half_(half),
        kept_(half),
        lead_(saturatingSum(saturatingSum(half, half - 1), skip)),
        missing_(lead_) {}
  // Whether windows of `longer` items are twice as long as those of `half`.
  static constexpr bool fits(int half, int longer) noexcept { return longer % 2 == 0 && longer / 2 == half; }
  bool ok() const noexcept { return kept_.ok(); }
  int lead() const noexcept { return lead_; }
  void run(Inputs<1> in, int count, Outputs<1> out) noexcept {
    const double* x = kept_.with(in[0], count);
    const int none = ok() ? missing_.pass(count) : count;
    std::fill_n(out[0], none, 0.0);
    if (none == count) return;
    x += none;
    map(
        count - none, out[0] + none,
        [](double now, double before) { return kMeans ? now + (before - now) * 0.5 : now + before; }, x,
        x - half_);
  }
  template <typename V>
  void fields(V& v) noexcept {
    v(kept_, missing_);
    v.require(saturatingSum(kept_.held(), missing_.left()) >= half_);
  }

 private:
  int half_;
  Past kept_;
  int lead_;
  Lead missing_;
};

}  // namespace qv
