// Screens, sweeps and walks over many files.
#pragma once

#include "python/extension/arrays.h"

namespace qv::python {

void addSweeps(py::module_& module);

}  // namespace qv::python
