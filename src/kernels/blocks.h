// The passes over the blocks of a sliding window (see sliding.h), two or four neighbouring bars side by side.
//
// Both passes look one pair of bars ahead: the result at j is that at j - 2 joined with the pair j - 1, j. So
// four bars side by side give the bits of two.
#pragma once

#include <cstdint>

#include "kernels/groups.h"

namespace qv {

// What a window keeps: the items of a block (length) so far, the suffixes of the block before. Each has room
// for a pair more, where four results are stored at a time.
struct BlockMemory {
  int period, length, place, missing, room = 0;
  int rows, inputs;
  double none;  // what a suffix without items is
  bool begun = false, failed = false;
  memory::Buffer<double> scratch;

  BlockMemory(int period, int rows, int inputs, double none) noexcept;
  bool ok() const noexcept { return !failed && (room == 0 || scratch.ok()); }
  // That of all rows and inputs together, for room items each.
  std::size_t sizeFor(int items) const noexcept {
    return items > 0 ? static_cast<std::size_t>(rows + inputs) * (static_cast<std::size_t>(items) + kMore)
                     : 0;
  }
  QV_INLINE double* suffix(int row) noexcept { return scratch.data() + row * stride(); }
  QV_INLINE double* kept(int input) noexcept { return suffix(rows + input); }
  const double* kept(int input) const noexcept { return scratch.data() + (rows + input) * stride(); }
  QV_INLINE bool hasRoom(int items) noexcept { return items <= room || makeRoom(items); }
  // For so many more items. Nothing is given up where there is none.
  bool reserve(int count) noexcept {
    const int held = place < length ? place : begun ? length : 0;
    const bool has = hasRoom(std::min(saturatingSum(held, count + 1), length));
    failed = false;
    return has;
  }

