// Formulas that take one bar at a time.
#pragma once

#include "python/extension/arrays.h"

namespace qv::python {

void addStreams(py::module_& module);

}  // namespace qv::python
