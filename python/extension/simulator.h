// The trading-system simulator, a bar at a time.
#pragma once

#include "python/extension/bars.h"

namespace qv::python {

void addSimulator(py::module_& module);

}  // namespace qv::python