 private:
  static constexpr int kMore = 2;
  // From row to row; 0 before there are any.
  QV_INLINE std::ptrdiff_t stride() const noexcept { return room > 0 ? std::ptrdiff_t{room} + kMore : 0; }
  // It grows with the first block only: a period may be longer than any series.
  bool makeRoom(int items) noexcept;
};

// What runs on within a block: its anchors; of the last bars four results (older, newer), two pairs and
// terms. Of rows that may be joined twice the last result alone, in both lanes of `newer`.
template <int kInputs, int kRows>
struct RunningRows {
  Group<Two, kInputs> anchors;
  Group<Two, kRows> older, newer, pairs, terms;
};
// The first rows of it.
template <int kWanted, int kInputs, int kRows>
QV_INLINE RunningRows<kInputs, kWanted> partOf(const RunningRows<kInputs, kRows>& all) noexcept {
  RunningRows<kInputs, kWanted> part{};
  part.anchors = all.anchors;
  for (int r = 0; r < std::min(kRows, kWanted); ++r) {
    part.older[r] = all.older[r];
    part.newer[r] = all.newer[r];
    part.pairs[r] = all.pairs[r];
    part.terms[r] = all.terms[r];
  }
  return part;
}
template <typename Of>
using Running = RunningRows<Of::kInputs, Of::kRows>;

// Two items where there may be no more, as Lanes.
template <typename Lanes, std::size_t kCount>
QV_INLINE std::array<Lanes, kCount> loadPair(const Inputs<kCount>& from, int at) noexcept {
  return inAllPairs<Lanes>(load<Two>(from, at));
}

// Whether a statistic knows how to move rows of four items (see Adding). The terms of such a one are as soon
// made again of a neighbour's items as moved across lanes.
template <typename Of>
inline constexpr bool kByFours = requires {
  Of::kAnchorCounts;
};

// The suffixes of the block before the anchors, as the window that ends at j takes them: its items j + 1 ..
// (kOwn: j ..).
template <bool kOwn, typename Lanes, typename Of>
QV_INLINE void suffixes(const Of& ofThis, BlockMemory& memory, const Inputs<Of::kInputs>& block,
                        const Group<Two, Of::kInputs>& anchorPairs) noexcept {
  constexpr int kRows = Of::kRows, kStep = kLanes<Lanes>;
  const Of of = ofThis;
  const auto anchors = inAllPairs<Lanes>(anchorPairs);
  auto next = noneOf<Lanes, kRows>(Of::kNone), nextPairs = next, ahead = next, nearer = next;
  // The anchor follows the block: the window that is the whole block begins with it.
  if constexpr (!kOwn && !Of::kCountsOnce) next = of.terms(anchors, anchors, all<Lanes>(0.0));
  const int last = (memory.length - 1) & -kStep;
  Lanes k = placesFrom<Lanes>(last - memory.length);
  using Rows = Group<Lanes, kRows>;
  const auto take = [&](int j, const Rows& terms, const Rows& shifted) QV_LAMBDA {
    const Rows& first = kOwn ? terms : shifted;
    const Rows pairs = of.join(of.numbers(first), of.numbers(kOwn ? shifted : twoOn(terms, next)));
    const Rows result = of.join(of.join(pairs, twoOn(pairs, nextPairs)), ahead);
    const Rows whole = of.begunWith(first, result);
    for (int r = 0; r < kRows; ++r) store(memory.suffix(r) + j, whole[r]);
    ahead = kStep == 2 ? nearer : result;
    nearer = result;
    next = terms;
    nextPairs = pairs;
    k = k - all<Lanes>(kStep);
  };
  const auto takeLast = [&](int j, const Rows& terms) QV_LAMBDA { take(j, terms, oneOn(terms, next)); };
  int j = last;
  if (memory.length % kStep != 0)  // a pair, and behind it what follows the block
    takeLast(j, withUpper(of.terms(loadPair<Lanes>(block, j), anchors, k), next));
  else
    takeLast(j, of.terms(load<Lanes>(block, j), anchors, k));
  for (j -= kStep; j >= 0; j -= kStep) {
    const Rows terms = of.terms(load<Lanes>(block, j), anchors, k);
    if constexpr (kByFours<Of>)
      take(j, terms, of.terms(load<Lanes>(block, j + 1), anchors, k + all<Lanes>(1.0)));
    else
      takeLast(j, terms);
  }
}
// Of the window that is the whole block: nothing but that it begins with the anchor.
template <typename Of>
QV_INLINE void lastSuffix(const Of& of, BlockMemory& memory, const Running<Of>& running) noexcept {
  const Group<Two, Of::kRows> own =
      of.begunWith(of.terms(running.anchors, running.anchors, twice(0.0)), noneOf<Two, Of::kRows>(Of::kNone));
  for (int r = 0; r < Of::kRows; ++r) memory.suffix(r)[memory.length - 1] = own[r][0];
}
template <typename Lanes, typename Of>
QV_INLINE void beginBlock(const Of& of, BlockMemory& memory, const Inputs<Of::kInputs>& block,
                          const Inputs<Of::kInputs>& in, Running<Of>& running) noexcept {
  Group<Two, Of::kInputs> anchors;
  for (int s = 0; s < Of::kInputs; ++s) anchors[s] = twice(in[s][0]);
  if (memory.begun && memory.period != memory.length)
    suffixes<true, Lanes>(of, memory, block, anchors);
  else if (memory.begun)
    suffixes<false, Lanes>(of, memory, block, anchors);
  running.anchors = anchors;
  memory.begun = true;
  memory.place = 0;
}

// Longer pieces than this lie in memory, from where their items and the results' places are fetched so many
// items ahead.
inline constexpr int kNear = 65536, kAhead = 96;
// The address, which may lie behind the series, as a number.
template <bool kForWriting>
QV_INLINE void fetchAhead(const double* x) noexcept {
  __builtin_prefetch(  // NOLINTNEXTLINE(performance-no-int-to-ptr)
      reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(x) + kAhead * sizeof(double)),
      kForWriting);
}

