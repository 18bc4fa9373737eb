#include "python/extension/catalogue.h"

#include "python/extension/arguments.h"
#include "runs/catalogue.h"

namespace qv::python {

namespace {

py::dict described(const QvCatalogueEntry& e) {
  using namespace py::literals;
  py::list params, inputs, outputs;
  for (int k = 0; k < e.paramCount; ++k) {
    const QvCatalogueParam& p = e.params[k];
    py::list choices;
    for (int i = 0; i < p.choiceCount; ++i) choices.append(p.choices[i]);
    params.append(py::dict("name"_a = pythonName(p.name), "kind"_a = p.kind, "default"_a = p.defaultValue,
                           "least"_a = p.least, "greatest"_a = p.greatest, "is_integer"_a = p.isInteger != 0,
                           "choices"_a = py::tuple(choices),
                           "search"_a = py::make_tuple(p.optimiseStart, p.optimiseEnd, p.optimiseStep)));
  }
  for (int k = 0; k < e.inputCount; ++k) {
    const std::string name = pythonName(e.inputs[k].name);
    inputs.append(py::make_tuple(name == "in" ? "series" : name, e.inputs[k].series));
  }
  for (int k = 0; k < e.outputCount; ++k) {
    const QvCatalogueOutput& o = e.outputs[k];
    py::list zones;
    for (int i = 0; i < o.zoneCount; ++i) zones.append(o.zones[i]);
    outputs.append(py::dict("name"_a = pythonName(o.name), "low"_a = o.low, "high"_a = o.high,
                            "zones"_a = py::tuple(zones), "place"_a = o.place, "style"_a = o.style,
                            "repaints"_a = o.repaints != 0));
  }
  return py::dict("name"_a = e.shortName, "function"_a = e.name, "title"_a = e.title, "group"_a = e.group,
                  "summary"_a = e.summary, "source"_a = e.source, "note"_a = e.note, "bars"_a = e.barsCount,
                  "series"_a = e.series, "inputs"_a = inputs, "params"_a = params, "outputs"_a = outputs,
                  "main"_a = e.mainOutput, "flags"_a = e.flags,
                  "first_valid"_a = qvCatalogueFirstValid(&e, nullptr, 0),
                  "settle"_a = qvCatalogueSettle(&e, nullptr, 1e-3));
}

py::dict entryOf(const std::string& name) {
  if (const QvCatalogueEntry* entry = qvCatalogueFind(name.c_str())) return described(*entry);
  throw py::value_error(runs::noSuchCalculation(name));
}

}  // namespace

void addCatalogue(py::module_& module) {
  module.def("entry", &entryOf);
  module.def("names", [] {
    py::list names;
    for (int i = 0; i < qvCatalogueSize(); ++i) names.append(qvCatalogueItem(i)->shortName);
    return names;
  });
}

}  // namespace qv::python
