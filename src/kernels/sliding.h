// Statistics of the last `period` items, as stages.
//
// The series is cut into blocks of about one period. A window is the end of one block and the beginning of
// the next: the running results of both are kept and combined. Nothing is ever subtracted from history, so
// the error is bounded by the window itself, what a wild item did ends with the last window that holds it,
// and the cost per bar depends neither on the period nor on the data. Results may be relative to an anchor,
// the first item of the block that the window ends in, which every such window contains.
//
// Two neighbouring bars are worked on side by side. Blocks have an even number of items, one period or one
// less, so that none is ever single but at the edge of a piece. Both passes look one pair ahead: the result
// at j is that at j - 2 joined with the pair j - 1, j.
#pragma once

#include <span>

#include "kernels/tiles.h"

namespace qv {

template <typename Number, int kCount>
using Group = std::array<Number, static_cast<std::size_t>(kCount)>;

// Up to this many items every window is taken by itself, relative to its last item.
inline constexpr int kShortWindow = 8;
// Up to this many items plain sums keep well within 1e-10, whatever the data.
inline constexpr int kPlainItems = 4096;

template <std::size_t kCount>
QV_INLINE std::array<Two, kCount> oneBack(const std::array<Two, kCount>& a,
                                          const std::array<Two, kCount>& b) noexcept {
  std::array<Two, kCount> back;
  for (std::size_t r = 0; r < kCount; ++r) back[r] = oneBack(a[r], b[r]);
  return back;
}
template <std::size_t kCount>
QV_INLINE std::array<Two, kCount> twice(const std::array<Two, kCount>& a, int lane) noexcept {
  std::array<Two, kCount> both;
  for (std::size_t r = 0; r < kCount; ++r) both[r] = twice(a[r][lane]);
  return both;
}
template <std::size_t kCount>
QV_INLINE std::array<Two, kCount> noneOf(double none) noexcept {
  std::array<Two, kCount> rows;
  rows.fill(twice(none));
  return rows;
}

// A statistic gives, for a Number that is a double or two of them,
//   kInputs, kRows, kOutputs     series taken, running results kept, results written
//   terms(x, anchors, k)         of items x; k counts from the anchor, below 0 before it
//   join(earlier, later), kNone  the operation on running results and its neutral item
//   finish(rows, anchors, k, x)  the results of the window that ends at k with the items x
// and what extremes need beside: numbers(terms), terms without what does not count; begunWith(first, rows)
// for a window that begins with these terms; combine(suffix, prefix) (see Adding, where they do nothing).
// Statistic::Corrected, where there is one, takes its place for long windows; it keeps more rows.
template <typename Statistic>
class Sliding {
 public:
  static constexpr int kInputs = Statistic::kInputs, kOutputs = Statistic::kOutputs;
  static constexpr bool kWhole = true;  // see calculate.h
  using In = Inputs<kInputs>;
  using Out = Outputs<kOutputs>;

  explicit Sliding(int period, const Statistic& statistic = {}) noexcept
      : of_(statistic), period_(period), length_(period & ~1), place_(length_), missing_(period - 1) {}

  // False once memory could not be had.
  bool ok() const noexcept { return !failed_ && (room_ == 0 || scratch_.ok()); }
  int lead() const noexcept { return period_ - 1; }
  // The items so far, while fewer than a period.
  std::span<const double> itemsSoFar(int input = 0) const noexcept {
    const auto items = static_cast<std::size_t>(period_ - 1 - missing_);
    if (period_ <= kShortWindow) return {past_[input] + (period_ - 1) - items, items};
    return {scratch_.data() + std::ptrdiff_t{kMostRows + input} * room_, items};
  }

  [[gnu::noinline]] void run(In in, int count, Out out) noexcept {
    if (!ok()) missing_ = period_;
    const int incomplete = ok() ? std::min(missing_, count) : count;
    if (ok()) {
      if (period_ <= kShortWindow)
        runShort(in, count, out);
      else if constexpr (kCorrects) {
        period_ > kPlainItems ? runBlocks(Corrected(of_), in, count, out) : runBlocks(of_, in, count, out);
      } else
        runBlocks(of_, in, count, out);
    }
    for (double* y : out) std::fill_n(y, failed_ ? count : incomplete, 0.0);
    missing_ -= std::min(missing_, incomplete);
  }

 private:
  static constexpr bool kCorrects = requires { typename Statistic::Corrected; };
  template <typename S, bool kHas>
  struct LongOf {
    using Type = S;
  };
  template <typename S>
  struct LongOf<S, true> {
    using Type = typename S::Corrected;
  };
  using Corrected = typename LongOf<Statistic, kCorrects>::Type;
  static constexpr int kMostRows = Corrected::kRows;

  // ---- short windows