// The windows that end at the items of a piece, all of one block. From item `from` up, as many at a time as
// there are Lanes, and a pair that ends the block; returns where it stopped.
template <typename Lanes, typename Of>
QV_INLINE int windowsUp(const Of& ofThis, BlockMemory& memory, const Inputs<Of::kInputs>& in, int from,
                        int items, Running<Of>& running, const Outputs<Of::kOutputs>& out,
                        bool isFar) noexcept {
  constexpr int kRows = Of::kRows, kOutputs = Of::kOutputs, kStep = kLanes<Lanes>;
  const Of of = ofThis;
  const auto anchors = inAllPairs<Lanes>(running.anchors);
  auto last = noneOf<Lanes, kRows>(Of::kNone), lastPairs = last, behind = last;
  auto nearer = noneOf<Two, kRows>(Of::kNone);
  if (memory.place + from > 0) {  // within the block: to read what was just written takes its time
    nearer = running.newer;
    if constexpr (Of::kCountsOnce) {
      behind = ofFour<Lanes>(running.older, running.newer);
      last = inAllPairs<Lanes>(running.terms);
      lastPairs = inAllPairs<Lanes>(running.pairs);
    } else {
      last = lastPairs = behind = inAllPairs<Lanes>(nearer);
    }
  }
  Inputs<kRows> before;
  for (int r = 0; r < kRows; ++r) before[r] = memory.suffix(r) + memory.place;
  Lanes k = placesFrom<Lanes>(memory.place + from);
  using Items = Group<Lanes, Of::kInputs>;
  const auto take = [&](int i, const Items& x, const Group<Lanes, kRows>& terms,
                        const Group<Lanes, kRows>& shifted) QV_LAMBDA {
    const Group<Lanes, kRows> pairs = of.join(shifted, terms);
    const Group<Lanes, kRows> result = of.join(behind, of.join(twoBack(lastPairs, pairs), pairs));
    const Group<Lanes, kOutputs> y = of.finish(of.combine(load<Lanes>(before, i), result), anchors, k, x);
    if constexpr (kStep == 2) {
      behind = nearer;
      nearer = result;
    } else {
      behind = result;
    }
    last = terms;
    lastPairs = pairs;
    k = k + all<Lanes>(kStep);
    return y;
  };
  const auto takeFirst = [&](int i, const Items& x) QV_LAMBDA {
    const Group<Lanes, kRows> terms = of.numbers(of.terms(x, anchors, k));
    return take(i, x, terms, oneBack(last, terms));
  };
  const auto takeNext = [&](int i, const Items& x) QV_LAMBDA {
    if constexpr (kByFours<Of>)
      return take(i, x, of.terms(x, anchors, k),
                  of.terms(load<Lanes>(in, i - 1), anchors, k - all<Lanes>(1.0)));
    else
      return takeFirst(i, x);
  };
  const auto storeAll = [&](int i, const Group<Lanes, kOutputs>& y) QV_LAMBDA {
    for (int o = 0; o < kOutputs; ++o) store(out[o] + i, y[o]);
  };
  int i = from;
  if (i + kStep <= items) {
    storeAll(i, takeFirst(i, load<Lanes>(in, i)));
    for (i += kStep; i + kStep <= items; i += kStep) {
      if (isFar) {
        for (const double* x : in) fetchAhead<false>(x + i);
        for (const double* y : out) fetchAhead<true>(y + i);
      }
      storeAll(i, takeNext(i, load<Lanes>(in, i)));
    }
  }
  if (kStep > 2 && i + 2 == items && memory.place + items == memory.length) {  // nothing runs on
    const Group<Lanes, kOutputs> y = takeFirst(i, loadPair<Lanes>(in, i));
    for (int o = 0; o < kOutputs; ++o) store(out[o] + i, lower(y[o]));
    return items;
  }
  if (memory.place + i < memory.length) {
    running.newer = kStep == 2 ? nearer : upper(behind);
    if constexpr (Of::kCountsOnce) {
      running.older = lower(behind);
      running.terms = upper(last);
      running.pairs = upper(lastPairs);
    } else {
      running.newer = twice(running.newer, 1);
    }
  }
  return i;
}
// The same of a single item, twice.
template <typename Of>
QV_INLINE void oneWindow(const Of& of, BlockMemory& memory, const Inputs<Of::kInputs>& in, int i,
                         Running<Of>& running, const Outputs<Of::kOutputs>& out) noexcept {
  constexpr int kRows = Of::kRows;
  Group<Two, Of::kInputs> x;
  for (int s = 0; s < Of::kInputs; ++s) x[s] = twice(in[s][i]);
  const Two k = twice(static_cast<double>(memory.place + i));
  const Group<Two, kRows> term = of.numbers(of.terms(x, running.anchors, k));
  Group<Two, kRows> one;
  if constexpr (Of::kCountsOnce) {
    const Group<Two, kRows> pair = of.join(twice(running.terms, 1), term);
    one = of.join(twice(running.older, 0), of.join(twice(running.pairs, 0), pair));
    running.older = oneBack(running.older, running.newer);
    running.newer = oneBack(running.newer, one);
    running.pairs = oneBack(running.pairs, pair);
    running.terms = oneBack(running.terms, term);
  } else {
    running.newer = one = of.join(running.newer, term);
  }
  Group<Two, kRows> rest;
  for (int r = 0; r < kRows; ++r) rest[r] = twice(memory.suffix(r)[memory.place + i]);
  const Group<Two, Of::kOutputs> y = of.finish(of.combine(rest, one), running.anchors, k, x);
  for (int o = 0; o < Of::kOutputs; ++o) out[o][i] = y[o][0];
}

