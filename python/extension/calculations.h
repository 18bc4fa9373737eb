// The catalogue's calculations as functions of Python.
#pragma once

#include "python/extension/bars.h"

namespace qv::python {

void addCalculations(py::module_& module);

}  // namespace qv::python
