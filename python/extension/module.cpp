// The extension of the Python package qvlib60. Its objects are raw: the package's modules make them what
// people use.
#include "python/extension/backtests.h"
#include "python/extension/bars.h"
#include "python/extension/batch.h"
#include "python/extension/calculations.h"
#include "python/extension/catalogue.h"
#include "python/extension/charts.h"
#include "python/extension/errors.h"
#include "python/extension/finance.h"
#include "python/extension/formulas.h"
#include "python/extension/simulator.h"
#include "python/extension/streams.h"
#include "python/extension/sweeps.h"

PYBIND11_MODULE(_core, module) {
  using namespace qv::python;
  py::register_exception_translator(
      [](std::exception_ptr p) {  // NOLINT(performance-unnecessary-value-param): as it is wanted
        try {
          if (p) std::rethrow_exception(p);
        } catch (const qv::Error& e) {
          setError(e);
        }
      });
  module.attr("version") = qvVersion();
  connect(module);
  addBars(module);
  addCalculations(module);
  addCatalogue(module);
  addFormulas(module);
  addBatch(module);
  addBacktests(module);
  addSimulator(module);
  addSweeps(module);
  addFinance(module);
  addCharts(module);
  addStreams(module);
}
