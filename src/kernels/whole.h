// A window stage over a whole series at once, for what is no chain.
#pragma once

#include "kernels/extremes.h"
#include "kernels/sums.h"

namespace qv {

// The windows of `period` items that end at first .. end - 1. Those that would begin before `first` have no
// result, or where they grow that of the items that exist.
struct Windows {
  int first, end, period;
  bool grow = false;
};

// Writes the results of a statistic, of one series, to out; a null output is left out, and one may be the
// series. 0 or -3.
template <typename Statistic>
int overWindows(const Statistic& of, const double* x, const Windows& w,
                Outputs<Statistic::kOutputs> out) noexcept {
  constexpr int kInputs = Statistic::kInputs;
  const int complete = saturatingSum(w.first, w.period, -1);
  Group<double, kInputs> anchors, item;
  anchors.fill(w.first < w.end ? x[w.first] : 0.0);
  Group<double, Statistic::kRows> begun{}, rows;
  rows.fill(Statistic::kNone);
  Sliding<Statistic> window(w.period, of);
  for (int at = w.first; at < w.end;) {
    const int count = std::min(kTile, w.end - at);
    Tile items, results[Statistic::kOutputs];
    std::copy_n(x + at, count, items);
    Inputs<kInputs> in;
    in.fill(items);
    Outputs<Statistic::kOutputs> into;
    for (std::size_t o = 0; o < into.size(); ++o) into[o] = results[o];
    window.run(in, count, into);
    if (!window.ok()) return QV_MALLOC;
    const int growing = std::clamp(complete - at, 0, count);
    for (int j = 0; w.grow && j < growing; ++j) {
      const double k = at + j - w.first;
      item.fill(items[j]);
      const auto terms = of.terms(item, anchors, k);
      if (k == 0.0) begun = terms;
      rows = of.join(rows, of.numbers(terms));
      const auto y = of.finish(of.begunWith(begun, rows), anchors, k, item);
      for (std::size_t o = 0; o < into.size(); ++o) results[o][j] = y[o];
    }
    const int from = w.grow ? 0 : growing;
    for (std::size_t o = 0; o < into.size(); ++o)
      if (out[o]) std::copy(results[o] + from, results[o] + count, out[o] + at + from);
    at += count;
  }
  return QV_OK;
}

inline int sumOfWindows(const double* x, const Windows& w, double* out) noexcept {
  return overWindows(Sums<1>{}, x, w, {out});
}
inline int highestOfWindows(const double* x, const Windows& w, double* out) noexcept {
  return overWindows(HighestLowest{}, x, w, {out, nullptr});
}
inline int lowestOfWindows(const double* x, const Windows& w, double* out) noexcept {
  return overWindows(HighestLowest{}, x, w, {nullptr, out});
}

}  // namespace qv