  // Windows that end at x[0] .. x[count - 1]; the items before them can be read.
  template <int kPeriod>
  QV_INLINE void windows(const In& x, int count, const Out& out) noexcept {
    const Statistic of = of_;
    each(count, [=](int i) QV_LAMBDA {
      Group<double, kInputs> anchors, item;
      for (int s = 0; s < kInputs; ++s) anchors[s] = x[s][i];
      Group<double, Statistic::kRows> rows;
      rows.fill(Statistic::kNone);
      for (int s = 0; s < kInputs; ++s) item[s] = x[s][i - (kPeriod - 1)];
      const auto first = of.terms(item, anchors, 1.0 - kPeriod);
      rows = of.join(rows, of.numbers(first));
#pragma GCC unroll 8
      for (int j = kPeriod - 2; j >= 0; --j) {
        for (int s = 0; s < kInputs; ++s) item[s] = x[s][i - j];
        rows = of.join(rows, of.numbers(of.terms(item, anchors, static_cast<double>(-j))));
      }
      rows = of.begunWith(first, rows);
      const auto y = of.finish(rows, anchors, 0.0, anchors);
      for (int o = 0; o < kOutputs; ++o) out[o][i] = y[o];
    });
  }
  // out of line, so that each period has its own registers
  template <int kPeriod>
  [[gnu::noinline]] void shortWindows(In in, int count, Out out) noexcept {
    constexpr int kPast = kPeriod - 1;
    // Windows that reach back before the piece.
    const int joint = std::min(kPast, count);
    double seam[kInputs][2 * kShortWindow];
    In x;
    for (int s = 0; s < kInputs; ++s) {
      std::copy_n(past_[s], kPast, seam[s]);
      std::copy_n(in[s], joint, seam[s] + kPast);
      x[s] = seam[s] + kPast;
    }
    windows<kPeriod>(x, joint, out);
    for (int s = 0; s < kInputs; ++s)
      std::copy_n(count >= kPast ? in[s] + count - kPast : seam[s] + count, kPast, past_[s]);
    windows<kPeriod>(advanced(in, joint), count - joint, advanced(out, joint));
  }
  void runShort(const In& in, int count, const Out& out) noexcept {
    switch (period_) {
      case 1:
        return shortWindows<1>(in, count, out);
      case 2:
        return shortWindows<2>(in, count, out);
      case 3:
        return shortWindows<3>(in, count, out);
      case 4:
        return shortWindows<4>(in, count, out);
      case 5:
        return shortWindows<5>(in, count, out);
      case 6:
        return shortWindows<6>(in, count, out);
      case 7:
        return shortWindows<7>(in, count, out);
      default:
        return shortWindows<8>(in, count, out);
    }
  }

  // ---- blocks

  double* suffix(int row) noexcept {
    return scratch_.data() + std::ptrdiff_t{row} * room_;
  }
  double* kept(int input) noexcept {
    return scratch_.data() + std::ptrdiff_t{kMostRows + input} * room_;
  }

  // Room for so many items of a block. It grows with the first block only: a period may be longer than any
  // series.
  bool makeRoom(int items) noexcept {
    if (items <= room_) return true;
    const int room = room_ < length_ / 2 ? std::max(2 * room_, items) : length_;
    memory::Buffer<double> grown(static_cast<std::size_t>(room) * (kMostRows + kInputs));
    failed_ = !grown.ok();
    if (failed_) return false;
    for (int s = 0; s < kInputs && room_ > 0; ++s)
      std::copy_n(kept(s), room_, grown.data() + std::ptrdiff_t{kMostRows + s} * room);
    std::fill_n(grown.data(), std::ptrdiff_t{kMostRows} * room, Statistic::kNone);
    scratch_ = std::move(grown);
    room_ = room;
    return true;
  }

