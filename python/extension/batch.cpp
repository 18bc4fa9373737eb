#include "python/extension/batch.h"

#include "python/extension/bars.h"
#include "python/extension/formulas.h"
#include "runs/parallel.h"

namespace qv::python {

namespace {

// outs[f][s] takes formula f over set s. Lists of handles, which the caller keeps, and of arrays.
void batch(const py::list& sets, const py::list& formulas, const py::list& outs, int threads) {
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
