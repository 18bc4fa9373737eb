// Charts as pictures.
#pragma once

#include "python/extension/bars.h"
#include "runs/picture.h"

namespace qv::python {

// A graph and what it refers to.
py::object chartOver(py::object keeper, runs::GraphPointer graph);
QvGraphTheme themeOf(bool dark);

void addCharts(py::module_& module);

}  // namespace qv::python
