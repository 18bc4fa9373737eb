// How a calculation is written and run.
//
// A calculation is a class in the namespace qv::chain, named like its exported function (chain::RSI is
// qvRSI), so that whatever runs it - the exported function over whole series, an update bar by bar - opens
// the same class. It is built from its parameters alone and chains stages (kernels/tiles.h):
//
//   static constexpr unsigned kSeries         the series of a bar set that it reads (Series); left out: none
//   static constexpr int kInputs, kOutputs    inputs are the bar set's series in the order date, open, high,
//                                             low, close, volume, open interest, then single series
//   static constexpr bool kWhole = true       where run takes pieces of any length; left out: up to a tile
//   static constexpr bool kInPlace = true     and where the one output may be the one input
//   Name(parameters...)
//   bool ok() const                           where it takes memory itself, or uses not all of its stages
//   int lead() const, or lead(output)         items that pass before the first value: stages know theirs
//   void run(Inputs<kInputs>, int count, Outputs<kOutputs>)
//                                             0.0 for the items below the lead
//   void runAll(in, count, out)               the same for a whole series, behind which nothing comes; left
//                                             out where that saves nothing
//   auto state()                              what changes while it runs (kernels/state.h)
//   void endShort(int items, Outputs<kOutputs> last) const
//                                             what a series of so many items (0 and up), which ends below a
//                                             lead, leaves in its last item; left out where that is nothing
//   static constexpr int kStarts              for how many of the single series the calculation waits until
//                                             they are valid; left out: for all
//   static constexpr bool kBarBefore = true   where the bar before the start is read, too: the chain begins
//   with
//                                             it where there is one, and the first parameter says so
//   static constexpr int kLooksAhead          an output that needs later bars: it has no value in a stream
//   int firstValid(int s) const               where values begin when its first item is s; left out: s + lead
#pragma once

#include <bit>
#include <climits>

#include "core/calculation.h"
#include "kernels/live.h"

