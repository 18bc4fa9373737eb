// Bar sets over arrays of Python.
#pragma once

#include <array>

#include "python/extension/arrays.h"
#include "runs/load.h"

namespace qv::python {

inline constexpr const char* kSeriesNames[kBarSeries] = {"date",  "open",   "high",         "low",
                                                         "close", "volume", "open_interest"};

// Never changes but for the items of the arrays, which are whoever's they are.
class BarSet {
 public:
  // Arrays of one length or None; missing dates become 1, 2 .. A series that is `unknown` (bits) stands for
  // one that there is not: who reads it all the same finds its numbers.
  BarSet(const std::array<py::object, kBarSeries>& columns, unsigned unknown);
  BarSet(Bars&& bars);

  // For reading. Calculations take the first valid index from `start`, formulas from the series.
  const QvBars& bars() const { return bars_; }
  int size() const { return bars_.barsize; }
  bool has(int series) const { return (bars_.*kSeriesOfBars[series]).data && !isUnknown(series); }
  bool isUnknown(int series) const { return (unknown_ & (1u << series)) != 0; }
  unsigned unknown() const { return unknown_; }
  // The first bar at which all of these series (bits) have begun.
  int begin(int series) const;

  py::object column(int series) const { return columns_[static_cast<std::size_t>(series)]; }
  void describe(const QvBars& source) { qvCopyBarInfo(&source, &bars_); }
  void setSymbol(const std::string& symbol);

 private:
  void setFirsts();
  QvBars bars_{};
  std::array<py::object, kBarSeries> columns_;
  unsigned unknown_ = 0;
};

// The bar set of a qvlib60.Bars or a data frame; null for anything else. `like` becomes the object whose
// index the results take, or stays as it is. The set lives as long as `keeper`.
const BarSet* barSetOf(PyObject* object, py::object& keeper, py::object& like);

// The same; throws an exception of Python for anything else.
const BarSet& barSetIn(PyObject* object, const char* name, py::object& keeper);

// Throws where one of these series (bits) is missing.
void demandSeries(const BarSet& set, int series, const std::string& what);

void addBars(py::module_& module);

}  // namespace qv::python
