#include "python/extension/batch.h"

#include <algorithm>
#include <functional>

#include "python/extension/bars.h"
#include "python/extension/formulas.h"
#include "runs/parallel.h"

namespace qv::python {

namespace {

// Whether a series of a set lies in the block whose first and last rows these are.
bool liesIn(const QvArray& first, const QvArray& last, const BarSet& set) {
  const std::less<const double*> before;
  return std::any_of(std::begin(kSeriesOfBars), std::end(kSeriesOfBars), [&](auto series) {
    const QvArray& a = set.bars().*series;
    return a.data && before(first.data, a.data + a.size) && before(a.data, last.data + last.size);
  });
}

// outs[f][s] takes formula f over set s. Lists of handles, which the caller keeps, and of arrays; `one` where
// these are the rows of one block of the caller's.
void batch(const py::list& sets, const py::list& formulas, const py::list& outs, bool one, int threads) {
  std::vector<const BarSet*> bars;
  std::vector<const OpenFormula*> opened;
  for (const auto& s : sets) bars.push_back(&s.cast<const BarSet&>());
  for (const auto& f : formulas) opened.push_back(&f.cast<const OpenFormula&>());
  std::vector<QvArray> arrays;  // by set and formula
  for (std::size_t s = 0; s < bars.size(); ++s)
    for (std::size_t f = 0; f < opened.size(); ++f) {
      opened[f]->demandSeries(*bars[s]);
      const py::list of = outs[f];
      arrays.push_back(outputOf(py::object(of[s]).ptr(), "out", bars[s]->size()));
    }
  if (one && !arrays.empty())
    for (const BarSet* set : bars)
      if (liesIn(arrays.front(), arrays.back(), *set)) throw py::value_error("out overlaps the bars");
  const py::gil_scoped_release unlocked;
  runs::inParallel(bars.size(), threads, [&](std::size_t s) {
    if (bars[s]->size() < 1) return;
    for (std::size_t f = 0; f < opened.size(); ++f)
      check(evaluate(*opened[f], bars[s]->bars(), arrays[s * opened.size() + f]), opened[f]->text());
  });
}

}  // namespace

void addBatch(py::module_& module) {
  module.def("batch", &batch);
}

}  // namespace qv::python
