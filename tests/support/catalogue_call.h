// Calls through the catalogue, and what is documented to differ between calculations: for tests and fuzz
// targets.
#pragma once

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "qvlib60.h"

namespace qvtest {

// Something stands below the first valid index.
inline const std::set<std::string> kKeepsEarlierItems = {"qvDEMA",
                                                         "qvTEMA",
                                                         "qvVIDYA",
                                                         "qvVariableMA",
                                                         "qvZigZag",
                                                         "qvStdErrBands",
                                                         "qvIchimokuKinkoHyo",
                                                         "qvEMV",
                                                         "qvADLine",
                                                         "qvMcClellanOscSum",
                                                         "qvBOP",
                                                         "qvNMO",
                                                         "qvPFE",
                                                         "qvFillInterval"};
// The output's first valid index stays as the caller left it.
inline const std::set<std::string> kLeavesFirstValid = {"qvScaleArray", "qvMultAddArray", "qvCandleFill"};

// Whether a series of n items ends before the first window from `start` on, although its first valid index,
// which does not count from there, lies before: the last item is of the bars so far.
inline bool endsShort(const QvCatalogueEntry& e, int firstValid, int start, int n) {
  return std::string("qvUltimateOsc") == e.name && firstValid >= n - std::max(start, 0);
}

// Of records in any containers, of which the one with the number `missing`, outputs last, is left out.
template <typename Sets, typename Arrays, typename Params>
int callEntry(const QvCatalogueEntry& e, Sets& bars, Arrays& inputs, Arrays& outputs, const Params& params,
              int start, int missing = -1) {
  const auto given = [&missing](auto& record) { return missing-- == 0 ? nullptr : &record; };
  std::vector<const QvBars*> b;
  std::vector<const QvArray*> in;
  std::vector<QvArray*> out;
  for (auto& x : bars) b.push_back(given(x));
  for (auto& x : inputs) in.push_back(given(x));
  for (auto& x : outputs) out.push_back(given(x));
  return qvCatalogueCall(&e, b.data(), in.data(), out.data(), params.data(), start);
}

}  // namespace qvtest
