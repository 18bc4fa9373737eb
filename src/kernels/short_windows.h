// Short windows, each taken by itself, relative to its newest item; several of them side by side. Up to
// Of::kShortWindow items that costs less than the passes over blocks.
//
// From nine items on sums are made of fours, which neighbouring windows share: the rows of four items about
// the newest of them, moved to where they are about the newest one of the window.
#pragma once

#include "kernels/blocks.h"

namespace qv {

inline constexpr int kFewestByFours = 9;

// Whether the newest item adds nothing to the rows, which are relative to it.
template <typename Of>
constexpr bool isAboutNewest() noexcept {
  if constexpr (kByFours<Of>)
    return !Of::kAnchorCounts;
  else
    return false;
}

// Windows that end at x[from] .. x[count - 1], kGroups times as many at a time as there are Lanes; the items
// before them can be read. Returns where it stopped.
template <typename Lanes, int kGroups, typename Of>
QV_INLINE int shortWindows(const Of& ofThis, int period, const Inputs<Of::kInputs>& x, int from, int count,
                           const Outputs<Of::kOutputs>& out) noexcept {
  constexpr int kRows = Of::kRows, kOutputs = Of::kOutputs, kStep = kLanes<Lanes>;
  const Of of = ofThis;
  int i = from;
  for (; i + kGroups * kStep <= count; i += kGroups * kStep) {
    Group<Lanes, Of::kInputs> anchors[kGroups];
    Group<Lanes, kRows> rows[kGroups];
    for (int g = 0; g < kGroups; ++g) {
      anchors[g] = load<Lanes>(x, i + g * kStep);
      rows[g].fill(all<Lanes>(Of::kNone));
    }
    Lanes k = all<Lanes>(1.0 - period);
    const auto begin = advanced(x, i - (period - 1));
    int j = 0, end = period;
    if constexpr (isAboutNewest<Of>()) {
      for (int g = 0; g < kGroups; ++g) rows[g] = of.terms(load<Lanes>(begin, g * kStep), anchors[g], k);
      k = k + all<Lanes>(1.0);
      j = 1;
      end = period - 1;
    }
#pragma GCC unroll 1
    for (; j < end; ++j) {
      for (int g = 0; g < kGroups; ++g)
        rows[g] = of.join(rows[g], of.numbers(of.terms(load<Lanes>(begin, j + g * kStep), anchors[g], k)));
      k = k + all<Lanes>(1.0);
    }
    for (int g = 0; g < kGroups; ++g) {
      const Group<Lanes, kRows> first =
          of.terms(load<Lanes>(begin, g * kStep), anchors[g], all<Lanes>(1.0 - period));
      const Group<Lanes, kOutputs> y =
          of.finish(of.begunWith(first, rows[g]), anchors[g], all<Lanes>(0.0), anchors[g]);
      for (int o = 0; o < kOutputs; ++o) store(out[o] + i + g * kStep, y[o]);
    }
  }
  return i;
}

// The rows of the items at - 3 .. at, about the last.
template <typename Lanes, typename Of>
QV_INLINE Group<Lanes, Of::kRows> fourItems(const Of& of, const Inputs<Of::kInputs>& x, int at) noexcept {
  const auto newest = load<Lanes>(x, at);
  const auto earlier = of.join(of.terms(load<Lanes>(x, at - 3), newest, all<Lanes>(-3.0)),
                               of.terms(load<Lanes>(x, at - 2), newest, all<Lanes>(-2.0)));
  const auto last = of.terms(load<Lanes>(x, at - 1), newest, all<Lanes>(-1.0));
  if constexpr (Of::kAnchorCounts)
    return of.join(earlier, of.join(last, of.terms(newest, newest, all<Lanes>(0.0))));
  else
    return of.join(earlier, last);
}
// The same windows out of fours; fourAt(i) is fourItems at i.
template <typename Lanes, int kGroups, typename Of, typename FourAt>
QV_INLINE int windowsOfFours(const Of& ofThis, int period, const Inputs<Of::kInputs>& x, int from, int count,
                             const Outputs<Of::kOutputs>& out, FourAt fourAt) noexcept {
  constexpr int kRows = Of::kRows, kOutputs = Of::kOutputs, kStep = kLanes<Lanes>;
  const Of of = ofThis;
  const Lanes zero = all<Lanes>(0.0);
  const int inFours = period & -4;
  int i = from;
  for (; i + kGroups * kStep <= count; i += kGroups * kStep) {
    Group<Lanes, Of::kInputs> newest[kGroups];
    Group<Lanes, kRows> rows[kGroups];
    for (int g = 0; g < kGroups; ++g) {
      newest[g] = load<Lanes>(x, i + g * kStep);
      rows[g] = fourAt(i + g * kStep);
    }
    int back = 4;
    Lanes k = all<Lanes>(-4.0);
#pragma GCC unroll 1
    for (; back < inFours; back += 4) {
      for (int g = 0; g < kGroups; ++g) {
        const int at = i + g * kStep - back;
        rows[g] = of.join(rows[g], of.moved(fourAt(at), load<Lanes>(x, at), newest[g], k));
      }
      k = k - all<Lanes>(4.0);
    }
#pragma GCC unroll 1
    for (; back < period; ++back) {
      for (int g = 0; g < kGroups; ++g) {
        rows[g] = of.join(rows[g], of.terms(load<Lanes>(x, i + g * kStep - back), newest[g], k));
      }
      k = k - all<Lanes>(1.0);
    }
    for (int g = 0; g < kGroups; ++g) {
      const Group<Lanes, kOutputs> y = of.finish(rows[g], newest[g], zero, newest[g]);
      for (int o = 0; o < kOutputs; ++o) store(out[o] + i + g * kStep, y[o]);
    }
  }
  return i;
}
template <typename Lanes, int kGroups, typename Of>
QV_INLINE void byFours(const Of& of, int period, Inputs<Of::kInputs> x, int count,
                       Outputs<Of::kOutputs> out) noexcept {
  double rows[Of::kRows][kTile + Of::kShortWindow - 4];
  const int before = (period & -4) - 4;
  for (int items; count > 0; x = advanced(x, items), out = advanced(out, items), count -= items) {
    items = count < kTile ? count : kTile;
    const auto keep = [&](int i, const auto& four) QV_LAMBDA {
      for (int r = 0; r < Of::kRows; ++r) store(rows[r] + before + i, four[static_cast<std::size_t>(r)]);
    };
    int i = -before;
    for (; i + kLanes<Lanes> <= items; i += kLanes<Lanes>) keep(i, fourItems<Lanes>(of, x, i));
    for (; i < items; ++i) keep(i, fourItems<double>(of, x, i));
    Inputs<Of::kRows> kept;
    for (int r = 0; r < Of::kRows; ++r) kept[static_cast<std::size_t>(r)] = rows[r] + before;
    const auto lanesAt = [&](int at) QV_LAMBDA { return load<Lanes>(kept, at); };
    const int abreast = windowsOfFours<Lanes, kGroups>(of, period, x, 0, items, out, lanesAt);
    const int lanes =
        kGroups > 1 ? windowsOfFours<Lanes, 1>(of, period, x, abreast, items, out, lanesAt) : abreast;
    windowsOfFours<double, 1>(of, period, x, lanes, items, out,
                              [&](int at) QV_LAMBDA { return load<double>(kept, at); });
  }
}

template <typename Lanes, typename Of>
QV_INLINE void shortWindows(const Of& of, int period, const Inputs<Of::kInputs>& x, int count,
                            const Outputs<Of::kOutputs>& out) noexcept {
  constexpr int kInRegisters = Of::kRows + Of::kInputs, kGroups = kInRegisters <= 3   ? 4
                                                                  : kInRegisters <= 5 ? 2
                                                                                      : 1;
  if constexpr (kByFours<Of>)
    if (period >= kFewestByFours)
      return byFours < Lanes, Of::kRows == 1 ? 4 : Of::kRows == 2 ? 2 : 1 > (of, period, x, count, out);
  const int abreast = shortWindows<Lanes, kGroups>(of, period, x, 0, count, out);
  const int lanes = kGroups > 1 ? shortWindows<Lanes, 1>(of, period, x, abreast, count, out) : abreast;
  shortWindows<double, 1>(of, period, x, lanes, count, out);
}

// The items before a piece, for windows that reach back. They have room for as many more, so that a single
// item is written behind them and moves none.
template <typename Of>
class PastItems {
 public:
  explicit PastItems(int period) noexcept
      : before_(period < Of::kShortWindow ? period - 1 : Of::kShortWindow - 1), held_(before_) {}
  // Of the items so far the last ones.
  const double* last(int input, int items) const noexcept { return items_[input] + (held_ - items); }
  // Behind them those of a single bar; where they lie.
  QV_INLINE Inputs<Of::kInputs> with(const Inputs<Of::kInputs>& in) noexcept {
    if (held_ == kRoom) moveUp();
    Inputs<Of::kInputs> newest;
    for (int s = 0; s < Of::kInputs; ++s) {
      items_[s][held_] = in[s][0];
      newest[s] = items_[s] + held_;
    }
    ++held_;
    return newest;
  }
  // From now on these: as many as a window reaches back, of each input in turn.
  QV_INLINE void becomes(int input, const double* items) noexcept {
    __builtin_memcpy(items_[input], items, sizeof(double) * static_cast<std::size_t>(before_));
    if (input == Of::kInputs - 1) held_ = before_;
  }
  template <typename V>
  void fields(V& v) noexcept {
    moveUp();
    for (auto& items : items_)
      for (int k = 0; k < before_; ++k) v(items[k]);
  }