  // Out of line: side by side two kinds of sums take each other's registers.
  template <typename Of>
  [[gnu::noinline]] void runBlocks(const Of of, In in, int count, Out out) noexcept {
    In block{};
    bool inPiece = false;  // the block before lies in the piece
    while (count > 0) {
      if (place_ == length_) {
        if (begun_ && !makeRoom(length_)) return;
        for (int s = 0; s < kInputs && !inPiece; ++s) block[s] = kept(s);
        beginBlock(of, block, in);
      }
      const int items = std::min(count, length_ - place_);
      if (!makeRoom(place_ + items)) return;
      if (missing_ > 0 && place_ + items == period_) lastSuffix(of);
      inPiece = items == length_;
      for (int s = 0; s < kInputs; ++s) {
        block[s] = inPiece ? in[s] : kept(s);
        if (!inPiece) std::copy_n(in[s], items, kept(s) + place_);
      }
      prefixes(of, in, items, out);
      in = advanced(in, items);
      out = advanced(out, items);
      count -= items;
    }
    for (int s = 0; s < kInputs && inPiece; ++s) std::copy_n(block[s], length_, kept(s));
  }
  template <typename Of>
  QV_INLINE void beginBlock(const Of& of, const In& block, const In& in) noexcept {
    for (int s = 0; s < kInputs; ++s) anchors_[s] = twice(in[s][0]);
    if (begun_) {
      if (period_ == length_)
        suffixes<false>(of, block);
      else
        suffixes<true>(of, block);
    }
    begun_ = true;
    place_ = 0;
    result_ = last_ = noneOf<kMostRows>(Statistic::kNone);
  }
  // Of the block before the anchor: what the window that ends at j has of it, its items j + 1 .. (kOwn: j
  // ..).
  template <bool kOwn, typename Of>
  QV_INLINE void suffixes(const Of& ofThis, const In& block) noexcept {
    constexpr int kRows = Of::kRows;
    const Of of = ofThis;
    const Group<Two, kInputs> anchors = anchors_;
    auto result = noneOf<kRows>(Statistic::kNone), next = result;
    Two k = Two{-2.0, -1.0};
    for (int j = length_ - 2; j >= 0; j -= 2) {
      Group<Two, kInputs> x;
      for (int s = 0; s < kInputs; ++s) x[s] = loadTwo(block[s] + j);
      const Group<Two, kRows> terms = of.terms(x, anchors, k);
      const Group<Two, kRows> shifted = oneBack(terms, next);
      const Group<Two, kRows>&first = kOwn ? terms : shifted, &second = kOwn ? shifted : next;
      result = of.join(of.join(of.numbers(first), of.numbers(second)), result);
      const Group<Two, kRows> whole = of.begunWith(first, result);
      for (int r = 0; r < kRows; ++r) storeTwo(suffix(r) + j, whole[r]);
      next = terms;
      k = k - twice(2.0);
    }
    if (!kOwn) lastSuffix(of);
  }
  // Of the window that is the whole block: nothing but that it begins with the anchor.
  template <typename Of>
  QV_INLINE void lastSuffix(const Of& of) noexcept {
    const auto none = noneOf<Of::kRows>(Statistic::kNone);
    const Group<Two, Of::kRows> own = of.begunWith(of.terms(anchors_, anchors_, twice(0.0)), none);
    for (int r = 0; r < Of::kRows; ++r) suffix(r)[length_ - 1] = own[r][0];
  }
  template <typename Of>
  QV_INLINE void prefixes(const Of& ofThis, const In& in, int items, const Out& out) noexcept {
    constexpr int kRows = Of::kRows;
    const Of of = ofThis;
    Group<Two, kRows> result, last;
    for (int r = 0; r < kRows; ++r) {
      result[r] = result_[r];
      last[r] = last_[r];
    }
    const Group<Two, kInputs> anchors = anchors_;
    Two k = Two{static_cast<double>(place_), place_ + 1.0};
    const double* before[kRows];
    for (int r = 0; r < kRows; ++r) before[r] = suffix(r) + place_;
    int i = 0;
    for (; i + 2 <= items; i += 2) {
      Group<Two, kInputs> x;
      for (int s = 0; s < kInputs; ++s) x[s] = loadTwo(in[s] + i);
      const Group<Two, kRows> term = of.numbers(of.terms(x, anchors, k));
      result = of.join(result, of.join(oneBack(last, term), term));
      last = term;
      Group<Two, kRows> rest;
      for (int r = 0; r < kRows; ++r) rest[r] = loadTwo(before[r] + i);
      const Group<Two, kOutputs> y = of.finish(of.combine(rest, result), anchors, k, x);
      for (int o = 0; o < kOutputs; ++o) storeTwo(out[o] + i, y[o]);
      k = k + twice(2.0);
    }
    if (i < items) {
      Group<Two, kInputs> x;
      for (int s = 0; s < kInputs; ++s) x[s] = twice(in[s][i]);
      const Two place = twice(k[0]);
      const Group<Two, kRows> term = of.numbers(of.terms(x, anchors, place));
      Group<Two, kRows> rest;
      for (int r = 0; r < kRows; ++r) rest[r] = twice(before[r][i]);
      const Group<Two, kRows> one = of.join(twice(result, 0), of.join(twice(last, 1), term));
      result = oneBack(result, one);
      last = oneBack(last, term);
      const Group<Two, kOutputs> y = of.finish(of.combine(rest, one), anchors, place, x);
      for (int o = 0; o < kOutputs; ++o) out[o][i] = y[o][0];
    }
    place_ += items;
    for (int r = 0; r < kRows; ++r) {
      result_[r] = result[r];
      last_[r] = last[r];
    }
  }

  Statistic of_;
  int period_, length_, place_, missing_, room_ = 0;
  bool begun_ = false, failed_ = false;
  double past_[kInputs][kShortWindow - 1]{};  // of short windows
  memory::Buffer<double> scratch_;            // suffixes of the block before, items of this one
  Group<Two, kInputs> anchors_{};
  Group<Two, kMostRows> result_{}, last_{};
};

}  // namespace qv
