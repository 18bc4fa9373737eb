// One set of arguments for an entry of the catalogue: bar sets, inputs and outputs that free themselves.
#pragma once

#include <deque>
#include <ostream>
#include <utility>
#include <vector>

#include "support/catalogue_call.h"
#include "support/series.h"

inline void PrintTo(const QvCatalogueEntry* e, std::ostream* os) {
  *os << (e ? e->name : "null");
}

namespace qvtest {

inline std::vector<const QvCatalogueEntry*> allEntries() {
  std::vector<const QvCatalogueEntry*> all;
  for (int i = 0; i < qvCatalogueSize(); ++i) all.push_back(qvCatalogueItem(i));
  return all;
}

struct EntryCall {
  const QvCatalogueEntry& e;
  std::deque<Bars> bars;
  std::deque<Array> inputs, outputs;
  Items params;

  explicit EntryCall(const QvCatalogueEntry* entry, int n = 120) : e(*entry) {
    for (unsigned k = 0; k < static_cast<unsigned>(e.barsCount); ++k) bars.emplace_back(walkBars(n, 1 + k));
    for (unsigned k = 0; k < static_cast<unsigned>(e.inputCount); ++k)
      inputs.emplace_back(shaped(Shape::Walk, n, 8 + k));
    outputs.resize(static_cast<std::size_t>(e.outputCount));
    for (int k = 0; k < e.paramCount; ++k) params.push_back(e.params[k].defaultValue);
  }

  int run(int start = 0) { return callEntry(e, bars, inputs, outputs, params, start); }
};

}  // namespace qvtest
