// Statistics of the last `period` items, as stages.
//
// The series is cut into blocks of about one period. A window is the end of one block and the beginning of
// the next: the running results of both are kept and combined. Nothing is ever subtracted from history, so
// the error is bounded by the window itself, what a wild item did ends with the last window that holds it,
// and the cost per bar depends neither on the period nor on the data. Results may be relative to an anchor,
// the first item of the block that the window ends in, which every such window contains.
//
// Two or four neighbouring bars are worked on side by side (blocks.h). Blocks have an even number of items,
// one period or one less, so that a pair is never broken but at the edge of a piece.
#pragma once

#include <span>
#include <type_traits>

#include "kernels/short_windows.h"

namespace qv {

// Up to this many items plain sums keep well within 1e-10, whatever the data.
inline constexpr int kPlainItems = 4096;

// A statistic gives, for a Number that is a double or two of them,
//   kInputs, kRows, kOutputs     series taken, running results kept, results written
//   terms(x, anchors, k)         of items x; k counts from the anchor, below 0 before it
//   join(earlier, later), kNone  the operation on running results and its neutral item; kCountsOnce: none may
//                                be joined twice
//   kShortWindow                 up to this period windows are taken each by itself
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
      : of_(statistic), memory_(period, kMostRows, kInputs, Statistic::kNone), past_(period) {}

  // False once memory could not be had.
  bool ok() const noexcept { return memory_.ok(); }
  int lead() const noexcept { return memory_.period - 1; }
  // The items so far, while fewer than a period.
  std::span<const double> itemsSoFar(int input = 0) const noexcept {
    const auto items = static_cast<std::size_t>(memory_.period - 1 - memory_.missing);
    if (memory_.period <= Statistic::kShortWindow) return {past_.last(input, static_cast<int>(items)), items};
    return {memory_.kept(input), items};
  }

  void run(In in, int count, Out out) noexcept {
    if (count != 1 || memory_.missing != 0) return runPiece(in, count, out);
    if (memory_.period <= Statistic::kShortWindow) return nextShort(in, out);
    if (memory_.place == memory_.room && memory_.begun && !(kCorrects && memory_.period > kPlainItems))
      beginNext(in);
    if (memory_.place >= memory_.room || memory_.failed) return runPiece(in, 1, out);
    next(in, out);
  }

  bool reserve(int count) noexcept {
    return memory_.period <= Statistic::kShortWindow || memory_.reserve(count);
  }
  template <typename V>
  void fields(V& v) noexcept {
    v.within(memory_.missing, 0, memory_.period - 1);
    if (memory_.period <= Statistic::kShortWindow) return v(past_);
    v.within(memory_.place, 0, memory_.length);
    v.within(memory_.room, memory_.period - 1 - memory_.missing, memory_.length);
    v(memory_.begun, running_.anchors, running_.older, running_.newer, running_.pairs, running_.terms);
    v.buffer(memory_.scratch, memory_.sizeFor(memory_.room));
  }

 private:
  [[gnu::noinline]] void runPiece(const In& in, int count, const Out& out) noexcept {
    if (!ok()) memory_.missing = memory_.period;
    const int incomplete = ok() ? std::min(memory_.missing, count) : count;
    if (ok()) {
      if (memory_.period <= Statistic::kShortWindow)
        runShort(in, count, out);
      else if constexpr (kCorrects) {
        memory_.period > kPlainItems ? runOf(Corrected(of_), in, count, out) : runOf(of_, in, count, out);
      } else
        runOf(of_, in, count, out);
    }
    for (double* y : out) std::fill_n(y, memory_.failed ? count : incomplete, 0.0);
    memory_.missing -= std::min(memory_.missing, incomplete);
  }
  // One bar, as updates come, with as little ado as can be: where a block begins, within a block, or a short
  // window.
  [[gnu::noinline]] void beginNext(const In& in) noexcept {
    if (memory_.place < memory_.length) return;
    In block;
    for (int s = 0; s < kInputs; ++s) block[s] = memory_.kept(s);
    Running<Statistic> running;
    running.older = running.newer = running.pairs = running.terms =
        noneOf<Two, Statistic::kRows>(Statistic::kNone);
    beginBlock<Two>(of_, memory_, block, in, running);
    running_ = partOf<kMostRows>(running);
  }
  [[gnu::noinline]] void next(const In& in, const Out& out) noexcept {
    for (int s = 0; s < kInputs; ++s) memory_.kept(s)[memory_.place] = in[s][0];
    if constexpr (kCorrects) {
      memory_.period > kPlainItems ? nextOf(Corrected(of_), in, out) : nextOf(of_, in, out);
    } else
      nextOf(of_, in, out);
    ++memory_.place;
  }
  template <typename Of>
  QV_INLINE void nextOf(const Of& of, const In& in, const Out& out) noexcept {
    Running<Of> running;  // what counts of it is set; set twice it takes its time
    const auto copy = [](auto& to, const auto& from) QV_LAMBDA {
      for (int r = 0; r < Of::kRows; ++r) {
        to.newer[r] = from.newer[r];
        if constexpr (!Of::kCountsOnce) continue;
        to.older[r] = from.older[r];
        to.pairs[r] = from.pairs[r];
        to.terms[r] = from.terms[r];
      }
    };
    running.anchors = running_.anchors;
    copy(running, running_);
    oneWindow(of, memory_, in, 0, running, out);
    copy(running_, running);
  }
  [[gnu::noinline]] void nextShort(const In& in, const Out& out) noexcept {
    oneShortWindow(of_, memory_.period, past_.with(in), out);
  }

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

  [[gnu::noinline]] void runShort(const In& in, int count, const Out& out) noexcept {
#if QV_WIDE_LOOPS
    if (wideLoops && count >= 4) return runShortWide(of_, memory_.period, past_, in, count, out);
#endif
    qv::runShort<Two>(of_, memory_.period, past_, in, count, out);
  }

  // Out of line: side by side two kinds of sums take each other's registers. Long windows run two abreast:
  // their corrections wait for each other.
  template <typename Of>
  [[gnu::noinline]] void runOf(const Of& of, const In& in, int count, const Out& out) noexcept {
    Running<Of> running = partOf<Of::kRows>(running_);
#if QV_WIDE_LOOPS
    if constexpr (std::is_same_v<Of, Statistic>)
      wideLoops ? runBlocksWide(of, memory_, running, in, count, out)
                : runBlocks<Two>(of, memory_, running, in, count, out);
    else
#endif
      runBlocks<Two>(of, memory_, running, in, count, out);
    running_ = partOf<kMostRows>(running);
  }

  Statistic of_;
  BlockMemory memory_;
  PastItems<Statistic> past_;  // of short windows
  RunningRows<kInputs, kMostRows> running_{};
};

}  // namespace qv