namespace qv {

// body(at, count) for the items from .. end - 1, a tile at a time.
template <typename Body>
QV_INLINE void overTiles(int from, int end, Body body) noexcept {
  for (int at = from; at < end; at += std::min(kTile, end - at)) body(at, std::min(kTile, end - at));
}

template <typename Chain>
inline constexpr unsigned kSeriesOf = [] {
  if constexpr (requires { Chain::kSeries; })
    return Chain::kSeries;
  else
    return 0u;
}();
template <typename Chain>
inline constexpr std::size_t kArraysOf = static_cast<std::size_t>(Chain::kInputs -
                                                                  std::popcount(kSeriesOf<Chain>));
template <typename Chain>
inline constexpr std::size_t kStartsOf = [] {
  if constexpr (requires { Chain::kStarts; })
    return static_cast<std::size_t>(Chain::kStarts);
  else
    return kArraysOf<Chain>;
}();
template <typename Chain>
using ArraysOf = std::array<const QvArray*, kArraysOf<Chain>>;
template <typename Chain>
using ResultsOf = std::array<QvArray*, static_cast<std::size_t>(Chain::kOutputs)>;

// The bars that a calculation runs over: from the first that all its single series have, but not before
// start, up to the last or, where given, to end - 1.
struct StartEnd {
  int start, end = INT_MAX;
  int more = 0;          // at up to so many bars nothing is computed, and the answer is their number
  bool asGiven = false;  // from start, wherever the series' values begin
  StartEnd(int first) noexcept : start(first) {}
  StartEnd(int first, int beyond) noexcept : start(first), end(beyond) {}
  StartEnd needingMoreThan(int bars) const noexcept {
    StartEnd range = *this;
    range.more = bars;
    return range;
  }
  StartEnd from(int first) const noexcept {
    StartEnd range = *this;
    range.start = first;
    range.asGiven = true;
    return range;
  }
};

// For calculations that take series of a bar set as single ones: the start, but not before their values.
inline int startOf(const QvBars* bars, unsigned series, int start) noexcept {
  int s = std::max(start, 0);
  for (int k = 0; bars && k < kSeriesCount; ++k)
    if (series & (1u << k)) s = std::max(s, seriesOf(*bars, k).firstValid);
  return s;
}

// Runs a chain over items s .. n - 1 of its series, whose blocks are given. 0 or -3.
template <typename Chain>
int runChain(Chain& chain, const Inputs<Chain::kInputs>& in, const Outputs<Chain::kOutputs>& out, int s,
             int n) noexcept {
  constexpr bool kWhole = requires {
    Chain::kWhole;
  };
  if (kWhole && s < n && in[0] != out[0]) {
    if constexpr (requires { chain.runAll(in, n, out); })
      chain.runAll(advanced(in, s), n - s, advanced(out, s));
    else
      chain.run(advanced(in, s), n - s, advanced(out, s));
  } else {
    overTiles(s, n, [&](int at, int count) {
      if constexpr (requires { Chain::kInPlace; }) {
        static_assert(kWhole);  // so that the input is the output here
        Tile items;
        std::copy_n(in[0] + at, count, items);
        chain.run({items}, count, {out[0] + at});
      } else {
        chain.run(advanced(in, at), count, advanced(out, at));
      }
    });
  }
  if (!isOk(chain)) return QV_MALLOC;
  if constexpr (requires { chain.endShort(0, out); }) {
    const int items = std::max(0, n - s);
    int lead = 0;
    for (int k = 0; k < Chain::kOutputs; ++k) lead = std::max(lead, leadOf(chain, k));
    if (items <= lead) chain.endShort(items, advanced(out, n - 1));
  }
  return QV_OK;
}

// The chain for values from s on, which becomes the first item that it takes.
template <typename Chain, typename... Parameters>
QV_INLINE Chain chainFrom(int& s, Parameters... parameters) noexcept {
  if constexpr (requires { Chain::kBarBefore; }) {
    const bool before = s > 0;
    s -= before;
    return Chain(before, parameters...);
  } else {
    return Chain(parameters...);
  }
}

// The first valid index of an output of a chain whose first item is s.
template <typename Chain>
int firstValidOf(const Chain& chain, int output, int s) noexcept {
  if constexpr (requires { chain.firstValid(s); })
    return chain.firstValid(s);
  else
    return saturatingSum(s, leadOf(chain, output));
}

template <typename Chain>
int startOf(const ArraysOf<Chain>& arrays, const StartEnd& range) noexcept {
  return range.asGiven ? std::max(range.start, 0)
                       : firstValidOf(range.start, std::span(arrays).first(kStartsOf<Chain>));
}

template <typename Chain, typename... Parameters>
[[gnu::cold, gnu::noinline]] int open(Opening& opening, const QvBars* bars, const ArraysOf<Chain>& arrays,
                                      const StartEnd& range, Parameters... parameters) noexcept {
  std::array<const QvArray*, Chain::kInputs> inputs;
  std::size_t input = 0;
  for (int k = 0; k < kSeriesCount; ++k)
    if (kSeriesOf<Chain> & (1u << k)) inputs[input++] = &seriesOf(*bars, k);
  std::copy(arrays.begin(), arrays.end(), inputs.begin() + input);
  int s = startOf<Chain>(arrays, range);
  const Chain chain = chainFrom<Chain>(s, parameters...);
  for (int k = 0; k < Chain::kOutputs; ++k) opening.firstValid[k] = firstValidOf(chain, k, s);
  if constexpr (requires { Chain::kLooksAhead; }) opening.firstValid[Chain::kLooksAhead] = Opening::kNoValue;
  return opening.take(chain, inputs, s);
}

// The body of an exported function that has checked its parameters: entry step, chain, first valid indices.
template <typename Chain, typename... Parameters>
int calculate(const QvBars* bars, const ArraysOf<Chain>& arrays, const ResultsOf<Chain>& results,
              StartEnd range, Parameters... parameters) noexcept {
  if (Opening* opening = openingOf(results[0]))
    return open<Chain>(*opening, bars, arrays, range, parameters...);
  constexpr unsigned kSeries = kSeriesOf<Chain>;
  const BarInput set{bars, kSeries};
  int s, n;
  if constexpr (requires { Chain::kInPlace; })
    n = prepareOverwritten(arrays[0], results[0], range.start, &s);
  else
    n = prepareOverwritten({&set, kSeries ? 1u : 0u}, arrays, results, range.start, &s, kStartsOf<Chain>);
  if (n < 1) return n;
  if (range.asGiven) s = std::max(range.start, 0);
  if (n <= range.more) {
    for (const QvArray* result : results) std::fill_n(result->data, result->size, 0.0);
    return n;
  }

  Inputs<Chain::kInputs> in;
  std::size_t input = 0;
  for (int k = 0; k < kSeriesCount; ++k)
    if (kSeries & (1u << k)) in[input++] = seriesOf(*bars, k).data;
  for (const QvArray* array : arrays) in[input++] = array->data;
  Outputs<Chain::kOutputs> out;
  for (std::size_t k = 0; k < results.size(); ++k) out[k] = results[k]->data;

  const int end = std::min(n, range.end);
  for (const QvArray* result : results)  // one may have more room than another
    if (const int from = std::max(s, end); from < result->size)
      std::fill(result->data + from, result->data + result->size, 0.0);
  Chain chain = chainFrom<Chain>(s, parameters...);
  if (const int status = runChain(chain, in, out, s, end)) return status;
  for (int k = 0; k < Chain::kOutputs; ++k)
    qvSetFirstValid(results[static_cast<std::size_t>(k)], firstValidOf(chain, k, s));
  return QV_OK;
}
template <typename Chain, typename... Parameters>
int calculate(const QvBars* bars, const ResultsOf<Chain>& results, StartEnd range,
              Parameters... parameters) noexcept {
  return calculate<Chain>(bars, ArraysOf<Chain>{}, results, range, parameters...);
}
template <typename Chain, typename... Parameters>
int calculate(const ArraysOf<Chain>& arrays, const ResultsOf<Chain>& results, StartEnd range,
              Parameters... parameters) noexcept {
  return calculate<Chain>(nullptr, arrays, results, range, parameters...);
}

}  // namespace qv
