// What the library keeps of an entry, and the families of entries.
#pragma once

#include "catalogue/history.h"
#include "qvlib60/catalogue.h"

namespace qv::catalogue {

inline constexpr int kMostParams = 5, kMostInputs = 4, kMostOutputs = 5;

using Call = int (*)(const QvBars* const* bars, const QvArray* const* inputs, QvArray* const* outputs,
                     const double* numbers, int start) noexcept;
using FirstValid = std::int64_t (*)(const Valid&) noexcept;
// The index, counted from where the data begin, from which on the values have forgotten that.
using Settled = std::int64_t (*)(const History&) noexcept;

struct Item {
  QvCatalogueEntry entry;
  Call call;
  FirstValid firstValid;  // null: the calculation sets none
  Settled settled;        // null: a calculation over a window
  int lateItems;          // of such a one: items from the first valid index on that hold no value yet
};

struct Family {
  const Item* items;
  int count;
};

extern const Family averages, bands, barShape, breadth, counting, momentum, patterns, range,
    relativeVolatility, sentiment, statistics, stochastics, transforms, trend, volume;

// Whether the address is that of an entry in the table; what stands there is not read.
bool isEntry(const QvCatalogueEntry* entry) noexcept;

}  // namespace qv::catalogue