 private:
  static constexpr int kRoom = 2 * Of::kShortWindow;

  [[gnu::noinline]] void moveUp() noexcept {
    for (auto& items : items_)
      __builtin_memmove(items, items + (held_ - before_), sizeof(double) * static_cast<std::size_t>(before_));
    held_ = before_;
  }

  int before_, held_;
  double items_[Of::kInputs][kRoom]{};
};

// Windows that reach back are taken of a copy of their items, and with them as many as fill a round of fours.
template <typename Lanes, typename Of>
QV_INLINE void runShort(const Of& of, int period, PastItems<Of>& past, const Inputs<Of::kInputs>& in,
                        int count, const Outputs<Of::kOutputs>& out) noexcept {
  const int before = period - 1, most = period < kFewestByFours ? before : kTile;
  const int joint = count < most ? count : most;
  double items[Of::kInputs][Of::kShortWindow + kTile];
  Inputs<Of::kInputs> x;
  for (int s = 0; s < Of::kInputs; ++s) {
    __builtin_memcpy(items[s], past.last(s, before), sizeof(double) * static_cast<std::size_t>(before));
    __builtin_memcpy(items[s] + before, in[s], sizeof(double) * static_cast<std::size_t>(joint));
    x[s] = items[s] + before;
    past.becomes(s, count >= before ? in[s] + (count - before) : items[s] + count);
  }
  shortWindows<Lanes>(of, period, x, joint, out);
  if (joint < count)
    shortWindows<Lanes>(of, period, advanced(in, joint), count - joint, advanced(out, joint));
}
// The window that a single item ends: `x`, with those before it.
template <typename Of>
QV_INLINE void oneShortWindow(const Of& of, int period, const Inputs<Of::kInputs>& x,
                              const Outputs<Of::kOutputs>& out) noexcept {
  if constexpr (kByFours<Of>)
    if (period >= kFewestByFours) {
      windowsOfFours<double, 1>(of, period, x, 0, 1, out,
                                [&](int at) QV_LAMBDA { return fourItems<double>(of, x, at); });
      return;
    }
  shortWindows<double, 1>(of, period, x, 0, 1, out);
}

// The same four abreast (wide.cpp).
template <typename Of>
void runShortWide(const Of& of, int period, PastItems<Of>& past, const Inputs<Of::kInputs>& in, int count,
                  const Outputs<Of::kOutputs>& out) noexcept;

}  // namespace qv