// The windows that end at the items of a piece of any length.
template <typename Lanes, typename Of>
QV_INLINE void runBlocks(const Of& of, BlockMemory& memory, Running<Of>& runningOfCaller,
                         Inputs<Of::kInputs> in, int count, Outputs<Of::kOutputs> out) noexcept {
  constexpr int kInputs = Of::kInputs;
  Running<Of> running = runningOfCaller;
  const int length = memory.length;
  Inputs<kInputs> block{};
  bool inPiece = false;  // the block before lies in the piece
  const bool isFar = count > kNear;
  while (count > 0) {
    if (memory.place == length) {
      if (memory.begun && !memory.hasRoom(length)) return;
      for (int s = 0; s < kInputs && !inPiece; ++s) block[s] = memory.kept(s);
      beginBlock<Lanes>(of, memory, block, in, running);
    }
    const int items = count < length - memory.place ? count : length - memory.place;
    // No block before the first one has made its last suffix. It is there before the last item, which may
    // come alone as an update.
    if (!memory.hasRoom(std::min(memory.place + items + 1, length))) return;
    if (memory.missing > 0 && memory.period == length && memory.place + items >= length - 1)
      lastSuffix(of, memory, running);
    inPiece = items == length;
    for (int s = 0; s < kInputs; ++s) {
      block[s] = inPiece ? in[s] : memory.kept(s);
      if (!inPiece)
        __builtin_memcpy(memory.kept(s) + memory.place, in[s],
                         sizeof(double) * static_cast<std::size_t>(items));
    }
    const int abreast = windowsUp<Lanes>(of, memory, in, 0, items, running, out, isFar);
    const int paired = windowsUp<Two>(of, memory, in, abreast, items, running, out, false);
    if (paired < items) oneWindow(of, memory, in, paired, running, out);
    memory.place += items;
    in = advanced(in, items);
    out = advanced(out, items);
    count -= items;
  }
  for (int s = 0; s < kInputs && inPiece; ++s)
    __builtin_memcpy(memory.kept(s), block[s], sizeof(double) * static_cast<std::size_t>(length));
  runningOfCaller = running;
}

// The same four abreast (wide.cpp).
template <typename Of>
void runBlocksWide(const Of& of, BlockMemory& memory, Running<Of>& running, const Inputs<Of::kInputs>& in,
                   int count, const Outputs<Of::kOutputs>& out) noexcept;

}  // namespace qv
