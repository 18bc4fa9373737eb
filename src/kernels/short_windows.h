// Short windows, each taken by itself, relative to its last item; several of them side by side. Up to
// Of::kShortWindow items that costs less than the passes over blocks: the fewer the more steps a term takes.
#pragma once

#include "kernels/blocks.h"

namespace qv {

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
#pragma GCC unroll 1
    for (int j = 0; j < period; ++j) {
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
template <typename Lanes, typename Of>
QV_INLINE void shortWindows(const Of& of, int period, const Inputs<Of::kInputs>& x, int count,
                            const Outputs<Of::kOutputs>& out) noexcept {
  constexpr int kInRegisters = Of::kRows + Of::kInputs, kGroups = kInRegisters <= 3   ? 4
                                                                  : kInRegisters <= 5 ? 2
                                                                                      : 1;
  const int abreast = shortWindows<Lanes, kGroups>(of, period, x, 0, count, out);
  const int lanes = kGroups > 1 ? shortWindows<Lanes, 1>(of, period, x, abreast, count, out) : abreast;
  shortWindows<double, 1>(of, period, x, lanes, count, out);
}

// The items before a piece, for windows that reach back.
template <typename Of>
using PastItems = double[Of::kInputs][Of::kShortWindow - 1];

template <typename Lanes, typename Of>
QV_INLINE void runShort(const Of& of, int period, PastItems<Of>& past, const Inputs<Of::kInputs>& in,
                        int count, const Outputs<Of::kOutputs>& out) noexcept {
  const int before = period - 1, joint = before < count ? before : count;
  double seam[Of::kInputs][2 * Of::kShortWindow];
  Inputs<Of::kInputs> x;
  for (int s = 0; s < Of::kInputs; ++s) {
    for (int j = 0; j < before; ++j) seam[s][j] = past[s][j];
    for (int j = 0; j < joint; ++j) seam[s][before + j] = in[s][j];
    x[s] = seam[s] + before;
  }
  shortWindows<Lanes>(of, period, x, joint, out);
  for (int s = 0; s < Of::kInputs; ++s)
    for (int j = 0; j < before; ++j)
      past[s][j] = count >= before ? in[s][count - before + j] : seam[s][count + j];
  shortWindows<Lanes>(of, period, advanced(in, joint), count - joint, advanced(out, joint));
}

// The same four abreast (wide.cpp).
template <typename Of>
void runShortWide(const Of& of, int period, PastItems<Of>& past, const Inputs<Of::kInputs>& in, int count,
                  const Outputs<Of::kOutputs>& out) noexcept;

}  // namespace qv
