// Formulas over many bar sets at once.
#pragma once

#include "python/extension/arrays.h"

namespace qv::python {

void addBatch(py::module_& module);

}  // namespace qv::python
